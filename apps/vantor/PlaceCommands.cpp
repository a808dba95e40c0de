// Placing a part of a library drawing into a drawing without the host: the placement UBLI
// runs, with the point, angle and options given on the command line instead of dragged.
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "apps/vantor/CliCommand.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/db/Dictionary.h"
#include "cad/db/Group.h"
#include "cad/db/ObjectPtr.h"
#include "cad/ed/Editor.h"
#include "cad/sys/FileLock.h"
#include "vantor/placement/InsertionInput.h"
#include "vantor/placement/LinetypeFile.h"
#include "vantor/placement/PartPlacement.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/ui/ModuleSettings.h"

namespace vantor::cli {

namespace {

// Removes "--name VALUE" from args; false (reported) when the value is missing.
bool takeValue(std::vector<std::string>& args, std::string_view name, std::string& value) {
    auto at = std::find(args.begin(), args.end(), name);
    if (at == args.end()) return true;
    if (at + 1 == args.end()) {
        usageError(std::string(name) + " needs a value");
        return false;
    }
    value = *(at + 1);
    args.erase(at, at + 2);
    return true;
}

bool parseNumber(const std::string& text, double& value) {
    std::size_t used = 0;
    try {
        value = std::stod(text, &used);
    } catch (const std::exception&) {
        return false;
    }
    return used == text.size();
}

// "X,Y" or "X,Y,Z".
bool parsePoint(const std::string& text, cad::ge::Point3d& point) {
    double values[3] = {0, 0, 0};
    std::size_t start = 0;
    int count = 0;
    for (; count < 3; ++count) {
        const std::size_t comma = text.find(',', start);
        if (!parseNumber(text.substr(start, comma - start), values[count])) return false;
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    if (count < 1 || count > 2) return false;
    point = {values[0], values[1], values[2]};
    return true;
}

// The record's block to place: the named view slot, else the first slot holding a block.
std::string viewBlock(const PartRecord& record, const std::string& view) {
    for (PartFields::Id id : PartFields::inStoredOrder()) {
        const PartFields::Field& field = PartFields::field(id);
        if (field.kind != PartFields::Kind::View) continue;
        if (view.empty() ? !record.text(id).empty() : view == field.name) return record.text(id);
    }
    return {};
}

int runPlace(std::vector<std::string> args) {
    PlacementRequest request;
    request.options.explode = takeFlag(args, "--explode");
    request.options.group = takeFlag(args, "--group");
    request.options.mirrorX = takeFlag(args, "--mirror-x");
    request.options.mirrorY = takeFlag(args, "--mirror-y");
    request.options.infoPoint = takeFlag(args, "--info-point");
    std::string at, angle = "0", scale = "1", view;
    if (!takeValue(args, "--at", at) || !takeValue(args, "--angle", angle) ||
        !takeValue(args, "--scale", scale) || !takeValue(args, "--view", view))
        return kExitUsage;
    if (args.size() != 4 || at.empty())
        return usageError(
            "usage: vantor place LIBRARY GROUP-PATH RECORD-KEY TARGET --at X,Y[,Z] [options]");
    double degrees = 0.0;
    if (!parsePoint(at, request.insertionPoint)) return usageError("--at wants X,Y or X,Y,Z");
    if (!parseNumber(angle, degrees) || !parseNumber(scale, request.scale))
        return usageError("--angle and --scale want numbers");
    cad::app::ScriptedDialogs dialogs;
    if (InsertionInput::validate(request.scale, degrees, dialogs) != InsertionInput::Field::None) {
        const auto box = dialogs.messageBoxes().front();
        std::cerr << '[' << box.title << "] " << box.text << '\n';
        return kExitUsage;
    }
    request.rotation = degrees * std::numbers::pi / 180.0;

    request.libraryPath = std::filesystem::absolute(args[0]).lexically_normal().string();
    {
        cad::ErrorStatus status = cad::ErrorStatus::eOk;
        std::unique_ptr<cad::db::Database> library =
            openLibraryDrawing(request.libraryPath, &status);
        if (!library)
            return failure("cannot read " + args[0] + " (" +
                           std::string(cad::errorStatusName(status)) + ")");
        const cad::db::ObjectId group = dictionaryAtPath(*library, splitGroupPath(args[1]));
        if (group.isNull()) return failure("no group '" + args[1] + "' in " + args[0]);
        cad::db::ObjectId recordId;
        if (auto dictionary = cad::db::open<cad::db::Dictionary>(group, cad::db::OpenMode::ForRead))
            dictionary->getAt(args[2], recordId);
        std::string problem;
        request.record.key = args[2];
        if (recordId.isNull() ||
            readPartRecord(recordId, request.record, &problem) != cad::ErrorStatus::eOk)
            return failure("no part record '" + args[2] + "' in '" + args[1] + "'" +
                           (problem.empty() ? "" : ": " + problem));
    }
    request.blockName = viewBlock(request.record, view);
    if (request.blockName.empty())
        return failure("the record has no " + (view.empty() ? std::string("view") : view) +
                       " block");

    // The target is made when it does not exist yet. Its lock is held from before the read
    // to the save: a part another program places meanwhile is read here, not overwritten.
    const std::string& target = args[3];
    cad::sys::FileLock lock;
    if (lock.acquire(target) != cad::ErrorStatus::eOk) return failure(lock.message());
    auto db = std::make_unique<cad::db::Database>(!std::filesystem::exists(target));
    if (std::filesystem::exists(target)) {
        if (cad::ErrorStatus es = db->readDwgFile(target); es != cad::ErrorStatus::eOk)
            return failure("cannot read " + target + ": " + db->lastErrorMessage());
    }
    ModuleSettings settings;
    settings.load();
    cad::ed::Editor editor;
    PartPlacement placement(*db, editor, settings.moduleFolder + std::string(kLinetypeFileName));
    PlacedPart placed;
    if (cad::ErrorStatus es = placement.place(request, placed); es != cad::ErrorStatus::eOk) {
        std::cerr << editor.commandLine().text();
        return failure(es == cad::ErrorStatus::eKeyNotFound
                           ? "no block '" + request.blockName + "' in " + args[0]
                           : "placing failed (" + std::string(cad::errorStatusName(es)) + ")");
    }
    if (db->saveAs(target) != cad::ErrorStatus::eOk) return failure(db->lastErrorMessage());

    const cad::ge::Point3d& p = placed.basePoint;
    std::cout << "placed " << request.blockName << " at " << p.x << ',' << p.y << ',' << p.z << ": "
              << placed.entities.size() << " entities";
    std::string groupName;
    if (auto group = cad::db::open<cad::db::Group>(placed.group, cad::db::OpenMode::ForRead);
        group && group->getName(groupName) == cad::ErrorStatus::eOk)
        std::cout << ", group " << groupName;
    std::cout << '\n';
    return kExitOk;
}

}  // namespace

void addPlaceCommands(std::vector<CliCommand>& commands) {
    commands.push_back(
        {"place",
         "  place LIBRARY GROUP-PATH RECORD-KEY TARGET --at X,Y[,Z] [--angle DEG] [--scale S]\n"
         "        [--view SLOT] [--explode] [--group] [--mirror-x] [--mirror-y] [--info-point]\n"
         "      Places a part into the drawing TARGET (made when missing) and saves it, as\n"
         "      the insertion command does without the drag: the record RECORD-KEY\n"
         "      (\"QRB_VANTORDATA-0\") of the group GROUP-PATH (see 'parts'), its block\n"
         "      copied from LIBRARY with its layers, its BOM mark filled with the record.\n"
         "      --at is in the drawing's user coordinate system; the angle is in degrees\n"
         "      (-360 to 360), the scale 0.00000001 to 100000000. SLOT is front, side,\n"
         "      plan or drawing1 to drawing3 (default: the first slot with a block).\n"
         "      --explode leaves the block's entities instead of a reference, --group\n"
         "      groups what was made, --mirror-x/-y mirror along the axis, --info-point\n"
         "      adds a point at the insertion point.",
         runPlace});
}

}  // namespace vantor::cli
