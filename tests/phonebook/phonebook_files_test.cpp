#include "phonebook/book_bytes.h"
#include "phonebook/open_book.h"
#include "phonebook/phonebook_files.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

namespace velorn::test {

namespace {

constexpr std::size_t empty_old_record = 2 + 5 * 2 + 18;
constexpr std::size_t empty_record = empty_old_record + 2 * 2 + 9 * 2;
constexpr std::size_t empty_file = 601 * empty_old_record + 2011 * empty_record;

std::string empty_old_records(std::size_t count) { return std::string(count * empty_old_record, '\0'); }
std::string empty_records(std::size_t count) { return std::string(count * empty_record, '\0'); }

// ---- layout ----

TEST(PhonebookLayout, anOldEntryIsItsTenFieldsWithoutPadding) {
    Telefonbuch book;
    PhoneEntryOld& entry = book.altbuch[0];
    entry.pos = 0x0102;
    entry.name = "Abc";
    entry.visdatei = Null{};
    entry.protdatei = std::int16_t{-2};
    entry.bemerkung = "ü"_w;
    entry.autoflag = 8;
    entry.reserve1 = 0x01020304;
    entry.reserve2 = -1;
    entry.datum = 32874.0;
    const std::string expected = hex({
        0x02, 0x01,                                     // pos
        0x08, 0x00, 0x03, 0x00, 0x41, 0x62, 0x63,       // name
        0x00, 0x00,                                     // nummer: Empty
        0x01, 0x00,                                     // visdatei: Null
        0x02, 0x00, 0xFE, 0xFF,                         // protdatei: i16
        0x08, 0x00, 0x01, 0x00, 0xFC,                   // bemerkung
        0x08, 0x00,                                     // autoflag
        0x04, 0x03, 0x02, 0x01,                         // reserve1
        0xFF, 0xFF, 0xFF, 0xFF,                         // reserve2
        0x00, 0x00, 0x00, 0x00, 0x40, 0x0D, 0xE0, 0x40, // datum
    });
    EXPECT_EQ(difference(encode_telefonbuch(book), expected + empty_old_records(600) + empty_records(2011)),
              "");
}

TEST(PhonebookLayout, anEntryHasThePathsTheSnapshotsAndNineReservedValuesBehindThem) {
    Telefonbuch book;
    PhoneEntry& entry = book[2010];
    entry.pos = -1;
    entry.nummer = "055,5";
    entry.autoflag = 8;
    entry.datum = 1.0;
    entry.viertdatei = "d.dat";
    entry.aufnahme = "";
    entry.reserviert1_9[0] = true;
    entry.reserviert1_9[8] = Currency{10'000};
    const std::string expected = hex({
        0xFF, 0xFF,                                                 // pos
        0x00, 0x00,                                                 // name
        0x08, 0x00, 0x05, 0x00, 0x30, 0x35, 0x35, 0x2C, 0x35,       // nummer
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00,                         // visdatei, protdatei, bemerkung
        0x08, 0x00,                                                 // autoflag
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,             // reserve1, reserve2
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xF0, 0x3F,             // datum
        0x08, 0x00, 0x05, 0x00, 0x64, 0x2E, 0x64, 0x61, 0x74,       // viertdatei
        0x08, 0x00, 0x00, 0x00,                                     // aufnahme
        0x0B, 0x00, 0xFF, 0xFF,                                     // reserviert1
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,                   // reserviert2 to 4 ...
        0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,                   // ... to 8
        0x06, 0x00, 0x10, 0x27, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, // reserviert9
    });
    EXPECT_EQ(difference(encode_telefonbuch(book), empty_old_records(601) + empty_records(2010) + expected),
              "");
}

TEST(PhonebookLayout, anEmptyBookHas601OldEntriesOf30BytesAnd2011Of52) {
    EXPECT_EQ(empty_file, 122'602U);
    EXPECT_EQ(encode_telefonbuch(Telefonbuch()), std::string(empty_file, '\0'));
}

TEST(PhonebookLayout, theOldTableStandsFirstAndBothBeginWithIndex0) {
    const Telefonbuch& book = marked_book();
    EXPECT_EQ(difference(encode_telefonbuch(book), marked_file()), "");
}

TEST(PhonebookLayout, everyTagThatWasReadIsWrittenBack) {
    std::string bytes = empty_old_records(601);
    const std::string values[] = {
        hex({1, 0}),                                    // Null
        hex({2, 0, 7, 0}),                              // i16
        hex({3, 0, 7, 0, 0, 0}),                        // i32
        hex({4, 0, 0, 0, 0x80, 0x3F}),                  // f32
        hex({5, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F}),      // f64
        hex({6, 0, 1, 0, 0, 0, 0, 0, 0, 0x80}),         // currency
        hex({7, 0, 0, 0, 0, 0, 0x40, 0xD, 0xE0, 0x40}), // date
        hex({8, 0, 1, 0, 0xFC}),                        // string
        hex({11, 0, 0xFF, 0xFF}),                       // boolean
    };
    bytes += std::string(2 + 5 * 2 + 18 + 2 * 2, '\0');
    for (const std::string& value : values) bytes += value;
    bytes += empty_records(2010);
    Telefonbuch book;
    EXPECT_TRUE(decode_telefonbuch(bytes, book));
    EXPECT_EQ(difference(encode_telefonbuch(book), bytes), "");
}

// ---- reading ----

TEST(PhonebookReading, whatWasWrittenReadsBack) {
    const std::string bytes = file_of(marked_book(3));
    Telefonbuch book;
    EXPECT_TRUE(decode_telefonbuch(bytes, book));
    EXPECT_EQ(difference(file_of(book), bytes), "");
}

template <class Entry>
void expect_taken_up_to(const Entry& read, const Entry& fresh, const Entry& held, std::size_t bytes) {
    const std::vector<std::string> now = fields_of(read);
    const std::vector<std::string> taken = fields_of(fresh);
    const std::vector<std::string> kept = fields_of(held);
    std::size_t end = 0;
    for (std::size_t i = 0; i < now.size(); ++i) {
        end += taken[i].size();
        EXPECT_EQ(now[i], end <= bytes ? taken[i] : kept[i])
            << "field " << i + 1 << ", " << bytes << " bytes";
    }
}

// Reads over a book that holds other entries: first all of this one, then it is cut at each of its bytes.
TEST(PhonebookReading, endsAtTheFirstValueThatIsCutAndKeepsAllBehindIt) {
    const Telefonbuch& fresh = marked_book();
    const Telefonbuch held = marked_book(5000);
    const std::string bytes = file_of(fresh);
    std::size_t begin = 0;
    for (const PhoneEntryOld& entry : fresh.altbuch) begin += record(entry).size();
    begin += record(fresh[0]).size();
    const std::size_t size = record(fresh[1]).size();
    ASSERT_GT(size, 150U);
    Telefonbuch book = held;
    for (std::size_t cut = 0; cut < size; ++cut) {
        book[1] = held[1];
        EXPECT_TRUE(decode_telefonbuch(std::string_view(bytes).substr(0, begin + cut), book));
        expect_taken_up_to(book[1], fresh[1], held[1], cut);
        ASSERT_EQ(record(book[2]), record(held[2])) << cut;
    }
    EXPECT_EQ(record(book[0]), record(fresh[0]));
    for (int i = 2; i < Telefonbuch::entries; ++i) ASSERT_TRUE(same_entry(book[i], held[i])) << i;
}

TEST(PhonebookReading, endsInTheOldTableJustSo) {
    const Telefonbuch& fresh = marked_book();
    const Telefonbuch held = marked_book(5000);
    const std::string bytes = file_of(fresh);
    const std::size_t begin = record(fresh.altbuch[0]).size();
    const std::size_t size = record(fresh.altbuch[1]).size();
    Telefonbuch book = held;
    for (std::size_t cut = 0; cut < size; ++cut) {
        book.altbuch[1] = held.altbuch[1];
        EXPECT_TRUE(decode_telefonbuch(std::string_view(bytes).substr(0, begin + cut), book));
        expect_taken_up_to(book.altbuch[1], fresh.altbuch[1], held.altbuch[1], cut);
    }
    EXPECT_EQ(record(book.altbuch[2]), record(held.altbuch[2]));
    EXPECT_EQ(record(book[0]), record(held[0]));
}

TEST(PhonebookReading, anUnknownTagEndsItAndIsTold) {
    const Telefonbuch& fresh = marked_book();
    const Telefonbuch held = marked_book(5000);
    std::string bytes = file_of(fresh);
    std::size_t at = 0;
    for (const PhoneEntryOld& entry : fresh.altbuch) at += record(entry).size();
    at += 2 + fields_of(fresh[0])[1].size(); // the tag of `nummer` in entry 0
    bytes[at] = 9;
    Telefonbuch book = held;
    EXPECT_FALSE(decode_telefonbuch(bytes, book));
    EXPECT_EQ(book[0].name.text(), "Anlage 0");
    EXPECT_EQ(book[0].nummer.text(), "05555000");
    EXPECT_EQ(book[0].autoflag, 8);
    EXPECT_EQ(book[0].reserve1, 105'000) << "plain numbers behind it keep theirs as well";
    EXPECT_EQ(record(book[1]), record(held[1]));
    EXPECT_EQ(record(book.altbuch[600]), record(fresh.altbuch[600]));
}

TEST(PhonebookReading, staleBytesBehindTheLastRecordAreNeverRead) {
    Telefonbuch book;
    EXPECT_TRUE(decode_telefonbuch(file_of(marked_book(1)) + std::string(1000, '\x7f'), book));
    EXPECT_EQ(difference(book, marked_book(1)), "");
}

// ---- the files ----

struct Rig {
    MemoryFiles files;
    Settings settings;
    Telefonbuch book;
    PhonebookFiles phonebook_files{files, settings, book};

    Rig() {
        settings.telefonpfad = "c:\\buch\\telefon.par";
        settings.dispaufpfad = "c:\\buch\\dispauf.par";
    }
};

TEST(PhonebookFiles, aMissingFileIsCreatedEmptyAndChangesNothing) {
    Rig rig;
    rig.book = marked_book(7);
    rig.phonebook_files.read_telefonbuch();
    rig.phonebook_files.read_dispaufnahmen();
    EXPECT_TRUE(rig.files.exists("c:\\buch\\telefon.par"));
    EXPECT_EQ(rig.files.content("c:\\buch\\telefon.par"), "");
    EXPECT_TRUE(rig.files.exists("c:\\buch\\dispauf.par"));
    EXPECT_EQ(difference(rig.book, marked_book(7)), "");
}

TEST(PhonebookFiles, aBookThatShrankLeavesTheOldTailAndLoadsAsTheNewOne) {
    Rig rig;
    const std::string old = marked_file();
    rig.files.set_content("c:\\buch\\telefon.par", old);
    rig.book[1].name = "kurz";
    rig.phonebook_files.save_telefonbuch();
    const std::string fresh = file_of(rig.book);
    const std::string now = rig.files.content("c:\\buch\\telefon.par");
    EXPECT_EQ(difference(now, fresh + old.substr(fresh.size())), "");
    rig.book = marked_book(9);
    rig.phonebook_files.read_telefonbuch();
    EXPECT_EQ(difference(file_of(rig.book), fresh), "");
    rig.phonebook_files.save_telefonbuch();
    EXPECT_EQ(difference(rig.files.content("c:\\buch\\telefon.par"), now), "")
        << "the tail is in nobody's way";
}

TEST(PhonebookFiles, theSnapshotsFilePassesThroughByteForByte) {
    Rig rig;
    std::string bytes;
    for (int i = 0; i < 601; ++i) bytes += tagged(Variant("Aufnahme " + std::to_string(i)));
    rig.files.set_content("c:\\buch\\dispauf.par", bytes + "tail");
    rig.phonebook_files.read_dispaufnahmen();
    rig.files.set_content("c:\\buch\\dispauf.par", "");
    rig.phonebook_files.save_dispaufnahmen();
    EXPECT_EQ(difference(rig.files.content("c:\\buch\\dispauf.par"), bytes), "");
}

TEST(PhonebookFiles, aCutSnapshotsFileKeepsTheRestAsItWas) {
    Rig rig;
    for (Variant& value : rig.book.dispaufnahmen) value = "alt";
    rig.files.set_content("c:\\buch\\dispauf.par", tagged(Variant("neu")) + hex({8, 0, 9, 0, 65}));
    rig.phonebook_files.read_dispaufnahmen();
    EXPECT_EQ(rig.book.dispaufnahmen[0].text(), "neu");
    EXPECT_EQ(rig.book.dispaufnahmen[1].text(), "alt");
    EXPECT_EQ(rig.book.dispaufnahmen[600].text(), "alt");
}

TEST(PhonebookFiles, anEmptySnapshotsTableIs1202ZeroBytes) {
    Rig rig;
    rig.phonebook_files.save_dispaufnahmen();
    EXPECT_EQ(rig.files.content("c:\\buch\\dispauf.par"), std::string(1202, '\0'));
}

// ---- the copy of a file that wasn't understood ----

TEST(PhonebookSafetyCopy, aFileWithAnUnknownTagIsKeptBeforeItIsWrittenOver) {
    Rig rig;
    const std::string letter = "Sehr geehrte Damen und Herren";
    rig.files.set_content("c:\\buch\\telefon.par", letter);
    rig.phonebook_files.read_telefonbuch();
    EXPECT_FALSE(rig.files.exists("c:\\buch\\telefon.par.alt")) << "reading writes nothing";
    rig.phonebook_files.save_telefonbuch();
    EXPECT_EQ(rig.files.content("c:\\buch\\telefon.par.alt"), letter);
    EXPECT_EQ(difference(rig.files.content("c:\\buch\\telefon.par"), file_of(rig.book)), "");
}

TEST(PhonebookSafetyCopy, isTakenOnceNotAtEachSaving) {
    Rig rig;
    rig.files.set_content("c:\\buch\\telefon.par", "Brief");
    rig.phonebook_files.read_telefonbuch();
    rig.phonebook_files.save_telefonbuch();
    rig.phonebook_files.save_telefonbuch();
    EXPECT_EQ(rig.files.replacements("c:\\buch\\telefon.par.alt"), 1);
    EXPECT_EQ(rig.files.content("c:\\buch\\telefon.par.alt"), "Brief");
}

TEST(PhonebookSafetyCopy, aCutOrMissingFileNeedsNone) {
    Rig rig;
    rig.phonebook_files.read_telefonbuch();
    rig.phonebook_files.save_telefonbuch();
    rig.files.set_content("c:\\buch\\telefon.par", marked_file().substr(0, 5000));
    rig.phonebook_files.read_telefonbuch();
    rig.phonebook_files.save_telefonbuch();
    EXPECT_FALSE(rig.files.exists("c:\\buch\\telefon.par.alt"));
}

TEST(PhonebookSafetyCopy, withoutItTheFileStaysAsItIs) {
    Rig rig;
    rig.files.set_content("c:\\buch\\telefon.par", "Brief");
    rig.files.make_read_only("c:\\buch\\telefon.par.alt");
    rig.phonebook_files.read_telefonbuch();
    rig.phonebook_files.save_telefonbuch();
    EXPECT_EQ(rig.files.content("c:\\buch\\telefon.par"), "Brief");
}

TEST(PhonebookSafetyCopy, belongsToTheFileThatWasReadNotToAnotherPath) {
    Rig rig;
    rig.files.set_content("c:\\buch\\telefon.par", "Brief");
    rig.phonebook_files.read_telefonbuch();
    rig.settings.telefonpfad = "c:\\buch\\anderes.par";
    rig.phonebook_files.save_telefonbuch();
    EXPECT_FALSE(rig.files.exists("c:\\buch\\anderes.par.alt"));
    EXPECT_EQ(rig.files.content("c:\\buch\\telefon.par"), "Brief");
}

} // namespace

} // namespace velorn::test
