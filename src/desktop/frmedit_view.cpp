#include "desktop/frmedit_view.h"

#include "desktop/bind.h"
#include "desktop/byte_text_edit.h"
#include "desktop/stroke_button.h"
#include "desktop/style.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

namespace velorn {

namespace {

constexpr int longest_pattern = 200;
constexpr int least_width = 420;
constexpr int least_height = 260;

} // namespace

FrmeditView::FrmeditView(Frmedit& frmedit, std::function<void(std::function<void()>)> later, QWidget* owner)
    : QDialog(owner), frmedit_(frmedit), later_(std::move(later)) {
    setObjectName(QStringLiteral("frmedit"));
    setModal(true);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    setSizeGripEnabled(true);
    frmedit_.form.on_change = [this] { show_form(); };
}

FrmeditView::~FrmeditView() {
    unbind(frmedit_.form, frmedit_.Command1, frmedit_.Command2, frmedit_.Command3);
    frmedit_.on_edit = nullptr;
}

void FrmeditView::show_form() {
    if (!frmedit_.form.Visible) {
        hide();
        return;
    }
    if (text_ == nullptr) build();
    setWindowTitle(to_qstring(frmedit_.form.Caption.get()));
    if (isVisible()) return;
    place();
    close_search();
    notice({});
    text_->show_selection();
    open();
    text_->setFocus();
    text_->ensureCursorVisible();
}

void FrmeditView::place() {
    const QRect free = screen()->availableGeometry();
    const Form& form = frmedit_.form;
    const QSize size = QSize(form.Width, form.Height).boundedTo(free.size()).expandedTo(minimumSize());
    setGeometry(QRect(free.topLeft() + QPoint(form.Left, form.Top), size));
}

void FrmeditView::build() {
    text_ = new ByteTextEdit(frmedit_.Richtxtedit, this);
    text_->setObjectName(QStringLiteral("Richtxtedit"));
    text_->setAccessibleName(QStringLiteral("Text der Protokolldatei"));
    text_->refused = [this](const QString& characters) {
        notice(QStringLiteral("Nicht eingefügt: „%1“ kann die Datei nicht enthalten.").arg(characters));
    };
    text_->typed = [this] { notice({}); };
    frmedit_.on_edit = [this](const RichTextBox::Edit&) { text_->show_edit(); };

    notice_ = new QLabel(this);
    notice_->setObjectName(QStringLiteral("Hinweis"));
    notice_->setTextFormat(Qt::PlainText);
    notice_->setWordWrap(true);
    build_search();

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(space::medium);
    buttons->addWidget(notice_, 1);
    buttons->addWidget(
        add_button(frmedit_.Command2, "Command2", QStringLiteral("Schreibt den Text in die Datei (Strg+S)")));
    buttons->addWidget(add_button(frmedit_.Command3, "Command3",
                                  QStringLiteral("Druckt den markierten oder den ganzen Text (Strg+P)")));
    buttons->addWidget(
        add_button(frmedit_.Command1, "Command1", QStringLiteral("Schließt das Fenster (Esc)")));

    auto* column = new QVBoxLayout(this);
    column->setSpacing(space::medium);
    column->addWidget(text_, 1);
    column->addWidget(search_);
    column->addLayout(buttons);
    setMinimumSize(least_width, least_height);

    const auto on = [this](QKeySequence::StandardKey key, std::function<void()> what) {
        connect(new QShortcut(QKeySequence(key), this), &QShortcut::activated, this, std::move(what));
    };
    on(QKeySequence::Save, [this] { later_([this] { frmedit_.Command2.Click(); }); });
    on(QKeySequence::Print, [this] { later_([this] { frmedit_.Command3.Click(); }); });
    on(QKeySequence::Find, [this] { open_search(); });
    on(QKeySequence::FindNext, [this] { find_next(false); });
    on(QKeySequence::FindPrevious, [this] { find_next(true); });
}

QPushButton* FrmeditView::add_button(Button& button, const char* name, const QString& tip) {
    auto* shown = new QPushButton(this);
    shown->setObjectName(QString::fromLatin1(name));
    shown->setAutoDefault(false); // Enter belongs to the text
    button.ToolTipText = to_cp1252_or(tip, '?');
    bind(button, [&button, shown] {
        shown->setText(to_qstring(button.Caption.get()));
        show_common(button, *shown);
    });
    connect(shown, &QPushButton::clicked, this, [this, &button] { later_([&button] { button.Click(); }); });
    return shown;
}

void FrmeditView::build_search() {
    search_ = new QWidget(this);
    search_->setObjectName(QStringLiteral("Suchfeld"));
    pattern_ = new QLineEdit(search_);
    pattern_->setObjectName(QStringLiteral("Suchtext"));
    pattern_->setAccessibleName(QStringLiteral("Suchtext"));
    pattern_->setPlaceholderText(QStringLiteral("Im Text suchen"));
    pattern_->setMaxLength(longest_pattern);
    pattern_->installEventFilter(this);
    auto* back =
        new StrokeButton(StrokeButton::Figure::up, QStringLiteral("Vorheriges (Umschalt+Eingabe)"), search_);
    auto* on = new StrokeButton(StrokeButton::Figure::down, QStringLiteral("Nächstes (Eingabe)"), search_);
    auto* closing =
        new StrokeButton(StrokeButton::Figure::close, QStringLiteral("Suche schließen (Esc)"), search_);
    auto* row = new QHBoxLayout(search_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(space::small);
    row->addWidget(pattern_, 1);
    row->addWidget(back);
    row->addWidget(on);
    row->addWidget(closing);
    connect(back, &QAbstractButton::clicked, this, [this] { find_next(true); });
    connect(on, &QAbstractButton::clicked, this, [this] { find_next(false); });
    connect(closing, &QAbstractButton::clicked, this, [this] { close_search(); });
    search_->hide();
}

void FrmeditView::open_search() {
    search_->show();
    const QString selected = text_->textCursor().selectedText();
    if (!selected.isEmpty() && selected.size() <= longest_pattern &&
        !selected.contains(QChar::ParagraphSeparator))
        pattern_->setText(selected);
    pattern_->selectAll();
    pattern_->setFocus();
}

void FrmeditView::close_search() {
    search_->hide();
    notice({});
    text_->setFocus();
}

void FrmeditView::find_next(bool back) {
    if (pattern_->text().isEmpty()) return open_search();
    const auto flags = back ? QTextDocument::FindBackward : QTextDocument::FindFlags{};
    bool found = text_->find(pattern_->text(), flags);
    if (!found) {
        // Around the end.
        const QTextCursor before = text_->textCursor();
        text_->moveCursor(back ? QTextCursor::End : QTextCursor::Start);
        found = text_->find(pattern_->text(), flags);
        if (!found) text_->setTextCursor(before);
    }
    notice(found ? QString() : QStringLiteral("Nicht gefunden."));
}

void FrmeditView::notice(const QString& text) { notice_->setText(text); }

bool FrmeditView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == pattern_ && event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        switch (key->key()) {
        case Qt::Key_Escape: close_search(); return true;
        case Qt::Key_Return:
        case Qt::Key_Enter: find_next(key->modifiers().testFlag(Qt::ShiftModifier)); return true;
        default: break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void FrmeditView::closeEvent(QCloseEvent* event) {
    event->ignore();
    reject();
}

void FrmeditView::reject() {
    later_([this] { frmedit_.Command1.Click(); });
}

} // namespace velorn
