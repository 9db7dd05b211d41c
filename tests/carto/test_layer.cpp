// Layers in memory: edits, selection, searches through the R-tree, cached union.
#include "base/erreur.h"
#include "carto/model/map.h"

#include <QSignalSpy>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

using namespace carto;

namespace {

Part square(double x, double y, double side) {
    return {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}};
}

Layer& memoryLayer(Map& map, const char* name) {
    LayerInfo info;
    info.addParameter("Name", QString::fromUtf8(name));
    info.addParameter("Fields", FieldList{{"Nom", FieldType::Text, 0}});
    info.addParameter("TableStorageType", QStringLiteral("MemTable"));
    return map.addLayer(info);
}

std::vector<qint64> fids(const Features& f) {
    return f.fids();
}

// A 3 x 3 grid of unit squares with a gap of 1: square (i, j) at (2i, 2j).
struct Grid {
    Map map;
    Layer& layer = memoryLayer(map, "Grille");
    std::vector<qint64> ids;
    Grid() {
        for (int j = 0; j < 3; ++j)
            for (int i = 0; i < 3; ++i)
                ids.push_back(layer.addFeature(Feature::region({square(2 * i, 2 * j, 1)})).fid());
    }
};

} // namespace

TEST(Layer, MemoryLayersNumberTheirFeaturesAndKeepTheirFields) {
    Grid g;
    EXPECT_EQ(g.layer.featureCount(), 9);
    EXPECT_TRUE(g.layer.isMemory());
    EXPECT_TRUE(g.layer.editable());
    EXPECT_EQ(g.layer.bounds(), (Rect{0, 0, 5, 5}));
    EXPECT_EQ(g.layer.fieldIndex(u"NOM"), 0);
    Feature f = g.layer.feature(g.ids[4]);
    EXPECT_EQ(f.uniqueKey(), QString::number(g.ids[4]));
    EXPECT_DOUBLE_EQ(f.area(), 1.0);
    EXPECT_DOUBLE_EQ(f.centre().x, 2.5);
    EXPECT_THROW(g.layer.feature(999), veldra::Erreur);
    EXPECT_THROW(g.layer.featureByKey(u"abc"), veldra::Erreur);
}

TEST(Layer, SearchesAtAPointAndWithinARectangle) {
    Grid g;
    EXPECT_EQ(fids(g.layer.searchAtPoint({2.5, 2.5})), std::vector<qint64>{g.ids[4]});
    EXPECT_TRUE(g.layer.searchAtPoint({1.5, 1.5}).isEmpty()); // in a gap
    const Rect r{0.5, 0.5, 3.5, 3.5};
    EXPECT_EQ(g.layer.searchWithinRectangle(r, searchmode::CentreWithin).count(), 4);
    EXPECT_EQ(g.layer.searchWithinRectangle(r, searchmode::PartlyWithin).count(), 4);
    EXPECT_EQ(fids(g.layer.searchWithinRectangle(r, searchmode::EntirelyWithin)),
              std::vector<qint64>{g.ids[4]});
    EXPECT_EQ(g.layer.searchWithinRectangle({-1, -1, 3.2, 3.2}, searchmode::EntirelyWithin).count(),
              4);
    EXPECT_THROW(g.layer.searchWithinRectangle(r, 7), veldra::Erreur);
}

TEST(Layer, SearchesWithinAFeatureByMode) {
    Grid g;
    Layer& zones = memoryLayer(g.map, "Zones");
    // An L-shaped zone covering squares 0 and 1 entirely, square 3 partly.
    const Feature zone = zones.addFeature(Feature::region(
        {{{-0.5, -0.5}, {3.5, -0.5}, {3.5, 1.5}, {0.5, 1.5}, {0.5, 2.5}, {-0.5, 2.5}}}));
    EXPECT_EQ(fids(g.layer.searchWithinFeature(zone, searchmode::EntirelyWithin)),
              (std::vector<qint64>{g.ids[0], g.ids[1]}));
    EXPECT_EQ(fids(g.layer.searchWithinFeature(zone, searchmode::PartlyWithin)),
              (std::vector<qint64>{g.ids[0], g.ids[1], g.ids[3]}));
    EXPECT_EQ(fids(g.layer.searchWithinFeature(zone, searchmode::CentreWithin)),
              (std::vector<qint64>{g.ids[0], g.ids[1]}));
}

