#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    // As in the program, where windows outlive each other.
    QApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
