#include "plant_picture.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>

namespace {

constexpr QSize drawing_size{520, 300};
const QColor ink{0x1f, 0x2a, 0x37};
const QColor hot{0xc9, 0x3a, 0x2b};
const QColor cold{0x2f, 0x6f, 0xb5};
const QColor running{0x2e, 0x8b, 0x57};
const QColor standing{0x9a, 0xa3, 0xad};

// From 20 to 90 degrees.
QColor colour_of(double degrees) {
    const double share = std::clamp((degrees - 20) / 70, 0.0, 1.0);
    const auto mixed = [share](int from, int to) { return static_cast<int>(from + (to - from) * share); };
    return {mixed(cold.red(), hot.red()), mixed(cold.green(), hot.green()), mixed(cold.blue(), hot.blue())};
}

} // namespace

double number_of(const QString& value) {
    return value.section(QLatin1Char(' '), 0, 0).replace(QLatin1Char(','), QLatin1Char('.')).toDouble();
}

PlantPicture::PlantPicture() {
    setMinimumSize(drawing_size);
    setAccessibleName(QStringLiteral("Anlagenbild"));
}

void PlantPicture::show_values(const Values& values) {
    values_ = values;
    update();
}

void PlantPicture::paintEvent(QPaintEvent*) {
    const auto text_of = [this](const char* name) {
        return values_.value(QString::fromUtf8(name), QStringLiteral("–"));
    };
    const QColor flow = colour_of(number_of(text_of("Vorlauf")));
    const QColor return_flow = colour_of(number_of(text_of("Rücklauf")));
    const bool runs = text_of("Betrieb") == QStringLiteral("läuft");

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), Qt::white);
    const double scale =
        std::min(width() / double(drawing_size.width()), height() / double(drawing_size.height()));
    painter.scale(scale, scale);

    const auto pipe = [&](const QColor& colour, int y, const char* name) {
        painter.setPen(QPen(colour, 6));
        painter.drawLine(150, y, 400, y);
        painter.setPen(ink);
        painter.drawText(QRect(150, y - 24, 80, 20), Qt::AlignCenter, text_of(name));
    };
    pipe(flow, 90, "Vorlauf");
    pipe(return_flow, 210, "Rücklauf");

    const auto box = [&](const QRect& place, const QBrush& brush, const QString& words,
                         const QColor& letters) {
        painter.setPen(QPen(ink, 2));
        painter.setBrush(brush);
        painter.drawRoundedRect(place, 8, 8);
        painter.setPen(letters);
        painter.drawText(place, Qt::AlignCenter, words);
    };
    box({20, 60, 130, 180}, runs ? running : standing,
        QStringLiteral("Generator\n%1\n\n%2\n\nAbgas\n%3")
            .arg(text_of("Betrieb"), text_of("Generatorleistung"), text_of("Abgas")),
        Qt::white);
    QLinearGradient layers(0, 60, 0, 240);
    layers.setColorAt(0, flow);
    layers.setColorAt(1, return_flow);
    box({235, 40, 80, 220}, layers, QStringLiteral("Speicher"), Qt::white);
    box({400, 60, 100, 180}, Qt::white,
        QStringLiteral("Heizkreis\n\n%1\n\naußen\n%2").arg(text_of("Wärmeleistung"), text_of("Außenluft")),
        ink);

    const double rated = number_of(text_of("Nennleistung"));
    const double load = rated > 0 ? std::clamp(number_of(text_of("Generatorleistung")) / rated, 0.0, 1.0) : 0;
    painter.setPen(QPen(ink, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(20, 256, 130, 12);
    painter.fillRect(QRectF(21, 257, 128 * load, 10), running);
    painter.drawText(QRect(20, 272, 130, 20), Qt::AlignCenter,
                     QStringLiteral("Last %1 %").arg(load * 100, 0, 'f', 0));
}
