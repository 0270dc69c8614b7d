#include "runtime/rich_text_box.h"

#include <gtest/gtest.h>
#include <vector>

namespace velorn {
namespace {

// A box and a view that knows nothing but its edits.
struct Watched {
    RichTextBox box;
    std::string shown;
    std::vector<std::string> edits;

    Watched() {
        box.on_edit = [this](const RichTextBox::Edit& edit) {
            shown.replace(edit.position, edit.removed, edit.inserted);
            edits.push_back(std::to_string(edit.position) + " -" + std::to_string(edit.removed) + " +" +
                            std::string(edit.inserted));
        };
    }
    ~Watched() { EXPECT_EQ(shown, box.Text()); }
};

using Edits = std::vector<std::string>;

TEST(RichTextBox, insertsAtTheSelectionAndStandsBehindIt) {
    Watched watched;
    watched.box.set_Text("Anlage");
    watched.box.select(2);
    watched.box.set_SelText("xy");
    watched.box.set_SelText("z");
    EXPECT_EQ(watched.box.Text(), "Anxyzlage");
    EXPECT_EQ(watched.box.SelStart(), 5U);
    EXPECT_EQ(watched.edits, (Edits{"0 -0 +Anlage", "2 -0 +xy", "4 -0 +z"}));
}

TEST(RichTextBox, replacesWhatIsSelected) {
    Watched watched;
    watched.box.set_Text("0123456789");
    watched.box.select(3, 4);
    watched.box.set_SelText("-");
    EXPECT_EQ(watched.box.Text(), "012-789");
    EXPECT_EQ(watched.box.SelStart(), 4U);
    EXPECT_EQ(watched.box.SelLength(), 0U);
    EXPECT_EQ(watched.edits.back(), "3 -4 +-");
}

TEST(RichTextBox, appendsAtTheEndWhereverTheSelectionStood) {
    Watched watched;
    watched.box.set_Text("abc");
    watched.box.select(0, 2);
    watched.box.append("def");
    EXPECT_EQ(watched.box.Text(), "abcdef");
    EXPECT_EQ(watched.box.SelStart(), 6U);
    EXPECT_EQ(watched.edits.back(), "3 -0 +def");
}

TEST(RichTextBox, keepsTheSelectionWithinTheText) {
    Watched watched;
    watched.box.set_Text("abc");
    watched.box.select(1, 99);
    EXPECT_EQ(watched.box.SelLength(), 2U);
    watched.box.select(99, 99);
    EXPECT_EQ(watched.box.SelStart(), 3U);
    EXPECT_EQ(watched.box.SelLength(), 0U);
    watched.box.select(1, std::string::npos);
    EXPECT_EQ(watched.box.SelLength(), 2U);
}

TEST(RichTextBox, aNewTextPutsTheSelectionInFront) {
    Watched watched;
    watched.box.append("alt");
    watched.box.set_Text("neuer");
    EXPECT_EQ(watched.box.SelStart(), 0U);
    EXPECT_EQ(watched.edits.back(), "0 -3 +neuer");
}

TEST(RichTextBox, theSelectionMovesWithWhatIsRemovedInFront) {
    Watched watched;
    watched.box.set_Text("0123456789");
    watched.box.select(6, 2);
    watched.box.remove_front(4);
    EXPECT_EQ(watched.box.Text(), "456789");
    EXPECT_EQ(watched.box.SelStart(), 2U);
    EXPECT_EQ(watched.box.SelLength(), 2U);
}

TEST(RichTextBox, aSelectionLosesItsPartOfWhatIsRemovedInFront) {
    Watched watched;
    watched.box.set_Text("0123456789");
    watched.box.select(2, 5);
    watched.box.remove_front(4);
    EXPECT_EQ(watched.box.SelStart(), 0U);
    EXPECT_EQ(watched.box.SelLength(), 3U);
}

TEST(RichTextBox, removesNoMoreThanThereIs) {
    Watched watched;
    watched.box.set_Text("abc");
    watched.box.remove_front(99);
    EXPECT_EQ(watched.box.Text(), "");
    EXPECT_EQ(watched.edits.back(), "0 -3 +");
}

TEST(RichTextBox, whatChangesNothingTellsNobody) {
    Watched watched;
    watched.box.set_SelText("");
    watched.box.append("");
    watched.box.remove_front(0);
    watched.box.set_Text("");
    EXPECT_EQ(watched.edits, Edits{});
}

TEST(RichTextBox, worksWithoutAView) {
    RichTextBox box;
    box.append("abc");
    box.remove_front(1);
    EXPECT_EQ(box.Text(), "bc");
    EXPECT_EQ(box.length(), 2U);
}

} // namespace
} // namespace velorn
