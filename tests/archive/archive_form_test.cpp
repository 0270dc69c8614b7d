// The form of an archive file against figures that were worked out by hand and bytes that are laid down here
// one by one: nothing in this file asks the archive's own code where anything lies.
#include "archive/archive.h"
#include "support/block_files.h"

#include <cstring>
#include <gtest/gtest.h>

namespace velorn::test {

namespace {

constexpr const char* path = "c:\\form.dat";
constexpr DateTime day_of_creation{2026, 11, 21};

// Tagged values and bare floats, written by hand.
struct Form {
    std::string bytes;

    void u16(unsigned v) {
        bytes += static_cast<char>(v & 0xFFU);
        bytes += static_cast<char>(v >> 8U & 0xFFU);
    }
    void i16(int v) {
        u16(2);
        u16(static_cast<unsigned>(v));
    }
    void i32(int v) {
        u16(3);
        u16(static_cast<unsigned>(v));
        u16(static_cast<unsigned>(v) >> 16U);
    }
    void f64(std::uint64_t bits) {
        u16(5);
        for (unsigned shift = 0; shift < 64; shift += 8) bytes += static_cast<char>(bits >> shift & 0xFFU);
    }
    void text(const std::string& v) {
        u16(8);
        u16(static_cast<unsigned>(v.size()));
        bytes += v;
    }
    void flag(bool v) {
        u16(11);
        u16(v ? 0xFFFF : 0);
    }
    void empty() { u16(0); }
    void f32(std::uint32_t bits, std::int64_t count = 1) {
        std::string one;
        for (unsigned shift = 0; shift < 32; shift += 8) one += static_cast<char>(bits >> shift & 0xFFU);
        for (std::int64_t i = 0; i < count; ++i) bytes += one;
    }
};

constexpr std::uint32_t minus_997 = 0xC4794000;
constexpr std::uint64_t one = 0x3FF0000000000000, a_fifth = 0x3FC999999999999A;
const std::string dashes = "----------------";

// A table of a new file, all its cells with a zero subscript of month, day or quarter at 0.0.
void new_table(Form& form, int columns) {
    for (int y = 0; y <= 9; ++y) {
        for (int m = 0; m <= 12; ++m) {
            for (int d = 0; d <= 31; ++d) {
                const bool used = m > 0 && d > 0;
                form.f32(0, columns);
                form.f32(used ? minus_997 : 0, 96 * columns);
            }
        }
    }
}

// What stands behind the first table, with or without the reserves behind them.
void new_settings(Form& form, int tracks, bool reserves, int startjahr = 2019) {
    for (int t = 0; t <= tracks; ++t) form.text(t == 0 ? "<1>-<2>" : dashes);
    for (int t = 0; t <= tracks; ++t) form.text("");
    for (int t = 0; t <= tracks; ++t) form.i32(t == 2 ? 255 : 0);
    for (int t = 0; t <= tracks; ++t) form.flag(t == 1 || t == 2);
    for (int t = 0; t <= tracks; ++t) form.flag(false);
    for (const int axis : {30, 100, -10, 10, 3}) form.i16(axis);
    form.flag(false);
    for (const int number : {1, startjahr, 2, 21, 11, 2026, 105, 2, 1, 2}) form.i16(number);
    form.f64(one);
    for (int formula = 0; formula < 2; ++formula) {
        form.empty();
        for (int i = 1; i <= 10; ++i) form.i16(i <= 2 ? i : 0);
        form.empty();
        for (int i = 1; i <= 10; ++i) form.i16(i == 1 ? 1 : 2);
    }
    form.text("---");
    form.text("---");
    form.f64(one);
    form.i16(8760);
    form.i32(100000);
    form.i16(5);
    form.f64(a_fifth);
    for (int i = 1; reserves && i <= 6; ++i) form.empty();
}

void new_calculated_texts(Form& form) {
    for (int i = 0; i <= 4; ++i) form.text(dashes);
    form.empty();
    for (int i = 0; i <= 4; ++i) form.text("");
    form.empty();
    for (int i = 0; i <= 4; ++i) form.i32(0);
    form.empty();
    for (int kind = 0; kind < 2; ++kind) {
        for (int i = 0; i <= 4; ++i) form.flag(false);
        form.empty();
    }
}

std::string bytes_of_float(float value) {
    std::string bytes(4, '\0');
    std::memcpy(bytes.data(), &value, 4);
    return bytes;
}

struct Place {
    int y, m, d, q, t;
};

struct Counts {
    std::int16_t tracks;
    std::int64_t daten;      // bytes of part 1
    std::int64_t settings;   // bytes of parts 2 to 10 of a new file
    std::int64_t whole;      // bytes of a new file
    std::int64_t offsets[5]; // of the five places below
};
constexpr Counts table[] = {
    {30, 50036480, 1471, 58108551, {397052, 6146556, 6189596, 21163568, 50036476}},
    {60, 98458880, 2611, 106532091, {781292, 12094836, 12179516, 41644448, 98458876}},
    {90, 146881280, 3751, 154955631, {1165532, 18043116, 18169436, 62125328, 146881276}},
    {120, 195303680, 4891, 203379171, {1549772, 23991396, 24159356, 82606208, 195303676}},
    {150, 243726080, 6031, 251802711, {1934012, 29939676, 30149276, 103087088, 243726076}},
};
// The last two count their track from the last one.
constexpr Place places[5] = {
    {0, 1, 1, 1, 1}, {1, 2, 31, 2, 0}, {1, 3, 2, 58, 3}, {4, 2, 31, 50, -1}, {9, 12, 31, 96, 0}};

struct CalculatedPlace {
    Place place;
    std::int64_t offset; // from the start of the second table
};
constexpr CalculatedPlace calculated[] = {{{0, 1, 1, 1, 0}, 64040},
                                          {{1, 2, 31, 1, 0}, 991360},
                                          {{1, 3, 2, 58, 3}, 998332},
                                          {{9, 12, 31, 96, 4}, 8070396}};

constexpr std::int64_t second_table = 8070400;
constexpr std::int64_t last_texts = 200;

// A file in the full layout with zeros in both tables.
void lay_down(BlockFiles& files, const Counts& counts) {
    files.set_content(path, {});
    Form settings;
    new_settings(settings, counts.tracks, true);
    files.set_length(path, counts.daten);
    files.set_bytes(path, counts.daten, settings.bytes);
    Form texts;
    new_calculated_texts(texts);
    files.set_length(path, counts.whole - last_texts);
    files.set_bytes(path, counts.whole - last_texts, texts.bytes);
}

class EveryTrackCount : public testing::TestWithParam<Counts> {};

} // namespace

TEST_P(EveryTrackCount, aNewFileHasTheSizeThatItsTracksGive) {
    const Counts& counts = GetParam();
    BlockFiles files;
    Archive archive(files);
    ASSERT_TRUE(archive.create(path, 2019, counts.tracks, day_of_creation));
    EXPECT_EQ(files.length(path), counts.whole);
    Form settings;
    new_settings(settings, counts.tracks, true);
    ASSERT_EQ(static_cast<std::int64_t>(settings.bytes.size()), counts.settings);
    EXPECT_EQ(files.bytes(path, counts.daten, counts.settings), settings.bytes);
    Form texts;
    new_calculated_texts(texts);
    EXPECT_EQ(files.bytes(path, counts.whole - last_texts, 1000), texts.bytes);
}

TEST_P(EveryTrackCount, everyPlaceIsReadAndWrittenAtItsOffset) {
    const Counts& counts = GetParam();
    BlockFiles files;
    lay_down(files, counts);
    const auto track = [&](std::size_t i) { return i < 3 ? places[i].t : counts.tracks + places[i].t; };
    for (std::size_t i = 0; i < 5; ++i)
        files.set_bytes(path, counts.offsets[i], bytes_of_float(static_cast<float>(i) + 0.5F));
    const std::int64_t rech = counts.whole - last_texts - second_table;
    for (std::size_t i = 0; i < 4; ++i)
        files.set_bytes(path, rech + calculated[i].offset, bytes_of_float(static_cast<float>(i) - 7.5F));

    Archive archive(files);
    archive.archivversion = 2; // a file of 120 tracks doesn't tell it
    ASSERT_TRUE(archive.open(path));
    ASSERT_EQ(archive.spuranz, counts.tracks);
    for (std::size_t i = 0; i < 5; ++i) {
        const Place& p = places[i];
        EXPECT_EQ(archive.daten(p.y, p.m, p.d, p.q, track(i)), static_cast<float>(i) + 0.5F) << i;
        archive.set_daten(p.y, p.m, p.d, p.q, track(i), static_cast<float>(i) + 20);
    }
    for (std::size_t i = 0; i < 4; ++i) {
        const Place& p = calculated[i].place;
        EXPECT_EQ(archive.rechdaten(p.y, p.m, p.d, p.q, p.t), static_cast<float>(i) - 7.5F) << i;
        archive.set_rechdaten(p.y, p.m, p.d, p.q, p.t, static_cast<float>(i) + 30);
    }
    ASSERT_TRUE(archive.save());
    EXPECT_EQ(files.length(path), counts.whole);
    for (std::size_t i = 0; i < 5; ++i)
        EXPECT_EQ(files.bytes(path, counts.offsets[i], 4), bytes_of_float(static_cast<float>(i) + 20)) << i;
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(files.bytes(path, rech + calculated[i].offset, 4),
                  bytes_of_float(static_cast<float>(i) + 30))
            << i;
}

INSTANTIATE_TEST_SUITE_P(ArchiveForm, EveryTrackCount, testing::ValuesIn(table), [](const auto& one_count) {
    return std::to_string(one_count.param.tracks) + "Tracks";
});

TEST(ArchiveForm, aNewFileIsRightToTheLastByte) {
    Form expected;
    new_table(expected, 31);
    new_settings(expected, 30, true, 2009);
    new_table(expected, 5);
    new_calculated_texts(expected);
    ASSERT_EQ(expected.bytes.size(), 58108551U);
    BlockFiles files;
    Archive archive(files);
    ASSERT_TRUE(archive.create(path, 2009, 30, day_of_creation));
    EXPECT_EQ(files.length(path), 58108551);
    EXPECT_TRUE(same_bytes(files.content(path), 0, expected.bytes));
}

// 60 tracks without reserves and calculated tracks.
TEST(ArchiveForm, aFileOfTheOldLayoutGrowsToTheLastByteOfTheNew) {
    Form old;
    new_table(old, 61);
    const auto put = [&](std::int64_t at, float value) {
        old.bytes.replace(static_cast<std::size_t>(at), 4, bytes_of_float(value));
    };
    const std::int64_t row = std::int64_t{4} * 61 * (((3 * 13 + 4) * 32 + 5) * 97 + 6);
    put(row, 11.0F);                        // track 0
    put(row + std::int64_t{4} * 60, 22.0F); // track 60
    put(row + 4, 33.0F);                    // track 1
    new_settings(old, 60, false);
    ASSERT_EQ(old.bytes.size(), 98458880U + 2599U);
    BlockFiles files;
    files.set_bytes(path, 0, old.bytes);

    Form expected;
    expected.bytes = old.bytes;
    for (int i = 1; i <= 6; ++i) expected.empty();
    const std::size_t rech = expected.bytes.size();
    new_table(expected, 5);
    const auto at = static_cast<std::size_t>(4 * 5 * (((3 * 13 + 4) * 32 + 5) * 97 + 6));
    expected.bytes.replace(rech + at, 4, bytes_of_float(11.0F));
    expected.bytes.replace(rech + at + 4, 4, bytes_of_float(22.0F));
    // The arrays of the calculated tracks: index 0 takes those of track 0, index 1 those of track 60.
    Form texts;
    new_calculated_texts(texts);
    texts.bytes.replace(0, 4 + dashes.size(), std::string("\x08\0\x07\0<1>-<2>", 11));
    expected.bytes += texts.bytes;
    ASSERT_EQ(expected.bytes.size(), 106532091U - 9U);

    Archive archive(files);
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(archive.archivversion, 1);
    EXPECT_EQ(archive.rechdaten(3, 4, 5, 6, 0), 11.0F);
    EXPECT_EQ(archive.rechdaten(3, 4, 5, 6, 1), 22.0F);
    ASSERT_TRUE(archive.save());
    EXPECT_GT(files.length(path), 106000000);
    EXPECT_EQ(files.length(path), static_cast<std::int64_t>(expected.bytes.size()));
    EXPECT_TRUE(same_bytes(files.content(path), 0, expected.bytes));
}

// A day that no calendar has is a place like any other.
TEST(ArchiveForm, theThirtyFirstOfAprilIsAPlace) {
    BlockFiles files;
    lay_down(files, table[0]);
    Archive archive(files);
    ASSERT_TRUE(archive.open(path));
    archive.set_daten(2, 4, 31, 96, 30, 5.5F);
    ASSERT_TRUE(archive.save());
    ASSERT_TRUE(archive.open(path));
    EXPECT_EQ(archive.daten(2, 4, 31, 96, 30), 5.5F);
    EXPECT_EQ(archive.daten(2, 5, 1, 0, 30), 0.0F);
    EXPECT_EQ(archive.daten(2, 5, 1, 1, 30), 0.0F);
}

// Behind an archive of the old layout in the same window; the reserves come from nowhere then.
TEST(ArchiveForm, aFileOf120TracksTakesTheVersionOfTheArchiveBeforeIt) {
    BlockFiles files;
    lay_down(files, table[3]);
    const std::int64_t rech = 203379171 - last_texts - second_table;
    files.set_bytes(path, rech + calculated[2].offset, bytes_of_float(9.5F));
    for (const int before : {0, 1, 2}) {
        Archive archive(files);
        archive.archivversion = static_cast<std::int16_t>(before);
        ASSERT_TRUE(archive.open(path));
        EXPECT_EQ(archive.spuranz, 120);
        EXPECT_EQ(archive.archivversion, before);
        EXPECT_EQ(archive.rechdaten(1, 3, 2, 58, 3), before == 2 ? 9.5F : -997.0F) << before;
        EXPECT_EQ(archive.rechdaten(1, 3, 2, 58, 0), 0.0F) << before;
        EXPECT_EQ(archive.bspurnamen[0].text(), before == 2 ? dashes : "<1>-<2>");
    }
}

TEST(ArchiveForm, aDamagedStampBringsNoNewAnalyticCurve) {
    BlockFiles files;
    lay_down(files, table[0]);
    const std::int64_t stamp = 58108551 - last_texts - second_table + calculated[1].offset;
    for (const std::uint32_t nan : {0x7FC00000U, 0xFFC00001U}) {
        Form cell;
        cell.f32(nan);
        files.set_bytes(path, stamp, cell.bytes);
        Archive archive(files);
        ASSERT_TRUE(archive.open(path));
        archive.ganzjahr = std::int16_t{1};
        archive.upgrade();
        EXPECT_EQ(archive.ganzjahr.number(), 1) << "only what is below 1002 is old";
    }
}

} // namespace velorn::test
