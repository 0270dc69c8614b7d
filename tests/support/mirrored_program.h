// A program in remote control, with a recorder in the mirrored display's place.
#pragma once

#include "support/test_program.h"

namespace velorn::test {

struct MirroredProgram : TestProgram {
    RecorderCanvas canvas;

    MirroredProgram() {
        start();
        frmTerminal.Picture1.canvas = &canvas;
        receive("*FERNBED");
    }
};

// A text at a place of the mirrored display, row 1 to 24, column 1 to 80.
inline std::string put(int row, int column, const std::string& text) {
    return std::string("\x1b=") + static_cast<char>(row + 31) + static_cast<char>(column + 31) + text;
}

} // namespace velorn::test
