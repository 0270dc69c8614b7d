// The window that shows the site's protocol file, to be changed, saved and printed.
//
// The text is the file's bytes as they stand, the binary ones at its start included. What couldn't be saved
// stays in the window.
#pragma once

#include "core/module1.h"
#include "runtime/controls.h"
#include "runtime/event_loop.h"
#include "runtime/files.h"
#include "runtime/outside.h"
#include "runtime/rich_text_box.h"
#include "runtime/text.h"

#include <cstdint>
#include <functional>
#include <string>

namespace velorn {

// A larger file isn't opened: the window holds it several times over.
inline constexpr std::int64_t largest_edited_file = std::int64_t{64} << 20;

class Frmedit {
  public:
    Frmedit(EventLoop& loop, Files& files, Dialogs& dialogs, Printer& printer, const Module1& module1);

    Form form; // caption "Editor ", the path and, when the text was changed, "*"
    // Its on_edit is the window's own; a view takes the hook below. The selection is the person's.
    RichTextBox Richtxtedit;
    Button Command1{"Schließen"_w};
    Button Command2{"Speichern"};
    Button Command3{"Drucken"};

    // The view of Richtxtedit, if any; called after each edit.
    std::function<void(const RichTextBox::Edit&)> on_edit;

    bool geaendert = false; // the text differs from the file

    // Reads the file that is the site's at this moment. False: there is nothing to show, the person was told
    // why, and the window is closed. Loading while the window is open keeps what it holds.
    bool Form_Load(ScreenSize screen);

    // While one of them has a dialog open the others do nothing.
    void Command1_Click(); // closes; a changed text is saved first, if wanted
    void Command2_Click(); // saves
    void Command3_Click(); // prints the selected text, or all of it

  private:
    void edited(const RichTextBox::Edit& edit);
    void show_unchanged();
    void close();
    bool refuse(std::string text);
    Outcome write();
    std::string with_what_came_since(const std::string& text);
    void save();

    EventLoop& loop_;
    Files& files_;
    Dialogs& dialogs_;
    Printer& printer_;
    const Module1& module1_;
    std::string path_;    // the site may change while the window is open
    std::string on_disk_; // the file as it was read or written last
    bool loaded_ = false;
    bool loading_ = false;
    bool busy_ = false; // a dialog of the window is open
};

} // namespace velorn
