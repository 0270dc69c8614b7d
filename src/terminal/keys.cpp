#include "terminal/keys.h"

namespace velorn {

namespace {

constexpr int key_backspace = 8;
constexpr int key_a = 65;
constexpr int key_v = 86;
constexpr int key_f1 = 112;
constexpr int key_f12 = 123;

constexpr std::string_view soh = "\x01";
constexpr std::string_view esc = "\x1b";
constexpr std::string_view cr = "\r";
constexpr std::string_view wake_sign = "<01>";
constexpr std::string_view cr_sign = "<13>";

struct ArrowKey {
    int keycode;
    std::string_view code;
};
constexpr ArrowKey arrow_keys[] = {{37, "\x08"}, {38, "\x0b"}, {39, "\x0c"}, {40, "\x0a"}};

// Sent as two texts: ESC, then the code.
struct EscapeKey {
    int keycode;
    std::string_view code;
};
constexpr EscapeKey escape_keys[] = {
    {34, "F"},    // Page Down
    {36, "H"},    // Home
    {45, "\x0c"}, // Insert
    {46, "\x08"}, // Delete
};

} // namespace

bool Keys::key_down(int keycode, int shift) {
    Form_KeyDown(keycode, shift);
    if (keycode == key_a && shift == ctrl_key) {
        send_if_open(soh);
        return true;
    }
    if (keycode == key_backspace) {
        Form_KeyPress(key_backspace);
        return true;
    }
    return false;
}

void Keys::Form_KeyPress(unsigned char code) {
    const auto character = static_cast<char>(code);
    send_if_open({&character, 1});
    if (frmTerminal_.batempfang && (character == 'E' || character == 'e')) {
        frmTerminal_.batempfang = false;
        frmTerminal_.txtbattload.Visible = false;
        batempfang_given_up();
    }
    frmTerminal_.txtterm.select(frmTerminal_.txtterm.length());
}

void Keys::Form_KeyDown(int keycode, int shift) {
    if (keycode != key_v && frmTerminal_.visaktiv) {
        frmTerminal_.visaktiv = false;
        frmTerminal_.txttovis.Text = "BEENDEN";
    }
    if (keycode >= key_f1 && keycode <= key_f12) {
        const auto index = static_cast<std::size_t>(keycode - key_f1 + 1);
        function_key(shift == ctrl_key ? settings_.altftast[index] : settings_.ftast[index]);
        return;
    }
    if (shift != 0) return;
    for (const ArrowKey& key : arrow_keys) {
        if (key.keycode != keycode || !output_.link_is_open()) continue;
        output_.sendetext(key.code);
        if (frmTerminal_.tastenrest > 0) --frmTerminal_.tastenrest;
    }
    for (const EscapeKey& key : escape_keys) {
        if (key.keycode != keycode) continue;
        output_.sendetext(esc);
        output_.sendetext(key.code);
    }
}

void Keys::function_key(const Variant& stored) {
    // A copy: the texts may be edited while we wait.
    std::string text = stored.text();
    const std::size_t wake = text.find(wake_sign);
    if (wake != std::string::npos) text.erase(0, wake + wake_sign.size());
    const std::size_t end = text.find(cr_sign);
    if (end != std::string::npos) text.erase(end);

    if (wake != std::string::npos) {
        output_.sendetext(soh);
        if (!waits_.warte(1)) return;
    }
    if (!text.empty()) output_.sendetext(text);
    if (end != std::string::npos) {
        if (!waits_.warte(1)) return;
        output_.sendetext(cr);
    }
}

void Keys::send_if_open(std::string_view text) {
    if (output_.link_is_open()) output_.sendetext(text);
}

} // namespace velorn
