// What the user is told when work in the drawing cannot start because the host is running a
// command: the library window's insert and open, and a capture from the drawing.
#pragma once

#include <string_view>

namespace vantor {

inline constexpr std::string_view kHostBusyText =
    "AutoCAD가 명령 실행 중입니다. \n기존 명령을 취소 및 종료하신 후 다시 시도해 주십시오.";
inline constexpr std::string_view kHostBusyTitle = "명령 중첩 에러";

}  // namespace vantor
