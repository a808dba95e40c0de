// Writing decoded DWG records as DXF: tables with their records, block definitions with their
// entities (an INSERT or POLYLINE followed by what it owns and its SEQEND), the entities of
// model and paper space, then the objects with the named-objects dictionary first.
#include "cad/db/dwg/DwgTranslator.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>
#include <unordered_set>

#include "cad/db/dwg/DwgHeaderVariables.h"
#include "cad/db/dwg/DwgObjectDecoder.h"

namespace cad::db::dwg {
namespace {

std::string hex(std::uint64_t handle) {
    char buffer[17];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, handle, 16);
    std::string out(buffer, result.ptr);
    for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

bool isSubentity(int type) {
    return type == 0x02 || type == 0x06 || (type >= 0x0A && type <= 0x0E);
}

class Writer {
public:
    Writer(const DwgFileLayout& layout, const DwgHeaderVariables& header,
           std::unordered_map<std::uint64_t, DwgRecord>& records, std::vector<std::uint64_t> order)
        : layout_(layout), header_(header), records_(records), order_(std::move(order)) {}

    std::string write();

private:
    void put(int code, std::string_view value) {
        char digits[8];
        const auto end = std::to_chars(digits, digits + sizeof digits, code).ptr;
        out_.append(digits, end);
        out_ += '\n';
        out_ += value;
        out_ += '\n';
    }
    const DwgRecord* find(std::uint64_t handle) const {
        const auto it = records_.find(handle);
        return it == records_.end() ? nullptr : &it->second;
    }
    // The name a link points at; empty when it names no record that was read.
    std::string nameOf(std::uint64_t handle) const {
        if (handle & kLinetypeIndex) {
            const std::uint64_t index = handle & ~kLinetypeIndex;
            return index < linetypes_.size() ? nameOf(linetypes_[index]) : std::string("BYLAYER");
        }
        const DwgRecord* record = find(handle);
        return record ? record->name : std::string();
    }
    void common(const DwgRecord& r, std::string_view type, std::uint64_t owner, bool paper);
    void tags(const std::vector<DwgTag>& list);
    void object(const DwgRecord& r);
    void entity(const DwgRecord& r, std::uint64_t owner, bool paper);
    void entitiesOf(std::uint64_t block, bool paper);
    void block(const DwgRecord& record);
    void nameBlocks();

