// A feature's text in its small block reads back unit for unit, whatever it holds.
#include "carto/model/feature_text.h"

#include <gtest/gtest.h>

using namespace carto;

TEST(FeatureText, ReadsBackEveryTextAndCopiesOnItsOwn) {
    const QString long70k(70000, QChar(u'é')); // a length past 16 bits
    // Held in place up to seven Latin-1 characters, in a block past that.
    for (const QString& s :
         {QStringLiteral("12"), QStringLiteral("B-117é"), QStringLiteral("ABCDEFG"),
          QStringLiteral("ABCDEFGH"), QStringLiteral("Œ"), QStringLiteral("Allée des Tilleuls"),
          QString::fromUtf8("\xF0\x9F\x8C\xB3 arbre"), // a surrogate pair
          QString(QChar(0)), QString(2, QChar(0xFF)), long70k}) {
        FeatureText t(s);
        EXPECT_EQ(t.toString(), s);
        EXPECT_EQ(t.size(), s.size());
        FeatureText copy = t;
        t = FeatureText(QStringLiteral("autre"));
        EXPECT_EQ(QString(copy), s);
        EXPECT_FALSE(copy == t);
        EXPECT_TRUE(copy == FeatureText(s));
        FeatureText moved = std::move(copy);
        EXPECT_TRUE(copy.isEmpty()); // NOLINT: moved from, no text
        EXPECT_EQ(moved.toString(), s);
        copy = t;
        EXPECT_TRUE(copy == t);
        moved = std::move(copy);
        EXPECT_EQ(moved.toString(), QStringLiteral("autre"));
    }
    // Nothing, an empty text and a null one are all no text.
    EXPECT_TRUE(FeatureText().isEmpty());
    EXPECT_TRUE(FeatureText(QString()).isEmpty());
    EXPECT_TRUE(FeatureText(QStringLiteral("")) == FeatureText());
    EXPECT_EQ(FeatureText().toString(), QString());
}
