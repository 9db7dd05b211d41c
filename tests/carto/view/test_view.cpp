// Drawing, navigation and export of the map view, checked on sampled pixels.
#include "base/erreur.h"
#include "carto/render/raster_image.h"
#include "recordset/field_spec.h"
#include "veldra-plan/plan_tool.h"
#include "view_fixture.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>

using namespace carto;

namespace {

const QColor kRed(255, 0, 0), kBlue(0, 0, 255), kWhite(255, 255, 255);

} // namespace

TEST(MapViewDrawing, FillsRegionsAndHighlightsTheSelection) {
    ViewFixture f;
    const Feature red = f.addSquare(2, 2, 8, 0x0000FF);   // 0xBBGGRR: red
    const Feature blue = f.addSquare(20, 2, 8, 0xFF0000); // blue
    f.view.map().selectionStyle.regionColor = 0x00FF00;
    f.view.map().selectionStyle.regionPattern = pattern::Solid;

    QImage image = f.shown();
    EXPECT_TRUE(near(colourAt(image, f.pixelOf({6, 6})), kRed));
    EXPECT_TRUE(near(colourAt(image, f.pixelOf({24, 6})), kBlue));
    EXPECT_TRUE(near(colourAt(image, f.pixelOf({35, 25})), kWhite));

    f.zones->selectAdd(blue.fid());
    image = f.shown();
    EXPECT_TRUE(near(colourAt(image, f.pixelOf({24, 6})), QColor(0, 255, 0)));
    EXPECT_TRUE(near(colourAt(image, f.pixelOf({6, 6})), kRed));

    // A hatch keeps its background colour between the hatch lines.
    Feature hatched = f.zones->feature(red.fid());
    Style s = hatched.style();
    s.regionPattern = pattern::Horizontal;
    s.regionBackColor = 0x00FFFF; // yellow
    hatched.setStyle(s);
    f.zones->updateFeature(hatched);
    image = f.shown();
    int yellow = 0;
    for (int y = 40; y < 60; ++y)
        yellow += near(colourAt(image, {50, 300 - y}), QColor(255, 255, 0)) ? 1 : 0;
    EXPECT_GT(yellow, 5);
}

TEST(MapViewDrawing, DrawsTextsAtMapScaleAndSkipsUnreadableOnes) {
    ViewFixture f;
    Style big;
    big.textSize = 500; // 5 map units: 50 pixels high
    f.zones->addFeature(Feature::textAt({20, 15}, QStringLiteral("AAAA"), big));
    auto darkPixels = [](const QImage& image, QRect area) {
        int n = 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                n += image.pixelColor(x, y).lightness() < 100 ? 1 : 0;
        return n;
    };
    const QRect around(120, 110, 160, 80);
    EXPECT_GT(darkPixels(f.shown(), around), 200);

    // Seen from far away the text is a few pixels high: it is not drawn at all.
    f.view.setZoom(4000);
    EXPECT_EQ(darkPixels(f.shown(), QRect(190, 140, 20, 20)), 0);
}

TEST(MapViewDrawing, ThemesColourFeaturesAndShowTheirLegend) {
    ViewFixture f;
    f.addSquare(2, 2, 8, 0xFFFFFF, QStringLiteral("Nord"));
    f.addSquare(20, 2, 8, 0xFFFFFF, QStringLiteral("Sud"));
    Dataset& ds = f.view.map().addDataset(*f.zones, QStringLiteral("Theme"));
    Theme& theme = ds.addTheme(ThemeKind::IndividualValues, u"Nom", QStringLiteral("Theme"));
    ASSERT_EQ(theme.categories().size(), 2u);
    theme.categories()[0].style.regionColor = 0x0000FF;
    theme.categories()[1].style.regionColor = 0xFF0000;
    theme.legend.title = QStringLiteral("Secteurs");
    f.view.refresh();

    const QImage image = f.shown();
    EXPECT_TRUE(near(colourAt(image, f.pixelOf({6, 6})), kRed));
    EXPECT_TRUE(near(colourAt(image, f.pixelOf({24, 6})), kBlue));
    // The legend sits in the top right corner, its swatches in the categories' colours.
    int red = 0;
    for (int y = 0; y < 90; ++y)
        for (int x = 300; x < 400; ++x)
            red += near(image.pixelColor(x, y), kRed, 10) ? 1 : 0;
    EXPECT_GT(red, 50);

    theme.legend.visible = false;
    f.view.update();
    const QImage hidden = f.shown();
    EXPECT_TRUE(near(colourAt(hidden, {390, 10}), kWhite));
}

