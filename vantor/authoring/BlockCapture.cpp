// Block capture into a library drawing and the BOM mark's point.
#include "vantor/authoring/BlockCapture.h"

#include <algorithm>
#include <filesystem>
#include <vector>

#include "cad/app/DocumentManager.h"
#include "cad/app/UserDialogs.h"
#include "cad/db/BlockReference.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/Entity.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ed/SelectionSet.h"
#include "vantor/placement/BlockTransfer.h"
#include "vantor/ui/HostBusy.h"

namespace vantor {

using cad::ErrorStatus;
using cad::db::BlockReference;
using cad::db::BlockTableRecord;
using cad::db::ObjectId;
using cad::db::OpenMode;
using cad::ge::Point3d;

namespace {

constexpr unsigned kErrorBox = cad::app::MB_OK | cad::app::MB_ICONERROR;

ObjectId blockNamed(const cad::db::Database& db, std::string_view name) {
    ObjectId id;
    auto table = cad::db::open<cad::db::SymbolTable>(db.blockTableId(), OpenMode::ForRead);
    if (!table || table->getAt(name, id) != ErrorStatus::eOk) return {};
    return id;
}

std::optional<CapturedBlock> describe(ObjectId id) {
    auto record = cad::db::open<BlockTableRecord>(id, OpenMode::ForRead);
    if (!record) return std::nullopt;
    return CapturedBlock{id, std::string(record->name()), record->origin()};
}

// Where the part stands for the pick: its extents and its insertion point.
struct PartInView {
    cad::db::Extents3d extents;
    Point3d position;
};

// A reference to the block in model space, the first one found.
std::optional<PartInView> referenceInModelSpace(cad::db::Database& drawing,
                                                std::string_view blockName) {
    const ObjectId block = blockNamed(drawing, blockName);
    if (block.isNull()) return std::nullopt;
    auto space = cad::db::open<BlockTableRecord>(drawing.modelSpaceId(), OpenMode::ForRead);
    if (!space) return std::nullopt;
    for (ObjectId id : space->entityIds()) {
        auto reference = cad::db::open<BlockReference>(id, OpenMode::ForRead);
        if (!reference || reference->blockTableRecord() != block) continue;
        PartInView part{{}, reference->position()};
        reference->getGeomExtents(part.extents);
        return part;
    }
    return std::nullopt;
}

// The library's block as a reference at its own origin would show it: its entities where
// they are in the block, which is where they were drawn when the block was made of them.
std::optional<PartInView> blockAtItsOrigin(const cad::db::Database& library,
                                           std::string_view blockName) {
    const ObjectId block = blockNamed(library, blockName);
    auto record = cad::db::open<BlockTableRecord>(block, OpenMode::ForRead);
    if (!record) return std::nullopt;
    PartInView part{{}, record->origin()};
    for (ObjectId id : record->entityIds()) {
        auto entity = cad::db::open<cad::db::Entity>(id, OpenMode::ForRead);
        cad::db::Extents3d extents;
        if (entity && entity->getGeomExtents(extents) == ErrorStatus::eOk)
            part.extents.addExtents(extents);
    }
    return part;
}

}  // namespace

BlockCapture::BlockCapture(cad::ed::Editor& editor, cad::app::DocumentManager& documents,
                           cad::app::UserDialogs& dialogs)
    : editor_(editor), documents_(documents), dialogs_(dialogs) {}

bool BlockCapture::isCurrentDrawing(const std::string& path) const {
    const cad::app::Document* document = documents_.curDocument();
    if (document == nullptr || path.empty()) return false;
    // One file under two names (a link, "..") is still the one drawing.
    std::error_code error;
    return document->fileName() == path ||
           std::filesystem::equivalent(document->fileName(), path, error);
}

bool BlockCapture::quiescent() {
    if (documents_.isQuiescent(documents_.curDocument())) return true;
    dialogs_.messageBox(kHostBusyText, kHostBusyTitle, kErrorBox);
    return false;
}

std::optional<CapturedBlock> BlockCapture::capture(cad::db::Database* target, bool currentDrawing,
                                                   const CallerWindow& caller) {
    if (!quiescent()) return std::nullopt;
    CallerWindow::Hidden hidden(caller);

    editor_.print(kSelectPrompt);
    cad::ed::SelectionSet set;
    if (editor_.ssget(cad::ed::Editor::SelectMode::Prompt, set) != cad::ed::RTNORM)
        return std::nullopt;

    // One block reference alone stands for its definition; anything else is taken as drawn.
    if (set.length() == 1) {
        auto reference = cad::db::open<BlockReference>(set.ids().front(), OpenMode::ForRead);
        if (reference) {
            const ObjectId block = reference->blockTableRecord();
            reference.close();
            return copyPickedBlock(target, currentDrawing, block);
        }
    }
    if (target == nullptr) {
        dialogs_.messageBox("블록이 생성되는 도면 정보가 없습니다.", "데이터베이스 에러",
                            kErrorBox);
        return std::nullopt;
    }
    const ObjectId made = BlockTransfer::capture(set.ids(), *target,
                                                 target == editor_.database(), editor_, dialogs_);
    std::optional<CapturedBlock> result = made.isNull() ? std::nullopt : describe(made);
    if (!result) editor_.print(kFailedLine);
    return result;
}

std::optional<CapturedBlock> BlockCapture::copyPickedBlock(cad::db::Database* target,
                                                           bool currentDrawing, ObjectId block) {
    // The block is the target's already: there is nothing to copy it from.
    if (currentDrawing) {
        dialogs_.messageBox("현재 도면에 존재하는 블록입니다.", "중첩 에러", kErrorBox);
        return std::nullopt;
    }
    if (!cad::db::open<BlockTableRecord>(block, OpenMode::ForRead)) {
        dialogs_.messageBox("블록 정보 읽기 에러.", "읽기 에러", kErrorBox);
        return std::nullopt;
    }
    if (target == nullptr) {
        dialogs_.messageBox("블록이 생성되는 도면 정보가 없습니다.", "데이터베이스 에러",
                            kErrorBox);
        return std::nullopt;
    }
    const ObjectId copied = BlockTransfer::copyDefinition(*target, block);
    std::optional<CapturedBlock> result = copied.isNull() ? std::nullopt : describe(copied);
    if (!result) editor_.print(kFailedLine);
    return result;
}

std::optional<Point3d> BlockCapture::pickBomPoint(const cad::db::Database& library,
                                                  std::string_view blockName,
                                                  const CallerWindow& caller) {
    if (!quiescent()) return std::nullopt;
    cad::app::Document* document = documents_.curDocument();
    cad::db::Database* drawing = editor_.database();
    if (document == nullptr || drawing == nullptr) return std::nullopt;
    const cad::ed::ViewRecord savedView = editor_.currentView();
    if (document->isReadOnly()) {
        dialogs_.messageBox("열린도면이 읽기 전용입니다.", "작업 중지", kErrorBox);
        return std::nullopt;
    }

    CallerWindow::Hidden hidden(caller);
    cad::ed::SysVarValue limcheck = 0;
    editor_.getVar("LIMCHECK", limcheck);
    if (editor_.setVar("TILEMODE", 1) != cad::ed::RTNORM) {
        dialogs_.messageBox("도면을 제어할 수 없습니다.", "도면 제어 에러", kErrorBox);
        editor_.setVar("LIMCHECK", limcheck);
        return std::nullopt;
    }
    std::optional<PartInView> part = referenceInModelSpace(*drawing, blockName);
    if (!part) part = blockAtItsOrigin(library, blockName);
    if (!part) return std::nullopt;

    // Limits checking would refuse a view centre outside the drawing's limits.
    editor_.setVar("LIMCHECK", 0);
    if (!part->extents.isEmpty()) {
        cad::ed::ViewRecord view = savedView;
        const cad::db::Extents3d& box = part->extents;
        view.centerPoint = {(box.minPoint.x + box.maxPoint.x) / 2,
                            (box.minPoint.y + box.maxPoint.y) / 2};
        const double aspect = savedView.height > 0 ? savedView.width / savedView.height : 1.0;
        const double size = std::max(box.maxPoint.y - box.minPoint.y,
                                     (box.maxPoint.x - box.minPoint.x) / aspect);
        // A part of one point keeps the present size rather than a view of nothing.
        if (size > 0) {
            view.height = size;
            view.width = size * aspect;
        }
        editor_.setCurrentView(view);
    }
    editor_.setVar("LIMCHECK", limcheck);

    Point3d picked;
    const int answer = editor_.getPoint(kBomPrompt, picked);
    editor_.setCurrentView(savedView);
    if (answer != cad::ed::RTNORM) return std::nullopt;
    return Point3d{picked.x - part->position.x, picked.y - part->position.y,
                   picked.z - part->position.z};
}

}  // namespace vantor
