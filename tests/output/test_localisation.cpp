// The localisation image: one plot ringed in red over the whole cemetery, the clerk's view
// and selection put back exactly; the overview map's frame following the main view, and a
// click on it centring the main view.
#include "output/image_localisation.h"
#include "sortie_fixture.h"

#include <QFileInfo>
#include <QLabel>
#include <QMouseEvent>
#include <QTest>

using namespace veldra;

namespace {

struct Vue {
    double zoom;
    carto::Point centre;
    std::vector<qint64> selection;
    std::vector<qint64> objSel;
};

Vue vueDe(Sortie& f) {
    return {f.vue().zoom(), f.vue().centre(), f.tombes().selection().fids(), f.c->ObjSel.fids()};
}

void attendMeme(const Vue& a, const Vue& b) {
    EXPECT_EQ(a.zoom, b.zoom);
    EXPECT_EQ(a.centre.x, b.centre.x);
    EXPECT_EQ(a.centre.y, b.centre.y);
    EXPECT_EQ(a.selection, b.selection);
    EXPECT_EQ(a.objSel, b.objSel);
}

// Three plots selected in a view zoomed on part of the plan.
void regardeTroisTombes(Sortie& f) {
    const auto t = f.tenues();
    f.tombes().selectOnly(carto::Features(&f.tombes(), {t[1].fid(), t[5].fid(), t[9].fid()}));
    f.c->ObjSel = f.tombes().selection();
    f.vue().setCentre({t[5].centre().x + 1.234, t[5].centre().y - 0.5});
    f.vue().setZoom(17.3);
}

// The red pixels around where the plot lies in a picture of the whole enclosure.
int rougeAutour(Sortie& f, const QImage& image, const carto::Feature& t) {
    carto::Viewport v = f.vue().viewport();
    v = v.fitting(f.c->Calque_Enceinte->bounds());
    v.zoom /= 0.9;
    const QPointF c = v.toScreen(t.centre());
    const int r = int(v.pixelsPerUnit() * 3) + 12;
    const QImage autour = image.copy(QRect(c.toPoint() - QPoint(r, r), QSize(2 * r, 2 * r)));
    return pixelsRouges(autour);
}

} // namespace

TEST(ImageLocalisation, RingsThePlotAndPutsBackTheViewAndTheSelection) {
    Sortie f;
    regardeTroisTombes(f);
    const Vue avant = vueDe(f);
    const int marques = f.c->contexte().etat.calqueTemp->featureCount();
    const carto::Feature cible = f.tenues().at(20);
    QString id = Sortie::cle(cible);
    f.c->ImageLocalisation(id);
    attendMeme(vueDe(f), avant);
    EXPECT_EQ(f.c->contexte().etat.calqueTemp->featureCount(), marques); // the ring is gone

    const QString chemin = f.c->ImageLocalisationTerminee();
    EXPECT_EQ(chemin, f.dossierControle() + QStringLiteral("/ImageL.jpg"));
    EXPECT_EQ(f.c->ImageLocalisationTerminee(), QString()); // read once
    const QImage image(chemin);
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), f.vue().size());
    EXPECT_GT(rougeAutour(f, image, cible), 20);
    EXPECT_TRUE(f.messages.empty());

    // Another plot: the same file, ringed elsewhere.
    const carto::Feature autre = f.tenues().at(40);
    id = Sortie::cle(autre);
    f.c->ImageLocalisation(id);
    EXPECT_EQ(f.c->ImageLocalisationTerminee(), chemin);
    EXPECT_GT(rougeAutour(f, QImage(chemin), autre), 20);
    attendMeme(vueDe(f), avant);
}

TEST(ImageLocalisation, AKeyThatFindsNothingWritesNothingAndChangesNothing) {
    Sortie f;
    QString id = Sortie::cle(f.tenues().at(2));
    f.c->ImageLocalisation(id);
    const QString chemin = f.c->ImageLocalisationTerminee();
    const QDateTime ecrite = QFileInfo(chemin).lastModified();
    const QByteArray contenu = [&] {
        QFile fichier(chemin);
        fichier.open(QIODevice::ReadOnly);
        return fichier.readAll();
    }();
    regardeTroisTombes(f);
    const Vue avant = vueDe(f);
    for (QString mauvais :
         {QStringLiteral("987654"), QStringLiteral("douze"), QString(), QStringLiteral("12 or 1=1"),
          QString(10000, u'9'), QStringLiteral("-1")}) {
        f.c->ImageLocalisation(mauvais);
        EXPECT_EQ(f.c->ImageLocalisationTerminee(), QStringLiteral("-1"));
        attendMeme(vueDe(f), avant);
    }
    QFile fichier(chemin);
    ASSERT_TRUE(fichier.open(QIODevice::ReadOnly));
    EXPECT_EQ(fichier.readAll(), contenu);
    EXPECT_EQ(QFileInfo(chemin).lastModified(), ecrite);
    EXPECT_TRUE(f.messages.empty());
}

