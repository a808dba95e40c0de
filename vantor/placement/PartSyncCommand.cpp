// VNKSYNC's flow and its command-line list.
#include "vantor/placement/PartSyncCommand.h"

#include "cad/db/Database.h"
#include "cad/ed/Editor.h"
#include "cad/ed/ResultCodes.h"
#include "vantor/store/LibraryDrawingCache.h"

namespace vantor {

bool presentSyncOnCommandLine(const PartSyncList& list, cad::ed::Editor& editor) {
    editor.printf("\n라이브러리와 다른 부품: 변경 %d개, 없어짐 %d개 (연결된 부품 %d개)",
                  list.changed, list.gone, list.linked);
    for (const PartSyncRow& row : list.rows) {
        editor.printf("\n  [%s] %s %s (%s / %s): %s", row.handle.c_str(), row.block.c_str(),
                      row.name.c_str(), row.drawing.c_str(), row.group.c_str(), row.state.c_str());
        if (!row.changes.empty()) editor.printf("\n      %s", row.changes.c_str());
    }
    if (list.changed == 0) return false;
    std::string answer;
    editor.initGet(0, "Yes No");
    const int status = editor.getKeyword(kSyncUpdatePrompt, answer);
    return status == cad::ed::RTNONE || (status == cad::ed::RTNORM && answer == "Yes");
}

int runPartSync(cad::db::Database& db, cad::ed::Editor& editor, const PartSyncPresenter& present) {
    std::vector<LinkedPart> parts = findLinkedParts(db);
    if (parts.empty()) {
        editor.printf("\n라이브러리와 연결된 부품이 이 도면에 없습니다.");
        return 0;
    }
    LibraryDrawingCache libraries;
    const std::vector<PartSyncEntry> entries = compareWithRecords(std::move(parts), libraries);
    const PartSyncList list = makeSyncList(entries);
    if (list.rows.empty()) {
        editor.printf("\n연결된 부품 %d개가 모두 라이브러리와 같습니다.", list.linked);
        return 0;
    }
    if (!present(list) || list.changed == 0) return 0;
    const int updated = updateCarriedAttributes(entries);
    editor.printf("\n부품 %d개의 BOM 속성 %d개를 갱신했습니다.", list.changed, updated);
    return updated;
}

}  // namespace vantor
