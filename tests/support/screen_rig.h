// The screen parser with its painter and a recorder in the picture's place, and a log of what the stream asks
// of others.
#pragma once

#include "core/frm_terminal.h"
#include "core/settings.h"
#include "runtime/virtual_event_loop.h"
#include "terminal/screen_painter.h"
#include "terminal/screen_parser.h"

#include <string>
#include <utility>
#include <vector>

namespace velorn::test {

struct ScreenRig {
    VirtualEventLoop loop;
    Settings settings;
    FrmTerminal f{loop};
    ScreenParser parser{loop, f};
    ScreenPainter painter{f, settings, parser};
    RecorderCanvas canvas;
    std::vector<std::string> asked;

    ScreenRig() {
        settings.korrinv = std::int16_t{0};
        settings.fbfarbe = std::int16_t{1};
        f.zeichenbreite = 12;
        f.zeilenhoehe = 19;
        f.Picture1.FontName = "Courier";
        f.Picture1.BackColor = f.Picture1.FillColor = colour::rgb(0, 0, 192);
        f.Picture1.ForeColor = colour::rgb(255, 255, 0);
        f.Picture1.canvas = &canvas;
        ScreenEvents& events = parser.screen_events;
        events.new_screen.connect([this] { asked.emplace_back("new screen"); });
        events.calendar.connect([this] { asked.emplace_back("calendar"); });
        events.capture_begins.connect([this] { asked.emplace_back("capture"); });
        events.log_wanted.connect([this](bool tcp) { asked.emplace_back(tcp ? "log over tcp" : "log"); });
        events.evaluation_wanted.connect([this] { asked.emplace_back("evaluation"); });
        events.day_graph.connect(
            [this](std::string_view text) { asked.push_back("graph:" + std::string(text)); });
    }

    // As it comes from the serial line, and painted.
    void feed(std::string_view chunk) {
        parser.feed(chunk, false);
        painter.paint();
    }
    void put_cursor(int row, int column) {
        f.zeile = static_cast<std::int16_t>(row);
        f.spalte = static_cast<std::int16_t>(column);
    }

    std::string row(int number) const { return std::string(f.schirm.text(number, 1, Schirm::columns)); }
    // Without the blanks at its end.
    std::string text(int number) const {
        std::string line = row(number);
        line.erase(line.find_last_not_of(' ') + 1);
        return line;
    }
    char character(int column, int row) const { return f.schirm.at(Schirm::character, column, row); }
    char attribute(int column, int row) const { return f.schirm.at(Schirm::attribute, column, row); }
    char mark(int column, int row) const { return f.schirm.at(Schirm::mark, column, row); }
    std::pair<int, int> cursor() const { return {f.zeile, f.spalte}; } // row, column
    int state() const { return f.fbzustand; }
    std::vector<std::string> strokes() {
        std::vector<std::string> all = canvas.strokes();
        canvas.forget();
        return all;
    }
};

} // namespace velorn::test
