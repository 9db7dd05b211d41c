// The record set's cursor, edits, clones and refusals, as a host uses them.
#include "base/erreur.h"
#include "recordset/recordset.h"

#include <gtest/gtest.h>
#include <limits>

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

RecordsetPtr plots(int n) {
    auto rs = std::make_shared<Recordset>();
    rs->appendField(QStringLiteral("NUM"), DataType::VarWChar, 5);
    rs->appendField(QStringLiteral("IDGCF"), DataType::SmallInt);
    rs->appendField(QStringLiteral("AIRE"), DataType::Double);
    rs->open();
    for (int i = 0; i < n; ++i) {
        rs->addNew();
        rs->setValue(u"Num", QString::number(i + 1));
        rs->setValue(u"idgcf", i * 10);
        rs->update();
    }
    return rs;
}

QStringList nums(Recordset& rs) {
    QStringList out;
    for (rs.moveFirst(); !rs.eof(); rs.moveNext())
        out << rs.value(u"NUM").toString();
    return out;
}

} // namespace

TEST(Recordset, OpenEmptyIsAtBothEndsAndRefusesMoves) {
    auto rs = plots(0);
    EXPECT_TRUE(rs->bof());
    EXPECT_TRUE(rs->eof());
    EXPECT_EQ(rs->recordCount(), 0);
    EXPECT_EQ(errorOf([&] { rs->moveFirst(); }), err::PasDEnregistrement);
    EXPECT_EQ(errorOf([&] { rs->moveNext(); }), err::PasDEnregistrement);
    EXPECT_EQ(errorOf([&] { rs->value(u"NUM"); }), err::PasDEnregistrement);
}

TEST(Recordset, CursorWalksBothWaysAndStopsAtTheEnds) {
    auto rs = plots(3);
    EXPECT_EQ(nums(*rs), (QStringList{"1", "2", "3"}));
    EXPECT_TRUE(rs->eof());
    EXPECT_EQ(errorOf([&] { rs->moveNext(); }), err::PasDEnregistrement);
    rs->moveLast();
    EXPECT_EQ(rs->value(u"NUM").toString(), "3");
    rs->movePrevious();
    rs->movePrevious();
    rs->movePrevious();
    EXPECT_TRUE(rs->bof());
    EXPECT_FALSE(rs->eof());
    EXPECT_EQ(errorOf([&] { rs->movePrevious(); }), err::PasDEnregistrement);
}

TEST(Recordset, NamesMatchWithoutCaseAndUnknownNamesAreRefused) {
    auto rs = plots(1);
    rs->moveFirst();
    EXPECT_EQ(rs->value(u"iDgCf").toInt(), 0);
    EXPECT_EQ(rs->field(u"aire").type, DataType::Double);
    EXPECT_EQ(errorOf([&] { rs->value(u"Section"); }), err::ChampInconnu);
    EXPECT_EQ(errorOf([&] { rs->setValue(u"Section", 1); }), err::ChampInconnu);
}

TEST(Recordset, NewFieldsAreNullUntilSet) {
    auto rs = plots(1);
    rs->moveFirst();
    EXPECT_FALSE(rs->value(u"AIRE").isValid());
    rs->setValue(u"AIRE", QStringLiteral("12,5"));
    EXPECT_DOUBLE_EQ(rs->value(u"AIRE").toDouble(), 12.5);
    rs->setValue(u"AIRE", QVariant());
    EXPECT_FALSE(rs->value(u"AIRE").isValid());
}

TEST(Recordset, RefusedValuesLeaveTheRecordUnchanged) {
    auto rs = plots(1);
    rs->moveFirst();
    EXPECT_EQ(errorOf([&] { rs->setValue(u"IDGCF", 32768); }), err::Depassement);
    EXPECT_EQ(errorOf([&] { rs->setValue(u"IDGCF", -32769); }), err::Depassement);
    EXPECT_EQ(errorOf([&] { rs->setValue(u"IDGCF", QStringLiteral("douze")); }),
              err::TypeIncompatible);
    EXPECT_EQ(errorOf([&] { rs->setValue(u"NUM", QStringLiteral("123456")); }), err::TexteTropLong);
    EXPECT_EQ(rs->value(u"IDGCF").toInt(), 0);
    EXPECT_EQ(rs->value(u"NUM").toString(), "1");
    rs->setValue(u"NUM", QStringLiteral("12345")); // exactly the size
    EXPECT_EQ(rs->value(u"NUM").toString(), "12345");
}

