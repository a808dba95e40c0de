// ERASE, MOVE, COPY and ROTATE.
#include "cad/app/EditCommands.h"

#include "cad/app/Application.h"
#include "cad/app/DrawingContext.h"
#include "cad/app/HostCommands.h"
#include "cad/db/Database.h"
#include "cad/db/Entity.h"
#include "cad/db/IdMapping.h"
#include "cad/db/ObjectPtr.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ed/SelectionSet.h"

namespace cad::app {

void EditCommands::registerCommands() {
    CommandStack& stack = app_.commandStack();
    struct Entry {
        const char* name;
        void (EditCommands::*run)();
    };
    const Entry entries[] = {
        {"ERASE", &EditCommands::erase},
        {"MOVE", &EditCommands::move},
        {"COPY", &EditCommands::copy},
        {"ROTATE", &EditCommands::rotate},
    };
    for (const Entry& entry : entries)
        stack.addCommand(HostCommands::kGroupName, entry.name, entry.name, ACRX_CMD_USEPICKSET,
                         [this, run = entry.run] { (this->*run)(); });
}

std::vector<db::ObjectId> EditCommands::selection() const {
    ed::Editor& editor = app_.editor();
    ed::SelectionSet set;
    if (editor.ssget(ed::Editor::SelectMode::Implied, set) != ed::RTNORM &&
        editor.ssget(ed::Editor::SelectMode::Prompt, set) != ed::RTNORM)
        return {};
    return set.ids();
}

int EditCommands::askDisplacement(const std::vector<db::ObjectId>& ids, ge::Vector3d& displacement,
                                  ge::Point3d& base) const {
    ed::Editor& editor = app_.editor();
    editor.initGet(0, "Displacement");
    int code = editor.getPoint("\nSpecify base point or [Displacement] <Displacement>: ", base);
    if (code == ed::RTNORM) {
        ge::Point3d second;
        editor.dragEntities(ids, ed::InputRequest::Motion::Move);
        code = editor.getPoint(
            "\nSpecify second point or <use first point as displacement>: ", second, base);
        if (code == ed::RTNORM) {
            displacement = second - base;
            return code;
        }
        if (code != ed::RTNONE) return code;
        displacement = base.asVector();
        return ed::RTNORM;
    }
    if (code != ed::RTNONE && code != ed::RTKWORD) return code;
    // Typed as a point, the displacement is read from the origin, not the last point.
    ge::Point3d offset;
    code = editor.getPoint("\nSpecify displacement <0.0000, 0.0000, 0.0000>: ", offset,
                           ge::Point3d::kOrigin);
    if (code == ed::RTNONE)
        offset = ge::Point3d::kOrigin;
    else if (code != ed::RTNORM)
        return code;
    displacement = offset.asVector();
    base = ge::Point3d::kOrigin;
    return ed::RTNORM;
}

void EditCommands::transform(DrawingContext& context, const std::vector<db::ObjectId>& ids,
                             const ge::Matrix3d& xform, std::vector<db::ObjectId>* copies) const {
    std::vector<db::ObjectId> targets = ids;
    db::Database* database = context.database();
    if (copies != nullptr) {
        // A deep clone, so what an entity owns (vertices, attributes, its extension
        // dictionary) comes along, as copying it by hand would not.
        db::IdMapping map;
        if (database->deepCloneObjects(ids, database->modelSpaceId(), map) != ErrorStatus::eOk) {
            context.editor().print("\nThe objects could not be copied.");
            return;
        }
        targets.clear();
        for (db::ObjectId id : ids) {
            db::IdPair pair(id, db::ObjectId::kNull, false);
            if (map.compute(pair) && pair.isCloned()) targets.push_back(pair.value());
        }
    }
    int refused = 0;
    for (db::ObjectId id : targets) {
        bool done = false;
        if (auto entity = db::open<db::Entity>(id, db::OpenMode::ForWrite))
            done = entity->transformBy(xform) == ErrorStatus::eOk;
        if (!done) {
            ++refused;
            // A copy that cannot be put in its place is not left on top of its original.
            if (copies != nullptr) context.erase(id);
        } else if (copies != nullptr) {
            copies->push_back(id);
        }
    }
    if (refused > 0)
        context.editor().printf("\n%d object%s could not be %s.", refused, refused == 1 ? "" : "s",
                                copies != nullptr ? "copied" : "transformed");
}

void EditCommands::erase() {
    DrawingContext context(app_.editor());
    if (context.database() == nullptr) return;
    for (db::ObjectId id : selection()) context.erase(id);
}

void EditCommands::move() {
    DrawingContext context(app_.editor());
    if (context.database() == nullptr) return;
    const std::vector<db::ObjectId> ids = selection();
    if (ids.empty()) return;
    ge::Vector3d displacement;
    ge::Point3d base;
    if (askDisplacement(ids, displacement, base) != ed::RTNORM) return;
    transform(context, ids, ge::Matrix3d::translation(displacement), nullptr);
}

void EditCommands::copy() {
    DrawingContext context(app_.editor());
    ed::Editor& editor = context.editor();
    if (context.database() == nullptr) return;
    const std::vector<db::ObjectId> ids = selection();
    if (ids.empty()) return;
    editor.print("\nCurrent settings:  Copy mode = Multiple");
    ge::Vector3d displacement;
    ge::Point3d base;
    editor.initGet(0, "Displacement");
    int code = editor.getPoint("\nSpecify base point or [Displacement] <Displacement>: ", base);
    if (code == ed::RTNONE || code == ed::RTKWORD) {
        // One copy by a displacement, as MOVE takes it.
        ge::Point3d offset;
        code = editor.getPoint("\nSpecify displacement <0.0000, 0.0000, 0.0000>: ", offset,
                               ge::Point3d::kOrigin);
        if (code != ed::RTNORM) return;
        std::vector<db::ObjectId> copies;
        transform(context, ids, ge::Matrix3d::translation(offset.asVector()), &copies);
        return;
    }
    if (code != ed::RTNORM) return;
    // Each second point makes one more copy, until Enter; Undo takes the last copy back.
    std::vector<std::vector<db::ObjectId>> made;
    for (bool first = true;; first = false) {
        ge::Point3d second;
        editor.dragEntities(ids, ed::InputRequest::Motion::Move);
        if (first) {
            code = editor.getPoint(
                "\nSpecify second point or <use first point as displacement>: ", second, base);
            if (code == ed::RTNONE) {
                std::vector<db::ObjectId> copies;
                transform(context, ids, ge::Matrix3d::translation(base.asVector()), &copies);
                return;
            }
        } else {
            editor.initGet(0, "Exit Undo");
            code = editor.getPoint("\nSpecify second point or [Exit/Undo] <Exit>: ", second, base);
        }
        if (code == ed::RTKWORD) {
            std::string word;
            editor.getInput(word);
            if (word == "Exit") return;
            if (!made.empty()) {
                for (db::ObjectId id : made.back()) context.erase(id);
                made.pop_back();
            } else {
                editor.print("\nNothing to undo.");
            }
            continue;
        }
        if (code != ed::RTNORM) return;
        made.emplace_back();
        transform(context, ids, ge::Matrix3d::translation(second - base), &made.back());
    }
}

void EditCommands::rotate() {
    DrawingContext context(app_.editor());
    ed::Editor& editor = context.editor();
    if (context.database() == nullptr) return;
    editor.print("\nCurrent positive angle in UCS:  ANGDIR=counterclockwise  ANGBASE=0");
    const std::vector<db::ObjectId> ids = selection();
    if (ids.empty()) return;
    ge::Point3d base;
    if (editor.getPoint("\nSpecify base point: ", base) != ed::RTNORM) return;
    bool copying = false;
    double angle = 0.0;
    for (;;) {
        editor.initGet(0, "Copy");
        editor.dragEntities(ids, ed::InputRequest::Motion::Rotate);
        const int code = editor.getAngle("\nSpecify rotation angle or [Copy] <0>: ", angle, base);
        if (code == ed::RTKWORD) {
            copying = !copying;
            editor.print(copying ? "\nRotating a copy of the selected objects."
                                 : "\nRotating the selected objects.");
            continue;
        }
        if (code == ed::RTNONE) return;  // by the default, nothing turns
        if (code != ed::RTNORM) return;
        break;
    }
    std::vector<db::ObjectId> copies;
    transform(context, ids, ge::Matrix3d::rotation(angle, ge::Vector3d::kZAxis, base),
              copying ? &copies : nullptr);
}

}  // namespace cad::app
