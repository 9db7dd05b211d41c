// Features held in columns: what goes in reads back the same, what cannot go in stays
// apart, and the layer's store walks both in FID order through edits.
#include "carto/model/feature.h"
#include "carto/model/feature_columns.h"
#include "carto/model/feature_store.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"

#include <QDate>
#include <algorithm>
#include <gtest/gtest.h>

using namespace carto;

namespace {

Part square(double x, double y, double side) {
    return {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}, {x, y}};
}

FeaturePtr withValues(const Feature& f, std::vector<QVariant> values) {
    auto d = MutableFeaturePtr::make(f.data());
    d->attributes = AttributeValues(values);
    return d;
}

void expectSame(const FeatureData& a, const FeatureData& b) {
    EXPECT_EQ(a.kind, b.kind);
    EXPECT_EQ(a.parts, b.parts);
    EXPECT_EQ(a.style, b.style); // the same shared style, not a copy
    EXPECT_EQ(a.attributes, b.attributes);
    for (size_t i = 0; i < a.attributes.size(); ++i)
        EXPECT_EQ(a.attributes[i].typeId(), b.attributes[i].typeId()) << i;
    EXPECT_EQ(a.text, b.text);
    EXPECT_EQ(a.extent.x, b.extent.x);
    EXPECT_EQ(a.extent.y, b.extent.y);
}

// A layer of one text column, "Nom".
Layer& layerOfNames(Map& map) {
    LayerInfo info;
    info.addParameter("Name", QStringLiteral("Plan"));
    info.addParameter("Fields", FieldList{{"Nom", FieldType::Text, 0}});
    info.addParameter("TableStorageType", QStringLiteral("MemTable"));
    return map.addLayer(info);
}

std::vector<qint64> walk(const FeatureStore& s) {
    std::vector<qint64> out;
    s.forEach([&](qint64 fid, const FeatureStore::Ref&) { out.push_back(fid); });
    return out;
}

} // namespace

TEST(FeatureColumns, HoldEveryKindAsGivenAndLeaveOutWhatTheyCannot) {
    Style named;
    named.textSize = 120;
    auto noParts = MutableFeaturePtr::make();
    noParts->style = StylePtr::make(named);
    noParts->attributes = AttributeValues({1, 1, 1});
    FeatureColumns::Rows rows = {
        {1, withValues(Feature::region({square(0, 0, 2), square(0.5, 0.5, 1)}),
                       {7, QStringLiteral("A-1"), 2.5})},
        {2, withValues(Feature::line({{{0, 0}, {3, 4}, {5, 5}}}), {{}, QString(), true})},
        {4, withValues(Feature::symbol({9, 9}), {qlonglong(1) << 40, QStringLiteral("é"), ""})},
        {5, withValues(Feature::textAt({1, 2}, QStringLiteral("12"), named), {1, 2, 3})},
        {6, withValues(Feature::textAt({3, 4}, QStringLiteral("Allée des Tilleuls Œ")),
                       {QStringLiteral("ŒŒ"), {}, {}})},
        {7, noParts},
        {8, withValues(Feature::symbol({1, 1}), {QDate(2024, 5, 1), 1, QDate(2025, 1, 2)})},
        {9, withValues(Feature::symbol({1, 1}), {1, 1})}, // too few values
        {11, withValues(Feature::region({square(5, 5, 1)}), {1, 2, 3})},
    };
    const FeatureColumns::Rows all = rows;
    const auto columns = FeatureColumns::take(rows, 3);
    ASSERT_TRUE(columns);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].first, 9);
    ASSERT_EQ(columns->size(), 8u);

    size_t row = 0;
    for (const auto& [fid, data] : all) {
        if (fid == 9)
            continue;
        SCOPED_TRACE(fid);
        EXPECT_EQ(columns->fid(row), fid);
        EXPECT_EQ(columns->rowOf(fid), std::ptrdiff_t(row));
        expectSame(*columns->data(row), *data);
        const FeatureView v = columns->view(row);
        EXPECT_EQ(v.kind, data->kind);
        EXPECT_EQ(v.parts, data->parts.view());
        EXPECT_EQ(v.bounds(), data->bounds());
        for (size_t i = 0; i < 4; ++i)
            EXPECT_EQ(columns->attribute(row, i), data->attributes[i]) << i;
        ++row;
    }
    for (const qint64 absent : {0, 3, 9, 10, 12})
        EXPECT_EQ(columns->rowOf(absent), -1) << absent;
    EXPECT_EQ(columns->view(0).parts.size(), 2u);
    EXPECT_TRUE(columns->view(5).parts.empty());
}

