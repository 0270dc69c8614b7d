#include "archive/archive.h"
#include "archive/archive_journal.h"
#include "archive/archive_samples.h"
#include "support/faulty_files.h"

#include <gtest/gtest.h>

namespace velorn {
namespace {

using test::archive_path;
using test::BlockFiles;
using test::FaultyFiles;
using test::make_sparse_archive;

// A file of letters with a journal beside it that makes some of them digits.
struct Journal : testing::Test {
    BlockFiles files;
    std::string path{archive_path};
    std::string letters = std::string(5000, 'a') + std::string(5000, 'b');
    std::string digits = letters;

    Journal() {
        files.set_bytes(path, 0, letters);
        write({{10, 3}, {4999, 2}, {9990, 20}}, "1234567890123456789012345");
        digits.replace(10, 3, "123");
        digits.replace(4999, 2, "45");
        digits.resize(9990);
        digits += "67890123456789012345";
    }
    void write(const std::vector<ByteRange>& ranges, std::string_view bytes) {
        JournalWriter writer(files, path);
        const auto target = files.open(path, OpenMode::read);
        EXPECT_TRUE(writer.begin(ranges, **target));
        EXPECT_TRUE(writer.add(bytes.substr(0, 7)));
        EXPECT_TRUE(writer.add(bytes.substr(7)));
        EXPECT_TRUE(writer.commit());
    }
    std::string journal() const { return test::whole(files, journal_path(path)); }
    void expect(const std::string& content) {
        EXPECT_TRUE(complete_journal(files, path));
        EXPECT_EQ(test::whole(files, path), content);
        EXPECT_EQ(files.names(), std::vector<std::string>{path});
    }
};

TEST_F(Journal, aCompleteOneIsCarriedOut) { expect(digits); }

TEST_F(Journal, aHalfCarriedOutOneIsCompleted) {
    files.set_bytes(path, 10, "12");
    files.set_bytes(path, 9990, "678901234567");
    expect(digits);
}

TEST_F(Journal, anIncompleteOneIsDropped) {
    const std::string whole = journal();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        files.set_content(journal_path(path), {});
        files.set_bytes(journal_path(path), 0, whole.substr(0, length));
        expect(letters);
    }
}

TEST_F(Journal, oneWithAnyGarbledByteIsDropped) {
    const std::string whole = journal();
    for (std::size_t i = 0; i < whole.size(); ++i) {
        std::string garbled = whole;
        garbled[i] = static_cast<char>(garbled[i] ^ 0x10);
        files.set_content(journal_path(path), {});
        files.set_bytes(journal_path(path), 0, garbled);
        expect(letters);
    }
}

TEST_F(Journal, oneWithMoreBehindItsEndIsDropped) {
    files.set_bytes(journal_path(path), files.length(journal_path(path)), "x");
    expect(letters);
}

TEST_F(Journal, oneOfAnotherFileIsDropped) {
    letters[1300] = 'x'; // within a sample
    files.set_bytes(path, 0, letters);
    expect(letters);
}

TEST_F(Journal, oneOfAFileOfAnotherLengthIsDropped) {
    for (const std::int64_t length : {9999, 10011}) {
        files.set_length(path, length);
        const std::string before = test::whole(files, path);
        const BlockFiles::Content journal = files.content(journal_path(path));
        expect(before);
        files.set_content(journal_path(path), journal);
    }
}

TEST_F(Journal, oneWithoutAFileIsDropped) {
    EXPECT_TRUE(files.remove(path));
    EXPECT_TRUE(complete_journal(files, path));
    EXPECT_TRUE(files.names().empty());
}

TEST_F(Journal, oneThatCannotBeCarriedOutStays) {
    FaultyFiles faulty(files);
    faulty.fill_the_disk();
    EXPECT_FALSE(complete_journal(faulty, path));
    EXPECT_TRUE(files.exists(journal_path(path)));
    expect(digits);
}

TEST(ArchiveJournal, anArchiveWhoseJournalCannotBeCarriedOutIsNeitherReadNorWritten) {
    BlockFiles files;
    make_sparse_archive(files, 30, 2);
    const auto before = files.content(archive_path);
    for (int n = 1; !files.exists(journal_path(archive_path)); ++n) {
        FaultyFiles faulty(files);
        Archive archive(faulty);
        ASSERT_TRUE(archive.open(archive_path));
        archive.set_daten(1, 2, 3, 4, 5, 6.0F);
        faulty.stop_at(static_cast<int>(faulty.operations().size()) + n);
        ASSERT_FALSE(archive.save());
    }
    FaultyFiles faulty(files);
    faulty.fill_the_disk();
    Archive archive(faulty);
    EXPECT_FALSE(archive.open(archive_path));
    archive.set_daten(0, 1, 1, 1, 1, 1.0F);
    EXPECT_FALSE(archive.save());
    archive.close();
    faulty.mend();
    ASSERT_TRUE(archive.open(archive_path));
    EXPECT_EQ(archive.daten(1, 2, 3, 4, 5), 6.0F);
    EXPECT_EQ(archive.daten(0, 1, 1, 1, 1), 0.0F);
    EXPECT_EQ(files.length(archive_path), before.length);
}

TEST(ArchiveJournal, theChecksumTellsLengthsOfZerosApart) {
    EXPECT_NE(checksum_of(std::string(7, '\0')), checksum_of(std::string(8, '\0')));
    EXPECT_NE(checksum_of(std::string(8, '\0')), checksum_of(std::string(16, '\0')));
    Checksum parts;
    parts.add("abc");
    parts.add("defghijklmnop");
    parts.add("q");
    EXPECT_EQ(parts.value(), checksum_of("abcdefghijklmnopq"));
}

} // namespace
} // namespace velorn
