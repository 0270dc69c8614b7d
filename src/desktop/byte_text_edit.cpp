#include "desktop/byte_text_edit.h"

#include "desktop/glyph_masks.h"
#include "desktop/text_rim.h"

#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QTextBlock>

#include <algorithm>
#include <utility>

namespace velorn {

namespace {

constexpr char16_t first_picture = 0x2400; // of NUL; the others follow
constexpr char16_t picture_of_del = 0x2421;
constexpr std::string_view typed_line_end = "\r\n";
// The one that is wanted is among the last, or nowhere.
constexpr std::ptrdiff_t searched_line_ends = 64;

bool breaks(char c) { return c == '\r' || c == '\n'; }

bool has_picture(char16_t c) { return (c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') || c == 0x7F; }

// A picture becomes its control character; all else stays.
char16_t unpictured(char16_t c) {
    const auto control = c == picture_of_del ? char16_t{0x7F} : static_cast<char16_t>(c - first_picture);
    return c >= first_picture && has_picture(control) ? control : c;
}

char16_t pictured(char16_t c) {
    if (!has_picture(c)) return c;
    return c == 0x7F ? picture_of_del : static_cast<char16_t>(first_picture + c);
}

// One byte for each of the document's characters.
std::string one_by_one(QString text) {
    for (QChar& c : text) {
        c = QChar(unpictured(c.unicode()));
        if (c.isSurrogate()) c = QChar(QChar::ReplacementCharacter); // a pair would be one
    }
    return to_cp1252_or(text, '?');
}

// One kind of line end, pictures for control characters.
QString for_document(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    for (QChar& c : text) {
        if (c == u'\r' || c == QChar::ParagraphSeparator || c == QChar::LineSeparator) c = u'\n';
        c = QChar(pictured(c.unicode()));
    }
    return text;
}

} // namespace

void ByteLines::set_Text(std::string_view text) {
    starts_.assign(1, 0);
    std::size_t pairs = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!breaks(text[i])) continue;
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n') {
            ++i;
            ++pairs;
        }
        starts_.push_back(i + 1);
    }
    text_length_ = text.size();
    characters_ = text.size() - pairs;
}

std::string_view ByteLines::line_end(std::string_view text, std::size_t line) const {
    if (line + 1 >= starts_.size()) return {};
    const std::string_view whole = text.substr(starts_[line], starts_[line + 1] - starts_[line]);
    return whole.substr(whole.size() - (whole.ends_with("\r\n") ? 2 : 1));
}

ByteLines::Place ByteLines::after(std::string_view text, Place from, std::size_t count) const {
    while (true) {
        const bool last = from.line + 1 >= starts_.size();
        const std::size_t end =
            last ? text_length_ : starts_[from.line + 1] - line_end(text, from.line).size();
        if (count <= end - from.byte) return {from.line, from.byte + count};
        if (last) return {from.line, end};
        count -= end - from.byte + 1;
        from = at(from.line + 1, 0);
    }
}

ByteLines::Place ByteLines::place_of(std::size_t byte) const {
    const auto next = std::upper_bound(starts_.begin(), starts_.end(), byte);
    return {static_cast<std::size_t>(next - starts_.begin()) - 1, byte};
}

QString ByteLines::shown(std::string_view text, Place from, Place to) const {
    QString result = to_qstring(text.substr(from.byte, to.byte - from.byte));
    QChar* out = result.data();
    const QChar* in = out;
    std::size_t byte = from.byte;
    for (std::size_t line = from.line; line <= to.line; ++line) {
        const std::size_t end = line == to.line ? to.byte : starts_[line + 1] - line_end(text, line).size();
        for (; byte < end; ++byte) *out++ = QChar(pictured((in++)->unicode()));
        if (line == to.line) break;
        *out++ = u'\n';
        in += starts_[line + 1] - end;
        byte = starts_[line + 1];
    }
    result.truncate(out - result.constData());
    return result;
}

void ByteLines::replace(Place from, Place to, std::size_t inserted, const std::vector<std::size_t>& ends,
                        std::ptrdiff_t characters) {
    const auto first = starts_.begin() + static_cast<std::ptrdiff_t>(from.line) + 1;
    const auto gone = static_cast<std::ptrdiff_t>(to.line - from.line);
    auto rest = starts_.erase(first, first + gone);
    for (auto start = rest; start != starts_.end(); ++start) *start = *start - to.byte + from.byte + inserted;
    rest = starts_.insert(rest, ends.begin(), ends.end());
    for (std::size_t i = 0; i < ends.size(); ++i, ++rest) *rest += from.byte;
    text_length_ = text_length_ - (to.byte - from.byte) + inserted;
    characters_ += static_cast<std::size_t>(characters);
}

