// The drawing aids beyond the original: snapping, the overlap guard and rows of numbered
// plots. Off, the control behaves as it always did; on, each keeps its promise.
#include "carte_fixture.h"
#include "carto/geometry/geometry.h"
#include "carto/model/map.h"
#include "editing/chevauchements.h"
#include "editing/rangee.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QToolButton>

using namespace veldra;

namespace {

struct Aides : Carte {
    Aides() {
        c->setAnnulation(true);
        edition();
        calque(QStringLiteral("Tombes"));
    }
    carto::Layer& tombes() { return *c->Calque_Tombe; }
    carto::Feature premier() { return tombes().allFeatures().at(0); }
    // A polygon drawn corner by corner with the drawing tool, Shift held or not.
    void polygone(const std::vector<carto::Point>& coins, Qt::KeyboardModifiers m = {}) {
        c->surface().Btn_OutilsDessin_[3]->click();
        for (const carto::Point& p : coins) {
            const QPointF e = vue().toScreen(p);
            QMouseEvent presse(QEvent::MouseButtonPress, e, vue().mapToGlobal(e), Qt::LeftButton,
                               Qt::LeftButton, m);
            QCoreApplication::sendEvent(&vue(), &presse);
            QMouseEvent relache(QEvent::MouseButtonRelease, e, vue().mapToGlobal(e), Qt::LeftButton,
                                Qt::NoButton, m);
            QCoreApplication::sendEvent(&vue(), &relache);
        }
        const QPointF e = vue().toScreen(coins.back());
        QMouseEvent double_(QEvent::MouseButtonDblClick, e, vue().mapToGlobal(e), Qt::LeftButton,
                            Qt::LeftButton, m);
        QCoreApplication::sendEvent(&vue(), &double_);
    }
    void rectangle(const carto::Rect& r) {
        bool defaut = true;
        emit vue().toolUsed(106, r.xmin, r.ymin, r.xmax, r.ymax, 0, false, false, defaut);
    }
    double recouvrement(const carto::Feature& f) {
        double aire = 0;
        for (const carto::Feature& v :
             tombes().searchWithinRectangle(f.bounds(), carto::searchmode::PartlyWithin))
            if (v.fid() != f.fid())
                aire += carto::intersection(v.geometry(), f.geometry()).area();
        return aire;
    }
};

} // namespace

TEST(Accrochage, TheDrawnCornerSnapsToTheNeighboursVertexUnlessShiftIsHeld) {
    for (const bool coche : {false, true}) {
        Aides f;
        const carto::Feature voisin = f.premier();
        const carto::Point coin = voisin.parts()[0][1];
        f.vue().setBounds(voisin.bounds().expanded(4));
        if (coche)
            f.c->surface().CB_Accrochage->click();
        const double px = 1 / f.vue().viewport().pixelsPerUnit(); // a pixel in metres
        const carto::Point presDuCoin{coin.x + 4 * px, coin.y - 3 * px};
        const qint32 avant = f.tombes().featureCount();
        f.polygone({presDuCoin,
                    {coin.x + 1.5, coin.y - 0.2},
                    {coin.x + 1.5, coin.y - 2},
                    {coin.x + 0.3, coin.y - 2}});
        ASSERT_EQ(f.tombes().featureCount(), avant + 1);
        const carto::Point premierCoin = f.tombes().allFeatures().at(avant).parts()[0][0];
        if (coche) {
            EXPECT_EQ(premierCoin, coin) << "the corner snaps to the vertex";
        } else {
            EXPECT_NEAR(premierCoin.x, presDuCoin.x, px);
            EXPECT_NE(premierCoin, coin);
        }
        if (coche) {
            // Shift held: the pointer stays where it is.
            const carto::Point ailleurs{coin.x + 4 * px, coin.y - 6 * px};
            f.polygone({ailleurs, {coin.x + 1.5, coin.y - 3}, {coin.x + 0.2, coin.y - 4}},
                       Qt::ShiftModifier);
            const carto::Point libre = f.tombes().allFeatures().at(avant + 1).parts()[0][0];
            EXPECT_NEAR(libre.x, ailleurs.x, px);
            EXPECT_NEAR(libre.y, ailleurs.y, px);
        }
    }
}

