// The host's register: made from the plan, matched with it on Synchro, and answering the
// control's requests for people and file cards.
#include "fenetre_principale.h"
#include "hote_fixture.h"
#include "plan_exemple.h"
#include "registre.h"
#include "session_sans_ecran.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace veldra;
using namespace veldra::demo;

TEST(Registre, IsMadeFromThePlanWithGapsOnBothSides) {
    HoteAvecRegistre h;
    Registre* r = h.f->registre();
    ASSERT_NE(r, nullptr);
    // 90 plots, every 29th without a concession, and 4 concessions with no plot.
    EXPECT_EQ(r->nombreConcessions(), 90 - 3 + 4);
    const carto::Feature premier = h.c().Calque_Tombe->allFeatures().at(0);
    EXPECT_TRUE(r->concession(QStringLiteral("A"), QStringLiteral("Allée 1"),
                              premier.attribute(u"Numero").toString())
                    .has_value());
    const Personnes gens = r->personnes(1);
    EXPECT_EQ(gens.titulaires.size(), 1);
    EXPECT_FALSE(gens.defunts.isEmpty());
}

TEST(Registre, BeforeAnySynchronisationEachPlotsKeyIsTheConcessionAtItsPlace) {
    HoteAvecRegistre h;
    Registre* r = h.f->registre();
    ASSERT_NE(r, nullptr);
    QString type = QStringLiteral("C"), p1, p2, message;
    bool jauge = false;
    RecordsetPtr rs = h.c().GetInfo(type, p1, p2, jauge, message);
    ASSERT_TRUE(rs);
    int tenues = 0;
    for (rs->moveFirst(); !rs->eof(); rs->moveNext()) {
        const int cle = rs->value(u"IdGCF").toInt();
        const std::optional<int> ici =
            r->concession(rs->value(u"Section").toString(), rs->value(u"Allee").toString(),
                          rs->value(u"Num").toString());
        EXPECT_EQ(ici.value_or(0), cle) << rs->value(u"Section").toString().toStdString() << " "
                                        << rs->value(u"Num").toString().toStdString();
        if (cle > 0 && !rs->value(u"Nom").toString().isEmpty()) {
            ++tenues;
            EXPECT_TRUE(r->personnes(cle).titulaires.value(0).endsWith(
                u' ' + rs->value(u"Nom").toString()));
        }
    }
    EXPECT_GT(tenues, 0);
    // The register is named after its plan: two plans in one folder keep theirs apart.
    const QFileInfo plan(h.c().contexte().carte().mapSet());
    EXPECT_TRUE(QFileInfo::exists(
        plan.dir().filePath(plan.completeBaseName() + QStringLiteral(".registre.sqlite"))));
}

TEST(Registre, SynchronisationWritesTheConcessionsIntoThePlan) {
    HoteAvecRegistre h;
    h.f->findChild<QPushButton*>(QStringLiteral("Btn_Synchro"))->click();
    int avecConcession = 0, sans = 0;
    h.c().Calque_Tombe->forEachFeature([&](const carto::Feature& t) {
        const int id = t.attribute(u"IDGCF").toInt();
        (id > 0 ? avecConcession : sans) += 1;
        if (id > 0) {
            EXPECT_FALSE(t.attribute(u"Nom").toString().isEmpty());
        }
    });
    EXPECT_EQ(avecConcession, 87);
    EXPECT_EQ(sans, 3);
    EXPECT_TRUE(h.f->journal().toPlainText().contains(QStringLiteral("87 emplacement(s) sur 90")));

    // Written to the plan's file, not only in memory.
    carto::Map relu;
    relu.loadMapSet(h.c().contexte().carte().mapSet());
    int relus = 0;
    relu.requireLayer(u"Tombes").forEachFeature(
        [&](const carto::Feature& t) { relus += t.attribute(u"IDGCF").toInt() > 0 ? 1 : 0; });
    EXPECT_EQ(relus, 87);
}

TEST(Registre, InformationAndFileCardsComeFromTheRegister) {
    HoteAvecRegistre h;
    h.f->findChild<QPushButton*>(QStringLiteral("Btn_Synchro"))->click();
    carto::Layer& tombes = *h.c().Calque_Tombe;
    qint64 avec = -1;
    tombes.forEachFeature([&](const carto::Feature& t) {
        if (avec < 0 && t.attribute(u"IDGCF").toInt() > 0)
            avec = t.fid();
    });
    ASSERT_GE(avec, 0);
    tombes.selectAdd(avec);
    h.f->findChild<QToolButton*>(QStringLiteral("B_OutilsInfo"))->click();
    EXPECT_TRUE(h.f->journal().toPlainText().contains(QStringLiteral("titulaire(s)")));

    h.f->findChild<QPushButton*>(QStringLiteral("HLBBttn2"))->click();
    auto* fiche = h.f->findChild<QDialog*>(QStringLiteral("FicheConcessions"));
    ASSERT_NE(fiche, nullptr);
    const QString texte = fiche->findChild<QPlainTextEdit*>()->toPlainText();
    EXPECT_TRUE(texte.contains(QStringLiteral("titulaire")));
    EXPECT_FALSE(texte.contains(QStringLiteral("aucune concession")));
}

TEST(Registre, ThemesAreOfferedAndAnsweredAndPhotographsComeWithTheSample) {
    HoteAvecRegistre h;
    // The three themes of the register, in the control's list.
    const QVariantList table = h.c().GetTableauThemes().toList();
    EXPECT_EQ(table[0].toStringList(), (QStringList{"Type de concession", "TYPE"}));
    EXPECT_EQ(table[2].toStringList(), (QStringList{"Concessions échues", "ECHUES"}));
    EXPECT_TRUE(table[3].toStringList().at(0).isEmpty());

    // Chosen, a theme is answered by the register within the event.
    for (const char* code : {"TYPE", "ECHEANCE", "ECHUES"}) {
        QString libelle = QStringLiteral("  x"), c = QString::fromLatin1(code);
        h.c().Action(libelle, c);
        const carto::Dataset* d = h.c().contexte().carte().dataset(u"Theme");
        ASSERT_NE(d, nullptr) << code;
        const carto::Theme& t = *d->themes().at(0);
        EXPECT_GE(t.categories().size(), 2u) << code;
        for (const QString& texte : t.legend.texts) {
            bool nombre = false;
            texte.toInt(&nombre);
            EXPECT_FALSE(texte.isEmpty() || nombre) << code; // every value relabelled
        }
    }
    EXPECT_TRUE(h.messages.isEmpty()) << h.messages.toStdString();

    // The sample's first register came with photographs, linked and readable.
    RecordsetPtr photos = h.c().GetPhotos();
    ASSERT_NE(photos, nullptr);
    ASSERT_GE(photos->recordCount(), 3);
    for (photos->moveFirst(); !photos->eof(); photos->moveNext())
        EXPECT_FALSE(QImage(photos->value(u"Photo").toString()).isNull());
}
