// The phone book beside a plain model of it, through thousands of random edits, insertions, deletions, swaps,
// searches, scrolls, selections and closings. VELORN_STEPS in the environment sets how many.
#include "phonebook/book_bytes.h"
#include "phonebook/open_book.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <gtest/gtest.h>
#include <optional>
#include <random>
#include <vector>

namespace velorn::test {

namespace {

using Text = std::optional<std::string>; // nothing: never used

enum Field { name, nummer, visdatei, protdatei, bemerkung, viertdatei, aufnahme, texts };

struct Entry {
    int pos = 0;
    std::array<Text, texts> text;
    int autoflag = 0, reserve1 = 0, reserve2 = 0;
    double datum = 0;
};

struct Model {
    std::vector<Entry> book = std::vector<Entry>(2011);
    std::optional<std::vector<Entry>> file; // nothing: still empty
    int telindex = -1, telscroll = 0, telzeile = -1, group = 1;
    bool swap1 = false, swap2 = false;
    int swappos1 = 0;

    void open() {
        if (file) book = *file;
        if (telzeile >= 0 && telzeile <= 9) telindex = telscroll + telzeile;
        group = 1;
        swap1 = swap2 = false;
    }
    void close(bool writes, bool takes_over) {
        if (writes) file = book;
        if (!takes_over) return;
        telzeile = telindex - telscroll;
        if (telzeile < 0 || telzeile > 9) telzeile = -1;
    }
    void scroll(int to) { telscroll = std::clamp(to, 0, 1991); }
    void select(int index) {
        telindex = index;
        if (swap1) {
            swappos1 = index;
            swap1 = false;
            swap2 = true;
        } else if (swap2) {
            std::swap(book[at(swappos1)], book[at(index)]);
            swap2 = false;
        }
    }
    void key(int step, int bottom_stop) {
        const int to = std::clamp(telindex + step, 0, 2000);
        const bool below = to > telscroll + 9;
        if (below && telscroll > bottom_stop) return;
        if (below) scroll(to - 9);
        if (to < telscroll) scroll(to);
        select(to);
    }
    void edit(int row, Field field, const std::string& text) {
        Text& value = book[at(telscroll + row)].text[field];
        if (value.value_or("") != text) value = text;
    }
    Field shown() const {
        constexpr Field fields[] = {bemerkung, protdatei, visdatei, viertdatei};
        return fields[group - 1];
    }
    void insert() {
        for (int i = 2000; i > telindex; --i) book[at(i)] = book[at(i - 1)];
        Entry& free = book[at(telindex)];
        free = {};
        free.pos = telindex;
        free.text.fill("");
        free.datum = 32874.0;
    }
    void remove() {
        for (int i = telindex; i <= 2000; ++i) book[at(i)] = book[at(i + 1)];
    }
    int find(std::string what, int from) const {
        const auto low = [](std::string text) {
            for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            return text;
        };
        what = low(what);
        for (int i = from; i <= 2000; ++i) {
            for (const Field field : {name, nummer}) {
                const Text& text = book[at(i)].text[field];
                if (text && low(*text).find(what) != std::string::npos) return i;
            }
        }
        return -1;
    }
    static std::size_t at(int index) { return static_cast<std::size_t>(index); }
};

bool same(const Variant& value, const Text& text) {
    return value.visit_value([&](const auto& held) {
        using T = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<T, std::string>) return text && *text == held;
        return std::is_same_v<T, std::monostate> && !text;
    });
}

bool same(const PhoneEntry& entry, const Entry& model, int index) {
    const Variant* values[] = {&entry.name,      &entry.nummer,     &entry.visdatei, &entry.protdatei,
                               &entry.bemerkung, &entry.viertdatei, &entry.aufnahme};
    for (std::size_t i = 0; i < texts; ++i) {
        if (!same(*values[i], model.text[i])) return false;
    }
    for (std::size_t i = 0; i < 9; ++i) {
        const bool kept = entry.reserviert1_9[i].visit_value([&](const auto& held) {
            if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::int32_t>)
                return held == index * 10 + static_cast<int>(i);
            return false;
        });
        if (!kept) return false;
    }
    return entry.pos == model.pos && entry.autoflag == model.autoflag && entry.reserve1 == model.reserve1 &&
           entry.reserve2 == model.reserve2 && entry.datum == model.datum;
}