TEST(ImageLocalisation, WithoutAPlanTheHostGetsAnErrorAndMinusOne) {
    Sortie f(false);
    QString id = QStringLiteral("12");
    EXPECT_THROW(f.c->ImageLocalisation(id), Erreur);
    EXPECT_EQ(f.c->ImageLocalisationTerminee(), QStringLiteral("-1"));
    QVariantList args{QStringLiteral("12")};
    EXPECT_THROW(f.c->Invoke(0x600300a4, args), Erreur);
}

TEST(ImageLocalisation, ThePngIsWrittenWhenTheHostAsksForIt) {
    Sortie f;
    f.c->setImageLocalisationPng(true);
    QString id = Sortie::cle(f.tenues().at(7));
    QVariantList args{id};
    f.c->Invoke(0x600300a4, args);
    const QString chemin = f.c->ImageLocalisationTerminee();
    EXPECT_TRUE(chemin.endsWith(QStringLiteral("/ImageL.png")));
    EXPECT_EQ(QImage(chemin).size(), f.vue().size());
    EXPECT_GT(rougeAutour(f, QImage(chemin), f.tenues().at(7)), 20);
}

TEST(CarteLocalisation, TheFrameFollowsTheMainViewAndIsCutToTheOverview) {
    Sortie f;
    f.w<QCheckBox>("CB_PlanSitue")->click();
    carto::MapView& apercu = *f.c->surface().MapLocalisation;
    carto::Layer& cadre = apercu.map().requireLayer(u"My_Temp_Layer");
    const carto::Point c = f.tombes().bounds().center();
    f.vue().setCentre(c);
    f.vue().setZoom(20);
    ASSERT_EQ(cadre.featureCount(), 1);
    const carto::Rect vue = f.vue().bounds(), trace = cadre.allFeatures().at(0).bounds();
    EXPECT_NEAR(trace.xmin, vue.xmin, 1e-9);
    EXPECT_NEAR(trace.ymax, vue.ymax, 1e-9);
    EXPECT_NEAR(trace.width(), vue.width(), 1e-9);

    // Zoomed far out, the frame runs along the overview's edges.
    f.vue().setZoom(100000);
    ASSERT_EQ(cadre.featureCount(), 1);
    EXPECT_TRUE(apercu.bounds().contains(cadre.allFeatures().at(0).bounds()));
    // Wholly elsewhere, no frame.
    f.vue().setZoom(10);
    f.vue().setCentre({c.x + 1e6, c.y});
    EXPECT_EQ(cadre.featureCount(), 0);
}

TEST(CarteLocalisation, AClickCentresTheMainViewThereAtTheSameZoom) {
    Sortie f;
    f.w<QCheckBox>("CB_PlanSitue")->click();
    carto::MapView& apercu = *f.c->surface().MapLocalisation;
    f.vue().setZoom(15);
    const QPoint ou(apercu.width() / 3, apercu.height() / 4);
    const carto::Point vise = apercu.toMap(ou);
    QTest::mouseClick(&apercu, Qt::LeftButton, Qt::NoModifier, ou);
    EXPECT_NEAR(f.vue().centre().x, vise.x, 1e-9);
    EXPECT_NEAR(f.vue().centre().y, vise.y, 1e-9);
    EXPECT_EQ(f.vue().zoom(), 15);
    // Nothing of the overview is picked by the click.
    for (const carto::Layer* l : apercu.map().layers())
        EXPECT_TRUE(l->selection().isEmpty()) << l->name().toStdString();
}

TEST(CarteLocalisation, ThePanelIsDraggedByItsTitle) {
    Sortie f;
    f.w<QCheckBox>("CB_PlanSitue")->click();
    QWidget* panneau = f.w<QFrame>("Panel_Localisation");
    QWidget* titre = f.w<QLabel>("Label8");
    const QPoint avant = panneau->pos();
    QTest::mousePress(titre, Qt::LeftButton, Qt::NoModifier, QPoint(30, 5));
    QMouseEvent bouge(QEvent::MouseMove, QPointF(90, 45), titre->mapToGlobal(QPointF(90, 45)),
                      Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(titre, &bouge);
    QTest::mouseRelease(titre, Qt::LeftButton, Qt::NoModifier, QPoint(90, 45));
    EXPECT_EQ(panneau->pos(), avant + QPoint(60, 40));
}