TEST(FeatureColumns, PointsOfTheirOwnAndFidsWithoutGapsNeedNoIndex) {
    FeatureColumns::Rows rows;
    for (int i = 0; i < 5; ++i)
        rows.emplace_back(10 + i, withValues(Feature::textAt({double(i), 1}, QString::number(i)),
                                             {QString::number(i)}));
    const FeatureColumns::Rows points = rows;
    auto columns = FeatureColumns::take(rows, 1);
    ASSERT_TRUE(columns);
    EXPECT_TRUE(rows.empty());
    EXPECT_EQ(columns->rowOf(12), 2);
    EXPECT_EQ(columns->rowOf(9), -1);
    EXPECT_EQ(columns->rowOf(15), -1);
    for (size_t r = 0; r < points.size(); ++r) {
        expectSame(*columns->data(r), *points[r].second);
        EXPECT_EQ(columns->view(r).bounds(), points[r].second->bounds());
    }

    // A line after the points, then a FID that does not come after the last one.
    rows = points;
    rows.emplace_back(15, withValues(Feature::line({{{0, 0}, {1, 1}}}), {"l"}));
    rows.emplace_back(12, withValues(Feature::symbol({0, 0}), {"s"}));
    const FeatureColumns::Rows all = rows;
    columns = FeatureColumns::take(rows, 1);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0].first, 12);
    ASSERT_EQ(columns->size(), 6u);
    for (size_t r = 0; r < columns->size(); ++r) {
        expectSame(*columns->data(r), *all[r].second);
        EXPECT_EQ(columns->view(r).parts, all[r].second->parts.view());
    }
    FeatureColumns::Rows none;
    EXPECT_EQ(FeatureColumns::take(none, 1), nullptr);
}

