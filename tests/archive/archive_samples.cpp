#include "archive/archive_samples.h"

#include <cstring>

namespace velorn::test {

void make_sparse_archive(BlockFiles& files, std::int16_t spuranz, int layout, std::string_view path) {
    const ArchiveSettings settings = new_archive_settings(spuranz, 2009, some_day);
    std::string bytes = encode_settings(settings);
    constexpr std::size_t reserves = 12; // six Empty values
    if (layout == 1) bytes.resize(bytes.size() - reserves);
    const std::int64_t table = std::int64_t{1614080} * (spuranz + 1);
    files.set_content(path, {});
    files.set_length(path, table);
    files.set_bytes(path, table, bytes);
    if (layout == 1) return;
    const std::int64_t calculated = table + static_cast<std::int64_t>(bytes.size());
    files.set_length(path, calculated + 8070400);
    files.set_bytes(path, calculated + 8070400, encode_calculated_texts(settings));
}

std::string whole(const BlockFiles& files, std::string_view path) {
    return files.bytes(path, 0, files.length(path));
}

std::size_t NaiveArchive::at(int y, int m, int d, int q, int t, int columns) {
    return static_cast<std::size_t>((((y * 13 + m) * 32 + d) * 97 + q) * columns + t);
}

void NaiveArchive::read(std::string bytes, int tracks, int layout) {
    file = std::move(bytes);
    spuranz = tracks;
    daten.assign(403520U * static_cast<unsigned>(tracks + 1), 0.0F);
    rechdaten.assign(2017600, 0.0F);
    std::memcpy(daten.data(), file.data(), daten.size() * 4);
    std::size_t position = daten.size() * 4;
    const auto take = [&](std::vector<Variant>& values, int count) {
        for (int i = 0; i < count; ++i) decode(file, position, values.emplace_back());
    };
    settings.clear();
    texts.clear();
    take(settings, 5 * (tracks + 1) + 17 + 44 + 7);
    if (layout == 1) {
        settings.resize(settings.size() + 6);
        calculated_from_tracks();
        return;
    }
    take(settings, 6);
    std::memcpy(rechdaten.data(), file.data() + position, rechdaten.size() * 4);
    position += rechdaten.size() * 4;
    take(texts, 30);
}

void NaiveArchive::calculated_from_tracks() {
    for (int y = 0; y <= 9; ++y) {
        for (int m = 1; m <= 12; ++m) {
            for (int d = 1; d <= 31; ++d) {
                for (int q = 1; q <= 96; ++q) {
                    calculated(y, m, d, q, 0) = cell(y, m, d, q, 0);
                    calculated(y, m, d, q, 1) = spuranz > 59 ? cell(y, m, d, q, 60) : -997.0F;
                    for (int t = 2; t <= 4; ++t) calculated(y, m, d, q, t) = -997.0F;
                }
            }
        }
    }
    texts.assign(30, Variant());
    const std::array<Variant, 5> defaults{Variant("----------------"), Variant(""), Variant(std::int32_t{0}),
                                          Variant(false), Variant(false)};
    for (std::size_t kind = 0; kind < 5; ++kind) {
        for (std::size_t i = 0; i < 5; ++i) texts[kind * 6 + i] = defaults[kind];
        const std::size_t first = kind * static_cast<std::size_t>(spuranz + 1);
        texts[kind * 6] = settings[first];
        if (spuranz > 59) texts[kind * 6 + 1] = settings[first + 60];
    }
}

void NaiveArchive::write() {
    std::string bytes(reinterpret_cast<const char*>(daten.data()), daten.size() * 4);
    for (const Variant& value : settings) encode(value, bytes);
    bytes.append(reinterpret_cast<const char*>(rechdaten.data()), rechdaten.size() * 4);
    for (const Variant& value : texts) encode(value, bytes);
    if (file.size() > bytes.size()) bytes.append(file, bytes.size());
    file = std::move(bytes);
}

} // namespace velorn::test
