// Takes the handbook's pictures: the real windows with a simulated controller at the other end of a line in
// memory. Usage: velorn-pictures FOLDER [dunkel]; QT_SCALE_FACTOR=2 takes them at double scale. See
// tools/take-pictures.sh.
#include "app/program.h"
#include "desktop/frm_properties_view.h"
#include "desktop/frmedit_view.h"
#include "desktop/frmftast_view.h"
#include "desktop/frmgrafick_view.h"
#include "desktop/frmtelefon_view.h"
#include "desktop/main_window.h"
#include "desktop/qt_dialogs.h"
#include "desktop/qt_event_loop.h"
#include "desktop/search_field.h"
#include "desktop/style.h"
#include "desktop/terminal_view.h"
#include "evaluation_pictures.h"
#include "plant/controller.h"
#include "plant/demo_archives.h"
#include "plant/demo_book.h"
#include "runtime/disk_files.h"
#include "runtime/text.h"
#include "support/fake_serial_port.h"
#include "support/fake_tcp_client.h"
#include "support/fake_visualisation.h"
#include "support/plant_network.h"

#include <QApplication>
#include <QLineEdit>
#include <QTemporaryDir>

using namespace velorn;

namespace {

struct Site {
    std::string_view name, nummer, bemerkung;
    bool visualisation, archive, automatic;
};

// Over the PC's modem, over the gateway's modems, and directly.
constexpr Site sites[] = {
    {"Heizkraftwerk Süd"_w, "0,05550123457", "19200, Anlage im Keller links"_w, true, true, true},
    {"Hallenbad Mühlau"_w, "10.20.4.17", "port 1100", true, true, true},
    {"Grundschule Böckweg"_w, "05550123460", "9600", false, true, false},
    {"Fernwärme Übergabe Nord"_w, "uebergabe-nord.example", "port23", true, true, true},
    {"Rathaus", "05550123462", "Schlüssel beim Hausmeister"_w, false, false, false},
    {"Altenheim St. Josef", "05550123463", "2400 4800", false, true, false},
    {"Blockheizkraftwerk Gießhübel"_w, "10.20.4.31", "port 2001", true, false, false},
    {"Freibad Aßling"_w, "05550123465", "nur im Sommer", false, false, false},
    {"Feuerwache 2", "0,05550123466", "Gateway, 1200", false, true, true},
    {"Gärtnerei Lößnitz"_w, "05550123467", "Kessel 3 außer Betrieb"_w, true, false, false},
    {"Kläranlage"_w, "10.20.4.40", "port 10100", true, true, false},
    {"Krankenhaus Öhringer Straße"_w, "05550123469", "Bereitschaft anrufen", true, true, true},
};

// Behind the sample that the first start puts in front.
void write_sites(Program& program, const std::string& folder) {
    constexpr std::int64_t archive_length = 1'000'000;
    constexpr std::string_view rest = "0";
    int index = 1;
    for (const Site& site : sites) {
        PhoneEntry& entry = program.telefonbuch[index++];
        entry.name = std::string(site.name);
        entry.nummer = std::string(site.nummer);
        entry.bemerkung = std::string(site.bemerkung);
        if (site.visualisation) entry.visdatei = folder + "\\vis.exe";
        if (site.archive) entry.viertdatei = folder + "\\archiv.dat";
        if (site.automatic) entry.autoflag = Telefonbuch::collected;
    }
    program.phonebook_files.save_telefonbuch();
    if (const auto file = program.world.files.open(folder + "\\archiv.dat", OpenMode::read_write))
        (void)(*file)->write(archive_length, rest);
}

// The plant's own book, with a protocol file for each site.
void write_book(Program& program, const plant::Directory& directory, const std::string& folder) {
    const auto write = [&](const std::string& path, const std::string& bytes) {
        (void)replace_content(program.world.files, path, bytes);
    };
    program.settings.telefonpfad = folder + "/anlagen.par";
    write(folder + "/anlagen.par", plant::phone_book(directory, {true, ""}));
    (void)program.world.files.make_folder(std::string(plant::protocol_folder));
    for (const plant::Site& site : directory.sites())
        write(std::string(plant::protocol_folder) + '\\' + plant::protocol_name(site),
              plant::first_protocol_line({2026, 11, 1, 8, 0, 0, 0}));
}

// For the site in the third line.
void write_archive(Program& program, Files& files) {
    const std::string path = "c:\\hallenbad-muehlau.dat";
    if (const auto file = files.open(path, OpenMode::create)) {
        plant::Site site;
        site.seed = 7;
        (void)plant::write_archive(site, program.world.loop.local_time(), **file);
    }
    program.module1.telindex = 2;
    program.telefonbuch[2].viertdatei = path;
    program.module1.projektname = program.telefonbuch[2].name.text();
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) return 2;
    QApplication application(argc, argv);
    apply_style(application);
    if (argc > 2) QApplication::setPalette(palette_of(Look::dark));
    const QString target = QString::fromLocal8Bit(argv[1]);
    const QString suffix = argc > 2 ? QStringLiteral("-dunkel.png") : QStringLiteral(".png");
    const QTemporaryDir folder;

