// The tools of the map view driven with mouse and key events: what they select, move,
// draw and report. The view shows (0, 0) - (40, 30) at ten pixels per map unit.
#include "carto/view/tools/tool.h"
#include "carto/view/tools/tool_factory.h"
#include "refus_ecriture.h"
#include "veldra-plan/plan_tool.h"
#include "view_fixture.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <cmath>

using namespace carto;

namespace {

// Mouse events as Qt delivers them to the widget, sent directly so that moves with a
// button held behave the same offscreen.
class Mouse {
public:
    explicit Mouse(MapView& view) : view_(view) {}

    void press(Point p, Qt::KeyboardModifiers m = {}) {
        held_ = Qt::LeftButton;
        send(QEvent::MouseButtonPress, p, Qt::LeftButton, m);
    }
    void move(Point p, Qt::KeyboardModifiers m = {}) {
        send(QEvent::MouseMove, p, Qt::NoButton, m);
    }
    void release(Point p, Qt::KeyboardModifiers m = {}) {
        held_ = Qt::NoButton;
        send(QEvent::MouseButtonRelease, p, Qt::LeftButton, m);
    }
    void click(Point p, Qt::KeyboardModifiers m = {}) {
        press(p, m);
        release(p, m);
    }
    // A double-click reaches a widget as a click, a double-click event and a release.
    void doubleClick(Point p, Qt::KeyboardModifiers m = {}) {
        click(p, m);
        held_ = Qt::LeftButton;
        send(QEvent::MouseButtonDblClick, p, Qt::LeftButton, m);
        release(p, m);
    }
    void drag(Point from, Point to, Qt::KeyboardModifiers m = {}) {
        press(from, m);
        for (int i = 1; i <= 4; ++i)
            move({from.x + (to.x - from.x) * i / 4, from.y + (to.y - from.y) * i / 4}, m);
        release(to, m);
    }
    // A move of a few pixels on screen.
    void nudge(Point from, QPointF pixels) {
        press(from);
        const QPointF to = view_.toScreen(from) + pixels;
        sendAt(QEvent::MouseMove, to, Qt::NoButton, {});
        held_ = Qt::NoButton;
        sendAt(QEvent::MouseButtonRelease, to, Qt::LeftButton, {});
    }

private:
    void send(QEvent::Type type, Point p, Qt::MouseButton button, Qt::KeyboardModifiers m) {
        sendAt(type, view_.toScreen(p), button, m);
    }
    void sendAt(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::KeyboardModifiers m) {
        QMouseEvent e(type, at, view_.mapToGlobal(at), button, held_, m);
        QApplication::sendEvent(&view_, &e);
    }

    MapView& view_;
    Qt::MouseButtons held_;
};

// A stored plan shown at the fixture's scale, its plots editable.
Layer& showStoredPlots(MapView& view, const QString& path) {
    view.resize(400, 300);
    view.map().loadMapSet(path);
    view.setBounds({0, 0, 40, 30});
    view.show();
    Layer& plots = view.map().requireLayer(u"Tombes");
    plots.setEditable(true);
    return plots;
}

void pressKey(MapView& view, int key) {
    QKeyEvent e(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(&view, &e);
}

Layer& memoryLayer(Map& map, const QString& name) {
    LayerInfo info;
    info.addParameter("Name", name);
    info.addParameter("Fields", FieldList{{"Nom", FieldType::Text, 20}});
    return map.addLayer(info);
}

Part square(double x, double y, double side) {
    return {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}, {x, y}};
}

// Coordinates rounded to a millionth, so that values that went through pixels compare.
Point rounded(Point p) {
    return {std::round(p.x * 1e6) / 1e6, std::round(p.y * 1e6) / 1e6};
}
Part rounded(Part part) {
    for (Point& p : part)
        p = rounded(p);
    return part;
}
Part ringOf(const Layer& layer, qint64 fid) {
    return rounded(layer.feature(fid).parts().at(0));
}

std::vector<qint64> selected(const Layer& layer) {
    return layer.selection().fids();
}

void expectBounds(const Rect& actual, const Rect& expected) {
    EXPECT_NEAR(actual.xmin, expected.xmin, 1e-9);
    EXPECT_NEAR(actual.ymin, expected.ymin, 1e-9);
    EXPECT_NEAR(actual.xmax, expected.xmax, 1e-9);
    EXPECT_NEAR(actual.ymax, expected.ymax, 1e-9);
}

struct ToolFixture : ViewFixture {
    Mouse mouse{view};
    int edits = 0;

