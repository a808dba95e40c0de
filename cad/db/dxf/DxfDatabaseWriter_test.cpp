// Writing drawings: round trips that keep every object, the layout of the sections other
// programs rely on, Korean text in code page 949, R14 output, and what ezdxf and LibreCAD make
// of the files.
#include "cad/db/dxf/DxfDatabaseWriter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

#include "cad/db/Attribute.h"
#include "cad/db/Audit.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Group.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/Line.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/ObjectSlot.h"
#include "cad/db/RawEntity.h"
#include "cad/db/RawObject.h"
#include "cad/db/SymbolTable.h"
#include "cad/db/SymbolTableRecord.h"
#include "cad/db/TestDrawing.h"
#include "cad/db/Text.h"
#include "cad/db/Xrecord.h"
#include "cad/db/dxf/StructureLoader.h"
#include "cad/db/dxf/TagReader.h"
#include "cad/sys/CodePage.h"
#include "cad/sys/TestTempFolder.h"
#include "tests/support/ExternalReaders.h"

namespace cad::db::dxf {
namespace {

using namespace testing_support;

const std::filesystem::path kCorpus = corpusFolder();

// What a round trip must keep, object by object (keyed by handle): the type, xrecord chains,
// block previews, and the tags of everything kept raw.
std::map<Handle, std::string> fingerprint(Database& db) {
    std::map<Handle, std::string> prints;
    for (const ObjectId id : db.objectIds()) {
        if (id.isErased()) continue;
        const DbObject* object = id.slot()->object.get();
        std::ostringstream out;
        out << object->dxfName();
        if (const auto* xrecord = dynamic_cast<const Xrecord*>(object)) {
            for (const ResBuf& item : xrecord->rbChain()) {
                out << " " << item.code << ":";
                std::visit(
                    [&](const auto& value) {
                        using T = std::decay_t<decltype(value)>;
                        if constexpr (std::is_same_v<T, ObjectId>) {
                            out << value.handle().toHex();
                        } else if constexpr (std::is_same_v<T, ge::Point3d>) {
                            out << value.x << "," << value.y << "," << value.z;
                        } else if constexpr (std::is_same_v<T, BinaryChunk>) {
                            out << value.bytes.size() << "b";
                        } else {
                            out << value;
                        }
                    },
                    item.value);
            }
        } else if (const auto* block = dynamic_cast<const BlockTableRecord*>(object)) {
            out << " preview " << std::hash<std::string>{}(block->previewIcon());
        } else if (const auto* raw = dynamic_cast<const RawObject*>(object)) {
            for (const RawTag& tag : raw->tags()) out << " " << tag.code << "=" << tag.value;
        } else if (const auto* rawEntity = dynamic_cast<const RawEntity*>(object)) {
            for (const RawTag& tag : rawEntity->tags()) out << " " << tag.code << "=" << tag.value;
        }
        for (const RawTag& tag : object->xdata()) out << " x" << tag.code << "=" << tag.value;
        prints.emplace(id.handle(), out.str());
    }
    return prints;
}

class RoundTrip : public testing::TestWithParam<std::string> {};

// What is written reads back with every object, nothing to repair and nothing for the audit to
// find, and loads in ezdxf.
TEST_P(RoundTrip, KeepsEveryObjectAndLoadsElsewhere) {
    sys::TestTempFolder folder;
    Database db(false);
    ASSERT_EQ(db.readDwgFile((kCorpus / GetParam()).string()), ErrorStatus::eOk);
    std::vector<std::string> written;
    for (const DxfVersion version : {DxfVersion::R2000, DxfVersion::R14}) {
        SCOPED_TRACE(std::string(acadVer(version)));
        const std::string path = folder.file(std::string(acadVer(version)) + ".dxf");
        ASSERT_EQ(db.saveAs(path, version), ErrorStatus::eOk);
        EXPECT_EQ(db.openObjectCount(), 0);
        written.push_back(path);
        Database back(false);
        ASSERT_EQ(back.readDwgFile(path), ErrorStatus::eOk) << back.lastErrorMessage();
        EXPECT_TRUE(back.loadIssues().empty()) << back.loadIssues().front().message;
        if (version != DxfVersion::R2000) continue;
        const std::vector<AuditIssue> found = audit(back);
        EXPECT_TRUE(found.empty()) << found.front().message;
        const auto before = fingerprint(db);
        const auto after = fingerprint(back);
        EXPECT_EQ(after.size(), before.size());
        for (const auto& [handle, print] : before) {
            const auto it = after.find(handle);
            EXPECT_EQ(it == after.end() ? "(missing)" : it->second, print) << handle.toHex();
        }
    }
    // That drawing's layer names hold \U+ escapes, which ezdxf refuses in the original too.
    if (GetParam() == "ezdxf__ASCII_R12.dxf" || !vantor::test::ezdxfAvailable()) return;
    const auto audit = vantor::test::ezdxfAudit(written);
    std::istringstream lines(audit.output);
    std::string r2000;
    std::string r14;
    std::getline(lines, r2000);
    std::getline(lines, r14);
    EXPECT_TRUE(r2000.starts_with("errors 0 ")) << audit.output;
    EXPECT_TRUE(r14.starts_with("errors 0 ")) << audit.output;
}

INSTANTIATE_TEST_SUITE_P(Samples, RoundTrip, testing::ValuesIn(corpusDrawings()), corpusRowName);

TEST(BinaryText, LineBreaksInValuesStayInOneValue) {
    // Found by fuzzing: a binary file's strings may hold line breaks, which a text file must
    // not carry as they are.
    std::string bytes("AutoCAD Binary DXF\r\n\x1a\0", 22);
    const auto tag = [&](std::int16_t code, std::string_view value) {
        bytes += static_cast<char>(code & 0xFF);
        bytes += static_cast<char>(code >> 8);
        bytes += value;
    };
    tag(0, std::string_view("SECTION\0", 8));
    tag(2, std::string_view("HEADER\0", 7));
    tag(9, std::string_view("$USER\nNAME\0", 11));
    tag(1, std::string_view("two\nlines\0", 10));
    tag(0, std::string_view("ENDSEC\0", 7));
    tag(0, std::string_view("EOF\0", 4));
    Database db(false);
    ASSERT_EQ(db.readDxfBytes(bytes, "binary.dxf"), ErrorStatus::eOk) << db.lastErrorMessage();
    sys::TestTempFolder folder;
    ASSERT_EQ(db.saveAs(folder.file("text.dxf")), ErrorStatus::eOk);
    Database back(false);
    ASSERT_EQ(back.readDwgFile(folder.file("text.dxf")), ErrorStatus::eOk)
        << back.lastErrorMessage();
    EXPECT_EQ(back.header().text("$USER\nNAME"), "two\nlines");
}

// Found by fuzzing: a subclass marker of a binary file holding a line break, written back as
// it stood, cut a layer record in two in the text file, which then read as another drawing.
TEST(BinaryText, MarkersWithLineBreaksReadBackAsTheSameDrawing) {
    std::ifstream in(kCorpus / "ezdxf__bin_dxf_r2000.dxf", std::ios::binary);
    const std::string original{std::istreambuf_iterator<char>(in), {}};
    const std::string layerZero = std::string(
        "LAYER\0\x05\x00"
        "27\0",
        10);
    const std::size_t record = original.find(layerZero);
    ASSERT_NE(record, std::string::npos);
    const std::pair<const char*, std::string> rows[] = {
        {"line feed", "AcDbLayer\nTableRecord"},
        {"carriage return and line feed", "AcDbSymbolTableRecord\r\n"},
        {"byte 0x1A", "AcDbLayerTableRecord\x1A"},
    };
    for (const auto& [name, marker] : rows) {
        SCOPED_TRACE(name);
        std::string bytes = original;
        const std::string known =
            marker.starts_with("AcDbLayer") ? "AcDbLayerTableRecord" : "AcDbSymbolTableRecord";
        const std::size_t at = bytes.find(known + '\0', record);
        ASSERT_NE(at, std::string::npos);
        bytes.replace(at, known.size(), marker);

        Database binary(false);
        ASSERT_EQ(binary.readDxfBytes(bytes, "binary.dxf"), ErrorStatus::eOk)
            << binary.lastErrorMessage();
        sys::TestTempFolder folder;
        ASSERT_EQ(binary.saveAs(folder.file("text.dxf")), ErrorStatus::eOk);
        Database text(false);
        ASSERT_EQ(text.readDwgFile(folder.file("text.dxf")), ErrorStatus::eOk)
            << text.lastErrorMessage();
        EXPECT_TRUE(text.loadIssues().empty()) << text.loadIssues().front().message;
        EXPECT_EQ(fingerprint(text), fingerprint(binary));
        const auto layers = [](Database& db) {
            std::vector<std::string> names;
            for (const ObjectId id :
                 open<SymbolTable>(db.layerTableId(), OpenMode::ForRead)->recordIds())
                names.push_back(open<SymbolTableRecord>(id, OpenMode::ForRead)->name());
            return names;
        };
        EXPECT_EQ(layers(text), layers(binary));
    }
}

// Found by fuzzing: damaged drawings that load, and whose written file must load again with
// nothing left to repair (a repair reported at every load would never go away).
TEST(FuzzFindings, WrittenFilesLoadWithoutRepairs) {
    const std::pair<const char*, std::string> rows[] = {
        {"xrecord link holding no handle",
         "  0\nSECTION\n  2\nOBJECTS\n  0\nXRECORD\n  5\n1F\n335\nC+\n  0\nENDSEC\n  0\nEOF\n"},
        // A dictionary whose owner names nothing, listed only by an object it owns itself:
        // handed to that one, then cut from the cycle, it must not be handed over again.
        {"listed only by what it owns",
         "  0\nSECTION\n  2\nOBJECTS\n  0\nDICTIONARY\n  5\nE\n330\nA\n100\nAcDbDictionary\n"
         "  3\nByLayer\n350\n20\n  0\nMATERIAL\n  5\n20\n330\nE\n100\nAcDbMaterXX\n350\nE\n"
         "  0\nENDSEC\n  0\nEOF\n"},
        // An object without a handle, kept as tags, links to a handle nothing has: the handle
        // it is given must not be that one, or the link would name the object itself.
        {"kept link to the handle a new object would take",
         std::string("AutoCAD Binary DXF\r\n\x1a\0", 22) +
             std::string("\0\0SECTION\0\x02\0OBJECTS\0\0\0\0\x5E\x01"
                         "14\0\0\0ENDSEC\0\0\0EOF\0",
                         43)},
    };
    for (const auto& [name, bytes] : rows) {
        SCOPED_TRACE(name);
        Database db(false);
        ASSERT_EQ(db.readDxfBytes(bytes, "damaged.dxf"), ErrorStatus::eOk);
        for (const DxfVersion version : {DxfVersion::R2000, DxfVersion::R14}) {
            std::string text;
            std::vector<std::string> messages;
            ASSERT_EQ(DxfDatabaseWriter::write(db, version, text, messages), ErrorStatus::eOk);
            Database back(false);
            ASSERT_EQ(back.readDxfBytes(text, "written.dxf"), ErrorStatus::eOk);
            EXPECT_TRUE(back.loadIssues().empty()) << back.loadIssues().front().message;
        }
    }
}

// ---- A drawing made in memory ----

constexpr const char* kLayer = "배관";              // piping
constexpr const char* kBlock = "밸브-01";           // valve
constexpr const char* kText = "한글 텍스트 Ā";      // Ā is not in code page 949
constexpr const char* kRecordText = "게이트 밸브";  // gate valve
constexpr const char* kLongName = "a layer name far longer than thirty-one bytes";

// A small library drawing: a Korean layer, a block with a preview and an attribute definition
// inserted with its attribute, a group, an xrecord under the named objects, an erased line.
class MadeDrawing : public testing::Test {
protected:
    void SetUp() override {
        const ObjectId layer = addLayer(db_, kLayer, 3);
        addRecord(db_.layerTableId(), std::make_unique<LayerTableRecord>(), kLongName);
        block_ = addBlock(db_, kBlock);
        open<BlockTableRecord>(block_, OpenMode::ForWrite)->setPreviewIcon(std::string(300, 'Z'));
        append(block_, std::make_unique<Text>(ge::Point3d{1, 2, 0}, kText), layer);
        insert_ = append(db_.modelSpaceId(),
                         std::make_unique<BlockReference>(ge::Point3d{5, 5, 0}, block_));
        line_ =
            append(db_.modelSpaceId(), std::make_unique<Line>(ge::Point3d{}, ge::Point3d{1, 1, 0}));
        const ObjectId erased =
            append(db_.modelSpaceId(), std::make_unique<Line>(ge::Point3d{}, ge::Point3d{2, 0, 0}));
        ObjectId attribute;
        ASSERT_EQ(open<BlockReference>(insert_, OpenMode::ForWrite)
                      ->appendAttribute(
                          std::make_unique<Attribute>(ge::Point3d{5, 5, 0}, kRecordText, "NAME"),
                          attribute),
                  ErrorStatus::eOk);
        open<Entity>(erased, OpenMode::ForWrite)->erase();
        erasedHandle_ = erased.handle();

        auto group = std::make_unique<Group>("valves");
        ASSERT_EQ(group->append(line_), ErrorStatus::eOk);
        ASSERT_EQ(addGroup(db_, std::move(group), "VALVES", group_), ErrorStatus::eOk);

        auto xrecord = std::make_unique<Xrecord>();
        xrecord->setFromRbChain({ResBuf{1, std::string(kRecordText)}, ResBuf{40, 2.5},
                                 ResBuf{10, ge::Point3d{1, 2, 3}}, ResBuf{330, line_}});
        auto root = open<Dictionary>(db_.namedObjectsDictionaryId(), OpenMode::ForWrite);
        ASSERT_EQ(root->setAt("Adv data list", std::move(xrecord), xrecord_), ErrorStatus::eOk);
    }