    Paths paths(folder.path().toStdString());
    DiskFiles files(paths);
    QtEventLoop loop(4);
    QtDialogs dialogs(loop, paths);
    test::FakeSerialPort serial(loop);
    test::FakeTcpClient tcp(loop);
    const bool plain = argc == 2 && qEnvironmentVariableIsEmpty("QT_SCALE_FACTOR");
    const std::unique_ptr<Printer> printer =
        printer_to_file(plain ? target + QStringLiteral("/auswertung-druck.pdf")
                              : folder.filePath(QStringLiteral("druck.pdf")));
    test::FakeProcesses processes;
    test::FakeVisualisation visualisation;
    plant::Controller controller(loop, 7);
    controller.send = [&](std::string_view bytes) { serial.arrives(bytes); };
    serial.on_write = [&](std::string_view bytes) {
        loop.post([&controller, text = std::string(bytes)] { controller.receive(text); });
    };

    Program program(World{loop,
                          files,
                          dialogs,
                          serial,
                          tcp,
                          *printer,
                          processes,
                          visualisation,
                          folder.path().toStdString(),
                          {1100, 700}});
    MainWindow window(program);
    FrmftastView frmftast(
        program.frmftast, [&loop](std::function<void()> what) { loop.post(std::move(what)); }, &window);
    FrmPropertiesView frmProperties(
        program.frmProperties, [&loop](std::function<void()> what) { loop.post(std::move(what)); }, &window);
    FrmtelefonView frmtelefon(
        program.frmtelefon, program.module1,
        [&loop](std::function<void()> what) { loop.post(std::move(what)); }, &window);
    FrmgrafickView frmgrafick(
        program.frmgrafick, program.evaluation.controls,
        [&loop](std::function<void()> what) { loop.post(std::move(what)); }, &window);
    FrmeditView frmedit(
        program.frmedit, [&loop](std::function<void()> what) { loop.post(std::move(what)); }, &window);
    const auto pass = [&](int ms) {
        const std::int64_t until = loop.now_ms() + ms;
        loop.post_at(until, [] {});
        (void)loop.wait_until([&] { return loop.now_ms() >= until; });
    };
    const auto type = [&](std::string_view text) {
        for (const char c : text) program.keys.Form_KeyPress(static_cast<unsigned char>(c));
        pass(600);
    };
    const auto take = [&](QWidget& shown, const QString& name) {
        pass(200);
        shown.grab().save(target + QLatin1Char('/') + name + suffix);
    };

    program.start.Form_Load();
    window.showNormal();
    window.resize(1100, 700);
    pass(2500);
    type("\x01");
    type("temp\r");
    type("zaehler\r");
    type("stoerungen\r");
    take(window, QStringLiteral("hauptfenster"));

    window.terminal().search("er", false);
    auto* search = static_cast<SearchField*>(window.findChild<QLineEdit*>()->parentWidget());
    search->open();
    search->findChild<QLineEdit*>()->setText(QStringLiteral("Vorlauf"));
    take(window, QStringLiteral("suche"));
    search->close_search();

    press(program.frmTerminal.testwindow);
    type("date\r");
    take(window, QStringLiteral("testfenster"));
    press(program.frmTerminal.testwindow);

    // The menu's command waits until its window is closed, so what happens in it is queued before.
    loop.post_at(loop.now_ms() + 500, [&] {
        take(frmftast, QStringLiteral("funktionstasten"));
        program.frmftast.cmdCancel_Click();
    });
    press(program.frmTerminal.mnuftast);

    serial.adapters = {{1, "16550A"}, {5, "FT232R USB UART"}, {7, "CH340"}};
    loop.post_at(loop.now_ms() + 500, [&] {
        take(frmProperties, QStringLiteral("anschluss"));
        program.frmProperties.cmdCancel_Click();
    });
    press(program.frmTerminal.mnuProperties);