ByteTextEdit::ByteTextEdit(RichTextBox& text, QWidget* parent) : QPlainTextEdit(parent), text_(text) {
    QFont font = fixed_pitch_font(to_qstring(text_.FontName.get()));
    font.setPointSizeF(text_.FontSize);
    setFont(font);
    setLineWrapMode(NoWrap);
    setTabStopDistance(8 * fontMetrics().horizontalAdvance(QLatin1Char(' ')));
    // Moving a piece with the mouse comes as one large change, in which the line ends between would be lost.
    setAcceptDrops(false);
    viewport()->setAcceptDrops(false);
    connect(document(), &QTextDocument::contentsChange, this,
            [this](int position, int removed, int added) { contents_changed(position, removed, added); });
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] { selection_changed(); });
    connect(this, &QPlainTextEdit::selectionChanged, this, [this] { selection_changed(); });
    show_all();
}

void ByteTextEdit::show_all() {
    showing_ = true;
    const std::string_view text = text_.Text();
    lines_.set_Text(text);
    setPlainText(lines_.shown(text, lines_.at(0, 0), lines_.after(text, {}, text.size())));
    showing_ = false;
    to_undo_.clear();
    to_redo_.clear();
}

void ByteTextEdit::show_edit() {
    if (own_) return;
    show_all();
    show_selection();
}

void ByteTextEdit::show_selection() {
    const std::size_t start = text_.SelStart();
    const std::size_t end = start + text_.SelLength();
    QTextCursor cursor(document());
    cursor.setPosition(position_of(start));
    cursor.setPosition(position_of(end), QTextCursor::KeepAnchor);
    showing_ = true;
    setTextCursor(cursor);
    showing_ = false;
}

int ByteTextEdit::position_of(std::size_t byte) const {
    const ByteLines::Place place = lines_.place_of(byte);
    const QTextBlock block = document()->findBlockByNumber(static_cast<int>(place.line));
    return block.position() +
           std::min(static_cast<int>(place.byte - lines_.at(place.line, 0).byte), block.length() - 1);
}

std::size_t ByteTextEdit::byte_at(int position) const {
    const QTextBlock block = document()->findBlock(position);
    return lines_
        .at(static_cast<std::size_t>(block.blockNumber()),
            static_cast<std::size_t>(position - block.position()))
        .byte;
}

void ByteTextEdit::selection_changed() {
    // In the midst of a change the document is ahead of the text.
    if (showing_ || own_ || static_cast<std::size_t>(document()->characterCount() - 1) != lines_.characters())
        return;
    const QTextCursor cursor = textCursor();
    const std::size_t start = byte_at(cursor.selectionStart());
    text_.select(start, byte_at(cursor.selectionEnd()) - start);
}

QString ByteTextEdit::between(std::size_t position, std::size_t count) const {
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(position));
    cursor.setPosition(static_cast<int>(position + count), QTextCursor::KeepAnchor);
    QString text = cursor.selectedText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    return text;
}

void ByteTextEdit::contents_changed(int position, int removed, int added) {
    if (showing_) return;
    // The toolkit may count the document's own end among what was changed, on both sides.
    const std::size_t before = lines_.characters();
    const auto now = static_cast<std::size_t>(document()->characterCount() - 1);
    const auto from = std::min({static_cast<std::size_t>(position), before, now});
    const std::size_t kept = std::min({before - from, now - from,
                                       before - std::min(before, from + static_cast<std::size_t>(removed)),
                                       now - std::min(now, from + static_cast<std::size_t>(added))});
    own_ = true;
    take_over(from, before - from - kept, now - from - kept);
    own_ = false;
    if (typed) typed();
}

void ByteTextEdit::take_over(std::size_t position, std::size_t removed, std::size_t added) {
    const QTextBlock block = document()->findBlock(static_cast<int>(position));
    // What stands before the change is the same in the text and in the document.
    ByteLines::Place from = lines_.at(static_cast<std::size_t>(block.blockNumber()),
                                      position - static_cast<std::size_t>(block.position()));
    QString came = between(position, added);
    if (removed > 0 && added > 0) {
        // Several changes at once come as one that covers them; its ends may not have changed at all.
        const std::string_view text = text_.Text();
        const QString went = lines_.shown(text, from, lines_.after(text, from, removed));
        const auto head =
            std::mismatch(went.begin(), went.end(), came.begin(), came.end()).first - went.begin();
        const auto most = std::min(went.size(), came.size()) - head;
        qsizetype tail = 0;
        while (tail < most && went[went.size() - 1 - tail] == came[came.size() - 1 - tail]) ++tail;
        from = lines_.after(text, from, static_cast<std::size_t>(head));
        position += static_cast<std::size_t>(head);
        removed -= static_cast<std::size_t>(head + tail);
        came = came.mid(head, came.size() - head - tail);
    }
    if (removed == 0 && came.isEmpty()) return;
    const ByteLines::Place to = lines_.after(text_.Text(), from, removed);
    if (change_ == Change::by_hand) to_redo_.clear();
    std::vector<std::size_t> ends;
    const std::string bytes = bytes_of(came, position, ends);
    remember_line_ends(from, to, position);
    lines_.replace(from, to, bytes.size(), ends,
                   static_cast<std::ptrdiff_t>(came.size()) - static_cast<std::ptrdiff_t>(removed));
    text_.select(from.byte, to.byte - from.byte);
    text_.set_SelText(bytes);
}

