// The screen parser and its plain make, fed alike and compared after each chunk.
#pragma once

#include "support/plain_screen.h"
#include "support/screen_rig.h"

#include <string>
#include <string_view>

namespace velorn::test {

class ScreenPair {
  public:
    ScreenRig real;
    PlainScreen plain;

    ScreenPair() {
        real.parser.screen_events.line.connect([this](int x1, int y1, int x2, int y2, bool drawn) {
            const LineEnds ends = in_pixels({x1, y1, x2, y2}, real.f.zeichenbreite, real.f.zeilenhoehe);
            real.asked.push_back("line " + std::to_string(ends.x1) + ' ' + std::to_string(ends.y1) + ' ' +
                                 std::to_string(ends.x2) + ' ' + std::to_string(ends.y2) + ' ' +
                                 (drawn ? "1" : "0"));
        });
    }

    // What differs afterwards; empty if nothing does. Every so often the screen is painted.
    std::string chunk(std::string_view bytes, bool over_tcp, bool capture_taken, bool painted) {
        real.parser.feed(bytes, over_tcp, capture_taken);
        plain.feed(bytes, over_tcp, capture_taken);
        std::string differences = compared();
        if (painted) {
            real.painter.paint();
            real.canvas.forget();
            plain.painted();
        }
        return differences;
    }

  private:
    std::string compared() {
        std::string all;
        const ScreenState& s = real.parser.state;
        const auto same = [&all](const char* what, long a, long b) {
            if (a != b)
                all += std::string(what) + ": " + std::to_string(a) + ", plain " + std::to_string(b) + "\n";
        };
        same("row", real.f.zeile, plain.row);
        same("column", real.f.spalte, plain.column);
        same("state", real.f.fbzustand, plain.state);
        same("kept row", s.merkzeile, plain.kept_row);
        same("kept column", s.merkspalte, plain.kept_column);
        same("changes", s.aenderungen, plain.changes);
        same("highest row", s.maxzeile, plain.highest_row);
        same("cursor", real.f.cursorinv, plain.cursor_shown);
        same("blocks", s.blockmarke, plain.blocks);
        same("calendar", s.kalender, plain.calendar);
        same("inverse", s.inversan, plain.inverse);
        same("graph", s.graph96an, plain.graph);
        same("red", s.rotan, plain.red);
        same("red used", s.rotgenutzt, plain.red_used);
        for (int row = 0; row <= Schirm::rows; ++row) {
            for (int column = 0; column <= Schirm::columns; ++column) {
                const bool equal = real.character(column, row) == plain.character(column, row) &&
                                   real.attribute(column, row) == plain.attribute(column, row) &&
                                   (column == 0 || real.mark(column, row) == plain.mark(column, row));
                if (!equal) all += "cell " + std::to_string(column) + ", " + std::to_string(row) + "\n";
            }
        }
        if (real.asked != plain.asked) all += "asked of others\n";
        real.asked.clear();
        plain.asked.clear();
        return all;
    }
};

} // namespace velorn::test
