// Endless text of the kind that controllers print, for measuring how fast a terminal takes it.
#pragma once

#include <cstdint>
#include <string>

namespace velorn::plant {

class Source {
  public:
    Source(std::uint64_t seed, std::uint64_t total) : seed_(seed), left_(total) {}

    bool empty() const { return left_ == 0; }
    // The next bytes, at least one line or what is left of all, at most a little above `wanted`.
    std::string next(std::size_t wanted);

  private:
    std::uint64_t seed_;
    std::uint64_t left_;
    std::uint64_t line_ = 0;
};

} // namespace velorn::plant
