// The drawing a command adds to, and distance input.
#include "cad/app/DrawingContext.h"

#include <cstdio>

#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Entity.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ed/TypedInput.h"

namespace cad::app {

std::string formatLength(double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.4f", value);
    return buffer;
}

DrawingContext::DrawingContext(ed::Editor& editor)
    : editor_(editor), database_(editor.database()) {}

db::ObjectId DrawingContext::currentLayer() const {
    if (database_ == nullptr) return db::ObjectId::kNull;
    ed::SysVarValue value;
    if (editor_.getVar("CLAYER", value) == ed::RTNORM) {
        if (const auto* name = std::get_if<std::string>(&value)) {
            db::ObjectId layer;
            auto table =
                db::open<db::SymbolTable>(database_->layerTableId(), db::OpenMode::ForRead);
            if (table && table->getAt(*name, layer) == ErrorStatus::eOk) return layer;
        }
    }
    return database_->clayer();
}

db::ObjectId DrawingContext::append(std::unique_ptr<db::Entity> entity) const {
    db::ObjectId id;
    if (database_ == nullptr) return id;
    entity->setDatabaseDefaults(*database_);
    entity->setLayer(currentLayer());
    auto space = db::open<db::BlockTableRecord>(database_->modelSpaceId(), db::OpenMode::ForWrite);
    ErrorStatus es = space ? space->appendEntity(std::move(entity), id) : space.openStatus();
    if (es != ErrorStatus::eOk)
        editor_.printf("\nCannot add the object to the drawing: %s",
                       std::string(errorStatusName(es)).c_str());
    return id;
}

bool DrawingContext::erase(db::ObjectId id) const {
    auto entity = db::open<db::Entity>(id, db::OpenMode::ForWrite);
    return entity && entity->erase() == ErrorStatus::eOk;
}

int DrawingContext::getDistance(std::string_view prompt, const DistanceRequest& request,
                                double& result) const {
    const ed::KeywordList keywords(request.keywords);
    for (;;) {
        // Any text comes back as RTKWORD, so numbers can be read here and refused properly.
        editor_.initGet(ed::RSG_OTHER, request.keywords);
        ge::Point3d point;
        const int code = editor_.getPoint(prompt, point, request.basePoint);
        double value = 0.0;
        if (code == ed::RTNONE) {
            if (!request.defaultValue) return code;
            value = *request.defaultValue;
        } else if (code == ed::RTNORM) {
            ge::Point3d base = request.basePoint.value_or(point);
            if (!request.basePoint) {
                ge::Point3d second;
                const int secondCode = editor_.getPoint("\nSpecify second point: ", second, base);
                if (secondCode != ed::RTNORM) return secondCode;
                point = second;
            }
            value = base.distanceTo(point);
        } else if (code == ed::RTKWORD) {
            std::string text;
            editor_.getInput(text);
            if (keywords.match(text)) return code;
            std::optional<double> number = ed::parseReal(text);
            if (!number) {
                editor_.print("\nRequires numeric distance, second point, or option keyword.");
                continue;
            }
            value = *number;
        } else {
            return code;
        }
        if ((request.flags & ed::RSG_NOZERO) != 0 && value == 0.0) {
            editor_.print("\nValue must be positive and nonzero.");
            continue;
        }
        if ((request.flags & ed::RSG_NONEG) != 0 && value < 0.0) {
            editor_.print("\nValue must be positive.");
            continue;
        }
        result = value;
        return ed::RTNORM;
    }
}

}  // namespace cad::app