class Person {
  public:
    explicit Person(unsigned seed) : random_(seed) {
        for (int i = 0; i < Telefonbuch::entries; ++i) {
            const PhoneEntry marked = marked_entry(i);
            p.book[i].reserviert1_9 = marked.reserviert1_9;
            if (i % 3 != 0) continue;
            p.book[i] = marked;
            model.book[Model::at(i)] = {i,
                                        {marked.name.text(), marked.nummer.text(), marked.visdatei.text(),
                                         marked.protdatei.text(), marked.bemerkung.text(),
                                         marked.viertdatei.text(), marked.aufnahme.text()},
                                        marked.autoflag,
                                        marked.reserve1,
                                        marked.reserve2,
                                        marked.datum};
        }
        p.open();
        model.open();
    }

    OpenBook p;
    Model model;
    std::string last; // what was done

    void step() {
        const int kind = below(200);
        if (kind < 30)
            scroll();
        else if (kind < 40)
            change_group();
        else if (kind < 70)
            select();
        else if (kind < 110)
            press_key();
        else if (kind < 160)
            edit();
        else if (kind < 164)
            insert();
        else if (kind < 168)
            remove();
        else if (kind < 178)
            swap();
        else if (kind < 180)
            search();
        else if (kind < 198)
            mark_for_collection();
        else if (kind < 199)
            close_and_open();
    }

    // Empty: no difference in what a step can touch.
    std::string difference() {
        if (p.module1.telindex != model.telindex) return "telindex";
        if (p.f.VScroll1.Value() != model.telscroll) return "telscroll";
        if (p.f.spaltengruppe != model.group) return "group";
        for (const int around : {model.telindex, model.telscroll, model.telscroll + 9, 2000}) {
            for (int i = std::max(around - 1, 0); i <= around + 1; ++i) {
                if (!same_entry(i)) return "entry " + std::to_string(i);
            }
        }
        return {};
    }
    std::string difference_anywhere() {
        for (int i = 0; i < Telefonbuch::entries; ++i) {
            if (!same_entry(i)) return "entry " + std::to_string(i);
        }
        for (int row = 0; row < 10; ++row) {
            const int index = model.telscroll + row;
            const auto& text = model.book[Model::at(index)].text;
            PhoneLine& line = p.line(row);
            if (line.nr.Caption.get() != std::to_string(index + 1) ||
                line.nam1.Text.get() != text[name].value_or("") ||
                line.num1.Text.get() != text[nummer].value_or("") ||
                line.txtversch.Text.get() != text[model.shown()].value_or(""))
                return "line " + std::to_string(row);
        }
        return {};
    }

  private:
    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    bool same_entry(int index) { return same(p.book[index], model.book[Model::at(index)], index); }

    std::string text() {
        const char* texts[] = {"", "Anlage", "0555", "c:\\x.exe", "host", "Umspannwerk Nord, 2. Feld"};
        return texts[below(6)] + (below(2) == 0 ? std::to_string(below(2000)) : std::string());
    }

