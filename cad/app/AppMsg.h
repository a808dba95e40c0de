// The messages the host sends to a module's entry point and what the entry point answers, with
// the host's values.
#pragma once

namespace cad::app {

enum AppMsg {
    kNullMsg = 0,
    kInitAppMsg = 1,    // the module was loaded: register commands, reactors, menus
    kUnloadAppMsg = 2,  // the module is about to be unloaded: undo all of it
    kLoadDwgMsg = 3,    // a document was opened or made (its pointer comes as the data)
    kUnloadDwgMsg = 4,  // a document is about to go (its pointer comes as the data)
    kInvkSubrMsg = 5,
    kCfgMsg = 6,
    kEndMsg = 7,
    kQuitMsg = 8,  // the host is quitting; kUnloadAppMsg follows
    kSaveMsg = 9,  // a document is being saved
    kDependencyMsg = 10,
    kNoDependencyMsg = 11,
    kOleUnloadAppMsg = 12,
    kPreQuitMsg = 13,
    kInitDialogMsg = 14,
    kEndDialogMsg = 15,
    kSuspendMsg = 16,
};

enum AppRetCode {
    kRetOK = 0,
    kRetError = 3,
};

// The one function a module exports, under this C name: acrxEntryPoint(message, data), where
// data is the module's application id for kInitAppMsg and kUnloadAppMsg.
using EntryPointFunction = AppRetCode (*)(AppMsg message, void* data);
inline constexpr const char* kEntryPointName = "acrxEntryPoint";

}  // namespace cad::app
