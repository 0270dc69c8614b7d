#include "core/settings_files.h"

#include "runtime/text.h"

#include <utility>

namespace velorn {

namespace {

// ---- bytes ----

Outcome decode_field(const SettingsField& field, std::string_view bytes, std::size_t& position,
                     Settings& settings) {
    if (field.plain != nullptr) {
        std::int16_t& value = field.plain(settings);
        if (decode_i16(bytes, position, value) == Decoded::cut) value = 0;
        return {};
    }
    for (Variant& value : field.variants(settings)) {
        if (decode(bytes, position, value) == Decoded::unknown_tag) {
            return failure(RunTimeError::type_mismatch, field.name);
        }
    }
    return {};
}

Outcome decode_fields(std::span<const SettingsField> fields, std::string_view bytes, Settings& settings) {
    std::size_t position = 0;
    for (const SettingsField& field : fields) {
        if (const Outcome read = decode_field(field, bytes, position, settings); !read) return read;
    }
    return {};
}

std::string encode_fields(std::span<const SettingsField> fields, Settings& settings) {
    std::string bytes;
    for (const SettingsField& field : fields) {
        if (field.plain != nullptr) {
            encode_i16(field.plain(settings), bytes);
        } else {
            for (const Variant& value : field.variants(settings)) encode(value, bytes);
        }
    }
    return bytes;
}

// ---- the upgrade steps of einst.par ----

constexpr std::string_view first_ftast[] = {
    "<01>TERMINATE Watch -- PREVENT WATCHDOG",
    "<01>TERMINATE START",
    "<01>AFTER 60 MIN ACTIVATE RESET",
    "<01>CLEARFLASH AD 3 SZ 6",
    "<01>SYSTEM_RESET",
    "<01>FLLOAD BANK 3 OFFS 0 ED.test",
    "<01>sh WATCHDOG",
    "<01>s",
    "<01>l",
    "<01>lu",
    "<01>lu<13>",
    "<01>define.x--clock; ALL 8 SEC x",
};

void first_function_keys(Settings& s, const std::string&) {
    for (std::size_t i = 1; i <= 12; ++i) {
        s.ftast[i] = first_ftast[i - 1];
        s.altftast[i] = "";
    }
}

Variant clamped(const Variant& value, const Variant& least, const Variant& most) {
    return value > most ? most : value < least ? least : value;
}

// What happens behind a field: first what is done with it, then the version step that decides whether the
// fields after it are there yet.
struct Step {
    std::string_view behind;    // the field after which the version is tested
    Variant Settings::*version; // which version field
    std::int16_t number;        // below it, it is set to it
    void (*defaults)(Settings&, const std::string& apppfad);
    bool starts_over;
};

constexpr Step steps[] = {
    {"einstversion", &Settings::einstversion, 1, [](Settings&, const std::string&) {}, false},
    {"einstversion", &Settings::einstversion, 3,
     [](Settings& s, const std::string& apppfad) { s.telefonpfad = apppfad + "\\telefon.par"; }, true},
    {"telefonpfad", &Settings::einstversion, 4, first_function_keys, true},
    {"einstversion2", &Settings::einstversion2, 10, [](Settings& s, const std::string&) { s.telzeile = -1; },
     true},
    {"telzeile", &Settings::einstversion2, 11,
     [](Settings& s, const std::string&) {
         s.termschrift = "Courier";
         s.termschriftgr = std::int16_t{12};
     },
     true},
    {"termschriftgr", &Settings::einstversion2, 12,
     [](Settings& s, const std::string&) { s.fbfarbe = std::int16_t{0}; }, true},
    {"fbfarbe", &Settings::einstversion2, 13,
     [](Settings& s, const std::string&) { s.zeichenabstand = 0.87; }, true},
    {"zeichenabstand", &Settings::einstversion2, 14,
     [](Settings& s, const std::string&) { s.korrinv = std::int16_t{0}; }, true},
    {"korrinv", &Settings::einstversion2, 15,
     [](Settings& s, const std::string& apppfad) { s.dispaufpfad = apppfad + "\\dispauf.par"; }, true},
    {"dispaufpfad", &Settings::einstversion2, 16,
     [](Settings& s, const std::string&) { s.fbautostart = std::int16_t{1}; }, true},
    {"fbautostart", &Settings::einstversion2, 17,
     [](Settings& s, const std::string&) {
         s.vorwahlan = std::int16_t{0};
         s.vorwahl = "01019";
     },
     true},
    {"vorwahl", &Settings::einstversion2, 18,
     [](Settings& s, const std::string&) {
         for (std::size_t i = 1; i <= 10; ++i) s.letztepfade3[i] = "c:\\";
     },
     true},
    // There never was a version 19.
    {"letztepfade3", &Settings::einstversion2, 20,
     [](Settings& s, const std::string&) {
         s.neustartzaehler = std::int16_t{0};
         s.altftast[6] = "<01>EDINFO";
     },
     true},
};

} // namespace

void SettingsFiles::begin_start() {
    starting_ = true;
    told_ = false;
    rest_is_read_ = false;
    unsaved_einst_.reset();
    unsaved_lan_.reset();
}

Result<SettingsFiles::Pass> SettingsFiles::read(const Effects& effects) {
    if (Result<Pass> einst = read_einst(effects); !einst || *einst == Pass::rewritten) return einst;
    if (const Outcome rest = read_rest(); !rest) return rest.failure();
    give_port_its_default();
    return Pass::complete;
}

void SettingsFiles::end_start() {
    rest_is_read_ = true; // as far as it can be
    give_port_its_default();
    starting_ = false;
}

void SettingsFiles::give_port_its_default() {
    if (!(settings_.lanport < Variant(std::int16_t{1}))) return;
    settings_.lanport = "23";
    save_during_start();
}

Result<SettingsFiles::Pass> SettingsFiles::read_einst(const Effects& effects) {
    std::string bytes;
    if (unsaved_einst_) {
        bytes = *unsaved_einst_;
    } else {
        if (const Outcome there = ensure_exists(files_, einst_path()); !there) return there.failure();
        Result<std::string> content = read_whole(files_, einst_path());
        if (!content) return content.failure();
        bytes = std::move(*content);
    }
    std::size_t position = 0;
    for (const SettingsField& field : einst_fields()) {
        if (const Outcome read = decode_field(field, bytes, position, settings_); !read)
            return read.failure();

        if (field.name == "fbfarbe" && effects.colours) effects.colours();
        if (field.name == "zeichenabstand")
            settings_.zeichenabstand = clamped(settings_.zeichenabstand, 0.75, 1.25);
        if (field.name == "korrinv") {
            settings_.korrinv = clamped(settings_.korrinv, std::int16_t{-5}, std::int16_t{5});
        }
        if (field.name == "fbautostart" && effects.autostart) effects.autostart();

        for (const Step& step : steps) {
            if (step.behind != field.name || !(settings_.*step.version < Variant(step.number))) continue;
            settings_.*step.version = step.number;
            step.defaults(settings_, apppfad_);
            save_during_start();
            if (step.starts_over) return Pass::rewritten;
        }
    }
    return Pass::complete;
}

Outcome SettingsFiles::read_rest() {
    struct File {
        std::string path;
        std::span<const SettingsField> fields;
        const std::optional<std::string>* unsaved;
    };
    static const std::optional<std::string> none;
    const File rest[] = {{datpfad_path(), datpfad_fields(), &none},
                         {lan_path(), lan_fields(), &unsaved_lan_}};
    const auto read_one = [this](const File& file) -> Outcome {
        if (*file.unsaved) return decode_fields(file.fields, **file.unsaved, settings_);
        if (const Outcome there = ensure_exists(files_, file.path); !there) return there;
        const Result<std::string> content = read_whole(files_, file.path);
        if (!content) return content.failure();
        return decode_fields(file.fields, *content, settings_);
    };
    // A damaged file doesn't keep the other one from being read: what stands in that would be lost with the
    // next save.
    Outcome all;
    for (const File& file : rest) {
        if (Outcome one = read_one(file); !one && all.ok()) all = one;
    }
    rest_is_read_ = all.ok();
    return all;
}

void SettingsFiles::saveeinst() {
    if (starting_) {
        save_during_start();
    } else if (const Outcome saved = save(); !saved) {
        dialogs_.message_box(saved.failure().text, 48);
    }
}

// The first rewrite of a start comes before the two other files would be read in their turn; what stands in
// them must not be lost.
void SettingsFiles::save_during_start() {
    if (!rest_is_read_) {
        (void)read_rest();
        rest_is_read_ = true;
    }
    const Outcome saved = save();
    if (saved) {
        // What is on disk is up to date again; an older copy would have the same step taken for ever.
        unsaved_einst_.reset();
        unsaved_lan_.reset();
        return;
    }
    const bool told = std::exchange(told_, true);
    unsaved_einst_ = encode_fields(einst_fields(), settings_);
    unsaved_lan_ = encode_fields(lan_fields(), settings_);
    if (!told) dialogs_.message_box(saved.failure().text, 48);
}

Outcome SettingsFiles::save() {
    const std::pair<std::string, std::string> contents[] = {
        {einst_path(), encode_fields(einst_fields(), settings_)},
        {datpfad_path(), encode_fields(datpfad_fields(), settings_)},
        {lan_path(), encode_fields(lan_fields(), settings_)},
    };
    Outcome all;
    for (const auto& [path, content] : contents) {
        if (Outcome one = replace_content(files_, path, content); !one && all.ok()) all = one;
    }
    return all;
}

} // namespace velorn
