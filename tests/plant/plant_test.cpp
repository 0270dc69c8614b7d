#include "plant/plant.h"
#include "tcp_visitor.h"

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace velorn::plant {
namespace {

namespace fs = std::filesystem;

struct APlant : OverTcp {
    fs::path folder;
    std::vector<std::string> told;
    std::vector<std::string> complaints;
    std::unique_ptr<Plant> plant;

    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "velorn_plant_XXXXXX").string();
        ASSERT_NE(::mkdtemp(name.data()), nullptr);
        folder = name;
    }
    void TearDown() override {
        plant.reset();
        fs::remove_all(folder);
    }

    bool opens(const std::vector<std::string>& arguments) {
        const std::vector<std::string_view> words(arguments.begin(), arguments.end());
        plant = std::make_unique<Plant>(loop, std::get<Options>(options_from(words)));
        plant->announce = [this](const std::string& line) { told.push_back(line); };
        plant->complain = [this](const std::string& line) { complaints.push_back(line); };
        return plant->open();
    }
    // A port that nobody has at the moment.
    std::uint16_t free_port() { return TcpServer::open(loop, "127.0.0.1", 0).value()->port(); }
    std::string place(std::uint16_t port) { return "127.0.0.1:" + std::to_string(port); }
};

TEST_F(APlant, servesAControllerBehindALogin) {
    const std::uint16_t port = free_port();
    ASSERT_TRUE(opens({"--tcp", place(port) + ",login=a:b"}));
    EXPECT_EQ(told.at(0), "Steuerung 1: " + place(port));
    TcpVisitor visitor(loop, port);
    ASSERT_TRUE(comes([&] { return visitor.heard.ends_with("Username: "); }));
    visitor.write("a\rb\r\x01");
    EXPECT_TRUE(comes([&] { return visitor.heard.ends_with("\r\n*"); }));
}

TEST_F(APlant, leavesOutAPortThatIsTakenAndGoesOn) {
    const auto taken = TcpServer::open(loop, "127.0.0.1", 0).value();
    const std::uint16_t port = free_port();
    ASSERT_TRUE(opens({"--tcp", place(taken->port()), "--tcp", place(port)}));
    EXPECT_EQ(complaints.at(0),
              "Steuerung 1, " + place(taken->port()) + " bleibt weg: Anschluß ist bereits geöffnet");
    EXPECT_EQ(plant->on_air(), 1u);
    TcpVisitor visitor(loop, port);
    EXPECT_TRUE(comes([&] { return visitor.connected; }));
}

TEST_F(APlant, isNotThereIfNothingOfItIs) {
    const auto taken = TcpServer::open(loop, "127.0.0.1", 0).value();
    EXPECT_FALSE(opens({"--tcp", place(taken->port())}));
    EXPECT_FALSE(opens({"--pty", (folder / "fehlt" / "a").string()}));
    EXPECT_EQ(complaints.size(), 2u);
}

TEST_F(APlant, dialsItsSitesThroughAGateway) {
    const std::uint16_t port = free_port();
    const std::uint16_t other = free_port();
    ASSERT_NE(port, other);
    ASSERT_TRUE(opens({"--gateway", place(port) + "," + std::to_string(other) + ",modem2=refuse"}));
    TcpVisitor refused(loop, other);
    EXPECT_TRUE(comes([&] { return refused.error == ECONNREFUSED; }));
    TcpVisitor visitor(loop, port);
    ASSERT_TRUE(comes([&] { return visitor.connected; }));
    visitor.write("\x11"
                  "ATE0\ratd05550100006\r");
    EXPECT_TRUE(comes([&] { return visitor.heard.ends_with("CONNECT 9600\r\n"); }));
    visitor.write("\x01");
    EXPECT_TRUE(comes([&] { return visitor.heard.ends_with("\r\n*"); }));
    visitor.close();
    EXPECT_TRUE(comes([&] { return !plant->sites().engaged(5); }));
}

TEST_F(APlant, hasAModemOnAPseudoTerminal) {
    const std::string link = (folder / "modem").string();
    ASSERT_TRUE(opens({"--modem", link}));
    const int descriptor = ::open(link.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    std::string heard;
    loop.watch(descriptor, POLLIN, [&](short) {
        std::array<char, 256> bytes;
        const ssize_t count = ::read(descriptor, bytes.data(), bytes.size());
        if (count > 0) heard.append(bytes.data(), static_cast<std::size_t>(count));
    });
    EXPECT_EQ(::write(descriptor, "ATZ\r", 4), 4);
    EXPECT_TRUE(comes([&] { return heard == "ATZ\r\r\nOK\r\n"; }));
    loop.unwatch(descriptor);
    ::close(descriptor);
}

TEST_F(APlant, endsWhenItsSourcesAreReadAndNotBefore) {
    const std::string link = (folder / "a").string();
    ASSERT_TRUE(opens({"--pty", link, "--source", "100000"}));
    bool finished = false;
    plant->finished = [&] { finished = true; };
    pass(200);
    EXPECT_FALSE(finished);
    const int descriptor = ::open(link.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    std::size_t read = 0;
    loop.watch(descriptor, POLLIN, [&](short) {
        std::array<char, 4096> bytes;
        const ssize_t count = ::read(descriptor, bytes.data(), bytes.size());
        if (count > 0) read += static_cast<std::size_t>(count);
    });
    EXPECT_TRUE(comes([&] { return finished; }));
    EXPECT_EQ(read, 100'000u);
    loop.unwatch(descriptor);
    ::close(descriptor);
}

} // namespace
} // namespace velorn::plant
