// GetInfo and what the control hands the host with it.
#include "base/erreur.h"
#include "exchange/collecte.h"
#include "exchange_fixture.h"

#include <QPushButton>
#include <QSignalSpy>

using namespace veldra;

namespace {

// The record of a plot in a collection, found by its map identifier.
bool chercheEnregistrement(recordset::Recordset& rs, qint64 fid) {
    for (rs.moveFirst(); !rs.eof(); rs.moveNext())
        if (rs.value(u"IdMapInfo").toLongLong() == fid)
            return true;
    return false;
}

} // namespace

TEST(GetInfo, MissingParametersAndUnknownTypes) {
    EchangeFixture f;
    for (const char* type : {"T", "S", "A", "c"}) {
        f.messages.clear();
        EXPECT_EQ(f.getInfo(QString::fromLatin1(type)), nullptr) << type;
        ASSERT_EQ(f.messages.size(), 1u) << type;
        EXPECT_EQ(f.messages[0].texte,
                  QStringLiteral("Il manque un paramètre dans l'appel de 'GetInfo'"));
    }
    f.messages.clear();
    RecordsetPtr inconnu = f.getInfo(QStringLiteral("c"), QStringLiteral("x"));
    ASSERT_NE(inconnu, nullptr);
    EXPECT_EQ(inconnu->recordCount(), 0);
    EXPECT_EQ(inconnu->fields().size(), 9u);
    EXPECT_TRUE(f.messages.empty());

    // "CT" with nothing selected: empty, the gauge opened and closed again.
    RecordsetPtr vide = f.getInfo(QStringLiteral("CT"), {}, {}, true);
    ASSERT_NE(vide, nullptr);
    EXPECT_EQ(vide->recordCount(), 0);
    EXPECT_FALSE(f.w<QWidget>("Panel_Jauge")->isVisible());
    EXPECT_EQ(f.w<QProgressBar>("ProgressBar1")->maximum(), f.c->Calque_Tombe->featureCount());
    EXPECT_EQ(f.w<QProgressBar>("ProgressBar1")->value(), 0);
}

TEST(GetInfo, TheWholePlanGivesOneRecordPerPolygonWithItsPlaceAndSides) {
    EchangeFixture f;
    const carto::Point p = f.dansAllee(QStringLiteral("A"), QStringLiteral("Allée 1"));
    // Sides 2.5 and 1.2, drawn from either side; and one just above 1 m.
    const carto::Feature a = f.ajouteTombe(
        {{p.x, p.y}, {p.x + 2.5, p.y}, {p.x + 2.5, p.y + 1.2}, {p.x, p.y + 1.2}}, 501, "X1");
    const carto::Feature b = f.ajouteTombe(
        {{p.x, p.y}, {p.x, p.y + 1.2}, {p.x + 2.5, p.y + 1.2}, {p.x + 2.5, p.y}}, 502, "X2");
    const carto::Feature c = f.ajouteTombe(
        {{p.x, p.y}, {p.x + 1.0000049, p.y}, {p.x + 1.0000049, p.y + 1}, {p.x, p.y + 1}});
    const carto::Rect tout = f.c->Calque_Enceinte->bounds();
    const carto::Feature dehors = f.ajouteTombe(
        {{tout.xmax + 10, 0}, {tout.xmax + 12, 0}, {tout.xmax + 12, 1}, {tout.xmax + 10, 1}});
    f.c->Calque_Tombe->addFeature(carto::Feature::line({{{p.x, p.y}, {p.x + 3, p.y}}}));

    RecordsetPtr rs = f.getInfo(QStringLiteral("C"));
    ASSERT_NE(rs, nullptr);
    EXPECT_EQ(rs->recordCount(), f.c->Calque_Tombe->featureCount() - 1); // not the line
    ASSERT_TRUE(chercheEnregistrement(*rs, a.fid()));
    EXPECT_EQ(rs->value(u"Section").toString(), QStringLiteral("A"));
    EXPECT_EQ(rs->value(u"Allee").toString(), QStringLiteral("Allée 1"));
    EXPECT_EQ(rs->value(u"Num").toString(), QStringLiteral("X1"));
    EXPECT_EQ(rs->value(u"IdGCF").toInt(), 501);
    EXPECT_NEAR(rs->value(u"Aire").toDouble(), 3.0, 1e-9);
    EXPECT_DOUBLE_EQ(rs->value(u"Longueur").toDouble(), 2.5);
    EXPECT_DOUBLE_EQ(rs->value(u"Largeur").toDouble(), 1.2);
    ASSERT_TRUE(chercheEnregistrement(*rs, b.fid()));
    EXPECT_DOUBLE_EQ(rs->value(u"Longueur").toDouble(), 2.5);
    EXPECT_DOUBLE_EQ(rs->value(u"Largeur").toDouble(), 1.2);
    ASSERT_TRUE(chercheEnregistrement(*rs, c.fid()));
    EXPECT_DOUBLE_EQ(rs->value(u"Longueur").toDouble(), 1.0);
    ASSERT_TRUE(chercheEnregistrement(*rs, dehors.fid()));
    EXPECT_EQ(rs->value(u"Section").toString(), QStringLiteral("-1"));
    EXPECT_EQ(rs->value(u"Allee").toString(), QStringLiteral("-1"));
    EXPECT_TRUE(f.c->Calque_Tombe->selection().isEmpty()); // selections untouched

    // One plot by its host key; the key given comes back as it was asked.
    RecordsetPtr un = f.getInfo(QStringLiteral("T"), QStringLiteral("502"));
    ASSERT_NE(un, nullptr);
    ASSERT_EQ(un->recordCount(), 1);
    un->moveFirst();
    EXPECT_EQ(un->value(u"IdMapInfo").toLongLong(), b.fid());
}

