#include "desktop/read_out_view.h"

#include "desktop/style.h"

#include <QEvent>
#include <QPainter>

#include <algorithm>
#include <numeric>

namespace velorn {

namespace {

constexpr int between_columns = space::large;
constexpr std::size_t right_column = 1;

} // namespace

ReadOutView::ReadOutView(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void ReadOutView::set_text(const QString& text) {
    if (text == text_) return;
    text_ = text;
    lines_.clear();
    for (const QString& line : text.split(u'\n')) lines_.push_back(line.split(u'\t'));
    measure();
    update();
}

void ReadOutView::measure() {
    columns_.clear();
    head_ = 0;
    const QFontMetrics metrics = fontMetrics();
    for (const QStringList& line : lines_) {
        if (line.size() == 1) {
            head_ = std::max(head_, metrics.horizontalAdvance(line.front()));
            continue;
        }
        columns_.resize(std::max(columns_.size(), static_cast<std::size_t>(line.size())));
        for (std::size_t i = 0; i < static_cast<std::size_t>(line.size()); ++i)
            columns_[i] = std::max(columns_[i], metrics.horizontalAdvance(line[static_cast<qsizetype>(i)]));
    }
}

QSize ReadOutView::sizeHint() const {
    const int gaps = between_columns * std::max(0, static_cast<int>(columns_.size()) - 1);
    const int table = std::accumulate(columns_.begin(), columns_.end(), gaps);
    const int rows = static_cast<int>(lines_.size());
    return {std::max(head_, table) + 2 * space::medium, rows * fontMetrics().height() + 2 * space::small};
}

void ReadOutView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
    painter.setPen(palette().color(QPalette::Text));
    const int height = fontMetrics().height();
    QRect row(space::medium, space::small, width() - 2 * space::medium, height);
    for (const QStringList& line : lines_) {
        if (line.size() == 1) {
            painter.drawText(row, Qt::AlignLeft | Qt::AlignVCenter, line.front());
        } else {
            QRect cell = row;
            for (std::size_t i = 0; i < static_cast<std::size_t>(line.size()); ++i) {
                cell.setWidth(columns_[i]);
                painter.drawText(cell,
                                 Qt::AlignVCenter | (i == right_column ? Qt::AlignRight : Qt::AlignLeft),
                                 line[static_cast<qsizetype>(i)]);
                cell.moveLeft(cell.left() + columns_[i] + between_columns);
            }
        }
        row.translate(0, height);
    }
}

void ReadOutView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::FontChange) measure();
    QWidget::changeEvent(event);
}

} // namespace velorn
