#include "phonebook/frm_telefon.h"

#include "runtime/text.h"

namespace velorn {

FrmTelefon::FrmTelefon(EventLoop& loop)
    : Timer1(loop, 2000),
      Timer2(loop, 1000),
      Timer3(loop, 500),
      Timer4(loop, 1000),
      Timer5(loop, 200),
      Timer14(loop, 500),
      Timer15(loop, 500),
      Timer20(loop, 100, true),
      Timer99(loop, 1000) {
    form.Caption = "Telefonbuch";
    Command1.Caption = "Wählen"_w;
    Command2.Caption = "Positionen tauschen";
    Command3.Caption = "Abbruch";
    Command4.Caption = "Protokoll editieren";
    Command5.Caption = "Freie Position einfügen"_w;
    Command6.Caption = "Position löschen"_w;
    Command7.Caption = "Suchen";
    Command8.Caption = "Command8";
    Command11.Caption = "Schließen und Änderungen SPEICHERN !!"_w;
    cmdOK.Caption = "OK";
    cmdCancel.Caption = "Abbrechen";
    Command4.Enabled = false;
    Picture2.Caption = "Positionen tauschen";
    Picture3.Caption = "Bitte sinnvollen Anmeldenamen eingeben!!   (z.B.: Fa. Müller,...)"_w;
    Picture3.Visible = false;
    telnet.Caption = "Telnet über tarnwerk Modem nutzen"_w;
    closedathol.Caption = "Schließen"_w;
    comautohol.Caption = "autom. 1/4h-Daten holen";
    vortagcheck.Caption = "Daten nur bis zum Vortag abholen";
    viertelcheck.Caption = "immer nur 1/4h Pakete abholen";
    comstart.Caption = "Start";
    abbruch.Caption = "Abbruch";
    Command10.Caption = "GSM-Init";
    Command9.Caption = "SENDEN";
    for (Button* plus : {&comdatplus, &comuhrplus}) plus->Caption = "+";
    for (Button* minus : {&comdatminus, &comuhrminus}) minus->Caption = "-";
    for (PhoneLine& line : zeilen) {
        line.Comausw.Visible = false;
        line.Comausw.Caption = "...";
        line.visthumb.Visible = false;
        line.viertthumb.Visible = false;
        line.nr.BackColor = colour::info;
    }
}

} // namespace velorn
