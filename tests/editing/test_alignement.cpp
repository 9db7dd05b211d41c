// The geometric commands on the selection: each checked by the property it promises (a
// common edge, right angles, parallel sides, an exact size), read back from the plan file,
// and each one step that an undo takes back whole.
#include "carte_fixture.h"
#include "carto/geometry/geometry.h"
#include "carto/model/map.h"
#include "editing/dialogue_taille.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <cmath>

using namespace veldra;

namespace {

struct Commandes : Carte {
    Commandes() {
        c->setAnnulation(true);
        edition();
        calque(QStringLiteral("Tombes"));
    }
    carto::Layer& tombes() { return *c->Calque_Tombe; }
    void choisit(const std::vector<qint64>& fids) {
        tombes().clearSelection();
        for (qint64 fid : fids)
            tombes().selectAdd(fid);
    }
    // A plot of w x h turned by `degres` about its first corner at `o`.
    carto::Feature terrain(carto::Point o, double w, double h, double degres, double biais = 0) {
        const double t = degres * M_PI / 180, c0 = std::cos(t), s0 = std::sin(t);
        const auto p = [&](double x, double y) {
            return carto::Point{o.x + x * c0 - y * s0, o.y + x * s0 + y * c0};
        };
        return tombes().addFeature(
            carto::Feature::region({{p(0, 0), p(w + biais, 0), p(w, h), p(biais, h), p(0, 0)}}));
    }
    carto::Feature relu(qint64 fid) {
        carto::Map m;
        m.loadMapSet(c->contexte().carte().mapSet());
        return m.requireLayer(u"Tombes").feature(fid);
    }
    QUndoStack& pile() { return *c->surface().Historique; }
};

double angleAu(const carto::Part& r, size_t i) {
    const carto::Point p = r[i], a = r[(i + 3) % 4], b = r[(i + 1) % 4];
    const double ux = a.x - p.x, uy = a.y - p.y, vx = b.x - p.x, vy = b.y - p.y;
    return std::atan2(std::fabs(ux * vy - uy * vx), ux * vx + uy * vy);
}

} // namespace

TEST(Alignement, PlotsShareTheSelectionsEdgeOnEachSide) {
    Commandes f;
    const carto::Point o = f.c->Calque_Enceinte->bounds().center();
    std::vector<qint64> fids;
    for (int i = 0; i < 3; ++i)
        fids.push_back(f.terrain({o.x + 3 * i, o.y + 0.7 * i}, 1, 2, i == 1 ? 30 : 0).fid());
    const std::size_t pas = std::size_t(f.pile().count());
    for (const QString& cote : {QStringLiteral("Haut"), QStringLiteral("Bas"),
                                QStringLiteral("Gauche"), QStringLiteral("Droite")}) {
        f.choisit(fids);
        std::vector<carto::Rect> avant;
        carto::Rect tout;
        for (qint64 fid : fids) {
            avant.push_back(f.tombes().feature(fid).bounds());
            tout = tout.united(avant.back());
        }
        QString c = cote;
        f.c->AlignerTerrains(c);
        for (size_t i = 0; i < fids.size(); ++i) {
            const carto::Rect b = f.relu(fids[i]).bounds();
            if (cote == QLatin1String("Haut")) {
                EXPECT_NEAR(b.ymax, tout.ymax, 1e-9);
                EXPECT_NEAR(b.xmin, avant[i].xmin, 1e-9);
            } else if (cote == QLatin1String("Bas")) {
                EXPECT_NEAR(b.ymin, tout.ymin, 1e-9);
            } else if (cote == QLatin1String("Gauche")) {
                EXPECT_NEAR(b.xmin, tout.xmin, 1e-9);
                EXPECT_NEAR(b.ymin, avant[i].ymin, 1e-9);
            } else {
                EXPECT_NEAR(b.xmax, tout.xmax, 1e-9);
            }
        }
    }
    EXPECT_EQ(std::size_t(f.pile().count()), pas + 4); // one step each
    QString inconnu = QStringLiteral("Milieu");
    EXPECT_THROW(f.c->AlignerTerrains(inconnu), Erreur);
}

