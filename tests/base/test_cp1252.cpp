#include "base/cp1252.h"

#include <gtest/gtest.h>

using namespace veldra;

TEST(Cp1252, AccentsAndTheEuroTakeOneByte) {
    EXPECT_EQ(toCp1252(u"Allées"), QByteArray("All\xE9"
                                              "es"));
    EXPECT_EQ(toCp1252(u"€"), QByteArray("\x80"));
    EXPECT_EQ(fromCp1252("Param\xE8tres"), QStringLiteral("Paramètres"));
    EXPECT_EQ(fromCp1252("\x9C"), QStringLiteral("œ"));
}

TEST(Cp1252, CharactersOutsideTheCodePageBecomeQuestionMarks) {
    EXPECT_EQ(toCp1252(u"Ω mètres"), QByteArray("? m\xE8tres"));
    EXPECT_EQ(toCp1252(QStringLiteral("a😀b")), QByteArray("a?b")); // one mark per character
}

TEST(Cp1252, EveryByteRoundTrips) {
    QByteArray all;
    for (int b = 0; b < 256; ++b)
        all.append(char(b));
    EXPECT_EQ(toCp1252(fromCp1252(all)), all);
}
