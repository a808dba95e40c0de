// The block list of a library drawing: every block definition a part can be built from, with
// its description and whether it carries a preview icon.
#pragma once

#include <string>
#include <vector>

#include "cad/sys/ErrorStatus.h"

namespace cad::app {
class UserDialogs;
}
namespace cad::db {
class Database;
}

namespace vantor {

struct BlockListEntry {
    std::string name;
    std::string description;
    bool hasPreviewIcon = false;
};

class CListBase {
public:
    explicit CListBase(cad::app::UserDialogs& dialogs);

    // Lists the blocks that are neither anonymous nor a layout's, in the block table's order.
    // False, with the list empty and the file-name message shown, when the database has no
    // file name: the list would not know which drawing to save its changes to.
    bool build(cad::db::Database& db);
    const std::vector<BlockListEntry>& blocks() const { return blocks_; }

private:
    cad::app::UserDialogs& dialogs_;
    std::vector<BlockListEntry> blocks_;
};

}  // namespace vantor