    const DwgFileLayout& layout_;
    const DwgHeaderVariables& header_;
    std::unordered_map<std::uint64_t, DwgRecord>& records_;
    std::vector<std::uint64_t> order_;  // every decoded handle, ascending
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> owned_;
    std::uint64_t modelSpace_ = 0, paperSpace_ = 0;
    std::vector<std::uint64_t> linetypes_;  // the linetype table's records, in its order
    std::string out_;
};

void Writer::common(const DwgRecord& r, std::string_view type, std::uint64_t owner, bool paper) {
    put(0, type);
    // Dimension styles carry their handle under 105, every other record under 5.
    if (r.handle != 0) put(type == "DIMSTYLE" ? 105 : 5, hex(r.handle));
    if (!r.reactors.empty()) {
        put(102, "{ACAD_REACTORS");
        for (const std::uint64_t reactor : r.reactors) put(330, hex(reactor));
        put(102, "}");
    }
    if (r.xdictionary != 0) {
        put(102, "{ACAD_XDICTIONARY");
        put(360, hex(r.xdictionary));
        put(102, "}");
    }
    put(330, hex(owner));
    if (!r.isEntity) return;
    put(100, "AcDbEntity");
    if (paper) put(67, "1");
    const std::string layer = nameOf(r.layer);
    put(8, layer.empty() ? "0" : layer);
    if (r.linetype != 0) {
        if (const std::string linetype = nameOf(r.linetype); !linetype.empty()) put(6, linetype);
    } else if (!r.linetypeName.empty()) {
        put(6, r.linetypeName);
    }
    if (r.color != 256) put(62, std::to_string(r.color));
    if (layout_.version == DwgVersion::R2000 && r.lineweight != -1) {
        put(370, std::to_string(r.lineweight));
    }
    if (r.linetypeScale != 1.0) {
        char buffer[32];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, r.linetypeScale);
        put(48, std::string_view(buffer, static_cast<std::size_t>(result.ptr - buffer)));
    }
    if (r.invisible) put(60, "1");
}

void Writer::tags(const std::vector<DwgTag>& list) {
    for (const DwgTag& tag : list) {
        if (tag.nameOf == 0) {
            put(tag.code, tag.value);
            continue;
        }
        const std::string name = nameOf(tag.nameOf);
        if (!name.empty()) put(tag.code, name);
    }
}

void Writer::object(const DwgRecord& r) {
    common(r, r.dxfName, r.owner, false);
    tags(r.tags);
    tags(r.xdata);
}

void Writer::entity(const DwgRecord& r, std::uint64_t owner, bool paper) {
    common(r, r.dxfName, owner, paper);
    tags(r.tags);
    tags(r.xdata);
    if (r.type != 0x07 && r.type != 0x08 && !(r.type >= 0x0F && r.type <= 0x10) &&
        !(r.type >= 0x1D && r.type <= 0x1E)) {
        return;
    }
    // What an INSERT or POLYLINE owns follows it, closed by its SEQEND.
    if (const auto it = owned_.find(r.handle); it != owned_.end()) {
        for (const std::uint64_t handle : it->second) {
            const DwgRecord* child = find(handle);
            if (child && child->type != 0x06) entity(*child, r.handle, paper);
        }
    }
    if (const DwgRecord* seqend = find(r.seqend)) entity(*seqend, r.handle, paper);
}

void Writer::entitiesOf(std::uint64_t block, bool paper) {
    const auto it = owned_.find(block);
    if (it == owned_.end()) return;
    for (const std::uint64_t handle : it->second) {
        const DwgRecord* r = find(handle);
        if (r && !isSubentity(r->type) && r->type != 0x04 && r->type != 0x05) {
            entity(*r, block, paper);
        }
    }
}

void Writer::block(const DwgRecord& record) {
    const bool space = record.handle == modelSpace_ || record.handle == paperSpace_;
    // BLOCK and ENDBLK carry no paper-space flag in DWG; their owner says where they are.
    const bool paper = false;
    // A block whose BLOCK or ENDBLK did not read still gets both, without a handle: the DXF
    // reader gives them one and reports it, and the block keeps its entities.
    DwgRecord missing;
    missing.isEntity = true;
    const DwgRecord* begin = find(record.blockEntity);
    if (begin == nullptr || begin->type != 0x04) begin = &missing;
    {
        common(*begin, "BLOCK", record.handle, paper);
        put(100, "AcDbBlockBegin");
        put(2, record.name);
        put(70, std::to_string(record.blockFlags & 0x1F));
        char buffer[32];
        const double coordinates[3] = {record.basePoint.x, record.basePoint.y,
                                       record.basePoint.z};
        for (int i = 0; i < 3; ++i) {
            const auto result = std::to_chars(buffer, buffer + sizeof buffer, coordinates[i]);
            put(10 + 10 * i, std::string_view(buffer, static_cast<std::size_t>(result.ptr - buffer)));
        }
        put(3, record.name);
        put(1, record.xrefPath);
        tags(begin->xdata);
    }
    if (!space) entitiesOf(record.handle, false);
    const DwgRecord* end = find(record.endblkEntity);
    if (end == nullptr || end->type != 0x05) end = &missing;
    {
        common(*end, "ENDBLK", record.handle, paper);
        put(100, "AcDbBlockEnd");
        tags(end->xdata);
    }
}

// Anonymous blocks are stored by their letter alone ("*D", "*U"); DXF numbers them, and
// paper spaces other than the active one are "*Paper_Space0", "*Paper_Space1", ... The two
// spaces are the last two links of the block table.
void Writer::nameBlocks() {
    for (const std::uint64_t handle : order_) {
        const DwgRecord& control = records_.at(handle);
        if (control.type == 0x30 && control.entries.size() >= 2) {
            modelSpace_ = control.entries[control.entries.size() - 2];
            paperSpace_ = control.entries.back();
            break;
        }
    }
    for (const std::uint64_t handle : order_) {
        const DwgRecord& r = records_.at(handle);
        if (r.type != 0x31) continue;
        if (modelSpace_ == 0 && r.name == "*Model_Space") modelSpace_ = r.handle;
        if (paperSpace_ == 0 && r.name == "*Paper_Space") paperSpace_ = r.handle;
    }
    // Names that already carry their number keep it; a bare one takes the next free number.
    std::unordered_set<std::string> taken;
    for (const std::uint64_t handle : order_) {
        const DwgRecord& r = records_.at(handle);
        if (r.type == 0x31) taken.insert(r.name);
    }
    const auto numbered = [&taken](const std::string& prefix, int first) {
        for (int n = first;; ++n) {
            std::string name = prefix + std::to_string(n);
            if (taken.insert(name).second) return name;
        }
    };
    for (const std::uint64_t handle : order_) {
        DwgRecord& r = records_.at(handle);
        if (r.type != 0x31) continue;
        if (r.handle == modelSpace_) {
            r.name = "*Model_Space";
        } else if (r.handle == paperSpace_) {
            r.name = "*Paper_Space";
        } else if (r.name == "*Paper_Space" || r.name == "*Model_Space") {
            r.name = numbered("*Paper_Space", 0);
        } else if (r.name.size() == 2 && r.name[0] == '*') {
            r.name = numbered(r.name, 1);
        }
    }
    for (const std::uint64_t handle : order_) {
        DwgRecord& r = records_.at(handle);
        if (r.type != 0x31) continue;
        for (DwgTag& tag : r.tags) {
            if (tag.code == 2 && tag.nameOf == 0) tag.value = r.name;
        }
    }
}

std::string Writer::write() {
    // Which block each entity is drawn in, and what each INSERT or POLYLINE owns.
    nameBlocks();
    for (const std::uint64_t handle : order_) {
        const DwgRecord& control = records_.at(handle);
        if (control.type == 0x38) {
            linetypes_ = control.entries;
            break;
        }
    }
    for (const std::uint64_t handle : order_) {
        DwgRecord& r = records_.at(handle);
        if (!r.isEntity) continue;
        if (r.entityMode == 1) r.owner = paperSpace_;
        if (r.entityMode == 2) r.owner = modelSpace_;
        owned_[r.owner].push_back(handle);
    }

    // About as many bytes of text as the file has of records, twice over.
    out_.reserve(layout_.objects.size() * 160);
    std::uint64_t seed = 0;
    for (const DwgMapEntry& entry : layout_.objects) seed = std::max(seed, entry.handle);
    put(0, "SECTION");
    put(2, "HEADER");
    put(9, "$ACADVER");
    put(1, layout_.acadVer);
    put(9, "$DWGCODEPAGE");
    put(3, layout_.codePageName.empty() ? "ANSI_1252" : layout_.codePageName);
    put(9, "$HANDSEED");
    put(5, hex(std::max(seed + 1, header_.handseed)));
    for (const DwgHeaderVariable& variable : header_.variables) {
        // A variable naming a record that did not read is left to the DXF reader's default.
        const bool named = std::all_of(variable.tags.begin(), variable.tags.end(),
                                       [this](const DwgTag& t) {
                                           return t.nameOf == 0 || !nameOf(t.nameOf).empty();
                                       });
        if (!named) continue;
        put(9, variable.name);
        tags(variable.tags);
    }
    put(0, "ENDSEC");

    if (!layout_.classes.empty()) {
        put(0, "SECTION");
        put(2, "CLASSES");
        for (const DwgClass& cls : layout_.classes) {
            put(0, "CLASS");
            put(1, cls.dxfName);
            put(2, cls.cppName);
            put(3, cls.appName);
            put(90, std::to_string(cls.proxyFlags));
            put(280, cls.wasZombie ? "1" : "0");
            put(281, cls.isEntity ? "1" : "0");
        }
        put(0, "ENDSEC");
    }

    put(0, "SECTION");
    put(2, "TABLES");
    static constexpr std::string_view kTables[] = {"VPORT", "LTYPE",    "LAYER",
                                                   "STYLE", "VIEW",     "UCS",
                                                   "APPID", "DIMSTYLE", "BLOCK_RECORD"};
    for (const std::string_view table : kTables) {
        for (const std::uint64_t handle : order_) {
            const DwgRecord& control = records_.at(handle);
            if (!control.isControl || control.dxfName != table) continue;
            std::vector<const DwgRecord*> entries;
            for (const std::uint64_t entry : control.entries) {
                const DwgRecord* record = find(entry);
                if (record && !record->isControl && record->dxfName == table &&
                    std::find(entries.begin(), entries.end(), record) == entries.end()) {
                    entries.push_back(record);
                }
            }
            put(0, "TABLE");
            put(2, table);
            put(5, hex(control.handle));
            put(330, "0");
            put(100, "AcDbSymbolTable");
            put(70, std::to_string(entries.size()));
            for (const DwgRecord* entry : entries) {
                DwgRecord copy = *entry;
                copy.owner = control.handle;
                object(copy);
            }
            put(0, "ENDTAB");
            break;
        }
    }
    put(0, "ENDSEC");

    put(0, "SECTION");
    put(2, "BLOCKS");
    for (const std::uint64_t handle : order_) {
        const DwgRecord& r = records_.at(handle);
        if (r.type == 0x31) block(r);
    }
    put(0, "ENDSEC");

    put(0, "SECTION");
    put(2, "ENTITIES");
    if (modelSpace_ != 0) entitiesOf(modelSpace_, false);
    if (paperSpace_ != 0) entitiesOf(paperSpace_, true);
    put(0, "ENDSEC");

    put(0, "SECTION");
    put(2, "OBJECTS");
    const DwgRecord* root = find(header_.namedObjects);
    if (root && root->type != 0x2A) root = nullptr;
    for (const std::uint64_t handle : order_) {
        if (root) break;
        const DwgRecord& r = records_.at(handle);
        if (r.type == 0x2A && r.owner == 0) {
            root = &r;
            break;
        }
    }
    if (root) object(*root);
    static constexpr std::string_view kTableTypes[] = {"VPORT", "LTYPE", "LAYER",    "STYLE",
                                                       "VIEW",  "UCS",   "APPID",    "DIMSTYLE",
                                                       "BLOCK_RECORD"};
    for (const std::uint64_t handle : order_) {
        const DwgRecord& r = records_.at(handle);
        if (&r == root || r.isEntity || r.isControl) continue;
        if (std::find(std::begin(kTableTypes), std::end(kTableTypes), r.dxfName) !=
            std::end(kTableTypes)) {
            continue;
        }
        object(r);
    }
    put(0, "ENDSEC");
    put(0, "EOF");
    return std::move(out_);
}

}  // namespace

