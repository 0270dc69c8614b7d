// The process is killed, or an operation fails, at every single file operation of a saving close. On disk
// each file then has its complete old or complete new content, the stale tail included.
#include "phonebook/book_bytes.h"
#include "phonebook/phonebook_files.h"
#include "runtime/disk_files.h"
#include "support/faulty_files.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velorn::test {

namespace {

// What a test prepares once: the old files, which are longer, and the new content.
struct Contents {
    Telefonbuch book;
    std::string old_book, new_book, old_snapshots, new_snapshots;

    Contents() {
        for (int i = 0; i < Telefonbuch::entries; i += 50) book[i] = marked_entry(i);
        for (Variant& value : book.dispaufnahmen) value = "neu";
        old_book = file_of(book) + "the end of a longer book";
        book[0].name = "umbenannt";
        new_book = file_of(book);
        new_book += old_book.substr(new_book.size());
        for (int i = 0; i < 601; ++i) {
            old_snapshots += tagged(Variant("alt " + std::to_string(i)));
            new_snapshots += tagged(Variant("neu"));
        }
        new_snapshots += old_snapshots.substr(new_snapshots.size());
    }
};

const Contents& contents() {
    static const Contents once;
    return once;
}

struct Disk {
    TemporaryFolder folder;
    Paths paths{folder.path()};
    DiskFiles files{paths};
    Settings settings;

    Disk() {
        settings.telefonpfad = folder.stored("telefon.par");
        settings.dispaufpfad = folder.stored("dispauf.par");
    }
    void put_old() const {
        folder.set_content("telefon.par", contents().old_book);
        folder.set_content("dispauf.par", contents().old_snapshots);
    }
    void save(Files& through) const {
        Telefonbuch book = contents().book;
        PhonebookFiles phonebook_files(through, settings, book);
        phonebook_files.save_telefonbuch();
        phonebook_files.save_dispaufnahmen();
    }
    bool old_book() const { return folder.content("telefon.par") == contents().old_book; }
    bool new_book() const { return folder.content("telefon.par") == contents().new_book; }
    bool old_snapshots() const { return folder.content("dispauf.par") == contents().old_snapshots; }
    bool new_snapshots() const { return folder.content("dispauf.par") == contents().new_snapshots; }
};

// Gives the exit code; 0 for the end of its way.
template <class Work>
int in_another_process(Work work) {
    const pid_t child = fork();
    if (child == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

TEST(PhonebookUnderFire, killedAtAnyOperationLeavesOldOrNew) {
    for (const bool in_the_middle : {false, true}) {
        const Disk disk;
        int code = FaultyFiles::killed;
        int n = 0;
        while (code == FaultyFiles::killed) {
            ++n;
            ASSERT_LT(n, 100);
            disk.put_old();
            code = in_another_process([&] {
                DiskFiles files(disk.paths);
                FaultyFiles faulty(files);
                faulty.kill_at(n, in_the_middle);
                disk.save(faulty);
            });
            ASSERT_TRUE(disk.old_book() || disk.new_book()) << "killed at operation " << n;
            ASSERT_TRUE(disk.old_snapshots() || disk.new_snapshots()) << "killed at operation " << n;
            ASSERT_TRUE(disk.old_snapshots() || disk.new_book()) << "the book is first, operation " << n;
        }
        ASSERT_EQ(code, 0);
        EXPECT_GE(n, 14);
        EXPECT_TRUE(disk.new_book());
        EXPECT_TRUE(disk.new_snapshots());
    }
}

TEST(PhonebookUnderFire, aFailureAtAnyOperationLeavesOldOrNewAndNoNeighbour) {
    Disk disk;
    bool old_was_seen = false;
    for (int n = 1;; ++n) {
        ASSERT_LT(n, 100);
        disk.put_old();
        FaultyFiles faulty(disk.files);
        faulty.fail_at(n, RunTimeError::disk_full);
        disk.save(faulty);
        if (!faulty.broke()) break;
        ASSERT_TRUE(disk.old_book() || disk.new_book()) << "operation " << n;
        ASSERT_TRUE(disk.old_snapshots() || disk.new_snapshots()) << "operation " << n;
        ASSERT_TRUE(disk.new_book() || disk.new_snapshots()) << "one's failure doesn't stop the other";
        old_was_seen = old_was_seen || disk.old_book();
        EXPECT_EQ(disk.folder.content("telefon.par.neu"), "");
    }
    EXPECT_TRUE(old_was_seen);
}

TEST(PhonebookUnderFire, aFileThatWasNotUnderstoodIsNeverLost) {
    const std::string letter = "Sehr geehrte Damen und Herren";
    Disk disk;
    for (const bool killed : {false, true}) {
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 100);
            disk.folder.set_content("telefon.par", letter);
            (void)disk.files.remove(disk.folder.stored("telefon.par.alt"));
            const int code = in_another_process([&] {
                DiskFiles files(disk.paths);
                FaultyFiles faulty(files);
                if (killed)
                    faulty.kill_at(n, true);
                else
                    faulty.fail_at(n);
                Telefonbuch book;
                PhonebookFiles phonebook_files(faulty, disk.settings, book);
                phonebook_files.read_telefonbuch();
                phonebook_files.save_telefonbuch();
                if (faulty.broke()) _exit(1);
            });
            EXPECT_TRUE(disk.folder.content("telefon.par") == letter ||
                        disk.folder.content("telefon.par.alt") == letter)
                << "operation " << n;
            if (code == 0) break;
        }
    }
}

} // namespace velorn::test