// firstAtPoint remembers answers by cell; searchAtPoint asks GEOS every time. They must
// agree everywhere: on borders, in gaps, under overlaps, and after the layer changes.
TEST(Layer, TheFirstFeatureAtAPointIsTheLowestFidCoveringIt) {
    Grid g;
    // Later FIDs: beside the grid a frame with a hole, over it a diamond and a symbol.
    g.layer.addFeature(Feature::region({{{6, -0.5}, {11, -0.5}, {11, 5.5}, {6, 5.5}},
                                        {{7, 0.5}, {10, 0.5}, {10, 4.5}, {7, 4.5}}}));
    g.layer.addFeature(Feature::region({{{2.5, 1}, {4, 2.5}, {2.5, 4}, {1, 2.5}}}));
    g.layer.addFeature(Feature::symbol({1.5, 3.5}));
    const auto disagreements = [&] {
        int wrong = 0;
        std::mt19937 random(7); // points anywhere, so some fall a hair's breadth off an edge
        std::uniform_real_distribution<double> x(-1, 12), y(-1, 6);
        for (int i = 0; i < 40000; ++i) {
            const Point p{x(random), y(random)};
            const std::vector<qint64> all = fids(g.layer.searchAtPoint(p));
            const Feature first = g.layer.firstAtPoint(p);
            const qint64 expected = all.empty() ? -1 : all.front();
            if ((first.isValid() ? first.fid() : -1) != expected && ++wrong == 1)
                ADD_FAILURE() << "at " << p.x << ", " << p.y;
        }
        return wrong;
    };
    EXPECT_EQ(disagreements(), 0);
    Feature f = g.layer.feature(g.ids[4]);
    f.offset(0.25, -0.75);
    g.layer.updateFeature(f);
    g.layer.deleteFeature(g.ids[0]);
    EXPECT_EQ(disagreements(), 0);
    EXPECT_FALSE(g.layer.firstAtPoint({qQNaN(), 1}).isValid());
    EXPECT_FALSE(g.layer.firstAtPoint({100, 100}).isValid());
}

TEST(Layer, TheIndexFollowsMovesAndDeletes) {
    Grid g;
    Feature f = g.layer.feature(g.ids[0]);
    f.offset(10, 10);
    g.layer.updateFeature(f);
    EXPECT_TRUE(g.layer.searchAtPoint({0.5, 0.5}).isEmpty());
    EXPECT_EQ(fids(g.layer.searchAtPoint({10.5, 10.5})), std::vector<qint64>{g.ids[0]});
    g.layer.deleteFeature(QString::number(g.ids[0]));
    EXPECT_TRUE(g.layer.searchAtPoint({10.5, 10.5}).isEmpty());
    EXPECT_EQ(g.layer.featureCount(), 8);
    EXPECT_EQ(g.layer.bounds(), (Rect{0, 0, 5, 5}));
}

TEST(Layer, BoundsFollowEveryEditThroughTheIndex) {
    Grid g;
    EXPECT_EQ(g.layer.bounds(), (Rect{0, 0, 5, 5}));
    Feature f = g.layer.feature(g.ids[8]); // the top right square
    f.offset(-10, 0);
    g.layer.updateFeature(f);
    EXPECT_EQ(g.layer.bounds(), (Rect{-6, 0, 5, 5}));
    g.layer.deleteFeature(g.ids[2]); // the right column goes: the bounds shrink
    g.layer.deleteFeature(g.ids[5]);
    EXPECT_EQ(g.layer.bounds(), (Rect{-6, 0, 3, 5}));
    for (const qint64 fid : {g.ids[0], g.ids[1], g.ids[3], g.ids[4], g.ids[6], g.ids[7], g.ids[8]})
        g.layer.deleteFeature(fid);
    EXPECT_TRUE(g.layer.bounds().isNull());
}

