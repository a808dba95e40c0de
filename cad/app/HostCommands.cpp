// The host's built-in commands.
#include "cad/app/HostCommands.h"

#include <cstdio>

#include "cad/app/Application.h"
#include "cad/db/Database.h"
#include "cad/ed/ResultCodes.h"
#include "cad/ed/TypedInput.h"

namespace cad::app {

namespace {

std::string format(const ed::SysVarValue& value) {
    char buffer[128];
    if (auto i = std::get_if<int>(&value)) return std::to_string(*i);
    if (auto d = std::get_if<double>(&value)) {
        std::snprintf(buffer, sizeof buffer, "%.4f", *d);
        return buffer;
    }
    if (auto p = std::get_if<ge::Point3d>(&value)) {
        std::snprintf(buffer, sizeof buffer, "%.4f,%.4f,%.4f", p->x, p->y, p->z);
        return buffer;
    }
    return "\"" + std::get<std::string>(value) + "\"";
}

}  // namespace

void HostCommands::registerCommands() {
    CommandStack& stack = app_.commandStack();
    struct Entry {
        const char* name;
        int flags;
        void (HostCommands::*run)();
    };
    const Entry entries[] = {
        {"OPEN", ACRX_CMD_SESSION, &HostCommands::open},
        {"NEW", ACRX_CMD_SESSION, &HostCommands::newDrawing},
        {"CLOSE", ACRX_CMD_SESSION, &HostCommands::close},
        {"QSAVE", ACRX_CMD_MODAL, &HostCommands::qsave},
        {"SAVEAS", ACRX_CMD_MODAL, &HostCommands::saveAs},
        {"SETVAR", ACRX_CMD_TRANSPARENT, &HostCommands::setVar},
        {"ARX", ACRX_CMD_MODAL, &HostCommands::arx},
        {"MENULOAD", ACRX_CMD_MODAL, &HostCommands::menuLoad},
        {"MENUUNLOAD", ACRX_CMD_MODAL, &HostCommands::menuUnload},
    };
    for (const Entry& entry : entries)
        stack.addCommand(kGroupName, entry.name, entry.name, entry.flags,
                         [this, run = entry.run] { (this->*run)(); });
    stack.addCommand(kGroupName, "QUIT", "QUIT", ACRX_CMD_MODAL,
                     [this] { app_.commandProcessor().quit(); });
}

void HostCommands::open() {
    ed::Editor& editor = app_.editor();
    std::string path;
    if (editor.getString("\nEnter name of drawing to open: ", path, true) != ed::RTNORM ||
        path.empty())
        return;
    ed::SysVarValue sdi;
    editor.getVar("SDI", sdi);
    DocumentManager& documents = app_.documentManager();
    ErrorStatus es = std::get<int>(sdi) != 0 ? documents.syncFileOpen(path)
                                             : documents.appContextOpenDocument(path);
    if (es == ErrorStatus::eOk && documents.curDocument()->isReadOnly())
        editor.printf("\n\"%s\" is open read-only.", path.c_str());
}

void HostCommands::newDrawing() {
    app_.documentManager().appContextNewDocument();
}

void HostCommands::close() {
    DocumentManager& documents = app_.documentManager();
    if (Document* document = documents.curDocument()) documents.closeDocument(document);
}

void HostCommands::qsave() {
    Document* document = app_.documentManager().curDocument();
    if (document == nullptr) return;
    if (document->isReadOnly()) {
        app_.editor().printf("\n\"%s\" is read-only: save it under another name with SAVEAS.",
                             document->fileName().c_str());
        return;
    }
    if (document->database()->fileName().empty()) {
        saveAs();
        return;
    }
    app_.moduleLoader().sendMessage(kSaveMsg, document);
    ErrorStatus es = document->database()->saveAs(document->fileName());
    if (es != ErrorStatus::eOk)
        app_.editor().printf("\nCannot save \"%s\": %s", document->fileName().c_str(),
                             std::string(errorStatusName(es)).c_str());
}

void HostCommands::saveAs() {
    Document* document = app_.documentManager().curDocument();
    if (document == nullptr) return;
    std::string path;
    if (app_.editor().getString("\nEnter file name: ", path, true) != ed::RTNORM || path.empty())
        return;
    app_.moduleLoader().sendMessage(kSaveMsg, document);
    ErrorStatus es = document->database()->saveAs(path);
    if (es != ErrorStatus::eOk) {
        app_.editor().printf("\nCannot save \"%s\": %s", path.c_str(),
                             std::string(errorStatusName(es)).c_str());
        return;
    }
    document->fileName_ = path;
    document->readOnly_ = false;
}

void HostCommands::setVar() {
    ed::Editor& editor = app_.editor();
    std::string name;
    if (editor.getString("\nEnter variable name: ", name) != ed::RTNORM || name.empty()) return;
    const ed::SystemVariables::Definition* definition = ed::SystemVariables::find(name);
    ed::SysVarValue value;
    if (definition == nullptr || editor.getVar(name, value) != ed::RTNORM) {
        editor.printf("\nUnknown variable name \"%s\".", name.c_str());
        return;
    }
    if (definition->readOnly) {
        editor.printf("\n%s = %s (read only)", definition->name.c_str(), format(value).c_str());
        return;
    }
    std::string prompt = "\nEnter new value for " + definition->name + " <" + format(value) + ">: ";
    std::string text;
    if (editor.getString(prompt, text, std::holds_alternative<std::string>(value)) != ed::RTNORM ||
        text.empty())
        return;
    std::optional<ed::SysVarValue> parsed;
    if (std::holds_alternative<int>(value)) {
        if (auto number = ed::parseInteger(text)) parsed = static_cast<int>(*number);
    } else if (std::holds_alternative<double>(value)) {
        if (auto number = ed::parseReal(text)) parsed = *number;
    } else if (std::holds_alternative<ge::Point3d>(value)) {
        if (auto point = ed::parsePoint(text, editor.lastPoint())) parsed = *point;
    } else {
        parsed = text;
    }
    if (!parsed || editor.setVar(definition->name, *parsed) != ed::RTNORM)
        editor.printf("\nInvalid value for %s: %s", definition->name.c_str(), text.c_str());
}

void HostCommands::arx() {
    ed::Editor& editor = app_.editor();
    std::string option;
    editor.initGet(0, "Load Unload");
    if (editor.getKeyword("\nEnter an option [Load/Unload]: ", option) != ed::RTNORM) return;
    std::string path;
    if (editor.getString("\nEnter module file name: ", path, true) != ed::RTNORM || path.empty())
        return;
    if (option == "Load")
        app_.moduleLoader().loadModule(path, true);
    else
        app_.moduleLoader().unloadModule(path, true);
}

void HostCommands::menuLoad() {
    ed::Editor& editor = app_.editor();
    std::string path;
    if (editor.getString("\nEnter name of menu file to load: ", path, true) != ed::RTNORM ||
        path.empty())
        return;
    std::string error;
    if (app_.menuGroups().load(path, error) != ErrorStatus::eOk) {
        editor.printf("\n%s", error.c_str());
        return;
    }
    const MenuGroup* group = app_.menuGroups().item(app_.menuGroups().count() - 1);
    for (const PopMenu& menu : group->menus()) app_.menuBar().insertInMenuBar(group->name(), menu);
    editor.printf("\nMenu group \"%s\" loaded.", group->name().c_str());
}

void HostCommands::menuUnload() {
    ed::Editor& editor = app_.editor();
    std::string name;
    if (editor.getString("\nEnter the name of the menu group to unload: ", name, true) !=
            ed::RTNORM ||
        name.empty())
        return;
    if (app_.menuGroups().unload(name) != ErrorStatus::eOk)
        editor.printf("\nMenu group \"%s\" is not loaded.", name.c_str());
}

}  // namespace cad::app
