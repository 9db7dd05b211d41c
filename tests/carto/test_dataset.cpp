// Datasets on a layer's table or on a host record set, and the themes built on them.
#include "base/erreur.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"
#include "recordset/field_spec.h"

#include <gtest/gtest.h>

using namespace carto;

namespace {

struct Plots {
    Map map;
    Layer* layer;
    Plots() {
        LayerInfo info;
        info.addParameter("Name", QStringLiteral("Tombes"));
        info.addParameter(
            "Fields", FieldList{{"IDGCF", FieldType::Integer, 0}, {"Booleen", FieldType::Text, 1}});
        layer = &map.addLayer(info);
        for (int i = 0; i < 6; ++i) {
            Feature f = layer->addFeature(
                Feature::region({{{double(i), 0}, {i + 1.0, 0}, {i + 1.0, 1}, {double(i), 1}}}));
            f.setAttribute(u"IDGCF", 100 + i);
            f.setAttribute(u"Booleen", i < 2 ? QStringLiteral("F") : QStringLiteral("T"));
            layer->updateFeature(f);
        }
        layer->setKeyField(QStringLiteral("IDGCF"));
    }
};

} // namespace

TEST(Dataset, OnALayerReadsItsAttributes) {
    Plots p;
    Dataset& ds = p.map.addDataset(*p.layer, QStringLiteral("DsTombes"));
    EXPECT_EQ(ds.kind(), DatasetKind::Layer);
    EXPECT_EQ(ds.field(u"booleen"), QStringLiteral("Booleen"));
    EXPECT_THROW(ds.field(u"Nom"), veldra::Erreur);
    EXPECT_EQ(ds.value(p.layer->feature(1), u"IDGCF").toInt(), 100);
    EXPECT_EQ(p.map.dataset(u"dstombes"), &ds);
    p.map.removeDataset(u"DsTombes");
    EXPECT_EQ(p.map.dataset(u"DsTombes"), nullptr);
}

TEST(Dataset, FromARecordSetJoinsOnTheKeyAndOutlivesIt) {
    Plots p;
    auto rs = recordset::fromFieldSpec(u"IdGCF N,Etat C(20)");
    for (int id : {101, 103, 103, 999}) {
        rs->addNew();
        rs->setValue(u"IdGCF", id);
        rs->setValue(u"Etat",
                     id == 101 ? QStringLiteral("Perpétuelle") : QStringLiteral("Trentenaire"));
        rs->update();
    }
    Dataset& ds = p.map.addDataset(*p.layer, *rs, QStringLiteral("IdGCF"), QStringLiteral("Theme"));
    rs->close();
    const Features all = p.layer->allFeatures();
    EXPECT_EQ(ds.value(all.at(1), u"etat").toString(), QStringLiteral("Perpétuelle"));
    EXPECT_EQ(ds.value(all.at(3), u"Etat").toString(), QStringLiteral("Trentenaire"));
    EXPECT_FALSE(ds.value(all.at(0), u"Etat").isValid()); // no record for this plot

    Theme& theme = ds.addTheme(ThemeKind::IndividualValues, u"Etat", QStringLiteral("Theme"));
    ASSERT_EQ(theme.categories().size(), 2u);
    EXPECT_EQ(theme.legend.texts, (std::vector<QString>{"Perpétuelle", "Trentenaire"}));
    EXPECT_EQ(theme.categoryOf(all.at(3)), 1);
    EXPECT_EQ(theme.categoryOf(all.at(0)), -1);
    EXPECT_EQ(ds.theme(u"theme"), &theme);
}

TEST(Dataset, RangesSplitNumbersAndGroupTexts) {
    Plots p;
    Dataset& ds = p.map.addDataset(*p.layer, QStringLiteral("Theme"));
    const Theme& flags = ds.addTheme(ThemeKind::Ranges, u"Booleen", QStringLiteral("Theme"));
    ASSERT_EQ(flags.categories().size(), 2u);
    EXPECT_EQ(flags.categoryOf(p.layer->feature(1)), 0); // "F" sorts first
    const Theme& ids = ds.addTheme(ThemeKind::Ranges, u"IDGCF", QStringLiteral("Ids"));
    ASSERT_EQ(ids.categories().size(), 5u);
    EXPECT_EQ(ids.categoryOf(p.layer->feature(1)), 0);
    EXPECT_EQ(ids.categoryOf(p.layer->feature(6)), 4); // the maximum is in the last range
}