// Host text compared as a value, never read as a condition.
TEST(Layer, SearchEqualComparesValuesWhateverTheyHold) {
    Grid g;
    const QString hostile[] = {QStringLiteral("Allée \"B\""),
                               QStringLiteral("l'Ouest"),
                               QStringLiteral("A = \"B\""),
                               QStringLiteral("x\" and Nom = \"y"),
                               QStringLiteral("1 or 1=1"),
                               QString(10000, u'é'),
                               QStringLiteral("; DROP TABLE Tombes --"),
                               QStringLiteral(" and ")};
    for (size_t i = 0; i < std::size(hostile); ++i) {
        Feature f = g.layer.feature(g.ids[i]);
        f.setAttribute(u"Nom", hostile[i]);
        g.layer.updateFeature(f);
    }
    for (size_t i = 0; i < std::size(hostile); ++i) {
        const Features hit = g.layer.searchEqual(u"nom", hostile[i]);
        ASSERT_EQ(hit.count(), 1) << i;
        EXPECT_EQ(hit.at(0).fid(), g.ids[i]);
    }
    // Texts compare without regard to case, as conditions do; a prefix is no match.
    EXPECT_EQ(g.layer.searchEqual(u"Nom", QStringLiteral("L'OUEST")).count(), 1);
    EXPECT_EQ(g.layer.searchEqual(u"Nom", QStringLiteral("l'Ou")).count(), 0);
    EXPECT_EQ(g.layer.searchEqual(u"Nom", QVariant()).count(), 0);
    EXPECT_THROW(g.layer.searchEqual(u"Absente", QStringLiteral("x")), veldra::Erreur);
}

TEST(Layer, SearchEqualComparesNumbersAsNumbers) {
    Map map;
    LayerInfo info;
    info.addParameter("Name", QStringLiteral("Tombes"));
    info.addParameter("Fields", FieldList{{"IDGCF", FieldType::Integer, 0}});
    Layer& plots = map.addLayer(info);
    Feature f = plots.addFeature(Feature::region({square(0, 0, 1)}));
    f.setAttribute(u"IDGCF", 12);
    plots.updateFeature(f);
    plots.addFeature(Feature::region({square(2, 0, 1)})); // no key
    for (const QVariant& v : {QVariant(12), QVariant(12.0), QVariant(QStringLiteral("12")),
                              QVariant(QStringLiteral(" 12 ")), QVariant(QStringLiteral("12.0"))})
        EXPECT_EQ(plots.searchEqual(u"IDGCF", v).count(), 1) << v.toString().toStdString();
    for (const QVariant& v :
         {QVariant(QStringLiteral("12 or 1=1")), QVariant(QStringLiteral("abc")), QVariant(),
          QVariant(QString()), QVariant(13), QVariant(QStringLiteral("IDGCF"))})
        EXPECT_EQ(plots.searchEqual(u"IDGCF", v).count(), 0) << v.toString().toStdString();
}

TEST(Layer, UnionIsCachedUntilTheLayerChanges) {
    Grid g;
    const Geometry& before = g.layer.unionAll();
    EXPECT_DOUBLE_EQ(before.area(), 9.0);
    EXPECT_EQ(&g.layer.unionAll(), &before);                // same object: not recomputed
    g.layer.addFeature(Feature::region({square(1, 0, 1)})); // fills a gap, merges two squares
    EXPECT_DOUBLE_EQ(g.layer.unionAll().area(), 10.0);
    EXPECT_EQ(g.layer.unionAll().numParts(), 8);
    Map map;
    EXPECT_THROW(memoryLayer(map, "Vide").unionAll(), veldra::Erreur);
}

