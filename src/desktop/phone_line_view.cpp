#include "desktop/phone_line_view.h"

#include "desktop/bind.h"
#include "desktop/icons.h"
#include "desktop/style.h"

#include <QFocusEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>

namespace velorn {

namespace {

constexpr int position_width = 48;
constexpr int chooser_width = 32;
constexpr int picture_size = 20;
constexpr int least_box_width = 120;
constexpr int least_line_height = 26;
constexpr int largest_box_height = 32;
constexpr int ring = 3; // room for the ring of the focus around a line

struct KeyCode {
    int key;
    int keycode;
};
constexpr KeyCode key_codes[] = {
    {Qt::Key_Up, 38},
    {Qt::Key_Down, 40},
    {Qt::Key_PageUp, 33},
    {Qt::Key_PageDown, 34},
};

// A small picture in the palette's colours, sharp at any scale.
class SmallPicture : public QWidget {
  public:
    explicit SmallPicture(QWidget* parent) : QWidget(parent) { setFixedSize(picture_size, picture_size); }
    void set_picture(const QString& name) {
        name_ = name;
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        icon(name_, palette()).paint(&painter, rect());
        if (!hasFocus()) return;
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
        painter.drawRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75));
    }

  private:
    QString name_;
};

// Says which of the mouse's buttons went down: 1 is the left one.
class PressedPicture final : public SmallPicture {
  public:
    using SmallPicture::SmallPicture;
    std::function<void(int button)> pressed;

  protected:
    void mousePressEvent(QMouseEvent* event) override { press(static_cast<int>(event->button())); }
    void mouseDoubleClickEvent(QMouseEvent* event) override { press(static_cast<int>(event->button())); }
    void keyPressEvent(QKeyEvent* event) override {
        switch (event->key()) {
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter: press(Qt::LeftButton); break;
        case Qt::Key_Menu: press(Qt::RightButton); break;
        default: SmallPicture::keyPressEvent(event); break;
        }
    }

  private:
    void press(int button) const {
        if (pressed) pressed(button);
    }
};

void keep_room(QWidget& widget) {
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget.setSizePolicy(policy);
}

// A box that goes while it has the focus would pass it to the next one, which would be selected by that.
void show_or_leave(const Control& control, QWidget& widget, QWidget& line) {
    if (!control.Visible && widget.hasFocus()) line.setFocus();
    show_common(control, widget);
}

} // namespace

void lay_out(QHBoxLayout& row, const LineColumns& columns) {
    row.setContentsMargins(ring, 0, ring, 0);
    row.setSpacing(space::small);
    columns.nr->setFixedWidth(position_width);
    columns.Comausw->setFixedWidth(chooser_width);
    columns.visthumb->setFixedWidth(picture_size);
    columns.viertthumb->setFixedWidth(picture_size);
    row.addWidget(columns.nr);
    constexpr int shares[] = {27, 18, 40};
    const int* share = shares;
    for (QWidget* box : {columns.nam1, columns.num1, columns.txtversch}) {
        box->setMinimumWidth(least_box_width);
        box->setSizePolicy(QSizePolicy::Ignored, box->sizePolicy().verticalPolicy());
        row.addWidget(box, *share++);
    }
    row.addWidget(columns.Comausw);
    row.addWidget(columns.visthumb, 0, Qt::AlignVCenter);
    row.addWidget(columns.viertthumb, 0, Qt::AlignVCenter);
}

PhoneLineView::PhoneLineView(PhoneLine& line, int row, ControlWidgets& widgets, QWidget* parent)
    : QWidget(parent), line_(line), widgets_(widgets) {
    setObjectName(QStringLiteral("Picture1_%1").arg(row));
    setAccessibleName(QStringLiteral("Zeile %1").arg(row + 1));
    setToolTip(QStringLiteral("Klick wählt die Zeile aus, Doppelklick oder Eingabe wählt die Anlage an"));
    setFocusPolicy(Qt::StrongFocus);
    setMinimumHeight(least_line_height);
    build(row);
}