TEST(GetInfo, SectionsAndAlleysByName) {
    EchangeFixture f;
    RecordsetPtr section = f.getInfo(QStringLiteral("S"), QStringLiteral("A"));
    ASSERT_NE(section, nullptr);
    ASSERT_GT(section->recordCount(), 0);
    for (section->moveFirst(); !section->eof(); section->moveNext())
        EXPECT_EQ(section->value(u"Section").toString(), QStringLiteral("A"));

    RecordsetPtr allee =
        f.getInfo(QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("Allée 1"));
    ASSERT_NE(allee, nullptr);
    ASSERT_GT(allee->recordCount(), 0);
    EXPECT_LT(allee->recordCount(), section->recordCount() + 200);
    for (allee->moveFirst(); !allee->eof(); allee->moveNext()) {
        EXPECT_EQ(allee->value(u"Section").toString(), QStringLiteral("B"));
        EXPECT_EQ(allee->value(u"Allee").toString(), QStringLiteral("Allée 1"));
    }

    f.messages.clear();
    EXPECT_EQ(f.getInfo(QStringLiteral("S"), QStringLiteral("Z")), nullptr);
    EXPECT_EQ(f.messages.back().texte, QStringLiteral("Cette section n'existe pas"));
    EXPECT_EQ(f.getInfo(QStringLiteral("A"), QStringLiteral("A"), QStringLiteral("Nulle part")),
              nullptr);
    EXPECT_EQ(f.messages.back().texte, QStringLiteral("Cette allée n'existe pas"));
    // An alley of that name exists, but in another section: reported as an error.
    f.messages.clear();
    EXPECT_EQ(f.getInfo(QStringLiteral("A"), QStringLiteral("Z"), QStringLiteral("Allée 1"), true),
              nullptr);
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].titre, QStringLiteral("GetInfo"));
    EXPECT_FALSE(f.w<QWidget>("Panel_Jauge")->isVisible());
}

TEST(GetInfo, HostileParametersNeverMatchEverything) {
    EchangeFixture f;
    const QString hostiles[] = {QStringLiteral("1 or 1=1"), QStringLiteral("\" or \"\"=\""),
                                QStringLiteral("12; DROP TABLE Tombes"), QString(10000, u'9')};
    for (const QString& h : hostiles) {
        f.messages.clear();
        EXPECT_EQ(f.getInfo(QStringLiteral("T"), h), nullptr);
        ASSERT_EQ(f.messages.size(), 1u);
        RecordsetPtr s = f.getInfo(QStringLiteral("S"), h);
        EXPECT_EQ(s, nullptr);
    }
    EXPECT_EQ(f.c->Calque_Tombe->featureCount(), 120);
}

