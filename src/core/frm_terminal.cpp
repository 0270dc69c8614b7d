#include "core/frm_terminal.h"

#include "runtime/text.h"

#include <algorithm>
#include <stdexcept>

namespace velorn {

namespace {

// A row for a plain member, and one for an element of a control array.
#define ROW(depth, name, caption)                                                                            \
    MenuRow {                                                                                                \
        depth, #name, caption, [](FrmTerminal& f) -> MenuItem& { return f.name; }                            \
    }
#define ROW_AT(depth, name, index, caption)                                                                  \
    MenuRow {                                                                                                \
        depth, #name, caption, [](FrmTerminal& f) -> MenuItem& { return f.name[index]; }                     \
    }
constexpr MenuRow separator{1, {}, {}, nullptr};

constexpr MenuRow rows[] = {
    ROW(0, mnuFile, "&Datei"_w),
    ROW(1, mnuOpenLog, "LOG-Datei ö&ffnen..."_w),
    ROW(1, mnuCloseLog, "LOG-Datei s&chließen"_w),
    separator,
    ROW(1, mnuFileExit, "&Beenden"_w),
    ROW(0, mnuPort, "&COM-Anschluß"_w),
    ROW(1, mnuOpen, "Anschluß ö&ffnen"_w),
    ROW(1, mnuProperties, "&Einstellungen..."_w),
    separator,
    ROW(1, modinit, "Modem initialisieren"_w),
    ROW(1, modsearch, "Modem suchen"_w),
    ROW(0, mnuMSComm, "&MSComm"_w),
    ROW(1, mnuInputLen, "Eingabe&länge..."_w),
    ROW(1, mnuRThreshold, "&Empfangslimit..."_w),
    ROW(1, mnuSThreshold, "&Sendelimit..."_w),
    ROW(1, mnuParRep, "P&arität ersetzen..."_w),
    ROW(1, mnuDTREnable, "&DTR aktivieren"_w),
    separator,
    ROW(1, mnuHCD, "&CD aktiv..."_w),
    ROW(1, mnuHCTS, "C&TS aktiv..."_w),
    ROW(1, mnuHDSR, "DS&R aktiv..."_w),
    ROW(0, mnuCall, "&Anruf"_w),
    ROW(1, mnutelefonbuch, "Telefonnummer &wählen..."_w),
    ROW(1, mnuHangUp, "Telefon &auflegen"_w),
    separator,
    ROW(1, fernbedauto, "Fernbedienung automatisch starten"_w),
    ROW(0, mnuzeisa, "&Darstellung"_w),
    ROW(1, zeisa, "Zeichensatz Fernbedienung"_w),
    ROW(1, mnukorrinv, "Korrekturwert inverse Darstellung"_w),
    ROW(1, mnuzeiabst, "Zeichenabstand Fernbedienung"_w),
    ROW(1, termfarb, "Fernbedienung blau/gelb"_w),
    ROW(1, zeisa2, "Zeichensatz Terminalfenster"_w),
    separator,
    ROW(1, frakt, "Fraktal berechnen"_w),
    ROW(1, informatik, "Informatik"_w),
    ROW(0, mnubat, "&Gepufferte Daten"_w),
    ROW(1, mnubatt1, "BATRAM1 sichern"_w),
    ROW_AT(2, savebattvx, 0, "TVX: h0.BATRAM1 auf PC Datei sichern (über Ser2)"_w),
    ROW_AT(2, savebattvx, 1, "DLS: r0.BATRAM1 auf PC Datei sichern (über Ser2)"_w),
    ROW_AT(2, savebattvx, 2, "KOLU: r1.BATRAM1 auf PC Datei sichern (über Ser2)"_w),
    ROW_AT(2, savebattvx, 3, "KOLU: r1.BATRAM1 auf PC Datei sichern (über Ser1)"_w),
    ROW(2, savebattvx2, "TVX/Zarmo: h0/r0.BIN auf PC Datei sichern (Ser1 oder Ser2)"_w),
    ROW(1, mnubatt2, "BATRAM1 wiederherstellen"_w),
    ROW_AT(2, sendbattvx, 0, "TVX: h0.BATRAM1 wiederherstellen von PC Datei (über Ser2)"_w),
    ROW_AT(2, sendbattvx, 1, "DLS: r0.BATRAM1 wiederherstellen von PC Datei (über Ser2)"_w),
    ROW_AT(2, sendbattvx, 2, "KOLU: r1.BATRAM1 wiederherstellen von PC Datei (über Ser2)"_w),
    ROW_AT(2, sendbattvx, 3, "KOLU: r1.BATRAM1 wiederherstellen von PC Datei (über Ser1)"_w),
    ROW(0, mnuentwi, "&Entwicklung"_w),
    ROW(1, mnuftast, "Funktionstastenbelegung"_w),
    separator,
    ROW(1, mnuzarmo, "Zarmo"_w),
    ROW(1, mnutvxt, "TVX (Gelmar)"_w),
    ROW(1, mnuwendra, "TVX (Wendra!!!)"_w),
    ROW(1, mnudls, "DLS"_w),
    ROW(1, mnudls2, "DLS Modulst. Ruthen"_w),
    separator,
    ROW_AT(1, mnusendtext, 0, "Datei *.*  >  ed.test senden"_w),
    ROW_AT(1, mnusendtext, 1, "Datei*.* > h0.test senden"_w),
    ROW(1, mnuloadText, "Datei *.psr >   laden"_w),
    ROW(1, mnusendonly, "Datei nur senden"_w),
    ROW(1, mnuCHKSUM, "Checksumme PC-Datei"_w),
    ROW(1, mnudatchange, "Dateikonvertierung"_w),
    ROW(1, mnubatram, "Konvertieren zu BATRAM-Datei"_w),
    separator,
    ROW(1, uhrterm, "Uhrzeit in Terminalausgaben"_w),
    ROW(1, testwindow, "Testfenster"_w),
    ROW(1, resetcount, "Neustartzähler"_w),
};

#undef ROW
#undef ROW_AT

constexpr ToolRow tool_rows[] = {
    {"OpenLogFile", "LOG-Datei öffnen"_w, false},
    {"CloseLogFile", "LOG-Datei schließen"_w, false},
    {"DialPhoneNumber", "Telefonbuch und Wählen"_w, true},
    {"HangUpPhone", "Verbindung trennen"_w, false},
    {"Properties", "COM-Anschluß einstellen"_w, true},
    {"TransmitTextFile", "Datei senden"_w, false},
    {"fernbed", "Fernbedienung starten"_w, true},
    {"notfernbed", "Fernbedienung verlassen"_w, false},
    {"bildumschalt", "Zwischen Terminal und Fernbedienung umschalten"_w, false},
    {"snapshot", "Bildschirm festhalten"_w, true},
    {"looksnap", "Festgehaltene Bildschirme ansehen"_w, false},
    {"drucken", "Drucken"_w, false},
    {"visualstart", "Visualisierung starten"_w, true},
    {"protokoll", "Mitschnitt in die Protokolldatei"_w, false},
    {"duestart", "Datenübertragung starten"_w, true},
    {"grafick", "Auswertung der Viertelstundenwerte"_w, false},
    {"clearcont", "Grafik löschen"_w, true},
    {"clearall", "Terminal leeren"_w, false},
    {"test", "Testzeichen senden"_w, false},
};

} // namespace

FrmTerminal::FrmTerminal(EventLoop& loop)
    : Timerglobal(loop, 1000, true),
      Timer1(loop, 1000),
      Timer2(loop, 2000),
      Timer3(loop, 1200),
      Timer4(loop, 1000),
      Timer5(loop, 100, true),
      Timer6(loop, 1000),
      Timer7(loop, 100, true),
      Timer8(loop, 100, true),
      Timer9(loop, 2000, true),
      Timer10(loop, 1000),
      Timer11(loop, 1000),
      Timer12(loop, 1000, true),
      Timer20(loop, 1000),
      Timer23(loop, 1000),
      Timer24(loop, 1000),
      Timer25(loop, 1000),
      Timer26(loop, 400),
      Timer27(loop, 1000),
      Timer28(loop, 1000),
      Timer30(loop, 8000),
      Timer31(loop, 20000) {
    for (const MenuRow& row : menu_rows()) {
        if (row.item != nullptr) row.item(*this).Caption = row.caption;
    }
    for (std::size_t i = 0; i < tool_buttons.size(); ++i) tool_buttons[i].ToolTipText = tool_rows[i].tooltip;

    mnuCloseLog.Enabled = false;
    tbrToolBar("CloseLogFile").Enabled = false;

    Picture1.Visible = false;
    Picture2.Visible = false;
    picabs.Visible = false;
    for (Label& label : labkal) label.Visible = false;
    Label13.Visible = false;
    txttest10.Visible = false;
    txtsnapshot.Visible = false;
    clrtxtsnap.Visible = false;
    clrtxtsnap.Caption = "Löschen"_w;
    txtprotschreib.Visible = false;
    txtprotwarn.Visible = false;
    txtbattload.Visible = false;
    txtbattload.Text = "BATRAM1 download, beenden mit \"e\"";
    txttest1.Text = "user";
    txttest2.Text = "pass";
    imgConnected.Visible = false;

    for (Lamp* lamp : {&Picture3, &Picture4, &Picture7, &Picture8}) lamp->BackColor = colour::green;
    Label2.Caption = "TxD";
    Label3.Caption = "RxD";
    Label4.Caption = "COM  geschlossen";
    Label5.Caption = "TCP/IP";
    Label6.Caption = "RxD";
    Label7.Caption = "TxD";
    Label16.Caption = "IP-Verbindung unterbrochen";
    picipunterbr.Visible = false;
    for (Lamp* lamp : {&Picture3, &Picture8}) lamp->ToolTipText = "Daten zum Modem";
    for (Lamp* lamp : {&Picture4, &Picture7}) lamp->ToolTipText = "Daten vom Modem";
    for (Lamp* lamp : {&Picture5, &Picture6}) lamp->ToolTipText = "Mit Click umschalten";
    Label4.ToolTipText = "Zustand des Communikationsanschlusses";
    Label5.ToolTipText = "Zustand von TCP/IP";
    Label6.ToolTipText = "Daten von TCP/IP";
    Label7.ToolTipText = "Daten zu TCP/IP";
    sbrStatus.Settings.Text = "Einstellungen: ";
}

std::span<const MenuRow> FrmTerminal::menu_rows() { return rows; }

std::span<const ToolRow> FrmTerminal::toolbar_rows() { return tool_rows; }

ToolButton& FrmTerminal::tbrToolBar(std::string_view key) {
    const auto* const row = std::ranges::find(tool_rows, key, &ToolRow::key);
    if (row == std::end(tool_rows)) throw std::logic_error("no toolbar key " + std::string(key));
    return tool_buttons[static_cast<std::size_t>(row - std::begin(tool_rows))];
}

void show_mirrored_display(FrmTerminal& frmTerminal, bool cursorinv) {
    frmTerminal.fernbedaktiv = true;
    frmTerminal.txtterm.Visible = false;
    frmTerminal.Picture1.Visible = true;
    frmTerminal.Picture1.Cls();
    frmTerminal.cursorinv = cursorinv;
    frmTerminal.fbzustand = 0;
    frmTerminal.zeile = 1;
    frmTerminal.spalte = 1;
}

void press(const MenuItem& item) {
    if (item.Click) item.Click();
}

void write_terminal(FrmTerminal& frmTerminal, std::string_view text) {
    frmTerminal.txtterm.SelColor = colour::blue;
    frmTerminal.txtterm.append(text);
}

} // namespace velorn
