// A drawing-database file reaching up into the module: the build must refuse it.
#include "cad/db/Database.h"
#include "vantor/ui/ModuleSettings.h"

int upwardIncludeProbe() { return sizeof(vantor::ModuleSettings) > 0 ? 1 : 0; }
