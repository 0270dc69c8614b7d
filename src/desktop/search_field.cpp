#include "desktop/search_field.h"

#include "desktop/stroke_button.h"
#include "desktop/style.h"
#include "desktop/terminal_view.h"
#include "desktop/text_rim.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

namespace velorn {

namespace {

constexpr int longest_pattern = 200;
constexpr std::size_t longest_selection_taken = 60;

} // namespace

SearchField::SearchField(TerminalView& view, QWidget* parent)
    : QWidget(parent),
      view_(view),
      text_(new QLineEdit(this)),
      case_(new QToolButton(this)),
      count_(new QLabel(this)) {
    setObjectName(QStringLiteral("Suchfeld"));
    text_->setObjectName(QStringLiteral("Suchtext"));
    text_->setPlaceholderText(QStringLiteral("Im Terminal suchen"));
    text_->setAccessibleName(QStringLiteral("Suchtext"));
    text_->setMaxLength(longest_pattern);
    text_->setMinimumWidth(fontMetrics().horizontalAdvance(QLatin1Char('n')) * 28);
    text_->installEventFilter(this);
    case_->setText(QStringLiteral("Aa"));
    case_->setToolTip(QStringLiteral("Groß- und Kleinschreibung beachten"));
    case_->setAccessibleName(case_->toolTip());
    case_->setCheckable(true);
    case_->setAutoRaise(true);
    count_->setObjectName(QStringLiteral("Suchzahl"));
    count_->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("nichts gefunden")) +
                            space::small);
    auto* back =
        new StrokeButton(StrokeButton::Figure::up, QStringLiteral("Vorheriges (Umschalt+Eingabe)"), this);
    auto* on = new StrokeButton(StrokeButton::Figure::down, QStringLiteral("Nächstes (Eingabe)"), this);
    auto* closing =
        new StrokeButton(StrokeButton::Figure::close, QStringLiteral("Suche schließen (Esc)"), this);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(space::small, space::small, space::small, space::small);
    row->setSpacing(space::small);
    row->addWidget(text_, 1);
    row->addWidget(case_);
    row->addWidget(count_);
    row->addWidget(back);
    row->addWidget(on);
    row->addWidget(closing);

    connect(text_, &QLineEdit::textChanged, this, [this] { search(); });
    connect(case_, &QToolButton::toggled, this, [this] { search(); });
    connect(back, &QAbstractButton::clicked, this, [this] { view_.find_previous(); });
    connect(on, &QAbstractButton::clicked, this, [this] { view_.find_next(); });
    connect(closing, &QAbstractButton::clicked, this, [this] { close_search(); });
    view_.search_wanted = [this] { open(); };
    view_.search_changed = [this] { show_count(); };
    hide();
}

void SearchField::open() {
    const std::string selected = view_.selected_text();
    const bool one_line = selected.find_first_of("\r\n") == std::string::npos;
    if (!selected.empty() && one_line && selected.size() <= longest_selection_taken) {
        text_->setText(to_qstring(selected));
    }
    show();
    if (toggled) toggled(true);
    text_->setFocus(Qt::ShortcutFocusReason);
    text_->selectAll();
    search();
}

void SearchField::close_search() {
    hide();
    view_.search({}, false);
    view_.setFocus(Qt::OtherFocusReason);
    if (toggled) toggled(false);
}

void SearchField::search() {
    if (isHidden()) return;
    // What cp1252 lacks stands nowhere in the terminal; nothing is found then.
    const auto pattern = to_cp1252(text_->text());
    view_.search(pattern ? std::string_view(*pattern) : std::string_view(), case_->isChecked());
    show_count();
}

void SearchField::show_count() {
    const TerminalSearch& found = view_.found();
    QString text;
    if (found.count() > 0) {
        const auto current = found.current();
        text = QStringLiteral("%1 von %2")
                   .arg(current ? QString::number(*current + 1) : QStringLiteral("–"))
                   .arg(found.count());
    } else if (!text_->text().isEmpty()) {
        text = QStringLiteral("nichts gefunden");
    }
    if (text != count_->text()) count_->setText(text);
}

bool SearchField::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            if (key->modifiers().testFlag(Qt::ShiftModifier)) {
                view_.find_previous();
            } else {
                view_.find_next();
            }
            return true;
        }
        if (key->key() == Qt::Key_Escape) {
            close_search();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace velorn