void ByteTextEdit::remember_line_ends(ByteLines::Place from, ByteLines::Place to, std::size_t position) {
    std::vector<LineEnd>& memory = change_ == Change::undo ? to_redo_ : to_undo_;
    const std::string_view text = text_.Text();
    for (; from.line < to.line; from = lines_.at(from.line + 1, 0)) {
        const std::string_view end = lines_.line_end(text, from.line);
        position += lines_.at(from.line + 1, 0).byte - end.size() - from.byte;
        memory.push_back({position++, std::string(end)});
    }
}

std::string ByteTextEdit::bytes_of(const QString& text, std::size_t position,
                                   std::vector<std::size_t>& ends) {
    // The last that went is the first that comes back.
    std::vector<LineEnd>& memory = change_ == Change::undo ? to_undo_ : to_redo_;
    std::vector<std::string> line_ends;
    for (qsizetype i = text.size() - 1; i >= 0; --i) {
        if (text[i] != u'\n') continue;
        line_ends.emplace_back(typed_line_end);
        if (change_ == Change::by_hand) continue;
        const auto oldest = memory.rbegin() + std::min(std::ssize(memory), searched_line_ends);
        const auto known = std::find_if(memory.rbegin(), oldest, [&](const LineEnd& end) {
            return end.position == position + static_cast<std::size_t>(i);
        });
        if (known == oldest) continue;
        line_ends.back() = known->bytes;
        memory.erase(known.base() - 1, memory.end());
    }
    std::string bytes;
    for (const char c : one_by_one(text)) {
        if (c == '\n') {
            bytes += line_ends.back();
            line_ends.pop_back();
            ends.push_back(bytes.size());
        } else {
            bytes += c;
        }
    }
    return bytes;
}

void ByteTextEdit::undo_change() {
    change_ = Change::undo;
    undo();
    change_ = Change::by_hand;
}

void ByteTextEdit::redo_change() {
    change_ = Change::redo;
    redo();
    change_ = Change::by_hand;
}

bool ByteTextEdit::accepts(const QString& text) {
    QString missing;
    for (const char32_t c : text.toUcs4()) {
        const QString one = QString::fromUcs4(&c, 1);
        const bool fits = one.size() == 1 && to_cp1252(QString(QChar(unpictured(one[0].unicode()))));
        if (!fits && missing.size() < 20 && !missing.contains(one)) missing += one;
    }
    if (missing.isEmpty()) return true;
    if (refused) refused(missing);
    return false;
}

void ByteTextEdit::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Undo)) return undo_change();
    if (event->matches(QKeySequence::Redo) ||
        (event->modifiers() == Qt::ControlModifier && event->key() == Qt::Key_Y))
        return redo_change();
    // The document would take it as a break within a line, which no file has.
    if (event->matches(QKeySequence::InsertLineSeparator)) {
        textCursor().insertBlock();
        return ensureCursorVisible();
    }
    const QString text = event->text();
    if (!text.isEmpty() && text[0].category() != QChar::Other_Control && !accepts(text)) return;
    QPlainTextEdit::keyPressEvent(event);
}

void ByteTextEdit::inputMethodEvent(QInputMethodEvent* event) {
    if (!accepts(event->commitString())) {
        QInputMethodEvent nothing;
        return QPlainTextEdit::inputMethodEvent(&nothing);
    }
    QPlainTextEdit::inputMethodEvent(event);
}

QMimeData* ByteTextEdit::createMimeDataFromSelection() const {
    // The toolkit's own would turn hard blanks into blanks.
    auto* copied = new QMimeData;
    QString text = textCursor().selectedText();
    copied->setText(text.replace(QChar::ParagraphSeparator, u'\n'));
    return copied;
}

void ByteTextEdit::insertFromMimeData(const QMimeData* source) {
    if (!source->hasText()) return;
    const QString text = for_document(source->text());
    if (!accepts(text)) return;
    textCursor().insertText(text);
    ensureCursorVisible();
}

void ByteTextEdit::contextMenuEvent(QContextMenuEvent* event) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& text, QKeySequence::StandardKey key, bool enabled, auto what) {
        QAction* action = menu->addAction(text);
        action->setShortcut(key);
        action->setEnabled(enabled);
        connect(action, &QAction::triggered, this, what);
    };
    const bool selected = textCursor().hasSelection();
    add(QStringLiteral("&Rückgängig"), QKeySequence::Undo, document()->isUndoAvailable(),
        [this] { undo_change(); });
    add(QStringLiteral("&Wiederherstellen"), QKeySequence::Redo, document()->isRedoAvailable(),
        [this] { redo_change(); });
    menu->addSeparator();
    add(QStringLiteral("&Ausschneiden"), QKeySequence::Cut, selected, [this] { cut(); });
    add(QStringLiteral("&Kopieren"), QKeySequence::Copy, selected, [this] { copy(); });
    add(QStringLiteral("&Einfügen"), QKeySequence::Paste, canPaste(), [this] { paste(); });
    menu->addSeparator();
    add(QStringLiteral("A&lles auswählen"), QKeySequence::SelectAll, true, [this] { selectAll(); });
    menu->popup(event->globalPos());
}

} // namespace velorn
