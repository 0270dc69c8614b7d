#include "support/settings_samples.h"
#include "support/test_program.h"

#include <gtest/gtest.h>

namespace velorn::test {

TEST(TheRecovery, resetsItsElevenValuesAndThePhoneBooksPathAlone) {
    TestProgram p;
    Settings before = user_settings();
    before.fbschrift = ""; // refused
    before.letztepfade[0] = "d:\\bleibt";
    before.letztepfade2[0] = "d:\\bleibt auch";
    p.files.set_content("c:\\velorn\\einst.par", file_of(einst_fields(), before));
    p.program.start.Form_Load();
    const Settings& s = p.settings;
    for (std::size_t i = 1; i <= 4; ++i) {
        EXPECT_EQ(s.letztepfade[i].text(), "c:\\");
        EXPECT_EQ(s.letztepfade2[i].text(), "c:\\");
    }
    EXPECT_EQ(s.letztepfade[0].text(), "d:\\bleibt");
    EXPECT_EQ(s.letztepfade2[0].text(), "d:\\bleibt auch");
    const std::pair<const Variant*, Variant> reset[] = {
        {&s.fbschrift, "Courier New"},   {&s.fbschriftgr, std::int16_t{14}},
        {&s.comsettings, "19200,n,8,1"}, {&s.comport, "1"},
        {&s.comhandshake, "1"},          {&s.comecho, false},
        {&s.anrufer, "Benutzer"},        {&s.modeminit, "e1"},
        {&s.telscroll, std::int16_t{0}}, {&s.telefonpfad, "c:\\velorn\\telefon.par"}};
    for (std::size_t i = 0; i < std::size(reset); ++i)
        EXPECT_TRUE(identical(*reset[i].first, reset[i].second)) << i;
    before.neustartzaehler = std::int16_t{42};
    Settings after = s;
    for (const SettingsField& field : einst_fields().subspan(13)) {
        if (field.plain != nullptr) {
            EXPECT_EQ(field.plain(after), field.plain(before)) << field.name;
            continue;
        }
        for (std::size_t i = 0; i < field.variants(after).size(); ++i)
            EXPECT_TRUE(identical(field.variants(after)[i], field.variants(before)[i])) << field.name << i;
    }
}

} // namespace velorn::test
