// What a clerk's hand or a host can throw at the map: events with no plan open, a plot of
// two points, a double click on nothing, a drag that leaves the map. Nothing crashes and
// nothing half-made reaches the plan.
#include "carte_fixture.h"
#include "carto/geometry/geometry.h"
#include "carto/model/map.h"
#include "carto/view/map_view.h"

#include <QKeyEvent>
#include <QTest>
#include <QToolButton>

using namespace veldra;

namespace {

void touche(QWidget& w, int cle, Qt::KeyboardModifiers m) {
    QKeyEvent e(QEvent::KeyPress, cle, m);
    QCoreApplication::sendEvent(&w, &e);
}

// Features in storage, read afresh, per layer name.
qint32 stockes(const carto::Map& carte, const char* calque) {
    carto::Map relu;
    relu.loadMapSet(carte.mapSet());
    return relu.requireLayer(QString::fromUtf8(calque)).featureCount();
}

} // namespace

TEST(EntreesHostiles, EventsWithNoPlanOpenDoNothing) {
    ControleFixture f;
    f.c->setAnnulation(true);
    carto::MapView& v = *f.c->surface().Map1;
    for (int i = 0; i < 8; ++i)
        f.c->surface().B_Outils_[size_t(i)]->click();
    for (int i = 0; i < 8; ++i)
        f.c->surface().Btn_OutilsDessin_[size_t(i)]->click();
    for (const int cle : {Qt::Key_Z, Qt::Key_Y, Qt::Key_C, Qt::Key_V})
        touche(v, cle, Qt::ControlModifier);
    bool defaut = true;
    emit v.mouseDown(carto::mouse::Left, 0, 10, 10);
    emit v.mouseMoved(carto::mouse::Left, 0, 50, 50);
    emit v.mouseUp(carto::mouse::Left, 0, 50, 50);
    emit v.doubleClicked();
    emit v.toolUsed(106, 0, 0, 5, 5, 0, false, false, defaut);
    emit v.toolUsed(107, 0, 0, 0, 0, 3, false, false, defaut);
    emit v.polyToolUsed(105, carto::phase::Finished, {{0, 0}, {3, 4}}, false, false, defaut);
    emit v.editStatus(carto::editstatus::Completed);
    f.c->surface().Timer1->start(0);
    QTest::qWait(30);
    EXPECT_EQ(f.c->surface().Historique->count(), 0);
    for (const Message& m : f.messages)
        ADD_FAILURE() << "unexpected message: " << m.texte.toStdString();
}

TEST(EntreesHostiles, APlotOfTwoPointsIsNotMadeAndADoubleClickOnNothingOpensNothing) {
    Carte f;
    f.c->setAnnulation(true);
    f.edition();
    f.calque(QStringLiteral("Tombes"));
    carto::Layer& tombes = *f.c->Calque_Tombe;
    const qint32 avant = tombes.featureCount();
    const carto::Rect e = f.c->Calque_Enceinte->bounds();
    f.vue().setBounds(e);
    f.c->surface().Btn_OutilsDessin_[3]->click(); // polygon
    const carto::Point a{e.xmin + 1, e.ymin + 1}, b{e.xmin + 3, e.ymin + 1};
    f.souris(QEvent::MouseButtonPress, a, Qt::LeftButton, Qt::LeftButton);
    f.souris(QEvent::MouseButtonRelease, a, Qt::LeftButton, Qt::NoButton);
    f.souris(QEvent::MouseButtonPress, b, Qt::LeftButton, Qt::LeftButton);
    f.souris(QEvent::MouseButtonRelease, b, Qt::LeftButton, Qt::NoButton);
    f.souris(QEvent::MouseButtonDblClick, b, Qt::LeftButton, Qt::LeftButton);
    f.souris(QEvent::MouseButtonRelease, b, Qt::LeftButton, Qt::NoButton);
    EXPECT_EQ(tombes.featureCount(), avant);
    EXPECT_EQ(stockes(f.c->contexte().carte(), "Tombes"), avant);
    EXPECT_EQ(f.c->surface().Historique->count(), 0);

    f.calque(QStringLiteral("Texte"));
    f.c->surface().B_Outils_[3]->click();
    const std::size_t messages = f.messages.size();
    f.souris(QEvent::MouseButtonDblClick, {e.xmax + 50, e.ymax + 50}, Qt::LeftButton,
             Qt::LeftButton);
    EXPECT_EQ(f.messages.size(), messages);
}

TEST(EntreesHostiles, ADragThatLeavesTheMapStoresWhatMemoryShows) {
    Carte f;
    f.c->setAnnulation(true);
    f.edition();
    carto::Layer& tombes = *f.c->Calque_Tombe;
    const carto::Feature t = tombes.allFeatures().at(3);
    const carto::Rect r = t.bounds();
    f.vue().setBounds({r.xmin - 5, r.ymin - 5, r.xmax + 5, r.ymax + 5});
    tombes.selectAdd(t.fid());
    f.c->surface().Btn_OutilsDessin_[2]->click();
    const QPointF dehors(-200, f.vue().height() + 300);
    f.glisse(t.centre(), f.vue().toMap(dehors));
    QTRY_VERIFY_WITH_TIMEOUT(!f.c->surface().Timer1->isActive(), 2000);
    const carto::Feature apres = tombes.feature(t.fid());
    EXPECT_TRUE(apres.geometry().isValid());
    carto::Map relu;
    relu.loadMapSet(f.c->contexte().carte().mapSet());
    const carto::Feature stocke = relu.requireLayer(u"Tombes").feature(t.fid());
    EXPECT_NEAR(stocke.centre().x, apres.centre().x, 1e-6);
    EXPECT_NEAR(stocke.centre().y, apres.centre().y, 1e-6);
    // And one undo puts it back where it was, in the file too.
    f.c->surface().Btn_AnnulerEdition->click();
    carto::Map encore;
    encore.loadMapSet(f.c->contexte().carte().mapSet());
    EXPECT_NEAR(encore.requireLayer(u"Tombes").feature(t.fid()).centre().x, t.centre().x, 1e-6);
}