    // Mostly near the end, where an insertion has little to move.
    void scroll() {
        const int to = below(50) == 0  ? below(2100)
                       : below(4) == 0 ? model.telscroll + below(21) - 10
                                       : 1900 + below(100);
        last = "scroll to " + std::to_string(to);
        p.f.VScroll1.set_Value(to);
        model.scroll(to);
    }
    void change_group() {
        const int to = 1 + below(4);
        last = "group " + std::to_string(to);
        p.f.HScroll1.set_Value(to);
        model.group = to;
    }
    void select() {
        const int row = below(10);
        last = "select " + std::to_string(row);
        PhoneLine& line = p.line(row);
        switch (below(4)) {
        case 0: line.nam1.GotFocus(); break;
        case 1: line.num1.GotFocus(); break;
        case 2: line.txtversch.GotFocus(); break;
        default: line.Picture1.Click();
        }
        model.select(model.telscroll + row);
    }
    void press_key() {
        struct Key {
            int code, step, stop;
        };
        constexpr Key keys[] = {{38, -1, 9999}, {40, 1, 1990}, {33, -5, 9999}, {34, 5, 1985}};
        const Key key = keys[below(4)];
        if (model.telindex < 0) return;
        last = "key " + std::to_string(key.code);
        p.key(key.code);
        model.key(key.step, key.stop);
    }
    void edit() {
        const int row = below(10);
        const std::string to = text();
        last = "edit line " + std::to_string(row) + " to " + to;
        PhoneLine& line = p.line(row);
        switch (below(3)) {
        case 0:
            line.nam1.Text = to;
            model.edit(row, name, to);
            break;
        case 1:
            line.num1.Text = to;
            model.edit(row, nummer, to);
            break;
        default: line.txtversch.Text = to; model.edit(row, model.shown(), to);
        }
    }
    bool agrees(const std::string& question) {
        last = question;
        if (model.telindex < 0) {
            p.dialogs.expect("Erst Eintrag ausw", 48, Answer::ok);
            return false;
        }
        const bool yes = below(5) != 0;
        p.dialogs.expect(question + std::to_string(model.telindex + 1) + "  ", 36,
                         yes ? Answer::yes : Answer::no);
        return yes;
    }
    void insert() {
        if (agrees("Soll an Pos ")) model.insert();
        p.f.Command5.Click();
    }
    void remove() {
        if (agrees("Soll Eintrag an Pos ")) model.remove();
        p.f.Command6.Click();
    }
    void swap() {
        const bool begins = below(4) != 0;
        last = begins ? "begin a swap" : "call the swap off";
        (begins ? p.f.Command2 : p.f.Command3).Click();
        model.swap1 = begins;
        model.swap2 = false;
    }
    void search() {
        last = "search";
        for (int from = 0;;) {
            const std::string what = below(6) == 0 ? "" : text() + (below(2) == 0 ? "1" : "");
            last += ", " + what;
            p.dialogs.expect_input("Suchtext eingeben", what);
            if (what.empty()) break;
            const int found = model.find(what, from);
            if (found < 0) break;
            model.scroll(found);
            model.select(found);
            from = found + 1;
        }
        p.f.Command7.Click();
    }
    void mark_for_collection() {
        const int row = below(10);
        const int button = 1 + below(2);
        const int option = below(3);
        last = "mark line " + std::to_string(row) + " with button " + std::to_string(button);
        p.line(row).viertthumb.MouseDown(button);
        model.select(model.telscroll + row);
        int& flag = model.book[Model::at(model.telindex)].autoflag;
        if (button != 1) {
            flag = flag == 8 ? 0 : 8;
        } else if (option < 2) {
            p.f.optuebertrag.select(option);
            flag = option == 0 ? 8 : 0;
        }
        if (below(2) == 0) p.f.closedathol.Click();
    }
    void close_and_open() {
        const int way = below(3);
        last = "close in way " + std::to_string(way);
        (way == 0 ? p.f.Command11 : way == 1 ? p.f.cmdOK : p.f.cmdCancel).Click();
        model.close(way == 0, way != 2);
        p.open();
        model.open();
    }

    std::mt19937 random_;
};

int steps_wanted() {
    const char* const given = std::getenv("VELORN_STEPS");
    return given == nullptr ? 10'000 : std::atoi(given);
}

} // namespace

TEST(PhonebookModel, theBookIsThatOfThePlainModelAfterEveryStep) {
    constexpr unsigned seed = 20'261'115;
    Person person(seed);
    const int steps = steps_wanted();
    for (int i = 1; i <= steps; ++i) {
        person.step();
        ASSERT_EQ(person.difference(), "") << "seed " << seed << ", step " << i << ": " << person.last;
        if (i % 100 != 0) continue;
        ASSERT_EQ(person.difference_anywhere(), "")
            << "seed " << seed << ", step " << i << ": " << person.last;
    }
}

} // namespace velorn::test
