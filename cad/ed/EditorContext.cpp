// The editor's document context: the drawing it works on, system variables, the current view
// and the last point.
#include "cad/ed/Editor.h"

#include "cad/db/Database.h"
#include "cad/ed/EditorReactor.h"
#include "cad/ed/ResultCodes.h"

namespace cad::ed {

// ---- Document context and system variables ----

void Editor::setDocumentContext(db::Database* database, SystemVariables* drawingVariables) {
    database_ = database;
    drawingVariables_ = drawingVariables ? drawingVariables : &ownDrawingVariables_;
}

int Editor::getVar(std::string_view name, SysVarValue& value) const {
    const SystemVariables::Definition* definition = SystemVariables::find(name);
    if (definition == nullptr) return RTERROR;
    const SystemVariables& table = definition->scope == SystemVariables::Scope::Application
                                       ? appVariables_
                                       : *drawingVariables_;
    value = *table.get(definition->name);
    return RTNORM;
}

int Editor::setVar(std::string_view name, const SysVarValue& value) {
    const SystemVariables::Definition* definition = SystemVariables::find(name);
    if (definition == nullptr) return RTERROR;
    SystemVariables& table = definition->scope == SystemVariables::Scope::Application
                                 ? appVariables_
                                 : *drawingVariables_;
    bool ok = !definition->readOnly && table.set(definition->name, value) == ErrorStatus::eOk;
    for (EditorReactor* reactor : reactors()) reactor->sysVarChanged(definition->name, ok);
    return ok ? RTNORM : RTERROR;
}

int Editor::setCurrentView(const ViewRecord& view) {
    SystemVariables& vars = *drawingVariables_;
    const ge::Vector3d& d = view.viewDirection;
    const std::pair<const char*, SysVarValue> values[] = {
        {"VIEWCTR", ge::Point3d(view.centerPoint.x, view.centerPoint.y, 0.0)},
        {"VIEWSIZE", view.height},
        {"VIEWDIR", ge::Point3d(d.x, d.y, d.z)},
        {"TARGET", view.target},
        {"LENSLENGTH", view.lensLength},
        {"VIEWTWIST", view.viewTwist},
        {"FRONTZ", view.frontClipDistance},
        {"BACKZ", view.backClipDistance},
        {"VIEWMODE", view.viewMode()},
    };
    for (const auto& [name, value] : values) {
        vars.set(name, value);
        for (EditorReactor* reactor : reactors()) reactor->sysVarChanged(name, true);
    }
    viewAspect_ = view.height > 0.0 ? view.width / view.height : viewAspect_;
    return RTNORM;
}

ViewRecord Editor::currentView() const {
    const SystemVariables& vars = *drawingVariables_;
    ViewRecord view;
    ge::Point3d center = std::get<ge::Point3d>(*vars.get("VIEWCTR"));
    ge::Point3d direction = std::get<ge::Point3d>(*vars.get("VIEWDIR"));
    view.centerPoint = {center.x, center.y};
    view.height = std::get<double>(*vars.get("VIEWSIZE"));
    view.width = view.height * viewAspect_;
    view.viewDirection = direction.asVector();
    view.target = std::get<ge::Point3d>(*vars.get("TARGET"));
    view.lensLength = std::get<double>(*vars.get("LENSLENGTH"));
    view.viewTwist = std::get<double>(*vars.get("VIEWTWIST"));
    view.frontClipDistance = std::get<double>(*vars.get("FRONTZ"));
    view.backClipDistance = std::get<double>(*vars.get("BACKZ"));
    view.setViewMode(std::get<int>(*vars.get("VIEWMODE")));
    return view;
}

ge::Point3d Editor::lastPoint() const {
    return std::get<ge::Point3d>(*drawingVariables_->get("LASTPOINT"));
}

void Editor::setLastPoint(const ge::Point3d& point) {
    drawingVariables_->set("LASTPOINT", point);
}

}  // namespace cad::ed