TEST(Accrochage, TheOptionsAreKeptInTheSettingsFileOnlyOnceUsed) {
    Aides f;
    f.c.reset(); // the settings are written when the control goes
    QFile vierge(f.ini());
    ASSERT_TRUE(vierge.open(QIODevice::ReadOnly));
    const QByteArray six = vierge.readAll();
    vierge.close();
    EXPECT_FALSE(six.contains("Accrochage"));
    EXPECT_FALSE(six.contains("Rangees"));

    ControleFixture g;
    QFile::copy(f.ini(), g.ini());
    g.ouvre(g.plan(30));
    g.c->surface().CB_Accrochage->click();
    g.c->surface().SB_ToleranceAccrochage->setValue(12);
    g.c.reset();
    QFile ecrit(g.ini());
    ASSERT_TRUE(ecrit.open(QIODevice::ReadOnly));
    const QByteArray avec = ecrit.readAll();
    EXPECT_TRUE(avec.contains("Accrochage=1")) << avec.toStdString();
    EXPECT_TRUE(avec.contains("ToleranceAccrochage=12"));
    EXPECT_TRUE(avec.contains("EviterChevauchements=0") == false);

    ControleFixture h;
    QFile::copy(g.ini(), h.ini());
    h.ouvre(h.plan(30));
    EXPECT_TRUE(h.c->surface().CB_Accrochage->isChecked());
    EXPECT_EQ(h.c->surface().SB_ToleranceAccrochage->value(), 12);
}

TEST(Chevauchements, ADrawnPlotIsCutBackToFreeGroundOrNotMadeAtAll) {
    Aides f;
    const carto::Feature voisin = f.premier();
    const carto::Rect b = voisin.bounds();
    // Off: the drawing stays as drawn, over its neighbour.
    f.rectangle({b.xmin + 0.2, b.ymin + 0.2, b.xmax + 0.6, b.ymax - 0.2});
    const carto::Feature tel = f.tombes().allFeatures().at(f.tombes().featureCount() - 1);
    EXPECT_GT(f.recouvrement(tel), 0.1);
    f.tombes().deleteFeature(tel.fid());

    f.c->surface().CB_EviterChevauchements->click();
    const qint32 avant = f.tombes().featureCount();
    f.rectangle({b.xmin + 0.2, b.ymin + 0.2, b.xmax + 0.6, b.ymax - 0.2});
    ASSERT_EQ(f.tombes().featureCount(), avant + 1);
    const carto::Feature coupe = f.tombes().allFeatures().at(avant);
    EXPECT_NEAR(f.recouvrement(coupe), 0, 1e-6);
    EXPECT_GT(coupe.area(), 0);
    // One step with its drawing: undone, it goes whole.
    f.c->surface().Historique->undo();
    EXPECT_EQ(f.tombes().featureCount(), avant);

    // Wholly on its neighbour: not made, and the clerk is told.
    const std::size_t messages = f.messages.size();
    f.rectangle({b.xmin + 0.1, b.ymin + 0.1, b.xmin + 0.4, b.ymin + 0.4});
    EXPECT_EQ(f.tombes().featureCount(), avant);
    EXPECT_EQ(f.messages.size(), messages + 1);
}

TEST(Chevauchements, ThePlotsAroundAreFoundAndCut) {
    Aides f;
    const carto::Feature t = f.premier();
    const carto::Geometry g = t.geometry();
    // Its own shape left out, the plot is free.
    EXPECT_NEAR(solLibre(f.tombes(), g, t.fid()).area(), g.area(), 1e-9);
    EXPECT_TRUE(solLibre(f.tombes(), g, -1).isEmpty());
}