TEST(FeatureStore, WalksColumnsAndChangesInFidOrderThroughEdits) {
    FeatureColumns::Rows rows;
    for (int fid = 1; fid <= 6; ++fid)
        rows.emplace_back(fid, withValues(Feature::region({square(fid, 0, 1)}),
                                          fid == 3 ? std::vector<QVariant>{fid, fid}
                                                   : std::vector<QVariant>{fid}));
    FeatureStore s;
    s.load(rows, 1);
    ASSERT_TRUE(s.columns());
    EXPECT_EQ(s.columns()->size(), 5u); // the one of two values stays apart
    EXPECT_EQ(walk(s), (std::vector<qint64>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(s.at(3).attributeCount(), 2u);

    const FeaturePtr two = withValues(Feature::region({square(20, 0, 1)}), {22});
    s.put(2, two);
    EXPECT_EQ(s.find(2), two);
    EXPECT_EQ(s.size(), 6u);
    s.erase(4);
    s.erase(3);
    EXPECT_FALSE(s.contains(4));
    EXPECT_FALSE(s.contains(3));
    EXPECT_FALSE(s.ref(4).has_value());
    EXPECT_EQ(s.find(4), nullptr);
    EXPECT_THROW(s.at(4), std::out_of_range);
    s.put(10, two);
    EXPECT_EQ(walk(s), (std::vector<qint64>{1, 2, 5, 6, 10}));
    EXPECT_EQ(s.size(), 5u);
    EXPECT_EQ(s.at(2).attribute(0), QVariant(22));
    EXPECT_EQ(s.at(5).attribute(0), QVariant(5));

    // A walk whose callback replaces each feature it is given and adds others: each one
    // present at the start is seen once, the new ones not at all.
    std::vector<qint64> seen;
    s.forEach([&](qint64 fid, const FeatureStore::Ref& r) {
        seen.push_back(fid);
        s.put(fid,
              withValues(Feature::region({square(fid, 5, 1)}), {r.attribute(0).toInt() + 100}));
        s.put(fid + 1000, two);
    });
    EXPECT_EQ(seen, (std::vector<qint64>{1, 2, 5, 6, 10}));
    EXPECT_EQ(s.size(), 10u);
    EXPECT_EQ(s.at(1).attribute(0), QVariant(101));
    EXPECT_EQ(s.at(6).attribute(0), QVariant(106));

    // Stopping early.
    int visits = 0;
    s.forEach([&](qint64, const FeatureStore::Ref&) { return ++visits < 2; });
    EXPECT_EQ(visits, 2);

    // Rows that share a FID with the columns win over them.
    FeatureStore t;
    t.load(s.columns(), {{5, two}, {100, two}});
    EXPECT_EQ(t.size(), 6u);
    EXPECT_EQ(walk(t), (std::vector<qint64>{1, 2, 4, 5, 6, 100}));
    EXPECT_EQ(t.find(5), two);
}

TEST(FeatureStore, FeaturesReadFromColumnsOutliveAReloadAndCopyOnWrite) {
    Map map;
    Layer& layer = layerOfNames(map);
    layer.loadFeatures({{1, withValues(Feature::region({square(0, 0, 1)}), {"a"})},
                        {2, withValues(Feature::region({square(2, 0, 1)}), {"b"})}});
    ASSERT_TRUE(layer.columns());

    Feature one = layer.feature(1);
    const Feature kept = layer.feature(2);
    one.setAttribute(u"Nom", QStringLiteral("changé"));
    one.offset(10, 0);
    EXPECT_EQ(layer.feature(1).attribute(u"Nom"), "a"); // a copy until written back
    layer.updateFeature(one);
    EXPECT_EQ(layer.feature(1).attribute(u"Nom"), "changé");
    EXPECT_EQ(layer.searchAtPoint({10.5, 0.5}).fids(), std::vector<qint64>{1});
    EXPECT_TRUE(layer.searchAtPoint({0.5, 0.5}).isEmpty());
    EXPECT_EQ(layer.firstAtPoint({2.5, 0.5}).fid(), 2);

    layer.loadFeatures({{2, withValues(Feature::region({square(50, 0, 1)}), {"z"})}});
    EXPECT_EQ(kept.attribute(u"Nom"), "b");
    EXPECT_EQ(kept.bounds(), (Rect{2, 0, 3, 1}));
    EXPECT_EQ(kept.parts().size(), 1u);
    EXPECT_EQ(layer.feature(2).attribute(u"Nom"), "z");
    EXPECT_FALSE(layer.hasFeature(1));
}

TEST(FeatureStore, ManyChangesFoldBackIntoColumnsAndAFewDoNot) {
    FeatureColumns::Rows rows;
    for (int fid = 1; fid <= 4000; ++fid)
        rows.emplace_back(fid, withValues(Feature::region({square(fid, 0, 1)}), {fid}));
    FeatureStore s;
    s.load(rows, 1);
    const auto changeUpTo = [&](int last, int by) {
        for (int fid = 1; fid <= last; ++fid)
            s.put(fid, withValues(Feature::region({square(fid, 9, 1)}), {fid + by}));
    };
    changeUpTo(1000, 10000); // a quarter, but too few to be worth a fold
    s.put(4001, withValues(Feature::symbol({0, 0}), {1, 2})); // never fits the columns
    s.fold(1);
    EXPECT_NE(s.at(500).held(), nullptr);

    changeUpTo(1100, 20000);
    const auto before = s.columns();
    s.fold(1);
    EXPECT_NE(s.columns(), before);
    EXPECT_EQ(s.size(), 4001u);
    EXPECT_EQ(s.at(500).held(), nullptr);
    EXPECT_NE(s.at(4001).held(), nullptr);
    EXPECT_EQ(s.at(500).attribute(0), QVariant(20500));
    EXPECT_EQ(s.at(2000).attribute(0), QVariant(2000));
    EXPECT_EQ(s.at(1100).bounds(), (Rect{1100, 9, 1101, 10}));
    EXPECT_EQ(s.at(1101).bounds(), (Rect{1101, 0, 1102, 1}));
    const std::vector<qint64> fids = walk(s);
    ASSERT_EQ(fids.size(), 4001u);
    EXPECT_TRUE(std::is_sorted(fids.begin(), fids.end()));
    // What held the old columns still reads them.
    EXPECT_EQ(before->attribute(size_t(before->rowOf(500)), 0), QVariant(500));
}

TEST(FeatureStore, ABracketOfManyUpdatesFoldsAndTheLayerReadsTheSame) {
    Map map;
    Layer& layer = layerOfNames(map);
    FeatureColumns::Rows rows;
    for (int fid = 1; fid <= 3000; ++fid)
        rows.emplace_back(
            fid, withValues(Feature::region({square(2 * fid, 0, 1)}), {QString::number(fid)}));
    layer.loadFeatures(rows);
    const auto loaded = layer.columns();
    const Feature kept = layer.feature(7);
    {
        UpdateAccess access(map);
        for (int fid = 1; fid <= 2000; ++fid) {
            Feature f = layer.feature(fid);
            f.setAttribute(u"Nom", QStringLiteral("n%1").arg(fid));
            f.offset(0, 5);
            layer.updateFeature(f);
        }
        access.commit();
    }
    EXPECT_NE(layer.columns(), loaded);
    EXPECT_EQ(layer.featureCount(), 3000);
    EXPECT_EQ(layer.feature(7).attribute(u"Nom"), "n7");
    EXPECT_EQ(layer.feature(2500).attribute(u"Nom"), "2500");
    EXPECT_EQ(kept.attribute(u"Nom"), "7");
    EXPECT_EQ(layer.searchAtPoint({14.5, 5.5}).fids(), std::vector<qint64>{7});
    EXPECT_EQ(layer.searchEqual(u"Nom", QStringLiteral("n1999")).fids(), std::vector<qint64>{1999});
}
