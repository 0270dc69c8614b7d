// A 64-bit checksum over a stream of bytes, eight at a time. Any change within one group of eight changes it
// for certain, anything else a torn or garbled file may hold but for one case in 2^64. No protection against
// intent.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace velorn {

class Checksum {
  public:
    void add(std::string_view bytes) {
        length_ += bytes.size();
        while (!bytes.empty()) {
            if (waiting_ == 0 && bytes.size() >= word) {
                take(bytes.data());
                bytes.remove_prefix(word);
                continue;
            }
            group_[waiting_++] = bytes.front();
            bytes.remove_prefix(1);
            if (waiting_ < word) continue;
            take(group_.data());
            waiting_ = 0;
        }
    }

    std::uint64_t value() const {
        Checksum last = *this;
        last.add(std::string_view("\0\0\0\0\0\0\0", (word - waiting_) % word));
        std::uint64_t h = (last.state_ ^ length_) * factor;
        h ^= h >> 32U;
        return h * factor;
    }

  private:
    static constexpr std::size_t word = 8;
    static constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U; // odd, so each step can be undone

    void take(const char* eight) {
        std::uint64_t number = 0;
        std::memcpy(&number, eight, word);
        state_ = std::rotl((state_ ^ number) * factor, 29);
    }

    std::uint64_t state_ = 0x8F1BBCDC6ED9EBA1U;
    std::uint64_t length_ = 0;
    std::array<char, word> group_{};
    std::size_t waiting_ = 0;
};

inline std::uint64_t checksum_of(std::string_view bytes) {
    Checksum sum;
    sum.add(bytes);
    return sum.value();
}

} // namespace velorn
