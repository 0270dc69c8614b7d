// Reading and writing the three settings files in the program's folder, and bringing an older einst.par up to
// date.
//
// einst.par grew by appending fields, and its two version fields tell how far a file goes. A file of any age
// is brought up by one step for each pass: the step sets the version, gives the new fields their defaults,
// rewrites the files, and the reading starts over.
//
// A value that is missing or cut off at the end of a file reads as Empty; an unknown tag is error 13. Each
// file is replaced as a whole: a kill at any moment leaves its complete old or complete new content. Files
// are never shortened; stale bytes behind the last record stay and are never read.
#pragma once

#include "core/settings.h"
#include "runtime/files.h"
#include "runtime/outside.h"

#include <functional>
#include <optional>
#include <string>

namespace velorn {

class SettingsFiles {
  public:
    // apppfad: the folder of the files, without a trailing backslash; looked at when a file is touched.
    SettingsFiles(Files& files, Dialogs& dialogs, Settings& settings, const std::string& apppfad)
        : files_(files), dialogs_(dialogs), settings_(settings), apppfad_(apppfad) {}

    // What reading does to the window, at the point in the file where it is due.
    struct Effects {
        std::function<void()> colours;   // fbfarbe has been read
        std::function<void()> autostart; // fbautostart has been read
    };

    enum class Pass {
        complete, // everything is read and up to date
        rewritten // an upgrade step wrote the files anew: start over
    };

    // A new start: what an earlier one remembered of failures is forgotten.
    void begin_start();
    // The start is over, however its reading went: failures to save are told again, each time.
    void end_start();

    // One pass over the three files, creating missing ones empty.
    Result<Pass> read(const Effects& effects);

    // Writes the three files, all fields. A failure is shown in a box with code 48.
    void saveeinst();
    // The same where nobody is there to answer a box.
    Outcome save_without_a_box() { return save(); }

    std::string einst_path() const { return apppfad_ + "\\einst.par"; }
    std::string datpfad_path() const { return apppfad_ + "\\datpfad.par"; }
    std::string lan_path() const { return apppfad_ + "\\lan.par"; }

  private:
    Result<Pass> read_einst(const Effects& effects);
    void give_port_its_default();
    Outcome read_rest();
    void save_during_start();
    Outcome save();

    Files& files_;
    Dialogs& dialogs_;
    Settings& settings_;
    const std::string& apppfad_;

    bool starting_ = false;
    bool told_ = false;         // that a save failed in this start
    bool rest_is_read_ = false; // the two other files were read before the first rewrite of this start
    // A file that couldn't be rewritten in this start is read from what would stand in it, so that the
    // upgrade goes on; the failure is shown once.
    std::optional<std::string> unsaved_einst_;
    std::optional<std::string> unsaved_lan_;
};

} // namespace velorn
