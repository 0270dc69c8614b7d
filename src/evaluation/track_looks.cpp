#include "evaluation/track_looks.h"

#include "runtime/text.h"

namespace velorn {

namespace {

const Variant& entry(std::span<Variant> table, int track) {
    static const Variant nothing;
    const auto index = static_cast<std::size_t>(track);
    return track >= 0 && index < table.size() ? table[index] : nothing;
}

} // namespace

std::string TrackLooks::name(int track) const { return entry(names, track).text(); }

std::string TrackLooks::unit(int track) const { return entry(units, track).text(); }

Colour TrackLooks::colour(int track) const {
    const Result<std::int32_t> number = entry(colours, track).as_i32();
    return number ? static_cast<Colour>(*number) & 0xFFFFFFU : colour::black;
}

bool TrackLooks::is_visible(int track) const { return entry(visible, track).number() != 0; }

bool TrackLooks::is_right(int track) const { return entry(right, track).number() != 0; }

bool TrackLooks::has_sum(int track) const { return unit(track).find("°C"_w) == std::string::npos; }

void TrackLooks::set(std::span<Variant> table, int track, Variant value) {
    if (track >= 0 && static_cast<std::size_t>(track) < table.size())
        table[static_cast<std::size_t>(track)] = std::move(value);
}

TrackLooks looks_of(ArchiveSettings& s, Table table) {
    if (table == Table::daten)
        return {s.spurnamen, s.spureinheiten, s.spurfarben, s.spursichtbar, s.spurrechts};
    return {s.bspurnamen, s.bspureinheiten, s.bspurfarben, s.bspursichtbar, s.bspurrechts};
}

std::vector<int> shown_tracks(Archive& archive, Table table) {
    const TrackLooks looks = looks_of(archive, table);
    const int first = table == Table::daten ? 1 : 0;
    const int end = table == Table::daten ? archive.spuranz + 1 : drawn_calculated_tracks;
    std::vector<int> shown;
    for (int track = first; track < end; ++track) {
        if (looks.is_visible(track)) shown.push_back(track);
    }
    return shown;
}

std::string calculated_name(const ArchiveSettings& settings, int track) {
    switch (track) {
    case 0: return settings.bname1.text();
    case 1: return settings.bname2.text();
    case 2: return "Pel Einspeisung";
    case 3: return "Pel Bezug";
    default: return "analyt. Jahresdauerl.";
    }
}

View view_of(const ArchiveSettings& settings) {
    const double number = settings.ansicht.number();
    return number == 2 ? View::week : number == 3 ? View::month : number == 4 ? View::year : View::day;
}

int first_year(const ArchiveSettings& settings) {
    const Result<std::int16_t> year = settings.startjahr.as_i16();
    constexpr int least = 1;
    constexpr int most = 9990;
    return year && *year >= least && *year <= most ? *year : 2000;
}

} // namespace velorn
