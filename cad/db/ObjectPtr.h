// Opened objects as RAII handles: the object is closed when the pointer goes, and close()
// can be called first to learn its status. Database work opens, uses and closes inside one
// operation, so a test can assert that none is left open.
#pragma once

#include <utility>

#include "cad/db/Database.h"
#include "cad/db/DbObject.h"
#include "cad/db/OpenMode.h"

namespace cad::db {

template <class T>
class ObjectPtr {
public:
    ObjectPtr() = default;
    ObjectPtr(ObjectId id, OpenMode mode, bool openErased = false) { open(id, mode, openErased); }
    ~ObjectPtr() { close(); }

    ObjectPtr(const ObjectPtr&) = delete;
    ObjectPtr& operator=(const ObjectPtr&) = delete;
    ObjectPtr(ObjectPtr&& other) noexcept { swap(other); }
    ObjectPtr& operator=(ObjectPtr&& other) noexcept {
        if (this != &other) {
            close();
            swap(other);
        }
        return *this;
    }

    ErrorStatus open(ObjectId id, OpenMode mode, bool openErased = false) {
        close();
        if (id.isNull() || id.database() == nullptr) return status_ = ErrorStatus::eNullObjectId;
        DbObject* object = nullptr;
        status_ = id.database()->openObject(object, id, mode, openErased);
        if (status_ != ErrorStatus::eOk) return status_;
        object_ = dynamic_cast<T*>(object);
        if (object_ == nullptr) {
            id.database()->closeObject(id, mode);
            return status_ = ErrorStatus::eWrongObjectType;
        }
        id_ = id;
        mode_ = mode;
        return status_;
    }

    ErrorStatus close() {
        if (object_ == nullptr) return ErrorStatus::eOk;
        object_ = nullptr;
        ErrorStatus es = id_.database()->closeObject(id_, mode_);
        id_ = ObjectId::kNull;
        return es;
    }

    ErrorStatus openStatus() const { return status_; }
    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    void swap(ObjectPtr& other) noexcept {
        std::swap(object_, other.object_);
        std::swap(id_, other.id_);
        std::swap(mode_, other.mode_);
        std::swap(status_, other.status_);
    }

    T* object_ = nullptr;
    ObjectId id_;
    OpenMode mode_ = OpenMode::ForRead;
    ErrorStatus status_ = ErrorStatus::eNullObjectId;
};

template <class T>
ObjectPtr<T> open(ObjectId id, OpenMode mode, bool openErased = false) {
    return ObjectPtr<T>(id, mode, openErased);
}

}  // namespace cad::db