TEST(Alignement, AnAlleyIsPushedAsFarAsItStaysInItsSection) {
    Commandes f;
    f.calque(QStringLiteral("Allées"));
    carto::Layer& allees = *f.c->Calque_Allees;
    const carto::Feature allee = allees.allFeatures().at(0);
    const carto::Feature section = f.c->Calque_Sections->firstAtPoint(allee.centre());
    ASSERT_TRUE(section.isValid());
    for (const char* cle : {"Gauche", "Haut"}) {
        allees.clearSelection();
        allees.selectAdd(allee.fid());
        QString cote = QString::fromLatin1(cle);
        f.c->AjusterPosition(cote);
        carto::Feature poussee = allees.feature(allee.fid());
        EXPECT_TRUE(carto::within(poussee.geometry(), section.geometry())) << cle;
        // A micrometre further and it would stick out.
        poussee.offset(cote == QLatin1String("Gauche") ? -1e-6 : 0,
                       cote == QLatin1String("Haut") ? 1e-6 : 0);
        EXPECT_FALSE(carto::within(poussee.geometry(), section.geometry())) << cle;
    }
    // Plots have no container: nothing moves.
    f.calque(QStringLiteral("Tombes"));
    const carto::Feature t = f.tombes().allFeatures().at(0);
    f.choisit({t.fid()});
    QString gauche = QStringLiteral("Gauche");
    f.c->AjusterPosition(gauche);
    EXPECT_EQ(f.tombes().feature(t.fid()).bounds(), t.bounds());
}

