#include "desktop/run_program.h"

#include "app/program.h"
#include "desktop/frm_properties_view.h"
#include "desktop/frmedit_view.h"
#include "desktop/frmftast_view.h"
#include "desktop/frmgrafick_view.h"
#include "desktop/frmtelefon_view.h"
#include "desktop/main_window.h"
#include "desktop/qt_dialogs.h"
#include "desktop/qt_event_loop.h"
#include "desktop/qt_printer.h"
#include "desktop/qt_processes.h"
#include "desktop/qt_serial_port.h"
#include "desktop/qt_tcp_client.h"
#include "desktop/qt_visualisation.h"
#include "desktop/style.h"
#include "runtime/disk_files.h"
#include "runtime/serial_devices.h"
#include "runtime/velorn_ini.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QScreen>
#include <QStandardPaths>
#include <QTranslator>

#include <filesystem>
#include <optional>

namespace velorn {

namespace {

std::filesystem::path path_of(const QString& text) { return std::filesystem::path(text.toStdU16String()); }

// Where the executable lies; where that can't be written, or cp1252 can't name it, the user's application
// data.
std::filesystem::path program_folder() {
    const QString beside = QCoreApplication::applicationDirPath();
    if (QFileInfo(beside).isWritable() && Paths::stored(path_of(beside))) return path_of(beside);
    const QString own = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QDir().mkpath(own);
    return path_of(own);
}

// The device of a port number: the one that velorn.ini names, else the system's usual one.
std::string device_of(const VelornIni& ini, int com_port) {
    if (const auto named = ini.device(com_port)) return *named;
    return default_device(com_port, com_port > 4 ? usb_adapters() : std::vector<std::string>{});
}

// The folder that velorn.ini names for the logs of unattended collections; nothing where it names none, or
// none that can be stored.
std::optional<std::string> log_folder(const VelornIni& ini) {
    const std::string named = ini.collection_log_folder();
    if (named.empty()) return std::nullopt;
    return Paths::stored(std::filesystem::path(std::u8string(named.begin(), named.end())));
}

// The toolkit's own dialogs, such as the printer's. Where its translation isn't there they stay as they are.
void speak_german(QApplication& application, QTranslator& german) {
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (german.load(QStringLiteral("qtbase_de"), folder)) application.installTranslator(&german);
}

} // namespace

int run_program(int argc, char** argv, int speed) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Velorn"));
    QApplication::setQuitOnLastWindowClosed(false);
    apply_style(application);
    QTranslator german;
    speak_german(application, german);

    const std::filesystem::path folder = program_folder();
    const VelornIni ini = VelornIni::load(folder / "velorn.ini");
    const Paths paths(folder, ini.drives());
    DiskFiles files(paths);
    QtEventLoop loop(speed);
    QtDialogs dialogs(loop, paths);
    QtSerialPort serial(loop, [&ini](int com_port) { return device_of(ini, com_port); });
    QtTcpClient tcp(loop);
    QtPrinter printer(loop);
    QtProcesses processes(paths);
    QtVisualisation visualisation(loop);
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();

    World world{loop,
                files,
                dialogs,
                serial,
                tcp,
                printer,
                processes,
                visualisation,
                Paths::stored(folder).value_or("."),
                ScreenSize{screen.width(), screen.height()},
                Gateway{ini.gateway_address(), ini.gateway_port(1), ini.gateway_port(2)}};
    if (auto folder_of_logs = log_folder(ini)) world.log_folder = std::move(*folder_of_logs);
    Program program(std::move(world));
    MainWindow window(program);
    const auto later = [&loop](std::function<void()> what) { loop.post(std::move(what)); };
    FrmftastView frmftast(program.frmftast, later, &window);
    FrmPropertiesView frmProperties(program.frmProperties, later, &window);
    FrmeditView frmedit(program.frmedit, later, &window);
    FrmgrafickView frmgrafick(program.frmgrafick, program.evaluation.controls, later, &window);
    FrmtelefonView frmtelefon(program.frmtelefon, program.module1, later, &window);
    program.start.Form_Load();
    loop.run();
    return 0;
}

} // namespace velorn
