// A controller that wishes, in the middle of its mirrored display, that the evaluation fetch what is new.
#include "plant/demo_book.h"
#include "plant/quarter_values.h"
#include "runtime/text.h"
#include "support/block_files.h"
#include "support/plant_network.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

using ::testing::HasSubstr;

constexpr std::size_t on_tcp = 2; // in the directory
constexpr const char* path = "c:\\archiv.dat";

struct ControllersWish : testing::Test {
    TestProgramOn<BlockFiles> p;
    PlantNetwork plant{p};

    ControllersWish() {
        p.start();
        p.settings.telefonpfad = "c:\\telefon.par";
        p.settings.anrufer = "Techniker";
        p.settings.fbautostart = std::int16_t{1};
        p.settings.lanaktiv = std::int16_t{0};
        (void)decode_telefonbuch(plant::phone_book(plant.sites.directory(), {true, ""}),
                                 p.program.telefonbuch);
        p.program.telefonbuch[on_tcp + 1].viertdatei = path;
        p.program.phonebook_files.save_telefonbuch();
        p.program.phonebook_files.save_dispaufnahmen();
        Archive archive(p.files);
        EXPECT_TRUE(archive.create(path, 2026, 30, p.loop.local_time()));
        // As a download of the ordinary kind has left it; the newest come without saying how many they are.
        archive.exportspuren = static_cast<std::int16_t>(plant.sites.directory().sites()[on_tcp].tracks);
        EXPECT_TRUE(archive.save());
        archive.close();
        p.program.phonebook_window.Form_Load();
        p.program.phonebook_lines.show(static_cast<int>(on_tcp) + 1);
        p.program.dialling.Command1_Click();
        p.loop.pass(10'000);
    }
    std::string row(int number) const { return std::string(p.frmTerminal.schirm.text(number, 1, 80)); }
};

} // namespace

TEST_F(ControllersWish, opensTheEvaluationFetchesTheNewestAndClosesIt) {
    ASSERT_THAT(row(3), HasSubstr("Hauptmenü"_w));
    (void)p.tcp.take_written();
    p.program.keys.Form_KeyPress('A');
    p.loop.pass(2000);
    EXPECT_THAT(p.tcp.take_written(), HasSubstr("\x01"
                                                "DUE5\r"));
    p.loop.pass(120'000);
    EXPECT_FALSE(p.program.frmgrafick.geladen);
    EXPECT_FALSE(p.module1.grafikfern);
    EXPECT_TRUE(p.frmTerminal.fernbedaktiv) << "the display goes on";

    const plant::Site& site = plant.sites.directory().sites()[on_tcp];
    const plant::Recording recording{site.seed, site.tracks};
    Archive archive(p.files);
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(p.program.frmgrafick.neuwerte, 96);
    for (int track = 1; track <= 3; ++track)
        EXPECT_EQ(archive.daten(0, 11, 15, 45, track),
                  plant::stored(recording, track, {days_from_civil(2026, 11, 15), 45}));
}

} // namespace velorn::test
