// How an object is opened: many readers or one writer at a time.
#pragma once

namespace cad::db {

enum class OpenMode { ForRead, ForWrite };

}  // namespace cad::db
