// A feature's attribute block gives back every value as the variant it was given as.
#include "carto/model/attribute_values.h"

#include <QDateTime>
#include <gtest/gtest.h>
#include <limits>

using carto::AttributeValues;

namespace {

// Same type, same null-ness, same value (NaN included).
void expectSame(const QVariant& got, const QVariant& want, size_t i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(got.isValid(), want.isValid());
    EXPECT_EQ(got.typeId(), want.typeId());
    EXPECT_EQ(got.isNull(), want.isNull());
    if (want.typeId() == QMetaType::QString) {
        EXPECT_EQ(got.toString().isNull(), want.toString().isNull());
        EXPECT_EQ(got.toString(), want.toString());
    } else if (want.typeId() == QMetaType::Double) {
        EXPECT_EQ(got.toString(), want.toString());
    } else {
        EXPECT_EQ(got, want);
    }
}

const std::vector<QVariant> kValues{
    QVariant(),
    QVariant(0),
    QVariant(-7),
    QVariant(std::numeric_limits<int>::min()),
    QVariant(qlonglong(std::numeric_limits<qint64>::max())),
    QVariant(qlonglong(-1)),
    QVariant(2.5),
    QVariant(-0.0),
    QVariant(std::numeric_limits<double>::quiet_NaN()),
    QVariant(true),
    QVariant(false),
    QVariant(QString()),
    QVariant(QStringLiteral("")),
    QVariant(QStringLiteral("A-12")),
    QVariant(QStringLiteral("Allée des Tilleuls 𝄞")),
    QVariant(QDateTime(QDate(2026, 11, 25), QTime(10, 30))),
    QVariant(QMetaType::fromType<int>()), // a database's NULL, typed
    QVariant(QByteArray("octets")),
};

} // namespace

TEST(AttributeValues, EveryValueComesBackAsItWasGiven) {
    const AttributeValues values(kValues);
    ASSERT_EQ(values.size(), kValues.size());
    for (size_t i = 0; i < kValues.size(); ++i)
        expectSame(values[i], kValues[i], i);
    EXPECT_FALSE(values[kValues.size()].isValid()); // Null past the end

    // UTF-8 from storage, ASCII or not, reads as the same texts.
    AttributeValues::Builder b;
    b.addUtf8("123");
    b.addUtf8("");
    b.addUtf8("Allée 𝄞");
    b.addText(QStringView());
    const AttributeValues read = b.build();
    EXPECT_EQ(b.size(), 0u); // the builder starts again empty
    expectSame(read[0], QVariant(QStringLiteral("123")), 0);
    expectSame(read[1], QVariant(QStringLiteral("")), 1);
    expectSame(read[2], QVariant(QStringLiteral("Allée 𝄞")), 2);
    expectSame(read[3], QVariant(QString()), 3);
}

TEST(AttributeValues, LongAndWideTextsKeepTheValuesAfterThemInPlace) {
    // Lengths past one byte of length word, Latin-1 beyond ASCII, and characters beyond it.
    const std::vector<QVariant> given{
        QVariant(QString(127, u'a')),
        QVariant(1),
        QVariant(QString(128, u'é')),
        QVariant(2.25),
        QVariant(QString(70000, u'Œ')),
        QVariant(qlonglong(-3)),
        QVariant(QStringLiteral("Œuvre de l'été")),
        QVariant(QDate(2026, 1, 2)),
        QVariant(QStringLiteral("fin")),
    };
    const AttributeValues values(given);
    for (size_t i = 0; i < given.size(); ++i)
        expectSame(values[i], given[i], i);
    const AttributeValues copy = values;
    AttributeValues changed = copy;
    changed.set(2, QStringLiteral("court"));
    for (size_t i = 0; i < given.size(); ++i) {
        expectSame(copy[i], given[i], i);
        if (i != 2)
            expectSame(changed[i], given[i], i);
    }
    EXPECT_EQ(changed[2].toString(), "court");

    AttributeValues::Builder b;
    b.addUtf8("\xc3\xa9t\xc3\xa9 \xc5\x92"); // UTF-8 "été Œ"
    b.addUtf8("abc\0def", 7);                // a NUL inside, kept as given
    const AttributeValues read = b.build();
    EXPECT_EQ(read[0].toString(), QStringLiteral("été Œ"));
    EXPECT_EQ(read[1].toString().size(), 7);
}

