// What a person is asked before a site gets its archive.
#pragma once

#include "runtime/calendar.h"
#include "runtime/failure.h"
#include "runtime/files.h"
#include "runtime/outside.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace velorn {

// The kinds of files that the archive's file dialogs offer.
inline constexpr std::string_view archive_filter = "dat Dateien (*.dat)|*.dat";

struct NewArchive {
    std::string path;
    std::int16_t startjahr; // 2000 to 2050, or the present year
    std::int16_t tracks;    // 30, 60, 90, 120 or 150
};

struct Questions {
    Dialogs& dialogs;
    Files& files;
    std::function<bool()> gone; // nobody wants the answers any more
};

// The failure `dialog_cancelled`: the person gave up, or `gone` says so. A file that is there already is
// taken once the person agrees.
Result<NewArchive> ask_for_new_archive(const Questions& questions, const std::string& projekt,
                                       const DateTime& today);

} // namespace velorn
