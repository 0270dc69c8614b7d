// What becomes of an open archive when the program is closed.
#include "runtime/text.h"
#include "support/block_files.h"
#include "support/faulty_files.h"
#include "support/test_program.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

struct OpenArchive : testing::Test {
    static constexpr const char* path = "c:\\gelmar.dat";
    TestProgramOn<BlockFiles> p;
    Archive& archive = p.program.archive;

    void SetUp() override {
        p.start();
        ASSERT_TRUE(archive.create(path, 2026, 30, p.loop.local_time()));
        archive.close();
        p.program.telefonbuch[0].viertdatei = path;
        p.module1.telindex = 0;
        p.frmTerminal.tbrToolBar("grafick").Click();
        p.loop.pass(500);
        ASSERT_TRUE(p.program.frmgrafick.archivgeladen);
        archive.set_daten(0, 5, 4, 3, 2, 17.5F);
    }
    float stored() {
        Archive other(p.files);
        (void)other.open(path);
        return other.daten(0, 5, 4, 3, 2);
    }
};

} // namespace

TEST_F(OpenArchive, isSavedWhenTheMainWindowIsClosed) {
    EXPECT_EQ(stored(), -997.0F);
    p.program.start.Form_QueryUnload();
    EXPECT_TRUE(p.loop.ended());
    EXPECT_FALSE(archive.is_open());
    EXPECT_EQ(stored(), 17.5F);
}

TEST_F(OpenArchive, isSavedEvenWhereItsWindowIsHidden) {
    p.frmTerminal.tbrToolBar("grafick").Click();
    ASSERT_FALSE(p.program.frmgrafick.form.Visible);
    p.program.start.Form_QueryUnload();
    EXPECT_EQ(stored(), 17.5F);
}

TEST_F(OpenArchive, keepsTheProgramOpenWhereItCannotBeSaved) {
    ASSERT_TRUE(p.files.remove(path));
    p.dialogs.expect("", 48, Answer::ok);
    p.program.start.Form_QueryUnload();
    EXPECT_FALSE(p.loop.ended());
    EXPECT_TRUE(p.program.frmgrafick.geladen);
    EXPECT_EQ(p.terminal().find("ENDE"), std::string::npos);
}

TEST_F(OpenArchive, isNotSavedByTheMenusEnd) {
    press(p.frmTerminal.mnuFileExit);
    EXPECT_TRUE(p.loop.ended());
    EXPECT_EQ(stored(), -997.0F);
}

} // namespace velorn::test
