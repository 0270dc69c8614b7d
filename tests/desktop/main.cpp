#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // The tests need no screen, neither when they run nor when their names are listed.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
