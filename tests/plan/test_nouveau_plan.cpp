// A new plan through its dialog, the progress gauge and the host's answer to a deletion.
#include "base/erreur.h"
#include "control_fixture.h"
#include "plan/nouveau_cimetiere.h"

#include <QCheckBox>
#include <QFrame>
#include <QGuiApplication>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QThread>

using namespace veldra;

namespace {

// Opens a new plan, answering its dialog with `action`.
void nouveauPlan(ControleFixture& f, const QString& plan,
                 const std::function<void(New_Cim&)>& action) {
    f.c->setModalHook([&](QDialog& d) {
        auto* dialogue = qobject_cast<New_Cim*>(&d);
        EXPECT_NE(dialogue, nullptr);
        if (dialogue)
            action(*dialogue);
        return d.result();
    });
    QString chemin = plan, nom = QStringLiteral("Saint-Roch");
    bool nouveau = true, droit = false;
    f.c->OuvreCimetiere(chemin, nouveau, nom, droit);
}

} // namespace

TEST(NouveauPlan, TheDialogOpensTheEmptyPlanWithItsEnclosure) {
    ControleFixture f;
    const QString plan = veldra::plantool::createEmptyPlan(f.dir.path(), QStringLiteral("Neuf"));
    nouveauPlan(f, plan, [](New_Cim& d) {
        EXPECT_EQ(d.Titre->text(), QStringLiteral("Création du cimetière Saint-Roch"));
        QTest::keyClicks(d.TB_Longueur, QStringLiteral("12.0"));
        QTest::keyClicks(d.TB_Largeur, QStringLiteral("8,0-"));
        EXPECT_EQ(d.TB_Longueur->text(), QStringLiteral("120"));
        EXPECT_EQ(d.TB_Largeur->text(), QStringLiteral("80"));
        d.Btn_Valider->click();
    });
    EXPECT_EQ(f.erreursOuverture(), 0);
    Veldra& c = *f.c;
    ASSERT_NE(c.Calque_Enceinte, nullptr);
    ASSERT_EQ(c.Calque_Enceinte->featureCount(), 1);
    const carto::Rect r = c.Calque_Enceinte->bounds();
    EXPECT_DOUBLE_EQ(r.xmin, 0);
    EXPECT_DOUBLE_EQ(r.ymin, 0);
    EXPECT_DOUBLE_EQ(r.xmax, 120);
    EXPECT_DOUBLE_EQ(r.ymax, 80);
    EXPECT_DOUBLE_EQ(c.surface().Map1->zoom(), 144);
    // Framed on the whole enclosure.
    EXPECT_DOUBLE_EQ(c.surface().Map1->centre().x, 60);
    EXPECT_DOUBLE_EQ(c.surface().Map1->centre().y, 40);
    EXPECT_EQ(c.Calque_Courant, c.Calque_Enceinte);
    EXPECT_EQ(f.w<QComboBox>("Combo_Calque")->currentText(), QStringLiteral("Enceinte"));
    EXPECT_TRUE(c.ModeEdition);
    EXPECT_FALSE(f.w<QCheckBox>("CB_ModeEdition")->isHidden()); // a new plan may be edited

    // The enclosure is stored in the plan itself.
    carto::Map relu;
    relu.loadMapSet(plan);
    EXPECT_EQ(relu.requireLayer(u"Enceinte").featureCount(), 1);
}

TEST(NouveauPlan, OpenedInEditModeItsEnclosureIsStillEditable) {
    ControleFixture f;
    f.ouvre(f.plan(20));
    f.w<QCheckBox>("CB_ModeEdition")->click();
    const QString plan = veldra::plantool::createEmptyPlan(f.dir.path(), QStringLiteral("Neuf"));
    nouveauPlan(f, plan, [](New_Cim& d) {
        QTest::keyClicks(d.TB_Longueur, QStringLiteral("100"));
        QTest::keyClicks(d.TB_Largeur, QStringLiteral("50"));
        d.Btn_Valider->click();
    });
    Veldra& c = *f.c;
    ASSERT_EQ(c.Calque_Courant, c.Calque_Enceinte);
    EXPECT_TRUE(c.ModeEdition);
    EXPECT_TRUE(c.Calque_Enceinte->editable());
    EXPECT_TRUE(c.Calque_Enceinte->selectable());
    EXPECT_TRUE(f.w<QFrame>("Panel_Outils")->isVisible());
}

TEST(NouveauPlan, AnEmptySizeAsksAgainAndTheCloseBoxCreatesNothing) {
    ControleFixture f;
    const QString plan = veldra::plantool::createEmptyPlan(f.dir.path(), QStringLiteral("Neuf"));
    nouveauPlan(f, plan, [](New_Cim& d) {
        QTest::keyClicks(d.TB_Longueur, QStringLiteral("50"));
        d.Btn_Valider->click();
        EXPECT_TRUE(d.result() == QDialog::Rejected); // still open
        d.reject();                                   // the close box
    });
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].texte, QStringLiteral("Vous devez saisir la longueur et la largeur !"));
    EXPECT_EQ(f.messages[0].titre, QString());
    EXPECT_EQ(f.c->Calque_Enceinte, nullptr);
    carto::Map relu;
    relu.loadMapSet(plan);
    EXPECT_EQ(relu.requireLayer(u"Enceinte").featureCount(), 0);
}

