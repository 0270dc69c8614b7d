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

TEST(PlantOptions, takeFaultsOfTheDownload) {
    const Options options =
        good({"--demo", "--wrong-length", "0,1", "--frame-hangup", "1", "--range-again", "0.5"});
    EXPECT_EQ(options.download_faults.wrong_lengths, 0.1);
    EXPECT_EQ(options.download_faults.hang_ups, 1);
    EXPECT_EQ(options.download_faults.vain_repeats, 0.5);
    EXPECT_EQ(options.download_faults.wrong_dates, 0);
}

TEST(PlantOptions, takeASpeedOfTheClockFrom1To100) {
    EXPECT_EQ(good({"--demo"}).speed, 1);
    EXPECT_EQ(good({"--demo", "--zeitraffer", "100"}).speed, 100);
    for (const char* speed : {"0", "101", "1,5", "x", ""})
        EXPECT_NE(mistake({"--demo", "--zeitraffer", speed}), "") << speed;
}

TEST(PlantOptions, takeModemsAndTheDemo) {
    const Options options = good({"--modem", "m", "--modem", "--demo"});
    const std::vector<std::string> wanted = {"m", ""};
    EXPECT_EQ(options.modems, wanted);
    EXPECT_TRUE(options.demo);
}

TEST(PlantOptions, takeControllersOnTcpPortsWithAndWithoutALogin) {
    const auto places = good({"--tcp", "127.0.1.1:23", "--tcp", "127.0.1.2:1100,login=a:b:c"}).tcp;
    EXPECT_EQ(places.at(0).address, "127.0.1.1");
    EXPECT_EQ(places.at(0).port, 23);
    EXPECT_FALSE(places.at(0).login || places.at(0).peer);
    EXPECT_EQ(places.at(1).login->user, "a");
    EXPECT_EQ(places.at(1).login->password, "b:c");
}

