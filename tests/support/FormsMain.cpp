#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // Discovery runs the program, too, where there may be no screen.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    // As in the program, where windows outlive each other.
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
