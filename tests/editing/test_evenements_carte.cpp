// The map's notifications: measuring, rectangles and circles, and plots moved with the
// pointer getting their numbers again once the move is stored.
#include "carte_fixture.h"
#include "carto/geometry/geometry.h"
#include "veldra-plan/cursors.h"

#include <QLabel>
#include <QTest>
#include <QToolButton>

using namespace veldra;

TEST(EvenementsCarte, MeasuringShowsTheSegmentAndTheTotalInFrench) {
    Carte f;
    f.c->surface().B_Outils_[7]->click();
    EXPECT_EQ(f.vue().currentTool(), 105);
    EXPECT_TRUE(f.w<QWidget>("Panel_Dist")->isVisible());
    carto::MapView& v = f.vue();
    const carto::Point depart = v.toMap({100, 100});
    emit v.mouseDown(carto::mouse::Left, 0, 100, 100);
    emit v.mouseMoved(0, 0, 100 + 3 * v.viewport().pixelsPerUnit(),
                      100 - 4 * v.viewport().pixelsPerUnit());
    // Five metres from the click.
    EXPECT_EQ(f.w<QLabel>("L_DistTotale")->text(), QStringLiteral("5,00"));
    EXPECT_EQ(f.w<QLabel>("L_Distance")->text(), QStringLiteral("5"));

    std::vector<carto::Point> ligne{
        depart, {depart.x + 3, depart.y + 4}, {depart.x + 3, depart.y + 10.125}};
    bool defaut = true;
    emit v.polyToolUsed(105, carto::phase::PointAdded, ligne, false, false, defaut);
    EXPECT_EQ(f.w<QLabel>("L_DistTotale")->text(), QStringLiteral("11,13"));
    emit v.mouseMoved(0, 0, 100, 100); // back on the last click: the closed part and nothing
    EXPECT_EQ(f.w<QLabel>("L_DistTotale")->text(), QStringLiteral("11,13"));
    emit v.polyToolUsed(105, carto::phase::Finished, ligne, false, false, defaut);
    EXPECT_EQ(f.w<QLabel>("L_DistTotale")->text(), QStringLiteral("11,13"));
    f.w<QLabel>("L_DistTotale")->clear();
    emit v.mouseMoved(0, 0, 200, 200); // the measure is over: nothing moves
    EXPECT_TRUE(f.w<QLabel>("L_DistTotale")->text().isEmpty());
}

TEST(EvenementsCarte, MeasuringTakesTheRulerPointerFromTheCursorFolder) {
    Carte f;
    QString dossier = f.dir.filePath(QStringLiteral("curseurs"));
    f.c->setRepCurseurs(dossier);
    f.c->surface().B_Outils_[7]->click(); // no cursor files there: the default pointer stays
    EXPECT_TRUE(f.vue().mouseIcon().isEmpty());
    veldra::plantool::writeCursors(dossier);
    f.c->setRepCurseurs(dossier += QStringLiteral("/Images/Curseurs"));
    f.c->surface().B_Outils_[7]->click();
    EXPECT_EQ(f.vue().mousePointer(), carto::pointer::Custom);
    EXPECT_EQ(f.vue().mouseIcon(), f.c->RepCurseurs() + QStringLiteral("CurRegle.cur"));
    f.c->surface().B_Outils_[3]->click();
    EXPECT_EQ(f.vue().mousePointer(), carto::pointer::Default);
}

TEST(EvenementsCarte, RectanglesAndCirclesTakeTheirLayersColour) {
    Carte f;
    f.edition();
    carto::MapView& v = f.vue();
    bool defaut = true;
    const auto rectangleDans = [&](const QString& calque) {
        f.calque(calque);
        carto::Layer& l = *f.c->Calque_Courant;
        const qint32 avant = l.featureCount();
        emit v.toolUsed(106, 1000, 1000, 1004, 1003, 0, false, false, defaut);
        EXPECT_EQ(l.featureCount(), avant + 1) << calque.toStdString();
        carto::Feature nouveau;
        l.forEachFeature([&](const carto::Feature& x) {
            if (x.bounds().xmin == 1000)
                nouveau = x;
        });
        EXPECT_DOUBLE_EQ(nouveau.area(), 12) << calque.toStdString();
        return nouveau.style().regionColor;
    };
    EXPECT_EQ(rectangleDans(QStringLiteral("Sections")), 0xC0C0FFu);
    EXPECT_EQ(rectangleDans(QStringLiteral("Allées")), 0xC0FFC0u);
    EXPECT_EQ(rectangleDans(QStringLiteral("Décor")),
              f.c->contexte().carte().defaultStyle.regionColor);

    // A circle on the plots: light green, and the plots are counted again.
    f.calque(QStringLiteral("Tombes"));
    const qint32 tombes = f.c->Calque_Tombe->featureCount();
    emit v.toolUsed(107, 2000, 2000, 0, 0, 1.5, false, false, defaut);
    EXPECT_EQ(f.c->Calque_Tombe->featureCount(), tombes + 1);
    EXPECT_TRUE(f.w<QLabel>("L_NB_Tombes")->text().contains(QString::number(tombes + 1)));
    const carto::Feature cercle = f.c->Calque_Tombe->firstAtPoint({2000, 2000});
    ASSERT_TRUE(cercle.isValid());
    EXPECT_EQ(cercle.style().regionColor, 0xC0FFC0u);
    EXPECT_NEAR(cercle.area(), M_PI * 1.5 * 1.5, 0.01);
}

TEST(EvenementsCarte, AMovedPlotGetsItsNumberAgainOnceTheMoveIsStored) {
    Carte f;
    f.edition();
    carto::Layer& tombes = *f.c->Calque_Tombe;
    carto::Layer& numeros = *f.c->Calque_Numero;
    const qint32 labels = numeros.featureCount();
    const carto::Feature t = tombes.allFeatures().at(10);
    const QString numero = t.attribute(u"Numero").toString();
    const carto::Rect r = t.bounds();
    f.vue().setBounds({r.xmin - 5, r.ymin - 5, r.xmax + 5, r.ymax + 5});
    tombes.selectAdd(t.fid());
    f.c->surface().Btn_OutilsDessin_[2]->click(); // move and resize
    ASSERT_EQ(f.vue().currentTool(), carto::tool::Select);

    const carto::Point c = t.centre();
    f.glisse(c, {c.x + 0.8, c.y});
    const carto::Feature deplace = tombes.feature(t.fid());
    ASSERT_NEAR(deplace.centre().x, c.x + 0.8, 0.2);
    // Its old label is gone at once, the new one comes with the timer.
    QTRY_VERIFY_WITH_TIMEOUT(!f.c->surface().Timer1->isActive(), 2000);
    EXPECT_EQ(numeros.featureCount(), labels);
    int siens = 0;
    for (const carto::Feature& n :
         numeros.searchWithinFeature(deplace, carto::searchmode::CentreWithin))
        siens += n.text() == numero ? 1 : 0;
    EXPECT_EQ(siens, 1);
    EXPECT_EQ(tombes.feature(t.fid()).attribute(u"Numero").toString(), numero);

    // Out of edit mode a drag renumbers nothing.
    f.edition();
    f.glisse(deplace.centre(), {deplace.centre().x + 0.8, deplace.centre().y});
    EXPECT_FALSE(f.c->surface().Timer1->isActive());
}
