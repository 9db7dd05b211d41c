// The history of the user's edits: off unless the host asks for it; then each action is
// one step, undone and redone from the buttons and the keyboard, written to the plan each
// time, and forgotten when the host's register moves on.
#include "carte_fixture.h"
#include "carto/geometry/geometry.h"
#include "carto/model/map.h"
#include "output/ctooltip.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

using namespace veldra;

namespace {

struct Historique : Carte {
    QUndoStack& pile() { return *c->surface().Historique; }
    QToolButton* annuler() { return c->surface().Btn_AnnulerEdition; }
    QToolButton* retablir() { return c->surface().Btn_RetablirEdition; }
    void touche(int cle, Qt::KeyboardModifiers m = Qt::ControlModifier) {
        QKeyEvent e(QEvent::KeyPress, cle, m);
        QCoreApplication::sendEvent(&vue(), &e);
    }
    void rectangle(double x) {
        bool defaut = true;
        emit vue().toolUsed(106, x, 1000, x + 4, 1003, 0, false, false, defaut);
    }
    // The plot's number as the plan file holds it, read afresh.
    QString numeroStocke(qint64 fid) {
        carto::Map relu;
        relu.loadMapSet(c->contexte().carte().mapSet());
        return relu.requireLayer(u"Tombes").feature(fid).attribute(u"Numero").toString();
    }
    int etiquettes(const carto::Feature& terrain, const QString& texte) {
        int n = 0;
        for (const carto::Feature& e :
             c->Calque_Numero->searchWithinFeature(terrain, carto::searchmode::CentreWithin))
            n += e.text() == texte ? 1 : 0;
        return n;
    }
};

} // namespace

TEST(Historique, IsOffUnlessTheHostAsksAndThenKeepsNothing) {
    Historique f;
    f.edition();
    EXPECT_FALSE(f.c->Annulation());
    EXPECT_TRUE(f.annuler()->isHidden());
    EXPECT_TRUE(f.retablir()->isHidden());
    f.calque(QStringLiteral("Décor"));
    const qint32 avant = f.c->Calque_Decor->featureCount();
    f.rectangle(1000);
    f.touche(Qt::Key_Z);
    EXPECT_EQ(f.c->Calque_Decor->featureCount(), avant + 1);
    EXPECT_EQ(f.pile().count(), 0);

    f.c->setAnnulation(true);
    EXPECT_TRUE(f.c->Annulation());
    EXPECT_FALSE(f.annuler()->isHidden());
    EXPECT_FALSE(f.annuler()->isEnabled()); // nothing to undo yet
    EXPECT_EQ(f.c->bulles().at(QStringLiteral("Btn_AnnulerEdition"))->Text(),
              QStringLiteral("Annuler"));
    EXPECT_EQ(f.c->bulles().at(QStringLiteral("Btn_RetablirEdition"))->Text(),
              QStringLiteral("Rétablir"));
    f.rectangle(1100);
    EXPECT_TRUE(f.annuler()->isEnabled());
    f.c->setAnnulation(false); // turned off again: the steps go with it
    EXPECT_EQ(f.pile().count(), 0);
    EXPECT_TRUE(f.annuler()->isHidden());
    f.touche(Qt::Key_Z);
    EXPECT_EQ(f.c->Calque_Decor->featureCount(), avant + 2);
}

