// Writes decoded DWG records as the DXF text of the same drawing: tables with their records,
// block definitions with their entities (an INSERT or POLYLINE followed by what it owns and its
// SEQEND), the entities of model and paper space, then the objects with the named-objects
// dictionary first. Entities whose fields were deferred are decoded as they are written; the
// last part of a large model space is written on a second thread meanwhile.
#pragma once

#include <charconv>
#include <cmath>
#include <cstdint>
#include <exception>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "cad/db/dwg/DwgHeaderVariables.h"
#include "cad/db/dwg/DwgObjectDecoder.h"
#include "cad/db/dwg/DwgRecord.h"
#include "cad/db/dwg/DwgTranslator.h"

namespace cad::db::dwg {

class DwgDxfWriter {
public:
    // An entity whose fields are decoded only when it is written: most of a drawing, which so
    // never stands in memory as decoded records all at once.
    struct Pending {
        std::uint64_t handle = 0;
        std::uint64_t owner = 0;
        std::uint32_t map = 0;  // its entry in the object map
        int type = 0;
        int entityMode = 0;
        bool decoded = false;
    };
    // Records are referred to by one number: below records.size() a decoded record, from there
    // on a pending entity.
    using Ref = std::uint32_t;
    static constexpr Ref kNone = static_cast<Ref>(-1);

    // `order`: every record and pending entity by ascending handle, each handle once.
    DwgDxfWriter(DwgObjectDecoder& decoder, DwgTranslation& out, const DwgHeaderVariables& header,
                 std::vector<DwgRecord>& records, std::vector<Pending>& pending,
                 std::vector<Ref> order, std::map<int, int>& readByType,
                 std::vector<std::pair<std::uint32_t, std::string>>& unreadable)
        : decoder_(decoder),
          translation_(out),
          layout_(out.layout),
          header_(header),
          records_(records),
          pending_(pending),
          order_(std::move(order)),
          readByType_(readByType),
          unreadable_(unreadable),
          base_(static_cast<Ref>(records.size())) {
        handles_.reserve(order_.size());
        for (const Ref ref : order_) {
            handles_.push_back(handleOf(ref));
            if (!isPending(ref)) stored_.push_back(ref);
        }
    }

    std::string write();

private:
    // What a second writer counts, merged once it is done.
    struct Half {
        explicit Half(const DwgObjectDecoder& from) : decoder(from) {}
        DwgObjectDecoder decoder;
        DwgTranslation census;
        std::map<int, int> read;
        std::vector<std::pair<std::uint32_t, std::string>> unreadable;
        std::string text;
        std::exception_ptr failure;
    };
    // A writer of part of the entities beside this one: shares the records, counts and
    // writes on its own.
    DwgDxfWriter(const DwgDxfWriter& from, Half& half)
        : decoder_(half.decoder),
          translation_(half.census),
          layout_(from.layout_),
          header_(from.header_),
          records_(from.records_),
          pending_(from.pending_),
          order_(from.order_),
          handles_(from.handles_),
          readByType_(half.read),
          unreadable_(half.unreadable),
          base_(from.base_),
          owned_(from.owned_),
          names_(from.names_),
          modelSpace_(from.modelSpace_),
          paperSpace_(from.paperSpace_),
          linetypes_(from.linetypes_) {}