TEST(Layer, SelectionKeepsItsOrderAndSignals) {
    Grid g;
    QSignalSpy spy(&g.map, &Map::selectionChanged);
    g.layer.selectAdd(g.ids[5]);
    g.layer.selectAdd(g.ids[2]);
    g.layer.selectAdd(g.ids[5]); // once only
    EXPECT_EQ(fids(g.layer.selection()), (std::vector<qint64>{g.ids[5], g.ids[2]}));
    g.layer.deleteFeature(g.ids[5]);
    EXPECT_EQ(fids(g.layer.selection()), (std::vector<qint64>{g.ids[2]}));
    g.layer.selectOnly(g.layer.searchAtPoint({0.5, 0.5}));
    EXPECT_EQ(g.layer.selection().count(), 1);
    g.layer.clearSelection();
    EXPECT_EQ(g.layer.selection().count(), 0);
    EXPECT_GE(spy.count(), 5);
    EXPECT_THROW(g.layer.selectAdd(12345), veldra::Erreur);
}

TEST(Layer, CollectionsIntersectAndRefuseOtherLayers) {
    Grid g;
    Features a = g.layer.searchWithinRectangle({0, 0, 3, 3}, searchmode::PartlyWithin);
    const Features b = g.layer.searchWithinRectangle({2, 0, 5, 5}, searchmode::PartlyWithin);
    a.intersect(b);
    EXPECT_EQ(fids(a), (std::vector<qint64>{g.ids[1], g.ids[4]}));
    EXPECT_EQ(a.bounds(), (Rect{2, 0, 3, 3}));
    Layer& other = memoryLayer(g.map, "Autre");
    const Feature foreign = other.addFeature(Feature::region({square(0, 0, 1)}));
    EXPECT_THROW(a.add(foreign), veldra::Erreur);
    int seen = 0;
    for (const Feature& f : a) {
        EXPECT_EQ(f.layer(), &g.layer);
        ++seen;
    }
    EXPECT_EQ(seen, 2);
}

// Membership answers the same whether the collection is still in FID order (searched by
// halves) or has gone out of order (hashed): duplicates dropped, removals seen at once.
TEST(Layer, CollectionsKeepMembershipInAndOutOfOrder) {
    Grid g;
    const std::vector<qint64>& id = g.ids;
    Features c(&g.layer, {id[0], id[2], id[5]});
    EXPECT_TRUE(c.contains(id[2]));
    EXPECT_FALSE(c.contains(id[1]));
    c.add(id[5]); // already last
    c.add(id[2]); // already inside
    EXPECT_EQ(c.count(), 3);
    c.remove(id[2]);
    EXPECT_FALSE(c.contains(id[2]));
    c.add(id[1]); // out of order from here on
    c.add(id[1]);
    c.add(id[8]);
    EXPECT_EQ(fids(c), (std::vector<qint64>{id[0], id[5], id[1], id[8]}));
    EXPECT_TRUE(c.contains(id[1]));
    c.remove(id[5]);
    EXPECT_FALSE(c.contains(id[5]));
    c.add(id[5]);
    EXPECT_EQ(fids(c), (std::vector<qint64>{id[0], id[1], id[8], id[5]}));

    const Features unordered(&g.layer, {id[3], id[0], id[3], id[1]});
    EXPECT_EQ(fids(unordered), (std::vector<qint64>{id[3], id[0], id[1]}));
    c.intersect(unordered);
    EXPECT_EQ(fids(c), (std::vector<qint64>{id[0], id[1]}));
    c.clear();
    c.add(id[4]);
    EXPECT_TRUE(c.contains(id[4]));
    EXPECT_FALSE(c.contains(id[1]));
}