TEST(MapViewDrawing, ALegendTallerThanThePictureEndsWithWhatItLeavesOut) {
    ViewFixture f;
    for (int i = 0; i < 300; ++i)
        f.addSquare(i % 40, i / 40, 1, 0xFFFFFF, QStringLiteral("Zone %1").arg(i));
    Dataset& ds = f.view.map().addDataset(*f.zones, QStringLiteral("Theme"));
    Theme& theme = ds.addTheme(ThemeKind::IndividualValues, u"Nom", QStringLiteral("Theme"));
    ASSERT_EQ(theme.categories().size(), 300u);
    for (ThemeCategory& c : theme.categories())
        c.style.regionColor = 0x0000FF;
    f.view.refresh();
    const QImage image = f.shown();
    // The box stops above the bottom edge, where the plots it would hide stay in sight.
    EXPECT_TRUE(near(colourAt(image, {385, 297}), kRed));
    EXPECT_FALSE(near(colourAt(image, {385, 150}), kRed)); // the box, over empty map
}

TEST(MapViewDrawing, LabelsShowTheDatasetFieldAndFollowTheirOffset) {
    ViewFixture f;
    const Feature big = f.addSquare(5, 5, 20, 0xFFFFFF, QStringLiteral("MMMM"));
    Dataset& ds = f.view.map().addDataset(*f.zones);
    f.zones->setLabelDataset(&ds);
    f.zones->setLabelField(QStringLiteral("Nom"));
    f.zones->setLabelsVisible(true);
    f.zones->setAutoLabel(true);
    f.view.refresh();
    auto inkNear = [&](Point p) {
        const QImage image = f.shown();
        const QPoint c = f.pixelOf(p);
        int n = 0;
        for (int y = c.y() - 6; y <= c.y() + 6; ++y)
            for (int x = c.x() - 20; x <= c.x() + 20; ++x)
                n += image.pixelColor(x, y).lightness() < 100 ? 1 : 0;
        return n;
    };
    EXPECT_GT(inkNear({15, 15}), 10);
    f.zones->setLabelOffset(big.fid(), {0, 6});
    f.view.refresh();
    EXPECT_EQ(inkNear({15, 15}), 0);
    EXPECT_GT(inkNear({15, 21}), 10);
}

TEST(MapViewDrawing, AnEditRedrawsItsAreaWithoutAFullRender) {
    ViewFixture f;
    const Feature a = f.addSquare(2, 2, 8, 0x0000FF);
    f.shown();
    Feature moved = f.zones->feature(a.fid());
    moved.offset(20, 0);
    f.zones->updateFeature(moved);
    QApplication::processEvents(); // the coalesced partial redraw
    EXPECT_FALSE(f.view.isRendering());
    const QImage image = f.view.grab().toImage();
    EXPECT_TRUE(near(colourAt(image, f.pixelOf({6, 6})), kWhite));
    EXPECT_TRUE(near(colourAt(image, f.pixelOf({26, 6})), kRed));
}

TEST(MapViewNavigation, ConvertsFitsAndZoomsAroundThePointer) {
    ViewFixture f;
    EXPECT_DOUBLE_EQ(f.view.zoom(), 40);
    EXPECT_NEAR(f.view.toScreen({10, 10}).x(), 100, 1e-9);
    EXPECT_NEAR(f.view.toScreen({10, 10}).y(), 200, 1e-9);
    const Point back = f.view.toMap({123, 45});
    EXPECT_NEAR(back.x, 12.3, 1e-9);
    EXPECT_NEAR(back.y, 25.5, 1e-9);
    EXPECT_NEAR(f.view.paperWidth(), 400 / double(f.view.logicalDpiX()) * 2.54, 1e-9);

    // A tall rectangle is fitted by its height.
    f.view.setBounds({0, 0, 10, 60});
    EXPECT_NEAR(f.view.bounds().height(), 60, 1e-9);
    EXPECT_NEAR(f.view.centre().x, 5, 1e-9);
    EXPECT_THROW(f.view.setZoom(0), veldra::Erreur);
    EXPECT_THROW(f.view.setZoom(std::nan("")), veldra::Erreur);
    const double zoom = f.view.zoom();
    f.view.setBounds({}); // nothing to fit: the view stays
    EXPECT_DOUBLE_EQ(f.view.zoom(), zoom);

    QSignalSpy changed(&f.view, &MapView::viewChanged);
    const QPointF pointer(300, 100);
    const Point under = f.view.toMap(pointer);
    QWheelEvent wheel(pointer, f.view.mapToGlobal(pointer), {}, {0, 120}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&f.view, &wheel);
    EXPECT_LT(f.view.zoom(), zoom);
    EXPECT_NEAR(f.view.toMap(pointer).x, under.x, 1e-9);
    EXPECT_NEAR(f.view.toMap(pointer).y, under.y, 1e-9);
    EXPECT_EQ(changed.count(), 1);
}