TEST(Dataset, ARecordSetStaysBoundToTheColumnItWasMadeOn) {
    Plots p;
    auto rs = recordset::fromFieldSpec(u"Cle N,Etat C(20)");
    for (const auto& [id, etat] : {std::pair{101, "A"}, {104, "B"}}) {
        rs->addNew();
        rs->setValue(u"Cle", id);
        rs->setValue(u"Etat", QString::fromLatin1(etat));
        rs->update();
    }
    rs->addNew(); // a record without a key designates no plot, not the plots without one
    rs->setValue(u"Etat", QStringLiteral("C"));
    rs->update();
    Dataset& ds = p.map.addDataset(*p.layer, *rs, QStringLiteral("Cle"), QStringLiteral("Theme"));
    EXPECT_EQ(ds.bindField(), QStringLiteral("IDGCF"));
    // The key column moves on (a plot shown in the side panel): the records do not follow.
    p.layer->setKeyField(QStringLiteral("Booleen"));
    const Feature second = p.layer->feature(2);
    EXPECT_EQ(ds.value(second, u"Etat").toString(), QStringLiteral("A"));

    // A plot that takes a known key takes its record; the one that loses it loses it.
    Feature f = p.layer->feature(1);
    f.setAttribute(u"IDGCF", 104);
    p.layer->updateFeature(f);
    Feature g = p.layer->feature(5);
    g.setAttribute(u"IDGCF", QVariant());
    p.layer->updateFeature(g);
    EXPECT_EQ(ds.value(p.layer->feature(1), u"Etat").toString(), QStringLiteral("B"));
    EXPECT_FALSE(ds.value(p.layer->feature(5), u"Etat").isValid());

    // Named explicitly, and refused when the layer has no such column.
    Dataset& parFid =
        p.map.addDataset(*p.layer, *rs, QStringLiteral("Cle"), QStringLiteral("Fid"), {});
    EXPECT_EQ(parFid.bindField(), QStringLiteral("Booleen"));
    EXPECT_THROW(p.map.addDataset(*p.layer, *rs, QStringLiteral("Cle"), QStringLiteral("Theme"),
                                  QStringLiteral("Absente")),
                 veldra::Erreur);
    EXPECT_THROW(p.map.addDataset(*p.layer, *rs, QStringLiteral("Absente"), QStringLiteral("Theme"),
                                  QStringLiteral("IDGCF")),
                 veldra::Erreur);
    EXPECT_EQ(p.map.dataset(u"Theme"), &ds); // the failed calls left the map as it was
}

TEST(Dataset, AThemeOfThousandsOfValuesFindsEachFeaturesCategory) {
    Map map;
    LayerInfo info;
    info.addParameter("Name", QStringLiteral("Tombes"));
    info.addParameter("Fields", FieldList{{"IDGCF", FieldType::Integer, 0}});
    Layer& layer = map.addLayer(info);
    {
        UpdateAccess bracket(map);
        for (int i = 0; i < 10000; ++i) {
            Feature f = layer.addFeature(
                Feature::region({{{double(i), 0}, {i + 1.0, 0}, {i + 1.0, 1}, {double(i), 1}}}));
            f.setAttribute(u"IDGCF", i + 1);
            layer.updateFeature(f);
        }
        bracket.commit();
    }
    auto rs = recordset::fromFieldSpec(u"IdGCF N,Valeur C(20)");
    for (int i = 1; i <= 10000; ++i) {
        rs->addNew();
        rs->setValue(u"IdGCF", i);
        rs->setValue(u"Valeur", QStringLiteral("V%1").arg(i, 5, 10, QLatin1Char('0')));
        rs->update();
    }
    Dataset& ds = map.addDataset(layer, *rs, QStringLiteral("IdGCF"), QStringLiteral("Theme"),
                                 QStringLiteral("IDGCF"));
    const Theme& theme = ds.addTheme(ThemeKind::IndividualValues, u"Valeur", QStringLiteral("T"));
    ASSERT_EQ(theme.categories().size(), 10000u);
    int wrong = 0;
    layer.forEachFeature([&](const Feature& f) {
        const int c = theme.categoryOf(f);
        wrong += c < 0 || theme.categories()[size_t(c)].value.toString() !=
                              ds.value(f, u"Valeur").toString();
    });
    EXPECT_EQ(wrong, 0);
}