    ToolFixture() {
        QObject::connect(&view, &MapView::editStatus, [this](int status) {
            if (status == editstatus::Completed)
                ++edits;
        });
    }
    Rect boundsOf(const Feature& f) const { return zones->feature(f.fid()).bounds(); }
};

} // namespace

TEST(ToolFactory, MakesEveryStandardToolAndMapsCursorCodes) {
    ViewFixture f;
    for (const int n : {1001, 1003, 1004, 1007, 1008, 1009, 1010, 1011, 1012, 1014})
        EXPECT_NE(makeStandardTool(f.view, n), nullptr) << n;
    EXPECT_EQ(makeStandardTool(f.view, 1002), nullptr);
    EXPECT_EQ(makeStandardTool(f.view, 105), nullptr);
    EXPECT_EQ(toolCursor(2).shape(), Qt::CrossCursor);
    EXPECT_EQ(toolCursor(22).shape(), Qt::PointingHandCursor);
    EXPECT_EQ(toolCursor(0).shape(), Qt::ArrowCursor);
    EXPECT_EQ(toolCursor(7).shape(), Qt::ArrowCursor);
    f.view.createCustomTool(108, CustomToolType::Point, 22);
    f.view.setCurrentTool(108);
    EXPECT_EQ(f.view.cursor().shape(), Qt::PointingHandCursor);
}

TEST(NavigationTools, PanFollowsTheMouseAndZoomsCentreOrFrame) {
    ToolFixture f;
    f.view.setCurrentTool(tool::Pan);
    QSignalSpy changed(&f.view, &MapView::viewChanged);
    f.mouse.press({20, 15});
    f.mouse.move({25, 10}); // 50 pixels right and down, in map units before the move
    // The view follows during the drag, not only on release.
    EXPECT_NEAR(f.view.centre().x, 15, 1e-9);
    EXPECT_NEAR(f.view.centre().y, 20, 1e-9);
    // Released at the pixel (300, 150), 100 pixels right of the press.
    f.mouse.release({25, 20});
    EXPECT_NEAR(f.view.centre().x, 10, 1e-9);
    EXPECT_NEAR(f.view.centre().y, 15, 1e-9);
    EXPECT_GE(changed.count(), 2);

    f.view.setBounds({0, 0, 40, 30});
    f.view.setCurrentTool(tool::ZoomIn);
    f.mouse.click({10, 20});
    EXPECT_NEAR(f.view.zoom(), 20, 1e-9);
    EXPECT_NEAR(f.view.centre().x, 10, 1e-9);
    EXPECT_NEAR(f.view.centre().y, 20, 1e-9);

    // A dragged frame becomes the view.
    f.view.setBounds({0, 0, 40, 30});
    f.mouse.drag({4, 26}, {12, 20});
    expectBounds(f.view.bounds(), {4, 20, 12, 26});

    f.view.setCurrentTool(tool::ZoomOut);
    f.mouse.click({6, 21});
    EXPECT_NEAR(f.view.zoom(), 16, 1e-9);
    EXPECT_NEAR(f.view.centre().x, 6, 1e-9);
    EXPECT_NEAR(f.view.centre().y, 21, 1e-9);
}