// Names that would break a condition pasted together from host text are found as they are.
TEST(GetInfo, SectionAndAlleyNamesAreComparedAsTheyStand) {
    EchangeFixture f;
    carto::Layer& sections = *f.c->Calque_Sections;
    const QString noms[] = {QStringLiteral("Carré \"B\" and Nom = \"A\""), QStringLiteral("l'Est"),
                            QStringLiteral("; DROP TABLE Tombes --")};
    const RecordsetPtr avant = f.getInfo(QStringLiteral("S"), QStringLiteral("B"));
    ASSERT_NE(avant, nullptr);
    carto::Feature b = sections.searchEqual(u"Nom", QStringLiteral("B")).at(0);
    for (const QString& nom : noms) {
        b.setAttribute(u"Nom", nom);
        sections.updateFeature(b);
        b = sections.feature(b.fid());
        f.messages.clear();
        const RecordsetPtr trouve = f.getInfo(QStringLiteral("S"), nom);
        ASSERT_NE(trouve, nullptr) << nom.left(20).toStdString();
        EXPECT_EQ(trouve->recordCount(), avant->recordCount());
        EXPECT_TRUE(f.messages.empty());
    }
    // Half of a hostile name, or the name with its quotes stripped, finds nothing.
    for (const QString& bout : {QStringLiteral("Carré "), QStringLiteral("A\" and Nom = \"B"),
                                QStringLiteral("Carré B and Nom = A")}) {
        f.messages.clear();
        EXPECT_EQ(f.getInfo(QStringLiteral("S"), bout), nullptr);
        EXPECT_EQ(f.messages.back().texte, QStringLiteral("Cette section n'existe pas"));
    }
}

TEST(GetInfo, TheHostIsToldOfSynchronisationInformationAndFileCards) {
    EchangeFixture f;
    std::vector<std::pair<int, QString>> synchros;
    QObject::connect(f.c.get(), &Veldra::Synchro, [&](RecordsetPtr& rs, QString& type) {
        synchros.emplace_back(rs ? rs->recordCount() : -1, type);
    });
    QStringList fiches, infos;
    QObject::connect(f.c.get(), &Veldra::FicheTombe, [&](QString& ids) { fiches << ids; });
    QObject::connect(f.c.get(), &Veldra::InfoTombes, [&](QString& id) { infos << id; });

    f.w<QPushButton>("Btn_Synchro")->click();
    ASSERT_EQ(synchros.size(), 1u);
    EXPECT_EQ(synchros[0], std::make_pair(120, QStringLiteral("A")));

    f.w<QPushButton>("HLBBttn2")->click(); // no selection
    EXPECT_EQ(f.messages.back().texte, QStringLiteral("Aucune concession n'est sélectionnée !"));
    EXPECT_TRUE(fiches.isEmpty());

    const carto::Point p = f.dansAllee(QStringLiteral("B"), QStringLiteral("Allée 1"));
    const carto::Feature a =
        f.ajouteTombe({{p.x, p.y}, {p.x + 2, p.y}, {p.x + 2, p.y + 1}, {p.x, p.y + 1}}, 12, "7");
    const carto::Feature b =
        f.ajouteTombe({{p.x, p.y}, {p.x + 2, p.y}, {p.x + 2, p.y + 1}, {p.x, p.y + 1}}, 57);
    f.c->Calque_Tombe->selectAdd(a.fid());
    f.c->Calque_Tombe->selectAdd(b.fid());
    f.w<QPushButton>("HLBBttn2")->click();
    ASSERT_EQ(fiches.size(), 1);
    EXPECT_EQ(fiches[0], QStringLiteral("12@57@"));
    EXPECT_EQ(synchros.back(), std::make_pair(2, QStringLiteral("U")));

    f.c->Calque_Tombe->selectOnly(carto::Features(f.c->Calque_Tombe, {b.fid()}));
    f.w<QToolButton>("B_OutilsInfo")->click();
    EXPECT_EQ(infos, QStringList{QStringLiteral("57")});
    EXPECT_EQ(f.w<QLabel>("L_Tombes")->text(), QStringLiteral("???"));
    EXPECT_EQ(f.w<QLabel>("L_Section")->text(), QStringLiteral("B"));
    EXPECT_EQ(f.w<QLabel>("L_Allee")->text(), QStringLiteral("Allée 1"));
}