TEST(Jauge, RunsFromParamToFinAndRefusesAStepTooFar) {
    ControleFixture f;
    Veldra& c = *f.c;
    carto::MapView* map = c.surface().Map1;
    map->setMousePointer(carto::pointer::Custom);
    QWidget* panneau = f.w<QWidget>("Panel_Jauge");

    qint32 min = 0, max = 0;
    QString message = QStringLiteral("Lecture"), titre = QStringLiteral("Synchronisation");
    c.JaugeParam(min, max, message, titre);
    EXPECT_FALSE(panneau->isVisible());
    EXPECT_EQ(map->mousePointer(), carto::pointer::Custom);

    max = 10;
    c.JaugeParam(min, max, message, titre);
    EXPECT_TRUE(panneau->isVisible());
    EXPECT_EQ(f.w<QLabel>("Titre_Jauge")->text(), QStringLiteral(" Synchronisation"));
    EXPECT_EQ(f.w<QLabel>("L_Message")->text(), QStringLiteral("Lecture"));
    QProgressBar* bar = f.w<QProgressBar>("ProgressBar1");
    EXPECT_EQ(bar->value(), 0);
    EXPECT_EQ(map->mousePointer(), carto::pointer::Hourglass);
    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
    for (int i = 0; i < 10; ++i)
        c.JaugePlus();
    EXPECT_EQ(bar->value(), 10);
    try {
        c.JaugePlus();
        ADD_FAILURE() << "an eleventh step must be refused";
    } catch (const Erreur& e) {
        EXPECT_EQ(e.numero(), 380);
    }
    EXPECT_EQ(bar->value(), 10);
    c.JaugeFin();
    EXPECT_FALSE(panneau->isVisible());
    EXPECT_EQ(map->mousePointer(), carto::pointer::Custom);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    // A second start while running saves the hourglass as the map's pointer.
    c.JaugeParam(min, max, message, titre);
    c.JaugeParam(min, max, message, titre);
    c.JaugeFin();
    EXPECT_EQ(map->mousePointer(), carto::pointer::Hourglass);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    qint32 haut = 5, bas = 2;
    EXPECT_THROW(c.JaugeParam(haut, bas, message, titre), Erreur);
}

// Counts the paint events a widget receives.
struct CompteDessins : QObject {
    int n = 0;
    bool eventFilter(QObject*, QEvent* e) override {
        n += e->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

TEST(Jauge, IsRedrawnAsItAdvancesAndItsHourglassDiesWithTheControl) {
    ControleFixture f;
    qint32 min = 0, max = 100;
    QString message = QStringLiteral("Intégration"), titre = QStringLiteral("Synchronisation");
    f.c->JaugeParam(min, max, message, titre);
    // The host's work keeps the event loop waiting: the bar still shows its progress.
    CompteDessins dessins;
    f.w<QProgressBar>("ProgressBar1")->installEventFilter(&dessins);
    for (int i = 0; i < 4; ++i) {
        QThread::msleep(120);
        f.c->JaugePlus();
    }
    EXPECT_GE(dessins.n, 3);
    f.w<QProgressBar>("ProgressBar1")->removeEventFilter(&dessins);

    ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
    f.c.reset(); // destroyed by its container with the gauge still running
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(ConfirmSupp, FalseShowsTheHostsMessageAndTrueDeletesPlotsWithTheirNumbers) {
    ControleFixture f;
    f.ouvre(f.plan(30));
    Veldra& c = *f.c;
    f.w<QCheckBox>("CB_ModeEdition")->click();
    const carto::Feature tombe = c.Calque_Tombe->allFeatures().at(0);
    const int numeros = c.Calque_Numero->featureCount();
    ASSERT_GE(
        c.Calque_Numero->searchWithinRectangle(tombe.bounds(), carto::searchmode::EntirelyWithin)
            .count(),
        1);
    c.Calque_Tombe->selectAdd(tombe.fid());
    c.ObjSel = c.Calque_Tombe->selection();

    bool non = false;
    QString refus = QStringLiteral("Cet emplacement porte une concession.");
    c.ConfirmSupp(non, refus);
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].texte, refus);
    EXPECT_EQ(f.messages[0].titre, QString());
    EXPECT_EQ(c.Calque_Tombe->featureCount(), 30);

    bool oui = true;
    c.ConfirmSupp(oui, refus);
    EXPECT_EQ(c.Calque_Tombe->featureCount(), 29);
    EXPECT_FALSE(c.Calque_Tombe->hasFeature(tombe.fid()));
    EXPECT_LT(c.Calque_Numero->featureCount(), numeros);
    EXPECT_TRUE(c.Calque_Tombe->selection().isEmpty());
    EXPECT_EQ(f.w<QLabel>("L_NB_Tombes")->text(),
              QStringLiteral("Le cimetière contient : 29 emplacement(s)"));
    EXPECT_FALSE(f.w<QPushButton>("Btn_Sauver")->isEnabled());

    carto::Map relu;
    relu.loadMapSet(c.surface().Map1->map().mapSet());
    EXPECT_EQ(relu.requireLayer(u"Tombes").featureCount(), 29);
}