TEST(Alignement, SquaredPlotsHaveRightAnglesInThePlanFile) {
    Commandes f;
    const carto::Point o = f.c->Calque_Enceinte->bounds().center();
    const carto::Feature oblique = f.terrain(o, 2, 1, 30, 0.15);
    const carto::Feature droit = f.terrain({o.x + 5, o.y}, 2, 1, 0, 0.3);
    f.choisit({oblique.fid(), droit.fid()});
    f.c->AngleDroit();
    for (qint64 fid : {oblique.fid(), droit.fid()}) {
        const carto::Part r = f.relu(fid).parts()[0];
        ASSERT_EQ(r.size(), 5u);
        for (size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(angleAu(r, i), M_PI / 2, 1e-9) << fid << " " << i;
    }
    EXPECT_EQ(f.pile().undoText(), QStringLiteral("Angle droit"));
    f.pile().undo();
    EXPECT_EQ(f.relu(oblique.fid()).parts(), oblique.parts());
}

TEST(Alignement, AFlatPlotCannotBeSquaredAndNothingChanges) {
    Commandes f;
    const carto::Point o = f.c->Calque_Enceinte->bounds().center();
    // Its first corner clicked twice: squared, it would have no area.
    const carto::Feature t = f.tombes().addFeature(carto::Feature::region(
        {{{o.x, o.y}, {o.x + 3, o.y}, {o.x + 3, o.y + 2}, {o.x, o.y}, {o.x, o.y}}}));
    const carto::Feature autre = f.terrain({o.x + 6, o.y}, 2, 1, 10);
    f.choisit({autre.fid(), t.fid()});
    EXPECT_THROW(f.c->AngleDroit(), Erreur);
    EXPECT_EQ(f.relu(autre.fid()).parts(), autre.parts()); // not half-changed
    EXPECT_EQ(f.relu(t.fid()).parts(), t.parts());
}

TEST(Alignement, OrientedPlotsHaveTheirSideParallelToTheFirsts) {
    Commandes f;
    const carto::Point o = f.c->Calque_Enceinte->bounds().center();
    std::vector<qint64> fids;
    for (int i = 0; i < 4; ++i)
        fids.push_back(f.terrain({o.x + 3 * i, o.y}, 1, 2, 20 + 4 * i).fid());
    const carto::Part reference = f.tombes().feature(fids[0]).parts()[0];

    f.choisit({fids[0]});
    QString bas = QStringLiteral("Bas");
    f.c->OrienterTerrains(bas);     // one plot: nothing to orient
    EXPECT_EQ(f.pile().count(), 4); // the four plots drawn, nothing more

    f.choisit(fids);
    f.c->OrienterTerrains(bas);
    const double pente = (reference[1].y - reference[0].y) / (reference[1].x - reference[0].x);
    EXPECT_EQ(f.relu(fids[0]).parts()[0], reference);
    for (size_t i = 1; i < fids.size(); ++i) {
        const carto::Part r = f.relu(fids[i]).parts()[0];
        // The bottom side: the two lowest corners.
        std::vector<carto::Point> coins(r.begin(), r.end() - 1);
        std::sort(coins.begin(), coins.end(),
                  [](carto::Point a, carto::Point b) { return a.y < b.y; });
        const carto::Point p = coins[0].x < coins[1].x ? coins[0] : coins[1];
        const carto::Point q = coins[0].x < coins[1].x ? coins[1] : coins[0];
        EXPECT_NEAR((q.y - p.y) / (q.x - p.x), pente, 1e-9) << i;
        EXPECT_NEAR(std::hypot(q.x - p.x, q.y - p.y), 1, 1e-9) << i;
    }
}

TEST(Alignement, TheSizeDialogMakesAnExactRectangleOrChangesNothing) {
    Commandes f;
    const carto::Point o = f.c->Calque_Enceinte->bounds().center();
    const carto::Feature t = f.terrain(o, 2, 1, 30);
    struct Saisie {
        QString longueur, largeur;
        bool valide;
    } saisie{QStringLiteral("10"), QStringLiteral("5"), true};
    QStringList lus;
    f.c->setModalHook([&](QDialog& d) {
        auto* t1 = d.findChild<QLineEdit*>(QStringLiteral("Text1"));
        auto* t2 = d.findChild<QLineEdit*>(QStringLiteral("Text2"));
        lus << t1->text() << t2->text() << d.findChild<QLineEdit*>(QStringLiteral("Text3"))->text();
        t1->setText(saisie.longueur);
        t2->setText(saisie.largeur);
        d.findChild<QPushButton*>(saisie.valide ? QStringLiteral("Command2")
                                                : QStringLiteral("Command1"))
            ->click();
        return d.result();
    });
    f.choisit({t.fid()});
    f.c->DefinirTaille();
    EXPECT_EQ(lus.mid(0, 3),
              (QStringList{QStringLiteral("2"), QStringLiteral("1"), QStringLiteral("2")}));
    const carto::Feature fait = f.relu(t.fid());
    EXPECT_EQ(fait.parts()[0][0], o);
    EXPECT_NEAR(fait.bounds().width(), 10, 1e-9);
    EXPECT_NEAR(fait.bounds().height(), 5, 1e-9);
    EXPECT_NEAR(fait.area(), 50, 1e-9);

    // Cancelled, zero, negative, absurd or not numbers: the plot stays as it is.
    saisie = {QStringLiteral("3"), QStringLiteral("3"), false};
    f.c->DefinirTaille();
    for (const auto& [l, w] : std::vector<std::pair<const char*, const char*>>{
             {"0", "5"}, {"-3", "5"}, {"1e12", "5"}, {"abc", "5"}, {"4", ""}}) {
        saisie = {QString::fromLatin1(l), QString::fromLatin1(w), true};
        try {
            f.c->DefinirTaille();
            ADD_FAILURE() << l << " x " << w << " was accepted";
        } catch (const Erreur&) {
        }
    }
    EXPECT_EQ(f.relu(t.fid()).parts(), fait.parts());

    saisie = {QStringLiteral("12,5"), QStringLiteral("4.0"), true};
    f.c->DefinirTaille();
    EXPECT_NEAR(f.relu(t.fid()).area(), 50, 1e-9);
}

TEST(Alignement, TheSizeDialogKeepsLengthWidthAndAreaTogether) {
    Define_Taille d(10, 0, 0);
    auto* t1 = d.findChild<QLineEdit*>(QStringLiteral("Text1"));
    auto* t2 = d.findChild<QLineEdit*>(QStringLiteral("Text2"));
    auto* t3 = d.findChild<QLineEdit*>(QStringLiteral("Text3"));
    t3->setText(QStringLiteral("50"));
    emit t3->editingFinished();
    EXPECT_EQ(t2->text(), QStringLiteral("5"));
    t1->setText(QStringLiteral("0"));
    t2->setText(QStringLiteral("5"));
    emit t3->editingFinished();
    EXPECT_EQ(t1->text(), QStringLiteral("10"));
    t1->setText(QStringLiteral("4"));
    emit t1->editingFinished();
    EXPECT_EQ(t3->text(), QStringLiteral("20"));
    t1->setText(QStringLiteral("0"));
    t2->setText(QStringLiteral("0"));
    emit t3->editingFinished();
    EXPECT_EQ(t1->text(), QStringLiteral("0"));
}
