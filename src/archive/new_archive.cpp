#include "archive/new_archive.h"

#include "runtime/number_picture.h"
#include "runtime/text.h"

#include <algorithm>
#include <optional>

namespace velorn {

namespace {

constexpr std::int16_t usual_tracks = 60;

Failure given_up() { return failure(RunTimeError::dialog_cancelled); }

Result<std::string> ask_path(const Questions& to, const std::string& projekt) {
    for (;;) {
        Result<std::string> chosen = to.dialogs.choose_file({.title = "Datenarchivierungsdatei anlegen",
                                                             .filter = std::string(archive_filter),
                                                             .folder = {},
                                                             .name = projekt + ".dat",
                                                             .saving = true});
        if (to.gone()) return given_up();
        if (!chosen) return chosen;
        if (chosen->empty()) continue;
        if (!to.files.exists(*chosen)) return chosen;
        const Answer answer = to.dialogs.message_box("Bestehende Datei ersetzen - " + *chosen + "?", 36);
        if (to.gone()) return given_up();
        if (answer == Answer::yes) return chosen;
    }
}

std::int16_t ask_start_year(const Questions& to, std::int16_t present) {
    const auto answer = to.dialogs.input_box("Startjahr der 1/4h-Aufzeichnung eingeben: (z.B.: 2009)",
                                             "Startjahr", std::to_string(present));
    if (!answer || answer->empty()) return present;
    const std::optional<double> year = number_of(*answer);
    if (!year) {
        to.dialogs.message_box(error_text(RunTimeError::type_mismatch), 48);
        return present;
    }
    return static_cast<std::int16_t>(round_to_even(std::clamp(*year, 2000.0, 2050.0)));
}

std::int16_t ask_tracks(const Questions& to) {
    for (;;) {
        const auto answer =
            to.dialogs.input_box("Anzahl der Datenspuren eingeben (30,60,90,120 oder 150): ", "Datenspuren",
                                 std::to_string(usual_tracks));
        if (!answer || answer->empty() || to.gone()) return usual_tracks;
        const std::optional<double> tracks = number_of(*answer);
        if (!tracks) {
            to.dialogs.message_box(error_text(RunTimeError::type_mismatch), 48);
            if (to.gone()) return usual_tracks;
            continue;
        }
        for (const int allowed : {30, 60, 90, 120, 150}) {
            if (*tracks == allowed) return static_cast<std::int16_t>(allowed);
        }
    }
}

} // namespace

Result<NewArchive> ask_for_new_archive(const Questions& questions, const std::string& projekt,
                                       const DateTime& today) {
    questions.dialogs.message_box(
        std::string("bisher keine Datenarchivierungsdatei für <"_w) + projekt + "> angelegt!", 48);
    if (questions.gone()) return given_up();
    const Result<std::string> path = ask_path(questions, projekt);
    if (!path) return path.failure();
    const std::int16_t startjahr = ask_start_year(questions, static_cast<std::int16_t>(today.year));
    if (questions.gone()) return given_up();
    const std::int16_t tracks = ask_tracks(questions);
    if (questions.gone()) return given_up();
    return NewArchive{*path, startjahr, tracks};
}

} // namespace velorn
