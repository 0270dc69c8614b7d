// Any bytes as a settings file: they are read as one value behind the other. What was read complete must be
// written as the same bytes, and no value may upset the conversions, comparisons and sums made with it.
#include "runtime/number_picture.h"
#include "runtime/variant.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using namespace velorn;

void demand(bool holds) {
    if (!holds) std::abort();
}

// The file knows two booleans; another one reads as true and is written as true.
std::string as_written(std::string_view read, const Variant& value) {
    std::string bytes{read};
    if (value.tag() == Variant::Tag::boolean && value.number() != 0) bytes.replace(2, 2, "\xFF\xFF");
    return bytes;
}

void use(const Variant& value, const Variant& before) {
    const std::string text = value.text();
    demand(value.tag() != Variant::Tag::string || value.number() == number_of(text).value_or(0.0));
    (void)value.as_f64();
    (void)value.as_i16();
    (void)value.as_i32();
    (void)val(text);
    (void)format(value.number(), "########0.00");
    (void)format(static_cast<float>(std::clamp(value.number(), -3e38, 3e38)), "#0.0##");

    demand((value == before) == (before == value));
    demand((value < before) == (before > value));
    for (const Result<Variant>& result :
         {add(value, before), subtract(value, before), multiply(value, before), divide(value, before),
          subtract(before, value), divide(before, value)}) {
        demand(result ? std::isfinite(result->number()) : !result.failure().text.empty());
        if (result) (void)result->text();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    Variant before;
    for (std::size_t position = 0; position < bytes.size();) {
        const std::size_t start = position;
        Variant value;
        const Decoded decoded = decode(bytes, position, value);
        if (decoded == Decoded::unknown_tag) {
            demand(position == start && value.empty());
            return 0;
        }
        demand(position > start && position <= bytes.size());
        if (decoded == Decoded::cut) {
            demand(position == bytes.size() && value.empty());
            return 0;
        }
        std::string written;
        encode(value, written);
        demand(written == as_written(bytes.substr(start, position - start), value));
        use(value, before);
        before = value;
    }
    return 0;
}
