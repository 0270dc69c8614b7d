// The shell's commands as a table: word, what HELP says about it, and the function that answers.
#pragma once

#include "plant/machine.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velorn::plant {

// A part of an answer: what is said (UTF-8, lines ending in CR LF) and how long the controller works before
// it.
struct Step {
    std::int64_t after_ms = 0;
    std::string text;
};
using Answer = std::vector<Step>;

using Words = std::vector<std::string>; // upper case, the first one is the command's own

struct Command {
    std::string_view word;
    std::string_view usage; // UTF-8
    std::string_view help;  // UTF-8, empty: HELP is silent about it
    Answer (*answer)(Machine& machine, const Words& words);
};

std::span<const Command> commands();

// Runs one command line, never empty; an unknown command is answered with an error line.
Answer run_command(Machine& machine, std::string_view line);

// The commands of a line: parted at "--", a definition at its ';'. Blank ones are left out.
std::vector<std::string> parted(std::string_view line);

} // namespace velorn::plant
