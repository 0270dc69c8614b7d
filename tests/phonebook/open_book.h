// A started program whose phone book can be opened without the wait of its menu command.
#pragma once

#include "support/test_program.h"

#include <string>
#include <string_view>

namespace velorn::test {

struct OpenBook : TestProgram {
    FrmTelefon& f = program.frmtelefon;
    Telefonbuch& book = program.telefonbuch;

    static constexpr const char* telefon_par = "c:\\velorn\\telefon.par";
    static constexpr const char* dispauf_par = "c:\\velorn\\dispauf.par";

    // Neither the first start, which would put a sample into the book, nor settings from before version 22.
    OpenBook() {
        start();
        settings.neustartzaehler = std::int16_t{2};
        settings.einstversion2 = std::int16_t{22};
    }

    void open() {
        program.phonebook_window.Form_Load();
        f.form.Visible = true;
    }
    // With this file.
    void open(std::string_view telefon) {
        files.set_content(telefon_par, telefon);
        open();
    }

    PhoneLine& line(int row) { return f.zeilen[static_cast<std::size_t>(row)]; }
    void click(int row) { line(row).Picture1.Click(); }
    void key(int code) { line(0).Picture1.KeyDown(code); }
    std::string telefon_file() const { return files.content(telefon_par); }
};

} // namespace velorn::test
