// Any bytes as a partial menu file: loaded as a menu group into the menu bar (UTF-8 or code
// page 949 by its bytes), each item's macro turned into typed text, and the group unloaded.
// Nothing may crash or hang; a refused file names its line.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "FuzzInputFile.h"
#include "cad/app/MenuBar.h"
#include "cad/app/MenuGroups.h"

namespace {

void visit(const std::vector<cad::app::MenuItem>& items, int depth) {
    // Cascades nest only as deep as the file's lines.
    if (depth > 100000) __builtin_trap();
    for (const cad::app::MenuItem& item : items) {
        if (item.kind == cad::app::MenuItem::Kind::Command) item.typedText();
        visit(item.items, depth + 1);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& path = fuzzInputPath("fuzz.mns");
    writeFuzzInput(path, data, size);

    cad::app::MenuBar bar;
    cad::app::MenuGroups groups(bar);
    std::string error;
    if (groups.load(path, error) != cad::ErrorStatus::eOk) {
        if (error.empty()) __builtin_trap();
        return 0;
    }
    const cad::app::MenuGroup* group = groups.item(0);
    if (group == nullptr) __builtin_trap();
    for (const cad::app::PopMenu& menu : group->menus()) {
        visit(menu.items, 0);
        bar.insertInMenuBar(group->name(), menu, 0);
    }
    const std::string name = group->name();
    if (groups.unload(name) != cad::ErrorStatus::eOk || groups.count() != 0 || bar.count() != 0)
        __builtin_trap();
    return 0;
}
