// Coercions a host relies on when it reads or writes record-set values.
#include "base/erreur.h"
#include "recordset/value.h"

#include <gtest/gtest.h>

using namespace recordset;
using veldra::Erreur;
namespace err = veldra::err;

namespace {

qint32 errorOf(auto&& f) {
    try {
        f();
    } catch (const Erreur& e) {
        return e.numero();
    }
    return 0;
}

} // namespace

TEST(Coercion, IntegersRoundHalfToEvenAndRefuseOverflow) {
    EXPECT_EQ(toInt16(QVariant(2.5)), 2);
    EXPECT_EQ(toInt16(QVariant(3.5)), 4);
    EXPECT_EQ(toInt16(QVariant(-2.5)), -2);
    EXPECT_EQ(toInt16(QVariant(32767)), 32767);
    EXPECT_EQ(toInt16(QVariant(-32768)), -32768);
    EXPECT_EQ(errorOf([] { toInt16(QVariant(32768)); }), err::Depassement);
    EXPECT_EQ(errorOf([] { toInt16(QVariant(-32768.6)); }), err::Depassement);
    EXPECT_EQ(errorOf([] { toInt16(QVariant(1e300)); }), err::Depassement);
}

TEST(Coercion, TextIsReadAsANumberWithEitherSeparator) {
    EXPECT_EQ(toInt16(QVariant(QStringLiteral(" 12 "))), 12);
    EXPECT_DOUBLE_EQ(toDouble(QVariant(QStringLiteral("3,25"))), 3.25); // French locale
    EXPECT_DOUBLE_EQ(toDouble(QVariant(QStringLiteral("3.25"))), 3.25);
    EXPECT_EQ(errorOf([] { toInt16(QVariant(QStringLiteral("12a"))); }), err::TypeIncompatible);
    EXPECT_EQ(errorOf([] { toDouble(QVariant(QString())); }), err::TypeIncompatible);
    EXPECT_EQ(errorOf([] { toDouble(QVariant(QStringLiteral("1 or 1=1"))); }),
              err::TypeIncompatible);
}

TEST(Coercion, BooleansFollowThePlatform) {
    EXPECT_EQ(toInt16(QVariant(true)), -1);
    EXPECT_TRUE(toBool(QVariant(QStringLiteral("Vrai"))));
    EXPECT_FALSE(toBool(QVariant(QStringLiteral("false"))));
    EXPECT_TRUE(toBool(QVariant(7)));
    EXPECT_FALSE(toBool(QVariant(QStringLiteral("0"))));
    EXPECT_EQ(toText(QVariant(true)), QStringLiteral("True"));
    EXPECT_EQ(errorOf([] { toBool(QVariant(QStringLiteral("peut-être"))); }),
              err::TypeIncompatible);
}

TEST(Coercion, NullStaysNullInAColumnButNotInATypedRead) {
    EXPECT_FALSE(toColumn(QVariant(), DataType::SmallInt).isValid());
    EXPECT_EQ(errorOf([] { toText(QVariant()); }), err::NullIncorrect);
    EXPECT_EQ(errorOf([] { toInt16(QVariant()); }), err::NullIncorrect);
}

TEST(Coercion, DatesFromTextAndNumbers) {
    EXPECT_EQ(toDate(QVariant(QStringLiteral("2024-03-01"))).date(), QDate(2024, 3, 1));
    EXPECT_EQ(toDate(QVariant(QStringLiteral("01/03/2024"))).date(), QDate(2024, 3, 1));
    // Day 2 of the platform's date numbers is 1 January 1900.
    EXPECT_EQ(toDate(QVariant(2.0)).date(), QDate(1900, 1, 1));
    EXPECT_EQ(toDate(QVariant(2.5)).time(), QTime(12, 0));
    EXPECT_EQ(errorOf([] { toDate(QVariant(QStringLiteral("hier"))); }), err::TypeIncompatible);
    EXPECT_EQ(toText(QVariant(QDateTime(QDate(2024, 3, 1), QTime(0, 0)))),
              QStringLiteral("2024-03-01"));
}

TEST(Coercion, ColumnTypesGiveTheirOwnVariantTypes) {
    EXPECT_EQ(toColumn(QVariant(5), DataType::Double).typeId(), QMetaType::Double);
    EXPECT_EQ(toColumn(QVariant(5.0), DataType::SmallInt).typeId(), QMetaType::Short);
    EXPECT_EQ(toColumn(QVariant(5), DataType::VarWChar).toString(), QStringLiteral("5"));
    EXPECT_EQ(toColumn(QVariant(2.5), DataType::VarWChar).toString(), QStringLiteral("2,5"));
}

TEST(LeadingNumber, ReadsLikeVal) {
    EXPECT_DOUBLE_EQ(leadingNumber(u"32)"), 32);
    EXPECT_DOUBLE_EQ(leadingNumber(u"250)"), 250);
    EXPECT_DOUBLE_EQ(leadingNumber(u" 3 2x"), 32);
    EXPECT_DOUBLE_EQ(leadingNumber(u"3.2)"), 3.2);
    EXPECT_DOUBLE_EQ(leadingNumber(u"1e3"), 1000);
    EXPECT_DOUBLE_EQ(leadingNumber(u"-7"), -7);
    EXPECT_DOUBLE_EQ(leadingNumber(u"e5"), 0);
    EXPECT_DOUBLE_EQ(leadingNumber(u""), 0);
    EXPECT_DOUBLE_EQ(leadingNumber(u"2e"), 2);
    EXPECT_TRUE(std::isinf(leadingNumber(u"9e999999")));
}
