#include "platform/qtext.h"

#include "platform/codepage.h"

namespace zelvan {

QString toQString(const std::string& bytes) {
    QString out;
    out.reserve(static_cast<qsizetype>(bytes.size()));
    for (unsigned char b : bytes) out += QChar(static_cast<char16_t>(codepage::toUnicode(b)));
    return out;
}

std::string fromQString(const QString& text) {
    std::string out;
    out.reserve(static_cast<std::size_t>(text.size()));
    for (QChar c : text)
        out +=
            static_cast<char>(codepage::fromUnicode(c.unicode()).value_or(codepage::kReplacement));
    return out;
}

}  // namespace zelvan
