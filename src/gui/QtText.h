// Text at the edge between the core (std::wstring) and Qt (QString).
#pragma once

#include <QString>
#include <string>

inline QString Q(const std::wstring& text) {
    return QString::fromStdWString(text);
}
inline std::wstring W(const QString& text) {
    return text.toStdWString();
}
