#include "phonebook/phonebook_edits.h"

#include "runtime/text.h"

#include <string>
#include <utility>

namespace velorn {

namespace {

constexpr double first_date = 32874.0; // 1.1.1990

// All but the reserved values.
void copy_entry(const PhoneEntry& from, PhoneEntry& to) {
    std::array<Variant, 9> kept = std::move(to.reserviert1_9);
    to = from;
    to.reserviert1_9 = std::move(kept);
}

void move_entry(PhoneEntry& from, PhoneEntry& to) {
    std::swap(from, to);
    std::swap(from.reserviert1_9, to.reserviert1_9);
}

bool holds(const Variant& value, std::string_view text) {
    return value.visit_value([&](const auto& held) {
        if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::string>)
            return contains_ignoring_case(held, text);
        else
            return contains_ignoring_case(value.text(), text);
    });
}

} // namespace

void insert_free_line(Telefonbuch& book, int index) {
    for (int i = Telefonbuch::last_shown; i > index; --i) move_entry(book[i - 1], book[i]);
    PhoneEntry& free = book[index];
    free.pos = static_cast<std::int16_t>(index);
    for (Variant* text : {&free.name, &free.nummer, &free.visdatei, &free.protdatei, &free.bemerkung,
                          &free.viertdatei, &free.aufnahme})
        *text = "";
    free.autoflag = 0;
    free.reserve1 = 0;
    free.reserve2 = 0;
    free.datum = first_date;
}

void delete_line(Telefonbuch& book, int index) {
    for (int i = index; i < Telefonbuch::last_shown; ++i) move_entry(book[i + 1], book[i]);
    copy_entry(book[Telefonbuch::last_shown + 1], book[Telefonbuch::last_shown]);
}

void swap_lines(Telefonbuch& book, int first, int second) {
    if (first != second) move_entry(book[first], book[second]);
}

int find_line(const Telefonbuch& book, std::string_view text, int from) {
    for (int i = from; i <= Telefonbuch::last_shown; ++i) {
        if (holds(book[i].name, text) || holds(book[i].nummer, text)) return i;
    }
    return -1;
}

PhonebookEdits::PhonebookEdits(const EventLoop& loop, Dialogs& dialogs, const Module1& module1,
                               Telefonbuch& book, FrmTelefon& frmtelefon, PhonebookLines& lines)
    : loop_(loop), dialogs_(dialogs), module1_(module1), book_(book), frmtelefon_(frmtelefon), lines_(lines) {
    frmtelefon_.Command2.Click = [this] { Command2_Click(); };
    frmtelefon_.Command3.Click = [this] { Command3_Click(); };
    frmtelefon_.Command5.Click = [this] { Command5_Click(); };
    frmtelefon_.Command6.Click = [this] { Command6_Click(); };
    frmtelefon_.Command7.Click = [this] { Command7_Click(); };
    frmtelefon_.Timer1.Tick = [this] {
        frmtelefon_.Timer1.Enabled = false;
        frmtelefon_.Picture2.Visible = false;
    };
    lines_.selected = [this](int index) { swap_position_given(index); };
}

// ---- insert, delete ----

// Asks about the selected position. It may be another one, or none, by the time of the answer.
bool PhonebookEdits::agreed_for_selected(std::string_view before, std::string_view behind) {
    if (module1_.telindex < 0) {
        dialogs_.message_box("Erst Eintrag auswählen!!"_w, 48);
        return false;
    }
    const int index = module1_.telindex;
    const std::string question = std::string(before) + std::to_string(index + 1) + std::string(behind);
    return dialogs_.message_box(question, 36) == Answer::yes && !loop_.ended() && frmtelefon_.geladen &&
           module1_.telindex == index;
}

void PhonebookEdits::Command5_Click() {
    if (!agreed_for_selected("Soll an Pos ", "  eine freie Zeile eingefügt werden?"_w)) return;
    insert_free_line(book_, module1_.telindex);
    lines_.refresh();
}

void PhonebookEdits::Command6_Click() {
    if (!agreed_for_selected("Soll Eintrag an Pos ", "  gelöscht werden?"_w)) return;
    delete_line(book_, module1_.telindex);
    lines_.refresh();
}

// ---- swap ----

void PhonebookEdits::Command2_Click() {
    frmtelefon_.Timer1.Enabled = false;
    frmtelefon_.tausch1aktiv = true;
    frmtelefon_.tausch2aktiv = false;
    frmtelefon_.labtausch.Caption = "bitte 1. Tauschposition auswählen"_w;
    frmtelefon_.labtausch1.Caption = "";
    frmtelefon_.labtausch2.Caption = "";
    frmtelefon_.Picture2.Visible = true;
}

void PhonebookEdits::Command3_Click() {
    frmtelefon_.Picture2.Visible = false;
    frmtelefon_.tausch1aktiv = false;
    frmtelefon_.tausch2aktiv = false;
}

void PhonebookEdits::swap_position_given(int index) {
    const std::string position = std::to_string(index + 1);
    if (frmtelefon_.tausch1aktiv) {
        frmtelefon_.tausch1aktiv = false;
        frmtelefon_.tausch2aktiv = true;
        frmtelefon_.tauschpos1 = static_cast<std::int16_t>(index);
        frmtelefon_.labtausch1.Caption = "1. Tauschposition: " + position;
        frmtelefon_.labtausch.Caption = "bitte 2. Tauschposition auswählen"_w;
    } else if (frmtelefon_.tausch2aktiv) {
        frmtelefon_.tausch2aktiv = false;
        frmtelefon_.tauschpos2 = static_cast<std::int16_t>(index);
        frmtelefon_.labtausch2.Caption = "2. Tauschposition: " + position;
        swap_lines(book_, frmtelefon_.tauschpos1, frmtelefon_.tauschpos2);
        frmtelefon_.labtausch.Caption = "Position " + std::to_string(frmtelefon_.tauschpos1 + 1) +
                                        " getauscht gegen Position " + position;
        frmtelefon_.Timer1.Enabled = true;
        lines_.refresh();
    }
}

// ---- search ----

void PhonebookEdits::Command7_Click() {
    constexpr std::string_view prompt = "Suchtext eingeben (Name oder Telefonnummer)";
    std::string text;
    const char* title = "Suchen";
    for (int from = 0;;) {
        const auto answer = dialogs_.input_box(prompt, title, text);
        if (!answer || answer->empty() || loop_.ended() || !frmtelefon_.geladen) return;
        text = *answer;
        const int found = find_line(book_, text, from);
        if (found < 0) return;
        lines_.show(found);
        from = found + 1;
        title = "Weitersuchen";
    }
}

} // namespace velorn