// What a renderer draws comes in FID order whether the box holds the whole layer (read
// straight from the table) or a part of it (through the tree), and follows deletes.
TEST(Layer, DrawingDataComesInFidOrderWholeOrInPart) {
    Grid g;
    g.layer.deleteFeature(g.ids[4]);
    const auto fidsIn = [&](const Rect& box) {
        std::vector<qint64> out;
        for (const auto& row : g.layer.dataInBox(box))
            out.push_back(row.first);
        return out;
    };
    std::vector<qint64> all = g.ids;
    all.erase(all.begin() + 4);
    EXPECT_EQ(fidsIn({-10, -10, 10, 10}), all);
    EXPECT_EQ(fidsIn({0, 0, 5, 5}), all); // exactly the layer's bounds
    EXPECT_EQ(fidsIn({1.5, 1.5, 4.5, 4.5}), (std::vector<qint64>{g.ids[5], g.ids[7], g.ids[8]}));
    EXPECT_TRUE(fidsIn({}).empty());
}

TEST(Layer, CopiesCarryAttributesByNameAndFindLooksNamesUp) {
    Grid g;
    Feature f = g.layer.feature(g.ids[0]);
    f.setAttribute(u"nom", QStringLiteral("Carré A"));
    g.layer.updateFeature(f);
    LayerInfo info;
    info.addParameter("Name", QStringLiteral("Copie"));
    info.addParameter("Features", g.layer.allFeatures());
    Layer& copy = g.map.addLayer(info);
    copy.setFindField(QStringLiteral("Nom"));
    EXPECT_EQ(copy.featureCount(), 9);
    EXPECT_EQ(copy.search(u"Nom = \"carré a\"").count(), 1);
    EXPECT_TRUE(copy.find(u"Carré A").exact());
    EXPECT_EQ(copy.find(u"Carré").code, 2);
    EXPECT_EQ(copy.find(u"Carré A").bounds, (Rect{0, 0, 1, 1}));
    EXPECT_EQ(copy.find(u"Z").code, 0);
    LayerInfo bad;
    bad.addParameter("Name", QStringLiteral("Disque"));
    bad.addParameter("TableStorageType", QStringLiteral("Fichier"));
    EXPECT_THROW(g.map.addLayer(bad), veldra::Erreur);
}

TEST(Layer, BadGeometriesAreRefusedOnEntry) {
    Map map;
    Layer& l = memoryLayer(map, "L");
    EXPECT_THROW(Feature::region({{{0, 0}, {1, 0}, {0, 0}}}), veldra::Erreur);
    EXPECT_THROW(Feature::region({{{0, 0}, {NAN, 0}, {1, 1}, {0, 1}}}), veldra::Erreur);
    EXPECT_THROW(l.addFeature(Feature::region({})), veldra::Erreur);
    // A self-intersecting bow tie is refused; one another program stored is read as it
    // is, and the layer's union makes it valid.
    const Feature bowTie = Feature::region({{{0, 0}, {2, 2}, {2, 0}, {0, 2}}});
    EXPECT_THROW(l.addFeature(bowTie), veldra::Erreur);
    EXPECT_EQ(l.featureCount(), 0);
    l.loadFeatures({{1, bowTie.shared()}});
    EXPECT_NEAR(l.unionAll().area(), 2.0, 1e-9);
}

TEST(Layer, TextsAreMeasuredWithTheirFont) {
    Map map;
    Layer& l = memoryLayer(map, "Textes");
    Style small, big;
    small.textSize = 50;
    big.textSize = 100;
    const Feature a = l.addFeature(Feature::textAt({10, 10}, QStringLiteral("12"), small));
    const Feature b = l.addFeature(Feature::textAt({10, 10}, QStringLiteral("12"), big));
    EXPECT_NEAR(a.bounds().height(), 0.5, 1e-9);
    EXPECT_GT(b.bounds().width(), a.bounds().width());
    EXPECT_EQ(a.kind(), FeatureKind::Text);
    EXPECT_EQ(fids(l.searchAtPoint({10, 10})).size(), 2u);
}

