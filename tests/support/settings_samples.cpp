#include "support/settings_samples.h"

#include "runtime/text.h"

namespace velorn::test {

namespace {

// The last field that a file of a version holds.
struct Reach {
    int version;
    std::string_view last;
};
constexpr Reach reaches[] = {
    {0, "einstversion"},  {1, "einstversion"},     {3, "telefonpfad"},  {4, "einstversion2"},
    {10, "telzeile"},     {11, "termschriftgr"},   {12, "fbfarbe"},     {13, "zeichenabstand"},
    {14, "korrinv"},      {15, "dispaufpfad"},     {16, "fbautostart"}, {17, "vorwahl"},
    {18, "letztepfade3"}, {20, "neustartzaehler"},
};

std::string bytes_of(std::span<const SettingsField> fields, Settings& settings, std::string_view last) {
    std::string bytes;
    for (const SettingsField& field : fields) {
        if (field.plain != nullptr) {
            encode_i16(field.plain(settings), bytes);
        } else {
            for (const Variant& value : field.variants(settings)) encode(value, bytes);
        }
        if (field.name == last) break;
    }
    return bytes;
}

} // namespace

Settings user_settings() {
    Settings s;
    for (std::size_t i = 1; i <= 4; ++i)
        s.letztepfade[i] = s.letztepfade2[i] = "d:\\pfade\\" + std::to_string(i);
    s.fbschrift = "Lucida Console";
    s.fbschriftgr = std::int16_t{16};
    s.comsettings = "9600,e,7,2";
    s.comport = std::int16_t{5};
    s.comhandshake = std::int16_t{2};
    s.comecho = true;
    s.anrufer = "M\xfcller";
    s.modeminit = "e0v1";
    s.telscroll = std::int16_t{7};
    s.einstversion = std::int16_t{4};
    s.telefonpfad = "d:\\buch\\telefon.par";
    for (std::size_t i = 1; i <= 12; ++i) {
        s.ftast[i] = "taste " + std::to_string(i);
        s.altftast[i] = "strg " + std::to_string(i);
    }
    s.einstversion2 = std::int16_t{20};
    s.telzeile = 3;
    s.termschrift = "Consolas";
    s.termschriftgr = std::int16_t{10};
    s.fbfarbe = std::int16_t{1};
    s.zeichenabstand = 0.9;
    s.korrinv = std::int16_t{-2};
    s.dispaufpfad = "d:\\buch\\dispauf.par";
    s.fbautostart = std::int16_t{0};
    s.vorwahlan = std::int16_t{1};
    s.vorwahl = "01033";
    for (std::size_t i = 1; i <= 10; ++i) s.letztepfade3[i] = "d:\\sicher\\" + std::to_string(i);
    s.neustartzaehler = std::int16_t{41};
    s.datpfade[0] = "d:\\archiv\\anlage.dat";
    s.datpfade[600] = "d:\\archiv\\letzte.dat";
    s.lanport = "8080";
    s.lanreserve = 1.5F;
    s.lanaktiv = std::int16_t{0};
    s.loginuser = "nutzer";
    s.loginpass = "geheim";
    s.loginauto = true;
    s.autoholnr = std::int16_t{0};
    s.autoholpfad = "";
    s.lanfrei[3] = Currency{12'345};
    return s;
}

std::string einst_of_version(Settings settings, int version) {
    settings.einstversion = static_cast<std::int16_t>(std::min(version, 4));
    settings.einstversion2 = version >= 10 ? Variant(static_cast<std::int16_t>(version)) : Variant();
    for (const Reach& reach : reaches) {
        if (reach.version == version) return bytes_of(einst_fields(), settings, reach.last);
    }
    return {};
}

std::string file_of(std::span<const SettingsField> fields, Settings settings) {
    return bytes_of(fields, settings, {});
}

} // namespace velorn::test
