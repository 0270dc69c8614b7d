#include "runtime/variant.h"

#include <algorithm>
#include <bit>
#include <type_traits>

namespace velorn {

namespace {

template <class Number>
void put(Number number, std::string& bytes) {
    using Bits = std::make_unsigned_t<Number>;
    const auto bits = static_cast<Bits>(number);
    char little[sizeof bits];
    for (std::size_t i = 0; i < sizeof bits; ++i) little[i] = static_cast<char>((bits >> (8U * i)) & 0xFFU);
    bytes.append(little, sizeof little);
}

template <class Number>
Number get(std::string_view bytes) {
    using Bits = std::make_unsigned_t<Number>;
    Bits bits = 0;
    for (std::size_t i = sizeof bits; i-- > 0;) {
        bits = static_cast<Bits>((bits << 8U) | static_cast<unsigned char>(bytes[i]));
    }
    return static_cast<Number>(bits);
}

// Bytes of a value of the tag, its length field for a string; -1 for a tag that the format doesn't have.
int size_of(Variant::Tag tag) {
    switch (tag) {
    case Variant::Tag::empty:
    case Variant::Tag::null: return 0;
    case Variant::Tag::i16:
    case Variant::Tag::boolean:
    case Variant::Tag::string: return 2;
    case Variant::Tag::i32:
    case Variant::Tag::f32: return 4;
    case Variant::Tag::f64:
    case Variant::Tag::currency:
    case Variant::Tag::date: return 8;
    }
    return -1;
}

Decoded cut(std::string_view bytes, std::size_t& position) {
    position = bytes.size();
    return Decoded::cut;
}

} // namespace

Decoded decode(std::string_view bytes, std::size_t& position, Variant& value) {
    const Decoded decoded = decode_over(bytes, position, value);
    if (decoded == Decoded::cut) value = Variant();
    return decoded;
}

Decoded decode_over(std::string_view bytes, std::size_t& position, Variant& value) {
    const std::string_view rest = bytes.substr(std::min(position, bytes.size()));
    if (rest.size() < 2) return cut(bytes, position);
    const auto tag = static_cast<Variant::Tag>(get<std::uint16_t>(rest));
    const int size = size_of(tag);
    if (size < 0) return Decoded::unknown_tag;
    const std::string_view body = rest.substr(2);
    if (body.size() < static_cast<std::size_t>(size)) return cut(bytes, position);

    std::size_t used = 2 + static_cast<std::size_t>(size);
    switch (tag) {
    case Variant::Tag::empty: value = Variant(); break;
    case Variant::Tag::null: value = Null{}; break;
    case Variant::Tag::i16: value = get<std::int16_t>(body); break;
    case Variant::Tag::i32: value = get<std::int32_t>(body); break;
    case Variant::Tag::f32: value = std::bit_cast<float>(get<std::uint32_t>(body)); break;
    case Variant::Tag::f64: value = std::bit_cast<double>(get<std::uint64_t>(body)); break;
    case Variant::Tag::currency: value = Currency{get<std::int64_t>(body)}; break;
    case Variant::Tag::date: value = DateSerial{std::bit_cast<double>(get<std::uint64_t>(body))}; break;
    case Variant::Tag::boolean: value = get<std::uint16_t>(body) != 0; break;
    case Variant::Tag::string: {
        const std::size_t length = get<std::uint16_t>(body);
        if (body.size() < 2 + length) return cut(bytes, position);
        value.set_text(body.substr(2, length));
        used += length;
        break;
    }
    }
    position += used;
    return Decoded::complete;
}

void encode(const Variant& value, std::string& bytes) {
    const auto tag = static_cast<std::uint16_t>(value.tag());
    value.visit_value([&bytes, tag](const auto& held) {
        using T = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<T, std::string>) {
            const std::size_t length = std::min<std::size_t>(held.size(), 0xFFFF);
            put(tag | (static_cast<std::uint32_t>(length) << 16U), bytes);
            bytes.append(held, 0, length);
            return;
        }
        put(tag, bytes);
        if constexpr (std::is_same_v<T, std::int16_t> || std::is_same_v<T, std::int32_t>) {
            put(held, bytes);
        } else if constexpr (std::is_same_v<T, float>) {
            put(std::bit_cast<std::uint32_t>(held), bytes);
        } else if constexpr (std::is_same_v<T, double>) {
            put(std::bit_cast<std::uint64_t>(held), bytes);
        } else if constexpr (std::is_same_v<T, Currency>) {
            put(held.ten_thousandths, bytes);
        } else if constexpr (std::is_same_v<T, DateSerial>) {
            put(std::bit_cast<std::uint64_t>(held.days), bytes);
        } else if constexpr (std::is_same_v<T, bool>) {
            put(static_cast<std::uint16_t>(held ? 0xFFFF : 0), bytes);
        }
    });
}

namespace {

// A cut number stays as it was.
template <class Number>
Decoded decode_number(std::string_view bytes, std::size_t& position, Number& value) {
    const std::string_view rest = bytes.substr(std::min(position, bytes.size()));
    if (rest.size() < sizeof value) {
        position = bytes.size();
        return Decoded::cut;
    }
    value = get<Number>(rest);
    position += sizeof value;
    return Decoded::complete;
}

} // namespace

Decoded decode_i16(std::string_view bytes, std::size_t& position, std::int16_t& value) {
    return decode_number(bytes, position, value);
}

void encode_i16(std::int16_t value, std::string& bytes) { put(value, bytes); }

Decoded decode_i32(std::string_view bytes, std::size_t& position, std::int32_t& value) {
    return decode_number(bytes, position, value);
}

void encode_i32(std::int32_t value, std::string& bytes) { put(value, bytes); }

Decoded decode_f64(std::string_view bytes, std::size_t& position, double& value) {
    auto bits = std::bit_cast<std::int64_t>(value);
    const Decoded decoded = decode_number(bytes, position, bits);
    value = std::bit_cast<double>(bits);
    return decoded;
}

void encode_f64(double value, std::string& bytes) { put(std::bit_cast<std::uint64_t>(value), bytes); }

} // namespace velorn
