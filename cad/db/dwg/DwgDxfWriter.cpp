// The DXF text of decoded DWG records, section by section.
#include "cad/db/dwg/DwgDxfWriter.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <thread>
#include <unordered_set>

namespace cad::db::dwg {
namespace {

bool isSubentity(int type) {
    return type == 0x02 || type == 0x06 || (type >= 0x0A && type <= 0x0E);
}

// Below this many entities in model space a second thread costs more than it saves.
constexpr std::size_t kSplitFrom = 8192;

}  // namespace

void DwgDxfWriter::common(const DwgRecord& r, std::string_view type, std::uint64_t owner,
                          bool paper) {
    put(0, type);
    // Dimension styles carry their handle under 105, every other record under 5.
    if (r.handle != 0) putHandle(type == "DIMSTYLE" ? 105 : 5, r.handle);
    if (!r.reactors.empty()) {
        put(102, "{ACAD_REACTORS");
        for (const std::uint64_t reactor : r.reactors) putHandle(330, reactor);
        put(102, "}");
    }
    if (r.xdictionary != 0) {
        put(102, "{ACAD_XDICTIONARY");
        putHandle(360, r.xdictionary);
        put(102, "}");
    }
    putHandle(330, owner);
    if (!r.isEntity) return;
    put(100, "AcDbEntity");
    if (paper) put(67, "1");
    const std::string_view layer = nameOf(r.layer);
    put(8, layer.empty() ? "0" : layer);
    if (r.linetype != 0) {
        if (const std::string_view linetype = nameOf(r.linetype); !linetype.empty())
            put(6, linetype);
    } else if (!r.linetypeName.empty()) {
        put(6, r.linetypeName);
    }
    if (r.color != 256) putInteger(62, r.color);
    if (layout_.version == DwgVersion::R2000 && r.lineweight != -1) {
        putInteger(370, r.lineweight);
    }
    if (r.linetypeScale != 1.0) {
        char buffer[32];
        const auto result = std::to_chars(buffer, buffer + sizeof buffer, r.linetypeScale);
        put(48, std::string_view(buffer, static_cast<std::size_t>(result.ptr - buffer)));
    }
    if (r.invisible) put(60, "1");
}

void DwgDxfWriter::tags(const std::vector<DwgTag>& list) {
    for (const DwgTag& tag : list) {
        switch (tag.kind) {
            case DwgTag::Kind::Text:
                put(tag.code, tag.text);
                break;
            case DwgTag::Kind::Marker:
                put(tag.code, tag.marker);
                break;
            case DwgTag::Kind::Integer:
                putInteger(tag.code, tag.integer);
                break;
            case DwgTag::Kind::Real:
                putReal(tag.code, tag.real);
                break;
            case DwgTag::Kind::Handle:
                putHandle(tag.code, tag.handle);
                break;
            case DwgTag::Kind::Name:
                if (const std::string_view name = nameOf(tag.handle); !name.empty()) {
                    put(tag.code, name);
                }
                break;
        }
    }
}

void DwgDxfWriter::object(const DwgRecord& r) {
    common(r, r.dxfName, r.owner, false);
    tags(r.tags);
    tags(r.xdata);
}

const DwgRecord* DwgDxfWriter::load(Ref ref) {
    if (!isPending(ref)) return &records_[ref];
    Pending& pending = pending_[ref - base_];
    const auto outcome =
        decoder_.decode(layout_.objects[pending.map], loaded_, DwgObjectDecoder::Pass::Deferred);
    const bool first = !pending.decoded;
    pending.decoded = true;
    if (outcome == DwgObjectDecoder::Outcome::Decoded) {
        if (first) ++readByType_[pending.type];
        return &loaded_;
    }
    if (first) {
        if (outcome == DwgObjectDecoder::Outcome::Unreadable) {
            ++translation_.unreadable;
            unreadable_.emplace_back(pending.map, decoder_.error());
        }
        notRead(loaded_.type, loaded_.dxfName);
    }
    return nullptr;
}

void DwgDxfWriter::notRead(int type, std::string_view dxfName) {
    const std::string census = decoder_.typeName(type);
    ++translation_.notRead[census.empty() ? std::string(dxfName) : census];
}

void DwgDxfWriter::entity(Ref ref, std::uint64_t owner, bool paper) {
    if (const DwgRecord* r = load(ref)) entity(*r, owner, paper);
}

void DwgDxfWriter::entity(const DwgRecord& r, std::uint64_t owner, bool paper) {
    common(r, r.dxfName, owner, paper);
    tags(r.tags);
    tags(r.xdata);
    if (r.type != 0x07 && r.type != 0x08 && !(r.type >= 0x0F && r.type <= 0x10) &&
        !(r.type >= 0x1D && r.type <= 0x1E)) {
        return;
    }
    // What an INSERT or POLYLINE owns follows it, closed by its SEQEND. Loading a child
    // reuses the buffer `r` may stand in, so what is needed of it is taken first.
    const std::uint64_t handle = r.handle;
    const std::uint64_t seqend = r.seqend;
    if (const auto it = owned_.find(handle); it != owned_.end()) {
        for (const Ref child : it->second) {
            if (typeOf(child) != 0x06) entity(child, handle, paper);
        }
    }
    if (const DwgRecord* end = find(seqend)) entity(*end, handle, paper);
}

void DwgDxfWriter::entitiesOf(std::uint64_t block, bool paper, std::size_t from, std::size_t to) {
    const auto it = owned_.find(block);
    if (it == owned_.end()) return;
    for (std::size_t i = from; i < it->second.size() && i < to; ++i) {
        const Ref ref = it->second[i];
        const int type = typeOf(ref);
        if (!isSubentity(type) && type != 0x04 && type != 0x05) entity(ref, block, paper);
    }
}

void DwgDxfWriter::block(const DwgRecord& record) {
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
        putInteger(70, record.blockFlags & 0x1F);
        char buffer[32];
        const double coordinates[3] = {record.basePoint.x, record.basePoint.y, record.basePoint.z};
        for (int i = 0; i < 3; ++i) {
            const auto result = std::to_chars(buffer, buffer + sizeof buffer, coordinates[i]);
            put(10 + 10 * i,
                std::string_view(buffer, static_cast<std::size_t>(result.ptr - buffer)));
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
void DwgDxfWriter::nameBlocks() {
    for (const Ref index : stored_) {
        const DwgRecord& control = records_[index];
        if (control.type == 0x30 && control.entries.size() >= 2) {
            modelSpace_ = control.entries[control.entries.size() - 2];
            paperSpace_ = control.entries.back();
            break;
        }
    }
    for (const Ref index : stored_) {
        const DwgRecord& r = records_[index];
        if (r.type != 0x31) continue;
        if (modelSpace_ == 0 && r.name == "*Model_Space") modelSpace_ = r.handle;
        if (paperSpace_ == 0 && r.name == "*Paper_Space") paperSpace_ = r.handle;
    }
    // Names that already carry their number keep it; a bare one takes the next free number.
    std::unordered_set<std::string> taken;
    for (const Ref index : stored_) {
        const DwgRecord& r = records_[index];
        if (r.type == 0x31) taken.insert(r.name);
    }
    const auto numbered = [&taken](const std::string& prefix, int first) {
        for (int n = first;; ++n) {
            std::string name = prefix + std::to_string(n);
            if (taken.insert(name).second) return name;
        }
    };
    for (const Ref index : stored_) {
        DwgRecord& r = records_[index];
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
    for (const Ref index : stored_) {
        DwgRecord& r = records_[index];
        if (r.type != 0x31) continue;
        for (DwgTag& tag : r.tags) {
            if (tag.code == 2 && tag.kind == DwgTag::Kind::Text) tag.text = r.name;
        }
    }
}

std::string DwgDxfWriter::write() {
    // Which block each entity is drawn in, and what each INSERT or POLYLINE owns.
    nameBlocks();
    for (const Ref index : stored_) {
        const DwgRecord& control = records_[index];
        if (control.type == 0x38) {
            linetypes_ = control.entries;
            break;
        }
    }
    const auto ownerOf = [this](int entityMode, std::uint64_t owner) {
        return entityMode == 1 ? paperSpace_ : entityMode == 2 ? modelSpace_ : owner;
    };
    for (const Ref ref : order_) {
        if (isPending(ref)) {
            Pending& p = pending_[ref - base_];
            p.owner = ownerOf(p.entityMode, p.owner);
            owned_[p.owner].push_back(ref);
            continue;
        }
        DwgRecord& r = records_[ref];
        if (!r.isEntity) continue;
        r.owner = ownerOf(r.entityMode, r.owner);
        owned_[r.owner].push_back(ref);
    }

    // Decoding and writing the entities is most of the work: the second half of a large model
    // space is written on a second thread meanwhile, its text appended in its place.
    std::size_t split = static_cast<std::size_t>(-1);
    std::optional<Half> half;
    std::thread helper;
    if (const auto it = owned_.find(modelSpace_);
        modelSpace_ != 0 && it != owned_.end() && it->second.size() >= kSplitFrom) {
        split = it->second.size() / 2;
        half.emplace(decoder_);
        // Made here, before this writer goes on and changes what it would copy.
        std::unique_ptr<DwgDxfWriter> second(new DwgDxfWriter(*this, *half));
        helper = std::thread([&half, split, second = std::move(second)] {
            try {
                second->text_.reserve(second->layout_.objects.size() * 112 + 65536);
                second->entitiesOf(second->modelSpace_, false, split);
                half->text = std::move(second->text_);
            } catch (...) {
                half->failure = std::current_exception();
            }
        });
    }

    // Room for the text of every record at once (a drawing of lines takes some 170 bytes a
    // record): growing it on the way would copy all that was written. Room not written to
    // costs nothing.
    text_.reserve(layout_.objects.size() * 224 + 65536);
    std::uint64_t seed = 0;
    for (const DwgMapEntry& entry : layout_.objects) seed = std::max(seed, entry.handle);
    put(0, "SECTION");
    put(2, "HEADER");
    put(9, "$ACADVER");
    put(1, layout_.acadVer);
    put(9, "$DWGCODEPAGE");
    put(3, layout_.codePageName.empty() ? "ANSI_1252" : layout_.codePageName);
    put(9, "$HANDSEED");
    putHandle(5, std::max(seed + 1, header_.handseed));
    for (const DwgHeaderVariable& variable : header_.variables) {
        // A variable naming a record that did not read is left to the DXF reader's default.
        const bool named =
            std::all_of(variable.tags.begin(), variable.tags.end(), [this](const DwgTag& t) {
                return t.kind != DwgTag::Kind::Name || !nameOf(t.handle).empty();
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
            putInteger(90, cls.proxyFlags);
            put(280, cls.wasZombie ? "1" : "0");
            put(281, cls.isEntity ? "1" : "0");
        }
        put(0, "ENDSEC");
    }

    put(0, "SECTION");
    put(2, "TABLES");
    static constexpr std::string_view kTables[] = {
        "VPORT", "LTYPE", "LAYER", "STYLE", "VIEW", "UCS", "APPID", "DIMSTYLE", "BLOCK_RECORD"};
    for (const std::string_view table : kTables) {
        for (const Ref index : stored_) {
            const DwgRecord& control = records_[index];
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
            putHandle(5, control.handle);
            put(330, "0");
            put(100, "AcDbSymbolTable");
            putInteger(70, static_cast<std::int64_t>(entries.size()));
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
    for (const Ref index : stored_) {
        const DwgRecord& r = records_[index];
        if (r.type == 0x31) block(r);
    }
    put(0, "ENDSEC");

    put(0, "SECTION");
    put(2, "ENTITIES");
    if (modelSpace_ != 0) entitiesOf(modelSpace_, false, 0, split);
    if (helper.joinable()) {
        helper.join();
        if (half->failure) std::rethrow_exception(half->failure);
        text_ += half->text;
        half->text = {};
        translation_.unreadable += half->census.unreadable;
        for (const auto& [type, count] : half->census.notRead) translation_.notRead[type] += count;
        for (const auto& [type, count] : half->read) readByType_[type] += count;
        for (auto& message : half->unreadable) unreadable_.push_back(std::move(message));
    }
    if (paperSpace_ != 0) entitiesOf(paperSpace_, true);
    put(0, "ENDSEC");

    put(0, "SECTION");
    put(2, "OBJECTS");
    const DwgRecord* root = find(header_.namedObjects);
    if (root && root->type != 0x2A) root = nullptr;
    for (const Ref index : stored_) {
        if (root) break;
        const DwgRecord& r = records_[index];
        if (r.type == 0x2A && r.owner == 0) {
            root = &r;
            break;
        }
    }
    if (root) object(*root);
    static constexpr std::string_view kTableTypes[] = {
        "VPORT", "LTYPE", "LAYER", "STYLE", "VIEW", "UCS", "APPID", "DIMSTYLE", "BLOCK_RECORD"};
    for (const Ref index : stored_) {
        const DwgRecord& r = records_[index];
        if (&r == root || r.isEntity || r.isControl) continue;
        if (std::find(std::begin(kTableTypes), std::end(kTableTypes), r.dxfName) !=
            std::end(kTableTypes)) {
            continue;
        }
        object(r);
    }
    put(0, "ENDSEC");
    put(0, "EOF");
    // Entities that nothing wrote are still read, so the census counts them as the file has
    // them.
    for (Ref ref = base_; ref - base_ < pending_.size(); ++ref) {
        if (!pending_[ref - base_].decoded) load(ref);
    }
    return std::move(text_);
}

}  // namespace cad::db::dwg