TEST(SelectTool, AClickSelectsTheTopmostFeatureOfTheTopmostSelectableLayer) {
    ToolFixture f;
    const Feature low = f.addSquare(2, 2, 10, 0xFFFFFF);
    const Feature high = f.addSquare(6, 6, 10, 0xFFFFFF); // drawn over the first
    Layer& top = memoryLayer(f.view.map(), QStringLiteral("Dessus"));
    const qint64 cover = top.addFeature(Feature::region({square(8, 8, 2)})).fid();
    int changes = 0;
    QObject::connect(&f.view, &MapView::selectionChanged, [&] { ++changes; });

    f.mouse.click({9, 9}); // under all three
    EXPECT_EQ(selected(top), std::vector<qint64>{cover});
    EXPECT_TRUE(f.zones->selection().isEmpty());
    EXPECT_GT(changes, 0);

    top.setSelectable(false);
    f.mouse.click({9, 9});
    EXPECT_EQ(selected(*f.zones), std::vector<qint64>{high.fid()});
    EXPECT_TRUE(top.selection().isEmpty());

    top.setSelectable(true);
    top.setVisible(false);
    f.mouse.click({3, 3}); // only under the lower square
    EXPECT_EQ(selected(*f.zones), std::vector<qint64>{low.fid()});

    // Shift adds, then toggles off; a click on nothing clears, but not with Shift.
    f.mouse.click({14, 14}, Qt::ShiftModifier);
    EXPECT_EQ(selected(*f.zones), (std::vector<qint64>{low.fid(), high.fid()}));
    f.mouse.click({3, 3}, Qt::ShiftModifier);
    EXPECT_EQ(selected(*f.zones), std::vector<qint64>{high.fid()});
    f.mouse.click({30, 25}, Qt::ShiftModifier);
    EXPECT_EQ(selected(*f.zones), std::vector<qint64>{high.fid()});
    changes = 0;
    f.mouse.click({30, 25});
    EXPECT_TRUE(f.zones->selection().isEmpty());
    EXPECT_EQ(changes, 1);
}

TEST(SelectTool, LinesAndSymbolsAreHitNearThemNotAnywhereInTheirBox) {
    ToolFixture f;
    const Feature diagonal = f.zones->addFeature(Feature::line({{{0, 0}, {20, 20}}}));
    const Feature mark = f.zones->addFeature(Feature::symbol({30, 5}));
    f.mouse.click({15, 5}); // inside the line's box, far from the line
    EXPECT_TRUE(f.zones->selection().isEmpty());
    f.mouse.click({10.3, 10}); // three pixels off the line
    EXPECT_EQ(selected(*f.zones), std::vector<qint64>{diagonal.fid()});
    f.mouse.click({30.4, 5});
    EXPECT_EQ(selected(*f.zones), std::vector<qint64>{mark.fid()});
}

TEST(SelectTool, DraggingMovesTheSelectedFeaturesOfAnEditableLayer) {
    ToolFixture f;
    const Feature a = f.addSquare(2, 2, 4, 0xFFFFFF);
    const Feature b = f.addSquare(10, 2, 4, 0xFFFFFF);
    const Feature c = f.addSquare(20, 2, 4, 0xFFFFFF);
    f.zones->selectOnly(Features(f.zones, {a.fid(), b.fid()}));

    f.mouse.drag({3, 3}, {8, 5});
    expectBounds(f.boundsOf(a), {7, 4, 11, 8});
    expectBounds(f.boundsOf(b), {15, 4, 19, 8});
    expectBounds(f.boundsOf(c), {20, 2, 24, 6});
    EXPECT_EQ(f.edits, 1);
    EXPECT_EQ(selected(*f.zones), (std::vector<qint64>{a.fid(), b.fid()}));

    // Two pixels is a click: it selects, it moves nothing.
    f.mouse.nudge({8, 5}, {2, 0});
    expectBounds(f.boundsOf(a), {7, 4, 11, 8});
    EXPECT_EQ(selected(*f.zones), std::vector<qint64>{a.fid()});
    EXPECT_EQ(f.edits, 1);

    // Pressing on an unselected feature selects it and drags it alone.
    f.mouse.drag({21, 3}, {21, 13});
    expectBounds(f.boundsOf(c), {20, 12, 24, 16});
    EXPECT_EQ(selected(*f.zones), std::vector<qint64>{c.fid()});

    // A layer that is not editable is selected but never moved; Escape drops a drag.
    f.zones->setEditable(false);
    f.mouse.drag({21, 13}, {30, 13});
    expectBounds(f.boundsOf(c), {20, 12, 24, 16});
    f.zones->setEditable(true);
    f.mouse.press({21, 13});
    f.mouse.move({30, 13});
    pressKey(f.view, Qt::Key_Escape);
    f.mouse.release({30, 13});
    expectBounds(f.boundsOf(c), {20, 12, 24, 16});
    EXPECT_EQ(f.edits, 2);
}