TEST(MapViewNavigation, APanShowsTheCachedPictureMovedBeforeTheRenderEnds) {
    ViewFixture f;
    f.addSquare(2, 2, 8, 0x0000FF);
    f.shown();
    f.view.setCentre({f.view.centre().x - 10, f.view.centre().y}); // 100 pixels right
    const QImage moved = f.view.grab().toImage();                  // before any render
    EXPECT_TRUE(f.view.isRendering());
    EXPECT_TRUE(near(colourAt(moved, f.pixelOf({6, 6})), kRed));
}

TEST(MapViewExport, WritesAJpegOfTheViewOrOfAPaperSize) {
    ViewFixture f;
    const Feature red = f.addSquare(2, 2, 8, 0x0000FF);
    f.view.map().selectionStyle.regionColor = 0x00FF00;
    f.view.map().selectionStyle.regionPattern = pattern::Solid;
    f.zones->selectAdd(red.fid());
    QTemporaryDir dir;

    const QString atViewSize = dir.filePath(QStringLiteral("vue.jpg"));
    f.view.exportImage(atViewSize, 1);
    QImage image(atViewSize);
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), QSize(400, 300));
    // Without the switch the selection is not in the picture.
    EXPECT_TRUE(near(colourAt(image, f.pixelOf({6, 6})), kRed));

    f.view.exportSelection = true;
    const double cm = 2.54 / f.view.logicalDpiX();
    const QString large = dir.filePath(QStringLiteral("grand.jpg"));
    f.view.exportImage(large, 1, 800 * cm, 600 * cm);
    image = QImage(large);
    ASSERT_EQ(image.size(), QSize(800, 600));
    // Twice the pixels over the same map: the square is where the view has it, scaled.
    EXPECT_TRUE(near(colourAt(image, f.pixelOf({6, 6}) * 2), QColor(0, 255, 0)));
    EXPECT_TRUE(near(colourAt(image, {700, 100}), kWhite));

    EXPECT_THROW(f.view.exportImage(dir.filePath(QStringLiteral("x.bmp")), 2), veldra::Erreur);
    EXPECT_THROW(f.view.exportImage(QStringLiteral("/nonexistent/dir/x.jpg"), 1), veldra::Erreur);
}

TEST(MapViewRaster, TheScannedPlanIsReadWithItsPlace) {
    QTemporaryDir dir;
    veldra::plantool::SampleOptions options;
    options.plots = 40;
    options.raster = true;
    const QString plan = veldra::plantool::generateSamplePlan(dir.path(), options);
    MapView view;
    view.resize(300, 200);
    view.map().loadMapSet(plan);
    const Layer* raster = nullptr;
    for (const Layer* l : view.map().layers())
        if (l->isRaster())
            raster = l;
    ASSERT_NE(raster, nullptr);
    const RasterImage image = readRaster(raster->rasterSource());
    ASSERT_FALSE(image.isNull());
    const Rect enclosure = view.map().requireLayer(u"Enceinte").bounds();
    EXPECT_TRUE(image.extent.contains(enclosure.center()));
    EXPECT_TRUE(readRaster(dir.filePath(QStringLiteral("absent.tif"))).isNull());
}

TEST(MapViewLifetime, DestroyingTheViewDuringARenderIsSafe) {
    QTemporaryDir dir;
    veldra::plantool::SampleOptions options;
    options.plots = 3000;
    options.raster = false;
    const QString plan = veldra::plantool::generateSamplePlan(dir.path(), options);
    for (int i = 0; i < 3; ++i) {
        auto view = std::make_unique<MapView>();
        view->resize(600, 400);
        view->map().loadMapSet(plan);
        view->setBounds(view->map().requireLayer(u"Enceinte").bounds());
        view->show();
        view->refresh();
        QApplication::processEvents(); // the render starts, or is about to
        QPointer<MapView> watched(view.get());
        ASSERT_TRUE(view->isRendering()); // the view goes in the middle of its render
        view.reset();
        EXPECT_TRUE(watched.isNull());
    }
    // What the worker would have posted to the dead views is dropped with them.
    QApplication::processEvents();
    QApplication::sendPostedEvents();
}
