// The process is killed at every single file operation of a save. What is on disk is then, for each file, the
// complete old or the complete new content.
#include "core/settings_files.h"
#include "runtime/disk_files.h"
#include "runtime/virtual_event_loop.h"
#include "support/faulty_files.h"
#include "support/nobody_there.h"
#include "support/scripted_dialogs.h"
#include "support/settings_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velorn::test {

namespace {

constexpr const char* names[] = {"einst.par", "datpfad.par", "lan.par"};

Settings changed_settings() {
    Settings s = user_settings();
    s.anrufer = "ein anderer, mit einem laengeren Namen";
    s.datpfade[300] = "d:\\neu.dat";
    s.loginuser = "x"; // this file becomes shorter
    return s;
}

// Runs in a process of its own; its exit code tells how it ended.
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

struct Disk {
    TemporaryFolder folder;
    Paths paths{folder.path()};
    DiskFiles files{paths};
    std::string apppfad = folder.path().string();
    VirtualEventLoop loop;

    void save(Files& through, Dialogs& dialogs, Settings settings) {
        SettingsFiles settings_files(through, dialogs, settings, apppfad);
        settings_files.saveeinst();
    }
    void begin_with(const Settings& settings) {
        ScriptedDialogs nobody(loop);
        save(files, nobody, settings);
    }
};

std::string expected_new(const char* name, const std::string& old) {
    const std::string_view which = name;
    std::string bytes = file_of(which == "einst.par"     ? einst_fields()
                                : which == "datpfad.par" ? datpfad_fields()
                                                         : lan_fields(),
                                changed_settings());
    if (bytes.size() < old.size()) bytes += old.substr(bytes.size());
    return bytes;
}

} // namespace

TEST(SettingsUnderFire, killedAtAnyOperationLeaveOldOrNew) {
    for (const bool in_the_middle : {false, true}) {
        for (int n = 1;; ++n) {
            Disk disk;
            disk.begin_with(user_settings());
            std::string old[3];
            for (std::size_t i = 0; i < 3; ++i) old[i] = disk.folder.content(names[i]);
            const int code = in_another_process([&] {
                FaultyFiles faulty(disk.files);
                faulty.kill_at(n, in_the_middle);
                ScriptedDialogs nobody(disk.loop);
                disk.save(faulty, nobody, changed_settings());
            });
            for (std::size_t i = 0; i < 3; ++i) {
                const std::string now = disk.folder.content(names[i]);
                ASSERT_TRUE(now == old[i] || now == expected_new(names[i], old[i]))
                    << names[i] << " at operation " << n;
            }
            if (code != FaultyFiles::killed) {
                ASSERT_EQ(code, 0);
                ASSERT_GT(n, 15);
                break;
            }
        }
    }
}

TEST(SettingsUnderFire, aFailureAtAnyOperationIsToldAndLeavesOldOrNew) {
    for (int n = 1;; ++n) {
        Disk disk;
        disk.begin_with(user_settings());
        std::string old[3];
        for (std::size_t i = 0; i < 3; ++i) old[i] = disk.folder.content(names[i]);
        FaultyFiles faulty(disk.files);
        faulty.fail_at(n, RunTimeError::disk_full);
        Settings settings = changed_settings();
        {
            // Whether this operation's failure matters shows in the count of boxes.
            class Counting final : public NobodyThere {
              public:
                Answer message_box(std::string_view text, int code, std::string_view) override {
                    EXPECT_EQ(text, error_text(RunTimeError::disk_full));
                    EXPECT_EQ(code, 48);
                    ++boxes;
                    return Answer::ok;
                }
                int boxes = 0;
            } counting;
            disk.save(faulty, counting, settings);
            EXPECT_LE(counting.boxes, 1);
            int unchanged = 0;
            for (std::size_t i = 0; i < 3; ++i) {
                const std::string now = disk.folder.content(names[i]);
                ASSERT_TRUE(now == old[i] || now == expected_new(names[i], old[i]))
                    << names[i] << " at operation " << n;
                unchanged += now == old[i] ? 1 : 0;
            }
            if (unchanged > 0) {
                EXPECT_EQ(counting.boxes, 1) << "operation " << n;
            }
        }
        if (!faulty.broke()) break;
    }
}

} // namespace velorn::test
