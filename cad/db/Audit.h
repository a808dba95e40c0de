// The audit: data problems of a database (broken owner links, references that name nothing,
// layouts and block records that disagree), found with the stable codes of LoadIssueCodes.h
// and, on request, repaired where that is safe.
#pragma once

#include <vector>

#include "cad/db/AuditIssue.h"

namespace cad::db {

class Database;

// Finds the problems and changes nothing. An empty answer means the database is sound.
std::vector<AuditIssue> audit(const Database& db);

// With `fix`, repairs what can be repaired without guessing (dangling dictionary entries and
// links removed, objects given back to the container that lists them, references to nothing
// cleared or pointed at the standard record) and marks those issues fixed. Objects must be
// closed while it runs.
std::vector<AuditIssue> audit(Database& db, bool fix);

}  // namespace cad::db
