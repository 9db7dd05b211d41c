// MAJ: the host's records written back into the plots, and redrawn at its sizes.
#include "base/erreur.h"
#include "exchange/collecte.h"
#include "exchange_fixture.h"
#include "recordset/field_spec.h"
#include "refus_ecriture.h"

#include <cmath>

using namespace veldra;

namespace {

RecordsetPtr enregistrements() {
    RecordsetPtr rs = recordset::fromFieldSpec(QString::fromLatin1(kSpecCollecte));
    return rs;
}

void ajoute(recordset::Recordset& rs, qint64 fid, const QVariant& idgcf, const QString& nom,
            const QVariant& longueur, const QVariant& largeur) {
    rs.addNew();
    rs.setValue(u"IdMapInfo", QString::number(fid));
    rs.setValue(u"IdGCF", idgcf);
    rs.setValue(u"Nom", nom);
    rs.setValue(u"Longueur", longueur);
    rs.setValue(u"Largeur", largeur);
    rs.update();
}

void coinsEgaux(const carto::Feature& t, const carto::Part& attendus) {
    const carto::Part& r = t.parts().front();
    for (size_t i = 0; i < attendus.size(); ++i) {
        EXPECT_NEAR(r[i].x, attendus[i].x, 1e-9) << "point " << i + 1;
        EXPECT_NEAR(r[i].y, attendus[i].y, 1e-9) << "point " << i + 1;
    }
}

struct MajFixture : EchangeFixture {
    carto::Point o = dansAllee(QStringLiteral("A"), QStringLiteral("Allée 1"));

    carto::Feature rectangle(const carto::Part& relatifs) {
        carto::Part coins;
        for (const carto::Point& p : relatifs)
            coins.push_back({o.x + p.x, o.y + p.y});
        return ajouteTombe(coins);
    }
    carto::Part decale(const carto::Part& relatifs) const {
        carto::Part out;
        for (const carto::Point& p : relatifs)
            out.push_back({o.x + p.x, o.y + p.y});
        return out;
    }
    void maj(RecordsetPtr& rs, const QString& type = QStringLiteral("U")) {
        QString t = type;
        c->MAJ(rs, t);
    }
    carto::Feature relu(qint64 fid) { return c->Calque_Tombe->feature(fid); }
};

} // namespace

TEST(MAJ, RedrawsAxisParallelPlotsFromEitherSide) {
    MajFixture f;
    const carto::Feature long1 = f.rectangle({{0, 0}, {3, 0}, {3, 2}, {0, 2}});
    const carto::Feature court1 = f.rectangle({{0, 0}, {0, 2}, {3, 2}, {3, 0}});
    const carto::Feature pareil = f.rectangle({{0, 0}, {2.5, 0}, {2.5, 1.2}, {0, 1.2}});
    const carto::Part avant = pareil.parts().front();
    RecordsetPtr rs = enregistrements();
    ajoute(*rs, long1.fid(), 11, QStringLiteral("Durand"), 4.0, 2.5);
    ajoute(*rs, court1.fid(), 12, QStringLiteral("Martin"), 4.0, 2.5);
    ajoute(*rs, pareil.fid(), 13, QStringLiteral("Petit"), 2.5, 1.2);
    f.maj(rs);
    EXPECT_EQ(rs, nullptr);

    coinsEgaux(f.relu(long1.fid()), f.decale({{0, 0}, {4, 0}, {4, 2.5}, {0, 2.5}}));
    coinsEgaux(f.relu(court1.fid()), f.decale({{0, 0}, {0, 2.5}, {4, 2.5}, {4, 0}}));
    EXPECT_EQ(f.relu(pareil.fid()).parts().front(), avant); // sizes equal: untouched
    EXPECT_EQ(f.relu(pareil.fid()).attribute(u"IDGCF").toInt(), 13);
    EXPECT_EQ(f.relu(pareil.fid()).attribute(u"Nom").toString(), QStringLiteral("Petit"));

    // Written to the plan.
    carto::Map plan;
    plan.loadMapSet(f.c->surface().Map1->map().mapSet());
    EXPECT_EQ(plan.requireLayer(u"Tombes").feature(long1.fid()).attribute(u"Nom").toString(),
              QStringLiteral("Durand"));
}

