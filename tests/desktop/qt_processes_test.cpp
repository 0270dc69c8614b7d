#include "desktop/qt_event_loop.h"
#include "desktop/qt_processes.h"
#include "patience.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace velorn {

namespace {

namespace fs = std::filesystem;

struct OtherPrograms : testing::Test {
    QtEventLoop loop;
    test::TemporaryFolder folder;
    Paths paths{folder.path()};
    QtProcesses processes{paths};

    std::string program(std::string_view name, std::string_view content, bool executable = true) {
        const fs::path file = folder.path() / name;
        fs::create_directories(file.parent_path());
        folder.set_content(name, content);
        if (executable) fs::permissions(file, fs::perms::owner_all);
        return file.string();
    }
    bool comes_to_hold(std::string_view name, const std::string& content) {
        return test::comes_true(loop, [&] { return folder.content(name) == content; });
    }
    int error_of(std::string_view path) {
        const Outcome started = processes.start(path);
        return started ? 0 : started.failure().number;
    }
};

} // namespace

TEST_F(OtherPrograms, runInTheirOwnFolder) {
    const std::string script = program("site one/visu.sh", "#!/bin/sh\npwd > where.txt\n");
    ASSERT_TRUE(processes.start(script));
    const fs::path own = fs::canonical(folder.path()) / "site one";
    EXPECT_TRUE(comes_to_hold("site one/where.txt", own.string() + "\n"));
}

TEST_F(OtherPrograms, areFoundByAStoredWindowsPath) {
    program("laufwerke/c/VISU/visu.sh", "#!/bin/sh\nprintf $# > words.txt\n");
    ASSERT_TRUE(processes.start("C:\\VISU\\visu.sh"));
    EXPECT_TRUE(comes_to_hold("laufwerke/c/VISU/words.txt", "0"));
}

TEST_F(OtherPrograms, areLeftToThemselves) {
    const std::string script =
        program("slow.sh", "#!/bin/sh\nwhile [ ! -e go ]; do sleep 0.05; done\necho done > end\n");
    ASSERT_TRUE(processes.start(script));
    EXPECT_EQ(folder.content("end"), "");
    folder.set_content("go", "");
    EXPECT_TRUE(comes_to_hold("end", "done\n"));
}

TEST_F(OtherPrograms, thatArentThereAreTold) {
    EXPECT_EQ(error_of(folder.stored("missing")), 53);
    EXPECT_EQ(error_of(folder.path().string()), 53);
    EXPECT_EQ(error_of(""), 53);
}

TEST_F(OtherPrograms, thatMayNotRunAreTold) {
    EXPECT_EQ(error_of(program("text.txt", "no program", false)), 70);
}

TEST_F(OtherPrograms, thatCannotRunAreTold) { EXPECT_EQ(error_of(program("lost.sh", "#!/not/there\n")), 75); }

} // namespace velorn
