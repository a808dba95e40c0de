// HEADER variables: look-up by name, replacement in place.
#include "cad/db/HeaderVariables.h"

#include <algorithm>

namespace cad::db {

const HeaderVariables::Variable* HeaderVariables::find(std::string_view name) const {
    auto it = std::find_if(variables_.begin(), variables_.end(),
                           [&](const Variable& v) { return v.name == name; });
    return it == variables_.end() ? nullptr : &*it;
}

void HeaderVariables::set(std::string_view name, std::vector<RawTag> tags) {
    auto it = std::find_if(variables_.begin(), variables_.end(),
                           [&](const Variable& v) { return v.name == name; });
    if (it != variables_.end()) {
        it->tags = std::move(tags);
    } else {
        variables_.push_back(Variable{std::string(name), std::move(tags)});
    }
}

void HeaderVariables::remove(std::string_view name) {
    std::erase_if(variables_, [&](const Variable& v) { return v.name == name; });
}

std::optional<std::string> HeaderVariables::text(std::string_view name) const {
    const Variable* v = find(name);
    if (v == nullptr || v->tags.empty()) return std::nullopt;
    return v->tags.front().value;
}

void HeaderVariables::setText(std::string_view name, int code, std::string value) {
    set(name, {RawTag{code, std::move(value)}});
}

}  // namespace cad::db
