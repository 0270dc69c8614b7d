// Changes to whole entries of the phone book: a free line put in, an entry taken out, two exchanged; and the
// search. The reserved values of an entry stay at their index through all of them.
#pragma once

#include "core/module1.h"
#include "core/telefonbuch.h"
#include "phonebook/frm_telefon.h"
#include "phonebook/phonebook_lines.h"
#include "runtime/event_loop.h"
#include "runtime/outside.h"

#include <string_view>

namespace velorn {

// The entries from the index on move up by one; the one at 2000 is lost. index 0 to 2000.
void insert_free_line(Telefonbuch& book, int index);

// The entries behind the index move down by one. Kept: the entry at 2001 stays where it is, so its content is
// at 2000 as well.
void delete_line(Telefonbuch& book, int index);

void swap_lines(Telefonbuch& book, int first, int second);

// The first index from `from` on whose name or number holds the text, ignoring case; -1 if there is none up
// to 2000.
int find_line(const Telefonbuch& book, std::string_view text, int from);

class PhonebookEdits {
  public:
    PhonebookEdits(const EventLoop& loop, Dialogs& dialogs, const Module1& module1, Telefonbuch& book,
                   FrmTelefon& frmtelefon, PhonebookLines& lines);

  private:
    void Command2_Click();
    void Command3_Click();
    void Command5_Click();
    void Command6_Click();
    void Command7_Click();
    void swap_position_given(int index);
    bool agreed_for_selected(std::string_view before, std::string_view behind);

    const EventLoop& loop_;
    Dialogs& dialogs_;
    const Module1& module1_;
    Telefonbuch& book_;
    FrmTelefon& frmtelefon_;
    PhonebookLines& lines_;
};

} // namespace velorn
