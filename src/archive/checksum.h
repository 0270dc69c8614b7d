// The 64-bit checksum XXH3 of a whole or of a stream of bytes. It tells a torn or garbled file from a good
// one, with one mistake in 2^64, and is no protection against intent.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

struct XXH3_state_s;

namespace velorn {

class Checksum {
  public:
    Checksum();

    void add(std::string_view bytes);
    // Of all that was added up to now.
    std::uint64_t value() const;

  private:
    struct Free {
        void operator()(XXH3_state_s* state) const;
    };
    std::unique_ptr<XXH3_state_s, Free> state_;
};

// Equal bytes under another seed have another checksum.
std::uint64_t checksum_of(std::string_view bytes, std::uint64_t seed = 0);

} // namespace velorn
