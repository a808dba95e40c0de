// What a drawing says about how its entities look, read once per scene: its layers (colour,
// on and frozen, linetype, lineweight), its linetypes' dash patterns, and the header values
// the drawing of lines and points depends on (LTSCALE, PDMODE, PDSIZE, LWDISPLAY).
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "cad/db/ObjectId.h"
#include "cad/gs/EntityLook.h"

namespace cad::db {
class Database;
class Entity;
}  // namespace cad::db

namespace cad::gs {

struct LayerStyle {
    db::ObjectId id;
    std::string name;
    std::int32_t color = EntityLook::kForeground;  // 0xRRGGBB or kForeground
    bool visible = true;                           // on and not frozen
    std::int32_t linetype = 0;                     // index into the linetypes
    std::int16_t lineWeight = -3;
};

// Dashes in drawing units: positive a dash, negative a gap, zero a dot. Empty: continuous.
struct LinetypePattern {
    std::vector<double> dashes;
    double length = 0.0;
};

class DrawingStyles {
public:
    explicit DrawingStyles(const db::Database& database);

    EntityLook lookOf(const db::Entity& entity) const;
    std::int32_t layerIndex(db::ObjectId layer) const;
    std::int32_t layerZero() const { return layerZero_; }
    const std::vector<LayerStyle>& layers() const { return layers_; }
    std::vector<LayerStyle>& layers() { return layers_; }
    const LinetypePattern& linetype(std::int32_t index) const;

    double linetypeScale() const { return ltscale_; }    // LTSCALE
    int pointMode() const { return pdmode_; }            // PDMODE
    double pointSize() const { return pdsize_; }         // PDSIZE: <0 % of view, 0 5 %, >0 units
    bool showLineWeights() const { return lwdisplay_; }  // LWDISPLAY

private:
    std::int32_t linetypeIndex(db::ObjectId linetype) const;

    std::vector<LayerStyle> layers_;
    std::unordered_map<db::ObjectId, std::int32_t> layerIndex_;
    std::vector<LinetypePattern> linetypes_;  // [0] continuous
    std::unordered_map<db::ObjectId, std::int32_t> linetypeIndex_;
    db::ObjectId byLayer_, byBlock_;
    std::int32_t layerZero_ = 0;
    double ltscale_ = 1.0;
    int pdmode_ = 0;
    double pdsize_ = 0.0;
    bool lwdisplay_ = false;
};

}  // namespace cad::gs
