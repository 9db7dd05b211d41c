#include <QApplication>
#include <QLocale>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    // Tests state their locale; the machine's must not change a result.
    QLocale::setDefault(QLocale(QLocale::French, QLocale::France));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