TEST(Rangee, PlotsAreMadeSideBySideNumberedAndLabelledInOneStep) {
    Aides f;
    // A model in free ground: a new plot of 1 x 2 m turned 20 degrees.
    const carto::Rect e = f.c->Calque_Enceinte->bounds();
    const carto::Point o{e.xmin + 8, e.ymin + 3};
    const double a = 20 * M_PI / 180;
    const auto p = [&](double x, double y) {
        return carto::Point{o.x + x * std::cos(a) - y * std::sin(a),
                            o.y + x * std::sin(a) + y * std::cos(a)};
    };
    carto::Feature modele =
        f.tombes().addFeature(carto::Feature::region({{p(0, 0), p(1, 0), p(1, 2), p(0, 2)}}));
    modele.setAttribute(u"AngleNumero", 20.0);
    f.tombes().updateFeature(modele);
    modele = f.tombes().feature(modele.fid());
    const qint32 avant = f.tombes().featureCount();
    const qint32 etiquettes = f.c->Calque_Numero->featureCount();
    const int pas = f.c->surface().Historique->count();

    DemandeRangee d;
    d.nombre = 5;
    d.ecart = 0.25;
    d.premier = 101;
    d.prefixe = QStringLiteral("Z-");
    d.suffixe = QStringLiteral(" bis");
    const BilanRangee b = creeRangee(f.c->contexte(), modele, d);
    EXPECT_EQ(b.crees, 5);
    ASSERT_EQ(f.tombes().featureCount(), avant + 5);
    EXPECT_EQ(f.c->Calque_Numero->featureCount(), etiquettes + 5);
    EXPECT_EQ(f.c->surface().Historique->count(), pas + 1);
    for (int i = 0; i < 5; ++i) {
        const carto::Feature t = f.tombes().allFeatures().at(avant + i);
        EXPECT_EQ(t.attribute(u"Numero").toString(), QStringLiteral("Z-%1 bis").arg(101 + i));
        EXPECT_DOUBLE_EQ(t.attribute(u"AngleNumero").toDouble(), 20);
        EXPECT_NEAR(t.area(), 2, 1e-9);
        // Side by side along the first side, 1.25 m apart.
        EXPECT_NEAR(carto::distance(t.centre(), modele.centre()), 1.25 * (i + 1), 1e-9);
        const carto::Features lab =
            f.c->Calque_Numero->searchWithinFeature(t, carto::searchmode::CentreWithin);
        ASSERT_EQ(lab.count(), 1);
        EXPECT_EQ(lab.at(0).text(), t.attribute(u"Numero").toString());
        EXPECT_DOUBLE_EQ(lab.at(0).style().textRotation, -20);
    }
    // Numbers already borne in the section: refused, nothing written.
    EXPECT_THROW(creeRangee(f.c->contexte(), modele, d), Erreur);
    EXPECT_EQ(f.tombes().featureCount(), avant + 5);
    // The row goes back whole.
    f.c->surface().Historique->undo();
    EXPECT_EQ(f.tombes().featureCount(), avant);
    EXPECT_EQ(f.c->Calque_Numero->featureCount(), etiquettes);
}

TEST(Rangee, PlotsOnOthersAreSkippedAndBadRequestsRefused) {
    Aides f;
    const carto::Feature modele = f.premier(); // in its alley, among others
    DemandeRangee d;
    d.nombre = 3;
    d.premier = 9001;
    const BilanRangee b = creeRangee(f.c->contexte(), modele, d);
    EXPECT_EQ(b.crees + b.surUnAutre + b.horsSection, 3);
    EXPECT_GE(b.surUnAutre, 1); // its neighbour stands where the first would

    const qint32 avant = f.tombes().featureCount();
    std::vector<DemandeRangee> mauvaises(6, d);
    mauvaises[0].nombre = 0;
    mauvaises[1].nombre = -1;
    mauvaises[2].nombre = 100000;
    mauvaises[3].ecart = -2;
    mauvaises[4].ecart = 1e9;
    mauvaises[5].prefixe = QString(10000, u'x');
    for (const DemandeRangee& m : mauvaises)
        EXPECT_THROW(creeRangee(f.c->contexte(), modele, m), Erreur);
    DemandeRangee deborde = d;
    deborde.premier = std::numeric_limits<qint64>::max() - 1;
    deborde.pas = std::numeric_limits<qint64>::max() / 2;
    EXPECT_THROW(creeRangee(f.c->contexte(), modele, deborde), Erreur);
    // A model that is not four corners.
    const carto::Rect e = f.c->Calque_Enceinte->bounds();
    const carto::Feature triangle = f.tombes().addFeature(carto::Feature::region(
        {{{e.xmin + 5, e.ymin + 2}, {e.xmin + 6, e.ymin + 2}, {e.xmin + 5, e.ymin + 3}}}));
    EXPECT_THROW(creeRangee(f.c->contexte(), triangle, d), Erreur);
    EXPECT_EQ(f.tombes().featureCount(), avant + 1);
}

TEST(Rangee, TheCommandAppearsOnlyWithItsOption) {
    Aides f;
    EXPECT_TRUE(f.c->surface().Btn_Rangee->isHidden());
    f.c->surface().CB_Rangees->click();
    EXPECT_FALSE(f.c->surface().Btn_Rangee->isHidden());
    // The dialog, answered: a row of 2 beside the plot.
    f.tombes().clearSelection();
    f.tombes().selectAdd(f.premier().fid());
    f.c->setModalHook([](QDialog& d) {
        d.findChild<QSpinBox*>(QStringLiteral("SB_Nombre"))->setValue(2);
        d.findChild<QLineEdit*>(QStringLiteral("T_Premier"))->setText(QStringLiteral("7001"));
        d.findChild<QLineEdit*>(QStringLiteral("T_Ecart"))->setText(QStringLiteral("0"));
        d.findChild<QPushButton*>(QStringLiteral("Btn_Creer"))->click();
        return d.result();
    });
    f.c->surface().Btn_Rangee->click();
    ASSERT_FALSE(f.messages.empty());
    EXPECT_EQ(f.messages.back().titre, QStringLiteral("Rangée d'emplacements"));
}
