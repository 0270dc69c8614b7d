#include "plant/faults.h"

#include <algorithm>
#include <string>

namespace velorn::plant {

Line::Line(EventLoop& loop, const Faults& faults)
    : loop_(loop),
      faults_(faults),
      troubled_(faults.any()),
      outward_{Random(spread(faults.seed)), &Line::at_outside, {}, {}, 0, {}},
      inward_{Random(spread(faults.seed + 1)), &Line::at_controller, {}, {}, 0, {}} {}

Line::~Line() {
    loop_.cancel(outward_.next);
    loop_.cancel(inward_.next);
    loop_.cancel(hang_up_);
}

void Line::put(Direction& direction, std::string_view bytes) {
    if (dead_) return;
    if (!troubled_) {
        direction.untroubled += bytes;
        expect(direction);
        return;
    }
    for (const char byte : bytes) {
        // Each byte draws the same number of times, whatever is switched on: one switch doesn't shift
        // another's trouble.
        const bool dropped = direction.random.unit() < faults_.drop;
        const bool repeated = direction.random.unit() < faults_.repeat;
        const bool garbled = direction.random.unit() < faults_.garble;
        const auto other_bits = static_cast<unsigned char>(1 + direction.random.below(255));

        if (swallowed()) {
            if (dead_) break;
            continue;
        }
        if (dropped) continue;
        const char arriving =
            garbled ? static_cast<char>(static_cast<unsigned char>(byte) ^ other_bits) : byte;
        travel(direction, arriving);
        if (repeated) travel(direction, arriving);
    }
    expect(direction);
    if (dead_) hang_up();
}

// Counts a byte, and says whether silence or the hang-up takes it.
bool Line::swallowed() {
    if (faults_.hang_up_after && carried_ >= *faults_.hang_up_after) {
        dead_ = true;
        return true;
    }
    if (faults_.silent_after && carried_ >= *faults_.silent_after) {
        if (!silent_since_ms_) silent_since_ms_ = loop_.now_ms();
        const bool for_good = faults_.silent_for_ms == 0;
        if (for_good || loop_.now_ms() < *silent_since_ms_ + faults_.silent_for_ms) return true;
    }
    ++carried_;
    return false;
}

// What is already on the way still arrives.
void Line::hang_up() {
    std::int64_t last_us = 0;
    for (const Direction* direction : {&outward_, &inward_}) {
        if (!direction->queue.empty()) last_us = std::max(last_us, direction->queue.back().due_us);
    }
    hang_up_ = loop_.post_at((last_us + 999) / 1000, [this] {
        for (Direction* direction : {&outward_, &inward_}) {
            loop_.cancel(direction->next);
            deliver(*direction);
        }
        if (hung_up) hung_up();
    });
}

void Line::travel(Direction& direction, char byte) {
    const std::int64_t now_us = loop_.now_ms() * 1000;
    direction.free_us = std::max(direction.free_us, now_us);
    if (faults_.bytes_per_second > 0) direction.free_us += 1'000'000 / faults_.bytes_per_second;
    direction.queue.push_back({direction.free_us + faults_.delay_ms * 1000, byte});
}

void Line::expect(Direction& direction) {
    if (direction.expected || (direction.queue.empty() && direction.untroubled.empty())) return;
    direction.expected = true;
    const std::int64_t due_ms = troubled_ ? (direction.queue.front().due_us + 999) / 1000 : loop_.now_ms();
    direction.next = loop_.post_at(due_ms, [this, &direction] { deliver(direction); });
}

void Line::deliver(Direction& direction) {
    direction.expected = false;
    std::string arrived;
    arrived.swap(direction.untroubled);
    const std::int64_t now_us = loop_.now_ms() * 1000;
    while (!direction.queue.empty() && direction.queue.front().due_us <= now_us) {
        arrived += direction.queue.front().byte;
        direction.queue.pop_front();
    }
    expect(direction);
    const Receiver& receiver = this->*direction.receiver;
    if (receiver && !arrived.empty()) receiver(arrived);
}

} // namespace velorn::plant
