#include "desktop/qt_event_loop.h"
#include "desktop/qt_serial_port.h"
#include "patience.h"
#include "pseudo_terminal.h"
#include "runtime/text.h"

#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <sys/resource.h>

namespace velorn {

namespace {

std::string noise(std::size_t size) {
    std::mt19937 dice{7};
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(dice());
    return bytes;
}

struct SerialLine : testing::Test {
    std::filesystem::path folder = [] {
        std::string name = (std::filesystem::temp_directory_path() / "velorn-XXXXXX").string();
        return std::filesystem::path(::mkdtemp(name.data()));
    }();
    std::filesystem::path link = folder / "adapter";
    test::PseudoTerminal far_end{link};
    QtEventLoop loop;
    QtSerialPort port{
        loop, [this](int com_port) {
            return com_port == 1 ? link.string() : com_port == 2 ? far_end.name() : std::string();
        }};
    std::string got;
    int lost = 0;

    SerialLine() {
        port.arrived = [this] { got += port.take(1 << 20); };
        port.lost = [this] { ++lost; };
    }
    ~SerialLine() override {
        port.close();
        std::filesystem::remove_all(folder);
    }
    void open(Handshake handshake = Handshake::none) { ASSERT_TRUE(port.open(1, {}, handshake)); }
    bool comes_true(const EventLoop::Condition& condition) { return test::comes_true(loop, condition); }