    bool isPending(Ref ref) const { return ref >= base_; }
    std::uint64_t handleOf(Ref ref) const {
        return isPending(ref) ? pending_[ref - base_].handle : records_[ref].handle;
    }
    int typeOf(Ref ref) const {
        return isPending(ref) ? pending_[ref - base_].type : records_[ref].type;
    }
    // The record of `ref`, a pending entity decoded now (into a buffer the next load reuses);
    // nullptr when its fields do not read, which is counted as the file's reader counts it.
    const DwgRecord* load(Ref ref);
    void notRead(int type, std::string_view dxfName);
    // Codes right-aligned three wide, as DXF writers put them: the DXF reader's quick path.
    void code(int code) {
        if (code >= 0 && code < 1000) {
            const char line[4] = {code >= 100 ? static_cast<char>('0' + code / 100) : ' ',
                                  code >= 10 ? static_cast<char>('0' + code / 10 % 10) : ' ',
                                  static_cast<char>('0' + code % 10), '\n'};
            text_.append(line, 4);
            return;
        }
        char digits[8];
        const auto end = std::to_chars(digits, digits + sizeof digits, code).ptr;
        text_.append(digits, end);
        text_ += '\n';
    }
    void put(int group, std::string_view value) {
        code(group);
        text_ += value;
        text_ += '\n';
    }
    void putInteger(int group, std::int64_t value) {
        char digits[24];
        const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
        put(group, std::string_view(digits, static_cast<std::size_t>(end - digits)));
    }
    // The shortest text that reads back the same; with `decimalPoint`, whole numbers get a
    // ".0", as DXF files write reals. What is not a number is written as 0.
    void putReal(int group, double value, bool decimalPoint = true) {
        if (!std::isfinite(value)) value = 0.0;
        char digits[32];
        const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
        bool whole = decimalPoint;
        for (const char* c = digits; c != end && whole; ++c) whole = *c != '.' && *c != 'e';
        code(group);
        text_.append(digits, end);
        if (whole) text_ += ".0";
        text_ += '\n';
    }
    void putHandle(int group, std::uint64_t handle) {
        char digits[17];
        const auto end = std::to_chars(digits, digits + sizeof digits, handle, 16).ptr;
        for (char* c = digits; c != end; ++c) {
            if (*c >= 'a') *c = static_cast<char>(*c - 'a' + 'A');
        }
        put(group, std::string_view(digits, static_cast<std::size_t>(end - digits)));
    }
    Ref refOf(std::uint64_t handle) const {
        const auto it = std::lower_bound(handles_.begin(), handles_.end(), handle);
        return it != handles_.end() && *it == handle
                   ? order_[static_cast<std::size_t>(it - handles_.begin())]
                   : kNone;
    }
    // A decoded record by handle; pending entities are never looked up so.
    const DwgRecord* find(std::uint64_t handle) const {
        const Ref ref = refOf(handle);
        return ref == kNone || isPending(ref) ? nullptr : &records_[ref];
    }
    // The name a link points at; empty when it names no record that was read. Links name
    // few records (layers, styles, blocks) many times over, so their names are kept at hand.
    std::string_view nameOf(std::uint64_t handle) {
        if (handle & kLinetypeIndex) {
            const std::uint64_t index = handle & ~kLinetypeIndex;
            return index < linetypes_.size() ? nameOf(linetypes_[index]) : "BYLAYER";
        }
        if (handle == lastNamed_) return *lastName_;
        const auto it = names_.find(handle);
        const std::string* name = &kNoName;
        if (it != names_.end()) {
            name = it->second;
        } else if (const DwgRecord* record = find(handle)) {
            name = &record->name;
            names_.emplace(handle, name);
        } else {
            names_.emplace(handle, name);
        }
        lastNamed_ = handle;
        lastName_ = name;
        return *name;
    }
    void common(const DwgRecord& r, std::string_view type, std::uint64_t owner, bool paper);
    void tags(const std::vector<DwgTag>& list);
    void object(const DwgRecord& r);
    void entity(const DwgRecord& r, std::uint64_t owner, bool paper);
    void entity(Ref ref, std::uint64_t owner, bool paper);
    // The entities of a block, or those from `from` to `to` in its list.
    void entitiesOf(std::uint64_t block, bool paper, std::size_t from = 0,
                    std::size_t to = static_cast<std::size_t>(-1));
    void block(const DwgRecord& record);
    void nameBlocks();

    static inline const std::string kNoName;

    DwgObjectDecoder& decoder_;
    DwgTranslation& translation_;
    const DwgFileLayout& layout_;
    const DwgHeaderVariables& header_;
    std::vector<DwgRecord>& records_;
    std::vector<Pending>& pending_;
    std::vector<Ref> order_;              // every record, by ascending handle
    std::vector<std::uint64_t> handles_;  // their handles, in that order
    std::vector<Ref> stored_;             // the decoded records of order_
    std::map<int, int>& readByType_;
    std::vector<std::pair<std::uint32_t, std::string>>& unreadable_;  // map entry, message
    const Ref base_;
    DwgRecord loaded_;
    // What each block or entity owns, in handle order.
    std::unordered_map<std::uint64_t, std::vector<Ref>> owned_;
    std::unordered_map<std::uint64_t, const std::string*> names_;
    std::uint64_t lastNamed_ = 0;
    const std::string* lastName_ = &kNoName;
    std::uint64_t modelSpace_ = 0, paperSpace_ = 0;
    std::vector<std::uint64_t> linetypes_;  // the linetype table's records, in its order
    std::string text_;
};

}  // namespace cad::db::dwg