TEST(MAJ, AnObliquePlotKeepsItsFirstCornerDirectionAndSide) {
    MajFixture f;
    const double a = 0.5, ca = std::cos(a), sa = std::sin(a);
    // 3 along (cos, sin), 2 to its right-hand side (the old P3's side).
    const carto::Feature t = f.rectangle(
        {{0, 0}, {3 * ca, 3 * sa}, {3 * ca + 2 * sa, 3 * sa - 2 * ca}, {2 * sa, -2 * ca}});
    RecordsetPtr rs = enregistrements();
    ajoute(*rs, t.fid(), 1, QStringLiteral("Oblique"), 5.0, 1.5);
    f.maj(rs);
    coinsEgaux(f.relu(t.fid()), f.decale({{0, 0},
                                          {5 * ca, 5 * sa},
                                          {5 * ca + 1.5 * sa, 5 * sa - 1.5 * ca},
                                          {1.5 * sa, -1.5 * ca}}));
}

TEST(MAJ, TheWholePlanRoundTripsThroughGetInfoWithTheGauge) {
    MajFixture f;
    RecordsetPtr rs = f.getInfo(QStringLiteral("C"));
    ASSERT_NE(rs, nullptr);
    const int n = rs->recordCount();
    std::map<qint64, carto::Part> formes;
    for (rs->moveFirst(); !rs->eof(); rs->moveNext()) {
        const qint64 fid = rs->value(u"IdMapInfo").toLongLong();
        formes[fid] = f.relu(fid).parts().front();
        rs->setValue(u"IdGCF", 1000 + int(fid));
        rs->setValue(u"Nom", QStringLiteral("Famille %1").arg(fid));
        rs->update();
    }
    f.maj(rs, QStringLiteral("A"));
    EXPECT_EQ(rs, nullptr);
    EXPECT_FALSE(f.w<QWidget>("Panel_Jauge")->isVisible());
    EXPECT_EQ(f.w<QProgressBar>("ProgressBar1")->value(), n);
    for (const auto& [fid, forme] : formes) {
        const carto::Feature t = f.relu(fid);
        EXPECT_EQ(t.attribute(u"IDGCF").toInt(), 1000 + fid);
        EXPECT_EQ(t.parts().front(), forme) << "sizes sent back as collected move nothing";
    }
}

TEST(MAJ, BadRecordSetsGiveClearErrorsAndNeverHalfWriteTheFirstRecord) {
    MajFixture f;
    const carto::Feature t = f.rectangle({{0, 0}, {3, 0}, {3, 2}, {0, 2}});
    const carto::Feature u = f.rectangle({{0, 0}, {2, 0}, {2, 1}, {0, 1}});

    RecordsetPtr vide = enregistrements();
    f.maj(vide);
    EXPECT_EQ(f.messages.back().texte, QStringLiteral("Aucun élément à mettre à jour"));
    ASSERT_NE(vide, nullptr);
    EXPECT_TRUE(vide->isOpen());

    RecordsetPtr sansColonne = std::make_shared<recordset::Recordset>();
    sansColonne->appendField(QStringLiteral("IdMapInfo"), recordset::DataType::SmallInt);
    sansColonne->open();
    sansColonne->addNew();
    sansColonne->setValue(u"IdMapInfo", qint16(t.fid()));
    sansColonne->update();
    EXPECT_THROW(f.maj(sansColonne), Erreur);

    // First record: an unknown plot, then impossible sizes. Nothing of it is written.
    for (const auto& [fid, longueur, largeur] :
         {std::tuple{qint64(30000), 4.0, 2.0}, std::tuple{t.fid(), -4.0, 2.0},
          std::tuple{t.fid(), 0.0, 0.0}}) {
        RecordsetPtr rs = enregistrements();
        ajoute(*rs, fid, 99, QStringLiteral("Intrus"), longueur, largeur);
        EXPECT_THROW(f.maj(rs), Erreur);
        EXPECT_NE(rs, nullptr);
        EXPECT_NE(f.relu(t.fid()).attribute(u"Nom").toString(), QStringLiteral("Intrus"));
        EXPECT_EQ(f.relu(t.fid()).attribute(u"IDGCF"), QVariant());
    }

    // Past the first record, a bad one is skipped and the others go through; a record
    // whose only fault is its sizes keeps its attributes.
    RecordsetPtr rs = enregistrements();
    ajoute(*rs, t.fid(), 21, QStringLiteral("Premier"), 3.0, 2.0);
    ajoute(*rs, 30001, 22, QStringLiteral("Fantôme"), 3.0, 2.0);
    ajoute(*rs, t.fid(), 21, QStringLiteral("Premier"), 3.0, 2.0);
    ajoute(*rs, u.fid(), 23, QStringLiteral("Second"), -1.0, 1.0);
    f.maj(rs);
    EXPECT_EQ(rs, nullptr);
    EXPECT_EQ(f.relu(t.fid()).attribute(u"Nom").toString(), QStringLiteral("Premier"));
    EXPECT_EQ(f.relu(u.fid()).attribute(u"Nom").toString(), QStringLiteral("Second"));
    EXPECT_EQ(f.relu(u.fid()).parts().front(), u.parts().front());
}

