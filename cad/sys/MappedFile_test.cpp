// Mapped files: the bytes as on disk, still readable after the file is closed and after
// pages are let go, and files with nothing to map.
#include "cad/sys/MappedFile.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "cad/sys/TestTempFolder.h"

namespace cad::sys {
namespace {

std::string patterned(std::size_t size) {
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i) text[i] = static_cast<char>('A' + i * 7 % 26);
    return text;
}

TEST(MappedFile, BytesOutliveTheFileAndComeBackAfterRelease) {
    TestTempFolder folder;
    const std::string content = patterned(5 * 4096 + 123);
    folder.writeBytes("big.dxf", content);
    MappedFile mapping;
    {
        SharedFile file;
        ASSERT_EQ(file.open(folder.file("big.dxf"), ShareMode::DenyWrite), ErrorStatus::eOk);
        ASSERT_EQ(mapping.map(file), ErrorStatus::eOk);
    }
    ASSERT_EQ(mapping.bytes(), content);
    // Ranges that start and end inside pages, the whole file, and nonsense.
    mapping.release(100, 3 * 4096 + 5);
    mapping.release(0, content.size());
    mapping.release(10, 5);
    mapping.release(0, content.size() + 1);
    EXPECT_EQ(mapping.bytes(), content);

    MappedFile moved = std::move(mapping);
    EXPECT_TRUE(mapping.bytes().empty());
    EXPECT_EQ(moved.bytes(), content);
}

TEST(MappedFile, EmptyAndClosedFiles) {
    TestTempFolder folder;
    folder.writeBytes("empty.dxf", "");
    SharedFile file;
    MappedFile mapping;
    EXPECT_EQ(mapping.map(file), ErrorStatus::eFileReadError);
    ASSERT_EQ(file.open(folder.file("empty.dxf"), ShareMode::DenyNone), ErrorStatus::eOk);
    EXPECT_EQ(mapping.map(file), ErrorStatus::eOk);
    EXPECT_TRUE(mapping.bytes().empty());
}

}  // namespace
}  // namespace cad::sys
