// Stored paths and where they lead on this machine.
//
// Stored paths are Windows paths or, elsewhere, also the system's own. On Windows they are used as they are.
// Elsewhere "\" becomes "/", and a drive letter leads to a folder: the one that velorn.ini names for it, else
// laufwerke/<letter> below the program's folder, created when it is first used.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace velorn {

class Paths {
  public:
    // program_folder: where the executable lies (or its stand-in, when that can't be written).
    // drives: lower-case letter -> folder, UTF-8, absolute or below the program's folder.
    explicit Paths(std::filesystem::path program_folder, std::map<char, std::string> drives = {});

    // The path on this machine; creates the default folder of a drive when it is missing.
    std::filesystem::path native(std::string_view stored) const;

    // A path of this machine as it is stored. Nothing for what cp1252 cannot hold and, elsewhere than on
    // Windows, for a name with a backslash in it.
    static std::optional<std::string> stored(const std::filesystem::path& native);

  private:
    std::filesystem::path program_folder_;
    std::map<char, std::string> drives_;
};

// Splitting a stored path: "\" counts and, elsewhere than on Windows, "/" too.
std::string_view folder_of(std::string_view stored); // without the trailing separator, "" if there is none
std::string_view name_of(std::string_view stored);

} // namespace velorn
