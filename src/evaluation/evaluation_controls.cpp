#include "evaluation/evaluation_controls.h"

#include "evaluation/chart_surface.h"
#include "runtime/text.h"

namespace velorn {

namespace {

template <class Rows>
void hide(Rows& labels) {
    for (auto& label : labels) label.Visible = false;
}

} // namespace

EvaluationControls::EvaluationControls(EventLoop& loop) : Timer2(loop, 100) {
    struct Caption {
        Button& button;
        std::string_view caption;
        std::string_view hint;
    };
    for (const Caption& c : {
             Caption{comkanalein, "JA", "Der Kanal wird gezeichnet und gezählt"_w},
             Caption{comkanalaus, "NEIN", ""},
             Caption{comkanalfarbe, "Farbe auswählen"_w, ""},
             Caption{closepickanal, "Schließen"_w, ""},
             Caption{comkanaleinb, "JA", "Die Berechnung wird gezeichnet und gezählt"_w},
             Caption{comkanalausb, "NEIN", ""},
             Caption{comkanalfarbeb, "Farbe auswählen"_w, ""},
             Caption{closepickanalb, "Schließen"_w, ""},
             Caption{comtag, "Tagesgang", "96 1/4h-Werte"},
             Caption{comwoch, "Wochengang", "84 2h-Durchschittswerte"},
             Caption{commonat, "Monatsgang", "6h Durchschittswerte eines Monats"},
             Caption{comjahr, "Jahresgang", "Tagesdurchschnittswerte eines Jahres"},
             Caption{comdauer, "Dauerlinie", "Dauerlinie der aktuellen Werte"},
             Caption{comtagschnitt, "ø Tagesgang"_w, "durchsch. Tagesgang der aktuellen Werte"},
             Caption{minustag, "- Tag     ", ""},
             Caption{plustag, "+ Tag     ", ""},
             Caption{minuswoche, "- Woche", ""},
             Caption{pluswoche, "+ Woche", ""},
             Caption{minusmonat, "- Monat ", ""},
             Caption{plusmonat, "+ Monat ", ""},
             Caption{minusjahr, "- Jahr    ", ""},
             Caption{plusjahr, "+ Jahr    ", ""},
             Caption{openyskala, "Y-Skala", "Grenzen und Schrittweiten der beiden Achsen"},
             Caption{closepicy, "Schließen und übernehmen"_w, ""},
             Caption{plott, "Drucken", "Diagramm mit Legende drucken, auch als PDF"},
             Caption{datexport, "Daten exportieren",
                     "aktuell angezeigte Daten werden in Textdatei (Excel-tauglich) übertragen"_w},
             Caption{datexport2, "Daten exp.   .csv", ""},
             Caption{datexport3, "Datenexport Ansgar", ""},
             Caption{openbearb, "Daten bearbeiten", ""},
             Caption{openformel, "Eingabe Berechnung", ""},
             Caption{openformel2, "Eingabe Berechnung", ""},
             Caption{sonderfunkt, "Sonderfunktionen", "Jahresdauerline,..."},
         }) {
        c.button.Caption = std::string(c.caption);
        c.button.ToolTipText = std::string(c.hint);
    }
    checkviertel.Caption = ": immer 1/4h Werte anzeigen";
    Check1.Caption = ":nur SA+SO";
    Check2.Caption = ":nur MO-FR";
    pickanal.Caption = "Kanal darstellen?";
    pickanalb.Caption = "Kanal darstellen?";
    picyskala.Caption = "Y-Skala";
    Picture1.Width = chart_width;
    viertkann.ForeColor = 0xAAAAAAU;
    // Nothing draws these two yet.
    comdauer.Enabled = false;
    comtagschnitt.Enabled = false;
    hide_means();
    hide_sums();
    Label54.Visible = false;
    Label55.Visible = false;
    ablesung.Visible = false;
    Timer2.Tick = [this] {
        if (--aufschubzaehler >= 1) return;
        aufschub = false;
        Timer2.Enabled = false;
    };
}

void EvaluationControls::hide_means() {
    hide(schnittkanal);
    hide(schnittkanalb);
}

void EvaluationControls::hide_sums() {
    hide(summkanal);
    hide(summkanalb);
}

int EvaluationControls::calculated_of_row(int row) const {
    if (breitbild || row > 1) return row;
    if (row == 1) return -1;
    return erstespur == 1 ? 0 : 1;
}

int EvaluationControls::row_of_calculated(int track) const {
    if (breitbild || track > 1) return track;
    return calculated_of_row(0) == track ? 0 : -1;
}

} // namespace velorn
