// Traffic as a controller's display sends it, the same every time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velorn::bench {

class Random {
  public:
    unsigned below(unsigned limit) {
        state_ ^= state_ << 13U;
        state_ ^= state_ >> 17U;
        state_ ^= state_ << 5U;
        return state_ % limit;
    }

  private:
    unsigned state_ = 2463534242U;
};

inline void add_text(std::string& stream, Random& random) {
    static constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz0123456   ";
    const unsigned length = random.below(60) + 4;
    for (unsigned i = 0; i < length; ++i)
        stream += letters[random.below(static_cast<unsigned>(letters.size()))];
}

// Of sixteen pieces four move the cursor, two change inverse, one red, one clears a row or the screen, eight
// are text, half of it with a line end.
inline std::string controller_stream(std::size_t size) {
    Random random;
    std::string stream;
    stream.reserve(size + 100);
    while (stream.size() < size) {
        const unsigned piece = random.below(16);
        if (piece < 4) {
            stream += "\x1bY";
            stream += static_cast<char>(32 + random.below(24));
            stream += static_cast<char>(32 + random.below(80));
        } else if (piece < 6) {
            stream += random.below(2) != 0 ? "\x1bG4" : "\x1bG0";
        } else if (piece < 7) {
            stream += random.below(2) != 0 ? "\x1b\x1fm" : "\x1b\x1em";
        } else if (piece < 8) {
            stream += random.below(32) == 0 ? "\x1a" : "\x1bT";
        } else {
            add_text(stream, random);
            if (piece % 2 != 0) stream += '\r';
        }
    }
    return stream;
}

} // namespace velorn::bench