void PhoneLineView::build(int row) {
    const auto named = [row](const char* name) {
        return QStringLiteral("%1_%2").arg(QString::fromLatin1(name)).arg(row);
    };
    QLabel* nr = widgets_.label(line_.nr, named("nr"), QStringLiteral("%1"), this);
    nr->setAlignment(Qt::AlignCenter);
    nr->setMaximumHeight(largest_box_height);
    widgets_.show(line_.nr, [this, show = line_.nr.on_change] {
        show();
        if (line_.nr.BackColor == colour::red && marked) marked();
    });

    struct BoxRow {
        TextBox& box;
        const char* name;
        QString what, tip;
    };
    const BoxRow rows[] = {
        {line_.nam1, "nam1", QStringLiteral("Projektname"), QStringLiteral("Name der Anlage")},
        {line_.num1, "num1", QStringLiteral("Telefonnummer"),
         QStringLiteral("Telefonnummer (ein Komma ist eine Pause) oder IP-Adresse; Adressen sind gelb")},
        {line_.txtversch, "txtversch", QStringLiteral("Letzte Spalte"),
         QStringLiteral("Bemerkung oder Datei, wie es der Kopf der Spalte sagt")},
    };
    std::size_t i = 0;
    for (const BoxRow& one : rows) {
        QLineEdit* edit = widgets_.text_box(one.box, named(one.name), one.what, one.tip, this);
        edit->setSizePolicy(edit->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
        edit->setMaximumHeight(largest_box_height);
        edit->installEventFilter(this);
        edits_[i++] = edit;
    }

    QPushButton* choose = widgets_.button(line_.Comausw, named("Comausw"),
                                          QStringLiteral("Datei für diese Zeile auswählen"), this);
    keep_room(*choose);
    choose->setMaximumHeight(largest_box_height);
    choose->setAccessibleName(QStringLiteral("Datei auswählen"));
    widgets_.show(line_.Comausw, [this, choose] {
        choose->setText(to_qstring(line_.Comausw.Caption.get()));
        show_or_leave(line_.Comausw, *choose, *this);
    });

    auto* vis = new SmallPicture(this);
    vis->setObjectName(named("visthumb"));
    vis->set_picture(QStringLiteral("visthumb"));
    vis->setAccessibleName(QStringLiteral("mit Visualisierung"));
    line_.visthumb.ToolTipText = "Die Anlage hat ein Visualisierungsprogramm";
    keep_room(*vis);
    widgets_.show(line_.visthumb, [this, vis] { show_common(line_.visthumb, *vis); });

    auto* viert = new PressedPicture(this);
    viert->setObjectName(named("viertthumb"));
    viert->setFocusPolicy(Qt::TabFocus);
    keep_room(*viert);
    widgets_.show(line_.viertthumb, [this, viert] {
        const bool automatic = line_.viertthumb.automatic;
        viert->set_picture(automatic ? QStringLiteral("picauto") : QStringLiteral("picnotauto"));
        const QString state = automatic ? QStringLiteral("1/4h-Daten werden automatisch geholt")
                                        : QStringLiteral("1/4h-Daten werden von Hand geholt");
        show_or_leave(line_.viertthumb, *viert, *this);
        viert->setAccessibleName(state);
        viert->setToolTip(state + QStringLiteral("\nKlick: auswählen, rechter Klick: umschalten"));
    });
    viert->pressed = [this](int button) {
        widgets_.ask([this, button] {
            if (line_.viertthumb.MouseDown) line_.viertthumb.MouseDown(button);
        });
    };

    auto* columns = new QHBoxLayout(this);
    lay_out(*columns, {nr, edits_[0], edits_[1], edits_[2], choose, vis, viert});
    columns->setContentsMargins(ring, ring - 1, ring, ring - 1);
}

void PhoneLineView::forget_edits() {
    for (QLineEdit* edit : edits_) velorn::forget_edits(*edit);
}

// ---- the boxes ----

// A box is entered by the mouse, by keys or by the program; a click into the one that has the focus counts
// too, since another line may be selected by now. That its window comes to the front again doesn't.
bool PhoneLineView::eventFilter(QObject* watched, QEvent* event) {
    TextBox* boxes[] = {&line_.nam1, &line_.num1, &line_.txtversch};
    for (std::size_t i = 0; i < edits_.size(); ++i) {
        if (watched != edits_[i]) continue;
        bool entered = event->type() == QEvent::MouseButtonPress;
        if (event->type() == QEvent::FocusIn) {
            velorn::forget_edits(*edits_[i]);
            const auto reason = static_cast<QFocusEvent*>(event)->reason();
            entered = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                      reason == Qt::ShortcutFocusReason || reason == Qt::OtherFocusReason;
        }
        if (!entered) break;
        widgets_.ask([box = boxes[i]] {
            if (box->GotFocus) box->GotFocus();
        });
    }
    return QWidget::eventFilter(watched, event);
}

// ---- the line ----

void PhoneLineView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
    widgets_.ask([this] { line_.Picture1.Click(); });
}

void PhoneLineView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return QWidget::mouseDoubleClickEvent(event);
    widgets_.ask([this] { line_.Picture1.DblClick(); });
}

void PhoneLineView::keyPressEvent(QKeyEvent* event) {
    if (!hasFocus() || (event->modifiers() & ~Qt::KeypadModifier) != 0) return QWidget::keyPressEvent(event);
    switch (event->key()) {
    case Qt::Key_Space:
        if (!event->isAutoRepeat()) widgets_.ask([this] { line_.Picture1.Click(); });
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!event->isAutoRepeat() && enter) enter();
        return;
    default: break;
    }
    for (const KeyCode& row : key_codes) {
        if (row.key == event->key()) {
            if (key) key(row.keycode);
            return;
        }
    }
    QWidget::keyPressEvent(event);
}

void PhoneLineView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void PhoneLineView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

void PhoneLineView::paintEvent(QPaintEvent*) {
    if (!hasFocus()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75), 3, 3);
}

} // namespace velorn
