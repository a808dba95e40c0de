// What `cadtool info` tells about a drawing: its version and code page, how many entities,
// objects and table records of each type it holds, and the keys of its named-objects
// dictionary.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace cad::db {
class Database;
}

namespace cadtool {

struct DrawingSummary {
    std::string version;   // "AC1015": the version the file was read as
    std::string codePage;  // "ANSI_949"
    // By DXF type, in byte order. Entities are counted in every block and layout, with the
    // attributes of block references and the vertices of polylines but without the BLOCK,
    // ENDBLK and SEQEND markers; objects are what the OBJECTS section holds; tables count
    // the records of each symbol table. Erased objects are not counted.
    std::map<std::string, std::size_t> entities;
    std::map<std::string, std::size_t> objects;
    std::map<std::string, std::size_t> tables;
    std::vector<std::string> namedObjects;  // the keys, in byte order

    static DrawingSummary of(const cad::db::Database& db);
};

}  // namespace cadtool
