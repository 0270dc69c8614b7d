// The phone book's bytes, laid down a second time and without the program's own writers: field after field,
// little-endian, each value with its tag.
#pragma once

#include "core/telefonbuch.h"

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <type_traits>
#include <vector>

namespace velorn::test {

inline std::string hex(std::initializer_list<int> bytes) {
    std::string all;
    for (const int byte : bytes) all += static_cast<char>(byte);
    return all;
}

inline std::string little(std::uint64_t number, int bytes) {
    std::string all;
    for (int i = 0; i < bytes; ++i) all += static_cast<char>((number >> (8 * i)) & 0xFF);
    return all;
}

inline std::string little_f64(double number) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return little(bits, 8);
}

// What the tests put into a book: nothing, texts, small whole numbers.
inline std::string tagged(const Variant& value) {
    return value.visit_value([](const auto& held) -> std::string {
        using T = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<T, std::string>)
            return hex({8, 0}) + little(held.size(), 2) + held;
        else if constexpr (std::is_same_v<T, std::int16_t>)
            return hex({2, 0}) + little(static_cast<std::uint64_t>(held), 2);
        else if constexpr (std::is_same_v<T, std::int32_t>)
            return hex({3, 0}) + little(static_cast<std::uint64_t>(held), 4);
        else if constexpr (std::is_same_v<T, std::monostate>)
            return hex({0, 0});
        else
            throw std::logic_error("not one of the kinds that these tests use");
    });
}

// Each field's bytes, in file order.
template <class Entry>
std::vector<std::string> fields_of(const Entry& entry) {
    std::vector<std::string> fields{
        little(static_cast<std::uint64_t>(entry.pos), 2),
        tagged(entry.name),
        tagged(entry.nummer),
        tagged(entry.visdatei),
        tagged(entry.protdatei),
        tagged(entry.bemerkung),
        little(static_cast<std::uint64_t>(entry.autoflag), 2),
        little(static_cast<std::uint64_t>(entry.reserve1), 4),
        little(static_cast<std::uint64_t>(entry.reserve2), 4),
        little_f64(entry.datum),
    };
    if constexpr (std::is_same_v<Entry, PhoneEntry>) {
        fields.push_back(tagged(entry.viertdatei));
        fields.push_back(tagged(entry.aufnahme));
        for (const Variant& value : entry.reserviert1_9) fields.push_back(tagged(value));
    }
    return fields;
}

template <class Entry>
std::string record(const Entry& entry) {
    std::string bytes;
    for (const std::string& field : fields_of(entry)) bytes += field;
    return bytes;
}

inline std::string file_of(const Telefonbuch& book) {
    std::string bytes;
    for (const PhoneEntryOld& entry : book.altbuch) bytes += record(entry);
    for (const PhoneEntry& entry : book.telefonbuch) bytes += record(entry);
    return bytes;
}

// In the fields that move with an entry: all but the reserved values.
template <class Entry>
bool same_but_for_reserved(const Entry& a, const Entry& b) {
    const bool same = a.pos == b.pos && a.autoflag == b.autoflag && a.reserve1 == b.reserve1 &&
                      a.reserve2 == b.reserve2 && a.datum == b.datum && identical(a.name, b.name) &&
                      identical(a.nummer, b.nummer) && identical(a.visdatei, b.visdatei) &&
                      identical(a.protdatei, b.protdatei) && identical(a.bemerkung, b.bemerkung);
    if constexpr (std::is_same_v<Entry, PhoneEntry>)
        return same && identical(a.viertdatei, b.viertdatei) && identical(a.aufnahme, b.aufnahme);
    return same;
}

inline bool same_reserved(const PhoneEntry& a, const PhoneEntry& b) {
    for (std::size_t i = 0; i < a.reserviert1_9.size(); ++i) {
        if (!identical(a.reserviert1_9[i], b.reserviert1_9[i])) return false;
    }
    return true;
}

inline bool same_entry(const PhoneEntryOld& a, const PhoneEntryOld& b) { return same_but_for_reserved(a, b); }
inline bool same_entry(const PhoneEntry& a, const PhoneEntry& b) {
    return same_but_for_reserved(a, b) && same_reserved(a, b);
}

// Empty when both books hold the same; else where they begin to differ.
inline std::string difference(const Telefonbuch& a, const Telefonbuch& b) {
    for (std::size_t i = 0; i < a.altbuch.size(); ++i) {
        if (!same_entry(a.altbuch[i], b.altbuch[i])) return "altbuch " + std::to_string(i);
    }
    for (int i = 0; i < Telefonbuch::entries; ++i) {
        if (!same_entry(a[i], b[i])) return "telefonbuch " + std::to_string(i);
    }
    return {};
}

// The same for bytes.
inline std::string difference(const std::string& a, const std::string& b) {
    if (a == b) return {};
    std::size_t i = 0;
    while (i < a.size() && i < b.size() && a[i] == b[i]) ++i;
    return "sizes " + std::to_string(a.size()) + " and " + std::to_string(b.size()) + ", byte " +
           std::to_string(i);
}

// An entry whose every field tells the mark.
inline PhoneEntry marked_entry(int mark) {
    const std::string text = std::to_string(mark);
    PhoneEntry entry;
    entry.pos = static_cast<std::int16_t>(mark);
    entry.name = "Anlage " + text;
    entry.nummer = "0555" + text;
    entry.visdatei = "c:\\vis\\" + text + ".exe";
    entry.protdatei = "c:\\prot\\" + text + ".txt";
    entry.bemerkung = "Bemerkung " + text;
    entry.autoflag = static_cast<std::int16_t>(mark % 2 == 0 ? 8 : 0);
    entry.reserve1 = mark + 100'000;
    entry.reserve2 = -mark;
    entry.datum = 30'000.25 + mark;
    entry.viertdatei = "d:\\viertel\\" + text + ".dat";
    entry.aufnahme = "Aufnahme\r\n" + text;
    for (std::size_t i = 0; i < 9; ++i)
        entry.reserviert1_9[i] = static_cast<std::int32_t>(mark * 10 + static_cast<int>(i));
    return entry;
}

inline PhoneEntryOld marked_old_entry(int mark) {
    const PhoneEntry entry = marked_entry(mark);
    return {entry.pos,       entry.name,     entry.nummer,   entry.visdatei, entry.protdatei,
            entry.bemerkung, entry.autoflag, entry.reserve1, entry.reserve2, entry.datum};
}

// A book of marked entries: `first` at index 0 of both tables, and so on.
inline Telefonbuch marked_book(int first) {
    Telefonbuch book;
    for (int i = 0; i < Telefonbuch::entries; ++i) book[i] = marked_entry(first + i);
    for (int i = 0; i < Telefonbuch::old_entries; ++i)
        book.altbuch[static_cast<std::size_t>(i)] = marked_old_entry(first + i);
    return book;
}

inline const Telefonbuch& marked_book() {
    static const Telefonbuch book = marked_book(0);
    return book;
}
inline const std::string& marked_file() {
    static const std::string file = file_of(marked_book());
    return file;
}

} // namespace velorn::test
