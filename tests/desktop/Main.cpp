#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // The bus to the programs under test needs an application object.
    QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
