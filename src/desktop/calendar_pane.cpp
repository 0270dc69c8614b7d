#include "desktop/calendar_pane.h"

#include "desktop/bind.h"
#include "desktop/glyph_masks.h"
#include "desktop/picture_view.h"
#include "desktop/style.h"
#include "terminal/calendar_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace velorn {

namespace {

// Each number of the caption stands above the column that its place in the caption names.
class RulerView : public QWidget {
  public:
    RulerView(Label& label, PictureView& picture, QWidget* parent)
        : QWidget(parent), label_(label), picture_(picture) {
        setObjectName(QStringLiteral("Label13"));
        setFixedHeight(fontMetrics().height() + space::unit);
        label_.on_change = [this] { update(); };
    }
    ~RulerView() override { label_.on_change = nullptr; }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const double shown = picture_.magnification();
        const QString caption = to_qstring(label_.Caption.get());
        for (qsizetype from = 0; from < caption.size();) {
            if (caption[from] == QLatin1Char(' ')) {
                ++from;
                continue;
            }
            qsizetype to = from;
            while (to < caption.size() && caption[to] != QLatin1Char(' ')) ++to;
            const QString number = caption.mid(from, to - from);
            const double x =
                (CalendarView::left + static_cast<double>(from) * CalendarView::column_width) * shown;
            const int width = fontMetrics().horizontalAdvance(number);
            painter.drawText(
                QPointF(std::min(x - width / 2.0, this->width() - double(width)), fontMetrics().ascent()),
                number);
            from = to;
        }
    }

  private:
    Label& label_;
    PictureView& picture_;
};

} // namespace

CalendarPane::CalendarPane(FrmTerminal& frmTerminal, QWidget* parent)
    : QWidget(parent), frmTerminal_(frmTerminal) {
    setObjectName(QStringLiteral("calendar"));
    QPalette colours = palette();
    colours.setColor(QPalette::Window, to_qcolor(frmTerminal.picabs.BackColor));
    colours.setColor(QPalette::WindowText, Qt::black);
    setPalette(colours);
    setAutoFillBackground(true);

    const auto make = [this](std::size_t index) {
        Label& label = frmTerminal_.labkal[index];
        auto* view = new QLabel(this);
        view->setObjectName(QStringLiteral("labkal%1").arg(index));
        view->setTextFormat(Qt::PlainText);
        QFont font = fixed_pitch_font(to_qstring(frmTerminal_.Picture1.FontName.get()));
        font.setPointSizeF(this->font().pointSizeF() + (index == 1 ? 2 : 0));
        font.setBold(index == 1);
        view->setFont(font);
        bind(label, [&label, view] { view->setText(to_qstring(label.Caption.get()).trimmed()); });
        return view;
    };
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(space::wide, space::medium, space::wide, space::medium);
    column->setSpacing(space::small);
    column->addWidget(make(1));
    auto* row = new QHBoxLayout;
    row->setSpacing(space::wide);
    for (const std::size_t index : {2U, 3U, 4U, 5U}) row->addWidget(make(index));
    row->addStretch(1);
    column->addLayout(row);

    picture_ = new PictureView(
        frmTerminal_.picabs,
        [] {
            return PictureView::Extent{CalendarView::width, CalendarView::height, CalendarView::row_height};
        },
        this);
    picture_->setObjectName(QStringLiteral("picabs"));
    column->addWidget(new RulerView(frmTerminal_.Label13, *picture_, this));
    picture_->setMaximumHeight(CalendarView::height);
    column->addWidget(picture_, 100);
    column->addSpacing(space::medium);
    for (const std::size_t index : {6U, 7U, 8U, 9U}) column->addWidget(make(index));
    column->addStretch(1);
}

CalendarPane::~CalendarPane() {
    for (Label& label : frmTerminal_.labkal) unbind(label);
}

} // namespace velorn
