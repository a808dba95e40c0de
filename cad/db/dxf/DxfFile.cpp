// Loading a DXF file into memory and through the tag reader.
#include "cad/db/dxf/DxfFile.h"

#include <fstream>

#include "cad/db/dxf/TagReader.h"

namespace cad::db::dxf {

DxfFile DxfFile::fromBytes(std::string bytes) {
    DxfFile file;
    file.bytes_ = std::make_unique<std::string>(std::move(bytes));
    file.arena_ = std::make_unique<TextArena>();
    file.binary_ = TagReader::isBinaryDxf(*file.bytes_);
    file.error_ = TagReader::read(*file.bytes_, file.tags_, *file.arena_);
    return file;
}

DxfFile DxfFile::fromPath(const std::filesystem::path& path) {
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    std::ifstream stream(path, std::ios::binary);
    std::string bytes;
    if (!ec && stream) {
        bytes.resize(static_cast<std::size_t>(size));
        stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    if (ec || !stream) {
        DxfFile file;
        file.bytes_ = std::make_unique<std::string>();
        file.arena_ = std::make_unique<TextArena>();
        file.error_ = DxfError{0, "cannot read " + path.string()};
        return file;
    }
    return fromBytes(std::move(bytes));
}

}  // namespace cad::db::dxf
