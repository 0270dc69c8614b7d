#include "desktop/icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

namespace velorn {

namespace {

// The one stroke colour of the drawings; it becomes the palette's text colour.
constexpr const char* drawn_colour = "#1f2a37";

class SvgIconEngine final : public QIconEngine {
  public:
    SvgIconEngine(QString name, const QColor& normal, const QColor& disabled)
        : name_(std::move(name)), normal_(normal), disabled_(disabled) {}

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

    QIconEngine* clone() const override { return new SvgIconEngine(name_, normal_, disabled_); }

  private:
    QByteArray drawing(bool disabled) const {
        QFile file(QStringLiteral(":/icons/%1.svg").arg(name_));
        if (!file.open(QIODevice::ReadOnly)) return {};
        QByteArray svg = file.readAll();
        svg.replace(drawn_colour, (disabled ? disabled_ : normal_).name().toLatin1());
        if (disabled) svg.replace("#0f6fc6", disabled_.name().toLatin1());
        return svg;
    }

    QString name_;
    QColor normal_;
    QColor disabled_;
};

} // namespace

QIcon icon(const QString& name, const QPalette& palette) {
    return QIcon(new SvgIconEngine(name, palette.color(QPalette::Active, QPalette::ButtonText),
                                   palette.color(QPalette::Disabled, QPalette::ButtonText)));
}

} // namespace velorn