TEST(Historique, ButtonsAndKeysUndoAndRedoEachAction) {
    Historique f;
    f.c->setAnnulation(true);
    f.edition();
    f.calque(QStringLiteral("Sections"));
    carto::Layer& sections = *f.c->Calque_Sections;
    const qint32 avant = sections.featureCount();
    f.rectangle(1000);
    f.rectangle(1100);
    EXPECT_EQ(sections.featureCount(), avant + 2);
    EXPECT_FALSE(f.retablir()->isEnabled());

    f.touche(Qt::Key_Z);
    EXPECT_EQ(sections.featureCount(), avant + 1);
    EXPECT_TRUE(f.retablir()->isEnabled());
    f.annuler()->click();
    EXPECT_EQ(sections.featureCount(), avant);
    EXPECT_FALSE(f.annuler()->isEnabled());
    f.touche(Qt::Key_Z); // nothing left: nothing happens
    EXPECT_EQ(sections.featureCount(), avant);
    f.touche(Qt::Key_Y);
    EXPECT_EQ(sections.featureCount(), avant + 1);
    f.touche(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(sections.featureCount(), avant + 2);
    f.touche(Qt::Key_Z, Qt::ShiftModifier); // not a shortcut
    f.touche(Qt::Key_Z, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_EQ(sections.featureCount(), avant + 2);
    f.retablir()->click(); // nothing to redo
    EXPECT_EQ(sections.featureCount(), avant + 2);

    // A confirmed deletion is the host's decision: the history is forgotten.
    bool oui = true;
    QString message;
    f.c->ConfirmSupp(oui, message);
    EXPECT_FALSE(f.annuler()->isEnabled());
}

TEST(Historique, ASavedNumberComesBackWithItsLabelAndInThePlanFile) {
    Historique f;
    f.c->setAnnulation(true);
    f.edition();
    f.calque(QStringLiteral("Tombes"));
    carto::Layer& tombes = *f.c->Calque_Tombe;
    const carto::Feature t = tombes.allFeatures().at(7);
    const QString ancien = t.attribute(u"Numero").toString();
    const qint32 etiquettes = f.c->Calque_Numero->featureCount();
    tombes.selectAdd(t.fid());
    f.w<QLineEdit>("SaisieNum")->setText(QStringLiteral("N77"));
    f.w<QPushButton>("Btn_Sauver")->click();
    ASSERT_EQ(tombes.feature(t.fid()).attribute(u"Numero").toString(), QStringLiteral("N77"));
    ASSERT_EQ(f.pile().count(), 1); // the label and the plot: one step
    EXPECT_EQ(f.pile().undoText(), QStringLiteral("Enregistrer le numéro"));

    f.annuler()->click();
    EXPECT_EQ(tombes.feature(t.fid()).attribute(u"Numero").toString(), ancien);
    EXPECT_EQ(f.c->Calque_Numero->featureCount(), etiquettes);
    EXPECT_EQ(f.etiquettes(t, ancien), 1);
    EXPECT_EQ(f.etiquettes(t, QStringLiteral("N77")), 0);
    EXPECT_EQ(f.numeroStocke(t.fid()), ancien);

    f.retablir()->click();
    EXPECT_EQ(f.etiquettes(t, QStringLiteral("N77")), 1);
    EXPECT_EQ(f.etiquettes(t, ancien), 0);
    EXPECT_EQ(f.numeroStocke(t.fid()), QStringLiteral("N77"));

    // Another plan opened: nothing of this one can be undone there.
    f.ouvre(f.plan(30, false, QStringLiteral("Autre")));
    EXPECT_EQ(f.pile().count(), 0);
}

TEST(Historique, AMovedPlotComesBackWithItsNumberInOneStep) {
    Historique f;
    f.c->setAnnulation(true);
    f.edition();
    carto::Layer& tombes = *f.c->Calque_Tombe;
    const carto::Feature t = tombes.allFeatures().at(10);
    const QString numero = t.attribute(u"Numero").toString();
    const carto::Rect r = t.bounds();
    f.vue().setBounds({r.xmin - 5, r.ymin - 5, r.xmax + 5, r.ymax + 5});
    tombes.selectAdd(t.fid());
    f.c->surface().Btn_OutilsDessin_[2]->click();
    const carto::Point c = t.centre();
    f.glisse(c, {c.x + 3, c.y}); // clear of its old place
    f.touche(Qt::Key_Z);         // the gesture is not over: the number is still to come
    QTRY_VERIFY_WITH_TIMEOUT(!f.c->surface().Timer1->isActive(), 2000);
    const carto::Feature deplace = tombes.feature(t.fid());
    ASSERT_NEAR(deplace.centre().x, c.x + 3, 0.2);
    ASSERT_EQ(f.etiquettes(deplace, numero), 1);
    EXPECT_EQ(f.pile().count(), 1);
    EXPECT_EQ(f.pile().undoText(), QStringLiteral("Déplacer"));

    f.touche(Qt::Key_Z);
    EXPECT_NEAR(tombes.feature(t.fid()).centre().x, c.x, 1e-9);
    EXPECT_EQ(f.etiquettes(t, numero), 1);
    EXPECT_EQ(f.etiquettes(deplace, numero), 0);
    f.touche(Qt::Key_Y);
    EXPECT_NEAR(tombes.feature(t.fid()).centre().x, deplace.centre().x, 1e-9);
    EXPECT_EQ(f.etiquettes(deplace, numero), 1);
    EXPECT_EQ(f.etiquettes(t, numero), 0);
}

TEST(Historique, ThePlotCountFollowsAnUndoAndARedo) {
    Historique f;
    f.c->setAnnulation(true);
    f.edition();
    f.calque(QStringLiteral("Tombes"));
    const QString avant = f.w<QLabel>("L_NB_Tombes")->text();
    f.rectangle(1000);
    const QString apres = f.w<QLabel>("L_NB_Tombes")->text();
    ASSERT_NE(apres, avant);
    f.touche(Qt::Key_Z);
    EXPECT_EQ(f.w<QLabel>("L_NB_Tombes")->text(), avant);
    EXPECT_TRUE(f.w<QLabel>("Num_Selec")
                    ->text()
                    .endsWith(QStringLiteral("/%1").arg(f.c->Calque_Tombe->featureCount())));
    f.touche(Qt::Key_Y);
    EXPECT_EQ(f.w<QLabel>("L_NB_Tombes")->text(), apres);
}
