// A module for the module loader's tests: it registers one command and tells the host's command
// line of every application message it gets, so a test reads what happened and in what order.
// It refuses to initialise while the host has a command group "FAILINIT".
#include "cad/app/AppMsg.h"
#include "cad/app/Application.h"
#include "cad/ed/Editor.h"

using namespace cad::app;

extern "C" __attribute__((visibility("default"))) AppRetCode acrxEntryPoint(AppMsg message,
                                                                            void* data) {
    Application* app = Application::current();
    switch (message) {
        case kInitAppMsg: {
            if (!app->commandStack().commands("FAILINIT").empty()) return kRetError;
            app->moduleLoader().unlockApplication(data);
            app->moduleLoader().registerAppMDIAware(data);
            cad::ErrorStatus es = app->commandStack().addCommand(
                "TESTMODULE", "HELLO", "HELLO", ACRX_CMD_MODAL,
                [] { cad::ed::acutPrintf("\nHello from the module"); });
            cad::ed::acutPrintf("\n[module] init %s", cad::errorStatusName(es).data());
            break;
        }
        case kUnloadAppMsg:
            app->commandStack().removeGroup("TESTMODULE");
            cad::ed::acutPrintf("\n[module] unload");
            break;
        case kLoadDwgMsg:
            cad::ed::acutPrintf("\n[module] load dwg %s",
                                static_cast<Document*>(data)->docTitle().c_str());
            break;
        case kUnloadDwgMsg:
            cad::ed::acutPrintf("\n[module] unload dwg %s of %d",
                                static_cast<Document*>(data)->docTitle().c_str(),
                                app->documentManager().documentCount());
            break;
        case kQuitMsg:
            cad::ed::acutPrintf("\n[module] quit");
            break;
        default:
            break;
    }
    return kRetOK;
}
