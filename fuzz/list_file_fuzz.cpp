// Any bytes as a management-window list file (UBTabList.dat / UBList<n>.dat): read through
// the text-mode stream and every path registered as a window's list load does. Nothing may
// crash, hang or take memory the file does not hold.
#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzInputFile.h"
#include "cad/app/ScriptedDialogs.h"
#include "vantor/registry/DrawingList.h"
#include "vantor/registry/ListFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string& path = fuzzInputPath("UBList0.dat");
    writeFuzzInput(path, data, size);

    const auto texts = vantor::ListFile::readAll(path);
    if (!texts) return 0;
    cad::app::ScriptedDialogs dialogs;
    vantor::DrawingList list;
    for (const std::string& text : *texts) {
        if (text.empty() || text.size() > vantor::ListFile::kMaxTextBytes * 4) __builtin_trap();
        list.addPath(text, dialogs);
    }
    if (list.size() > texts->size()) __builtin_trap();
    return 0;
}