namespace {

QString nomStocke(const QString& plan, qint64 fid) {
    carto::Map relue;
    relue.loadMapSet(plan);
    return relue.requireLayer(u"Tombes").feature(fid).attribute(u"Nom").toString();
}

} // namespace

TEST(MAJ, ARecordThatStorageRefusesIsSkippedWholeAndMemoryKeepsWhatStorageHolds) {
    ControleFixture f;
    const QString plan = f.plan(12);
    std::vector<qint64> fids;
    {
        carto::Map m;
        m.loadMapSet(plan);
        for (const carto::Feature& t : m.requireLayer(u"Tombes").allFeatures())
            fids.push_back(t.fid());
    }
    refuseWrites(plan, "Tombes", "UPDATE", fids[2]);
    f.ouvre(plan);
    std::vector<QString> avant;
    for (int i = 0; i < 4; ++i)
        avant.push_back(nomStocke(plan, fids[size_t(i)]));
    const auto nom = [&](int i) {
        return f.c->Calque_Tombe->feature(fids[size_t(i)]).attribute(u"Nom").toString();
    };
    const auto records = [&](bool tailles) {
        RecordsetPtr rs = enregistrements();
        for (int i = 0; i < 4; ++i) {
            const carto::Part& r = f.c->Calque_Tombe->feature(fids[size_t(i)]).parts().front();
            const double d1 = DistancePoints(r[1], r[0]), d2 = DistancePoints(r[2], r[1]);
            ajoute(*rs, fids[size_t(i)], 100 + i, QStringLiteral("Famille %1").arg(i),
                   tailles ? tronque5(std::max(d1, d2)) : 0.0,
                   tailles ? tronque5(std::min(d1, d2)) : 0.0);
        }
        return rs;
    };
    QString type = QStringLiteral("U");

    // The first record cannot be redrawn at a size of 0: nothing is written at all.
    RecordsetPtr rs = records(false);
    EXPECT_THROW(f.c->MAJ(rs, type), Erreur);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(nom(i), avant[size_t(i)]) << i;
        EXPECT_EQ(nomStocke(plan, fids[size_t(i)]), avant[size_t(i)]) << i;
    }

    // Storage refuses the third plot: it keeps its name, in memory as on disk.
    rs = records(true);
    f.c->MAJ(rs, type);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(nom(i), i == 2 ? avant[2] : QStringLiteral("Famille %1").arg(i)) << i;
        EXPECT_EQ(nomStocke(plan, fids[size_t(i)]), nom(i)) << i;
    }
}

namespace {

// A host's own record set: the key column of whatever type it chose.
RecordsetPtr avecCle(recordset::DataType type) {
    auto rs = std::make_shared<recordset::Recordset>();
    rs->appendField(QStringLiteral("IdMapInfo"), recordset::DataType::Double);
    rs->appendField(QStringLiteral("IdGCF"), type, 32);
    rs->appendField(QStringLiteral("Nom"), recordset::DataType::VarWChar, 32);
    rs->appendField(QStringLiteral("Longueur"), recordset::DataType::Double);
    rs->appendField(QStringLiteral("Largeur"), recordset::DataType::Double);
    rs->open();
    return rs;
}

void ajouteCle(recordset::Recordset& rs, const carto::Feature& t, const QVariant& cle,
               const QString& nom) {
    const carto::Part& r = t.parts().front();
    const double d1 = DistancePoints(r[1], r[0]), d2 = DistancePoints(r[2], r[1]);
    rs.addNew();
    rs.setValue(u"IdMapInfo", double(t.fid()));
    rs.setValue(u"IdGCF", cle);
    rs.setValue(u"Nom", nom);
    rs.setValue(u"Longueur", tronque5(std::max(d1, d2)));
    rs.setValue(u"Largeur", tronque5(std::min(d1, d2)));
    rs.update();
}

struct Cle {
    recordset::DataType type;
    QVariant valeur;
};

const Cle kClesIntenables[] = {
    {recordset::DataType::Double, 3e9},   {recordset::DataType::Double, 1e15},
    {recordset::DataType::Double, -3e9},  {recordset::DataType::Double, std::nan("")},
    {recordset::DataType::Double, 1.5},   {recordset::DataType::VarWChar, QStringLiteral("abc")},
    {recordset::DataType::Boolean, true},
};

} // namespace