std::optional<DwgError> DwgTranslator::translate(std::string_view bytes, DwgTranslation& out) {
    if (auto error = readFileLayout(bytes, out.layout)) return error;
    DwgObjectDecoder decoder(bytes, out.layout);
    std::unordered_map<std::uint64_t, DwgRecord> records;
    records.reserve(out.layout.objects.size());
    std::vector<std::uint64_t> order;
    DwgRecord record;
    for (const DwgMapEntry& entry : out.layout.objects) {
        const auto outcome = decoder.decode(entry, record);
        if (!decoder.checkValueMatched()) ++out.checkValueMismatches;
        const std::string census = decoder.typeName(record.type);
        switch (outcome) {
            case DwgObjectDecoder::Outcome::Damaged:
                return DwgError{static_cast<std::uint64_t>(entry.offset), decoder.error()};
            case DwgObjectDecoder::Outcome::Unreadable:
                ++out.unreadable;
                if (out.unreadableMessages.size() < 10) {
                    out.unreadableMessages.push_back(decoder.error());
                }
                ++out.notRead[census.empty() ? record.dxfName : census];
                continue;
            case DwgObjectDecoder::Outcome::NotDecoded:
                ++out.notRead[census.empty() ? record.dxfName : census];
                continue;
            case DwgObjectDecoder::Outcome::Decoded: break;
        }
        if (records.contains(record.handle)) continue;  // a handle listed twice reads once
        ++out.read[census];
        order.push_back(record.handle);
        records.emplace(record.handle, std::move(record));
    }
    std::sort(order.begin(), order.end());
    const DwgHeaderVariables header = readHeaderVariables(bytes, out.layout);
    if (!header.complete) out.layout.warnings.push_back("the header variables do not read");
    out.dxf = Writer(out.layout, header, records, std::move(order)).write();
    return std::nullopt;
}

}  // namespace cad::db::dwg
