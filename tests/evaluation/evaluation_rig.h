// The evaluation window by itself, over an archive of 30 tracks from 2008 on in which nothing has a value
// yet.
#pragma once

#include "archive/archive_layout.h"
#include "archive/archive_samples.h"
#include "evaluation/evaluation.h"
#include "runtime/canvas.h"
#include "runtime/virtual_event_loop.h"
#include "support/block_files.h"
#include "support/fake_printer.h"
#include "support/scripted_dialogs.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace velorn::test {

struct EvaluationRig : testing::Test {
    static constexpr int narrow = 1024; // pixels: 30 rows
    static constexpr int wide = 1920;   // 60 rows
    static constexpr std::int16_t startjahr = 2008;

    VirtualEventLoop loop;
    BlockFiles files;
    ScriptedDialogs dialogs{loop};
    FakePrinter printer;
    Module1 module1;
    FrmGrafick f{loop};
    Archive archive{files};
    RecorderCanvas screen;
    std::unique_ptr<Evaluation> evaluation;

    EvaluationRig() { opens(30, narrow); }

    EvaluationControls& c() { return evaluation->controls; }

    void opens(std::int16_t tracks, int width, std::int16_t from = startjahr) {
        make_sparse_archive(files, tracks, 2);
        archive.close();
        ASSERT_TRUE(archive.open(archive_path));
        archive.startjahr = from;
        for (auto& visible : archive.spursichtbar) visible = false;
        for (auto& visible : archive.bspursichtbar) visible = false;
        f.geladen = true;
        ++f.opening;
        f.tagsel = 15;
        f.monsel = 3;
        f.jahrsel = from;
        evaluation =
            std::make_unique<Evaluation>(loop, dialogs, printer, ScreenSize{width, 768}, module1, f, archive);
        c().Picture1.canvas = &screen;
        evaluation->archive_opened();
        screen.forget();
    }

    void shows(int track, Colour colour = colour::red) {
        archive.spursichtbar[static_cast<std::size_t>(track)] = true;
        archive.spurfarben[static_cast<std::size_t>(track)] = static_cast<std::int32_t>(colour);
    }
    void shows_calculated(int track) { archive.bspursichtbar[static_cast<std::size_t>(track)] = true; }
    void selects(int day, int month, int year) {
        f.tagsel = static_cast<std::int16_t>(day);
        f.monsel = static_cast<std::int16_t>(month);
        f.jahrsel = static_cast<std::int16_t>(year);
    }
    CalendarDay selected() const { return {f.tagsel, f.monsel, f.jahrsel}; }

    float value(const CalendarDay& day, int quarter, int track) {
        return archive.daten(day.jahr - first_year(archive), day.mon, day.tag, quarter, track);
    }
    void set(const CalendarDay& day, int quarter, int track, float value) {
        archive.set_daten(day.jahr - first_year(archive), day.mon, day.tag, quarter, track, value);
    }
    void set_calculated(const CalendarDay& day, int quarter, int track, float value) {
        archive.set_rechdaten(day.jahr - first_year(archive), day.mon, day.tag, quarter, track, value);
    }
    // Nothing of a track has been transferred in these days.
    void clear(CalendarDay day, int days, int track) {
        for (; days > 0; --days, ++day.tag) {
            day = kalenderdatum(day, first_year(archive));
            for (int quarter = 1; quarter <= 96; ++quarter) set(day, quarter, track, -997);
        }
    }

    // All strokes of a new drawing, and those that begin with some words.
    std::vector<std::string> drawing() {
        screen.forget();
        evaluation->neuzeichnen();
        return screen.strokes();
    }
    std::vector<std::string> lines_of(const std::string& colour) {
        std::vector<std::string> found;
        for (const std::string& stroke : drawing()) {
            if (stroke.starts_with("line") && stroke.ends_with(colour)) found.push_back(stroke);
        }
        return found;
    }
    std::vector<std::string> texts() {
        std::vector<std::string> found;
        for (const std::string& stroke : drawing()) {
            if (stroke.starts_with("text")) found.push_back(stroke);
        }
        return found;
    }
};

} // namespace velorn::test