TEST(SelectTool, AMoveInAStoredPlanIsOneTransactionAndIsWritten) {
    QTemporaryDir dir;
    const QString path = veldra::plantool::createEmptyPlan(dir.path(), QStringLiteral("Essai"));
    MapView view;
    Layer& plots = showStoredPlots(view, path);
    const qint64 a = plots.addFeature(Feature::region({square(2, 2, 4)})).fid();
    const qint64 b = plots.addFeature(Feature::region({square(10, 2, 4)})).fid();
    plots.selectOnly(Features(&plots, {a, b}));
    std::vector<Change> changes;
    QObject::connect(&view.map(), &Map::changed, [&](const Change& c) { changes.push_back(c); });

    Mouse(view).drag({3, 3}, {3, 13});
    // One bracket wrote both: one change, reported once it was over.
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].fids, (std::vector<qint64>{a, b}));
    EXPECT_TRUE(changes[0].has(Change::Updated));
    EXPECT_FALSE(plots.inUpdateAccess());
    EXPECT_FALSE(view.map().inUpdateBracket());

    Map reread;
    reread.loadMapSet(path);
    const Layer& stored = reread.requireLayer(u"Tombes");
    expectBounds(stored.feature(a).bounds(), {2, 12, 6, 16});
    expectBounds(stored.feature(b).bounds(), {10, 12, 14, 16});
}

// A drag of several features that storage refuses halfway: nothing moves, anywhere, and
// the failure is reported once through the view.
TEST(SelectTool, ADragThatStorageRefusesHalfwayMovesNothing) {
    QTemporaryDir dir;
    const QString path = veldra::plantool::createEmptyPlan(dir.path(), QStringLiteral("Essai"));
    qint64 a = -1, b = -1;
    {
        Map map;
        map.loadMapSet(path);
        Layer& plots = map.requireLayer(u"Tombes");
        a = plots.addFeature(Feature::region({square(2, 2, 4)})).fid();
        b = plots.addFeature(Feature::region({square(10, 2, 4)})).fid();
    }
    refuseWrites(path, "Tombes", "UPDATE", b); // another program's rule
    MapView view;
    Layer& plots = showStoredPlots(view, path);
    plots.selectOnly(Features(&plots, {a, b}));
    std::vector<qint32> failures;
    QObject::connect(&view, &MapView::failed,
                     [&](const veldra::Erreur& e) { failures.push_back(e.numero()); });

    Mouse(view).drag({3, 3}, {3, 13});
    EXPECT_EQ(failures, std::vector<qint32>{veldra::err::EcritureImpossible});
    expectBounds(plots.feature(a).bounds(), {2, 2, 6, 6});
    expectBounds(plots.feature(b).bounds(), {10, 2, 14, 6});
    Map reread;
    reread.loadMapSet(path);
    expectBounds(reread.requireLayer(u"Tombes").feature(a).bounds(), {2, 2, 6, 6});
}

TEST(SelectTool, CornerHandlesScaleTheOneSelectedFeature) {
    ToolFixture f;
    const Feature a = f.addSquare(2, 2, 8, 0xFFFFFF);
    const Feature b = f.addSquare(20, 2, 8, 0xFFFFFF);
    f.zones->selectOnly(Features(f.zones, {a.fid()}));

    f.mouse.drag({10.3, 9.8}, {14.3, 11.8}); // the top right corner, grabbed 3 pixels off
    expectBounds(f.boundsOf(a), {2, 2, 14, 12});
    EXPECT_EQ(f.zones->feature(a.fid()).parts()[0].size(), 5u);
    f.mouse.drag({2, 2}, {5, 4}); // the bottom left corner
    expectBounds(f.boundsOf(a), {5, 4, 14, 12});
    EXPECT_EQ(f.edits, 2);

    // With two features selected there are no handles: a corner drag moves both.
    f.zones->selectOnly(Features(f.zones, {a.fid(), b.fid()}));
    f.mouse.drag({14, 12}, {15, 12});
    expectBounds(f.boundsOf(a), {6, 4, 15, 12});
    // Editing vertices has no handles either.
    f.zones->selectOnly(Features(f.zones, {a.fid()}));
    f.view.setEditingMode(editmode::Vertices);
    f.mouse.drag({10, 8}, {11, 8}); // inside: the whole feature moves
    expectBounds(f.boundsOf(a), {7, 4, 16, 12});
}

