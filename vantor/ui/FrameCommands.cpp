// The library window's command table.
#include "vantor/ui/FrameCommands.h"

#include <array>

namespace vantor {

namespace {

using enum FrameAction;

constexpr std::array kCommands = {
    FrameCommand{1200, ShowDrawingTree, "등록된 부품도면과 분류를 봅니다-부   품"},
    FrameCommand{1201, ShowExplorer, "도면 탐색기에서 파일을 찾아봅니다-파   일"},
    FrameCommand{1202, TogglePreview, "선택된 블록의 미리보기 창을 보이거나 숨깁니다-미리보기"},
    FrameCommand{1203, ToggleDataView, "선택된 도면의 블록 목록 창을 보이거나 숨깁니다-부품정보"},
    FrameCommand{1204, RegisterDrawings, "현재 선택되어진 관리창에 부품도면을 추가합니다-도면등록"},
    FrameCommand{1804, RegisterDrawings, "도면 등록"},
    FrameCommand{1205, ManageRegistrations, "관리창에 등록된 도면을 관리합니다-등록관리"},
    FrameCommand{1805, ManageRegistrations, "등록 관리"},
    FrameCommand{1206, ScanFolder,
                 "폴더를 검색하여-찾은 부품도면을 관리창에 자동으로 등록합니다-자동등록"},
    FrameCommand{1806, ScanFolder, "자동 등록"},
    FrameCommand{1207, CaptureBlock, "선택된 도면에 현재 도면의 블록을 추가합니다-블록추가"},
    FrameCommand{1209, OpenDrawing, "선택된 도면을 엽니다-도면열기"},
    FrameCommand{1601, OpenDrawing, "도면 열기"},
    FrameCommand{1210, Export, "분류 트리의 부품 데이터를 파일로 저장합니다-외부저장"},
    FrameCommand{1211, ViewMenu, "블록 목록의 보기 방식을 바꿉니다-보  기"},
    FrameCommand{32769, IconView, "아이콘(&S)"},
    FrameCommand{32770, ListView, "간단히(&L)"},
    FrameCommand{32771, DetailsView, "자세히(&D)"},
    FrameCommand{1103, AlwaysOnTop, "항상 위"},
    FrameCommand{1212, AlwaysOnTop, "창이 항상 보이도록 설정/해제 합니다-항상 위"},
    FrameCommand{1104, Quit, "끝내기(&X)"},
    FrameCommand{1213, Quit, "라이브러리 창을 닫습니다-끝내기"},
    FrameCommand{1100, FieldLabels, "필드명 재정의"},
    FrameCommand{1101, Help, "도움말"},
    FrameCommand{1214, Help, "도움말을 봅니다-도움말"},
    FrameCommand{1102, About, "About ..."},
    FrameCommand{1401, NewCategory, "분류 추가"},
    FrameCommand{1402, RenameCategory, "이름 바꾸기"},
    FrameCommand{1403, DeleteCategory, "분류 삭제"},
    FrameCommand{1404, AddPartData, "부품 데이터 추가"},
    FrameCommand{1405, DeleteAllData, "데이터 모두 삭제"},
    FrameCommand{1501, InsertPart, "도면에 도형 삽입"},
    FrameCommand{1502, AddPartData, "부품 데이터 추가"},
    FrameCommand{1503, ModifyPartData, "부품 데이터 수정"},
    FrameCommand{1504, DeletePartData, "부품 데이터 삭제"},
    FrameCommand{1800, AddWindow, "관리창 추가"},
    FrameCommand{1302, AddWindow, "새 관리창을 만듭니다-관리창 추가"},
    FrameCommand{1801, RenameWindow, "관리창 이름 바꾸기"},
    FrameCommand{1303, RenameWindow, "선택된 관리창의 이름을 바꿉니다-이름 바꾸기"},
    FrameCommand{1802, DeleteWindow, "관리창 삭제"},
    FrameCommand{1304, DeleteWindow, "선택된 관리창을 삭제합니다-관리창 삭제"},
    FrameCommand{1803, RefreshWindow, "새로 고침"},
    FrameCommand{1305, RefreshWindow, "관리창의 도면 목록을 다시 읽습니다-새로 고침"},
    FrameCommand{1807, InsertPart, "도면 삽입"},
};

constexpr std::array kMainToolBar = {1200, 1201, 0,    1202, 1203, 0,    1204, 1205, 1206,
                                     1207, 1209, 1210, 1211, 0,    1212, 1213, 0,    1214};
constexpr std::array kWindowToolBar = {kWindowDropDownPlace, 0, 1302, 1303, 1304, 0, 1305};

}  // namespace

std::span<const FrameCommand> frameCommands() {
    return kCommands;
}

const FrameCommand* frameCommand(int id) {
    for (const FrameCommand& command : kCommands)
        if (command.id == id) return &command;
    return nullptr;
}

std::string_view commandPrompt(const FrameCommand& command) {
    const std::size_t dash = command.entry.rfind('-');
    return dash == std::string_view::npos ? command.entry : command.entry.substr(0, dash);
}

std::span<const int> mainToolBar() {
    return kMainToolBar;
}

std::span<const int> windowToolBar() {
    return kWindowToolBar;
}

}  // namespace vantor
