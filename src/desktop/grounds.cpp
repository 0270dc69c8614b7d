#include "desktop/grounds.h"

#include "desktop/style.h"
#include "desktop/text_rim.h"

#include <algorithm>

namespace velorn {

namespace {

constexpr QRgb dark_ink = 0xFF1B1F24;
constexpr QRgb pale_ink = 0xFFF3F4F6;
constexpr QRgb white_ink = 0xFFFFFFFF;

struct GroundRow {
    Colour colour;
    QRgb light, light_text;
    QRgb dark, dark_text;
};

constexpr GroundRow grounds[] = {
    {colour::red, 0xFFD32F2F, white_ink, 0xFFB71C1C, white_ink},
    {colour::cyan, 0xFFA9E8F2, dark_ink, 0xFF0F4C57, pale_ink},
    {colour::yellow, 0xFFFFF09A, dark_ink, 0xFF574A0C, pale_ink},
    {colour::scroll_bar, 0xFFC9CFD6, dark_ink, 0xFF454D56, pale_ink},
};

} // namespace

Ground ground_of(Colour colour, const QPalette& palette) {
    const bool dark = detect(palette) == Look::dark;
    const auto* const row = std::ranges::find(grounds, colour, &GroundRow::colour);
    if (row != std::end(grounds)) {
        return dark ? Ground{QColor::fromRgb(row->dark), QColor::fromRgb(row->dark_text)}
                    : Ground{QColor::fromRgb(row->light), QColor::fromRgb(row->light_text)};
    }
    switch (colour) {
    case colour::white: return {palette.color(QPalette::Base), palette.color(QPalette::Text)};
    case colour::info: return {palette.color(QPalette::AlternateBase), palette.color(QPalette::Text)};
    case colour::face: return {palette.color(QPalette::Window), palette.color(QPalette::WindowText)};
    default: break;
    }
    const QColor ground = to_qcolor(colour);
    const QColor ink = QColor::fromRgb(dark_ink);
    return {ground, contrast(ink, ground) >= least_contrast ? ink : QColor(Qt::white)};
}

} // namespace velorn
