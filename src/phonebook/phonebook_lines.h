// The ten lines of the phone book: scrolling, selecting, editing in place, choosing files, and what is known
// about the selected site.
//
// An edit goes into its entry at once. A line that is refilled from its entry writes nothing back, so what
// was Empty stays Empty.
#pragma once

#include "core/module1.h"
#include "core/settings.h"
#include "core/telefonbuch.h"
#include "phonebook/frm_telefon.h"
#include "runtime/event_loop.h"
#include "runtime/files.h"
#include "runtime/outside.h"

#include <functional>
#include <string>

namespace velorn {

class PhonebookLines {
  public:
    PhonebookLines(const EventLoop& loop, Files& files, Dialogs& dialogs, Module1& module1,
                   Settings& settings, Telefonbuch& book, FrmTelefon& frmtelefon);

    // Fills all lines from their entries, without a mark on any of them.
    void refresh();

    // The index of the first line, 0 to 1991.
    int telscroll() const;
    void scroll_to(int first);

    // Makes an entry the first line, as far as the book goes, and the selection.
    void show(int index);

    // Whether the selected site has a usable protocol file; what all lines have; whether the selected number
    // is an address. With nothing selected the site's part stays as it is.
    void check_files();

    // A line was selected: its index.
    std::function<void(int index)> selected;

  private:
    PhoneLine& line(int row) { return frmtelefon_.zeilen[static_cast<std::size_t>(row)]; }
    PhoneEntry& entry_of(int row);
    Variant& versch_of(PhoneEntry& entry) const;
    void take_edit(const TextBox& box, Variant& value) const;
    void reset_colours();
    void select(int row);
    void mark(int row, Colour ground);
    void name_columns();
    void Picture1_KeyDown(int keycode);
    void Comausw_Click(int row);
    void begin_protocol(const std::string& path);
    void viertthumb_MouseDown(int row, int button);
    std::int64_t length_of(const Variant& path);

    const EventLoop& loop_;
    Files& files_;
    Dialogs& dialogs_;
    Module1& module1_;
    Settings& settings_;
    Telefonbuch& book_;
    FrmTelefon& frmtelefon_;
    bool showing_flag_ = false; // the panel is being filled: nobody has chosen anything
};

} // namespace velorn