// Far from the grid's origin (a projected plan's coordinates run into millions of metres)
// features a millimetre apart are told apart by every search, whatever the index rounds.
TEST(Layer, SearchesAreExactToTheMillimetreFarFromTheOrigin) {
    Map map;
    Layer& layer = memoryLayer(map, "Lointaine");
    // The first feature sits at the origin, so the index's boxes out there are coarse.
    const qint64 anchor = layer.addFeature(Feature::region({square(0, 0, 1)})).fid();
    const double x0 = 702345.125, y0 = 6612345.5;
    const qint64 west = layer.addFeature(Feature::region({square(x0, y0, 1)})).fid();
    const qint64 east = layer.addFeature(Feature::region({square(x0 + 1.001, y0, 1)})).fid();
    const qint64 post = layer.addFeature(Feature::line({{{x0 + 3, y0}, {x0 + 3, y0 + 1}}})).fid();
    layer.deleteFeature(anchor);
    EXPECT_EQ(layer.bounds(), (Rect{x0, y0, x0 + 3, y0 + 1}));

    // The gap between west and east, a millimetre wide.
    EXPECT_TRUE(layer.searchAtPoint({x0 + 1.0005, y0 + 0.5}).isEmpty());
    EXPECT_EQ(fids(layer.searchAtPoint({x0 + 1.0, y0 + 0.5})), std::vector<qint64>{west});
    EXPECT_FALSE(layer.firstAtPoint({x0 + 1.0005, y0 + 0.5}).isValid());
    EXPECT_TRUE(layer.searchAtPoint({x0 + 3.0005, y0 + 0.5}).isEmpty()); // beside the post
    EXPECT_EQ(layer.firstAtPoint({x0 + 3, y0 + 0.5}).fid(), post);
    const auto drawn = [&](const Rect& box) {
        std::vector<qint64> out;
        for (const auto& row : layer.dataInBox(box))
            out.push_back(row.first);
        return out;
    };
    EXPECT_TRUE(drawn({x0 + 1.0002, y0, x0 + 1.0008, y0 + 1}).empty());
    EXPECT_EQ(drawn({x0 + 1.0002, y0, x0 + 1.001, y0 + 1}), std::vector<qint64>{east});
    EXPECT_EQ(fids(layer.searchWithinRectangle({x0 + 0.9995, y0 - 1, x0 + 1.0005, y0 + 2},
                                               searchmode::PartlyWithin)),
              std::vector<qint64>{west});

    // A rectangle past a float's range still holds them all.
    EXPECT_EQ(layer.searchWithinRectangle({-1e300, -1e300, 1e300, 1e300}, searchmode::PartlyWithin)
                  .count(),
              3);
    EXPECT_TRUE(layer.searchAtPoint({std::nan(""), y0}).isEmpty());

    // The bounds shrink when the feature on their edge goes or moves in, and the index
    // finds what moved where it went.
    layer.deleteFeature(post);
    Feature e = layer.feature(east);
    EXPECT_EQ(layer.bounds(), (Rect{x0, y0, e.bounds().xmax, y0 + 1}));
    e.offset(-0.5, 0);
    layer.updateFeature(e);
    EXPECT_EQ(layer.bounds(), (Rect{x0, y0, e.bounds().xmax, y0 + 1}));
    EXPECT_LT(e.bounds().xmax, x0 + 1.6);
    EXPECT_EQ(fids(layer.searchAtPoint({x0 + 1.4, y0 + 0.5})), std::vector<qint64>{east});
    EXPECT_TRUE(layer.searchAtPoint({x0 + 1.8, y0 + 0.5}).isEmpty());
    layer.deleteFeature(west);
    layer.deleteFeature(east);
    EXPECT_TRUE(layer.bounds().isNull());
    // An empty index starts again from the next feature's place.
    const qint64 again = layer.addFeature(Feature::symbol({-5, -5})).fid();
    EXPECT_EQ(layer.firstAtPoint({-5, -5}).fid(), again);
}
