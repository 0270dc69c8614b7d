// Opening and closing the phone book, the settings that it holds, its menu, and its export as a text.
//
// There are three ways to close it. The saving one writes the book; the plain one, which dialling and the
// countdown take too, only takes over the settings; the third does neither. Edits of the lines are in memory
// all the same: what wasn't saved is lost when the window is opened the next time, which reads the files.
#pragma once

#include "core/events.h"
#include "core/frm_terminal.h"
#include "core/module1.h"
#include "core/settings.h"
#include "core/settings_files.h"
#include "core/telefonbuch.h"
#include "phonebook/frm_telefon.h"
#include "phonebook/phonebook_files.h"
#include "phonebook/phonebook_lines.h"
#include "runtime/event_loop.h"
#include "runtime/files.h"
#include "runtime/outside.h"

#include <string_view>

namespace velorn {

class PhonebookWindow {
  public:
    PhonebookWindow(EventLoop& loop, Files& files, Dialogs& dialogs, const Events& events, Module1& module1,
                    Settings& settings, Telefonbuch& book, FrmTerminal& frmTerminal, FrmTelefon& frmtelefon,
                    PhonebookFiles& phonebook_files, PhonebookLines& lines);

    enum class Closing { saving, plain, cancelling };

    // Reads the files and fills the window. One that is loaded stays as it is.
    void Form_Load();
    // A window that isn't loaded stays as it is.
    void close(Closing way);

    static constexpr int seconds_open = 300;
    static constexpr std::string_view export_path = "c:\\Daten\\Datencsv\\telefon.txt";

  private:
    void fill_boxes_from_settings();
    void take_over_settings();
    void watch_boxes();
    void txtanrufer_Change();
    void mnutele_Click();
    void mnudispauf_Click();
    void mnuloginauto_Click();
    void ask_login(std::string_view prompt, std::string_view title, Variant& value);
    void Command8_Click();
    std::string exported() const;
    void Timer3_Tick();
    void Timer99_Tick();

    EventLoop& loop_;
    Files& files_;
    Dialogs& dialogs_;
    const Events& events_;
    Module1& module1_;
    Settings& settings_;
    Telefonbuch& book_;
    FrmTerminal& frmTerminal_;
    FrmTelefon& frmtelefon_;
    PhonebookFiles& phonebook_files_;
    PhonebookLines& lines_;
};

} // namespace velorn