    write_sites(program, folder.path().toStdString());
    loop.post_at(loop.now_ms() + 500, [&] {
        FrmTelefon& f = program.frmtelefon;
        frmtelefon.resize(1100, 650);
        frmtelefon.findChild<QWidget*>(QStringLiteral("Picture1_2"))->setFocus();
        f.zeilen[2].Picture1.Click();
        take(frmtelefon, QStringLiteral("telefonbuch"));
        f.comautohol.Click();
        take(frmtelefon, QStringLiteral("telefonbuch-abholung"));
        f.abbruch.Click();
        f.cmdCancel.Click();
    });
    press(program.frmTerminal.mnutelefonbuch);

    // ---- the archive, in the middle of a download ----
    write_archive(program, files);
    program.frmTerminal.tbrToolBar("grafick").Click();
    pass(500);
    program.frmgrafick.opendathol.Click();
    const DateTime today = loop.local_time();
    CollectionStart yesterday{today.day, today.month, today.year, 0, 0};
    yesterday.subtract_day();
    program.download.set_start({yesterday.holtag, yesterday.holmonat, yesterday.holjahr});
    program.frmgrafick.download.Click();
    (void)loop.wait_until([&] { return program.frmgrafick.neuwerte > 60; });
    frmgrafick.resize(1280, 760);
    take(frmgrafick, QStringLiteral("daten-holen"));
    program.frmgrafick.closedathol.Click();
    type("\x08");
    take_evaluation_pictures(program, frmgrafick, take);
    (void)program.archive_window.close(ArchiveWindow::Closing::discarding);

    // ---- the mirrored display, whose colours are its own in either palette ----
    if (argc > 2) {
        loop.end();
        return 0;
    }
    program.settings.fbautostart = std::int16_t{0};
    program.settings.fbfarbe = std::int16_t{0};
    program.looks.apply_display_colours();
    controller.set_site("Kraftwerk Gelmar, Block 2");
    const auto page = [&](char key, const QString& name) {
        type(std::string_view(&key, 1));
        pass(800);
        take(window, name);
        type("E");
    };
    program.remote_control.fernbedstart();
    pass(2500);
    take(window, QStringLiteral("fernbedienung-hell"));
    page('2', QStringLiteral("stoerungen"));
    page('3', QStringLiteral("wochenuhr"));
    press(program.frmTerminal.termfarb);
    page('1', QStringLiteral("fernbedienung-blau"));
    page('4', QStringLiteral("tagesgang"));
    type("6");
    type("8");
    take(window, QStringLiteral("sollwerte"));
    type("E");
    type("5");
    program.frmTerminal.tbrToolBar("snapshot").Click();
    program.frmTerminal.tbrToolBar("looksnap").Click();
    take(window, QStringLiteral("displayaufnahme"));
    program.frmTerminal.tbrToolBar("looksnap").Click();

    program.frmTerminal.tbrToolBar("bildumschalt").Click();

    program.receive.txtvergl.clear(); // the name of the site before stands there
    window.resize(900, 420);

    // ---- the three routes, and the protocol file of the last one ----
    test::PlantNetwork network(loop, program, serial, tcp);
    const plant::Directory& directory = network.sites.directory();
    write_book(program, directory, folder.path().toStdString());
    const auto reach = [&](std::size_t site, bool over_gateway, int ms, const QString& name) {
        program.frmTerminal.txtterm.set_Text({});
        program.phonebook_window.Form_Load();
        program.frmtelefon.telnet.Value = over_gateway;
        program.phonebook_lines.show(static_cast<int>(site) + 1);
        program.dialling.Command1_Click();
        program.module1.dialalter = 500; // too old for remote control to begin
        pass(ms);
        take(window, name);
        program.frmTerminal.tbrToolBar("HangUpPhone").Click();
        pass(500);
    };
    constexpr std::size_t on_tcp = 2, on_gateway = 5, on_modem = 7;
    reach(on_modem, false, 7000, QStringLiteral("verbindung-modem"));
    reach(on_gateway, true, 11'000, QStringLiteral("verbindung-gateway"));
    reach(on_tcp, false, 800, QStringLiteral("verbindung-tcp"));
    loop.post_at(loop.now_ms() + 500, [&] {
        take(frmedit, QStringLiteral("editor"));
        program.frmedit.Command1_Click();
    });
    program.events.edit_protocol_file();
    loop.end();
    return 0;
}
