#include "support/test_program.h"

#include <gtest/gtest.h>

namespace velorn::test {

TEST(FirstStart, withoutAnyFileWritesTheDefaultsAndOpensNormally) {
    TestProgram p;
    p.start();
    EXPECT_EQ(p.settings.comsettings.text(), "19200,n,8,1");
    EXPECT_EQ(p.settings.einstversion2.number(), 20);
    EXPECT_TRUE(p.program.MSComm1.PortOpen());
    EXPECT_EQ(p.frmTerminal.form.Caption.get(), "Velorn  V72");
    EXPECT_EQ(p.settings.neustartzaehler.number(), 1);
    for (const char* name : {"\\einst.par", "\\datpfad.par", "\\lan.par"}) {
        EXPECT_TRUE(p.files.exists(std::string(TestProgram::folder) + name)) << name;
    }
}

} // namespace velorn::test
