// Record sets built from field-spec strings, including the control's own strings.
#include "base/erreur.h"
#include "recordset/field_spec.h"

#include <gtest/gtest.h>

using namespace recordset;
namespace err = veldra::err;

namespace {

struct Column {
    const char* name;
    DataType type;
    qint32 size;
};

void expectColumns(const RecordsetPtr& rs, std::initializer_list<Column> expected) {
    ASSERT_EQ(rs->fields().size(), expected.size());
    size_t i = 0;
    for (const Column& c : expected) {
        const Field& f = rs->fields()[i++];
        EXPECT_EQ(f.name, QString::fromUtf8(c.name));
        EXPECT_EQ(f.type, c.type) << c.name;
        EXPECT_EQ(f.definedSize, c.size) << c.name;
    }
}

} // namespace

TEST(FieldSpec, TheControlsStrings) {
    expectColumns(fromFieldSpec(u"Nom C(32)"), {{"NOM", DataType::VarWChar, 32}});
    expectColumns(fromFieldSpec(u"IdGCF N,IdMapInfo N,Photo C(250)"),
                  {{"IDGCF", DataType::SmallInt, 0},
                   {"IDMAPINFO", DataType::SmallInt, 0},
                   {"PHOTO", DataType::VarWChar, 250}});
    expectColumns(fromFieldSpec(u"Section C(32),Allee C(32),Num C(32),IdGCF N,IdMapInfo N,"
                                u"Aire N(3.2),Longueur N(3.2),Largeur N(3.2),Nom C(32)"),
                  {{"SECTION", DataType::VarWChar, 32},
                   {"ALLEE", DataType::VarWChar, 32},
                   {"NUM", DataType::VarWChar, 32},
                   {"IDGCF", DataType::SmallInt, 0},
                   {"IDMAPINFO", DataType::SmallInt, 0},
                   {"AIRE", DataType::Double, 0},
                   {"LONGUEUR", DataType::Double, 0},
                   {"LARGEUR", DataType::Double, 0},
                   {"NOM", DataType::VarWChar, 32}});
}

TEST(FieldSpec, TypeWordRules) {
    expectColumns(fromFieldSpec(u"A B,D D,E N(5),F N9.,G C,H C(12.6)x,I Q(3),J b"),
                  {{"A", DataType::Boolean, 0},
                   {"D", DataType::Date, 0},
                   {"E", DataType::SmallInt, 0},
                   {"F", DataType::Double, 0},
                   {"G", DataType::VarWChar, 0},
                   {"H", DataType::VarWChar, 13}});
    // The text after a second space is ignored.
    expectColumns(fromFieldSpec(u"Nom C(4) ignoré"), {{"NOM", DataType::VarWChar, 4}});
}

TEST(FieldSpec, MalformedDescriptionsAreSkipped) {
    expectColumns(fromFieldSpec(u""), {});
    expectColumns(fromFieldSpec(u",,Nom C(3),"), {{"NOM", DataType::VarWChar, 3}});
    // Two spaces leave an empty type word; a name alone has none.
    expectColumns(fromFieldSpec(u"Nom  C(3),Seul,X N"), {{"X", DataType::SmallInt, 0}});
}

TEST(FieldSpec, ConflictsAndHugeSizesAreErrors) {
    auto errorOf = [](QStringView spec) {
        try {
            fromFieldSpec(spec);
        } catch (const veldra::Erreur& e) {
            return e.numero();
        }
        return 0;
    };
    EXPECT_EQ(errorOf(u"Nom C(3),NOM N"), err::ChampEnDouble);
    EXPECT_EQ(errorOf(u"Nom C(99999999999)"), err::Depassement);
    EXPECT_EQ(errorOf(u"Nom C(-4)"), err::ArgumentsIncorrects);
    EXPECT_EQ(errorOf(u" C(3)"), err::ArgumentsIncorrects);
    EXPECT_EQ(errorOf(u"Nom C(2147483647)"), 0);
}

TEST(FieldSpec, TheRecordSetIsOpenEmptyAndAcceptsRecords) {
    auto rs = fromFieldSpec(u"IdGCF N,Photo C(250),Vu B");
    EXPECT_TRUE(rs->isOpen());
    EXPECT_EQ(rs->recordCount(), 0);
    EXPECT_TRUE(rs->eof());
    rs->addNew();
    rs->setValue(u"IdGCF", 12);
    rs->setValue(u"Photo", QStringLiteral("photos/12.jpg"));
    rs->setValue(u"vu", true);
    rs->update();
    rs->moveFirst();
    EXPECT_EQ(rs->value(u"IDGCF").toInt(), 12);
    EXPECT_TRUE(rs->value(u"VU").toBool());
}
