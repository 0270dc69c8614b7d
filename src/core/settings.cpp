#include "core/settings.h"

#include "runtime/text.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace velorn {

namespace {

std::span<Variant> run(Variant& one) { return {&one, 1}; }
template <std::size_t N>
std::span<Variant> run(std::array<Variant, N>& many) {
    return many;
}

#define FIELD(name)                                                                                          \
    SettingsField {                                                                                          \
#name, [](Settings & s) { return run(s.name); }, nullptr                                             \
    }

constexpr SettingsField einst_table[] = {
    FIELD(letztepfade),
    FIELD(letztepfade2),
    FIELD(fbschrift),
    FIELD(fbschriftgr),
    FIELD(comsettings),
    FIELD(comport),
    FIELD(comhandshake),
    FIELD(comecho),
    FIELD(anrufer),
    FIELD(modeminit),
    FIELD(telscroll),
    FIELD(einstversion),
    FIELD(telefonpfad),
    FIELD(ftast),
    FIELD(altftast),
    FIELD(einstversion2),
    SettingsField{"telzeile", nullptr, [](Settings& s) -> std::int16_t& { return s.telzeile; }},
    FIELD(termschrift),
    FIELD(termschriftgr),
    FIELD(fbfarbe),
    FIELD(zeichenabstand),
    FIELD(korrinv),
    FIELD(dispaufpfad),
    FIELD(fbautostart),
    FIELD(vorwahlan),
    FIELD(vorwahl),
    FIELD(letztepfade3),
    FIELD(neustartzaehler),
};

constexpr SettingsField datpfad_table[] = {FIELD(datpfade)};

constexpr SettingsField lan_table[] = {
    FIELD(lanport),   FIELD(lanreserve), FIELD(lanaktiv),    FIELD(loginuser), FIELD(loginpass),
    FIELD(loginauto), FIELD(autoholnr),  FIELD(autoholpfad), FIELD(lanfrei),
};

#undef FIELD

// The values that a start finds in a control that would refuse nothing.
struct Default {
    std::string_view field;
    Variant (*value)();
};

constexpr Default defaults[] = {
    {"fbschrift", [] { return Variant("Courier New"); }},
    {"fbschriftgr", [] { return Variant(std::int16_t{14}); }},
    {"comsettings", [] { return Variant("19200,n,8,1"); }},
    {"comport", [] { return Variant("1"); }},
    {"comhandshake", [] { return Variant("1"); }},
    {"termschrift", [] { return Variant("Courier"); }},
    {"termschriftgr", [] { return Variant(std::int16_t{12}); }},
};

} // namespace

std::span<const SettingsField> einst_fields() { return einst_table; }
std::span<const SettingsField> datpfad_fields() { return datpfad_table; }
std::span<const SettingsField> lan_fields() { return lan_table; }

void set_recovery_values(Settings& settings, std::string_view apppfad) {
    for (std::size_t i = 1; i <= 4; ++i) {
        settings.letztepfade[i] = "c:\\";
        settings.letztepfade2[i] = "c:\\";
    }
    settings.fbschrift = default_of("fbschrift");
    settings.fbschriftgr = default_of("fbschriftgr");
    settings.comsettings = default_of("comsettings");
    settings.comport = default_of("comport");
    settings.comhandshake = default_of("comhandshake");
    settings.comecho = false;
    settings.anrufer = "Benutzer";
    settings.modeminit = "e1";
    settings.telscroll = std::int16_t{0};
    settings.telefonpfad = std::string(apppfad) + "\\telefon.par";
}

Variant default_of(std::string_view field) {
    const auto* const row = std::ranges::find(defaults, field, &Default::field);
    if (row == std::end(defaults)) throw std::logic_error("no default for " + std::string(field));
    return row->value();
}

} // namespace velorn
