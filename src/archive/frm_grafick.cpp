#include "archive/frm_grafick.h"

#include "runtime/text.h"

namespace velorn {

FrmGrafick::FrmGrafick(EventLoop& loop)
    : Timer1(loop, 100), Timer3(loop, 100), Timer4(loop, 1000), Timer5(loop, 500) {
    form.Caption = "1/4h-Daten Auswertung  ";
    schliessen.Caption = "Schließen"_w;
    schliessen.ToolTipText = "Schließen (aktueller Zustand wird gespeichert)"_w;
    schliessen2.Caption = "Schließen ohne Speichern"_w;
    neupfad.Caption = "Datenarchivierungsdatei auswählen"_w;
    opendathol.Caption = "Daten holen";
    download.Caption = "Download starten";
    closedathol.Caption = "Schließen"_w;
    checkauflegen.Caption = "Auflegen wenn Fertig";
    txtempf.Visible = false;
    txtausw.Visible = false;
    Timer1.Tick = [this] {
        if (--dlzaehler < 1) Timer1.Enabled = false;
    };
}

} // namespace velorn