TEST(AttributeValues, ValuesSmallEnoughToHoldInPlaceBehaveAsAnyOther) {
    // Around the seven bytes a value set can be held in without a block of its own.
    const std::vector<std::vector<QVariant>> sets{
        {QStringLiteral("12345")},
        {QStringLiteral("123456")},
        {QStringLiteral("é")},
        {QStringLiteral("Œ")},
        {QVariant(7)},
        {QVariant(true), QVariant(), QVariant(QString()), QVariant(QStringLiteral(""))},
        {QVariant(1), QVariant(2)},
        {QVariant(2.5)},
        {QVariant(QDate(2026, 11, 25))},
        {QVariant(), QVariant(), QVariant(), QVariant(), QVariant(), QVariant(), QVariant()},
        {QVariant(), QVariant(), QVariant(), QVariant(), QVariant(), QVariant(), QVariant(),
         QVariant()},
    };
    for (const std::vector<QVariant>& given : sets) {
        SCOPED_TRACE(given.size());
        AttributeValues values(given);
        ASSERT_EQ(values.size(), given.size());
        for (size_t i = 0; i < given.size(); ++i)
            expectSame(values[i], given[i], i);
        const AttributeValues copy = values;
        AttributeValues grown = copy;
        grown.set(0, QStringLiteral("une valeur bien plus longue"));
        grown.set(given.size() + 1, QVariant(3));
        EXPECT_EQ(grown[0].toString(), "une valeur bien plus longue");
        grown.resize(given.size());
        grown.set(0, given[0]);
        EXPECT_TRUE(grown == copy);
        AttributeValues moved = std::move(values);
        values = copy; // NOLINT: assigned again after the move
        for (size_t i = 0; i < given.size(); ++i) {
            expectSame(moved[i], given[i], i);
            expectSame(values[i], given[i], i);
        }
        moved.resize(0);
        EXPECT_TRUE(moved.empty());
        EXPECT_FALSE(moved[0].isValid());
    }
}

TEST(AttributeValues, CopiesAreIndependentAndChangesKeepTheRest) {
    std::vector<QVariant> given = kValues;
    given[8] = 1.5; // NaN is never equal to itself, as between variants
    AttributeValues a(given);
    const AttributeValues copy = a;
    a.set(13, QStringLiteral("B-7"));
    a.set(15, QVariant(42));
    EXPECT_EQ(a[13].toString(), "B-7");
    EXPECT_EQ(copy[13].toString(), "A-12");
    expectSame(copy[15], kValues[15], 15);
    for (size_t i : {0u, 2u, 4u, 8u, 9u, 11u, 12u, 14u, 16u, 17u})
        expectSame(a[i], given[i], i);
    EXPECT_FALSE(a == copy);
    a.set(13, kValues[13]);
    a.set(15, kValues[15]);
    EXPECT_TRUE(a == copy);

    a.set(kValues.size() + 2, QVariant(5)); // past the end: Nulls between
    EXPECT_EQ(a.size(), kValues.size() + 3);
    EXPECT_FALSE(a[kValues.size()].isValid());
    a.resize(2);
    EXPECT_EQ(a.size(), 2u);
    expectSame(a[1], kValues[1], 1);
    size_t seen = 0;
    for (const QVariant& v : a)
        expectSame(v, kValues[seen], seen), ++seen;
    EXPECT_EQ(seen, 2u);

    AttributeValues moved = std::move(a);
    EXPECT_EQ(moved.size(), 2u);
    EXPECT_TRUE(AttributeValues() == AttributeValues(std::vector<QVariant>{}));
}
