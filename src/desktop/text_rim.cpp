#include "desktop/text_rim.h"

#include "runtime/text.h"

#include <array>

namespace velorn {

namespace {

constexpr std::array<char16_t, 256> unicode_table = [] {
    std::array<char16_t, 256> table{};
    for (unsigned i = 0; i < table.size(); ++i) table[i] = unicode_of(static_cast<unsigned char>(i));
    return table;
}();

// Calls `missing` for each character that cp1252 lacks and stops when it says so.
template <class Missing>
bool convert(QStringView text, std::string& out, Missing missing) {
    out.reserve(static_cast<std::size_t>(text.size()));
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t character = text[i].unicode();
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            character = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        if (const auto byte = cp1252_of(character)) {
            out.push_back(static_cast<char>(*byte));
        } else if (!missing()) {
            return false;
        }
    }
    return true;
}

} // namespace

QString to_qstring(std::string_view cp1252) {
    QString result(static_cast<qsizetype>(cp1252.size()), Qt::Uninitialized);
    QChar* out = result.data();
    for (const char c : cp1252) *out++ = QChar(unicode_table[static_cast<unsigned char>(c)]);
    return result;
}

std::optional<std::string> to_cp1252(QStringView text) {
    std::string result;
    if (!convert(text, result, [] { return false; })) return std::nullopt;
    return result;
}

std::string to_cp1252_or(QStringView text, char substitute) {
    std::string result;
    convert(text, result, [&] {
        result.push_back(substitute);
        return true;
    });
    return result;
}

QColor to_qcolor(Colour colour) {
    return QColor(static_cast<int>(colour & 0xFFU), static_cast<int>((colour >> 8U) & 0xFFU),
                  static_cast<int>((colour >> 16U) & 0xFFU));
}

Colour to_colour(const QColor& colour) {
    return colour::rgb(static_cast<unsigned>(colour.red()), static_cast<unsigned>(colour.green()),
                       static_cast<unsigned>(colour.blue()));
}

} // namespace velorn