TEST(Recordset, CancelUpdateDropsANewRecordOrRestoresAnEdit) {
    auto rs = plots(2);
    rs->moveFirst();
    rs->addNew();
    rs->setValue(u"NUM", QStringLiteral("x"));
    EXPECT_EQ(rs->recordCount(), 3);
    rs->cancelUpdate();
    EXPECT_EQ(rs->recordCount(), 2);
    EXPECT_EQ(rs->value(u"NUM").toString(), "1");

    rs->setValue(u"NUM", QStringLiteral("y"));
    EXPECT_EQ(rs->editMode(), EditMode::InProgress);
    rs->cancelUpdate();
    EXPECT_EQ(rs->value(u"NUM").toString(), "1");
    EXPECT_EQ(rs->editMode(), EditMode::None);
}

// Every column type keeps its cells apart: an edit cancelled in the middle row restores
// that row in every column, a database's typed NULL reads back as Null, and dropping a
// new record leaves the neighbours' cells where they were.
TEST(Recordset, EveryColumnTypeStoresRestoresAndDropsItsOwnCells) {
    Recordset rs;
    rs.appendField(QStringLiteral("T"), DataType::VarWChar, 8);
    rs.appendField(QStringLiteral("I"), DataType::SmallInt);
    rs.appendField(QStringLiteral("D"), DataType::Double);
    rs.appendField(QStringLiteral("B"), DataType::Boolean);
    rs.appendField(QStringLiteral("W"), DataType::Date);
    rs.open();
    const QDateTime day(QDate(2024, 5, 17), QTime(0, 0));
    for (int i = 0; i < 3; ++i) {
        rs.addNew();
        rs.setValue(0, QStringLiteral("r%1").arg(i));
        rs.setValue(1, QString::number(i)); // text read as a number
        rs.setValue(2, i + 0.5);
        rs.setValue(3, i % 2 == 1);
        rs.setValue(4, day.addDays(i));
        rs.update();
    }
    rs.moveFirst();
    rs.moveNext();
    rs.setValue(0, QVariant(QMetaType::fromType<QString>())); // typed NULL
    rs.setValue(1, QVariant(QMetaType::fromType<double>()));
    rs.setValue(2, -7);
    EXPECT_FALSE(rs.value(0).isValid());
    EXPECT_FALSE(rs.value(1).isValid());
    EXPECT_EQ(rs.value(2).toDouble(), -7.0);
    rs.cancelUpdate();
    EXPECT_EQ(rs.value(0).toString(), "r1");
    EXPECT_EQ(rs.value(1).typeId(), QMetaType::Short);
    EXPECT_EQ(rs.value(1).toInt(), 1);
    EXPECT_EQ(rs.value(2).toDouble(), 1.5);
    EXPECT_TRUE(rs.value(3).toBool());
    EXPECT_EQ(rs.value(4).toDateTime(), day.addDays(1));

    rs.addNew();
    rs.setValue(2, 99.0);
    rs.cancelUpdate();
    rs.moveLast();
    EXPECT_EQ(rs.value(0).toString(), "r2");
    EXPECT_EQ(rs.value(2).toDouble(), 2.5);
    EXPECT_EQ(rs.recordCount(), 3);
}

