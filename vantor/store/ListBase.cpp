// The block list of a library drawing.
#include "vantor/store/ListBase.h"

#include "cad/app/UserDialogs.h"
#include "cad/db/BlockTableRecord.h"
#include "cad/db/Database.h"
#include "cad/db/ObjectPtr.h"
#include "cad/db/SymbolTable.h"
#include "vantor/store/LibraryDrawing.h"

namespace vantor {

using cad::db::OpenMode;

CListBase::CListBase(cad::app::UserDialogs& dialogs) : dialogs_(dialogs) {}

bool CListBase::build(cad::db::Database& db) {
    blocks_.clear();
    if (db.fileName().empty()) {
        dialogs_.messageBox(
            "파일이름을 가져올 수 없습니다.\n- CListBase::BuildDWG(AcDbDatabase * pDb, BOOL "
            "bDocument) error",
            kFileNameErrorTitle, cad::app::MB_OK | cad::app::MB_ICONERROR);
        return false;
    }
    std::vector<cad::db::ObjectId> ids;
    if (auto table = cad::db::open<cad::db::SymbolTable>(db.blockTableId(), OpenMode::ForRead))
        ids = table->recordIds();
    for (cad::db::ObjectId id : ids) {
        auto block = cad::db::open<cad::db::BlockTableRecord>(id, OpenMode::ForRead);
        if (!block || block->isAnonymous() || block->isLayout()) continue;
        blocks_.push_back({block->name(), block->comments(), block->hasPreviewIcon()});
    }
    return true;
}

}  // namespace vantor
