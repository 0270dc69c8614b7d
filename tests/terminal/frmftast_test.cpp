#include "support/test_program.h"
#include "terminal/frmftast.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

int cyan_boxes(const Frmftast& f) {
    int count = 0;
    for (std::size_t i = 1; i <= 12; ++i) {
        count += f.ftast[i].BackColor == colour::cyan;
        count += f.altftast[i].BackColor == colour::cyan;
    }
    return count;
}

} // namespace

TEST(Frmftast, opensCentredWithTheStoredTexts) {
    Settings settings;
    for (std::size_t i = 1; i <= 12; ++i) {
        settings.ftast[i] = "f" + std::to_string(i);
        settings.altftast[i] = std::int16_t(i);
    }
    Frmftast f(settings);
    f.Form_Load({1366, 768});
    EXPECT_EQ(f.form.Caption.get(), "Velorn Funktionstastenbelegung");
    EXPECT_EQ(f.form.Left.get(), (1366 - f.form.Width) / 2);
    EXPECT_EQ(f.form.Top.get(), (768 - f.form.Height) / 2);
    for (std::size_t i = 1; i <= 12; ++i) {
        EXPECT_EQ(f.ftast[i].Text.get(), "f" + std::to_string(i));
        EXPECT_EQ(f.altftast[i].Text.get(), std::to_string(i));
    }
    EXPECT_EQ(cyan_boxes(f), 0);
}

TEST(Frmftast, onlyTheBoxWithTheFocusIsCyan) {
    Settings settings;
    Frmftast f(settings);
    f.Form_Load({800, 600});
    f.ftast[2].GotFocus();
    EXPECT_EQ(f.ftast[2].BackColor.get(), 0xFFFF00U);
    f.altftast[12].GotFocus();
    EXPECT_EQ(f.altftast[12].BackColor.get(), 0xFFFF00U);
    EXPECT_EQ(f.ftast[2].BackColor.get(), 0xFFFFFFU);
    EXPECT_EQ(cyan_boxes(f), 1);
}

TEST(Frmftast, okStoresAll24Texts) {
    Settings settings;
    Frmftast f(settings);
    f.Form_Load({800, 600});
    f.form.Visible = true;
    for (std::size_t i = 1; i <= 12; ++i) {
        f.ftast[i].Text = "f" + std::to_string(i);
        f.altftast[i].Text = "c" + std::to_string(i);
    }
    f.cmdOK.Click();
    EXPECT_FALSE(f.form.Visible);
    for (std::size_t i = 1; i <= 12; ++i) {
        EXPECT_EQ(settings.ftast[i].text(), "f" + std::to_string(i));
        EXPECT_EQ(settings.altftast[i].text(), "c" + std::to_string(i));
    }
}

TEST(Frmftast, okKeepsTheTagsOfWhatWasNotChanged) {
    Settings settings;
    settings.ftast[2] = std::int16_t{7};
    settings.ftast[3] = std::int16_t{7};
    Frmftast f(settings);
    f.Form_Load({800, 600});
    f.ftast[3].Text = "8";
    f.cmdOK.Click();
    EXPECT_EQ(settings.ftast[1].tag(), Variant::Tag::empty);
    EXPECT_EQ(settings.ftast[2].tag(), Variant::Tag::i16);
    EXPECT_TRUE(identical(settings.ftast[3], Variant("8")));
}

TEST(Frmftast, cancelStoresNothing) {
    Settings settings;
    Frmftast f(settings);
    f.Form_Load({800, 600});
    f.form.Visible = true;
    f.ftast[1].Text = "x";
    f.cmdCancel.Click();
    EXPECT_FALSE(f.form.Visible);
    EXPECT_TRUE(settings.ftast[1].empty());
    f.Form_Load({800, 600});
    EXPECT_EQ(f.ftast[1].Text.get(), "");
}

TEST(Frmftast, itsMenuCommandSavesTheSettingsWhenItCloses) {
    TestProgram p;
    p.start();
    const std::string einst = std::string(TestProgram::folder) + "\\einst.par";
    const std::string before = p.files.content(einst);
    p.loop.post([&] {
        EXPECT_TRUE(p.program.frmftast.form.Visible);
        p.program.frmftast.ftast[4].Text = "<01>lu<13>";
        p.program.frmftast.cmdOK.Click();
    });
    press(p.frmTerminal.mnuftast);
    EXPECT_NE(p.files.content(einst), before);
    EXPECT_NE(p.files.content(einst).find("<01>lu<13>"), std::string::npos);
}

} // namespace velorn::test
