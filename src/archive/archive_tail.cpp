#include "archive/archive_tail.h"

#include "archive/archive_layout.h"

#include <algorithm>

namespace velorn {

namespace {

constexpr std::string_view no_name = "----------------";
constexpr std::int16_t formula_entries = 10;

std::int16_t i16(int value) { return static_cast<std::int16_t>(value); }

// Everything behind daten, in file order.
template <class Settings, class Each>
void each_setting(Settings& s, bool with_reserves, Each&& each) {
    for (auto* texts : {&s.spurnamen, &s.spureinheiten, &s.spurfarben, &s.spursichtbar, &s.spurrechts}) {
        for (auto& value : *texts) each(value);
    }
    for (auto* value :
         {&s.yremax, &s.ylimax, &s.ylimin, &s.ylischritt, &s.yreschritt, &s.archivflag, &s.ansicht,
          &s.startjahr, &s.exportspuren, &s.archivtag, &s.archivmonat, &s.archivjahr, &s.archivstand,
          &s.archivwert1, &s.archivwert2, &s.archivwert3, &s.faktor1})
        each(*value);
    for (auto* entries : {&s.formel1spuren, &s.formel1ops, &s.formel2spuren, &s.formel2ops}) {
        for (auto& value : *entries) each(value);
    }
    for (auto* value :
         {&s.bname1, &s.bname2, &s.faktor2, &s.ganzjahr, &s.jahrespitze, &s.jahreszahl, &s.jahresanteil})
        each(*value);
    if (!with_reserves) return;
    for (auto& value : s.reserve1_6) each(value);
}

// Everything behind rechdaten, in file order.
template <class Settings, class Each>
void each_calculated_text(Settings& s, Each&& each) {
    for (auto* texts : {&s.bspurnamen, &s.bspureinheiten, &s.bspurfarben, &s.bspursichtbar, &s.bspurrechts}) {
        for (auto& value : *texts) each(value);
    }
}

// Takes value after value; after the first that can't be taken all are Empty.
class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes) {}

    void operator()(Variant& value) {
        value = Variant();
        if (end_ == Decoded::complete) end_ = decode(bytes_, position_, value);
    }
    Decoded end() const { return end_; }
    std::size_t position() const { return position_; }

  private:
    std::string_view bytes_;
    std::size_t position_ = 0;
    Decoded end_ = Decoded::complete;
};

void reset_formula(std::array<Variant, 11>& tracks, std::array<Variant, 11>& operations) {
    for (std::size_t i = 1; i <= formula_entries; ++i) {
        tracks[i] = i16(0);
        operations[i] = i16(2);
    }
    tracks[1] = i16(1);
    tracks[2] = i16(2);
    operations[1] = i16(1);
}

} // namespace

ArchiveSettings new_archive_settings(std::int16_t spuranz, std::int16_t startjahr, const DateTime& today) {
    ArchiveSettings s;
    const auto tracks = static_cast<std::size_t>(spuranz) + 1;
    s.spurnamen.assign(tracks, no_name);
    s.spureinheiten.assign(tracks, "");
    s.spurfarben.assign(tracks, std::int32_t{0});
    s.spursichtbar.assign(tracks, false);
    s.spurrechts.assign(tracks, false);
    s.spurnamen[0] = "<1>-<2>";
    s.spurfarben[2] = std::int32_t{255};
    s.spursichtbar[1] = true;
    s.spursichtbar[2] = true;
    s.yremax = i16(30);
    s.ylimax = i16(100);
    s.ylimin = i16(-10);
    s.ylischritt = i16(10);
    s.yreschritt = i16(3);
    s.archivflag = false;
    s.ansicht = i16(1);
    s.startjahr = startjahr;
    s.exportspuren = i16(2);
    s.archivtag = i16(today.day);
    s.archivmonat = i16(today.month);
    s.archivjahr = i16(today.year);
    s.archivstand = i16(1);
    s.archivwert1 = i16(2);
    s.archivwert2 = i16(1);
    s.archivwert3 = i16(2);
    s.faktor1 = 1.0;
    s.bname1 = "---";
    s.bname2 = "---";
    s.faktor2 = 1.0;
    reset_analytic_curve(s);
    reset_calculated_texts(s);
    return s;
}

void reset_calculated_texts(ArchiveSettings& s) {
    for (std::size_t i = 0; i < archive_layout::calculated_tracks; ++i) {
        s.bspurnamen[i] = no_name;
        s.bspureinheiten[i] = "";
        s.bspurfarben[i] = std::int32_t{0};
        s.bspursichtbar[i] = false;
        s.bspurrechts[i] = false;
    }
}

void upgrade_formulas(ArchiveSettings& s) {
    if (s.archivstand < Variant(i16(101))) {
        s.archivstand = i16(102);
        reset_formula(s.formel1spuren, s.formel1ops);
    }
    if (s.archivstand < Variant(i16(104))) {
        s.archivstand = i16(105);
        reset_formula(s.formel2spuren, s.formel2ops);
    }
}

void reset_analytic_curve(ArchiveSettings& s) {
    s.ganzjahr = i16(8760);
    s.jahrespitze = std::int32_t{100000};
    s.jahreszahl = i16(5);
    s.jahresanteil = 0.2;
}

Decoded decode_settings(std::string_view bytes, std::int16_t spuranz, bool with_reserves,
                        ArchiveSettings& settings, std::size_t& length) {
    for (auto* texts : {&settings.spurnamen, &settings.spureinheiten, &settings.spurfarben,
                        &settings.spursichtbar, &settings.spurrechts})
        texts->assign(static_cast<std::size_t>(spuranz) + 1, Variant());
    if (!with_reserves) settings.reserve1_6.fill(Variant());
    Reader reader(bytes);
    each_setting(settings, with_reserves, reader);
    length = reader.position();
    return reader.end();
}

Decoded decode_calculated_texts(std::string_view bytes, ArchiveSettings& settings, std::size_t& length) {
    Reader reader(bytes);
    each_calculated_text(settings, reader);
    length = reader.position();
    return reader.end();
}

std::string encode_settings(const ArchiveSettings& settings) {
    std::string bytes;
    each_setting(settings, true, [&](const Variant& value) { encode(value, bytes); });
    return bytes;
}

std::string encode_calculated_texts(const ArchiveSettings& settings) {
    std::string bytes;
    each_calculated_text(settings, [&](const Variant& value) { encode(value, bytes); });
    return bytes;
}

} // namespace velorn
