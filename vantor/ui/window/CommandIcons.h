// The icon of each tool button, from the style's standard images so that they match the
// desktop's theme and scale with it.
#pragma once

#include <QIcon>

class QStyle;

namespace vantor {

QIcon commandIcon(int id, const QStyle& style);
// The library window's own small icon.
QIcon frameIcon(const QStyle& style);

}  // namespace vantor
