// UTF-8 texts of the logic classes as Qt strings and back.
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace vantor {

inline QString qText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string stdText(const QString& text) {
    return text.toStdString();
}

}  // namespace vantor
