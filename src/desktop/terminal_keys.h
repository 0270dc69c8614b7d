// What a key stroke is to the logic: a Windows virtual key code with its shift bits, and the characters it
// types.
#pragma once

#include <QString>

#include <string>

class QKeyEvent;

namespace velorn {

namespace shift_bit {
inline constexpr int shift = 1;
inline constexpr int ctrl = 2;
inline constexpr int alt = 4;
} // namespace shift_bit

struct KeyStroke {
    bool goes_down = false; // false for keys that say nothing by themselves, such as Shift
    int keycode = 0;        // 0: a key without a code of its own
    int shift = 0;          // sum of shift_bit
    std::string typed;      // cp1252; control characters included, without what key down has to handle alone
};

// Backspace and Ctrl+A type nothing: the logic makes the character out of the key. Nor does a key with Alt,
// other than AltGr. A character that cp1252 lacks is left out.
KeyStroke key_stroke(const QKeyEvent& event);

// The characters of a text that came without a key, as from an input method.
std::string typed_characters(const QString& text);

} // namespace velorn
