// Reading a drawing's layers, linetypes and drawing-wide look settings.
#include "cad/gs/DrawingStyles.h"

#include <cmath>
#include <cstdlib>

#include "cad/db/Database.h"
#include "cad/db/Entity.h"
#include "cad/db/LayerTableRecord.h"
#include "cad/db/LinetypeTableRecord.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/gs/ColorTable.h"

namespace cad::gs {

namespace {

std::int32_t colorOf(int index, std::int32_t trueColor) {
    if (trueColor >= 0) return trueColor & 0xFFFFFF;
    if (index == 7 || index < 1 || index > 255) return EntityLook::kForeground;
    return static_cast<std::int32_t>(indexColor(index));
}

double headerNumber(const db::Database& database, const char* name, double fallback) {
    auto text = database.header().text(name);
    if (!text) return fallback;
    char* end = nullptr;
    double value = std::strtod(text->c_str(), &end);
    return end != text->c_str() && std::isfinite(value) ? value : fallback;
}

}  // namespace

DrawingStyles::DrawingStyles(const db::Database& database) {
    linetypes_.emplace_back();  // continuous
    byLayer_ = database.byLayerLinetype();
    byBlock_ = database.byBlockLinetype();
    if (db::ObjectPtr<db::SymbolTable> table(database.linetypeTableId(), db::OpenMode::ForRead);
        table) {
        for (db::ObjectId id : table->recordIds()) {
            db::ObjectPtr<db::LinetypeTableRecord> record(id, db::OpenMode::ForRead);
            if (!record || id == byLayer_ || id == byBlock_) continue;
            LinetypePattern pattern;
            for (const auto& dash : record->dashes())
                if (std::isfinite(dash.length)) pattern.dashes.push_back(dash.length);
            for (double d : pattern.dashes) pattern.length += std::abs(d);
            // A pattern with no length draws as a continuous line.
            if (!(pattern.length > 0.0)) pattern.dashes.clear();
            linetypeIndex_[id] = static_cast<std::int32_t>(linetypes_.size());
            linetypes_.push_back(std::move(pattern));
        }
    }
    if (db::ObjectPtr<db::SymbolTable> table(database.layerTableId(), db::OpenMode::ForRead);
        table) {
        for (db::ObjectId id : table->recordIds()) {
            db::ObjectPtr<db::LayerTableRecord> record(id, db::OpenMode::ForRead);
            if (!record) continue;
            LayerStyle layer;
            layer.id = id;
            layer.name = record->name();
            layer.color = colorOf(std::abs(record->colorIndex()), -1);
            layer.visible = !record->isOff() && !record->isFrozen();
            layer.linetype = linetypeIndex(record->linetypeObjectId());
            if (layer.linetype < 0) layer.linetype = 0;
            layer.lineWeight = record->lineWeight();
            layerIndex_[id] = static_cast<std::int32_t>(layers_.size());
            layers_.push_back(std::move(layer));
        }
    }
    if (layers_.empty()) layers_.push_back({});  // a damaged drawing still draws, on a "0"
    auto zero = layerIndex_.find(database.layerZero());
    layerZero_ = zero != layerIndex_.end() ? zero->second : 0;
    ltscale_ = headerNumber(database, "$LTSCALE", 1.0);
    if (!(ltscale_ > 0.0)) ltscale_ = 1.0;
    pdmode_ = static_cast<int>(headerNumber(database, "$PDMODE", 0.0));
    pdsize_ = headerNumber(database, "$PDSIZE", 0.0);
    lwdisplay_ = headerNumber(database, "$LWDISPLAY", 0.0) != 0.0;
}

std::int32_t DrawingStyles::layerIndex(db::ObjectId layer) const {
    auto it = layerIndex_.find(layer);
    return it != layerIndex_.end() ? it->second : layerZero_;
}

std::int32_t DrawingStyles::linetypeIndex(db::ObjectId linetype) const {
    if (linetype.isNull() || linetype == byLayer_) return EntityLook::kLinetypeByLayer;
    if (linetype == byBlock_) return EntityLook::kLinetypeByBlock;
    auto it = linetypeIndex_.find(linetype);
    return it != linetypeIndex_.end() ? it->second : 0;
}

const LinetypePattern& DrawingStyles::linetype(std::int32_t index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= linetypes_.size()) return linetypes_[0];
    return linetypes_[static_cast<std::size_t>(index)];
}

EntityLook DrawingStyles::lookOf(const db::Entity& entity) const {
    EntityLook look;
    const std::int16_t index = entity.colorIndex();
    // A true colour stands over the colour index, which only says the nearest of the 256.
    if (entity.trueColor() >= 0)
        look.color = entity.trueColor() & 0xFFFFFF;
    else if (index == db::kColorByLayer)
        look.color = EntityLook::kByLayer;
    else if (index == db::kColorByBlock)
        look.color = EntityLook::kByBlock;
    else
        look.color = colorOf(std::abs(index), -1);
    look.layer = layerIndex(entity.layerId());
    look.linetype = linetypeIndex(entity.linetypeId());
    look.lineWeight = entity.lineWeight();
    const double scale = entity.linetypeScale();
    look.linetypeScale = std::isfinite(scale) && scale > 0.0 ? static_cast<float>(scale) : 1.0f;
    return look;
}

}  // namespace cad::gs
