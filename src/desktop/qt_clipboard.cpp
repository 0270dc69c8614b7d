#include "desktop/qt_clipboard.h"

#include "desktop/text_rim.h"

#include <QClipboard>
#include <QGuiApplication>

namespace velorn {

void QtClipboard::set_text(std::string_view text) { QGuiApplication::clipboard()->setText(to_qstring(text)); }

std::string QtClipboard::text() const { return to_cp1252_or(QGuiApplication::clipboard()->text(), '?'); }

} // namespace velorn