    std::string save(DxfVersion version = DxfVersion::R2000) {
        const std::string path = folder_.file(std::string(acadVer(version)) + ".dxf");
        EXPECT_EQ(db_.saveAs(path, version), ErrorStatus::eOk) << db_.lastErrorMessage();
        EXPECT_EQ(db_.openObjectCount(), 0);
        return path;
    }

    // The written file through the lower reading stages only: independent of the database.
    struct Written {
        std::string bytes;
        TextArena arena;
        std::vector<Tag> tags;
        DxfStructure structure;
        TagSpan operator[](const TagRun& run) const {
            return TagSpan(tags).subspan(run.start, run.count);
        }
    };
    std::unique_ptr<Written> parse(const std::string& path) {
        auto written = std::make_unique<Written>();
        written->bytes = folder_.readBytes(std::filesystem::path(path).filename().string());
        EXPECT_FALSE(TagReader::read(written->bytes, written->tags, written->arena));
        EXPECT_FALSE(StructureLoader::load(written->tags, written->structure).has_value());
        return written;
    }

    static std::string valueOf(TagSpan item, int code) {
        for (const Tag& tag : item) {
            if (tag.code == code) return std::string(trimBlanks(tag.value));
        }
        return {};
    }

    sys::TestTempFolder folder_;
    Database db_{true};
    ObjectId block_, insert_, line_, group_, xrecord_;
    Handle erasedHandle_;
};

TEST_F(MadeDrawing, SectionsAreLaidOutAsTheHostExpects) {
    const auto written = parse(save());
    const DxfStructure& s = written->structure;
    ASSERT_EQ(s.acadVersion, "AC1015");
    EXPECT_EQ(s.codePageName, "ANSI_949");

    Handle largest;
    std::map<std::string, TagSpan> byHandle;
    for (const Section& section : s.sections) {
        for (const TagRun& run : section.items) {
            const TagSpan item = (*written)[run];
            const std::string handle = valueOf(item, item[0].value == "DIMSTYLE" ? 105 : 5);
            if (!handle.empty()) byHandle[handle] = item;
            if (const auto h = Handle::fromHex(handle); h && largest < *h) largest = *h;
            EXPECT_NE(handle, erasedHandle_.toHex()) << "erased objects are not written";
            for (const Tag& tag : item) {
                if (tag.code == 310) {
                    EXPECT_LE(tag.value.size(), 254u) << "127-byte chunks";
                }
            }
        }
    }
    const HeaderVariable* seed = s.variable("$HANDSEED");
    ASSERT_NE(seed, nullptr);
    EXPECT_GT(Handle::fromHex(seed->tags[0].value).value_or(Handle{}), largest);

    // The named-objects dictionary opens OBJECTS and lists what every drawing has.
    const Section* objects = s.section("OBJECTS");
    ASSERT_NE(objects, nullptr);
    const TagSpan root = (*written)[objects->items.front()];
    EXPECT_EQ(root[0].value, "DICTIONARY");
    EXPECT_EQ(valueOf(root, 330), "0");
    std::string keys;
    for (const Tag& tag : root) {
        if (tag.code == 3) keys += std::string(tag.value) + ";";
    }
    for (const char* key : {"ACAD_GROUP;", "ACAD_LAYOUT;", "ACAD_PLOTSTYLENAME;"})
        EXPECT_NE(keys.find(key), std::string::npos) << keys;

    // Layouts and their blocks name each other.
    const TagSpan model = byHandle.at(db_.modelSpaceId().handle().toHex());
    const TagSpan layout = byHandle.at(valueOf(model, 340));
    EXPECT_EQ(layout[0].value, "LAYOUT");
    bool backLink = false;
    for (const Tag& tag : layout)
        backLink = backLink || (tag.code == 330 && tag.value == valueOf(model, 5));
    EXPECT_TRUE(backLink);

    // The reference says attributes follow; they and the SEQEND are owned by it.
    const TagSpan insert = byHandle.at(insert_.handle().toHex());
    EXPECT_EQ(valueOf(insert, 66), "1");
    const Section* entities = s.section("ENTITIES");
    std::vector<std::string> after;
    bool seen = false;
    for (const TagRun& run : entities->items) {
        const TagSpan item = (*written)[run];
        if (seen && after.size() < 2)
            after.push_back(std::string(item[0].value) + " " + valueOf(item, 330));
        seen = seen || item.data() == insert.data();
    }
    const std::string owner = insert_.handle().toHex();
    EXPECT_EQ(after, (std::vector<std::string>{"ATTRIB " + owner, "SEQEND " + owner}));

    // Group members carry the group; xrecords carry their flag before the data.
    const TagSpan member = byHandle.at(line_.handle().toHex());
    EXPECT_EQ(valueOf(member, 102), "{ACAD_REACTORS");
    EXPECT_EQ(valueOf(member, 330), group_.handle().toHex());
    const TagSpan xrecord = byHandle.at(xrecord_.handle().toHex());
    const auto marker = std::find_if(xrecord.begin(), xrecord.end(),
                                     [](const Tag& tag) { return tag.code == 100; });
    ASSERT_NE(marker + 1, xrecord.end());
    EXPECT_EQ(marker[1].code, 280);
}

TEST_F(MadeDrawing, PaperSpaceEntitiesSaySo) {
    // Readers sort the entities section by the 67 flag, which an entity made in memory and
    // appended to paper space has not set.
    ObjectId sheetLine;
    open<BlockTableRecord>(db_.paperSpaceId(), OpenMode::ForWrite)
        ->appendEntity(std::make_unique<Line>(ge::Point3d{}, ge::Point3d{0, 1, 0}), sheetLine);
    const auto written = parse(save());
    std::map<std::string, std::string> flags;
    for (const TagRun& run : written->structure.section("ENTITIES")->items)
        flags[valueOf((*written)[run], 5)] = valueOf((*written)[run], 67);
    EXPECT_EQ(flags.at(sheetLine.handle().toHex()), "1");
    EXPECT_EQ(flags.at(line_.handle().toHex()), "");
}

TEST_F(MadeDrawing, ADeclaredCodePageThatCannotHoldTheNamesGivesWayTo949) {
    // Drawings from 2007 on often declare ANSI_1252 over Korean names.
    db_.setCodePage(sys::CodePage::Ansi1252);
    EXPECT_EQ(parse(save())->structure.codePageName, "ANSI_949");
    db_.setCodePage(sys::CodePage::Utf8);
    EXPECT_EQ(parse(save())->structure.codePageName, "ANSI_949");
    // With a name 949 lacks as well, escapes are unavoidable and the drawing's page stays.
    addLayer(db_, "Café", 7);
    EXPECT_EQ(parse(save())->structure.codePageName, "ANSI_1252");
}

TEST_F(MadeDrawing, KoreanTextIsWrittenInCodePage949AndReadsBackEqual) {
    const std::string path = save();
    const std::string bytes = folder_.readBytes("AC1015.dxf");
    EXPECT_NE(bytes.find(sys::utf8ToCp949(kLayer)), std::string::npos);
    EXPECT_NE(bytes.find("\\U+0100"), std::string::npos) << "what 949 lacks is escaped";

    Database back(false);
    ASSERT_EQ(back.readDwgFile(path), ErrorStatus::eOk);
    EXPECT_TRUE(lookUp(back.layerTableId(), kLayer).isValid());
    ObjectId record;
    open<Dictionary>(back.namedObjectsDictionaryId(), OpenMode::ForRead)
        ->getAt("ADV DATA LIST", record);
    auto xrecord = open<Xrecord>(record, OpenMode::ForRead);
    ASSERT_TRUE(xrecord);
    ASSERT_EQ(xrecord->rbChain().size(), 4u);
    EXPECT_EQ(*xrecord->rbChain()[0].text(), kRecordText);

    if (!vantor::test::ezdxfAvailable()) GTEST_SKIP() << "ezdxf is not installed";
    const auto names = vantor::test::runEzdxf(R"(
import sys, ezdxf
from ezdxf.lldxf.encoding import decode_dxf_unicode
doc = ezdxf.readfile(sys.argv[1])
layer, block = sys.argv[2], sys.argv[3]
print(layer in doc.layers)
print(block in doc.blocks)
print(decode_dxf_unicode([t.dxf.text for t in doc.blocks.get(block)][0]))
print([v for c, v in doc.rootdict['Adv data list'].tags if c == 1][0])
)",
                                              path, {kLayer, kBlock});
    EXPECT_EQ(names.output, "True\nTrue\n" + std::string(kText) + "\n" + kRecordText + "\n");
    const auto audit = vantor::test::ezdxfAudit(path);
    EXPECT_TRUE(audit.output.starts_with("errors 0 ")) << audit.output;
}

// A value may hold any character (a remark pasted with its line break, a binary file's
// string); the text file carries control characters and carets in their caret form, ezdxf
// keeps those escapes as they stand and audits the file clean.
TEST_F(MadeDrawing, ControlCharactersInValuesTakeTheirCaretFormAndReadBack) {
    const std::pair<const char*, std::string> rows[] = {
        {"line feed", "two\nlines"},
        {"carriage return", "cr\rhere"},
        {"tab", "a\tb"},
        {"caret", "2^3 ^J"},
        {"byte 0x1A",
         "eof\x1A"
         "end"},
    };
    std::vector<ObjectId> texts;
    ResBufChain chain;
    {
        auto space = open<BlockTableRecord>(db_.modelSpaceId(), OpenMode::ForWrite);
        for (const auto& [name, value] : rows) {
            ObjectId id;
            ASSERT_EQ(space->appendEntity(std::make_unique<Text>(ge::Point3d{}, value), id),
                      ErrorStatus::eOk);
            texts.push_back(id);
            chain.push_back(ResBuf{1, value});
        }
    }
    open<Xrecord>(xrecord_, OpenMode::ForWrite)->setFromRbChain(chain);
    const std::string path = save();
    const std::string bytes = folder_.readBytes("AC1015.dxf");
    for (const char* stored : {"two^Jlines", "cr^Mhere", "a^Ib", "2^ 3 ^ J", "eof^Zend"})
        EXPECT_NE(bytes.find(std::string("\n") + stored + "\n"), std::string::npos) << stored;

    Database back(false);
    ASSERT_EQ(back.readDwgFile(path), ErrorStatus::eOk) << back.lastErrorMessage();
    EXPECT_TRUE(back.loadIssues().empty());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        SCOPED_TRACE(rows[i].first);
        ObjectId id;
        ASSERT_EQ(back.getObjectId(id, false, texts[i].handle()), ErrorStatus::eOk);
        EXPECT_EQ(open<Text>(id, OpenMode::ForRead)->textString(), rows[i].second);
        ObjectId record;
        ASSERT_EQ(back.getObjectId(record, false, xrecord_.handle()), ErrorStatus::eOk);
        EXPECT_EQ(*open<Xrecord>(record, OpenMode::ForRead)->rbChain()[i].text(), rows[i].second);
    }

