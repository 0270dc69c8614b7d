// The download of quarter-hour values: what a value costs when the line costs nothing, and how much of a slow
// line is used when everything waits for it. The line is a pseudo terminal whose far end, a process of its
// own, is the controller and keeps to the time that its bytes take. Usage: download_bench [rounds] [packets]
#include "app/program.h"
#include "plant/poll_event_loop.h"
#include "rounds.h"
#include "runtime/virtual_event_loop.h"
#include "support/block_files.h"
#include "support/fake_printer.h"
#include "support/fake_serial_port.h"
#include "support/fake_tcp_client.h"
#include "support/fake_visualisation.h"
#include "support/nobody_there.h"

#include <cmath>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <vector>

using namespace velorn;
using namespace velorn::bench;

namespace {

constexpr int tracks = 60;
constexpr const char* path = "c:\\archiv.dat";
const std::string frame_end = "\x1b\x1b"
                              "D5";
const std::string accepted = "\x1b\x1b"
                             "D6";
const std::string complete = "\x1b\x1b"
                             "D4";

std::string two_digits(int number) { return (number < 10 ? "0" : "") + std::to_string(number); }

std::string initialisation() {
    std::string text = "6060";
    for (int t = 0; t < tracks; ++t) text += "kW   kW   ";
    for (int t = 0; t < tracks; ++t) text += "Leistung      Leistung      ";
    return text + frame_end;
}

// Data sets from the year's beginning on, without the frames' ends.
std::vector<std::string> data_sets(int count) {
    std::vector<std::string> sets;
    unsigned random = 2463534242U;
    for (int month = 1; month <= 12; ++month) {
        for (int day = 1; day <= 31; ++day) {
            for (int quarter = 1; quarter <= 96; ++quarter) {
                if (static_cast<int>(sets.size()) == count) return sets;
                std::string text = two_digits(day) + two_digits(month) + "26" + two_digits(quarter);
                for (int t = 0; t < tracks; ++t) {
                    random = random * 1664525U + 1013904223U;
                    const std::string value =
                        std::to_string(random >> 20U) + ',' + std::to_string((random >> 8U) % 10);
                    text += std::string(8 - value.size(), ' ') + value;
                }
                sets.push_back(std::move(text));
            }
        }
    }
    return sets;
}

std::vector<std::string> packets_of(const std::vector<std::string>& sets, std::size_t sets_in_one) {
    std::vector<std::string> packets;
    for (std::size_t i = 0; i + sets_in_one <= sets.size(); i += sets_in_one) {
        std::string packet;
        for (std::size_t k = 0; k < sets_in_one; ++k) packet += sets[i + k];
        packets.push_back(packet + frame_end);
    }
    return packets;
}

void must(bool fine, const char* what) {
    if (fine) return;
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

// A program whose window is open on a new archive.
struct Site {
    EventLoop& loop;
    test::BlockFiles files;
    test::NobodyThere dialogs;
    test::FakeTcpClient tcp{loop};
    test::FakePrinter printer;
    test::FakeProcesses processes;
    test::FakeVisualisation visualisation;
    Program program;

    Site(EventLoop& its_loop, SerialPort& serial)
        : loop(its_loop),
          program(World{loop, files, dialogs, serial, tcp, printer, processes, visualisation, "c:\\velorn",
                        ScreenSize{1366, 768}}) {
        must(program.archive.create(path, 2026, tracks, {2026, 11, 21}).ok(), "no archive");
        program.archive.close();
        program.telefonbuch[0].viertdatei = path;
        program.module1.telindex = 0;
        (void)program.MSComm1.set_InputLen(0);
        must(program.MSComm1.set_PortOpen(true).ok(), "no port");
        program.archive_window.show();
        must(loop.wait_until([this] { return program.frmgrafick.archivgeladen; }), "not opened");
        program.frmgrafick.opendathol.Click();
    }
    bool is_complete() const {
        return program.frmgrafick.fortschritt.Value.get() == 100 && !program.module1.empfgrafick;
    }
};

// ---- without a line ----

// Nanoseconds a value, from the first packet on, each handed over in chunks of this many bytes.
double in_memory(const std::vector<std::string>& packets, int mode, std::size_t chunk, int values) {
    VirtualEventLoop loop;
    test::FakeSerialPort serial{loop};
    Site site(loop, serial);
    FrmGrafick& f = site.program.frmgrafick;
    const auto arrives = [&](const std::string& bytes) {
        for (std::size_t i = 0; i < bytes.size(); i += chunk) {
            serial.arrives(std::string_view(bytes).substr(i, chunk));
            loop.settle();
        }
    };
    f.optuebertrag.select(mode);
    f.download.Click();
    arrives(initialisation());
    loop.pass(2000);
    arrives(accepted);
    int acknowledged = 0;
    serial.on_write = [&](std::string_view bytes) { acknowledged += bytes == "OK" ? 1 : 0; };
    const double begin = seconds_now();
    for (const std::string& packet : packets) arrives(packet);
    const double seconds = seconds_now() - begin;
    must(acknowledged == static_cast<int>(packets.size()), "not all packets were taken");
    return seconds * 1e9 / values;
}

// The least that can be done: eight characters to a float in a table.
double plain(const std::vector<std::string>& sets, int values) {
    std::vector<float> table(static_cast<std::size_t>(values));
    const double begin = seconds_now();
    std::size_t at = 0;
    for (const std::string& set : sets) {
        for (std::size_t field = 8; field < set.size(); field += 8) {
            double number = 0;
            double unit = 0;
            for (std::size_t i = field; i < field + 8; ++i) {
                if (set[i] == ',') {
                    unit = 1;
                } else if (set[i] != ' ') {
                    number = number * 10 + (set[i] - '0');
                    unit *= 10;
                }
            }
            table[at++] = static_cast<float>(unit > 0 ? number / unit : number);
        }
    }
    const double seconds = seconds_now() - begin;
    must(at == table.size() && table[at / 2] >= 0, "not all values");
    return seconds * 1e9 / values;
}

// ---- with a line ----

class FdPort final : public SerialPort {
  public:
    FdPort(plant::PollEventLoop& loop, std::string device) : loop_(loop), device_(std::move(device)) {}
    ~FdPort() override { close(); }

    Outcome open(int, const SerialSettings&, Handshake) override {
        fd_ = ::open(device_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
        if (fd_ < 0) return failure(RunTimeError::invalid_port, device_);
        loop_.watch(fd_, POLLIN, [this](short) { read(); });
        return {};
    }
    void close() override {
        if (fd_ < 0) return;
        loop_.unwatch(fd_);
        ::close(fd_);
        fd_ = -1;
    }
    bool is_open() const override { return fd_ >= 0; }
    bool is_there(int) const override { return true; }
    std::vector<There> ports_there() const override { return {}; }
    bool can(const SerialSettings&) const override { return true; }
    Outcome apply(const SerialSettings&) override { return {}; }
    Outcome apply(Handshake) override { return {}; }
    Outcome replace_parity_errors(std::optional<char>) override { return {}; }
    void set_dtr(bool) override {}
    Lines lines() override { return {}; }
    void write(std::string_view bytes) override {
        must(::write(fd_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "line is full");
    }
    std::size_t unsent() const override { return 0; }
    void drop_unsent() override {}
    std::size_t available() const override { return received_.size(); }
    std::string take(std::size_t most) override {
        std::string taken = received_.substr(0, most);
        received_.erase(0, taken.size());
        return taken;
    }

  private:
    void read() {
        char bytes[4096];
        const ssize_t got = ::read(fd_, bytes, sizeof bytes);
        if (got <= 0) return;
        received_.append(bytes, static_cast<std::size_t>(got));
        loop_.post([this] {
            if (arrived && !received_.empty()) arrived();
        });
    }

    plant::PollEventLoop& loop_;
    std::string device_;
    int fd_ = -1;
    std::string received_;
};

// The far end. A byte has passed when its ten bits have, and no time that the line was idle is made up for.
class SlowLine {
  public:
    SlowLine(int fd, int baud) : fd_(fd), byte_time_(10.0 / baud) {}

    void send(std::string_view bytes) {
        constexpr std::size_t at_once = 16; // as a chip's queue hands them over
        free_ = std::max(free_, seconds_now());
        while (!bytes.empty()) {
            const std::string_view part = bytes.substr(0, at_once);
            free_ += byte_time_ * static_cast<double>(part.size());
            sleep_until(free_);
            for (std::size_t done = 0; done < part.size();) {
                const ssize_t put = write(fd_, part.data() + done, part.size() - done);
                if (put < 0) _exit(1);
                done += static_cast<std::size_t>(put);
            }
            bytes.remove_prefix(part.size());
        }
    }
    // Until what was received ends with this.
    void await(std::string_view end) {
        std::string got;
        while (!got.ends_with(end)) {
            char c = 0;
            if (read(fd_, &c, 1) != 1) _exit(1);
            got += c;
        }
        free_ = seconds_now() + byte_time_ * static_cast<double>(end.size());
        sleep_until(free_);
    }
    void await_bytes(int count) {
        for (char c = 0; count > 0; --count) {
            if (read(fd_, &c, 1) != 1) _exit(1);
        }
    }

    static void sleep_until(double when) {
        const double seconds = std::floor(when);
        const timespec moment{static_cast<time_t>(seconds), static_cast<long>((when - seconds) * 1e9)};
        clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &moment, nullptr);
    }

  private:
    int fd_;
    double byte_time_;
    double free_ = 0;
};

[[noreturn]] void be_the_controller(int line_fd, int result_fd, int baud, int mode,
                                    const std::vector<std::string>& packets) {
    prctl(PR_SET_TIMERSLACK, 20'000);
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    SlowLine line(line_fd, baud);
    line.await(mode == 1 ? "DUE3\r" : "DUE4\r");
    SlowLine::sleep_until(seconds_now() + 1.2);
    line.send(initialisation());
    line.await("OK");
    line.await_bytes(32);
    line.send(accepted);
    SlowLine::sleep_until(seconds_now() + 0.3);
    const double begin = seconds_now();
    for (const std::string& packet : packets) {
        line.send(packet);
        line.await("OK");
    }
    const double seconds = seconds_now() - begin;
    line.send(complete);
    _exit(write(result_fd, &seconds, sizeof seconds) == sizeof seconds ? 0 : 1);
}

void over_a_line(int baud, int mode, const std::vector<std::string>& packets, int values_in_one) {
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    must(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0, "no pseudo terminal");
    const std::string device = ptsname(master);
    const int slave = ::open(device.c_str(), O_RDWR | O_NOCTTY); // kept open: no hang-up between the two
    termios raw{};
    tcgetattr(slave, &raw);
    cfmakeraw(&raw);
    tcsetattr(slave, TCSANOW, &raw);
    int results[2];
    must(pipe(results) == 0, "no pipe");
    const pid_t child = fork();
    if (child == 0) be_the_controller(master, results[1], baud, mode, packets);
    {
        plant::PollEventLoop loop;
        FdPort port(loop, device);
        Site site(loop, port);
        site.program.frmgrafick.optuebertrag.select(mode);
        site.program.frmgrafick.download.Click();
        must(loop.wait_until([&] { return site.is_complete(); }), "not complete");
    }
    double seconds = 0;
    must(read(results[0], &seconds, sizeof seconds) == sizeof seconds, "no result");
    waitpid(child, nullptr, 0);
    for (const int fd : {results[0], results[1], master, slave}) ::close(fd);
    std::size_t bytes = 0;
    for (const std::string& packet : packets) bytes += packet.size() + 2; // and its "OK"
    const double limit = static_cast<double>(bytes) * 10.0 / baud;
    const double values = static_cast<double>(packets.size()) * values_in_one;
    std::printf("%6d baud, packets of %-4s %10.0f values/s, the line used %.3f of the time\n", baud,
                mode == 1 ? "1/4h" : "4h", values / seconds, limit / seconds);
}

} // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 5;
    const int packets_on_the_line = argc > 2 ? std::atoi(argv[2]) : 12;
    const std::vector<std::string> sets = data_sets(96 * 31 * 6);
    const std::vector<std::string> quarters = packets_of(sets, 1);
    const std::vector<std::string> hours = packets_of(sets, 16);
    const int values = static_cast<int>(sets.size()) * tracks;
    constexpr std::size_t whole = 1U << 20U;
    run({{"digits to floats, no more", "ns/value", [&] { return plain(sets, values); }},
         {"4h packets", "ns/value", [&] { return in_memory(hours, 0, whole, values); },
          "digits to floats, no more"},
         {"4h packets in chunks of 64 bytes", "ns/value", [&] { return in_memory(hours, 0, 64, values); },
          "digits to floats, no more"},
         {"1/4h packets", "ns/value", [&] { return in_memory(quarters, 1, whole, values); },
          "digits to floats, no more"},
         {"1/4h packets in chunks of 64 bytes", "ns/value",
          [&] { return in_memory(quarters, 1, 64, values); }, "digits to floats, no more"}},
        rounds);
    for (const int baud : {19200, 115200}) {
        const auto some = static_cast<std::ptrdiff_t>(packets_on_the_line);
        const auto few =
            std::vector<std::string>(hours.begin(), hours.begin() + some / (baud < 100'000 ? 4 : 1));
        const auto many =
            std::vector<std::string>(quarters.begin(), quarters.begin() + some * (baud < 100'000 ? 4 : 16));
        over_a_line(baud, 0, few, 16 * tracks);
        over_a_line(baud, 1, many, tracks);
    }
}
