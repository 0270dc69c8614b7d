#include "terminal/frmftast.h"

#include "runtime/text.h"

namespace velorn {

namespace {

// A text that wasn't changed keeps its stored value with its tag.
void store(Variant& stored, const std::string& text) {
    if (stored.text() != text) stored = text;
}

} // namespace

Frmftast::Frmftast(Settings& settings) : settings_(settings) {
    form.Caption = "Velorn Funktionstastenbelegung";
    form.Width = 860;
    form.Height = 560;
    cmdOK.Caption = "OK";
    cmdCancel.Caption = "Abbrechen";
    cmdOK.Click = [this] { cmdOK_Click(); };
    cmdCancel.Click = [this] { cmdCancel_Click(); };
    for (std::size_t i = 1; i <= 12; ++i) {
        ftast[i].GotFocus = [this, i] { mark(ftast[i]); };
        altftast[i].GotFocus = [this, i] { mark(altftast[i]); };
    }
}

void Frmftast::Form_Load(ScreenSize screen) {
    form.Left = (screen.width - form.Width) / 2;
    form.Top = (screen.height - form.Height) / 2;
    for (std::size_t i = 1; i <= 12; ++i) {
        ftast[i].Text = settings_.ftast[i].text();
        altftast[i].Text = settings_.altftast[i].text();
        ftast[i].BackColor = colour::white;
        altftast[i].BackColor = colour::white;
    }
}

void Frmftast::cmdOK_Click() {
    for (std::size_t i = 1; i <= 12; ++i) {
        store(settings_.ftast[i], ftast[i].Text);
        store(settings_.altftast[i], altftast[i].Text);
    }
    form.Visible = false;
}

void Frmftast::cmdCancel_Click() { form.Visible = false; }

void Frmftast::mark(TextBox& box) {
    for (std::size_t i = 1; i <= 12; ++i) {
        ftast[i].BackColor = colour::white;
        altftast[i].BackColor = colour::white;
    }
    box.BackColor = colour::cyan;
}

} // namespace velorn
