#include "plant/controller_device.h"
#include "plant/pseudo_terminal.h"
#include "plant/source_device.h"
#include "plant/station.h"

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <poll.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace velorn::plant {
namespace {

namespace fs = std::filesystem;

// The program at the other side of a pseudo terminal.
class OtherSide {
  public:
    OtherSide(PollEventLoop& loop, const std::string& device)
        : loop_(loop), descriptor_(::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
        if (descriptor_ >= 0) loop_.watch(descriptor_, POLLIN, [this](short) { read(); });
    }
    ~OtherSide() {
        if (descriptor_ < 0) return;
        loop_.unwatch(descriptor_);
        ::close(descriptor_);
    }
    OtherSide(const OtherSide&) = delete;
    OtherSide& operator=(const OtherSide&) = delete;

    bool is_open() const { return descriptor_ >= 0; }
    std::size_t write(std::string_view bytes) const {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        return count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    void stop_reading() { loop_.look_for(descriptor_, 0); }
    void go_on_reading() { loop_.look_for(descriptor_, POLLIN); }

    std::string heard;

  private:
    void read() {
        std::array<char, 4096> bytes;
        const ssize_t count = ::read(descriptor_, bytes.data(), bytes.size());
        if (count > 0) heard.append(bytes.data(), static_cast<std::size_t>(count));
        if (count <= 0) stop_reading();
    }

    PollEventLoop& loop_;
    int descriptor_;
};

struct OverAPseudoTerminal : testing::Test {
    fs::path folder;
    PollEventLoop loop;

    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "velorn_plant_XXXXXX").string();
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override { fs::remove_all(folder); }

    std::string link() const { return (folder / "a").string(); }
    StationSettings settings() const {
        StationSettings s;
        s.name = "A";
        s.link = link();
        return s;
    }

    MakeDevice controller() {
        return [this] { return std::make_unique<ControllerDevice>(std::make_shared<Controller>(loop, 1)); };
    }

    // Turns the loop until it holds; false after half a minute, which no healthy machine needs.
    bool comes(const EventLoop::Condition& condition) {
        const std::int64_t limit = loop.now_ms() + 30'000;
        const auto alarm = loop.post_at(limit, [] {});
        const bool went_on = loop.wait_until([&] { return condition() || loop.now_ms() >= limit; });
        loop.cancel(alarm);
        return went_on && condition();
    }
};

TEST_F(OverAPseudoTerminal, allBytesPassBothWays) {
    const std::unique_ptr<PseudoTerminal> terminal = PseudoTerminal::open(loop).value();
    std::string arrived;
    terminal->received = [&](std::string_view bytes) { arrived += bytes; };
    OtherSide other(loop, terminal->device());
    ASSERT_TRUE(other.is_open());
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    other.write(all);
    terminal->send(all);
    EXPECT_TRUE(comes([&] { return arrived.size() >= 256 && other.heard.size() >= 256; }));
    EXPECT_EQ(arrived, all);
    EXPECT_EQ(other.heard, all);
}

TEST_F(OverAPseudoTerminal, theOtherSideMayCloseAndComeBack) {
    Station station(loop, settings(), controller());
    ASSERT_TRUE(station.open().ok());
    for (int visit = 0; visit < 3; ++visit) {
        OtherSide other(loop, link());
        ASSERT_TRUE(other.is_open());
        other.write("\x01VERS\r");
        EXPECT_TRUE(comes([&] { return other.heard.ends_with("Seriennummer 000001\r\n*"); })) << visit;
    }
}

TEST_F(OverAPseudoTerminal, nothingIsLostAndNothingGrowsWhileTheOtherSideDoesNotRead) {
    const std::unique_ptr<PseudoTerminal> terminal = PseudoTerminal::open(loop).value();
    std::size_t answered = 0;
    terminal->received = [&](std::string_view bytes) {
        terminal->send(std::string(bytes.size() * 64, 'x'));
        answered += bytes.size();
    };
    OtherSide other(loop, terminal->device());
    other.stop_reading();
    std::size_t written = 0;
    const std::string question(512, 'q');
    int refusals = 0;
    while (refusals < 50) { // asks until the line has taken no more for a while
        const std::size_t taken = other.write(question);
        written += taken;
        refusals = taken > 0 ? 0 : refusals + 1;
        const std::int64_t later = loop.now_ms() + 2;
        const auto tick = loop.post_at(later, [] {});
        ASSERT_TRUE(loop.wait_until([&] { return loop.now_ms() >= later; }));
        loop.cancel(tick);
    }
    EXPECT_LT(answered, written);
    EXPECT_LT(terminal->queued(), PseudoTerminal::full_queue + 4096 * 64);
    other.go_on_reading();
    EXPECT_TRUE(comes([&] { return other.heard.size() == 64 * written; }));
}

TEST_F(OverAPseudoTerminal, anOldLinkIsReplacedAndTheOwnOneRemoved) {
    fs::create_symlink("/nirgends", link());
    {
        const auto terminal = PseudoTerminal::open(loop, link());
        ASSERT_TRUE(terminal.ok());
        EXPECT_EQ(fs::read_symlink(link()), terminal.value()->device());
    }
    EXPECT_FALSE(fs::is_symlink(link()));
}

TEST_F(OverAPseudoTerminal, aFileInTheWayIsLeftAlone) {
    std::ofstream(link()) << "wichtig";
    EXPECT_FALSE(PseudoTerminal::open(loop, link()).ok());
    EXPECT_EQ(fs::file_size(link()), 7u);
    const auto nowhere = PseudoTerminal::open(loop, (folder / "fehlt" / "a").string());
    ASSERT_FALSE(nowhere.ok());
    EXPECT_TRUE(nowhere.failure().is(RunTimeError::path_not_found));
}

TEST_F(OverAPseudoTerminal, aSourceSendsToTheLastByteAndThenReportsTheEnd) {
    bool finished = false;
    Station station(loop, settings(), [&] {
        return std::make_unique<SourceDevice>(loop, Source(1, 300'000), [&] { finished = true; });
    });
    ASSERT_TRUE(station.open().ok());
    OtherSide other(loop, link());
    EXPECT_TRUE(comes([&] { return finished; }));
    Source same(1, 300'000);
    std::string wanted;
    while (!same.empty()) wanted += same.next(1000);
    EXPECT_EQ(wanted.size(), 300'000u);
    EXPECT_TRUE(other.heard == wanted) << other.heard.size();
}

TEST_F(OverAPseudoTerminal, aStationComesBackAfterAHangUp) {
    StationSettings short_lived = settings();
    short_lived.faults.hang_up_after = 3;
    short_lived.away_ms = 50;
    Station station(loop, short_lived, controller());
    std::vector<std::string> lines;
    station.announce = [&](const std::string& line) { lines.push_back(line); };
    ASSERT_TRUE(station.open().ok());
    OtherSide other(loop, link());
    other.write("12345");
    EXPECT_TRUE(comes([&] { return lines.size() == 2; }));
    EXPECT_EQ(lines.at(1), "A: aufgelegt");
    EXPECT_TRUE(comes([&] { return !fs::is_symlink(link()); }));
    EXPECT_TRUE(comes([&] { return fs::is_symlink(link()); }));
}

TEST_F(OverAPseudoTerminal, aStationLogsTrafficInBothDirections) {
    Station station(loop, settings(), controller());
    std::string lines;
    station.log = [&](const std::string& line) { lines += line; };
    ASSERT_TRUE(station.open().ok());
    OtherSide other(loop, link());
    other.write("\x01");
    EXPECT_TRUE(comes([&] { return !other.heard.empty(); }));
    EXPECT_NE(lines.find("A empfängt <01>"), std::string::npos);
    EXPECT_NE(lines.find("A sendet   <0D><0A>*"), std::string::npos);
}

} // namespace
} // namespace velorn::plant
