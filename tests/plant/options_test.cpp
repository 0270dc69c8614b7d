#include "plant/options.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace velorn::plant {
namespace {

using Arguments = std::vector<std::string_view>;

Options good(const Arguments& arguments) { return std::get<Options>(options_from(arguments)); }
std::string mistake(const Arguments& arguments) {
    const auto parsed = options_from(arguments);
    const auto* const text = std::get_if<std::string>(&parsed);
    return text == nullptr ? "" : *text;
}

TEST(PlantOptions, takeSeveralControllersWithAndWithoutALink) {
    const std::vector<std::string> wanted = {"a", "", "b"};
    EXPECT_EQ(good({"--pty", "a", "--pty", "--pty", "b", "--log"}).pseudo_terminals, wanted);
}

TEST(PlantOptions, takeFaultsWithPointOrComma) {
    const Options options = good({"--pty", "--drop", "0.25", "--garble", "0,5", "--delay", "50", "--slow",
                                  "960", "--silent-after", "10", "--hangup-after", "20", "--seed", "7"});
    EXPECT_EQ(options.faults.drop, 0.25);
    EXPECT_EQ(options.faults.garble, 0.5);
    EXPECT_EQ(options.faults.delay_ms, 50);
    EXPECT_EQ(options.faults.bytes_per_second, 960);
    EXPECT_EQ(options.faults.silent_after, 10u);
    EXPECT_EQ(options.faults.hang_up_after, 20u);
    EXPECT_EQ(options.faults.seed, 7u);
}

TEST(PlantOptions, sayInGermanWhatIsWrong) {
    EXPECT_EQ(mistake({"--pty", "--quatsch"}), "Unbekannte Option: --quatsch");
    EXPECT_EQ(mistake({"--pty", "--delay"}), "Hinter --delay fehlt Millisekunden von 0 bis 86400000.");
    EXPECT_EQ(mistake({"--pty", "--drop", "1.5"}),
              "--drop verlangt eine Wahrscheinlichkeit von 0 bis 1, nicht \"1.5\".");
    EXPECT_NE(mistake({}), "");
    EXPECT_NE(mistake({"--pty", "--drop", "nan"}), "");
    EXPECT_NE(mistake({"--pty", "--source", "-1"}), "");
    EXPECT_NE(mistake({"--pty", "--slow", "99999999999999999999"}), "");
}

TEST(PlantOptions, helpNamesEveryOption) {
    for (const char* name :
         {"--pty", "--source", "--seed", "--drop", "--repeat", "--garble", "--delay", "--slow",
          "--silent-after", "--silent-for", "--hangup-after", "--log", "--help"}) {
        EXPECT_NE(help_text().find(name), std::string_view::npos) << name;
    }
    EXPECT_TRUE(good({"--help"}).help);
}

} // namespace
} // namespace velorn::plant