TEST(PlantOptions, takePeersThatMisbehave) {
    const auto peer = [](const std::string& word) {
        return tcp_place_from("127.0.0.1:1," + word).value().peer.value();
    };
    EXPECT_EQ(peer("flood=100M"), (Peer{Peer::Kind::floods, 100'000'000}));
    EXPECT_EQ(peer("reset"), (Peer{Peer::Kind::resets, 0}));
    EXPECT_EQ(peer("reset=64K"), (Peer{Peer::Kind::resets, 64'000}));
    EXPECT_EQ(peer("dribble=500"), (Peer{Peer::Kind::dribbles, 500}));
    EXPECT_EQ(peer("half-close").kind, Peer::Kind::half_closes);
    EXPECT_EQ(peer("silent").kind, Peer::Kind::silent);
    EXPECT_EQ(peer("refuse").kind, Peer::Kind::refuses);
    EXPECT_EQ(peer("no-answer").kind, Peer::Kind::never_answers);
}

TEST(PlantOptions, takeAGatewayWithItsPortsAndTempers) {
    const auto places =
        good({"--gateway", "127.0.1.100", "--gateway", "127.0.0.1:2023,2024,modem1=refuse,modem2=busy"})
            .gateways;
    EXPECT_EQ(places.at(0).ports.at(0), 23);
    EXPECT_EQ(places.at(0).ports.at(1), 24);
    EXPECT_EQ(places.at(1).ports.at(1), 2024);
    EXPECT_EQ(places.at(1).behaviours.at(0), Gateway::Behaviour::refuses);
    EXPECT_EQ(places.at(1).behaviours.at(1), Gateway::Behaviour::busy);
}

TEST(PlantOptions, refusePlacesThatAreNone) {
    for (const char* word : {"",
                             ":",
                             "127.0.0.1",
                             "127.0.0.1:0",
                             "127.0.0.1:65536",
                             "127.0.0:1",
                             "127.0.0.1.1:1",
                             "256.0.0.1:1",
                             "a.b.c.d:1",
                             "127.0.0.1:1,",
                             "127.0.0.1:1,flood",
                             "127.0.0.1:1,flood=",
                             "127.0.0.1:1,flood=M",
                             "127.0.0.1:1,flood=-1",
                             "127.0.0.1:1,flood=99999999999G",
                             "127.0.0.1:1,silent=1",
                             "127.0.0.1:1,login=a",
                             "127.0.0.1:1,login=:b",
                             "127.0.0.1:1,silent,refuse",
                             "127.0.0.1:1,quatsch"}) {
        EXPECT_FALSE(tcp_place_from(word)) << word;
    }
    for (const char* word : {"", "x", "127.0.0.1:23", "127.0.0.1:23,23", "127.0.0.1:23,x",
                             "127.0.0.1,modem3=busy", "127.0.0.1,modem1", "127.0.0.1,modem1=quatsch"}) {
        EXPECT_FALSE(gateway_place_from(word)) << word;
    }
}

TEST(PlantOptions, sayInGermanWhatIsWrong) {
    EXPECT_EQ(mistake({"--pty", "--quatsch"}), "Unbekannte Option: --quatsch");
    EXPECT_EQ(mistake({"--pty", "--delay"}), "Hinter --delay fehlt Millisekunden von 0 bis 86400000.");
    EXPECT_EQ(mistake({"--pty", "--drop", "1.5"}),
              "--drop verlangt eine Wahrscheinlichkeit von 0 bis 1, nicht \"1.5\".");
    EXPECT_EQ(mistake({}),
              "Niemand erreicht die Anlage: es fehlt --pty, --tcp, --modem, --gateway oder --demo.");
    EXPECT_EQ(mistake({"--demo", "--source", "1"}), "--source braucht --pty.");
    EXPECT_TRUE(mistake({"--tcp", "hier"}).starts_with("--tcp verlangt ADRESSE:PORT"));
    EXPECT_NE(mistake({"--pty", "--drop", "nan"}), "");
    EXPECT_NE(mistake({"--pty", "--source", "-1"}), "");
    EXPECT_NE(mistake({"--pty", "--slow", "99999999999999999999"}), "");
}

TEST(PlantOptions, takeAPhoneBookWithOrWithoutAPlant) {
    const Options book =
        good({"--telefonbuch", "telefon.par", "--protokolle", "p", "--visualisierung", "c:\\Köln\\BILD.EXE"});
    EXPECT_EQ(book.phone_book, "telefon.par");
    EXPECT_EQ(book.protocols, "p");
    EXPECT_EQ(good({"--telefonbuch", "t", "--archive", "a"}).archives, "a");
    EXPECT_EQ(book.visualisation, "c:\\K\xF6ln\\BILD.EXE");
    EXPECT_FALSE(book.serves());
    EXPECT_TRUE(good({"--telefonbuch", "telefon.par", "--demo"}).serves());
}

TEST(PlantOptions, refuseWhatAPhoneBookCannotKeep) {
    EXPECT_NE(mistake({"--telefonbuch", ""}), "");
    EXPECT_NE(mistake({"--telefonbuch", "a", "--visualisierung", "c:\\bild.bat"}), "");
    EXPECT_NE(mistake({"--telefonbuch", "a", "--visualisierung", "c:\\日\\bild.exe"}), "");
    EXPECT_EQ(mistake({"--demo", "--protokolle", "p"}),
              "--protokolle, --archive und --visualisierung brauchen --telefonbuch.");
}

TEST(PlantOptions, helpNamesEveryOption) {
    for (const char* name :
         {"--pty",         "--modem",        "--tcp",           "--gateway",        "--demo",
          "login=",        "reset",          "half-close",      "flood=",           "dribble=",
          "silent",        "refuse",         "no-answer",       "modem1=",          "--source",
          "--seed",        "--drop",         "--repeat",        "--garble",         "--delay",
          "--slow",        "--silent-after", "--silent-for",    "--hangup-after",   "--log",
          "--help",        "--telefonbuch",  "--protokolle",    "--visualisierung", "--archive",
          "--zeitraffer",  "--init-garble",  "--wrong-length",  "--wrong-date",     "--packet-repeat",
          "--two-at-once", "--slow-frame",   "--frame-silence", "--frame-hangup",   "--range-again"}) {
        EXPECT_NE(help_text().find(name), std::string_view::npos) << name;
    }
    EXPECT_TRUE(good({"--help"}).help);
    EXPECT_EQ(help_text().find('@'), std::string::npos);
    EXPECT_NE(help_text().find("Gärtnerei Blüthner"), std::string::npos);
}

} // namespace
} // namespace velorn::plant
