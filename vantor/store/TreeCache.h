// The .vnf file beside a library drawing: the flat node list of both its libraries, so that
// the category tree is shown without opening the drawing. Written and read in text mode.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cad/sys/CrtFile.h"
#include "vantor/store/TreeCacheNode.h"

namespace vantor {

// Layout: the node count (int32, little-endian), then per node the library flag and the record
// flag (int32 each), four counted texts (drawing path, entry name, library key, record text:
// flag and length int32, then the CP949 bytes, control characters and carets in their caret
// form) and two decimal texts (node id, parent id). The file goes through the C runtime's text
// mode, so counted texts of 26 bytes carry flag 1 and length 25; the count and the flags are
// written raw all the same, and a count whose low byte is 0x1A ends the data for a reader at
// once.
class TreeCache {
public:
    enum class State {
        Unavailable = -1,  // the drawing is not there to compare with
        Stale = 0,         // the cache is missing or older than the drawing
        Current = 1,
    };

    // Longest text a reader takes, in bytes on disk; only damage makes one longer.
    static constexpr std::size_t kMaxTextBytes = 4096;

    // The cache of "D:/Lib/Bolts.DXF" is "D:/Lib/bolts.vnf": the file name lower-cased and its
    // extension, whatever it is, replaced. A case-insensitive file system sees the whole path
    // lower-cased by the same rule; here the folders keep their case, or the cache would land
    // in a folder that is not the drawing's.
    static std::string pathFor(std::string_view drawingPath);

    // Last-write times at one-second resolution: current when the drawing's is earlier than
    // or equal to the cache's.
    static State check(const std::string& drawingPath);

    // Writes the nodes in place of the file, atomically, and empties the list. False when
    // the file cannot be written: the old one stays as it was (older than its drawing, so the
    // next load rebuilds it) and cad::sys::lastFileError() says why.
    static bool write(const std::string& vnfPath, std::vector<TreeCacheNode>& nodes);

    // Appends the entries of an open file in file order. False when the data end before the
    // count is met or a field is damaged (negative count, absurd lengths, bad digits); the
    // entries read up to there are appended all the same.
    static bool read(cad::sys::CrtFile& file, std::vector<TreeCacheNode>& nodes);
    // Opens the file in text mode and reads it; false also when it does not open.
    static bool readFile(const std::string& vnfPath, std::vector<TreeCacheNode>& nodes);
};

}  // namespace vantor
