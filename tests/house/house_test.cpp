#include "house/house_rules.h"

#include <gtest/gtest.h>
#include <sstream>

namespace velorn::house {
namespace {

std::string told(const Findings& findings) {
    std::ostringstream text;
    for (const Finding& finding : findings) text << finding << '\n';
    return text.str();
}

const Sources& house() {
    static const Sources sources = read_sources(VELORN_SOURCE_FOLDER);
    return sources;
}

std::size_t found_in(Findings (*rule)(const Sources&), std::string path, std::string text) {
    return rule({{std::move(path), std::move(text)}}).size();
}

// ---- the house as it stands ----

TEST(House, isFound) { EXPECT_GT(house().size(), 20U); }
TEST(House, includesPointDown) { EXPECT_EQ(told(includes_that_point_up(house())), ""); }
TEST(House, keepsTheToolkitOnItsTopFloor) { EXPECT_EQ(told(toolkit_below_the_desktop(house())), ""); }
TEST(House, hasNoIncludeCircles) { EXPECT_EQ(told(include_circles(house())), ""); }
TEST(House, waitsInOnePlace) { EXPECT_EQ(told(loops_beside_the_loop(house())), ""); }
TEST(House, takesTheTimeFromTheLoop) { EXPECT_EQ(told(time_beside_the_loop(house())), ""); }
TEST(House, hasRoomsOfComfortableSize) { EXPECT_EQ(told(rooms_too_large(house())), ""); }
TEST(House, hasNoMutableGlobals) { EXPECT_EQ(told(mutable_globals(house())), ""); }

// ---- the rules can be seen to fail ----

TEST(Includes, upwardsAreFoundWithFileLineAndRemedy) {
    const Findings found =
        includes_that_point_up({{"src/core/module1.h", "#pragma once\n#include \"links/port.h\"\n"}});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].path, "src/core/module1.h");
    EXPECT_EQ(found[0].line, 2);
    EXPECT_NE(found[0].remedy.find("links/port.h"), std::string::npos);
}

TEST(Includes, downwardsAndWithinTheFloorAreFine) {
    EXPECT_EQ(
        found_in(includes_that_point_up, "src/links/a.cpp",
                 "#include \"links/a.h\"\n#include \"core/b.h\"\n#include \"runtime/c.h\"\n#include <map>\n"),
        0U);
}

TEST(Includes, neighboursOnTheSameFloorAreUpwards) {
    EXPECT_EQ(found_in(includes_that_point_up, "src/export/a.cpp", "#include \"evaluation/b.h\"\n"), 1U);
    EXPECT_EQ(found_in(includes_that_point_up, "src/panels/a.cpp", "#include \"accessories/b.h\"\n"), 1U);
}

TEST(Includes, inAFolderWithoutAFloorAreFound) {
    EXPECT_EQ(found_in(includes_that_point_up, "src/misc/a.cpp", ""), 1U);
}

TEST(Includes, ofThePlantEndAtRuntime) {
    EXPECT_EQ(found_in(includes_that_point_up, "plant/a.cpp", "#include \"runtime/text.h\"\n"), 0U);
    EXPECT_EQ(found_in(includes_that_point_up, "plant/a.cpp", "#include \"core/module1.h\"\n"), 1U);
}

TEST(Includes, inACommentDoNotCount) {
    EXPECT_EQ(found_in(includes_that_point_up, "src/core/a.h", "// #include \"app/program.h\"\n"), 0U);
}

TEST(Toolkit, isFoundBelowTheDesktopInThePlantAndInLogicTests) {
    EXPECT_EQ(found_in(toolkit_below_the_desktop, "src/app/a.cpp", "#include <QWidget>\n"), 1U);
    EXPECT_EQ(found_in(toolkit_below_the_desktop, "plant/a.cpp", "#include <QtCore/QString>\n"), 1U);
    EXPECT_EQ(found_in(toolkit_below_the_desktop, "tests/core/a.cpp", "#include \"qstring.h\"\n"), 1U);
    EXPECT_EQ(found_in(toolkit_below_the_desktop, "tests/core/a.cpp", "#include \"desktop/style.h\"\n"), 1U);
}

TEST(Toolkit, isAtHomeOnTheDesktop) {
    EXPECT_EQ(found_in(toolkit_below_the_desktop, "src/desktop/a.cpp", "#include <QWidget>\n"), 0U);
    EXPECT_EQ(found_in(toolkit_below_the_desktop, "src/core/a.cpp", "#include <queue>\n"), 0U);
}

TEST(Circles, areToldOnceWithTheirWholeWay) {
    const Findings found = include_circles({{"src/core/a.h", "#include \"core/b.h\"\n"},
                                            {"src/core/b.h", "#include \"core/c.h\"\n"},
                                            {"src/core/c.h", "#include \"core/a.h\"\n"}});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_NE(found[0].remedy.find("src/core/a.h -> src/core/b.h -> src/core/c.h -> src/core/a.h"),
              std::string::npos);
}

TEST(Circles, areNotTwoWaysToTheSameHeader) {
    EXPECT_TRUE(include_circles({{"plant/a.h", "#include \"plant/b.h\"\n#include \"plant/c.h\"\n"},
                                 {"plant/b.h", "#include \"plant/c.h\"\n"},
                                 {"plant/c.h", ""}})
                    .empty());
}

