// The self-describing value of all .par files: a two-byte tag and its value.
//
//   tag  0 Empty, 1 Null: no bytes      tag  6 currency: 8 bytes, i64 scaled by 10000
//   tag  2 i16: 2 bytes                 tag  7 date: 8 bytes, f64, days since 30.12.1899
//   tag  3 i32: 4 bytes                 tag  8 string: 2-byte length, then cp1252 bytes, no terminator
//   tag  4 f32: 4, tag 5 f64: 8 bytes   tag 11 boolean: 2 bytes, 0 or FFFF hex
//
// All little-endian. The tag that was read is kept until the value changes. Comparison and arithmetic go by
// number across tags: a text counts as the number it spells (decimal comma, or a point as the only
// separator), as 0 if it spells none; Null and Empty count as 0; true counts as -1.
#pragma once

#include "runtime/failure.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace velorn {

struct Null {
    bool operator==(const Null&) const = default;
};

struct Currency {
    std::int64_t ten_thousandths = 0;
    bool operator==(const Currency&) const = default;
};

// A date of the stored kind; see runtime/calendar.h for what it means.
struct DateSerial {
    double days = 0; // since 30.12.1899 0:00
    bool operator==(const DateSerial&) const = default;
};

class Variant {
  public:
    enum class Tag : std::uint16_t {
        empty = 0,
        null = 1,
        i16 = 2,
        i32 = 3,
        f32 = 4,
        f64 = 5,
        currency = 6,
        date = 7,
        string = 8,
        boolean = 11,
    };

    Variant() = default; // Empty
    Variant(Null v) : value_(v) {}
    Variant(std::int16_t v) : value_(v) {}
    Variant(std::int32_t v) : value_(v) {}
    Variant(float v) : value_(v) {}
    Variant(double v) : value_(v) {}
    Variant(Currency v) : value_(v) {}
    Variant(DateSerial v) : value_(v) {}
    Variant(std::string v) : value_(std::move(v)) {}
    Variant(std::string_view v) : value_(std::string(v)) {}
    Variant(const char* v) : value_(std::string(v)) {}
    Variant(bool v) : value_(v) {}

    Tag tag() const;
    bool empty() const { return std::holds_alternative<std::monostate>(value_); }

    // The number that comparisons and arithmetic take. Never fails; texts that spell no number give 0, and so
    // does a NaN, which only a damaged file holds.
    double number() const;

    // Conversions that a typed variable or a control's property asks for. Rounding is half to even.
    // Errors: 13 for a text that spells no number and for Null, 6 where the number doesn't fit or isn't
    // finite, as a damaged file may have it. Empty gives 0.
    Result<double> as_f64() const;
    Result<std::int16_t> as_i16() const;
    Result<std::int32_t> as_i32() const;

    // The value as text, cp1252, German: decimal comma, dd.mm.yyyy hh:mm:ss, "Wahr" and "Falsch"; Empty and
    // Null give an empty text.
    std::string text() const;

    // Takes a text; one that is held already lends its memory.
    void set_text(std::string_view text) {
        if (auto* const held = std::get_if<std::string>(&value_))
            held->assign(text);
        else
            value_.emplace<std::string>(text);
    }

    // Calls `visitor` with the value as it is held: std::monostate for Empty, Null, a number, a text, ...
    template <class Visitor>
    decltype(auto) visit_value(Visitor&& visitor) const {
        return std::visit(std::forward<Visitor>(visitor), value_);
    }

    // Equal in tag and value: what a file keeps.
    friend bool identical(const Variant& a, const Variant& b) { return a.value_ == b.value_; }

    // By number across tags; two texts are compared as texts.
    friend bool operator==(const Variant& a, const Variant& b);
    friend std::partial_ordering operator<=>(const Variant& a, const Variant& b);

    // By number. The result takes the wider tag of the two (i16 < i32 < currency < f32 < f64; text, date and
    // Empty as f64, f64 and i16). Where it doesn't fit, i16 becomes i32 and all others f64. Errors: 11 for a
    // division by zero, 6 where an f64 overflows. Division gives f64. A Null on either side gives Null.
    friend Result<Variant> add(const Variant& a, const Variant& b);
    friend Result<Variant> subtract(const Variant& a, const Variant& b);
    friend Result<Variant> multiply(const Variant& a, const Variant& b);
    friend Result<Variant> divide(const Variant& a, const Variant& b);

  private:
    std::variant<std::monostate, Null, std::int16_t, std::int32_t, float, double, Currency, DateSerial,
                 std::string, bool>
        value_;
};

// ---- bytes ----

enum class Decoded {
    complete,    // a value was read
    cut,         // the bytes end before the value does (or before its tag)
    unknown_tag, // a tag that the format doesn't have
};

// Reads the value that begins at bytes[position] into `value` and moves position behind it. When cut, value
// is Empty and position stands at the end; with an unknown tag neither changes.
Decoded decode(std::string_view bytes, std::size_t& position, Variant& value);

// The same, but a cut value keeps what it held.
Decoded decode_over(std::string_view bytes, std::size_t& position, Variant& value);

// Appends the value's bytes. A text longer than 65535 bytes is cut there, the most that its length field
// holds.
void encode(const Variant& value, std::string& bytes);

// Plain numbers, little-endian, as they stand between Variants.
Decoded decode_i16(std::string_view bytes, std::size_t& position, std::int16_t& value);
void encode_i16(std::int16_t value, std::string& bytes);
Decoded decode_i32(std::string_view bytes, std::size_t& position, std::int32_t& value);
void encode_i32(std::int32_t value, std::string& bytes);
Decoded decode_f64(std::string_view bytes, std::size_t& position, double& value);
void encode_f64(double value, std::string& bytes);

} // namespace velorn