TEST(SelectTool, VerticesAreDraggedOneByOneAndRingsStayClosed) {
    ToolFixture f;
    const Feature a = f.addSquare(2, 2, 8, 0xFFFFFF);
    f.zones->selectOnly(Features(f.zones, {a.fid()}));
    f.view.setEditingMode(editmode::Vertices);

    f.mouse.drag({10, 10}, {12, 13});
    EXPECT_EQ(ringOf(*f.zones, a.fid()), (Part{{2, 2}, {10, 2}, {12, 13}, {2, 10}, {2, 2}}));
    // The first vertex, grabbed three pixels off, is also the last.
    f.mouse.drag({2.2, 2.2}, {1, 0});
    const Part ring = ringOf(*f.zones, a.fid());
    EXPECT_EQ(ring, (Part{{0.8, -0.2}, {10, 2}, {12, 13}, {2, 10}, {0.8, -0.2}}));
    EXPECT_EQ(f.zones->feature(a.fid()).parts()[0].back(),
              f.zones->feature(a.fid()).parts()[0].front());
    EXPECT_EQ(f.edits, 2);

    // A still click on a vertex moves nothing.
    f.mouse.nudge({10, 2}, {1, 1});
    EXPECT_EQ(ringOf(*f.zones, a.fid()), ring);
    // Without a vertex within five pixels, outside the feature, nothing changes.
    f.mouse.drag({10.7, 1.4}, {15, 0});
    EXPECT_EQ(ringOf(*f.zones, a.fid()), ring);
    EXPECT_EQ(f.edits, 2);
}

TEST(SelectTool, AClickOnAnEdgeAddsAVertexThatTheSameDragMoves) {
    ToolFixture f;
    const Feature a = f.addSquare(2, 2, 8, 0xFFFFFF);
    const Feature road = f.zones->addFeature(Feature::line({{{20, 5}, {30, 5}}}));
    f.view.setEditingMode(editmode::AddVertices);
    f.zones->selectOnly(Features(f.zones, {a.fid()}));

    f.mouse.click({6, 2.3}); // three pixels above the bottom edge
    EXPECT_EQ(ringOf(*f.zones, a.fid()),
              (Part{{2, 2}, {6, 2}, {10, 2}, {10, 10}, {2, 10}, {2, 2}}));
    EXPECT_EQ(f.edits, 1);

    f.mouse.drag({2, 6}, {0, 6}); // the left edge, which closes the ring
    EXPECT_EQ(ringOf(*f.zones, a.fid()),
              (Part{{2, 2}, {6, 2}, {10, 2}, {10, 10}, {2, 10}, {0, 6}, {2, 2}}));
    EXPECT_EQ(f.edits, 3);

    f.mouse.click({6, 4}); // inside, away from every edge: no vertex
    EXPECT_EQ(f.zones->feature(a.fid()).parts()[0].size(), 7u);

    f.zones->selectOnly(Features(f.zones, {road.fid()}));
    f.mouse.drag({25, 5}, {25, 8});
    EXPECT_EQ(ringOf(*f.zones, road.fid()), (Part{{20, 5}, {25, 8}, {30, 5}}));
}

TEST(AreaSelectTools, SelectByCentreInTheTopmostLayerWithHits) {
    ToolFixture f;
    std::vector<qint64> grid; // 2 x 2 squares centred on (5, 5), (15, 5), (5, 15), (15, 15)
    for (const double y : {4.0, 14.0})
        for (const double x : {4.0, 14.0})
            grid.push_back(f.addSquare(x, y, 2, 0xFFFFFF).fid());
    Layer& top = memoryLayer(f.view.map(), QStringLiteral("Dessus"));
    const qint64 far = top.addFeature(Feature::region({square(30, 20, 2)})).fid();

    f.view.setCurrentTool(tool::RectangleSelect);
    f.mouse.drag({3, 3}, {16, 8}); // both lower centres, the upper ones left out
    EXPECT_EQ(selected(*f.zones), (std::vector<qint64>{grid[0], grid[1]}));
    f.mouse.drag({4.5, 10}, {16, 16}, Qt::ShiftModifier); // the upper centres, added
    EXPECT_EQ(selected(*f.zones), (std::vector<qint64>{grid[0], grid[1], grid[2], grid[3]}));

    f.view.setCurrentTool(tool::RadiusSelect);
    f.mouse.drag({15, 15}, {15, 20}); // the upper right centre; (30, 20) stays out
    EXPECT_EQ(selected(*f.zones), std::vector<qint64>{grid[3]});
    f.mouse.drag({31, 21}, {31, 25}); // the top layer has a hit: it alone is selected
    EXPECT_EQ(selected(top), std::vector<qint64>{far});
    EXPECT_TRUE(f.zones->selection().isEmpty());
    f.mouse.drag({36, 2}, {38, 2}); // nothing within
    EXPECT_TRUE(top.selection().isEmpty());

    f.view.setCurrentTool(tool::PolygonSelect);
    f.mouse.click({2, 2});
    f.mouse.click({18, 2});
    pressKey(f.view, Qt::Key_Escape); // dropped: a new polygon starts from scratch
    f.mouse.click({2, 2});
    f.mouse.click({19, 2});
    f.mouse.click({2, 19});
    f.mouse.doubleClick({2, 19}); // a repeated last point adds nothing
    EXPECT_EQ(selected(*f.zones), (std::vector<qint64>{grid[0], grid[1], grid[2]}));
}

