// Plain numbers in the files beside an archive, little-endian.
#pragma once

#include <bit>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace velorn {

static_assert(std::endian::native == std::endian::little);

template <class Number>
std::string bytes_of(Number number) {
    std::string bytes(sizeof number, '\0');
    std::memcpy(bytes.data(), &number, sizeof number);
    return bytes;
}

// Moves `position` behind the number. 0 where the bytes end before it does.
template <class Number>
Number take_number(std::string_view bytes, std::size_t& position) {
    Number number{};
    const std::size_t begin = position;
    position += sizeof number;
    if (begin <= bytes.size() && bytes.size() - begin >= sizeof number)
        std::memcpy(&number, bytes.data() + begin, sizeof number);
    return number;
}

} // namespace velorn
