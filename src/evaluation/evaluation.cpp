#include "evaluation/evaluation.h"

#include "evaluation/track_looks.h"

namespace velorn {

Evaluation::Evaluation(EventLoop& loop, Dialogs& dialogs, Printer& printer, ScreenSize screen,
                       const Module1& module1, FrmGrafick& frmgrafick, Archive& archive)
    : controls(loop),
      curves(archive, frmgrafick, controls, events, surface),
      screen_(screen),
      frmgrafick_(frmgrafick),
      archive_(archive),
      track_list_(dialogs, frmgrafick, controls, events, archive),
      view_choice_(frmgrafick, controls, events, archive),
      read_out_(frmgrafick, controls, events, archive, curves),
      chart_print_(printer, module1, frmgrafick, controls, events, archive, surface, curves),
      lost_(loop, 1) {
    lost_.Tick = [this] {
        lost_.Enabled = false;
        events.archive_lost();
    };
    events.neuzeichnen.connect([this] { neuzeichnen(); });
    controls.Picture1.Paint = [this] { neuzeichnen(); };
}

void Evaluation::archive_opened() {
    track_list_.build(screen_.width);
    view_choice_.build();
    curves.forget();
    read_out_.forget();
    neuzeichnen();
}

void Evaluation::neuzeichnen() {
    if (!frmgrafick_.geladen || controls.zeichnetneu) return;
    // Before there is anything to draw on nobody looks; the canvas asks for the chart when it comes.
    if (!controls.druckmodus && controls.Picture1.canvas == nullptr) return;
    controls.zeichnetneu = true;
    const bool reads = !archive_.holds(frmgrafick_.jahrsel - first_year(archive_));
    if (reads) frmgrafick_.busy = true;
    if (!controls.druckmodus) surface.draw_on(controls.Picture1.canvas, false);
    view_choice_.wochentagrechnen();
    track_list_.fill();
    events.formeltext();
    curves.zeigenormal();
    if (reads) frmgrafick_.busy = false;
    controls.zeichnetneu = false;
    read_out_.follow();
    if (frmgrafick_.archivgeladen && archive_.failed()) lost_.Enabled = true;
}

void Evaluation::archive_closed() {
    lost_.Enabled = false;
    controls.Timer2.Enabled = false;
    controls.aufschub = false;
    track_list_.close_popups();
    controls.picyskala.Visible = false;
    curves.forget();
    read_out_.forget();
    controls.Picture1.Cls();
}

} // namespace velorn
