// The .vnf cache: its bytes against an independent construction of the layout, the path
// rule, currency by one-second write times, and damaged files refused.
#include "vantor/store/TreeCache.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "cad/sys/TestTempFolder.h"

namespace vantor {
namespace {

using cad::sys::TestTempFolder;

// The layout built by hand: raw fields first, then the text-mode translation a "w" stream
// applies to them (every LF stored as CR LF).
struct Layout {
    std::string raw;
    void int32(std::int32_t v) {
        for (int i = 0; i < 4; ++i)
            raw += static_cast<char>((static_cast<std::uint32_t>(v) >> (8 * i)) & 0xFF);
    }
    void counted(std::int32_t flag, std::int32_t length, const std::string& bytes) {
        int32(flag);
        int32(length);
        raw += bytes;
    }
    void decimal(const std::string& digits) {
        int32(static_cast<std::int32_t>(digits.size()));
        raw += digits;
    }
    std::string onDisk() const {
        std::string disk;
        for (char c : raw) disk += c == '\n' ? std::string("\r\n") : std::string(1, c);
        return disk;
    }
};

TreeCacheNode node(bool supplier, bool record, std::string name, std::string text, std::int64_t id,
                   std::int64_t parent) {
    TreeCacheNode n;
    n.supplier = supplier;
    n.record = record;
    n.drawingPath = "/lib/parts.dxf";
    n.name = std::move(name);
    n.libraryKey = supplier ? "Adv data list" : "User data list";
    n.recordText = std::move(text);
    n.id = id;
    n.parentId = parent;
    return n;
}

TEST(TreeCacheFile, BytesFollowTheLayout) {
    const std::string name26 = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const std::string name25 = name26.substr(0, 25);
    const std::string name27 = name26 + "_";
    std::vector<TreeCacheNode> nodes = {
        node(false, false, "User data list", "", 0x1F, 0xC),
        node(false, false, name26, "", 0x20, 0x1F),
        node(false, false, name25, "", 0x21, 0x1F),
        node(true, false, name27, "", -5, -12345),
        // "볼트" is four bytes in CP949; a ten-byte text has the length byte 0x0A.
        node(false, true, "볼트", "M10 x 1.25", 0x22, 0x20),
    };
    const std::vector<TreeCacheNode> written = nodes;

    Layout expected;
    expected.int32(5);
    auto entry = [&](int supplier, int record, std::int32_t nameFlag, std::int32_t nameLength,
                     const std::string& nameBytes, const std::string& text, const char* id,
                     const char* parent) {
        expected.int32(supplier);
        expected.int32(record);
        expected.counted(0, 14, "/lib/parts.dxf");
        expected.counted(nameFlag, nameLength, nameBytes);
        expected.counted(0, supplier ? 13 : 14, supplier ? "Adv data list" : "User data list");
        expected.counted(0, static_cast<std::int32_t>(text.size()), text);
        expected.decimal(id);
        expected.decimal(parent);
    };
    entry(0, 0, 0, 14, "User data list", "", "31", "12");
    entry(0, 0, 1, 25, name26, "", "32", "31");
    entry(0, 0, 0, 25, name25, "", "33", "31");
    entry(1, 0, 0, 27, name27, "", "-5", "-12345");
    entry(0, 1, 0, 4, "\xBA\xBC\xC6\xAE", "M10 x 1.25", "34", "32");

    TestTempFolder folder;
    ASSERT_TRUE(TreeCache::write(folder.file("parts.vnf"), nodes));
    EXPECT_TRUE(nodes.empty()) << "writing consumes the list";
    EXPECT_EQ(folder.readBytes("parts.vnf"), expected.onDisk());

    std::vector<TreeCacheNode> read;
    ASSERT_TRUE(TreeCache::readFile(folder.file("parts.vnf"), read));
    EXPECT_EQ(read, written);
}

// Control characters in names and record texts (a remark pasted with its line break) would
// break the counted fields in text mode; they go in their caret form and read back.
TEST(TreeCacheFile, ControlCharactersGoInCaretFormAndReadBack) {
    std::vector<TreeCacheNode> nodes = {
        node(false, true, "line\nfeed", "cr\rtab\t", 2, 1),
        node(false, true, "caret^", "eof\x1A^A", 3, 1),
    };
    const std::vector<TreeCacheNode> written = nodes;
    TestTempFolder folder;
    ASSERT_TRUE(TreeCache::write(folder.file("parts.vnf"), nodes));
    const std::string bytes = folder.readBytes("parts.vnf");
    for (const char* stored : {"line^Jfeed", "cr^Mtab^I", "caret^ ", "eof^Z^ A"})
        EXPECT_NE(bytes.find(stored), std::string::npos) << stored;
    std::vector<TreeCacheNode> read;
    ASSERT_TRUE(TreeCache::readFile(folder.file("parts.vnf"), read));
    EXPECT_EQ(read, written);
}

std::string int32Bytes(std::int32_t v) {
    Layout l;
    l.int32(v);
    return l.raw;
}

// One whole entry with a name of `nameLength` declared bytes and `name` really present.
std::string entryBytes(std::int32_t nameLength, const std::string& name, const std::string& id) {
    Layout l;
    l.int32(0);
    l.int32(0);
    l.counted(0, 6, "/a.dxf");
    l.counted(0, nameLength, name);
    l.counted(0, 14, "User data list");
    l.counted(0, 0, "");
    l.decimal(id);
    l.decimal("1");
    return l.raw;
}

TEST(TreeCacheFile, DamagedFilesAreRefused) {
    const std::string bolt = entryBytes(4, "Bolt", "5");
    const std::pair<const char*, std::string> rows[] = {
        {"count cut short", std::string("\x01\x00", 2)},
        {"negative count", int32Bytes(-1)},
        {"count beyond entries", int32Bytes(2) + bolt},
        {"count byte 0x1A ends the data", int32Bytes(26) + bolt},
        {"length beyond file", int32Bytes(1) + entryBytes(0x7FFFFFF0, "Bolt", "5")},
        {"negative length", int32Bytes(1) + entryBytes(-3, "Bolt", "5")},
        {"id not digits", int32Bytes(1) + entryBytes(4, "Bolt", "5x")},
        {"flag two", int32Bytes(1) + int32Bytes(2) + bolt.substr(4)},
        {"cut inside a text", (int32Bytes(1) + bolt).substr(0, 30)},
    };
    TestTempFolder folder;
    for (const auto& [name, bytes] : rows) {
        folder.writeBytes("d.vnf", bytes);
        std::vector<TreeCacheNode> read;
        EXPECT_FALSE(TreeCache::readFile(folder.file("d.vnf"), read)) << name;
    }
}

TEST(TreeCachePath, LowerCasesTheNameAndReplacesTheExtension) {
    EXPECT_EQ(TreeCache::pathFor("C:\\Lib\\Parts.DWG"), "C:\\Lib\\parts.vnf");
    EXPECT_EQ(TreeCache::pathFor("/Work/Lib/Bolts.dxf"),
              "/Work/Lib/bolts.vnf");  // folders keep case
    EXPECT_EQ(TreeCache::pathFor("/l/m.v2.dxf"), "/l/m.v2.vnf");
    EXPECT_EQ(TreeCache::pathFor("/l/Plain"), "/l/plain.vnf");
    EXPECT_EQ(TreeCache::pathFor("/l/부품A.dxf"), "/l/부품a.vnf");
}

class TreeCacheCurrency : public testing::Test {
protected:
    void touch(const std::string& name, std::chrono::milliseconds sinceBase) {
        folder.writeBytes(name, "x");
        std::filesystem::last_write_time(folder.file(name), base + sinceBase);
    }
    TestTempFolder folder;
    std::filesystem::file_time_type base = std::chrono::time_point_cast<std::chrono::seconds>(
                                               std::filesystem::file_time_type::clock::now()) -
                                           std::chrono::hours(1);
};

TEST_F(TreeCacheCurrency, ComparesWholeSeconds) {
    using std::chrono::milliseconds;
    const std::string drawing = folder.file("Lib.dxf");
    EXPECT_EQ(TreeCache::check(drawing), TreeCache::State::Unavailable);
    touch("Lib.dxf", milliseconds(0));
    EXPECT_EQ(TreeCache::check(drawing), TreeCache::State::Stale) << "no cache";
    touch("lib.vnf", milliseconds(0));
    EXPECT_EQ(TreeCache::check(drawing), TreeCache::State::Current) << "equal times";
    touch("Lib.dxf", milliseconds(900));
    EXPECT_EQ(TreeCache::check(drawing), TreeCache::State::Current) << "same second";
    touch("Lib.dxf", milliseconds(1000));
    EXPECT_EQ(TreeCache::check(drawing), TreeCache::State::Stale) << "drawing a second newer";
    touch("lib.vnf", milliseconds(5000));
    EXPECT_EQ(TreeCache::check(drawing), TreeCache::State::Current) << "cache newer";
}

}  // namespace
}  // namespace vantor