TEST(Waiting, besideTheLoopIsFound) {
    EXPECT_EQ(found_in(loops_beside_the_loop, "src/desktop/a.cpp", "QCoreApplication::processEvents();"), 1U);
    EXPECT_EQ(found_in(loops_beside_the_loop, "src/desktop/a.cpp", "dialog.exec ();"), 1U);
    EXPECT_EQ(found_in(loops_beside_the_loop, "src/desktop/a.cpp", "QEventLoop inner;"), 1U);
    EXPECT_EQ(found_in(loops_beside_the_loop, "src/links/a.cpp", "std::this_thread::sleep_for(1s);"), 1U);
}

TEST(Waiting, insideTheLoopOrInWordsOnlyIsFine) {
    EXPECT_EQ(found_in(loops_beside_the_loop, "src/desktop/qt_event_loop.cpp", "processEvents();"), 0U);
    EXPECT_EQ(found_in(loops_beside_the_loop, "src/core/a.cpp", "log(\"processEvents\"); // processEvents()"),
              0U);
}

TEST(Time, fromTheOperatingSystemIsFound) {
    EXPECT_EQ(found_in(time_beside_the_loop, "src/core/a.cpp", "auto t = std::chrono::steady_clock::now();"),
              1U);
    EXPECT_EQ(found_in(time_beside_the_loop, "plant/a.cpp", "srand(time(nullptr));"), 1U);
    EXPECT_EQ(found_in(time_beside_the_loop, "src/desktop/a.cpp", "QDateTime::currentDateTime()"), 1U);
    EXPECT_EQ(found_in(time_beside_the_loop, "tests/core/a.cpp", "gettimeofday(&now, nullptr);"), 1U);
}

TEST(Time, fromTheLoopIsFine) {
    EXPECT_EQ(
        found_in(time_beside_the_loop, "src/core/a.cpp", "DateTime time() const; x.time(3); loop.now_ms()"),
        0U);
    EXPECT_EQ(found_in(time_beside_the_loop, "plant/poll_event_loop.cpp", "std::chrono::steady_clock::now()"),
              0U);
}

TEST(Rooms, ofMoreThan700LinesAreFound) {
    EXPECT_EQ(found_in(rooms_too_large, "src/core/a.cpp", std::string(701, '\n')), 1U);
    EXPECT_EQ(found_in(rooms_too_large, "src/core/a.cpp", std::string(700, '\n')), 0U);
}

TEST(Globals, thatCanChangeAreFound) {
    for (const char* text :
         {"int counter = 0;", "namespace velorn {\nnamespace {\nstd::map<int, Foo*> table;\n}\n}",
          "const char* name = \"x\";", "static std::string last{\"a\"};", "extern int shared;",
          "inline thread_local bool busy;", "void f() {\n static int calls = 0;\n}",
          "struct A {\n  static int made;\n};", "std::array<int, 3> a = {1, 2, 3};",
          "void f() { if (a) { b(); } else { c(); } }\nint late;",
          "A::A() : a_{1}, b_{2} {}\nint after_a_constructor;"}) {
        EXPECT_EQ(found_in(mutable_globals, "src/core/a.cpp", text), 1U) << text;
    }
}

TEST(Globals, thatCannotChangeAndAllTheRestAreLeftAlone) {
    for (const char* text :
         {"constexpr int a = 3;",
          "const std::vector<Foo*> b = {1};",
          "inline constexpr char c[] = \"x\";",
          "const char* const names[] = {\"a\", \"b\"};",
          "int f(int a = 3);",
          "struct A;",
          "class A : public B {\n  public:\n    int a = 1;\n    std::string b;\n};",
          "enum class E : int { a = 1, b };",
          "using A = std::map<int, int>;",
          "template <class T, int N = 3>\nclass A {\n    T t;\n};",
          "int f() {\n    int a = 1;\n    return a;\n}",
          "A::A(B& b) : b_(b), c_{1} {\n    int local = 2;\n}",
          "auto f() -> int { int x = 1; return x; }",
          "void f() {\n    static constexpr int a = 1;\n    static const A b = make({1, 2});\n}",
          "struct A {\n    static A load(const Path& file);\n    static std::string text();\n};",
          "bool operator==(const A&, const A&) = default;",
          "static_assert(sizeof(int) == 4);",
          "friend class A;",
          "#define X int a = 1;\n",
          "void A::f() const { for (int i = 0; i < 3; ++i) g(); }",
          "std::string join(const A& a, std::function<void()> b = {});",
          "constexpr std::array t = {A{1, \"a\"}, A{2, \"b\"}};",
          "extern template class A<int>;",
          "A& A::operator=(const A& a) {\n    x = a.x;\n    return *this;\n}",
          "template <>\nclass [[nodiscard]] R<void> {\n    bool ok_ = true;\n};"}) {
        EXPECT_EQ(told(mutable_globals({{"src/core/a.cpp", text}})), "") << text;
    }
}

TEST(Literals, areBlankedAndLinesStay) {
    EXPECT_EQ(without_comments_and_literals("a = \"x;\\\"{\"; // b\nc = '{'; d = 1'000;"),
              "a = \"     \";     \nc = ' '; d = 1'000;");
    EXPECT_EQ(without_comments_and_literals("R\"(a\n\")\" b /* c\n */ d"), "R\"  \n  \" b     \n    d");
}

} // namespace
} // namespace velorn::house
