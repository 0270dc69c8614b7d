#include "phonebook/phonebook_files.h"

#include <algorithm>
#include <array>
#include <optional>

namespace velorn {

namespace {

constexpr std::array<char, 18> zeros{};
constexpr std::string_view nine_empty{zeros.data(), zeros.size()};

// Takes value after value; after the first that can't be taken none is any more.
class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    void operator()(Variant& value) {
        if (!end_) take(decode_over(bytes_, position_, value));
    }
    // Mostly nothing but Empty values, which are nothing but zeros.
    void operator()(std::array<Variant, 9>& values) {
        if (!end_ && bytes_.substr(position_).starts_with(nine_empty)) {
            position_ += nine_empty.size();
            for (Variant& value : values) {
                if (!value.empty()) value = Variant();
            }
            return;
        }
        for (Variant& value : values) (*this)(value);
    }
    void operator()(std::int16_t& value) {
        if (!end_) take(decode_i16(bytes_, position_, value));
    }
    void operator()(std::int32_t& value) {
        if (!end_) take(decode_i32(bytes_, position_, value));
    }
    void operator()(double& value) {
        if (!end_) take(decode_f64(bytes_, position_, value));
    }
    bool met_unknown_tag() const { return end_ == Decoded::unknown_tag; }

  private:
    void take(Decoded decoded) {
        if (decoded != Decoded::complete) end_ = decoded;
    }

    std::string_view bytes_;
    std::size_t position_ = 0;
    std::optional<Decoded> end_;
};

struct Writer {
    std::string& bytes;

    void operator()(const Variant& value) const { encode(value, bytes); }
    void operator()(const std::array<Variant, 9>& values) const {
        if (std::ranges::all_of(values, &Variant::empty))
            bytes += nine_empty;
        else
            for (const Variant& value : values) encode(value, bytes);
    }
    void operator()(std::int16_t value) const { encode_i16(value, bytes); }
    void operator()(std::int32_t value) const { encode_i32(value, bytes); }
    void operator()(double value) const { encode_f64(value, bytes); }
};

// The ten fields that both layouts begin with, in file order.
template <class Entry, class Each>
void common_fields(Entry& entry, Each&& each) {
    each(entry.pos);
    each(entry.name);
    each(entry.nummer);
    each(entry.visdatei);
    each(entry.protdatei);
    each(entry.bemerkung);
    each(entry.autoflag);
    each(entry.reserve1);
    each(entry.reserve2);
    each(entry.datum);
}

// All fields of both tables, in file order.
template <class Book, class Each>
void all_fields(Book& book, Each&& each) {
    for (auto& entry : book.altbuch) common_fields(entry, each);
    for (auto& entry : book.telefonbuch) {
        common_fields(entry, each);
        each(entry.viertdatei);
        each(entry.aufnahme);
        each(entry.reserviert1_9);
    }
}

Result<std::string> content(Files& files, const std::string& path) {
    if (const Outcome there = ensure_exists(files, path); !there) return there.failure();
    return read_whole(files, path);
}

} // namespace

bool decode_telefonbuch(std::string_view bytes, Telefonbuch& book) {
    Reader reader(bytes);
    all_fields(book, reader);
    return !reader.met_unknown_tag();
}

std::string encode_telefonbuch(const Telefonbuch& book) {
    constexpr std::size_t usual_size = 1024 * 1024; // of a full book
    std::string bytes;
    bytes.reserve(usual_size);
    all_fields(book, Writer{bytes});
    return bytes;
}

void PhonebookFiles::read_telefonbuch() {
    const std::string path = settings_.telefonpfad.text();
    const Result<std::string> bytes = content(files_, path);
    not_understood_ = bytes && decode_telefonbuch(*bytes, book_) ? std::string() : path;
}

void PhonebookFiles::read_dispaufnahmen() {
    const Result<std::string> bytes = content(files_, settings_.dispaufpfad.text());
    if (!bytes) return;
    Reader reader(*bytes);
    for (Variant& value : book_.dispaufnahmen) reader(value);
}

void PhonebookFiles::save_telefonbuch() {
    const std::string path = settings_.telefonpfad.text();
    if (path == not_understood_) {
        const Result<std::string> old = read_whole(files_, path);
        if (!old && !old.failure().is(RunTimeError::file_not_found)) return;
        if (old && !old->empty() && !replace_content(files_, path + ".alt", *old)) return;
    }
    if (replace_content(files_, path, encode_telefonbuch(book_))) not_understood_.clear();
}

void PhonebookFiles::save_dispaufnahmen() {
    std::string bytes;
    for (const Variant& value : book_.dispaufnahmen) encode(value, bytes);
    (void)replace_content(files_, settings_.dispaufpfad.text(), bytes);
}

} // namespace velorn