// The typed setters of a bulk fill store and refuse exactly what setValue does, in every
// column, and an edit they start is cancelled like any other.
TEST(Recordset, TypedSettersAgreeWithSetValue) {
    auto viaVariant = plots(1);
    auto typed = plots(1);
    typed->reserve(1000); // room only: no records appear
    EXPECT_EQ(typed->recordCount(), 1);
    const auto same = [&](qsizetype column, auto set, const QVariant& value) {
        viaVariant->moveFirst();
        typed->moveFirst();
        const qint32 expected = errorOf([&] { viaVariant->setValue(column, value); });
        EXPECT_EQ(errorOf([&] { set(); }), expected) << column << value.toString().toStdString();
        // As texts, so that a stored NaN compares equal to itself.
        EXPECT_EQ(typed->value(column).typeId(), viaVariant->value(column).typeId());
        EXPECT_EQ(typed->value(column).toString(), viaVariant->value(column).toString());
        viaVariant->update();
        typed->update();
    };
    for (const double d : {2.5, 3.5, -0.5, 32767.4, 32767.6, -32768.0, 1e300, 12.25,
                           std::numeric_limits<double>::quiet_NaN()})
        for (qsizetype column : {0, 1, 2})
            same(
                column, [&] { typed->setNumber(column, d); }, QVariant(d));
    for (const QString& s :
         {QString(), QString(""), QStringLiteral("12345"), QStringLiteral("123456"),
          QStringLiteral("7,5"), QStringLiteral("douze")})
        for (qsizetype column : {0, 1, 2})
            same(
                column, [&] { typed->setText(column, s); }, QVariant(s));
    EXPECT_EQ(errorOf([&] { typed->setText(3, QString()); }), err::ChampInconnu);
    EXPECT_EQ(errorOf([&] { typed->setNumber(-1, 0); }), err::ChampInconnu);

    typed->moveFirst();
    const QVariant before = typed->value(u"AIRE");
    typed->setNumber(2, 99);
    typed->setText(0, QStringLiteral("z"));
    EXPECT_EQ(typed->editMode(), EditMode::InProgress);
    typed->cancelUpdate();
    EXPECT_EQ(typed->value(u"AIRE"), before);
    EXPECT_EQ(typed->value(u"NUM").toString(), viaVariant->value(u"NUM").toString());
}

TEST(Recordset, CloneHasItsOwnCursorAndSurvivesTheOriginalsClose) {
    auto rs = plots(3);
    rs->moveLast();
    auto copy = rs->clone();
    EXPECT_EQ(copy->value(u"NUM").toString(), "1"); // a clone starts at the first record
    EXPECT_EQ(rs->value(u"NUM").toString(), "3");
    rs->close();
    EXPECT_EQ(rs->state(), State::Closed);
    EXPECT_EQ(copy->recordCount(), 3);
    EXPECT_EQ(nums(*copy), (QStringList{"1", "2", "3"}));
    copy->addNew(); // clones may still add rows
    copy->setValue(u"NUM", QStringLiteral("4"));
    copy->update();
    EXPECT_EQ(copy->recordCount(), 4);
}

TEST(Recordset, AClosedRecordSetRefusesEverythingButItsColumns) {
    auto rs = plots(2);
    rs->close();
    for (auto use : std::initializer_list<std::function<void()>>{
             [&] { rs->recordCount(); }, [&] { rs->moveFirst(); }, [&] { rs->eof(); },
             [&] { rs->addNew(); }, [&] { rs->value(u"NUM"); }, [&] { rs->clone(); },
             [&] { rs->close(); }})
        EXPECT_EQ(errorOf(use), err::ObjetFerme);
    EXPECT_EQ(rs->fields().size(), 3u);
    rs->open(); // reopened, it is empty
    EXPECT_EQ(rs->recordCount(), 0);
}

TEST(Recordset, ColumnsAreDeclaredOnlyWhileClosedAndOnce) {
    Recordset rs;
    rs.appendField(QStringLiteral("NOM"), DataType::VarWChar, 32);
    EXPECT_EQ(errorOf([&] { rs.appendField(QStringLiteral("nom"), DataType::Boolean); }),
              err::ChampEnDouble);
    EXPECT_EQ(errorOf([&] { rs.appendField(QStringLiteral(" "), DataType::Boolean); }),
              err::ArgumentsIncorrects);
    EXPECT_EQ(errorOf([&] { rs.appendField(QStringLiteral("T"), DataType::VarWChar, -1); }),
              err::ArgumentsIncorrects);
    rs.open();
    EXPECT_EQ(errorOf([&] { rs.appendField(QStringLiteral("X"), DataType::Boolean); }),
              err::ObjetOuvert);
}

TEST(Recordset, ErreurFormatsNumberAndDescription) {
    const Erreur e(err::Depassement, QStringLiteral("Dépassement de capacité"));
    EXPECT_EQ(e.message(), QStringLiteral("6 : Dépassement de capacité"));
}