    if (!vantor::test::ezdxfAvailable()) GTEST_SKIP() << "ezdxf is not installed";
    const auto seen = vantor::test::runEzdxf(R"(
import sys, ezdxf
doc = ezdxf.readfile(sys.argv[1])
print('|'.join(t.dxf.text for t in doc.modelspace().query('TEXT')))
)",
                                             path);
    EXPECT_EQ(seen.output, "two^Jlines|cr^Mhere|a^Ib|2^ 3 ^ J|eof^Zend\n");
    const auto audit = vantor::test::ezdxfAudit(path);
    EXPECT_TRUE(audit.output.starts_with("errors 0 ")) << audit.output;
}

TEST_F(MadeDrawing, R14HasNoLayoutsAndNamesWhatItCannotHold) {
    const auto written = parse(save(DxfVersion::R14));
    EXPECT_EQ(written->structure.acadVersion, "AC1014");
    for (const Section& section : written->structure.sections) {
        for (const TagRun& run : section.items) {
            const TagSpan item = (*written)[run];
            EXPECT_NE(item[0].value, "LAYOUT");
            if (item[0].value == "BLOCK_RECORD") {
                EXPECT_EQ(valueOf(item, 340), "") << "no layout links";
                EXPECT_EQ(valueOf(item, 310), "") << "no block previews";
            }
        }
    }
    const std::vector<std::string>& messages = db_.saveMessages();
    const auto mentions = [&](const std::string& text) {
        return std::any_of(messages.begin(), messages.end(),
                           [&](const std::string& m) { return m.find(text) != std::string::npos; });
    };
    EXPECT_TRUE(mentions(std::string(kLongName) + "\": the name is 45 bytes long"));
    EXPECT_TRUE(mentions("R14 does not allow ' ' in names"));
    EXPECT_TRUE(mentions(std::string(kBlock) + "\": R14 keeps no block previews"));
    EXPECT_FALSE(mentions(kLayer)) << "Korean names fit";

    if (!vantor::test::ezdxfAvailable()) GTEST_SKIP() << "ezdxf is not installed";
    const auto audit = vantor::test::ezdxfAudit(folder_.file("AC1014.dxf"));
    EXPECT_NE(audit.output.find("errors 0 "), std::string::npos) << audit.output;
}

TEST_F(MadeDrawing, LibreCadRendersIt) {
    if (!vantor::test::librecadAvailable()) GTEST_SKIP() << "LibreCAD is not installed";
    vantor::test::ExternalRun run;
    const std::string pdf = vantor::test::librecadToPdf(save(), run);
    ASSERT_TRUE(std::filesystem::exists(pdf)) << run.output;
    EXPECT_GT(std::filesystem::file_size(pdf), 0u);
}

TEST_F(MadeDrawing, OnlyR2000AndR14AreWritten) {
    std::string text;
    std::vector<std::string> messages;
    EXPECT_EQ(DxfDatabaseWriter::write(db_, DxfVersion::R2018, text, messages),
              ErrorStatus::eVersionNotSupported);
    auto busy = open<Entity>(line_, OpenMode::ForWrite);
    EXPECT_EQ(DxfDatabaseWriter::write(db_, DxfVersion::R2000, text, messages),
              ErrorStatus::eWasOpenedForWrite);
}

}  // namespace
}  // namespace cad::db::dxf
