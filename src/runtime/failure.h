// What can go wrong in the field, as values.
//
// A failed operation returns a Failure: the number and the German text of a run-time error. One table
// (failure.cpp) holds the texts. A Result<T> is a T or a Failure and must be looked at. Exceptions are for
// broken invariants of our own only.
#pragma once

#include <cassert>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace velorn {

enum class RunTimeError : int {
    invalid_call = 5,
    overflow = 6,
    subscript_out_of_range = 9,
    division_by_zero = 11,
    type_mismatch = 13,
    file_not_found = 53,
    file_already_open = 55,
    device_io = 57,
    disk_full = 61,
    past_end_of_file = 62,
    permission_denied = 70,
    path_file_access = 75,
    path_not_found = 76,
    invalid_property = 380,
    invalid_port = 8002,
    port_already_open = 8005,
    dialog_cancelled = 32755,
};

struct Failure {
    int number = 0;   // the number of a RunTimeError
    std::string text; // German, cp1252, ready for a message box

    bool is(RunTimeError error) const { return number == static_cast<int>(error); }
};

// The German text of an error, cp1252.
std::string_view error_text(RunTimeError error);

// A failure with its text from the table; a detail (cp1252) follows behind a colon and a blank.
Failure failure(RunTimeError error, std::string_view detail = {});

template <class T>
class [[nodiscard]] Result {
  public:
    Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
    Result(Failure what) : content_(std::in_place_index<1>, std::move(what)) {}

    bool ok() const { return content_.index() == 0; }
    explicit operator bool() const { return ok(); }

    const T& value() const& { return std::get<0>(content_); }
    T& value() & { return std::get<0>(content_); }
    T&& value() && { return std::get<0>(std::move(content_)); }
    const T& operator*() const& { return value(); }
    T& operator*() & { return value(); }
    T&& operator*() && { return std::move(*this).value(); }
    const T* operator->() const { return &value(); }
    T* operator->() { return &value(); }

    const Failure& failure() const { return std::get<1>(content_); }

  private:
    std::variant<T, Failure> content_;
};

// Success without a value, or a Failure.
template <>
class [[nodiscard]] Result<void> {
  public:
    Result() = default;
    Result(Failure what) : failure_(std::move(what)), ok_(false) {}

    bool ok() const { return ok_; }
    explicit operator bool() const { return ok_; }

    const Failure& failure() const {
        assert(!ok_);
        return failure_;
    }

  private:
    Failure failure_;
    bool ok_ = true;
};

using Outcome = Result<void>;

} // namespace velorn
