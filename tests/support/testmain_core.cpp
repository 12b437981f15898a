#include <QCoreApplication>

#include <gtest/gtest.h>

#include <clocale>

/// The tests run under the locale of the environment, as the program does, so that a run under a comma locale means it.
int main(int argc, char **argv)
{
    std::setlocale(LC_ALL, "");
    ::testing::InitGoogleTest(&argc, argv);
    QCoreApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
