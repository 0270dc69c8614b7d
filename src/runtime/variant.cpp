#include "runtime/variant.h"

#include "runtime/calendar.h"
#include "runtime/number_picture.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace velorn {

namespace {

template <class... F>
struct Overloaded : F... {
    using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

// By index of the value inside a Variant.
constexpr Variant::Tag tags[] = {
    Variant::Tag::empty,  Variant::Tag::null,    Variant::Tag::i16,      Variant::Tag::i32,
    Variant::Tag::f32,    Variant::Tag::f64,     Variant::Tag::currency, Variant::Tag::date,
    Variant::Tag::string, Variant::Tag::boolean,
};

// The tag that a result of arithmetic begins with.
Variant::Tag numeric_tag(const Variant& value) {
    switch (value.tag()) {
    case Variant::Tag::empty:
    case Variant::Tag::boolean: return Variant::Tag::i16;
    case Variant::Tag::string:
    case Variant::Tag::date: return Variant::Tag::f64;
    default: return value.tag();
    }
}

double held_number(const Variant& value) {
    return value.visit_value(Overloaded{
        [](std::monostate) { return 0.0; },
        [](Null) { return 0.0; },
        [](Currency v) { return static_cast<double>(v.ten_thousandths) / 10'000; },
        [](DateSerial v) { return v.days; },
        [](const std::string& v) { return number_of(v).value_or(0.0); },
        [](bool v) { return v ? -1.0 : 0.0; },
        [](auto v) { return static_cast<double>(v); },
    });
}

int width(Variant::Tag tag) {
    constexpr Variant::Tag order[] = {Variant::Tag::i16, Variant::Tag::i32, Variant::Tag::currency,
                                      Variant::Tag::f32, Variant::Tag::f64};
    return static_cast<int>(std::ranges::find(order, tag) - std::begin(order));
}

template <class Integer>
bool fits(double number) {
    return number >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
           number <= static_cast<double>(std::numeric_limits<Integer>::max());
}

constexpr double most_currency = 922'337'203'685'477.0;

Result<Variant> as_tag(double number, Variant::Tag tag) {
    if (std::isnan(number) || std::isinf(number)) return failure(RunTimeError::overflow);
    if (tag == Variant::Tag::i16 && fits<std::int16_t>(number))
        return Variant(static_cast<std::int16_t>(number));
    if (width(tag) <= 1 && fits<std::int32_t>(number)) return Variant(static_cast<std::int32_t>(number));
    if (tag == Variant::Tag::currency && std::fabs(number) <= most_currency) {
        return Variant(Currency{static_cast<std::int64_t>(round_to_even(number * 10'000))});
    }
    if (tag == Variant::Tag::f32 &&
        std::fabs(number) <= static_cast<double>(std::numeric_limits<float>::max())) {
        return Variant(static_cast<float>(number));
    }
    return Variant(number);
}

template <class Operation>
Result<Variant> arithmetic(const Variant& a, const Variant& b, Operation operation) {
    if (a.tag() == Variant::Tag::null || b.tag() == Variant::Tag::null) return Variant(Null{});
    const Variant::Tag x = numeric_tag(a);
    const Variant::Tag y = numeric_tag(b);
    return as_tag(operation(a.number(), b.number()), width(x) < width(y) ? y : x);
}

template <class Integer>
Result<Integer> as_integer(const Variant& value) {
    const Result<double> number = value.as_f64();
    if (!number) return number.failure();
    const double rounded = round_to_even(*number);
    if (!fits<Integer>(rounded)) return failure(RunTimeError::overflow);
    return static_cast<Integer>(rounded);
}

} // namespace

Variant::Tag Variant::tag() const { return tags[value_.index()]; }

double Variant::number() const {
    const double held = held_number(*this);
    return std::isnan(held) ? 0.0 : held;
}

Result<double> Variant::as_f64() const {
    if (tag() == Tag::null) return failure(RunTimeError::type_mismatch);
    if (const auto* text = std::get_if<std::string>(&value_); text != nullptr && !number_of(*text)) {
        return failure(RunTimeError::type_mismatch);
    }
    const double held = held_number(*this);
    if (!std::isfinite(held)) return failure(RunTimeError::overflow);
    return held;
}

Result<std::int16_t> Variant::as_i16() const { return as_integer<std::int16_t>(*this); }
Result<std::int32_t> Variant::as_i32() const { return as_integer<std::int32_t>(*this); }

std::string Variant::text() const {
    return std::visit(
        Overloaded{
            [](std::monostate) { return std::string(); },
            [](Null) { return std::string(); },
            [](Currency v) { return number_text(static_cast<double>(v.ten_thousandths) / 10'000); },
            [](DateSerial v) {
                const Result<DateTime> moment = date_time_of(v);
                return moment ? date_and_time_text(*moment) : number_text(v.days);
            },
            [](const std::string& v) { return v; },
            [](bool v) { return std::string(v ? "Wahr" : "Falsch"); },
            [](float v) { return number_text(v); },
            [](double v) { return number_text(v); },
            [](auto v) { return std::to_string(v); },
        },
        value_);
}

bool operator==(const Variant& a, const Variant& b) { return (a <=> b) == 0; }

std::partial_ordering operator<=>(const Variant& a, const Variant& b) {
    if (a.tag() == Variant::Tag::string && b.tag() == Variant::Tag::string) {
        return std::get<std::string>(a.value_) <=> std::get<std::string>(b.value_);
    }
    return a.number() <=> b.number();
}

Result<Variant> add(const Variant& a, const Variant& b) {
    return arithmetic(a, b, [](double x, double y) { return x + y; });
}

Result<Variant> subtract(const Variant& a, const Variant& b) {
    return arithmetic(a, b, [](double x, double y) { return x - y; });
}

Result<Variant> multiply(const Variant& a, const Variant& b) {
    return arithmetic(a, b, [](double x, double y) { return x * y; });
}

Result<Variant> divide(const Variant& a, const Variant& b) {
    if (a.tag() == Variant::Tag::null || b.tag() == Variant::Tag::null) return Variant(Null{});
    if (b.number() == 0) return failure(RunTimeError::division_by_zero);
    return as_tag(a.number() / b.number(), Variant::Tag::f64);
}

} // namespace velorn
