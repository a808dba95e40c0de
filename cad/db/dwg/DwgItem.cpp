// Taking a DXF structure apart for the DWG writer.
#include "cad/db/dwg/DwgItem.h"

namespace cad::db::dwg {

std::uint64_t parseHandle(const std::string& text) {
    return std::strtoull(text.c_str(), nullptr, 16);
}

DwgItem itemFrom(dxf::TagSpan span) {
    DwgItem item;
    item.type = std::string(dxf::trimBlanks(span[0].value));
    bool body = false, extended = false;
    for (std::size_t i = 1; i < span.size(); ++i) {
        const int code = span[i].code;
        std::string value(span[i].code >= 100 && span[i].code < 1000 && span[i].code != 100
                              ? dxf::trimBlanks(span[i].value)
                              : span[i].value);
        // Extended data starts at its first application name; an xrecord's data may hold
        // other codes from 1000 up.
        if (code == 1001 || extended) {
            extended = true;
            item.xdata.emplace_back(code, std::move(value));
            continue;
        }
        if (!body && code == 102 && value.size() > 1 && value[0] == '{') {
            const bool reactors = value == "{ACAD_REACTORS";
            const bool dictionary = value == "{ACAD_XDICTIONARY";
            for (++i; i < span.size() && span[i].code != 102; ++i) {
                const std::uint64_t h = parseHandle(std::string(dxf::trimBlanks(span[i].value)));
                if (reactors && span[i].code == 330) item.reactors.push_back(h);
                if (dictionary && span[i].code == 360) item.xdictionary = h;
            }
            continue;
        }
        if (!body && (code == 5 || code == 105) && item.handle == 0) {
            item.handle = parseHandle(value);
            continue;
        }
        if (!body && code == 330) {
            item.owner = parseHandle(value);
            continue;
        }
        if (code == 100) body = true;
        if (code == 67 && dxf::trimBlanks(value) == "1") item.paper = true;
        item.tags.emplace_back(code, std::move(value));
    }
    return item;
}

}  // namespace cad::db::dwg
