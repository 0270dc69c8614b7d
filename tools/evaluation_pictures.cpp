#include "evaluation_pictures.h"

#include "desktop/qt_printer.h"

#include <QPrinter>

namespace velorn {

namespace {

constexpr int tracks_in_the_pictures = 5;

// A page as the program prints it, into a file and without a dialog.
class PageFile final : public Printer {
  public:
    explicit PageFile(const QString& path) : path_(path) {}

    Outcome print_text(std::string_view, std::string_view) override { return {}; }
    Outcome print_page(std::string_view title, const std::function<void(Canvas&)>& draw) override {
        QPrinter device(QPrinter::HighResolution);
        device.setOutputFileName(path_);
        device.setPageSize(QPageSize(QPageSize::A4));
        return QtPrinter::print_page_on(device, title, draw);
    }

  private:
    QString path_;
};

void select(Program& program, int day, int month, int year) {
    program.frmgrafick.tagsel = static_cast<std::int16_t>(day);
    program.frmgrafick.monsel = static_cast<std::int16_t>(month);
    program.frmgrafick.jahrsel = static_cast<std::int16_t>(year);
}

} // namespace

std::unique_ptr<Printer> printer_to_file(const QString& path) { return std::make_unique<PageFile>(path); }

void take_evaluation_pictures(Program& program, QWidget& window,
                              const std::function<void(QWidget&, const QString&)>& take) {
    EvaluationControls& c = program.evaluation.controls;
    for (int track = 1; track <= tracks_in_the_pictures; ++track)
        program.archive.spursichtbar[static_cast<std::size_t>(track)] = true;
    program.archive.ylimax = std::int16_t{180};
    program.archive.ylimin = std::int16_t{-20};
    program.archive.ylischritt = std::int16_t{20};
    program.archive.yremax = std::int16_t{90};
    program.archive.yreschritt = std::int16_t{10};
    for (const int track : {3, 4, 5}) program.archive.spurrechts[static_cast<std::size_t>(track)] = true;
    const int year = program.world.loop.local_time().year;
    window.resize(1280, 760);

    select(program, 12, 3, year);
    c.comtag.Click();
    take(window, QStringLiteral("auswertung-tag"));
    c.Commandkanal[2].Click();
    take(window, QStringLiteral("auswertung-spur"));
    c.closepickanal.Click();
    c.comwoch.Click();
    take(window, QStringLiteral("auswertung-woche"));
    c.Picture1.MouseMove(300, 200);
    take(window, QStringLiteral("auswertung-ablesen"));
    c.Picture2.pointer(0);
    c.plott.Click();
    select(program, 1, 3, year);
    c.commonat.Click();
    take(window, QStringLiteral("auswertung-monat"));
    select(program, 1, 1, year);
    c.comjahr.Click();
    take(window, QStringLiteral("auswertung-jahr"));
    c.checkviertel.Value = true;
    take(window, QStringLiteral("auswertung-jahr-viertel"));
}

} // namespace velorn
