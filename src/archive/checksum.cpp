#include "archive/checksum.h"

#include <new>
#include <xxhash.h>

namespace velorn {

Checksum::Checksum() : state_(XXH3_createState()) {
    if (state_ == nullptr) throw std::bad_alloc();
    XXH3_64bits_reset(state_.get());
}

void Checksum::Free::operator()(XXH3_state_s* state) const { XXH3_freeState(state); }

void Checksum::add(std::string_view bytes) { XXH3_64bits_update(state_.get(), bytes.data(), bytes.size()); }

std::uint64_t Checksum::value() const { return XXH3_64bits_digest(state_.get()); }

std::uint64_t checksum_of(std::string_view bytes, std::uint64_t seed) {
    return XXH3_64bits_withSeed(bytes.data(), bytes.size(), seed);
}

} // namespace velorn
