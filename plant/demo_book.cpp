#include "plant/demo_book.h"

#include "plant/new_file.h"
#include "runtime/text.h"
#include "runtime/variant.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace velorn::plant {

namespace {

constexpr int old_records = 601;
constexpr int records = 2011;
constexpr int reserved_values = 9;
constexpr std::int16_t collected = 8;
constexpr double first_of_january_1990 = 32874; // the date that the program gives every line it makes

// One line of the book. A line that was never used holds Empty values, zeros and no date.
struct BookLine {
    std::int16_t index = 0;
    Variant name, number, visualisation, protocol, remark;
    std::int16_t collected = 0;
    double date = 0;
    Variant archive, snapshots;
};

void put_old(const BookLine& line, std::string& bytes) {
    encode_i16(line.index, bytes);
    for (const Variant* value : {&line.name, &line.number, &line.visualisation, &line.protocol, &line.remark})
        encode(*value, bytes);
    encode_i16(line.collected, bytes);
    encode_i32(0, bytes);
    encode_i32(0, bytes);
    encode_f64(line.date, bytes);
}

void put(const BookLine& line, std::string& bytes) {
    put_old(line, bytes);
    encode(line.archive, bytes);
    encode(line.snapshots, bytes);
    for (int i = 0; i < reserved_values; ++i) encode(Variant(), bytes);
}

std::string windows_text(const std::string& utf8) { return cp1252_from_utf8(utf8).value_or("?"); }

std::string number_of_site(const Site& site) {
    return site.route == Route::tcp || site.number.empty() ? site.address : site.number;
}

BookLine line_of(const Site& site, int index, const BookPlaces& places) {
    BookLine line;
    line.index = static_cast<std::int16_t>(index);
    line.name = windows_text(site.name);
    line.number = number_of_site(site);
    line.visualisation =
        static_cast<std::size_t>(index - 1) == pictured_site ? places.visualisation : std::string();
    line.protocol =
        places.protocols ? std::string(protocol_folder) + '\\' + protocol_name(site) : std::string();
    line.remark = remark(site);
    line.collected = takes_part(site) ? collected : std::int16_t{0};
    line.date = first_of_january_1990;
    line.archive = places.archives && takes_part(site)
                       ? std::string(archive_folder) + '\\' + archive_name(site)
                       : std::string();
    line.snapshots = "";
    return line;
}

std::string file_stem(const Site& site) {
    struct Letter {
        std::string_view utf8, ascii;
    };
    static constexpr std::array<Letter, 7> letters = {
        {{"ä", "ae"}, {"ö", "oe"}, {"ü", "ue"}, {"Ä", "ae"}, {"Ö", "oe"}, {"Ü", "ue"}, {"ß", "ss"}}};
    std::string name;
    std::string_view rest = site.name;
    while (!rest.empty()) {
        const char c = rest.front();
        std::size_t length = 1;
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
            name += c;
        } else if (c >= 'A' && c <= 'Z') {
            name += static_cast<char>(c - 'A' + 'a');
        } else if (c == ' ' || c == '-') {
            name += '-';
        }
        for (const Letter& letter : letters) {
            if (!rest.starts_with(letter.utf8)) continue;
            name += letter.ascii;
            length = letter.utf8.size();
        }
        rest.remove_prefix(length);
    }
    return name;
}

} // namespace

bool takes_part(const Site& site) { return site.behaviour == Behaviour::connects; }

std::string protocol_name(const Site& site) { return file_stem(site) + ".txt"; }

std::string archive_name(const Site& site) { return file_stem(site) + ".dat"; }

std::string remark(const Site& site) {
    std::string text;
    switch (site.route) {
    case Route::tcp: text = "port " + std::to_string(site.port); break;
    case Route::modem: text = "Modem 19200"; break;
    case Route::gateway: text = std::string("über Gateway"_w); break;
    }
    if (!site.user.empty()) text += ", Anmeldung " + site.user;
    switch (site.behaviour) {
    case Behaviour::connects: break;
    case Behaviour::busy: text += ", besetzt"; break;
    case Behaviour::refuses: text += ", lehnt ab"; break;
    case Behaviour::never_answers: text += ", antwortet nie"; break;
    }
    return text;
}

std::string phone_book(const Directory& directory, const BookPlaces& places) {
    std::string bytes;
    for (int i = 0; i < old_records; ++i) put_old(BookLine(), bytes);
    const std::span<const Site> sites = directory.sites();
    for (int i = 0; i < records; ++i) {
        const bool used = i > 0 && static_cast<std::size_t>(i) <= sites.size();
        put(used ? line_of(sites[static_cast<std::size_t>(i - 1)], i, places) : BookLine(), bytes);
    }
    return bytes;
}

std::string first_protocol_line(const DateTime& today) {
    std::string bytes;
    encode(Variant("neu angelegt am:  " + date_text(today)), bytes);
    return bytes + "\r\n";
}

Result<std::vector<std::string>> write_phone_book(const Directory& directory, const BookOrder& order,
                                                  const DateTime& today) {
    struct Text {
        std::filesystem::path path;
        std::string bytes;
    };
    std::vector<Text> texts;
    texts.push_back({path_of(order.file),
                     phone_book(directory, {!order.protocols.empty(), order.visualisation, order.archives})});
    if (!order.protocols.empty()) {
        for (const Site& site : directory.sites())
            texts.push_back({path_of(order.protocols) / protocol_name(site), first_protocol_line(today)});
    }
    std::vector<std::string> written;
    for (const Text& text : texts) {
        const Result<bool> fresh = write_if_missing(text.path, [&text](BinaryFile& file) -> Outcome {
            if (Outcome laid_down = file.write(1, text.bytes); !laid_down) return laid_down;
            return file.sync();
        });
        if (!fresh) return fresh.failure();
        if (*fresh) written.push_back(text.path.string());
    }
    return written;
}

} // namespace velorn::plant
