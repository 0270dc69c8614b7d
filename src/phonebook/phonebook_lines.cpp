#include "phonebook/phonebook_lines.h"

#include "phonebook/address.h"
#include "runtime/paths.h"
#include "runtime/text.h"

#include <algorithm>

namespace velorn {

namespace {

constexpr std::int64_t least_protocol = 4; // bytes: its first line begins with as many
constexpr std::int64_t least_archive = 1'000'000;
constexpr int left_button = 1;

struct ColumnGroup {
    Variant PhoneEntry::*field;
    std::string_view Label5, Label8, Label9;
    std::string_view title; // of the dialog that chooses a file
};

// By column group, from 1 on.
constexpr ColumnGroup groups[] = {
    {&PhoneEntry::bemerkung, "   Bemerkungen", "", "Protokolldatei --->", "kann nicht angehen"},
    {&PhoneEntry::protdatei, "   Protokolldatei", "<--- Bemerkungen", "Visualisierungsdatei --->",
     "Protokolldatei auswählen"_w},
    {&PhoneEntry::visdatei, "   Visualisierungsdatei", "<--- Protokolldatei", "1/4h-Datendatei --->",
     "Visualisierungsdatei auswählen"_w},
    {&PhoneEntry::viertdatei, "   Speicherort 1/4h-Datendatei", "<--- Visualisierungsdatei", "",
     "1/4h Datei auswählen"_w},
};
constexpr int protocol_group = 2;

const ColumnGroup& group_of(const FrmTelefon& frmtelefon) {
    return groups[static_cast<std::size_t>(frmtelefon.spaltengruppe - 1)];
}

// A key of a line: how far the selection goes, and the first line from which the lines go no further down.
struct LineKey {
    int keycode;
    int step;
    int bottom_stop;
};
constexpr LineKey line_keys[] = {
    {38, -1, Telefonbuch::last_shown}, // up
    {40, 1, 1990},                     // down
    {33, -5, Telefonbuch::last_shown}, // page up
    {34, 5, 1985},                     // page down
};

} // namespace

PhonebookLines::PhonebookLines(const EventLoop& loop, Files& files, Dialogs& dialogs, Module1& module1,
                               Settings& settings, Telefonbuch& book, FrmTelefon& frmtelefon)
    : loop_(loop),
      files_(files),
      dialogs_(dialogs),
      module1_(module1),
      settings_(settings),
      book_(book),
      frmtelefon_(frmtelefon) {
    frmtelefon_.VScroll1.Change = [this] {
        settings_.telscroll = static_cast<std::int16_t>(frmtelefon_.VScroll1.Value());
        refresh();
    };
    frmtelefon_.HScroll1.Change = [this] {
        frmtelefon_.spaltengruppe = static_cast<std::int16_t>(frmtelefon_.HScroll1.Value());
        refresh();
    };
    for (int row = 0; row < FrmTelefon::lines; ++row) {
        PhoneLine& one = line(row);
        one.nam1.Change = [this, row] { take_edit(line(row).nam1, entry_of(row).name); };
        one.num1.Change = [this, row] { take_edit(line(row).num1, entry_of(row).nummer); };
        one.txtversch.Change = [this, row] { take_edit(line(row).txtversch, versch_of(entry_of(row))); };
        for (TextBox* box : {&one.nam1, &one.num1, &one.txtversch}) {
            box->GotFocus = [this, row, box] {
                select(row);
                for (TextBox* each : {&line(row).nam1, &line(row).num1, &line(row).txtversch})
                    each->BackColor = colour::cyan;
                if (box == &line(row).txtversch && frmtelefon_.spaltengruppe > 1)
                    line(row).Comausw.Visible = true;
            };
        }
        one.Picture1.Click = [this, row] {
            select(row);
            mark(row, colour::red);
        };
        one.Picture1.DblClick = [this, row] {
            // The first click of the two may just have been a swap's second position.
            const bool swapping =
                frmtelefon_.tausch1aktiv || frmtelefon_.tausch2aktiv || frmtelefon_.Timer1.Enabled;
            select(row);
            mark(row, colour::scroll_bar);
            if (!swapping && frmtelefon_.Command1.Click) frmtelefon_.Command1.Click();
        };
        one.Picture1.KeyDown = [this](int keycode) { Picture1_KeyDown(keycode); };
        one.Comausw.Click = [this, row] { Comausw_Click(row); };
        one.viertthumb.MouseDown = [this, row](int button) { viertthumb_MouseDown(row, button); };
    }
    frmtelefon_.optuebertrag.Click = [this](int index) {
        if (showing_flag_ || module1_.telindex < 0) return;
        book_[module1_.telindex].autoflag = index == 0 ? Telefonbuch::collected : std::int16_t{0};
    };
    frmtelefon_.closedathol.Click = [this] {
        frmtelefon_.picdownload.Visible = false;
        refresh();
    };
}

// ---- filling ----

int PhonebookLines::telscroll() const {
    const Result<std::int16_t> stored = settings_.telscroll.as_i16();
    return std::clamp<int>(stored ? *stored : 0, frmtelefon_.VScroll1.Min, frmtelefon_.VScroll1.Max);
}

void PhonebookLines::scroll_to(int first) { frmtelefon_.VScroll1.set_Value(first); }

PhoneEntry& PhonebookLines::entry_of(int row) { return book_[telscroll() + row]; }

Variant& PhonebookLines::versch_of(PhoneEntry& entry) const { return entry.*group_of(frmtelefon_).field; }

void PhonebookLines::take_edit(const TextBox& box, Variant& value) const {
    if (value.text() != box.Text.get()) value = box.Text.get();
}

void PhonebookLines::refresh() {
    name_columns();
    reset_colours();
    for (int row = 0; row < FrmTelefon::lines; ++row) {
        PhoneLine& one = line(row);
        PhoneEntry& entry = entry_of(row);
        one.nr.Caption = std::to_string(telscroll() + row + 1);
        one.nam1.Text = entry.name.text();
        one.num1.Text = entry.nummer.text();
        one.txtversch.Text = versch_of(entry).text();
        one.Comausw.Visible = false;
    }
    check_files();
}

void PhonebookLines::reset_colours() {
    for (int row = 0; row < FrmTelefon::lines; ++row) {
        PhoneLine& one = line(row);
        one.nam1.BackColor = colour::white;
        one.txtversch.BackColor = colour::white;
        one.num1.BackColor = is_address(entry_of(row).nummer.text()) ? colour::yellow : colour::white;
        one.nr.BackColor = colour::info;
    }
}

void PhonebookLines::name_columns() {
    const ColumnGroup& group = group_of(frmtelefon_);
    frmtelefon_.Label5.Caption = group.Label5;
    frmtelefon_.Label8.Caption = group.Label8;
    frmtelefon_.Label9.Caption = group.Label9;
}

std::int64_t PhonebookLines::length_of(const Variant& path) {
    const std::string text = path.text();
    if (text.empty()) return -1;
    const auto file = files_.open(text, OpenMode::read);
    if (!file) return -1;
    const Result<std::int64_t> length = (*file)->length();
    return length ? *length : -1;
}

void PhonebookLines::check_files() {
    const bool any = module1_.telindex >= 0;
    if (any) {
        const Variant& protdatei = book_[module1_.telindex].protdatei;
        module1_.protokollname = protdatei.text();
        module1_.protokollan = length_of(protdatei) >= least_protocol;
        frmtelefon_.Command4.Enabled = module1_.protokollan;
    }
    for (int row = 0; row < FrmTelefon::lines; ++row) {
        PhoneLine& one = line(row);
        const PhoneEntry& entry = entry_of(row);
        one.visthumb.Visible = contains_ignoring_case(entry.visdatei.text(), ".exe");
        one.viertthumb.automatic = entry.autoflag == Telefonbuch::collected;
        one.viertthumb.Visible = length_of(entry.viertdatei) >= least_archive;
    }
    if (any) module1_.istip = is_address(book_[module1_.telindex].nummer.text());
}

// ---- selecting ----

void PhonebookLines::select(int row) {
    reset_colours();
    module1_.telindex = static_cast<std::int16_t>(telscroll() + row);
    if (selected) selected(module1_.telindex);
    check_files();
}

void PhonebookLines::mark(int row, Colour ground) {
    PhoneLine& one = line(row);
    one.nam1.BackColor = ground;
    one.num1.BackColor = ground;
    one.nr.BackColor = ground;
}

void PhonebookLines::show(int index) {
    scroll_to(index);
    refresh();
    const int row = index - telscroll();
    select(row);
    mark(row, colour::red);
}

void PhonebookLines::Picture1_KeyDown(int keycode) {
    const auto* const key = std::ranges::find(line_keys, keycode, &LineKey::keycode);
    if (key == std::end(line_keys)) return;
    const int first = telscroll();
    const int next = module1_.telindex < 0 ? first : module1_.telindex + key->step;
    const int index = std::clamp(next, 0, Telefonbuch::last_shown);
    if (index < first) {
        scroll_to(index);
    } else if (index >= first + FrmTelefon::lines) {
        if (first > key->bottom_stop) return;
        scroll_to(index - FrmTelefon::lines + 1);
    }
    const int row = index - telscroll();
    select(row);
    mark(row, colour::red);
}

// ---- files ----

void PhonebookLines::Comausw_Click(int row) {
    const int index = telscroll() + row;
    const ColumnGroup& group = group_of(frmtelefon_);
    const std::string present = (book_[index].*group.field).text();
    for (;;) {
        const Result<std::string> chosen = dialogs_.choose_file({.title = std::string(group.title),
                                                                 .filter = "Alle Dateien (*.*)|*.*",
                                                                 .folder = std::string(folder_of(present)),
                                                                 .name = std::string(name_of(present)),
                                                                 .saving = true});
        if (!chosen || loop_.ended()) return;
        if (&group == &groups[protocol_group - 1]) {
            if (length_of(Variant(*chosen)) < 1) begin_protocol(*chosen);
        } else if (length_of(Variant(*chosen)) < 0) {
            dialogs_.message_box(*chosen + " nicht gefunden!", 48);
            if (loop_.ended()) return;
            continue;
        }
        book_[index].*group.field = *chosen;
        refresh();
        return;
    }
}

// Kept: the text goes in as a tagged value, so the file begins with four binary bytes.
void PhonebookLines::begin_protocol(const std::string& path) {
    std::string first_line;
    encode(Variant("neu angelegt am:  " + date_text(loop_.local_time())), first_line);
    first_line += "\r\n";
    const auto file = files_.open(path, OpenMode::read_write);
    if (!file) return;
    (void)(*file)->write(1, first_line);
}

void PhonebookLines::viertthumb_MouseDown(int row, int button) {
    select(row);
    mark(row, colour::red);
    PhoneEntry& entry = entry_of(row);
    const bool collected = entry.autoflag == Telefonbuch::collected;
    if (button == left_button) {
        frmtelefon_.picdownload.Visible = true;
        showing_flag_ = true;
        frmtelefon_.optuebertrag.select(collected ? 0 : 1);
        showing_flag_ = false;
    } else {
        entry.autoflag = collected ? std::int16_t{0} : Telefonbuch::collected;
        refresh();
    }
}

} // namespace velorn
