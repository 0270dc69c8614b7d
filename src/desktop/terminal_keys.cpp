#include "desktop/terminal_keys.h"

#include "runtime/text.h"

#include <QKeyEvent>

#include <array>

namespace velorn {

namespace {

struct KeyCode {
    int key;
    int code;
};

constexpr std::array key_codes = {
    KeyCode{Qt::Key_Backspace, 8}, KeyCode{Qt::Key_Tab, 9},          KeyCode{Qt::Key_Backtab, 9},
    KeyCode{Qt::Key_Return, 13},   KeyCode{Qt::Key_Enter, 13},       KeyCode{Qt::Key_Pause, 19},
    KeyCode{Qt::Key_Escape, 27},   KeyCode{Qt::Key_Space, 32},       KeyCode{Qt::Key_PageUp, 33},
    KeyCode{Qt::Key_PageDown, 34}, KeyCode{Qt::Key_End, 35},         KeyCode{Qt::Key_Home, 36},
    KeyCode{Qt::Key_Left, 37},     KeyCode{Qt::Key_Up, 38},          KeyCode{Qt::Key_Right, 39},
    KeyCode{Qt::Key_Down, 40},     KeyCode{Qt::Key_Insert, 45},      KeyCode{Qt::Key_Delete, 46},
    KeyCode{Qt::Key_Plus, 187},    KeyCode{Qt::Key_Comma, 188},      KeyCode{Qt::Key_Minus, 189},
    KeyCode{Qt::Key_Period, 190},  KeyCode{Qt::Key_Udiaeresis, 186}, KeyCode{Qt::Key_Odiaeresis, 192},
    KeyCode{Qt::Key_ssharp, 219},  KeyCode{Qt::Key_Adiaeresis, 222},
};

int key_code(int key) {
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9)) return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12) return key - Qt::Key_F1 + 112;
    for (const KeyCode& row : key_codes) {
        if (row.key == key) return row.code;
    }
    return 0;
}

// Control characters come from the key itself, since platforms differ in what text they give for Ctrl.
std::string control_character(int key) {
    if (key >= Qt::Key_A && key <= Qt::Key_Z) return {static_cast<char>(key - Qt::Key_A + 1)};
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter: return "\n";
    case Qt::Key_Escape:
    case Qt::Key_BracketLeft: return "\x1b";
    case Qt::Key_Backslash: return "\x1c";
    case Qt::Key_BracketRight: return "\x1d";
    case Qt::Key_Space: return " ";
    default: return {};
    }
}

} // namespace

std::string typed_characters(const QString& text) {
    std::string result;
    for (const char32_t character : text.toUcs4()) {
        if (const auto byte = cp1252_of(character)) result.push_back(static_cast<char>(*byte));
    }
    return result;
}

KeyStroke key_stroke(const QKeyEvent& event) {
    const int key = event.key();
    const bool ctrl = event.modifiers().testFlag(Qt::ControlModifier);
    const bool alt = event.modifiers().testFlag(Qt::AltModifier);
    KeyStroke stroke;
    stroke.keycode = key_code(key);
    stroke.shift = (event.modifiers().testFlag(Qt::ShiftModifier) ? shift_bit::shift : 0) |
                   (ctrl ? shift_bit::ctrl : 0) | (alt ? shift_bit::alt : 0);

    const QString text = event.text();
    const bool printable = !text.isEmpty() && text.at(0).isPrint();
    if (stroke.keycode == 8 || stroke.keycode == 46 ||
        (key == Qt::Key_A && stroke.shift == shift_bit::ctrl)) {
        // typed by the logic, or not at all
    } else if (key == Qt::Key_Tab || key == Qt::Key_Backtab) {
        if (!ctrl && !alt) stroke.typed = "\t";
    } else if (ctrl && !alt) {
        stroke.typed = control_character(key);
    } else if (alt && !ctrl) {
        // a menu's access key
    } else if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        stroke.typed = "\r";
    } else if (key == Qt::Key_Escape) {
        stroke.typed = "\x1b";
    } else if (printable) {
        stroke.typed = typed_characters(text);
    }
    stroke.goes_down = stroke.keycode != 0 || printable || !stroke.typed.empty();
    return stroke;
}

} // namespace velorn
