// The system-variable table with the host's types and defaults.
#include "cad/ed/SystemVariables.h"
#include "cad/sys/AsciiCase.h"

#include <algorithm>

namespace cad::ed {

namespace {

using Scope = SystemVariables::Scope;

}  // namespace

const std::vector<SystemVariables::Definition>& SystemVariables::definitions() {
    // The view defaults show an A3 sheet (420 x 297) of a new metric drawing.
    static const std::vector<Definition> table = {
        {"ANGBASE", 0.0, Scope::Drawing, false},
        {"ANGDIR", 0, Scope::Drawing, false},
        {"BACKZ", 0.0, Scope::Drawing, true},
        {"CMDECHO", 1, Scope::Application, false},
        {"CVPORT", 2, Scope::Drawing, false},
        {"DBMOD", 0, Scope::Drawing, true},
        {"DWGNAME", std::string("Drawing1.dwg"), Scope::Drawing, true},
        {"DWGPREFIX", std::string(), Scope::Drawing, true},
        {"FILEDIA", 1, Scope::Application, false},
        {"FRONTZ", 0.0, Scope::Drawing, true},
        {"LASTPOINT", ge::Point3d(0.0, 0.0, 0.0), Scope::Drawing, false},
        {"LENSLENGTH", 50.0, Scope::Drawing, true},
        {"LIMCHECK", 0, Scope::Drawing, false},
        {"LIMMAX", ge::Point3d(420.0, 297.0, 0.0), Scope::Drawing, false},
        {"LIMMIN", ge::Point3d(0.0, 0.0, 0.0), Scope::Drawing, false},
        {"MIRRTEXT", 0, Scope::Drawing, false},
        {"OSMODE", 4133, Scope::Application, false},
        {"PICKFIRST", 1, Scope::Application, false},
        {"SDI", 0, Scope::Application, false},
        {"TARGET", ge::Point3d(0.0, 0.0, 0.0), Scope::Drawing, true},
        {"TILEMODE", 1, Scope::Drawing, false},
        {"VIEWCTR", ge::Point3d(210.0, 148.5, 0.0), Scope::Drawing, true},
        {"VIEWDIR", ge::Point3d(0.0, 0.0, 1.0), Scope::Drawing, true},
        {"VIEWMODE", 0, Scope::Drawing, true},
        {"VIEWSIZE", 297.0, Scope::Drawing, true},
        {"VIEWTWIST", 0.0, Scope::Drawing, true},
    };
    return table;
}

const SystemVariables::Definition* SystemVariables::find(std::string_view name) {
    std::string key = sys::asciiUpper(name);
    for (const Definition& definition : definitions())
        if (definition.name == key) return &definition;
    return nullptr;
}

SystemVariables::SystemVariables() {
    for (const Definition& definition : definitions())
        values_.emplace(definition.name, definition.defaultValue);
}

std::optional<SysVarValue> SystemVariables::get(std::string_view name) const {
    auto it = values_.find(sys::asciiUpper(name));
    if (it == values_.end()) return std::nullopt;
    return it->second;
}

ErrorStatus SystemVariables::set(std::string_view name, const SysVarValue& value) {
    auto it = values_.find(sys::asciiUpper(name));
    if (it == values_.end()) return ErrorStatus::eKeyNotFound;
    if (std::holds_alternative<double>(it->second) && std::holds_alternative<int>(value)) {
        it->second = static_cast<double>(std::get<int>(value));
        return ErrorStatus::eOk;
    }
    if (it->second.index() != value.index()) return ErrorStatus::eInvalidInput;
    it->second = value;
    return ErrorStatus::eOk;
}

}  // namespace cad::ed
