#include "desktop/frmgrafick_view.h"

#include "desktop/chart_view.h"
#include "desktop/download_panel.h"
#include "desktop/evaluation_popups.h"
#include "desktop/popup_view.h"
#include "desktop/style.h"
#include "desktop/text_rim.h"
#include "desktop/track_list_view.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace velorn {

namespace {

constexpr QSize usual_size(1280, 760);
constexpr QSize smallest_size(1024, 640);
constexpr int least_list = 160;
constexpr int frame = 32; // of the window, about, at top and bottom together

} // namespace

// As wide as what it holds, or as there is room; beyond that it is scrolled.
class FrmgrafickView::ListArea final : public QScrollArea {
  public:
    using QScrollArea::QScrollArea;
    void set_room(int width) {
        if (std::exchange(room_, std::max(width, least_list)) != room_) updateGeometry();
    }
    QSize sizeHint() const override {
        const QSize content = widget() != nullptr ? widget()->sizeHint() : QSize();
        const bool scrolled = height() < content.height();
        const int bar = scrolled ? verticalScrollBar()->sizeHint().width() : 0;
        return {std::min(content.width() + bar, room_), content.height()};
    }
    QSize minimumSizeHint() const override { return {sizeHint().width(), 0}; }

  protected:
    void resizeEvent(QResizeEvent* event) override {
        QScrollArea::resizeEvent(event);
        updateGeometry();
    }
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == widget() && event->type() == QEvent::Resize) updateGeometry();
        return QScrollArea::eventFilter(watched, event);
    }

  private:
    int room_ = QWIDGETSIZE_MAX;
};

FrmgrafickView::FrmgrafickView(FrmGrafick& frmgrafick, EvaluationControls& controls,
                               std::function<void(std::function<void()>)> later, QWidget* owner)
    : QWidget(owner, Qt::Window),
      frmgrafick_(frmgrafick),
      controls_(controls),
      later_(later),
      widgets_(*this, std::move(later)) {
    setObjectName(QStringLiteral("frmgrafick"));
    frmgrafick_.form.on_change = [this] { show_form(); };
}

FrmgrafickView::~FrmgrafickView() { frmgrafick_.form.on_change = nullptr; }

void FrmgrafickView::show_form() {
    if (!frmgrafick_.form.Visible) {
        hide();
        return;
    }
    if (chart_ == nullptr) build();
    setWindowTitle(to_qstring(frmgrafick_.form.Caption.get()));
    setCursor(frmgrafick_.busy ? Qt::WaitCursor : Qt::ArrowCursor);
    if (isVisible()) return;
    show();
    chart_->setFocus();
}

// ---- building ----

void FrmgrafickView::build() {
    chart_ = new ChartView(controls_, widgets_, this);
    chart_->setFocusPolicy(Qt::ClickFocus);
    list_ = new TrackListView(controls_, widgets_, this);
    area_ = new ListArea(this);
    area_->setObjectName(QStringLiteral("listenbereich"));
    area_->setFrameShape(QFrame::NoFrame);
    area_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    area_->setFocusPolicy(Qt::NoFocus);
    area_->setWidget(list_);
    list_->installEventFilter(area_);

    auto* panel = new DownloadPanel(frmgrafick_, widgets_, this);
    bars_ = std::make_unique<EvaluationBars>(frmgrafick_, controls_, widgets_, this);
    auto* left = new QVBoxLayout;
    left_ = left;
    left->setSpacing(space::small);
    left->addLayout(bars_->views());
    left->addWidget(chart_, 1);
    left->addLayout(bars_->figures());
    left->addWidget(panel);
    left->addLayout(bars_->navigation());
    left->addSpacing(space::small);
    left->addLayout(bars_->actions());
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(space::medium, space::medium, space::medium, space::medium);
    row->setSpacing(space::large);
    row->addLayout(left, 1);
    row->addWidget(area_);
    build_popups();
    build_shortcuts();

    const QSize free = screen()->availableSize() - QSize(0, frame);
    setMinimumSize(smallest_size.boundedTo(free));
    resize(usual_size.boundedTo(free));
}

void FrmgrafickView::build_popups() {
    const EvaluationPopups popups(controls_, widgets_, *this);
    list_->popup_asked = [popups](QWidget& caller) {
        const bool calculated = caller.objectName().startsWith(QStringLiteral("Commandkanalb"));
        (calculated ? popups.pickanalb : popups.pickanal)->place_near(caller);
    };
    const auto* const opens = findChild<QPushButton*>(QStringLiteral("openyskala"));
    popups.picyskala->opened = [axes = popups.picyskala, opens] { axes->place_near(*opens); };
}

void FrmgrafickView::build_shortcuts() {
    const auto on = [this](const QKeySequence& key, Button& button) {
        connect(new QShortcut(key, this), &QShortcut::activated, this, [this, &button] { press(button); });
    };
    for (const StepKey& step : step_keys(controls_)) on(step.key, step.button);
    on(Qt::ALT | Qt::Key_1, controls_.comtag);
    on(Qt::ALT | Qt::Key_2, controls_.comwoch);
    on(Qt::ALT | Qt::Key_3, controls_.commonat);
    on(Qt::ALT | Qt::Key_4, controls_.comjahr);
    on(Qt::CTRL | Qt::Key_P, controls_.plott);
}

// ---- events ----

void FrmgrafickView::press(Button& button) {
    if (std::exchange(pressed_, true)) return;
    widgets_.ask([this, &button] {
        if (!button.Enabled || !button.Click) return;
        button.Click();
        chart_->repaint();
    });
    later_([view = QPointer<FrmgrafickView>(this)] {
        if (view != nullptr) view->pressed_ = false;
    });
}

// Where the keyboard is in a box or a list, its own keys are not the chart's.
bool FrmgrafickView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        const QWidget* const focused = focusWidget();
        const auto* const key = static_cast<QKeyEvent*>(event);
        const bool own = qobject_cast<const QLineEdit*>(focused) != nullptr ||
                         qobject_cast<const QComboBox*>(focused) != nullptr ||
                         qobject_cast<const QRadioButton*>(focused) != nullptr;
        const bool moves = key->key() == Qt::Key_Left || key->key() == Qt::Key_Right ||
                           key->key() == Qt::Key_PageUp || key->key() == Qt::Key_PageDown;
        if (own && moves) {
            event->accept();
            return true;
        }
    }
    const bool done = QWidget::event(event);
    const bool laid_out = event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize;
    if (laid_out && area_ != nullptr) {
        const QMargins margins = layout()->contentsMargins();
        area_->set_room(width() - margins.left() - margins.right() - layout()->spacing() -
                        left_->minimumSize().width());
        layout()->activate(); // both sides in one go
    }
    return done;
}

void FrmgrafickView::changeEvent(QEvent* event) {
    if (event->type() == QEvent::PaletteChange) widgets_.show_again();
    QWidget::changeEvent(event);
}

void FrmgrafickView::closeEvent(QCloseEvent* event) {
    event->ignore();
    widgets_.ask([this] {
        if (frmgrafick_.schliessen.Click) frmgrafick_.schliessen.Click();
    });
}

} // namespace velorn
