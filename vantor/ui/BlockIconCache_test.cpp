// The icon cache on disk: what a stored icon answers to, and that damage of any kind reads as
// a miss rather than a wrong picture.
#include "vantor/ui/BlockIconCache.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "cad/sys/TestTempFolder.h"

namespace vantor {
namespace {

class BlockIconCacheTest : public testing::Test {
protected:
    BlockIconKey key() const {
        return {"/libraries/파이프/standard-parts.dxf", {1700000000123456789, 48213}, "GV-10K-100A-F", 48};
    }
    std::string readFile(const std::string& path) const {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    void writeFile(const std::string& path, std::string_view bytes) const {
        std::ofstream(path, std::ios::binary | std::ios::trunc).write(bytes.data(), bytes.size());
    }

    cad::sys::TestTempFolder temp_;
    BlockIconCache cache_{(temp_.path() / "icons").string()};
    const std::string picture_ = std::string("\x89PNG\r\n\x1a\n", 8) + std::string(300, 'p');
};

TEST_F(BlockIconCacheTest, AnIconAnswersOnlyToItsDrawingStateBlockAndSize) {
    ASSERT_TRUE(cache_.store(key(), picture_));
    EXPECT_EQ(cache_.load(key()), picture_);

    struct Row {
        const char* name;
        void (*change)(BlockIconKey&);
    };
    const Row rows[] = {
        {"drawing saved since (time)", [](BlockIconKey& k) { k.stamp.nanoseconds += 1; }},
        {"drawing saved since (size)", [](BlockIconKey& k) { k.stamp.size += 1; }},
        {"another drawing", [](BlockIconKey& k) { k.drawingPath += ".bak"; }},
        {"another block", [](BlockIconKey& k) { k.block = "GV-10K-100A-G"; }},
        {"block name differing in case", [](BlockIconKey& k) { k.block = "gv-10k-100a-f"; }},
        {"another size", [](BlockIconKey& k) { k.pixels = 64; }},
        {"drawing unreachable", [](BlockIconKey& k) { k.stamp = {}; }},
    };
    for (const Row& row : rows) {
        BlockIconKey other = key();
        row.change(other);
        EXPECT_EQ(cache_.load(other), std::nullopt) << row.name;
    }

    // Each size has its own file; a new state of the drawing replaces the old icon rather than
    // adding one beside it.
    BlockIconKey large = key();
    large.pixels = 128;
    EXPECT_NE(cache_.fileFor(large), cache_.fileFor(key()));
    BlockIconKey saved = key();
    saved.stamp.nanoseconds += 1'000'000'000;
    EXPECT_EQ(cache_.fileFor(saved), cache_.fileFor(key()));
    ASSERT_TRUE(cache_.store(saved, picture_ + "2"));
    EXPECT_EQ(cache_.load(saved), picture_ + "2");
    EXPECT_EQ(cache_.load(key()), std::nullopt);
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(cache_.folder()))
        files += entry.is_regular_file();
    EXPECT_EQ(files, 1u);  // no temporary left behind either
}

TEST_F(BlockIconCacheTest, ADamagedFileIsAMiss) {
    ASSERT_TRUE(cache_.store(key(), picture_));
    const std::string path = cache_.fileFor(key());
    const std::string good = readFile(path);
    ASSERT_GT(good.size(), picture_.size());

    struct Row {
        const char* name;
        std::string bytes;
    };
    std::string flipped = good;
    flipped[good.size() - 100] ^= 0x10;
    std::string flippedName = good;
    flippedName[good.find("GV-10K")] = 'X';
    const Row rows[] = {
        {"empty", ""},
        {"magic only", good.substr(0, 8)},
        {"cut in the header", good.substr(0, 30)},
        {"cut in the picture", good.substr(0, good.size() - 1)},
        {"byte appended", good + "x"},
        {"byte flipped in the picture", flipped},
        {"byte flipped in the block name", flippedName},
        {"older layout", "VNICON01" + good.substr(8)},
        {"not an icon at all", std::string(good.size(), '\0')},
    };
    for (const Row& row : rows) {
        writeFile(path, row.bytes);
        EXPECT_EQ(cache_.load(key()), std::nullopt) << row.name;
    }
    // Storing again mends it.
    ASSERT_TRUE(cache_.store(key(), picture_));
    EXPECT_EQ(cache_.load(key()), picture_);
}

TEST_F(BlockIconCacheTest, StoringFailsQuietlyWhereNothingCanBeWritten) {
    writeFile(temp_.file("file"), "in the way");
    const BlockIconCache blocked(temp_.file("file"));
    EXPECT_FALSE(blocked.store(key(), picture_));
    EXPECT_EQ(blocked.load(key()), std::nullopt);
    EXPECT_FALSE(BlockIconCache("").store(key(), picture_));
    EXPECT_FALSE(cache_.store(key(), ""));  // nothing drawn is nothing kept
}

TEST(BlockIconFile, StampOfTheFileAsItIsNow) {
    cad::sys::TestTempFolder temp;
    EXPECT_FALSE(fileStampOf(temp.file("missing.dxf")).valid());
    temp.writeBytes("a.dxf", "0\nEOF\n");
    const FileStamp first = fileStampOf(temp.file("a.dxf"));
    EXPECT_TRUE(first.valid());
    EXPECT_EQ(first.size, 6);
    std::filesystem::last_write_time(temp.file("a.dxf"),
                                     std::filesystem::last_write_time(temp.file("a.dxf")) +
                                         std::chrono::nanoseconds(1000));
    EXPECT_NE(fileStampOf(temp.file("a.dxf")), first);
}

TEST(BlockIconFile, SizesOutsideTheOfferedRangeAreBroughtIntoIt) {
    EXPECT_EQ(blockIconPixels(0), kDefaultBlockIconPixels);  // a settings file without the key
    EXPECT_EQ(blockIconPixels(-5), kMinBlockIconPixels);
    EXPECT_EQ(blockIconPixels(16), kMinBlockIconPixels);
    EXPECT_EQ(blockIconPixels(128), 128);
    EXPECT_EQ(blockIconPixels(1000), kMaxBlockIconPixels);
}

}  // namespace
}  // namespace vantor
