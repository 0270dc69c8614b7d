// The evaluation window over an archive of 30 tracks, with its download panel open, at the serial line.
#pragma once

#include "archive/download.h"
#include "support/block_files.h"
#include "support/test_program.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

namespace velorn::test {

// What ends a frame, and what the controller says between the frames.
inline const std::string d4 = "\x1b\x1b"
                              "D4";
inline const std::string d5 = "\x1b\x1b"
                              "D5";
inline const std::string d6 = "\x1b\x1b"
                              "D6";
inline const std::string d7 = "\x1b\x1b"
                              "D7";
inline constexpr const char* path = "c:\\archiv.dat";

struct DownloadRig : testing::Test {
    TestProgramOn<BlockFiles> p;
    FrmGrafick& f = p.program.frmgrafick;
    Archive& archive = p.program.archive;

    DownloadRig() { p.start(); }
    void opens(std::int16_t startjahr = 2026) {
        ASSERT_TRUE(archive.create(path, startjahr, 30, p.loop.local_time()));
        archive.close();
        shows();
    }
    void shows() {
        p.program.telefonbuch[0].viertdatei = path;
        p.module1.telindex = 0;
        p.program.archive_window.show();
        p.loop.pass(500);
        f.opendathol.Click();
    }
    void begins(int mode) {
        f.optuebertrag.select(mode);
        f.download.Click();
        (void)p.sent();
    }
    // As far as the controller's data begin.
    void initialised(int mode, const std::string& initialisation) {
        begins(mode);
        p.receive(initialisation);
        p.loop.pass(2000);
        p.receive(d6);
        (void)p.sent();
    }
};

} // namespace velorn::test
