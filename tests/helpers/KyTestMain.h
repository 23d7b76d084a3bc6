#pragma once

#include <QApplication>
#include <QtTest>

namespace Kyte {
namespace Test {

/**
 * Cuts the process off from the user's files and from the machine's settings: home, configuration, data and
 * cache folders lie in a temporary folder, the time zone is UTC, the locale is C and the platform plug-in is
 * offscreen unless QT_QPA_PLATFORM says otherwise. Call it before the application object exists.
 */
void isolate();

} // namespace Test
} // namespace Kyte

/** The main function of a test program: an isolated QApplication that runs \a TestClass. */
#define KYTE_TEST_MAIN(TestClass)                                                                            \
    int main(int argc, char **argv)                                                                          \
    {                                                                                                        \
        Kyte::Test::isolate();                                                                               \
        QApplication application(argc, argv);                                                                \
        TestClass test;                                                                                      \
        QTEST_SET_MAIN_SOURCE_PATH                                                                           \
        return QTest::qExec(&test, argc, argv);                                                              \
    }
