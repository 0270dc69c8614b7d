// The agreements of this code base that no compiler knows, as functions over (path, text) pairs: which floor
// may include which, who may turn the event loop, who may ask for the time. Each finding names file, line and
// remedy. The functions touch no disk; read_sources() below brings them the real files, tests bring small
// made-up ones.
#pragma once

#include <filesystem>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::house {

struct SourceFile {
    std::string path; // from the repository's root, with '/': "src/core/module1.h"
    std::string text;
};
using Sources = std::vector<SourceFile>;

struct Finding {
    std::string path;
    int line = 0; // one-based; 0 means the file as a whole
    std::string remedy;
};
using Findings = std::vector<Finding>;

std::ostream& operator<<(std::ostream& out, const Finding& finding);

// A file of src/ includes only from its own folder and from floors below it; plant/ includes runtime/ and
// itself.
Findings includes_that_point_up(const Sources& sources);

// Toolkit headers (<Q...>, "q...") stand in src/desktop/, tests/desktop/ and bench/ only; logic tests don't
// include desktop/ either.
Findings toolkit_below_the_desktop(const Sources& sources);

// Files of src/ and plant/ that include each other in a circle; each circle once.
Findings include_circles(const Sources& sources);

// Turning, sleeping and blocking happen inside the event loop's own files only.
Findings loops_beside_the_loop(const Sources& sources);

// The operating system is asked for the time by the makes of the event loop only.
Findings time_beside_the_loop(const Sources& sources);

// Files of src/ and plant/ with more than 700 lines.
Findings rooms_too_large(const Sources& sources);

// Variables of src/ and plant/ that live outside every object and can change: at namespace scope, or static.
Findings mutable_globals(const Sources& sources);

// The text with comments and the insides of literals blanked out; lines and columns stay where they are. The
// names on #include lines stay readable.
std::string without_comments_and_literals(std::string_view text);

// All .h and .cpp files below the folders src, plant, tests, bench and fuzz of the repository, in order of
// path.
Sources read_sources(const std::filesystem::path& repository);

} // namespace velorn::house