TEST(LabelTool, DragsALabelAndKeepsItsOffsetFromTheCentre) {
    ToolFixture f;
    const Feature a = f.addSquare(10, 10, 10, 0xFFFFFF, QStringLiteral("A1"));
    const Feature b = f.addSquare(30, 2, 4, 0xFFFFFF, QStringLiteral("B1"));
    f.view.setCurrentTool(tool::Label);
    f.mouse.drag({12, 12}, {14, 18}); // no labels shown: nothing to drag
    EXPECT_TRUE(f.zones->labels().offsets.empty());

    Dataset& ds = f.view.map().addDataset(*f.zones);
    f.zones->setLabelDataset(&ds);
    f.zones->setLabelField(QStringLiteral("Nom"));
    f.zones->setLabelsVisible(true);
    f.mouse.drag({12, 12}, {14, 18});
    ASSERT_EQ(f.zones->labels().offsets.count(a.fid()), 1u);
    EXPECT_NEAR(f.zones->labels().offsets.at(a.fid()).x, 2, 1e-9);
    EXPECT_NEAR(f.zones->labels().offsets.at(a.fid()).y, 6, 1e-9);
    // The label now sits at (17, 21), outside its square: it is taken there.
    f.mouse.drag({17.3, 21}, {15, 15});
    EXPECT_NEAR(f.zones->labels().offsets.at(a.fid()).x, -0.3, 1e-9);
    EXPECT_NEAR(f.zones->labels().offsets.at(a.fid()).y, 0, 1e-9);
    f.mouse.nudge({32, 4}, {2, 0}); // a still click moves no label
    EXPECT_EQ(f.zones->labels().offsets.count(b.fid()), 0u);
    expectBounds(f.boundsOf(a), {10, 10, 20, 20});
}

TEST(DrawTools, APolygonIsBuiltInTheStyleOfItsFinishAndAdded) {
    ToolFixture f;
    Layer& target = memoryLayer(f.view.map(), QStringLiteral("Cible"));
    f.view.setInsertionLayer(&target);
    f.view.setCurrentTool(tool::DrawPolygon);
    std::vector<std::pair<int, size_t>> phases; // phase, points of the feature then
    bool enable = true;
    QObject::connect(&f.view, &MapView::featureDrawing,
                     [&](int tool, int flags, Feature& feature, bool, bool, bool& enableDefault) {
                         EXPECT_EQ(tool, tool::DrawPolygon);
                         phases.emplace_back(flags, feature.parts().at(0).size());
                         if (flags == phase::Started)
                             f.view.map().defaultStyle.regionColor = 0xC0C0FF;
                         if (flags == phase::Finished)
                             enableDefault = enable;
                     });

    f.mouse.click({2, 2});
    EXPECT_EQ(phases, (std::vector<std::pair<int, size_t>>{{phase::Started, 1}}));
    f.mouse.click({12, 2});
    f.mouse.click({12, 12});
    f.mouse.doubleClick({2, 12});
    ASSERT_EQ(target.featureCount(), 1);
    const Feature drawn = target.allFeatures().at(0);
    EXPECT_EQ(drawn.kind(), FeatureKind::Region);
    EXPECT_EQ(rounded(drawn.parts()[0]), (Part{{2, 2}, {12, 2}, {12, 12}, {2, 12}, {2, 2}}));
    EXPECT_EQ(drawn.style().regionColor, 0xC0C0FF);
    EXPECT_EQ(phases.back(), (std::pair<int, size_t>{phase::Finished, 5}));
    EXPECT_EQ(f.edits, 1);

    // A handler may refuse the feature.
    enable = false;
    f.mouse.click({20, 2});
    f.mouse.click({30, 2});
    f.mouse.doubleClick({30, 12});
    EXPECT_EQ(target.featureCount(), 1);

    // Too few distinct points, or Escape, adds nothing and says so.
    enable = true;
    phases.clear();
    f.mouse.click({20, 2});
    f.mouse.doubleClick({30, 2});
    f.mouse.click({20, 20});
    f.mouse.click({25, 20});
    pressKey(f.view, Qt::Key_Escape);
    EXPECT_EQ(target.featureCount(), 1);
    EXPECT_EQ(phases, (std::vector<std::pair<int, size_t>>{{phase::Started, 1},
                                                           {phase::Cancelled, 2},
                                                           {phase::Started, 1},
                                                           {phase::Cancelled, 2}}));

    // Changing tools drops a drawing in progress.
    f.mouse.click({20, 2});
    f.mouse.click({30, 2});
    f.view.setCurrentTool(tool::Pan);
    f.view.setCurrentTool(tool::DrawPolygon);
    f.mouse.click({20, 20});
    f.mouse.doubleClick({25, 25});
    EXPECT_EQ(target.featureCount(), 1);
    EXPECT_EQ(f.edits, 1);
}