TEST(MAJ, AKeyThePlanCannotHoldIsRefusedNamingTheRecordAndNothingOfItIsWritten) {
    MajFixture f;
    const carto::Feature t = f.rectangle({{0, 0}, {3, 0}, {3, 2}, {0, 2}});
    const QString plan = f.c->surface().Map1->map().mapSet();
    for (const Cle& cle : kClesIntenables) {
        RecordsetPtr rs = avecCle(cle.type);
        ajouteCle(*rs, t, cle.valeur, QStringLiteral("Ne doit pas rester"));
        QString type = QStringLiteral("U");
        try {
            f.c->MAJ(rs, type);
            ADD_FAILURE() << "accepted " << cle.valeur.toString().toStdString();
        } catch (const Erreur& e) {
            EXPECT_EQ(e.numero(), err::TypeIncompatible);
            EXPECT_TRUE(e.description().contains(QStringLiteral("L'objet %1").arg(t.fid())))
                << e.description().toStdString();
        }
        EXPECT_TRUE(f.relu(t.fid()).attribute(u"IDGCF").isNull());
        EXPECT_TRUE(f.relu(t.fid()).attribute(u"Nom").toString().isEmpty());
        EXPECT_EQ(nomStocke(plan, t.fid()), QString());
    }

    // Past the first record, such a record is skipped and the others are written.
    const carto::Feature u = f.rectangle({{10, 0}, {12, 0}, {12, 1}, {10, 1}});
    const carto::Feature w = f.rectangle({{20, 0}, {22, 0}, {22, 1}, {20, 1}});
    RecordsetPtr rs = avecCle(recordset::DataType::Double);
    ajouteCle(*rs, u, 7, QStringLiteral("Premier"));
    ajouteCle(*rs, t, 3e9, QStringLiteral("Intenable"));
    ajouteCle(*rs, w, 9, QStringLiteral("Dernier"));
    QString type = QStringLiteral("U");
    f.c->MAJ(rs, type);
    EXPECT_EQ(f.relu(u.fid()).attribute(u"IDGCF"), QVariant(7));
    EXPECT_EQ(f.relu(w.fid()).attribute(u"IDGCF"), QVariant(9));
    EXPECT_TRUE(f.relu(t.fid()).attribute(u"IDGCF").isNull());
    EXPECT_EQ(nomStocke(plan, t.fid()), QString());
    EXPECT_EQ(nomStocke(plan, w.fid()), QStringLiteral("Dernier"));
}

TEST(MAJ, ALongNameIsCutToItsColumnAndThePlanStillSynchronises) {
    MajFixture f;
    const carto::Feature t = f.rectangle({{0, 0}, {3, 0}, {3, 2}, {0, 2}});
    // A host's record set whose name column is wider than the plan's.
    auto large = std::make_shared<recordset::Recordset>();
    large->appendField(QStringLiteral("IdMapInfo"), recordset::DataType::Double);
    large->appendField(QStringLiteral("IdGCF"), recordset::DataType::Double);
    large->appendField(QStringLiteral("Nom"), recordset::DataType::VarWChar, 20000);
    large->appendField(QStringLiteral("Longueur"), recordset::DataType::Double);
    large->appendField(QStringLiteral("Largeur"), recordset::DataType::Double);
    large->open();
    ajouteCle(*large, t, 5, QString(10000, u'L'));
    f.maj(large);
    EXPECT_EQ(f.relu(t.fid()).attribute(u"Nom").toString(), QString(32, u'L'));
    EXPECT_EQ(nomStocke(f.c->surface().Map1->map().mapSet(), t.fid()), QString(32, u'L'));
    EXPECT_NE(f.getInfo(QStringLiteral("C")), nullptr);
}

TEST(MAJ, ARedrawThatWouldLeaveNoAreaIsRefusedAndThePlotKeptAsItWas) {
    MajFixture f;
    // The first corner clicked twice: the first side has no direction to redraw along.
    const carto::Feature double1 = f.rectangle({{0, 0}, {0, 0}, {3, 0}, {3, 2}, {0, 2}});
    const carto::Feature petit = f.rectangle({{10, 0}, {13, 0}, {13, 2}, {10, 2}});
    for (const auto& [t, longueur, largeur] :
         {std::tuple{double1, 4.0, 2.5}, std::tuple{petit, 1e-20, 1e-20}}) {
        const carto::Part avant = f.relu(t.fid()).parts().front();
        RecordsetPtr rs = enregistrements();
        ajoute(*rs, t.fid(), 3, QStringLiteral("Réduit"), longueur, largeur);
        QString type = QStringLiteral("U");
        EXPECT_THROW(f.c->MAJ(rs, type), Erreur);
        EXPECT_EQ(f.relu(t.fid()).parts().front(), avant);
        EXPECT_TRUE(f.relu(t.fid()).attribute(u"IDGCF").isNull());
    }
}
