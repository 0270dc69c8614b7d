#include "runtime/controls.h"

#include <gtest/gtest.h>
#include <vector>

namespace velorn {
namespace {

TEST(Control, anAssignmentFiresTheEventAndTellsTheViewOnce) {
    TextBox box;
    int events = 0;
    int views = 0;
    box.Change = [&] { ++events; };
    box.on_change = [&] { ++views; };
    box.Text = "a";
    EXPECT_EQ(events, 1);
    EXPECT_EQ(views, 1);
}

TEST(Control, anAssignmentThatChangesNothingTellsNobody) {
    CheckBox box;
    int told = 0;
    box.Value = true;
    box.Click = [&] { ++told; };
    box.on_change = [&] { ++told; };
    box.Value = true;
    box.Visible = true;
    EXPECT_EQ(told, 0);
}

TEST(Control, theEventSeesTheNewValueWithinTheAssignment) {
    TextBox box;
    std::string seen;
    box.Change = [&] { seen = box.Text; };
    box.Text = "neu";
    EXPECT_EQ(seen, "neu");
}

TEST(Control, theViewIsToldBeforeTheEventRuns) {
    CheckBox box;
    std::vector<std::string> told;
    box.Click = [&] { told.emplace_back("event"); };
    box.on_change = [&] { told.emplace_back("view"); };
    box.Value = true;
    EXPECT_EQ(told, (std::vector<std::string>{"view", "event"}));
}

TEST(Control, anEventMaySetItsOwnPropertyAgain) {
    TextBox box;
    int events = 0;
    box.Change = [&] {
        ++events;
        if (box.Text.get().size() > 3) box.Text = box.Text.get().substr(0, 3);
    };
    box.Text = "12345";
    EXPECT_EQ(box.Text.get(), "123");
    EXPECT_EQ(events, 2);
}

TEST(Control, otherPropertiesTellTheViewAndRaiseNoEvent) {
    TextBox box;
    int events = 0;
    int views = 0;
    box.Change = [&] { ++events; };
    box.on_change = [&] { ++views; };
    box.BackColor = colour::red;
    box.Enabled = false;
    box.ToolTipText = "Hinweis";
    EXPECT_EQ(events, 0);
    EXPECT_EQ(views, 3);
}

TEST(Control, takesValuesWithoutViewOrEvent) {
    CheckBox box;
    box.Value = true;
    EXPECT_TRUE(box.Value);
}

TEST(Control, isVisibleAndEnabledFromTheStartAndAFormIsNot) {
    EXPECT_TRUE(Label("x").Visible);
    EXPECT_TRUE(Button("x").Enabled);
    EXPECT_FALSE(Form().Visible);
    EXPECT_EQ(Button("Ja").Caption.get(), "Ja");
}

TEST(Colour, isBlueGreenRed) {
    EXPECT_EQ(colour::rgb(192, 0, 255), 0xFF00C0U);
    EXPECT_EQ(colour::rgb(255, 0, 0), colour::red);
    EXPECT_EQ(colour::rgb(0, 0, 255), colour::blue);
}

} // namespace
} // namespace velorn
