#include "desktop/icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

namespace velorn {

namespace {

// The two colours of the drawings. They become the palette's text colour and its accent.
constexpr const char* drawn_stroke = "#1f2a37";
constexpr const char* drawn_accent = "#0f6fc6";

class SvgIconEngine final : public QIconEngine {
  public:
    SvgIconEngine(QString name, const QPalette& palette) : name_(std::move(name)), palette_(palette) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        QSvgRenderer renderer(drawing(mode == QIcon::Disabled));
        renderer.render(painter, QRectF(rect));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return picture;
    }

    QIconEngine* clone() const override { return new SvgIconEngine(name_, palette_); }

  private:
    QByteArray drawing(bool disabled) const {
        QFile file(QStringLiteral(":/icons/%1.svg").arg(name_));
        if (!file.open(QIODevice::ReadOnly)) return {};
        QByteArray svg = file.readAll();
        const auto group = disabled ? QPalette::Disabled : QPalette::Active;
        const QColor stroke = palette_.color(group, QPalette::ButtonText);
        svg.replace(drawn_stroke, stroke.name().toLatin1());
        svg.replace(drawn_accent,
                    (disabled ? stroke : palette_.color(group, QPalette::Link)).name().toLatin1());
        return svg;
    }

    QString name_;
    QPalette palette_;
};

} // namespace

QIcon icon(const QString& name, const QPalette& palette) { return QIcon(new SvgIconEngine(name, palette)); }

} // namespace velorn
