// The numeric key filter, driven through real key presses on a QLineEdit.
#include "context/filtre_numerique.h"

#include <QLineEdit>
#include <QLocale>
#include <QTest>
#include <gtest/gtest.h>

using namespace veldra;

namespace {

struct Box {
    QLineEdit edit;
    Box(bool chiffres, bool moins, const QString& extra = {}) {
        FiltreClavierNumerique::installe(edit, chiffres, moins, extra);
    }
    QString type(const char* keys) {
        QTest::keyClicks(&edit, QString::fromUtf8(keys));
        return edit.text();
    }
};

} // namespace

TEST(FiltreNumerique, PlanSizeBoxTakesDigitsAndBackspaceOnly) {
    Box box(true, false);
    EXPECT_EQ(box.type("12.,-a 3"), QStringLiteral("123"));
    QTest::keyClick(&box.edit, Qt::Key_Backspace);
    EXPECT_EQ(box.edit.text(), QStringLiteral("12"));
    box.edit.selectAll();
    QTest::keyClick(&box.edit, Qt::Key_Backspace);
    EXPECT_EQ(box.edit.text(), QString());
}

TEST(FiltreNumerique, MinusOnlyAtTheStartAndOnce) {
    Box box(true, true);
    EXPECT_EQ(box.type("5-"), QStringLiteral("5"));
    box.edit.setCursorPosition(0);
    EXPECT_EQ(box.type("-"), QStringLiteral("-5"));
    box.edit.setCursorPosition(0);
    EXPECT_EQ(box.type("-"), QStringLiteral("-5"));
    // A selected "-" may be typed over.
    box.edit.setSelection(0, 1);
    EXPECT_EQ(box.type("-"), QStringLiteral("-5"));
}

TEST(FiltreNumerique, DecimalSeparatorOnlyWhenTheCallerAllowsItAndOnce) {
    ASSERT_EQ(separateurDecimal(), u','); // tests run in a French locale
    Box box(true, false, QStringLiteral(","));
    EXPECT_EQ(box.type("1.5"), QStringLiteral("1,5")); // "." becomes the locale's separator
    EXPECT_EQ(box.type(",2"), QStringLiteral("1,52"));
    box.edit.selectAll();
    EXPECT_EQ(box.type("3,"), QStringLiteral("3,"));
}

TEST(FiltreNumerique, TheSeparatorFollowsTheLocale) {
    const QLocale saved;
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    EXPECT_EQ(separateurDecimal(), u'.');
    QLineEdit edit;
    EXPECT_EQ(FiltreNumerique(edit, ',', true, false, QStringLiteral(".")), int('.'));
    QLocale::setDefault(saved);
}

TEST(FiltreNumerique, WithoutDigitsOnlyTheExtraCharactersPass) {
    QLineEdit edit;
    EXPECT_EQ(FiltreNumerique(edit, '7', false, true, QStringLiteral("NS")), 0);
    EXPECT_EQ(FiltreNumerique(edit, 'N', false, true, QStringLiteral("NS")), int('N'));
    EXPECT_EQ(FiltreNumerique(edit, 13, false, false, {}), 0);
    EXPECT_EQ(FiltreNumerique(edit, 13, true, false, {}), 0);
}

TEST(FiltreNumerique, NavigationKeysStillWork) {
    Box box(true, false);
    box.type("123");
    QTest::keyClick(&box.edit, Qt::Key_Home);
    EXPECT_EQ(box.edit.cursorPosition(), 0);
    QTest::keyClick(&box.edit, Qt::Key_Delete);
    EXPECT_EQ(box.edit.text(), QStringLiteral("23"));
}