TEST(DrawTools, ALineNeedsTwoPointsAndAnInsertionLayer) {
    ToolFixture f;
    f.view.setCurrentTool(tool::DrawLine);
    int finished = 0;
    QObject::connect(&f.view, &MapView::featureDrawing,
                     [&](int tool, int flags, Feature& feature, bool, bool, bool&) {
                         EXPECT_EQ(tool, tool::DrawLine);
                         if (flags == phase::Finished) {
                             ++finished;
                             EXPECT_EQ(feature.kind(), FeatureKind::Line);
                         }
                     });
    f.mouse.click({2, 2});
    f.mouse.doubleClick({12, 2}); // no insertion layer: reported, never added
    EXPECT_EQ(finished, 1);
    EXPECT_EQ(f.zones->featureCount(), 0);
    EXPECT_EQ(f.edits, 0);

    f.view.setInsertionLayer(f.zones);
    f.mouse.click({2, 2});
    f.mouse.doubleClick({12, 5});
    ASSERT_EQ(f.zones->featureCount(), 1);
    EXPECT_EQ(ringOf(*f.zones, f.zones->allFeatures().at(0).fid()), (Part{{2, 2}, {12, 5}}));
    f.mouse.doubleClick({20, 20}); // a single point is no line
    EXPECT_EQ(f.zones->featureCount(), 1);
    EXPECT_EQ(finished, 2);
}

TEST(CustomTools, ReportPointsCirclesAndRectanglesInMapUnits) {
    ToolFixture f;
    struct Use {
        int tool;
        double x1, y1, x2, y2, distance;
        bool shift, control;
    };
    std::vector<Use> uses;
    QObject::connect(&f.view, &MapView::toolUsed,
                     [&](int tool, double x1, double y1, double x2, double y2, double distance,
                         bool shift, bool control, bool&) {
                         uses.push_back({tool, x1, y1, x2, y2, distance, shift, control});
                     });
    f.view.createCustomTool(108, CustomToolType::Point, 22);
    f.view.createCustomTool(107, CustomToolType::Circle, 2);
    f.view.createCustomTool(106, CustomToolType::Rectangle, 2);

    f.view.setCurrentTool(108);
    f.mouse.click({12.5, 7.5}, Qt::ControlModifier);
    f.view.setCurrentTool(107);
    f.mouse.drag({10, 10}, {13, 14});
    f.mouse.click({20, 20}); // a circle without a radius is not reported
    f.view.setCurrentTool(106);
    f.mouse.drag({2, 3}, {8, 11}, Qt::ShiftModifier);
    f.mouse.press({2, 3});
    f.mouse.move({5, 5});
    pressKey(f.view, Qt::Key_Escape);
    f.mouse.release({5, 5});

    ASSERT_EQ(uses.size(), 3u);
    const auto expectUse = [](const Use& u, int tool, std::array<double, 5> v, bool shift,
                              bool control) {
        EXPECT_EQ(u.tool, tool);
        EXPECT_NEAR(u.x1, v[0], 1e-9);
        EXPECT_NEAR(u.y1, v[1], 1e-9);
        EXPECT_NEAR(u.x2, v[2], 1e-9);
        EXPECT_NEAR(u.y2, v[3], 1e-9);
        EXPECT_NEAR(u.distance, v[4], 1e-9);
        EXPECT_EQ(u.shift, shift);
        EXPECT_EQ(u.control, control);
    };
    expectUse(uses[0], 108, {12.5, 7.5, 12.5, 7.5, 0}, false, true);
    expectUse(uses[1], 107, {10, 10, 13, 14, 5}, false, false);
    expectUse(uses[2], 106, {2, 3, 8, 11, 10}, true, false);
}

