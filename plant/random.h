// Chance that comes out the same on every machine. A generator for what happens in sequence, and a hash for
// what must be a pure function of seed and place.
#pragma once

#include <cstdint>

namespace velorn::plant {

// Spreads the bits of a number over all 64.
constexpr std::uint64_t spread(std::uint64_t x) {
    x += 0x9E3779B97F4A7C15U;
    x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9U;
    x = (x ^ (x >> 27U)) * 0x94D049BB133111EBU;
    return x ^ (x >> 31U);
}

// 0 to below 1.
constexpr double unit_of(std::uint64_t bits) { return static_cast<double>(bits >> 11U) * 0x1.0p-53; }

// 0 to below 1, the same for the same seed and place.
constexpr double chance_at(std::uint64_t seed, std::uint64_t place) {
    return unit_of(spread(seed ^ spread(place)));
}

class Random {
  public:
    explicit constexpr Random(std::uint64_t seed) : state_(spread(seed)) {}

    constexpr std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15U;
        return spread(state_);
    }
    constexpr double unit() { return unit_of(next()); }
    // 0 to limit - 1; limit above 0.
    constexpr std::uint64_t below(std::uint64_t limit) { return next() % limit; }

  private:
    std::uint64_t state_;
};

} // namespace velorn::plant
