#pragma once
// Where code-page bytes meet Qt's Unicode strings: widgets and the clipboard.

#include <QString>
#include <string>

namespace zelvan {

QString toQString(const std::string& bytes);
std::string fromQString(const QString& text);

}  // namespace zelvan
