#include "download_rig.h"
#include "plant/download_faults.h"

#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

namespace velorn::plant {
namespace {

// A PC that keeps to the dialogue and takes nothing that it could find out to be wrong. A piece that holds
// more than one frame's end is taken for one frame.
struct PatientPc : ADownload {
    std::string box;
    bool long_packets = false;
    bool accepted = false;
    bool complete = false;
    bool gone = false;
    int refused = 0;
    int ranges = 0;
    int sets_taken = 0;
    std::map<Quarter, std::string> archive;

    PatientPc() {
        dialogue.send = [this](std::string_view bytes) {
            box += bytes;
            loop.post([this] { look(); });
        };
        dialogue.hung_up = [this] { gone = true; };
    }
    void answer(std::string_view bytes) {
        loop.post_at(loop.now_ms() + 20, [this, text = std::string(bytes)] { dialogue.receive(text); });
    }
    void look() {
        const auto holds = [this](const char* code) { return box.find(esc2 + code) != std::string::npos; };
        std::string frame;
        if (holds("D7")) {
            answer(today);
            ++ranges;
        } else if (holds("D6")) {
            accepted = true;
        } else if (holds("D5")) {
            frame = box;
        } else if (holds("D4")) {
            complete = true;
            answer("\b");
        } else {
            return;
        }
        box.clear();
        if (frame.empty()) return;
        if (accepted) {
            take_packet(frame);
        } else {
            take_initialisation(frame);
        }
    }
    void take_initialisation(const std::string& frame) {
        const bool good = frame == initialisation_frame(site);
        answer(good ? "OK" : "ER");
        if (!good) ++refused;
        if (good && ++ranges == 1) answer(today);
    }
    void take_packet(const std::string& frame) {
        const std::size_t length = 8 + 8 * static_cast<std::size_t>(site.tracks);
        const std::size_t sets = long_packets ? 16 : 1;
        if (frame.size() != sets * length + 4) {
            ++refused;
            answer("ER");
            return;
        }
        bool any = false;
        for (std::size_t i = 0; i < sets; ++i) any |= take_set(frame.substr(i * length, length));
        if (any || long_packets) answer("OK");
    }
    bool take_set(const std::string& set) {
        const int day = std::stoi(set.substr(0, 2));
        const int month = std::stoi(set.substr(2, 2));
        const int number = std::stoi(set.substr(6, 2));
        if (day < 1 || day > 31 || month < 1 || month > 12 || number < 1 || number > 96) return false;
        archive[at(2000 + std::stoi(set.substr(4, 2)), month, day, number)] = set.substr(8);
        ++sets_taken;
        return true;
    }
    void run(const DownloadFaults& faults, DownloadDialogue::Kind kind) {
        dialogue.set_faults(faults);
        long_packets = kind == four_hours;
        dialogue.begin(kind, site);
        loop.pass(600'000);
    }
    // All of today, and nothing else.
    void expect_all() const {
        EXPECT_TRUE(complete);
        EXPECT_EQ(archive.size(), 45U);
        for (int i = 1; i <= 45; ++i) {
            const auto found = archive.find(at(2026, 11, 14, i));
            ASSERT_NE(found, archive.end()) << i;
            EXPECT_EQ(found->second, values(site, at(2026, 11, 14, i))) << i;
        }
    }
};

TEST_F(PatientPc, getsEverythingOfAControllerWithoutFaults) {
    run({}, quarters);
    expect_all();
    EXPECT_EQ(refused, 0);
    EXPECT_EQ(sets_taken, 45);
    EXPECT_EQ(ranges, 1);
    EXPECT_EQ(ends, std::vector<bool>{true});
}

TEST_F(PatientPc, refusesAGarbledCopyOnce) {
    for (std::uint64_t seed = 1; seed <= 30; ++seed) {
        dialogue.set_faults({.garbled_copies = 1, .seed = seed});
        accepted = false;
        ranges = refused = 0;
        dialogue.begin(newest, site); // an earlier one doesn't matter
        dialogue.begin(quarters, site);
        loop.pass(5000);
        EXPECT_EQ(refused, 1) << seed;
        EXPECT_TRUE(accepted) << seed;
        box.clear();
    }
}

TEST_F(PatientPc, refusesEachPacketOfWrongLengthOnce) {
    run({.wrong_lengths = 1}, quarters);
    expect_all();
    EXPECT_EQ(refused, 45);
}

TEST_F(PatientPc, getsTheRightPacketBehindAWrongDate) {
    run({.wrong_dates = 1}, quarters);
    expect_all();
    EXPECT_EQ(sets_taken, 45);
}

TEST_F(PatientPc, getsALongPacketAgainThatHeldAWrongDate) {
    run({.wrong_dates = 1}, four_hours);
    expect_all();
    EXPECT_GT(sets_taken, 45);
}

TEST_F(PatientPc, isLeftWaitingByAWrongDateIfItIsToldSo) {
    run({.wrong_dates = 1, .right_one_after_ms = 0}, quarters);
    EXPECT_FALSE(complete);
    EXPECT_TRUE(archive.empty());
    EXPECT_EQ(ends, std::vector<bool>{false});
}

TEST_F(PatientPc, getsAcknowledgedPacketsTwice) {
    int told = 0;
    dialogue.acknowledged = [&](const Quarter&, const Quarter&) { ++told; };
    run({.repeats = 1}, quarters);
    expect_all();
    EXPECT_EQ(sets_taken, 90);
    EXPECT_EQ(told, 45);
}

TEST_F(PatientPc, comesThroughTwoFramesInOnePiece) {
    run({.two_at_once = 1}, quarters);
    expect_all();
    EXPECT_EQ(refused, 44); // the first one came with D6 and was passed over
    EXPECT_EQ(sets_taken, 45);
}

TEST_F(PatientPc, waitsForSlowBytes) {
    run({.slow_bytes = 1}, quarters);
    expect_all();
    EXPECT_EQ(refused, 0);
}

TEST_F(PatientPc, repeatsARangeThatWasRight) {
    run({.vain_repeats = 1}, quarters);
    expect_all();
    EXPECT_EQ(ranges, 2);
}

TEST_F(PatientPc, hearsNoMoreOfAControllerThatFellSilent) {
    run({.silences = 0.1, .seed = 3}, quarters);
    EXPECT_FALSE(complete);
    EXPECT_FALSE(gone);
    EXPECT_FALSE(archive.empty());
    EXPECT_EQ(ends, std::vector<bool>{false});
}

TEST_F(PatientPc, isHungUpOnInTheMiddle) {
    run({.hang_ups = 0.1, .seed = 3}, quarters);
    EXPECT_TRUE(gone);
    EXPECT_FALSE(complete);
    EXPECT_FALSE(archive.empty());
    EXPECT_FALSE(dialogue.is_on());
}

TEST_F(PatientPc, comesThroughAllFaultsTogether) {
    run({.garbled_copies = 0.3,
         .wrong_lengths = 0.3,
         .wrong_dates = 0.3,
         .repeats = 0.3,
         .two_at_once = 0.3,
         .slow_bytes = 0.3,
         .vain_repeats = 0.3},
        quarters);
    expect_all();
}

TEST(FaultsOfADownload, areEqualForEqualSeedsAndIndependentOfEachOther) {
    const auto drawn = [](const DownloadFaults& faults) {
        Random random(faults.seed);
        std::vector<bool> lengths;
        for (int i = 0; i < 200; ++i) lengths.push_back(trouble_of(faults, random).wrong_length);
        return lengths;
    };
    const auto alone = drawn({.wrong_lengths = 0.3});
    EXPECT_EQ(drawn({.wrong_lengths = 0.3, .repeats = 0.5, .slow_bytes = 1}), alone);
    EXPECT_NE(drawn({.wrong_lengths = 0.3, .seed = 2}), alone);
}

} // namespace
} // namespace velorn::plant
