// The menu-file parser.
#include "cad/app/MenuGroup.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <map>

#include "cad/sys/CodePage.h"
#include "cad/sys/AsciiCase.h"

namespace cad::app {

namespace {

std::string_view trim(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

struct Line {
    int number;
    std::string text;
};

// Physical lines joined where a line ends in "+", each with the number of its first line.
std::vector<Line> logicalLines(std::string_view text) {
    std::vector<Line> lines;
    int number = 0;
    bool continuing = false;
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t end = text.find('\n', start);
        std::string_view line =
            text.substr(start, end == std::string_view::npos ? end : end - start);
        ++number;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        std::string_view right = line;
        while (!right.empty() && (right.back() == ' ' || right.back() == '\t'))
            right.remove_suffix(1);
        bool continues = !right.empty() && right.back() == '+';
        std::string piece(continues ? right.substr(0, right.size() - 1) : line);
        if (continuing)
            lines.back().text += piece;
        else
            lines.push_back({number, piece});
        continuing = continues;
        if (end == std::string_view::npos) break;
        start = end + 1;
    }
    return lines;
}

void applyHelp(std::vector<MenuItem>& items, const std::map<std::string, std::string>& help) {
    for (MenuItem& item : items) {
        if (auto it = help.find(item.nameTag); !item.nameTag.empty() && it != help.end())
            item.helpString = it->second;
        applyHelp(item.items, help);
    }
}

}  // namespace

ErrorStatus MenuGroup::load(const std::string& path, MenuGroup& group, std::string& error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = path + ": cannot open the menu file";
        return ErrorStatus::eFileNotFound;
    }
    std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (startsWith(bytes, "\xEF\xBB\xBF")) bytes.erase(0, 3);
    std::string text = sys::toUtf8(bytes, sys::CodePage::Utf8);
    if (text != bytes) text = sys::toUtf8(bytes, sys::CodePage::Ansi949);
    return parse(text, path, group, error);
}

ErrorStatus MenuGroup::parse(std::string_view text, std::string_view fileName, MenuGroup& group,
                             std::string& error) {
    enum class Section { None, Pop, HelpStrings, Other };
    MenuGroup result;
    result.fileName_ = fileName;
    Section section = Section::None;
    std::map<std::string, std::string> help;
    bool titleSeen = false;
    std::vector<std::vector<MenuItem>*> open;  // the item lists being filled, innermost last
    std::vector<int> openedAt;                 // the lines of the open cascades
    int sectionLine = 0;

    auto fail = [&](int line, std::string_view what) {
        error = std::string(fileName) + ":" + std::to_string(line) + ": " + std::string(what);
        return ErrorStatus::eInvalidInput;
    };
    // A pull-down section must have its title and close every cascade it opened.
    auto endSection = [&]() -> std::optional<ErrorStatus> {
        if (section != Section::Pop) return std::nullopt;
        if (!titleSeen)
            return fail(sectionLine,
                        "expected the menu title after ***" + result.menus_.back().alias);
        if (open.size() > 1)
            return fail(openedAt.back(), "expected [<-label] to close the cascade opened here");
        return std::nullopt;
    };

    std::vector<Line> lines = logicalLines(text);
    for (const Line& line : lines) {
        std::string_view body = trim(line.text);
        if (body.empty() || startsWith(body, "//")) continue;

        if (startsWith(body, "***")) {
            if (auto failed = endSection()) return *failed;
            std::string header = sys::asciiUpper(trim(body.substr(3)));
            sectionLine = line.number;
            if (startsWith(header, "MENUGROUP")) {
                std::size_t equals = body.find('=');
                std::string_view name =
                    equals == std::string_view::npos ? "" : trim(body.substr(equals + 1));
                if (name.empty())
                    return fail(line.number, "expected a group name after ***MENUGROUP=");
                result.name_ = name;
                section = Section::None;
                continue;
            }
            if (result.name_.empty())
                return fail(line.number, "expected ***MENUGROUP=name before the first section");
            if (startsWith(header, "POP") && header.size() > 3 &&
                std::all_of(header.begin() + 3, header.end(),
                            [](unsigned char c) { return std::isdigit(c); })) {
                result.menus_.push_back(PopMenu{header, {}, {}, {}});
                open = {&result.menus_.back().items};
                openedAt.clear();
                titleSeen = false;
                section = Section::Pop;
            } else {
                section = header == "HELPSTRINGS" ? Section::HelpStrings : Section::Other;
            }
            continue;
        }
        if (section == Section::None)
            return fail(line.number, result.name_.empty() ? "expected ***MENUGROUP=name"
                                                          : "expected a *** section");
        if (section == Section::Other || startsWith(body, "**")) continue;

        std::size_t openBracket = body.find('[');
        if (openBracket == std::string_view::npos) return fail(line.number, "expected [label]");
        std::size_t closeBracket = body.find(']', openBracket);
        if (closeBracket == std::string_view::npos)
            return fail(line.number, "expected ] to end the label");
        std::string tag(trim(body.substr(0, openBracket)));
        std::string_view label = body.substr(openBracket + 1, closeBracket - openBracket - 1);
        // The macro keeps its trailing blanks: a space there is an Enter.
        std::string_view raw = line.text;
        std::string macro(raw.substr(raw.find(']', raw.find('[')) + 1));

        if (section == Section::HelpStrings) {
            help[tag] = label;
            continue;
        }
        if (!titleSeen) {
            result.menus_.back().nameTag = tag;
            result.menus_.back().label = label;
            titleSeen = true;
            continue;
        }
        MenuItem item;
        item.nameTag = tag;
        int closes = 0;
        if (label == "--") {
            item.kind = MenuItem::Kind::Separator;
        } else if (startsWith(label, "->")) {
            item.kind = MenuItem::Kind::Submenu;
            label.remove_prefix(2);
        } else {
            while (startsWith(label, "<-")) {
                ++closes;
                label.remove_prefix(2);
            }
        }
        if (startsWith(label, "~")) {
            item.enabled = false;
            label.remove_prefix(1);
        }
        item.label = label;
        if (item.kind == MenuItem::Kind::Command) item.macro = macro;
        open.back()->push_back(std::move(item));
        if (open.back()->back().kind == MenuItem::Kind::Submenu) {
            open.push_back(&open.back()->back().items);
            openedAt.push_back(line.number);
        }
        for (; closes > 0; --closes) {
            if (open.size() <= 1) return fail(line.number, "[<- closes no open cascade");
            open.pop_back();
            openedAt.pop_back();
        }
    }
    if (auto failed = endSection()) return *failed;
    if (result.name_.empty()) return fail(1, "expected ***MENUGROUP=name");
    for (PopMenu& menu : result.menus_) applyHelp(menu.items, help);
    group = std::move(result);
    return ErrorStatus::eOk;
}

}  // namespace cad::app
