// The whole window on a pseudo terminal, as a controller's flood would find it: how long it leaves events
// waiting during a burst, how much memory it holds after a little and after a lot, and what it costs while
// nothing happens and while it mirrors a display at 115200 baud. Usage: window_bench [megabytes of the long
// run]
#include "app/program.h"
#include "controller_stream.h"
#include "desktop/main_window.h"
#include "desktop/qt_dialogs.h"
#include "desktop/qt_event_loop.h"
#include "desktop/qt_printer.h"
#include "desktop/qt_processes.h"
#include "desktop/qt_serial_port.h"
#include "desktop/qt_tcp_client.h"
#include "desktop/qt_visualisation.h"
#include "desktop/style.h"
#include "rounds.h"
#include "runtime/disk_files.h"

#include <QApplication>
#include <QTemporaryDir>

#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

using namespace velorn;

namespace {

long resident_kb() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmRSS:")) return std::atol(line.c_str() + 6);
    }
    return 0;
}

double processor_seconds() {
    rusage used{};
    getrusage(RUSAGE_SELF, &used);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

// The far end: another process that writes as fast as it is read.
pid_t send(int master, std::size_t bytes) {
    const pid_t child = fork();
    if (child != 0) return child;
    std::string block;
    while (block.size() < 65536) block += "Vorlauf 78,4 C  Leistung 118 kW  Z\x84hler 004711 kWh  ......\r\n";
    while (bytes > 0) {
        const ssize_t put = write(master, block.data(), std::min(block.size(), bytes));
        if (put < 0) _exit(1);
        bytes -= static_cast<std::size_t>(put);
    }
    _exit(0);
}

// The far end of a steady line: the display's traffic at so many bytes a second, every ten milliseconds.
pid_t send_steadily(int master, std::size_t bytes_a_second, int seconds) {
    const pid_t child = fork();
    if (child != 0) return child;
    const std::size_t block = bytes_a_second / 100;
    const std::string stream = bench::controller_stream(block * 100 * static_cast<std::size_t>(seconds));
    const double begin = bench::seconds_now();
    for (int i = 0; i < seconds * 100; ++i) {
        if (write(master, stream.data() + static_cast<std::size_t>(i) * block, block) < 0) _exit(1);
        const double left = begin + (i + 1) / 100.0 - bench::seconds_now();
        if (left > 0) usleep(static_cast<useconds_t>(left * 1e6));
    }
    _exit(0);
}

struct Watched {
    EventLoop& loop;
    double last = bench::seconds_now();
    double worst = 0;
    Timer beat{loop, 5};

    explicit Watched(EventLoop& l) : loop(l) {
        beat.Tick = [this] {
            const double now = bench::seconds_now();
            worst = std::max(worst, now - last);
            last = now;
        };
    }
    void begin() {
        last = bench::seconds_now();
        worst = 0;
        beat.Enabled = true;
    }
};

} // namespace

int main(int argc, char** argv) {
    const auto megabytes = static_cast<std::size_t>(argc > 1 ? std::atoi(argv[1]) : 400);
    QApplication application(argc, argv);
    apply_style(application);
    const QTemporaryDir folder;

    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    grantpt(master);
    unlockpt(master);
    const std::string slave_name = ptsname(master);
    const int slave = open(slave_name.c_str(), O_RDWR | O_NOCTTY);
    termios raw{};
    tcgetattr(slave, &raw);
    cfmakeraw(&raw);
    tcsetattr(slave, TCSANOW, &raw);

    Paths paths(folder.path().toStdString());
    DiskFiles files(paths);
    QtEventLoop loop;
    QtDialogs dialogs(loop, paths);
    QtSerialPort serial(loop, [&](int) { return slave_name; });
    QtTcpClient tcp(loop);
    QtPrinter printer(loop);
    QtProcesses processes(paths);
    QtVisualisation visualisation(loop, QStringLiteral("velorn-visu-messung"));
    Program program(World{loop,
                          files,
                          dialogs,
                          serial,
                          tcp,
                          printer,
                          processes,
                          visualisation,
                          folder.path().toStdString(),
                          {1366, 768}});
    MainWindow window(program);
    program.start.Form_Load();
    const auto pass = [&](std::int64_t ms) {
        const std::int64_t until = loop.now_ms() + ms;
        loop.post_at(until, [] {});
        (void)loop.wait_until([&] { return loop.now_ms() >= until; });
    };
    pass(3000);
    if (!program.MSComm1.PortOpen()) return std::puts("the port didn't open"), 1;

    const double before = processor_seconds();
    pass(20'000);
    std::printf("idle                      %8.3f %% of a core (aim: below 0.5)\n",
                (processor_seconds() - before) / 20 * 100);

    show_mirrored_display(program.frmTerminal, false);
    pass(500);
    const int steady_seconds = 20;
    const pid_t steady = send_steadily(master, 11520, steady_seconds);
    const double before_display = processor_seconds();
    pass(steady_seconds * 1000);
    std::printf("mirrored display, 115200  %8.3f %% of a core (aim: below 3)\n",
                (processor_seconds() - before_display) / steady_seconds * 100);
    waitpid(steady, nullptr, 0);
    pass(500);
    program.frmTerminal.tbrToolBar("bildumschalt").Click();

    Watched watched(loop);
    const auto burst = [&](std::size_t bytes) {
        const double begin = bench::seconds_now();
        const double used = processor_seconds();
        const pid_t far_end = send(master, bytes);
        watched.begin();
        int status = 0;
        bool over = false;
        Timer look(loop, 20, true);
        look.Tick = [&] { over = over || waitpid(far_end, &status, WNOHANG) == far_end; };
        (void)loop.wait_until([&] { return over && serial.available() == 0; });
        watched.beat.Enabled = false;
        const double took = bench::seconds_now() - begin;
        pass(300);
        std::printf("%4zu MB                   %8.2f MB/s, %.1f ms of processor time per MB, longest gap "
                    "%.1f ms, %.1f MB resident\n",
                    bytes / 1'000'000, static_cast<double>(bytes) / took / 1e6,
                    (processor_seconds() - used) * 1e9 / static_cast<double>(bytes), watched.worst * 1000,
                    static_cast<double>(resident_kb()) / 1000);
    };
    burst(4'000'000);
    const long little = resident_kb();
    burst(10'000'000);
    burst(megabytes * 1'000'000);
    std::printf("memory after %zu MB        %+8.2f MB against after 4 MB (aim: within 4)\n", megabytes,
                static_cast<double>(resident_kb() - little) / 1000);
    return 0;
}
