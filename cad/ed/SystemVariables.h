// System variables: the named settings of the host and of each drawing, with their types and
// defaults. The editor holds the application's table and the current drawing's; each table
// holds every variable, the scope decides which one is read.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <variant>
#include <vector>

#include "cad/ge/Point3d.h"
#include "cad/sys/ErrorStatus.h"

namespace cad::ed {

// int for the host's short and long variables, double for reals, a point (2D ones carry z 0)
// and text.
using SysVarValue = std::variant<int, double, ge::Point3d, std::string>;

class SystemVariables {
public:
    enum class Scope { Application, Drawing };
    struct Definition {
        std::string name;
        SysVarValue defaultValue;
        Scope scope;
        bool readOnly;  // setVar refuses it; the host itself keeps it current
    };

    // The known variables, in alphabetical order.
    static const std::vector<Definition>& definitions();
    // Case-insensitive, as the host looks names up; nullptr for an unknown name.
    static const Definition* find(std::string_view name);

    SystemVariables();

    std::optional<SysVarValue> get(std::string_view name) const;
    // Stores a value of the variable's type (an int is accepted for a real). eKeyNotFound for
    // an unknown name, eInvalidInput for a value of another type. Read-only variables are set
    // here too: this is how the host keeps them current.
    ErrorStatus set(std::string_view name, const SysVarValue& value);

private:
    std::unordered_map<std::string, SysVarValue> values_;
};

}  // namespace cad::ed
