// A controller's side of a download, and the PC's hand at it: what the tests of the dialogue, of its faults
// and of the controllers that have it share.
#pragma once

#include "plant/download_dialogue.h"
#include "runtime/virtual_event_loop.h"

#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::plant {

inline const std::string esc2 = "\x1b\x1b";

inline Quarter at(int year, int month, int day, int number = 1) {
    return {days_from_civil(year, month, day), number};
}

inline std::string head_of(const Quarter& when) {
    const DateTime d = date_of(when);
    char text[16];
    std::snprintf(text, sizeof text, "%02d%02d%02d%02d", d.day, d.month, d.year % 100, when.number);
    return text;
}

// A controller's clock that stands at 14.11.2026 11:28; 45 quarters are complete.
struct ADownload : testing::Test {
    VirtualEventLoop loop{{2026, 11, 14, 11, 28, 0, 0}};
    Recording site{101, 3};
    DownloadDialogue dialogue{loop};
    std::vector<std::string> pieces; // as they were sent
    std::vector<bool> ends;          // by the PC or not

    ADownload() {
        dialogue.send = [this](std::string_view bytes) { pieces.emplace_back(bytes); };
        dialogue.ended = [this](bool by_pc) { ends.push_back(by_pc); };
    }
    // What comes back within a second (or the time given).
    std::string says_to(std::string_view bytes, std::int64_t within_ms = 1000) {
        pieces.clear();
        dialogue.receive(bytes);
        loop.pass(within_ms);
        std::string all;
        for (const std::string& piece : pieces) all += piece;
        return all;
    }
    std::string begins(DownloadDialogue::Kind kind) {
        dialogue.begin(kind, site);
        return says_to("", 2000);
    }
    std::string set_text(const Quarter& when) const { return head_of(when) + values(site, when); }
    std::string set_frame(const Quarter& when) const { return set_text(when) + esc2 + "D5"; }
};

inline constexpr auto quarters = DownloadDialogue::Kind::quarters;
inline constexpr auto four_hours = DownloadDialogue::Kind::four_hours;
inline constexpr auto newest = DownloadDialogue::Kind::newest;

inline constexpr std::string_view today = "14141111202620261414111120262026";

} // namespace velorn::plant
