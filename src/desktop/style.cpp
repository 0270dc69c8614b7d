#include "desktop/style.h"

#include "desktop/text_rim.h"

#include <QApplication>
#include <QEvent>
#include <QProxyStyle>
#include <QTimer>
#include <QToolTip>

#include <algorithm>
#include <array>
#include <cmath>

namespace velorn {

namespace {

struct RoleColours {
    QPalette::ColorRole role;
    QRgb light;
    QRgb dark;
};

constexpr std::array role_colours = {
    RoleColours{QPalette::Window, 0xFFF3F4F6, 0xFF1F2327},
    RoleColours{QPalette::WindowText, 0xFF1B1F24, 0xFFE4E7EA},
    RoleColours{QPalette::Base, 0xFFFFFFFF, 0xFF15181B},
    RoleColours{QPalette::AlternateBase, 0xFFEEF1F5, 0xFF1B1F23},
    RoleColours{QPalette::Text, 0xFF1B1F24, 0xFFE4E7EA},
    RoleColours{QPalette::PlaceholderText, 0xFF5D6570, 0xFF98A1AB},
    RoleColours{QPalette::Button, 0xFFEBEDF0, 0xFF2B3036},
    RoleColours{QPalette::ButtonText, 0xFF1B1F24, 0xFFE4E7EA},
    RoleColours{QPalette::BrightText, 0xFF1B1F24, 0xFFFFFFFF},
    RoleColours{QPalette::Highlight, 0xFF1D5FAE, 0xFF2A66AE},
    RoleColours{QPalette::HighlightedText, 0xFFFFFFFF, 0xFFFFFFFF},
    RoleColours{QPalette::Link, 0xFF1D5FAE, 0xFF7FB4F2},
    RoleColours{QPalette::LinkVisited, 0xFF4B5A8C, 0xFFA3B4DC},
    RoleColours{QPalette::ToolTipBase, 0xFF2B3036, 0xFF3A4149},
    RoleColours{QPalette::ToolTipText, 0xFFF3F4F6, 0xFFF3F4F6},
    RoleColours{QPalette::Light, 0xFFFFFFFF, 0xFF3A4149},
    RoleColours{QPalette::Midlight, 0xFFF7F8FA, 0xFF333940},
    RoleColours{QPalette::Mid, 0xFFBCC2CA, 0xFF454D56},
    RoleColours{QPalette::Dark, 0xFF9098A2, 0xFF101215},
    RoleColours{QPalette::Shadow, 0xFF5D6570, 0xFF08090A},
};

constexpr QRgb disabled_text(Look look) { return look == Look::light ? 0xFF636A74 : 0xFF979FA8; }

// Fusion with distances in steps of 4 pixels.
class HouseStyle : public QProxyStyle {
  public:
    HouseStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        switch (metric) {
        case PM_LayoutLeftMargin:
        case PM_LayoutTopMargin:
        case PM_LayoutRightMargin:
        case PM_LayoutBottomMargin: return space::large;
        case PM_LayoutHorizontalSpacing:
        case PM_LayoutVerticalSpacing: return space::medium;
        case PM_ToolBarItemSpacing: return 0;
        case PM_ToolBarItemMargin: return space::small;
        default: return QProxyStyle::pixelMetric(metric, option, widget);
        }
    }
};

// Sees to it that the look follows the system.
class ThemeWatch : public QObject {
  public:
    explicit ThemeWatch(QApplication& application) : QObject(&application), application_(application) {
        application.installEventFilter(this);
    }

    void set_look() {
        setting_ = true;
        application_.setPalette(QPalette()); // back to the system's, else we would read our own
        const QPalette palette = palette_of(detect(QApplication::palette()));
        application_.setPalette(palette);
        QToolTip::setPalette(palette);
        setting_ = false;
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::ThemeChange && !setting_ && !queued_) {
            queued_ = true;
            QTimer::singleShot(0, this, [this] {
                queued_ = false;
                set_look();
            });
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    QApplication& application_;
    bool setting_ = false;
    bool queued_ = false;
};

double luminance(const QColor& colour) {
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(static_cast<double>(colour.redF())) +
           0.7152 * linear(static_cast<double>(colour.greenF())) +
           0.0722 * linear(static_cast<double>(colour.blueF()));
}

} // namespace

Look detect(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128 ? Look::dark : Look::light;
}

QPalette palette_of(Look look) {
    QPalette palette;
    for (const RoleColours& row : role_colours) {
        palette.setColor(QPalette::All, row.role,
                         QColor::fromRgb(look == Look::light ? row.light : row.dark));
    }
    const QColor pale = QColor::fromRgb(disabled_text(look));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, pale);
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, palette.color(QPalette::Active, QPalette::Mid));
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText,
                     palette.color(QPalette::Active, QPalette::WindowText));
    return palette;
}

void apply_style(QApplication& application) {
    QApplication::setStyle(new HouseStyle);
    (new ThemeWatch(application))->set_look();
}

double contrast(const QColor& a, const QColor& b) {
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return std::max(first, second) / std::min(first, second);
}

QColor readable(Colour colour, const QPalette& palette) {
    return readable(colour, palette.color(QPalette::Base), palette.color(QPalette::Text), least_contrast);
}

QColor readable(Colour colour, const QColor& ground, const QColor& text, double least) {
    const QColor wanted = to_qcolor(colour);
    const float step = ground.lightness() < 128 ? 0.02F : -0.02F;
    QColor tone = wanted;
    float lightness = wanted.lightnessF();
    while (contrast(tone, ground) < least && lightness > 0.0F && lightness < 1.0F) {
        lightness = std::clamp(lightness + step, 0.0F, 1.0F);
        tone = QColor::fromHslF(std::max(wanted.hslHueF(), 0.0F), wanted.hslSaturationF(), lightness);
    }
    return contrast(tone, ground) >= least ? tone : text;
}

QColor alarm(const QPalette& palette) {
    return detect(palette) == Look::dark ? QColor::fromRgb(0xFFFF7B72) : QColor::fromRgb(0xFFB3261E);
}

MarkColours mark_colours(const QPalette& palette) {
    const QColor black = QColor::fromRgb(0xFF1B1F24);
    const QColor amber = QColor::fromRgb(0xFFFFB020);
    if (detect(palette) == Look::dark) {
        return {QColor::fromRgb(0xFF5A4712), QColor::fromRgb(0xFFFFF4D6), amber, black};
    }
    return {QColor::fromRgb(0xFFFFE9A8), black, amber, black};
}

} // namespace velorn
