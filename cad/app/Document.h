// A document: an open drawing (its database) with the editor state that belongs to it (the
// drawing's system variables), its file name, read-only flag, locks and the queue of command
// strings waiting to run in it. Documents are made and destroyed by the DocumentManager only.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "cad/app/LockMode.h"
#include "cad/ed/SystemVariables.h"

namespace cad::db {
class Database;
}

namespace cad::app {

class Document {
public:
    ~Document();
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    db::Database* database() const { return database_.get(); }
    // The full path of the drawing; "DrawingN.dwg" for a drawing not saved yet.
    const std::string& fileName() const { return fileName_; }
    // The name shown in the window's title: the file name without its folder.
    std::string docTitle() const;
    bool isReadOnly() const { return readOnly_; }
    // The lock taken last and still held; NotLocked when there is none.
    LockMode lockMode() const;
    ed::SystemVariables& systemVariables() { return variables_; }
    // Command strings waiting to be executed in this document.
    std::size_t queuedStringCount() const { return queue_.size(); }

private:
    friend class DocumentManager;
    friend class CommandProcessor;
    friend class HostCommands;  // SAVEAS renames the document

    struct Lock {
        LockMode mode;
        std::string globalCommand;
        std::string localCommand;
    };
    struct QueuedString {
        std::string text;
        bool echo;
    };

    Document(std::unique_ptr<db::Database> database, std::string fileName, bool readOnly);

    std::unique_ptr<db::Database> database_;
    std::string fileName_;
    bool readOnly_ = false;
    std::vector<Lock> locks_;
    std::deque<QueuedString> queue_;
    int commandDepth_ = 0;  // commands running in this document (nested transparent ones too)
    ed::SystemVariables variables_;
};

}  // namespace cad::app
