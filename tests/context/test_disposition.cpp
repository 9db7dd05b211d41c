// Layout and the surface's own panels.
#include "context/disposition.h"
#include "control_fixture.h"
#include "output/echelle.h"

#include <QTest>

using namespace veldra;

TEST(Disposition, TheControlWidensToItsMinimumAndPlacesTheMap) {
    ControleFixture f;
    const double tpp = twipsParPixel(f.c->contexte());
    f.c->resize(int(8000 / tpp), 600);
    EXPECT_EQ(f.c->width(), int(std::lround(kLargeurMinimaleTwips / tpp)));

    f.c->resize(1200, 800);
    QApplication::processEvents();
    const QWidget* map = f.w<QWidget>("Map1");
    const QWidget* haut = f.w<QWidget>("Panel_Haut");
    const QWidget* droite = f.w<QWidget>("Panel_Droite");
    const QWidget* bas = f.w<QWidget>("Panel_Bas");
    auto px = [tpp](double twips) { return int(std::lround(twips / tpp)); };
    EXPECT_EQ(map->x(), 0);
    EXPECT_EQ(map->y(), haut->height() + px(15));
    EXPECT_EQ(map->width(), 1200 - droite->width() - px(15));
    EXPECT_EQ(map->height(), 800 - bas->height() - px(885));
    EXPECT_EQ(bas->y() + bas->height(), 800);

    const QWidget* jauge = f.w<QWidget>("Panel_Jauge");
    EXPECT_NEAR(jauge->x() + jauge->width() / 2.0, map->x() + map->width() / 2.0, 1);
    EXPECT_NEAR(jauge->y() + jauge->height() / 2.0, map->y() + map->height() / 2.0, 1);
    // The search row runs left to right without overlaps.
    const QWidget* combo = f.w<QWidget>("Combo_section");
    const QWidget* bouton = f.w<QWidget>("Btn_Rechercher");
    EXPECT_LT(combo->geometry().right(), bouton->x());
}

TEST(Disposition, PanelsTabsAndTheInformationArrow) {
    ControleFixture f;
    EXPECT_EQ(f.c->mintCurFrame, 1);
    QTabBar* tabs = f.w<QTabBar>("TabStrip1");
    emit tabs->tabBarClicked(1);
    EXPECT_EQ(f.c->mintCurFrame, 2);
    EXPECT_TRUE(f.w<QWidget>("Frame_Onglet2")->isVisible());
    EXPECT_FALSE(f.w<QWidget>("Frame_Onglet1")->isVisible());

    QToolButton* fleche = f.w<QToolButton>("Btn_Fleche");
    fleche->click();
    EXPECT_EQ(fleche->toolTip(), QStringLiteral("Afficher les informations"));
    fleche->click();
    EXPECT_EQ(fleche->toolTip(), QStringLiteral("Masquer les informations"));

    f.w<QToolButton>("Btn_Pref")->click();
    EXPECT_TRUE(f.w<QWidget>("P_preferences")->isVisible());
    f.w<QPushButton>("Btn_Traitements")->click();
    EXPECT_FALSE(f.w<QWidget>("P_preferences")->isVisible());
    EXPECT_TRUE(f.w<QWidget>("P_traitements")->isVisible());

    f.w<QCheckBox>("CB_PlanSitue")->click();
    EXPECT_TRUE(f.w<QWidget>("Panel_Localisation")->isVisible());
    f.w<QToolButton>("HLBBttn1")->click();
    EXPECT_FALSE(f.w<QWidget>("Panel_Localisation")->isVisible());
    EXPECT_FALSE(f.w<QCheckBox>("CB_PlanSitue")->isChecked());

    // A floating panel follows a drag of its title.
    f.w<QCheckBox>("CB_PlanSitue")->click();
    QWidget* panneau = f.w<QWidget>("Panel_Localisation");
    QWidget* titre = f.w<QWidget>("Label8");
    const QPoint avant = panneau->pos();
    QTest::mousePress(titre, Qt::LeftButton, {}, QPoint(5, 5));
    QMouseEvent move(QEvent::MouseMove, QPointF(45, 35), titre->mapToGlobal(QPointF(45, 35)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(titre, &move);
    QTest::mouseRelease(titre, Qt::LeftButton, {}, QPoint(45, 35));
    EXPECT_EQ(panneau->pos(), avant + QPoint(40, 30));
}

TEST(Disposition, TheWholePlanButtonNeedsAnEnclosureToZoom) {
    ControleFixture f;
    f.ouvre(veldra::plantool::createEmptyPlan(f.dir.path(), QStringLiteral("Vide")));
    carto::MapView* map = f.c->surface().Map1;
    const double zoom = map->zoom();
    f.w<QToolButton>("B_Outils_8")->click();
    EXPECT_DOUBLE_EQ(map->zoom(), zoom);

    f.ouvre(f.plan(20));
    f.w<QToolButton>("B_Outils_8")->click();
    EXPECT_NEAR(map->zoom(), map->viewport().fitting(f.c->Calque_Enceinte->bounds()).zoom / 0.9,
                1e-9);
    f.w<QToolButton>("B_Outils_2")->click();
    EXPECT_EQ(map->currentTool(), carto::tool::Pan);
    f.w<QToolButton>("B_Outils_7")->click();
    EXPECT_EQ(map->currentTool(), 105);
    EXPECT_TRUE(f.w<QWidget>("Panel_Dist")->isVisible());
}

TEST(Disposition, TheScaleFollowsTheView) {
    EXPECT_EQ(formatMilliers(1234567), QStringLiteral("1234 567"));
    EXPECT_EQ(formatMilliers(500), QStringLiteral(" 500"));
    EXPECT_EQ(formatMilliers(0.4), QStringLiteral(" "));
    ControleFixture f;
    carto::MapView* map = f.c->surface().Map1;
    map->setZoom(map->paperWidth() * 20); // 20 m of plan for each centimetre of screen
    EXPECT_EQ(f.w<QLabel>("L_echelle")->text(), QStringLiteral("2 000"));
    map->setZoom(map->paperWidth() * 0.004);
    EXPECT_EQ(f.w<QLabel>("L_echelle")->text(), QStringLiteral("0.04"));
}
