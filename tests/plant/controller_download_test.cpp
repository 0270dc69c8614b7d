#include "download_rig.h"
#include "plant/controller.h"
#include "plant/memory_line.h"
#include "plant/sites.h"
#include "runtime/virtual_event_loop.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace velorn::plant {
namespace {

struct AControllerWithRecordings : testing::Test {
    VirtualEventLoop loop{{2026, 11, 14, 11, 28, 0, 0}};
    Controller controller{loop, 101};
    MemoryLine line{loop, controller};
    std::string heard;

    AControllerWithRecordings() {
        line.received = [this](std::string_view bytes) { heard += bytes; };
        controller.set_tracks(3);
    }
    std::string says_to(std::string_view bytes, std::int64_t within_ms = 1000) {
        heard.clear();
        line.send(bytes);
        loop.pass(within_ms);
        return heard;
    }
};

TEST_F(AControllerWithRecordings, beginsADownloadFromTheShell) {
    EXPECT_EQ(says_to("\x01"), "\r\n*");
    EXPECT_EQ(says_to("DUE3\r", 800), "DUE3\r\n");
    EXPECT_EQ(says_to(""), initialisation_frame(controller.recording()));
    says_to("OK", 1000);
    EXPECT_EQ(says_to(today, 400), esc2 + "D6");
}

TEST_F(AControllerWithRecordings, hearsNoOrderUnlessItWasWoken) { EXPECT_EQ(says_to("DUE3\r", 5000), ""); }

TEST_F(AControllerWithRecordings, sleepsAfterTheDownloadUntilItIsWoken) {
    says_to("\x01"
            "DUE4\r",
            3000);
    EXPECT_EQ(says_to("\b"), "\r\n*");
    EXPECT_EQ(says_to("OK"), ""); // a late answer
    EXPECT_EQ(says_to("\x01"), "\r\n*");
    EXPECT_TRUE(says_to("CLOCK\r").starts_with("CLOCK\r\nUhrzeit "));
}

TEST_F(AControllerWithRecordings, beginsAnewWhenItIsWokenInADownload) {
    says_to("\x01"
            "DUE4\r",
            3000);
    EXPECT_EQ(says_to("\x01"), "\r\n*");
    says_to("DUE4\r", 800);
    EXPECT_EQ(says_to(""), initialisation_frame(controller.recording()));
}

TEST_F(AControllerWithRecordings, isSilentAfterItHasGivenUp) {
    says_to("\x01"
            "DUE4\r",
            3000);
    EXPECT_EQ(says_to("", 60'000), "");
    EXPECT_EQ(says_to("CLOCK\r"), "");
    says_to("\x01");
    EXPECT_EQ(says_to("CLOCK\r").substr(0, 7), "CLOCK\r\n");
}

TEST_F(AControllerWithRecordings, keepsItsDisplayQuietForAnOrder) {
    says_to("\x01"
            "FERNBED\r",
            40'000); // and no name
    ASSERT_TRUE(controller.display().is_on());
    says_to("1");
    EXPECT_EQ(says_to("\x01", 300), "");
    EXPECT_EQ(says_to("DUE5\r", 1000), "");
    EXPECT_EQ(says_to(""), packet(controller.recording(), at(2026, 11, 13, 46), 1, at(2026, 11, 14, 45)));
    EXPECT_EQ(says_to("", 10'000), "");
    EXPECT_TRUE(says_to("\b").starts_with("\x1b"));
    EXPECT_TRUE(controller.display().is_on());
}

TEST_F(AControllerWithRecordings, letsItsDisplayGoOnWithoutAnOrder) {
    says_to("\x01"
            "FERNBED\r",
            40'000);
    const PageId menu = controller.display().page();
    says_to("1");
    const PageId other = controller.display().page();
    EXPECT_NE(other, menu);
    says_to("\x01"
            "E"); // the key was meant for it
    EXPECT_EQ(controller.display().page(), menu);
    says_to("\x01", 6000);
    says_to("1");
    EXPECT_EQ(controller.display().page(), other);
}

TEST_F(AControllerWithRecordings, fallsSilentWhenItIsWokenWhileItTalks) {
    EXPECT_EQ(says_to("\x01"
                      "CLOCK\r\x01"),
              "\r\n*CLOCK\r\n\r\n*");
}

struct RecordingSites : testing::Test {
    VirtualEventLoop loop{{2026, 11, 14, 11, 28, 0, 0}};
    std::string heard;

    std::unique_ptr<Device> visitor(Sites& sites, std::size_t place) {
        auto device = sites.visit(place);
        device->send = [this](std::string_view bytes) { heard += bytes; };
        device->connected();
        return device;
    }
};

TEST_F(RecordingSites, serveTheirOwnTracks) {
    Sites sites(loop, demo_directory());
    const auto device = visitor(sites, 1);
    device->receive("\x01"
                    "DUE4\r");
    loop.pass(3000);
    const Site& site = sites.directory().sites()[1];
    EXPECT_TRUE(heard.ends_with(initialisation_frame({site.seed, site.tracks})));
}

TEST_F(RecordingSites, forgetADownloadWhenTheCallerIsGone) {
    Sites sites(loop, demo_directory());
    auto device = visitor(sites, 1);
    device->receive("\x01"
                    "DUE4\r");
    loop.pass(100);
    device.reset();
    EXPECT_FALSE(sites.controller(1).download().is_on());
    heard.clear();
    device = visitor(sites, 1);
    loop.pass(60'000);
    EXPECT_EQ(heard, "");
}

TEST_F(RecordingSites, hangUpWhereTheirFaultsSaySo) {
    const Directory demo = demo_directory();
    Site site = demo.sites()[1];
    site.download_faults.hang_ups = 1;
    Sites sites(loop, Directory({site}));
    const auto device = visitor(sites, 0);
    int endings = 0;
    device->hung_up = [&](Ending ending) { endings += ending == Ending::close ? 1 : 0; };
    device->receive("\x01"
                    "DUE4\r");
    loop.pass(3000);
    EXPECT_EQ(endings, 1);
}

} // namespace
} // namespace velorn::plant
