// The drawing explorer's drawing information and R14 copy.
#include "vantor/registry/operations/DrawingExplorer.h"

#include <filesystem>

#include "cad/app/Document.h"
#include "cad/app/DocumentManager.h"
#include "cad/app/UserDialogs.h"
#include "cad/db/Database.h"
#include "cad/sys/AsciiCase.h"
#include "cad/sys/SplitPath.h"

namespace vantor {

namespace app = cad::app;
using cad::ErrorStatus;
using cad::sys::ShareMode;

namespace {

constexpr std::string_view kInfoTitle = "도면정보";
constexpr std::string_view kConversionTitle = "파일 변환 에러";

bool sameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    if (std::filesystem::equivalent(a, b, error)) return true;
    return cad::sys::nativePath(a) == cad::sys::nativePath(b);
}

bool isDwgExtension(std::string_view ext) {
    return cad::sys::equalNoCase(ext, ".dwg");
}

}  // namespace

DrawingExplorer::DrawingExplorer(app::DocumentManager& documents, app::UserDialogs& dialogs)
    : documents_(documents), dialogs_(dialogs) {}

DrawingExplorer::~DrawingExplorer() = default;

DrawingExplorer::Selection DrawingExplorer::selectDrawing(const std::string& path) {
    path_ = path;
    database_ = std::make_unique<cad::db::Database>(false, true);
    ErrorStatus status = database_->readDwgFile(path, ShareMode::DenyWrite, true);
    bool shared = false;
    if (status == ErrorStatus::eFileAccessErr) {
        database_ = std::make_unique<cad::db::Database>(false, true);
        status = database_->readDwgFile(path, ShareMode::DenyNone, true);
        shared = true;
    }
    if (status != ErrorStatus::eOk) database_.reset();

    switch (status) {
        case ErrorStatus::eOk:
            break;
        case ErrorStatus::eFileNotFound:
            dialogs_.messageBox(
                "이 도면은 존재하지 않습니다.\n'F5' 키를 눌러 리스트를 갱신하십시오.", kInfoTitle,
                app::MB_OK | app::MB_ICONINFORMATION);
            return Selection::Missing;
        case ErrorStatus::eBadDwgFile:
            dialogs_.messageBox("이 도면은 손상되었습니다.\n도면을 복구하십시오.", kInfoTitle,
                                app::MB_OK | app::MB_ICONINFORMATION);
            return Selection::Damaged;
        default:
            return Selection::NoData;
    }
    if (!shared) return Selection::Shown;
    dialogs_.messageBox(
        "(주의) 이 도면은 다른 프로그램에서 이미 사용되고 있으므로,\n수정작업은 하실 수 "
        "없습니다. (읽기 전용)",
        "읽기전용모드", app::MB_OK | app::MB_ICONINFORMATION);
    return Selection::ReadOnly;
}

bool DrawingExplorer::isOpenInHost(const std::string& path) const {
    for (const app::Document* document : documents_.documents()) {
        if (sameFile(document->fileName(), path)) return true;
    }
    return false;
}

std::string DrawingExplorer::r14CopyPath(std::string_view chosen) {
    std::string path(chosen);
    if (!isDwgExtension(cad::sys::splitPath(path).ext)) path += ".dwg";
    return path;
}

DrawingExplorer::Copy DrawingExplorer::writeR14Copy() {
    if (isOpenInHost(path_)) {
        dialogs_.messageBox("파일을 변환할 수 없습니다. (열린도면).", kConversionTitle,
                            app::MB_OK | app::MB_ICONERROR);
        return Copy::Refused;
    }
    auto chosen = dialogs_.saveFile("R14 도면 생성", "R14 Drawing (*.dwg)", ".dwg", "");
    if (!chosen) return Copy::Cancelled;

    // Written from a copy read for it: saving renames a database, and the selected one must
    // stay the drawing the views edit and save.
    cad::db::Database copy(false, true);
    ErrorStatus status = copy.readDwgFile(path_, ShareMode::DenyNone, true);
    if (status == ErrorStatus::eOk)
        status = copy.saveAs(r14CopyPath(*chosen), cad::db::DxfVersion::R14);
    if (status == ErrorStatus::eOk) return Copy::Written;
    dialogs_.messageBox(status == ErrorStatus::eFileAccessErr
                            ? "파일을 엑세스할 수 없습니다."
                            : "알수없는 문제로 인하여 변환하는데 실패하였습니다.",
                        kConversionTitle, app::MB_OK | app::MB_ICONERROR);
    return Copy::Failed;
}

}  // namespace vantor
