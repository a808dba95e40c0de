// The HEADER section's variables in file order. Every variable is kept as read, also the ones
// the engine does not know, and written back in the same order; the typed accessors cover the
// variables the engine itself uses.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cad/db/RawTag.h"

namespace cad::db {

class HeaderVariables {
public:
    struct Variable {
        std::string name;           // "$ACADVER"
        std::vector<RawTag> tags;   // the tags after the 9 tag
    };

    const std::vector<Variable>& variables() const { return variables_; }
    std::vector<Variable>& variables() { return variables_; }

    const Variable* find(std::string_view name) const;
    // Replaces the variable's tags, or appends it when missing.
    void set(std::string_view name, std::vector<RawTag> tags);
    void remove(std::string_view name);

    std::optional<std::string> text(std::string_view name) const;  // first tag's value
    void setText(std::string_view name, int code, std::string value);

private:
    std::vector<Variable> variables_;
};

}  // namespace cad::db
