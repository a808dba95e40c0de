// Writing and reading the .vnf tree cache.
#include "vantor/store/TreeCache.h"

#include <cstdint>
#include <optional>

#include "cad/sys/CaretText.h"
#include "cad/sys/CodePage.h"
#include "cad/sys/CountedText.h"
#include "cad/sys/FileSystem.h"
#include "cad/sys/SplitPath.h"

namespace vantor {

using cad::sys::CrtFile;

namespace {

std::string asciiLower(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return text;
}

// Control characters go in their caret form: text mode would turn a 0x0A into two bytes
// beside a count of one, and a 0x1A would end the data for every reader.
bool writeText(CrtFile& file, std::string_view text) {
    return cad::sys::writeCountedText(file, cad::sys::utf8ToCp949(cad::sys::toCaretForm(text)));
}

bool writeNode(CrtFile& file, const TreeCacheNode& node) {
    return file.writeInt32(node.supplier ? 1 : 0) && file.writeInt32(node.record ? 1 : 0) &&
           writeText(file, node.drawingPath) && writeText(file, node.name) &&
           writeText(file, node.libraryKey) && writeText(file, node.recordText) &&
           cad::sys::writeDecimalText(file, node.id) &&
           cad::sys::writeDecimalText(file, node.parentId);
}

bool readText(CrtFile& file, std::string& text) {
    std::optional<std::string> bytes = cad::sys::readCountedText(file, TreeCache::kMaxTextBytes);
    if (!bytes) return false;
    text = cad::sys::fromCaretForm(cad::sys::cp949ToUtf8(*bytes));
    return true;
}

bool readFlag(CrtFile& file, bool& flag) {
    std::int32_t value = 0;
    if (!file.readInt32(value) || (value != 0 && value != 1)) return false;
    flag = value == 1;
    return true;
}

bool readId(CrtFile& file, std::int64_t& id) {
    std::optional<std::int64_t> value = cad::sys::readDecimalText(file);
    if (!value) return false;
    id = *value;
    return true;
}

bool readNode(CrtFile& file, TreeCacheNode& node) {
    return readFlag(file, node.supplier) && readFlag(file, node.record) &&
           readText(file, node.drawingPath) && readText(file, node.name) &&
           readText(file, node.libraryKey) && readText(file, node.recordText) &&
           readId(file, node.id) && readId(file, node.parentId);
}

}  // namespace

std::string TreeCache::pathFor(std::string_view drawingPath) {
    cad::sys::PathParts parts = cad::sys::splitPath(drawingPath);
    return parts.drive + parts.dir + asciiLower(parts.fname) + ".vnf";
}

TreeCache::State TreeCache::check(const std::string& drawingPath) {
    std::optional<std::int64_t> drawingTime = cad::sys::lastWriteTime(drawingPath);
    if (!drawingTime) return State::Unavailable;
    std::optional<std::int64_t> cacheTime = cad::sys::lastWriteTime(pathFor(drawingPath));
    return cacheTime && *drawingTime <= *cacheTime ? State::Current : State::Stale;
}

bool TreeCache::write(const std::string& vnfPath, std::vector<TreeCacheNode>& nodes) {
    std::vector<TreeCacheNode> consumed = std::move(nodes);
    nodes.clear();
    CrtFile file;
    if (file.openReplacing(vnfPath, "w") != cad::ErrorStatus::eOk) return false;
    bool written = file.writeInt32(static_cast<std::int32_t>(consumed.size()));
    for (const TreeCacheNode& node : consumed) written = written && writeNode(file, node);
    return file.close() == cad::ErrorStatus::eOk && written;
}

bool TreeCache::read(CrtFile& file, std::vector<TreeCacheNode>& nodes) {
    std::int32_t count = 0;
    if (!file.readInt32(count) || count < 0) return false;
    // No room is taken for the count up front: a damaged count costs nothing until the
    // entries it promises really arrive.
    for (std::int32_t i = 0; i < count; ++i) {
        TreeCacheNode node;
        if (!readNode(file, node)) return false;
        nodes.push_back(std::move(node));
    }
    return true;
}

bool TreeCache::readFile(const std::string& vnfPath, std::vector<TreeCacheNode>& nodes) {
    CrtFile file;
    if (file.open(vnfPath, "r") != cad::ErrorStatus::eOk) return false;
    return read(file, nodes);
}

}  // namespace vantor
