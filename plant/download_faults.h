// Trouble that a controller makes in a download by itself, beyond its line's. Each share is a probability
// from 0 to 1 and works alone: for each frame the same number of draws is taken from the seed, whatever is
// switched on. Only the first sending of a frame is troubled, so that a patient PC comes through, even where
// a share is 1; silence and hang-up end the download.
#pragma once

#include "plant/random.h"

#include <cstdint>

namespace velorn::plant {

struct DownloadFaults {
    double garbled_copies = 0; // of initialisation frames: one of two copies has another character
    double wrong_lengths = 0;  // of packets: some bytes too few or too many
    double wrong_dates = 0;    // of packets: a data set has an impossible date; the right packet follows
    double repeats = 0;        // of packets: it comes again though it was acknowledged
    double two_at_once = 0;    // of packets and D6: the frame that is next comes in the same piece
    double slow_bytes = 0;     // of frames: up to four pauses within, of up to 2 s each
    double silences = 0;       // of frames: it breaks off, and nothing more comes
    double hang_ups = 0;       // of frames: it breaks off, and the controller hangs up
    double vain_repeats = 0;   // of time ranges: D7 though it was right
    // After which silence of the PC the right frame follows one that may get no answer (wrong date, two at
    // once); 0: it never does, and the PC gives up.
    std::int64_t right_one_after_ms = 5000;
    std::uint64_t seed = 1;
};

// What was drawn for one frame.
struct FrameTrouble {
    bool garbled_copy = false;
    bool wrong_length = false;
    bool wrong_date = false;
    bool repeat = false;
    bool two_at_once = false;
    bool slow = false;
    bool silence = false;
    bool hang_up = false;
    bool vain_repeat = false;
    std::uint64_t where = 0; // any number: the place within the frame

    // What remains of it for a frame that isn't a packet, and neither D6.
    FrameTrouble within(bool packet, bool accepted) const {
        FrameTrouble t = *this;
        t.wrong_length &= packet;
        t.wrong_date &= packet;
        t.repeat &= packet;
        t.two_at_once &= packet || accepted;
        return t;
    }
};

inline FrameTrouble trouble_of(const DownloadFaults& faults, Random& random) {
    FrameTrouble t;
    t.garbled_copy = random.unit() < faults.garbled_copies;
    t.wrong_length = random.unit() < faults.wrong_lengths;
    t.wrong_date = random.unit() < faults.wrong_dates;
    t.repeat = random.unit() < faults.repeats;
    t.two_at_once = random.unit() < faults.two_at_once;
    t.slow = random.unit() < faults.slow_bytes;
    t.silence = random.unit() < faults.silences;
    t.hang_up = random.unit() < faults.hang_ups;
    t.vain_repeat = random.unit() < faults.vain_repeats;
    t.where = random.next();
    return t;
}

} // namespace velorn::plant