    // Feeds the bytes into the far end as the line takes them, until `condition`.
    bool feed(std::string_view bytes, const EventLoop::Condition& condition) {
        return comes_true([&] {
            bytes.remove_prefix(far_end.push(bytes.substr(0, 4096)));
            return condition();
        });
    }
};

} // namespace

TEST_F(SerialLine, aMegabyteOfAllByteValuesArrivesAsItWasSent) {
    open();
    const std::string bytes = noise(1 << 20);
    EXPECT_TRUE(feed(bytes, [&] { return got.size() >= bytes.size(); }));
    EXPECT_TRUE(got == bytes);
}

TEST_F(SerialLine, allByteValuesArriveAlsoWhileParityErrorsAreReplaced) {
    open();
    ASSERT_TRUE(port.replace_parity_errors('?'));
    const std::string bytes = noise(100'000) + std::string(300, '\xFF');
    EXPECT_TRUE(feed(bytes, [&] { return got.size() >= bytes.size(); }));
    EXPECT_TRUE(got == bytes);
}

TEST_F(SerialLine, whatIsWrittenLeavesWholeAndTheQueueFallsToZero) {
    open();
    const std::string bytes = noise(100'000);
    int told = 0;
    port.sent = [&] { ++told; };
    port.write(bytes);
    EXPECT_GT(port.unsent(), 0U);
    std::string reached;
    EXPECT_TRUE(comes_true([&] {
        reached += far_end.pull();
        return reached.size() >= bytes.size() && port.unsent() == 0 && told > 0;
    }));
    EXPECT_TRUE(reached == bytes);
}

TEST_F(SerialLine, whatIsDroppedDoesNotLeave) {
    open();
    port.write(noise(1 << 20));
    port.drop_unsent();
    EXPECT_LT(port.unsent(), 65536U);
}

TEST_F(SerialLine, aFarEndThatVanishesIsReportedOnceAndThePortIsClosed) {
    open();
    far_end.pull_out();
    EXPECT_TRUE(comes_true([&] { return lost > 0; }));
    test::pass(loop, 30);
    EXPECT_EQ(lost, 1);
    EXPECT_FALSE(port.is_open());
    EXPECT_FALSE(port.is_there(1));
}

TEST_F(SerialLine, aFarEndThatComesBackUnderItsNameOpensAgain) {
    open();
    far_end.pull_out();
    EXPECT_TRUE(comes_true([&] { return lost > 0; }));
    far_end.plug_in();
    EXPECT_TRUE(port.is_there(1));
    open();
    EXPECT_TRUE(feed("da", [&] { return got == "da"; }));
}

TEST_F(SerialLine, nobodyReadingKeepsMemoryBoundedAndLosesNothing) {
    open();
    port.arrived = {};
    const std::string bytes = noise(1 << 20);
    std::size_t pushed = 0;
    const auto push = [&] { pushed += far_end.push(std::string_view(bytes).substr(pushed, 4096)); };
    std::size_t stuck_at = 0;
    int rounds_stuck = 0;
    EXPECT_TRUE(comes_true([&] {
        push();
        rounds_stuck = pushed == stuck_at ? rounds_stuck + 1 : 0;
        stuck_at = pushed;
        return rounds_stuck > 100;
    }));
    EXPECT_LE(port.available(), 65536U);
    EXPECT_LT(pushed, std::size_t{300'000});

    EXPECT_TRUE(comes_true([&] {
        push();
        got += port.take(1000);
        return got.size() >= bytes.size();
    }));
    EXPECT_TRUE(got == bytes);
}

TEST_F(SerialLine, aFullInboxDoesNotKeepTheProcessorBusy) {
    open();
    port.arrived = {};
    const std::string bytes = noise(1 << 20);
    std::size_t pushed = 0;
    (void)comes_true([&] {
        pushed += far_end.push(std::string_view(bytes).substr(pushed, 4096));
        return port.available() == 65536U && far_end.push(std::string_view(bytes).substr(pushed, 1)) == 0;
    });
    test::pass(loop, 50);
    int turns = 0;
    bool over = false;
    loop.post_at(loop.now_ms() + 200, [&] { over = true; });
    EXPECT_TRUE(loop.wait_until([&] {
        ++turns;
        return over;
    }));
    EXPECT_LT(turns, 60);
}

TEST_F(SerialLine, closingInsideTheNewsIsHarmless) {
    open();
    port.arrived = [&] {
        got += port.take(1);
        port.close();
    };
    EXPECT_TRUE(feed("abc", [&] { return !port.is_open(); }));
    test::pass(loop, 20);
    EXPECT_EQ(got, "a");
    EXPECT_EQ(port.take(10), "");
    EXPECT_EQ(lost, 0);
}

TEST_F(SerialLine, aDeviceThatIsNotThereIsAnInvalidPortNumber) {
    far_end.pull_out();
    const Outcome refused = port.open(1, {}, Handshake::none);
    ASSERT_FALSE(refused);
    EXPECT_TRUE(refused.failure().is(RunTimeError::invalid_port));
    EXPECT_TRUE(refused.failure().text.starts_with("Ungültige Anschlußnummer: COM1 ("_w))
        << refused.failure().text;
    EXPECT_TRUE(refused.failure().text.ends_with("ist nicht vorhanden"));
    EXPECT_TRUE(port.open(77, {}, Handshake::none).failure().is(RunTimeError::invalid_port));
}

TEST_F(SerialLine, aDeviceThatSomebodyHasIsInUseAlsoUnderAnotherName) {
    open();
    QtSerialPort other{loop, [this](int) { return far_end.name(); }};
    const Outcome refused = other.open(2, {}, Handshake::none);
    ASSERT_FALSE(refused);
    EXPECT_TRUE(refused.failure().is(RunTimeError::port_already_open));
    EXPECT_TRUE(refused.failure().text.ends_with("ist durch ein anderes Programm belegt"));
    port.close();
    EXPECT_TRUE(other.open(2, {}, Handshake::none));
}

TEST_F(SerialLine, whatIsNoTerminalIsADeviceError) {
    QtSerialPort other{loop, [](int) { return std::string("/dev/null"); }};
    EXPECT_TRUE(other.open(1, {}, Handshake::none).failure().is(RunTimeError::device_io));
    EXPECT_FALSE(other.is_open());
}

TEST_F(SerialLine, eachHandshakeSetsItsFlagsOnTheDevice) {
    constexpr std::array<std::pair<bool, bool>, 4> expected = {
        {{false, false}, {false, true}, {true, false}, {true, true}}}; // RTS/CTS, XON/XOFF
    open();
    for (int number = 3; number >= 0; --number) {
        ASSERT_TRUE(port.apply(static_cast<Handshake>(number)));
        const termios state = far_end.state();
        const auto& [rts, xon] = expected[static_cast<std::size_t>(number)];
        EXPECT_EQ((state.c_cflag & CRTSCTS) != 0, rts) << number;
        EXPECT_EQ((state.c_iflag & IXON) != 0 && (state.c_iflag & IXOFF) != 0, xon) << number;
    }
}

TEST_F(SerialLine, newSettingsKeepHandshakeAndParityReplacing) {
    open(Handshake::rts_xon_xoff);
    ASSERT_TRUE(port.replace_parity_errors('?'));
    ASSERT_TRUE(port.apply(SerialSettings{19200, 'e', 8, SerialSettings::Stop::two}));
    const termios state = far_end.state();
    EXPECT_NE(state.c_iflag & IXON, 0U);
    EXPECT_NE(state.c_iflag & PARMRK, 0U);
    EXPECT_EQ(state.c_iflag & IGNPAR, 0U);
    EXPECT_EQ(::cfgetospeed(&state), static_cast<speed_t>(B19200));
    ASSERT_TRUE(port.replace_parity_errors(std::nullopt));
    EXPECT_EQ(far_end.state().c_iflag & PARMRK, 0U);
}

TEST_F(SerialLine, whatTheSystemCannotDoIsRefused) {
    open();
    const SerialSettings four_bits{9600, 'n', 4, SerialSettings::Stop::one};
    const SerialSettings half_a_stop{9600, 'n', 8, SerialSettings::Stop::one_and_a_half};
    EXPECT_FALSE(port.can(four_bits));
    EXPECT_FALSE(port.can(half_a_stop));
    EXPECT_TRUE(port.apply(four_bits).failure().is(RunTimeError::invalid_property));
}

TEST_F(SerialLine, aClosedPortTakesEverythingQuietly) {
    port.write("weg");
    port.set_dtr(true);
    port.drop_unsent();
    port.close();
    EXPECT_EQ(port.unsent(), 0U);
    EXPECT_EQ(port.available(), 0U);
    EXPECT_FALSE(port.lines().carrier);
}

} // namespace velorn