TEST(CustomTools, ABrokenLineReportsEachPointThenItsEnd) {
    ToolFixture f;
    f.view.createCustomTool(105, CustomToolType::BrokenLine, 2);
    f.view.setCurrentTool(105);
    std::vector<std::pair<int, std::vector<Point>>> reports;
    QObject::connect(&f.view, &MapView::polyToolUsed,
                     [&](int tool, int flags, const std::vector<Point>& points, bool, bool, bool&) {
                         EXPECT_EQ(tool, 105);
                         Part kept = rounded(points);
                         reports.emplace_back(flags, kept);
                     });
    f.mouse.click({1, 1});
    f.mouse.click({4, 5});
    f.mouse.doubleClick({4, 9});
    using Reports = std::vector<std::pair<int, std::vector<Point>>>;
    EXPECT_EQ(reports, (Reports{{phase::Started, {{1, 1}}},
                                {phase::PointAdded, {{1, 1}, {4, 5}}},
                                {phase::PointAdded, {{1, 1}, {4, 5}, {4, 9}}},
                                {phase::Finished, {{1, 1}, {4, 5}, {4, 9}}}}));

    reports.clear();
    f.mouse.click({10, 10});
    f.mouse.click({20, 10});
    pressKey(f.view, Qt::Key_Escape);
    f.mouse.click({30, 10}); // a new line
    EXPECT_EQ(reports, (Reports{{phase::Started, {{10, 10}}},
                                {phase::PointAdded, {{10, 10}, {20, 10}}},
                                {phase::Cancelled, {{10, 10}, {20, 10}}},
                                {phase::Started, {{30, 10}}}}));
}

TEST(ToolOverlays, ShowHandlesAndWhatADragWouldDo) {
    ToolFixture f;
    const Feature a = f.addSquare(2, 2, 4, 0xFFFFFF);
    f.zones->selectOnly(Features(f.zones, {a.fid()}));
    const auto count = [&](QRect area, auto&& test) {
        const QImage image = f.shown();
        int n = 0;
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                n += test(image.pixelColor(x, y)) ? 1 : 0;
        return n;
    };
    const auto bluish = [](const QColor& c) { return c.blue() > c.red() + 60; };
    const auto grey = [](const QColor& c) { return c.hslSaturation() < 40 && c.lightness() < 200; };
    // A band along the bottom edge of the square moved by (20, 10): y = 12 is pixel 180.
    const QRect movedEdge(222, 178, 36, 5);

    f.mouse.press({3, 3});
    f.mouse.move({23, 13});
    EXPECT_GT(count(movedEdge, bluish), 10);
    pressKey(f.view, Qt::Key_Escape);
    EXPECT_EQ(count(movedEdge, bluish), 0);
    f.mouse.release({23, 13});

    // Handles are black-edged squares over the corners; in the middle of an edge there are none.
    const QRect corner(57, 237, 7, 7), edgeMiddle(37, 237, 7, 7); // around (6, 6) and (4, 6)
    EXPECT_GT(count(corner, grey), count(edgeMiddle, grey) + 10);
    f.view.setEditingMode(editmode::Vertices);
    EXPECT_GT(count(corner, grey), count(edgeMiddle, grey) + 10);

    // A polygon being drawn shows its sides and the leg to the mouse.
    f.view.setCurrentTool(tool::DrawPolygon);
    f.mouse.click({10, 20});
    f.mouse.click({30, 20});
    f.mouse.move({30, 5});
    EXPECT_GT(count(QRect(120, 98, 160, 5), bluish), 20);  // the side along y = 20
    EXPECT_GT(count(QRect(298, 120, 5, 120), bluish), 20); // the leg down to y = 5
}
