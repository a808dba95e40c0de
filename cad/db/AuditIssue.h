// A data problem found in a drawing: found while loading (and repaired where that is safe) or
// by the audit. Codes are stable so scripts and tests can rely on them.
#pragma once

#include <string>

#include "cad/db/Handle.h"

namespace cad::db {

struct AuditIssue {
    int code = 0;          // see LoadIssueCodes.h for the list
    std::string message;   // English, one line
    Handle handle;         // the object concerned, null when none
    bool fixed = false;    // repaired on load or by the audit's fix mode
};

}  // namespace cad::db
