// Subcommands over a library drawing's catalogue: its category tree as the tree model builds
// it (through the .vnf cache), the part records of a group, a rebuild of the cache, and the
// supplier record.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "apps/common/JsonWriter.h"
#include "apps/vantor/CliCommand.h"
#include "cad/app/ScriptedDialogs.h"
#include "cad/db/Database.h"
#include "cad/sys/FileSystem.h"
#include "vantor/store/CatalogueCache.h"
#include "vantor/store/LibraryDrawing.h"
#include "vantor/store/PartRecordStore.h"
#include "vantor/store/SupplierInfo.h"
#include "vantor/store/SupplierPanel.h"
#include "vantor/store/TreeCache.h"
#include "vantor/store/VNTreeBase.h"

namespace vantor::cli {

namespace {

using apps::JsonWriter;

// Drawings are named by their absolute path, as the registered lists hold them, so the cache
// written here is the one the library window takes.
std::string drawingPath(const std::string& given) {
    std::error_code ignored;
    std::filesystem::path absolute = std::filesystem::absolute(given, ignored);
    return absolute.empty() ? given : absolute.lexically_normal().string();
}

void printMessages(const cad::app::ScriptedDialogs& dialogs) {
    for (const auto& box : dialogs.messageBoxes()) {
        std::ostream& out = box.icon() == cad::app::MB_ICONERROR ? std::cerr : std::cout;
        out << '[' << box.title << "] " << box.text << '\n';
    }
}

std::unique_ptr<cad::db::Database> openDrawing(const std::string& path) {
    cad::ErrorStatus status = cad::ErrorStatus::eOk;
    std::unique_ptr<cad::db::Database> db = openLibraryDrawing(path, &status);
    if (!db)
        failure("cannot read " + path + " (" + std::string(cad::errorStatusName(status)) + ")");
    return db;
}

std::string_view kindName(TreeNode::Kind kind) {
    switch (kind) {
        case TreeNode::Kind::LibraryRoot:
            return "library";
        case TreeNode::Kind::Category:
            return "category";
        case TreeNode::Kind::Group:
            return "group";
        case TreeNode::Kind::Record:
            return "record";
    }
    return "";
}

// A dictionary node: its sub-dictionaries as "children", its part records as "records".
void writeNodeJson(JsonWriter& out, const TreeNode& node) {
    out.key("children").beginArray();
    for (const auto& child : node.children) {
        if (!child->isDictionary()) continue;
        out.beginObject().member("name", child->name).member("kind", kindName(child->kind));
        writeNodeJson(out, *child);
        out.endObject();
    }
    out.endArray().key("records").beginArray();
    for (const auto& child : node.children) {
        if (child->isDictionary()) continue;
        out.beginObject().member("key", child->name).member("spec", child->recordText).endObject();
    }
    out.endArray();
}

void writeNodeText(const TreeNode& node, int depth) {
    const std::string indent(2 * depth, ' ');
    if (node.isDictionary())
        std::cout << indent << node.label() << " (" << kindName(node.kind) << ")\n";
    else
        std::cout << indent << node.name << '\t' << node.recordText << '\n';
    for (const auto& child : node.children) writeNodeText(*child, depth + 1);
}

// Loads the drawing into a tree model; false (reported) when it does not show.
bool loadTree(CVNTreeBase& tree, const std::string& path) {
    switch (tree.loadDrawing(path)) {
        case CVNTreeBase::LoadResult::Loaded:
        case CVNTreeBase::LoadResult::NoLibraryData:
            return true;
        case CVNTreeBase::LoadResult::Skipped:
            failure("no drawing " + path);
            return false;
        case CVNTreeBase::LoadResult::Unreadable:
            failure("cannot read " + path);
            return false;
    }
    return false;
}

int runTree(std::vector<std::string> args) {
    const bool json = takeFlag(args, "--json");
    if (args.size() != 1) return usageError("usage: vantor tree DRAWING [--json]");
    const std::string path = drawingPath(args[0]);
    cad::app::ScriptedDialogs dialogs;
    CVNTreeBase tree(dialogs);
    const bool loaded = loadTree(tree, path);
    printMessages(dialogs);
    if (!loaded) return kExitFailure;

    if (json) {
        JsonWriter out(std::cout);
        out.beginObject().member("drawing", path).key("libraries").beginArray();
        for (const auto& root : tree.roots()) {
            out.beginObject()
                .member("key", libraryKey(root->library))
                .member("name", root->label())
                .member("label", root->drawingLabel());
            writeNodeJson(out, *root);
            out.endObject();
        }
        out.endArray().endObject();
        std::cout << '\n';
    } else {
        for (const auto& root : tree.roots()) writeNodeText(*root, 0);
    }
    return kExitOk;
}

bool isView(PartFields::Id id) {
    return PartFields::field(id).kind == PartFields::Kind::View;
}

// The key, the views, the general fields by name and the user fields as one array, each group
// in stored order.
void writeRecordJson(JsonWriter& out, const PartRecord& record) {
    out.beginObject().member("key", record.key).key("views").beginArray();
    for (PartFields::Id id : PartFields::inStoredOrder()) {
        if (!isView(id)) continue;
        const cad::ge::Point3d& p = record.viewPoint(id);
        out.beginObject()
            .member("slot", PartFields::field(id).name)
            .member("block", record.text(id))
            .key("point")
            .beginArray()
            .value(p.x)
            .value(p.y)
            .value(p.z)
            .endArray()
            .endObject();
    }
    out.endArray();
    for (PartFields::Id id : PartFields::inStoredOrder())
        if (PartFields::field(id).kind == PartFields::Kind::General)
            out.member(PartFields::field(id).name, record.text(id));
    out.key("user").beginArray();
    for (PartFields::Id id : PartFields::inStoredOrder())
        if (PartFields::field(id).kind == PartFields::Kind::User) out.value(record.text(id));
    out.endArray().endObject();
}

// The key, the 14 texts in stored order, then each view as block@x,y,z.
void writeRecordText(const PartRecord& record) {
    std::cout << record.key;
    for (PartFields::Id id : PartFields::inStoredOrder())
        if (!isView(id)) std::cout << '\t' << record.text(id);
    for (PartFields::Id id : PartFields::inStoredOrder()) {
        if (!isView(id)) continue;
        const cad::ge::Point3d& p = record.viewPoint(id);
        std::cout << '\t' << record.text(id) << '@' << p.x << ',' << p.y << ',' << p.z;
    }
    std::cout << '\n';
}

int runParts(std::vector<std::string> args) {
    const bool json = takeFlag(args, "--json");
    if (args.size() != 2) return usageError("usage: vantor parts DRAWING GROUP-PATH [--json]");
    const std::string path = drawingPath(args[0]);
    std::unique_ptr<cad::db::Database> db = openDrawing(path);
    if (!db) return kExitFailure;
    cad::db::ObjectId group = dictionaryAtPath(*db, splitGroupPath(args[1]));
    if (group.isNull()) return failure("no group '" + args[1] + "' in " + path);

    GroupRecords read = readGroupRecords(group);
    for (const RecordProblem& problem : read.problems)
        std::cerr << "vantor: record " << problem.key << " skipped: " << problem.message << '\n';
    if (json) {
        JsonWriter out(std::cout);
        out.beginArray();
        for (const PartRecord& record : read.records) writeRecordJson(out, record);
        out.endArray();
        std::cout << '\n';
    } else {
        for (const PartRecord& record : read.records) writeRecordText(record);
    }
    return kExitOk;
}

int runCache(std::vector<std::string> args) {
    if (args.size() != 1) return usageError("usage: vantor cache DRAWING");
    const std::string path = drawingPath(args[0]);
    const std::string cachePath = TreeCache::pathFor(path);
    cad::sys::deleteFile(cachePath);
    cad::sys::deleteFile(CatalogueCache::pathFor(path));
    cad::app::ScriptedDialogs dialogs;
    CVNTreeBase tree(dialogs);
    const bool loaded = loadTree(tree, path);
    printMessages(dialogs);
    if (!loaded) return kExitFailure;

    std::vector<TreeCacheNode> nodes;
    if (!TreeCache::readFile(cachePath, nodes)) {
        return failure("the cache " + cachePath +
                       " was written but does not read back whole (a node count whose low byte "
                       "is 26 ends a text-mode read); the tree is shown from the drawing");
    }
    std::size_t records = 0;
    for (const TreeCacheNode& node : nodes) records += node.record ? 1 : 0;
    std::cout << "rebuilt " << cachePath << ": " << nodes.size() << " nodes, "
              << nodes.size() - records << " dictionaries, " << records << " records\n";
    return kExitOk;
}

int runSupplier(std::vector<std::string> args) {
    const bool json = takeFlag(args, "--json");
    std::string logoFile;
    if (auto at = std::find(args.begin(), args.end(), "--logo"); at != args.end()) {
        if (at + 1 == args.end()) return usageError("--logo needs a file name");
        logoFile = *(at + 1);
        args.erase(at, at + 2);
    }
    if (args.size() != 1)
        return usageError("usage: vantor supplier DRAWING [--json] [--logo FILE]");
    const std::string path = drawingPath(args[0]);
    std::unique_ptr<cad::db::Database> db = openDrawing(path);
    if (!db) return kExitFailure;
    std::optional<SupplierInfo> info = SupplierInfo::readFrom(*db);
    if (!logoFile.empty() && info) {
        std::ofstream out(logoFile, std::ios::binary);
        if (!out.write(info->logo.data(), static_cast<std::streamsize>(info->logo.size())))
            return failure("cannot write " + logoFile);
    }

    if (json) {
        JsonWriter out(std::cout);
        out.beginObject().member("drawing", path).key("supplier");
        if (!info) {
            out.beginObject().endObject().endObject();
            std::cout << '\n';
            return kExitOk;
        }
        const SupplierPanel panel = SupplierPanel::from(*info);
        out.beginObject()
            .member("companyName", info->texts[SupplierInfo::CompanyName])
            .member("address", info->texts[SupplierInfo::Address])
            .member("phone", info->texts[SupplierInfo::Phone])
            .member("fax", info->texts[SupplierInfo::Fax])
            .member("internet", info->texts[SupplierInfo::Internet])
            .member("mail", info->texts[SupplierInfo::Mail])
            .member("remark", info->texts[SupplierInfo::Remark])
            .member("logoBytes", static_cast<std::int64_t>(info->logo.size()))
            .key("panel")
            .beginObject()
            .member("phone", panel.phone)
            .member("fax", panel.fax)
            .member("internet", panel.internet)
            .member("internetLink", panel.internetLink)
            .member("mail", panel.mail)
            .member("mailLink", panel.mailLink)
            .endObject()
            .endObject()
            .endObject();
        std::cout << '\n';
        return kExitOk;
    }
    if (!info) {
        std::cout << "no supplier information\n";
        return kExitOk;
    }
    const SupplierPanel panel = SupplierPanel::from(*info);
    std::cout << panel.companyName << '\n'
              << panel.address << '\n'
              << panel.phone << '\n'
              << panel.fax << '\n'
              << panel.internet << '\t' << panel.internetLink << '\n'
              << panel.mail << '\t' << panel.mailLink << '\n'
              << panel.remark << '\n'
              << "logo: " << info->logo.size() << " bytes\n";
    return kExitOk;
}

}  // namespace

void addStoreCommands(std::vector<CliCommand>& commands) {
    commands.push_back({"tree",
                        "  tree DRAWING [--json]\n"
                        "      The category tree of the drawing's supplier and user libraries, as\n"
                        "      the library window shows it: from the .vnf cache beside the\n"
                        "      drawing, which is rebuilt first when missing, older or damaged.",
                        runTree});
    commands.push_back({"parts",
                        "  parts DRAWING GROUP-PATH [--json]\n"
                        "      The part records of a group with all 26 fields. GROUP-PATH is the\n"
                        "      library key and the categories down to the group, joined by '/':\n"
                        "      \"User data list/볼트/육각볼트\". Records that cannot be read are\n"
                        "      named on stderr and left out.",
                        runParts});
    commands.push_back(
        {"cache",
         "  cache DRAWING\n"
         "      Rebuilds the drawing's .vnf tree cache from the drawing and reports\n"
         "      its nodes.",
         runCache});
    commands.push_back({"supplier",
                        "  supplier DRAWING [--json] [--logo FILE]\n"
                        "      The supplier record of the drawing with the panel's texts and\n"
                        "      links; --logo writes the logo as read back to FILE.",
                        runSupplier});
}

}  // namespace vantor::cli
