// The panel that sets up automatic collection: when it starts, which positions it goes through, and how many
// sites are planned for it.
#pragma once

#include "core/module1.h"
#include "core/telefonbuch.h"
#include "phonebook/frm_telefon.h"
#include "runtime/event_loop.h"

namespace velorn {

// When a collection is to start, field by field.
struct CollectionStart {
    int holtag = 0, holmonat = 0, holjahr = 0, holstunde = 0, holminute = 0;

    // A day on or back. February has 29 days in every fourth year, without any exception for centuries.
    void add_day();
    void subtract_day();
    // A day behind the end of its month becomes the first of the next.
    void normalise();
};

class CollectionPanel {
  public:
    CollectionPanel(const EventLoop& loop, Module1& module1, const Telefonbuch& book, FrmTelefon& frmtelefon);

    const CollectionStart& start() const { return start_; }

  private:
    void comautohol_Click();
    void abbruch_Click();
    void show_start();

    const EventLoop& loop_;
    Module1& module1_;
    const Telefonbuch& book_;
    FrmTelefon& frmtelefon_;
    CollectionStart start_;
};

} // namespace velorn
