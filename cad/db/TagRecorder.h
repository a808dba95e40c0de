// A writing filer for unit tests: records the tags an object's layout declaration writes, so
// a test can check codes, order and values without the DXF writer.
#pragma once

#include <charconv>
#include <string>
#include <vector>

#include "cad/db/DxfFiler.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/SymbolTableRecord.h"

namespace cad::db {

class TagRecorder final : public DxfFiler {
public:
    explicit TagRecorder(DxfVersion version = DxfVersion::R2000) : version_(version) {}

    const std::vector<RawTag>& tags() const { return tags_; }
    std::vector<int> codes() const {
        std::vector<int> result;
        for (const RawTag& tag : tags_) result.push_back(tag.code);
        return result;
    }

    Mode mode() const override { return Mode::Writing; }
    DxfVersion version() const override { return version_; }
    void subclass(std::string_view marker) override { add(100, std::string(marker)); }
    void string(int code, std::string& value) override { add(code, value); }
    void string(int code, std::string& value, std::string_view d) override {
        if (value != d) add(code, value);
    }
    void int16(int code, std::int16_t& value) override { add(code, std::to_string(value)); }
    void int16(int code, std::int16_t& value, std::int16_t d) override {
        if (value != d) int16(code, value);
    }
    void int32(int code, std::int32_t& value) override { add(code, std::to_string(value)); }
    void int32(int code, std::int32_t& value, std::int32_t d) override {
        if (value != d) int32(code, value);
    }
    void int64(int code, std::int64_t& value) override { add(code, std::to_string(value)); }
    void real(int code, double& value) override { add(code, number(value)); }
    void real(int code, double& value, double d) override {
        if (value != d) real(code, value);
    }
    void boolean(int code, bool& value) override { add(code, value ? "1" : "0"); }
    void point(int code, ge::Point3d& p) override {
        add(code, number(p.x));
        add(code + 10, number(p.y));
        add(code + 20, number(p.z));
    }
    void point2d(int code, ge::Point3d& p) override {
        add(code, number(p.x));
        add(code + 10, number(p.y));
    }
    void vector(int code, ge::Vector3d& v) override {
        ge::Point3d p{v.x, v.y, v.z};
        point(code, p);
    }
    void vector(int code, ge::Vector3d& v, const ge::Vector3d& d) override {
        if (!(v == d)) vector(code, v);
    }
    void reference(int code, ObjectId& id) override { add(code, id.handle().toHex()); }
    void symbol(int code, ObjectId& record, SymbolTable) override {
        const ObjectSlot* slot = record.slot();
        const auto* named =
            slot != nullptr ? dynamic_cast<const SymbolTableRecord*>(slot->object.get()) : nullptr;
        add(code, named != nullptr ? named->name() : std::string());
    }
    void symbol(int code, ObjectId& record, SymbolTable table, ObjectId d) override {
        if (record != d) symbol(code, record, table);
    }
    void binary(int code, std::string& bytes) override {
        static constexpr char kHex[] = "0123456789ABCDEF";
        std::string text;
        for (unsigned char byte : bytes) {
            text += kHex[byte >> 4];
            text += kHex[byte & 15];
        }
        add(code, text);
    }
    void beginRecords(int, std::size_t&) override {}
    void enterRecord(std::size_t) override {}
    void endRecords() override {}
    void resbufs(ResBufChain& chain) override {
        for (ResBuf& rb : chain) {
            std::visit(
                [&](auto& v) {
                    using V = std::decay_t<decltype(v)>;
                    if constexpr (std::is_same_v<V, std::string>) {
                        add(rb.code, v);
                    } else if constexpr (std::is_same_v<V, double>) {
                        real(rb.code, v);
                    } else if constexpr (std::is_same_v<V, ge::Point3d>) {
                        point(rb.code, v);
                    } else if constexpr (std::is_same_v<V, BinaryChunk>) {
                        binary(rb.code, v.bytes);
                    } else if constexpr (std::is_same_v<V, ObjectId>) {
                        reference(rb.code, v);
                    } else {
                        add(rb.code, std::to_string(v));
                    }
                },
                rb.value);
        }
    }
    void rawTags(std::vector<RawTag>& tags) override {
        tags_.insert(tags_.end(), tags.begin(), tags.end());
    }

private:
    static std::string number(double value) {
        char buffer[32];
        auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
        return std::string(buffer, end);
    }
    void add(int code, std::string value) { tags_.push_back(RawTag{code, std::move(value)}); }

    DxfVersion version_;
    std::vector<RawTag> tags_;
};

}  // namespace cad::db
