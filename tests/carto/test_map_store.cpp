// Opening map sets and writing through to them.
#include "base/erreur.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"
#include "carto/storage/map_store.h"
#include "plan_fixture.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace carto;
namespace err = veldra::err;

namespace {

qint32 openError(const QString& path) {
    Map map;
    try {
        map.loadMapSet(path);
    } catch (const veldra::Erreur& e) {
        return e.numero();
    }
    return 0;
}

QStringList names(const Map& map) {
    QStringList out;
    for (const Layer* l : map.layers())
        out << l->name();
    return out;
}

} // namespace

TEST(MapStore, OpensAPlanInItsDrawingOrder) {
    PlanFixture plans;
    Map map;
    map.loadMapSet(plans.sample(60));
    EXPECT_EQ(names(map), (QStringList{"Enceinte", "Sections", "Allées", "Décor", "Tombes",
                                       "Numeros", "Texte"}));
    const Layer& plots = map.requireLayer(u"Tombes");
    EXPECT_EQ(plots.featureCount(), 60);
    EXPECT_GE(plots.fieldIndex(u"idgcf"), 0);
    EXPECT_LT(plots.fieldIndex(u"OGR_STYLE"), 0); // styles are not attributes
    const Layer& numbers = map.requireLayer(u"Numeros");
    ASSERT_EQ(numbers.featureCount(), 60);
    const Feature label = numbers.allFeatures().at(0);
    EXPECT_EQ(label.kind(), FeatureKind::Text);
    EXPECT_FALSE(label.text().isEmpty());
    // The label lies on a plot carrying its number.
    const Features under = map.requireLayer(u"Tombes").searchAtPoint(label.parts()[0][0]);
    ASSERT_EQ(under.count(), 1);
    EXPECT_EQ(under.at(0).attribute(u"Numero").toString(), label.text());
    // Sections are drawn as the plan says.
    const Feature section = map.requireLayer(u"Sections").allFeatures().at(0);
    EXPECT_EQ(section.style().regionBorderColor, 255);
    EXPECT_EQ(section.style().regionColor, 0xC0C0FF);
}

TEST(MapStore, EditsAreWrittenThroughAndSurviveReopening) {
    PlanFixture plans;
    const QString path = plans.sample(30);
    qint64 added = -1, changed = -1, removed = -1;
    {
        Map map;
        map.loadMapSet(path);
        Layer& plots = map.requireLayer(u"Tombes");
        Style s;
        s.regionColor = 0x123456;
        s.regionPattern = pattern::Horizontal;
        Feature f = plots.addFeature(Feature::region({{{0, 0}, {1, 0}, {1, 2}, {0, 2}}}, s));
        added = f.fid();
        f.setAttribute(u"Nom", QStringLiteral("Dupont"));
        plots.updateFeature(f);
        Feature g = plots.allFeatures().at(0);
        changed = g.fid();
        g.setAttribute(u"IDGCF", 4242);
        g.offset(1, 0);
        plots.updateFeature(g);
        removed = plots.allFeatures().at(1).fid();
        plots.deleteFeature(removed);
        Layer& texts = map.requireLayer(u"Texte");
        texts.addFeature(Feature::textAt({5, 5}, QStringLiteral("Chapelle Saint-Jean")));
    }
    Map map;
    map.loadMapSet(path);
    const Layer& plots = map.requireLayer(u"Tombes");
    EXPECT_EQ(plots.featureCount(), 30);
    EXPECT_EQ(plots.feature(added).attribute(u"Nom").toString(), QStringLiteral("Dupont"));
    EXPECT_EQ(plots.feature(added).style().regionColor, 0x123456);
    EXPECT_EQ(plots.feature(added).style().regionPattern, pattern::Horizontal);
    EXPECT_EQ(plots.feature(changed).attribute(u"IDGCF").toInt(), 4242);
    EXPECT_FALSE(plots.hasFeature(removed));
    EXPECT_EQ(map.requireLayer(u"Texte").search(u"Texte = \"Chapelle Saint-Jean\"").count(), 1);
}

TEST(MapStore, AnUpdateBracketIsOneTransaction) {
    PlanFixture plans;
    const QString path = plans.sample(20);
    Map map;
    map.loadMapSet(path);
    Layer& plots = map.requireLayer(u"Tombes");
    plots.beginAccess(1);
    EXPECT_EQ(map.store()->transactionDepth(), 1);
    for (Feature f : plots.allFeatures()) {
        f.setAttribute(u"CLETOMBE", QStringLiteral("X"));
        plots.updateFeature(f);
    }
    EXPECT_EQ(map.store()->transactionDepth(), 1);
    {
        // Another connection does not see the open bracket.
        Map other;
        other.loadMapSet(path);
        EXPECT_EQ(other.requireLayer(u"Tombes").search(u"CLETOMBE = \"X\"").count(), 0);
    }
    plots.endAccess();
    EXPECT_EQ(map.store()->transactionDepth(), 0);
    Map after;
    after.loadMapSet(path);
    EXPECT_EQ(after.requireLayer(u"Tombes").search(u"CLETOMBE = \"X\"").count(), 20);
    EXPECT_THROW(plots.endAccess(), veldra::Erreur);
    EXPECT_THROW(plots.beginAccess(3), veldra::Erreur);
}

// A change of attributes alone takes a shorter way to the file than one that moves the
// plot: both must leave the same values, and a failed bracket must undo either.
TEST(MapStore, AttributeChangesAloneAreStoredAsWholeWritesAre) {
    PlanFixture plans;
    const QString path = plans.sample(10);
    const std::vector<std::pair<QString, QVariant>> values{
        {QStringLiteral("Nom"), QStringLiteral("")}, // empty, not null
        {QStringLiteral("Numero"), QVariant()},      // null
        {QStringLiteral("AngleNumero"), 12.5},
        {QStringLiteral("IDGCF"), 2147483647},
        {QStringLiteral("CLETOMBE"), QStringLiteral("Clé « n°7 »")}};
    qint64 alone = -1, moved = -1, undone = -1;
    QVariant undoneName;
    {
        Map map;
        map.loadMapSet(path);
        Layer& plots = map.requireLayer(u"Tombes");
        const Features all = plots.allFeatures();
        Feature a = all.at(0), m = all.at(1), u = all.at(2);
        alone = a.fid(), moved = m.fid(), undone = u.fid();
        undoneName = u.attribute(u"Nom");
        for (const auto& [column, value] : values) {
            a.setAttribute(column, value);
            m.setAttribute(column, value);
        }
        m.offset(0.5, 0);
        plots.beginAccess(1);
        plots.updateFeature(a);
        plots.updateFeature(m);
        plots.endAccess();
        try {
            UpdateAccess bracket(map);
            u.setAttribute(u"Nom", QStringLiteral("Perdu"));
            plots.updateFeature(u);
            throw veldra::Erreur(err::AppelIncorrect, QStringLiteral("interrompu"));
        } catch (const veldra::Erreur&) {
        }
        EXPECT_EQ(plots.feature(undone).attribute(u"Nom"), undoneName);
    }
    Map map;
    map.loadMapSet(path);
    const Layer& plots = map.requireLayer(u"Tombes");
    for (const auto& [column, value] : values) {
        const QVariant a = plots.feature(alone).attribute(column);
        const QVariant m = plots.feature(moved).attribute(column);
        EXPECT_EQ(a.isNull(), m.isNull()) << column.toStdString();
        EXPECT_EQ(a, m) << column.toStdString();
    }
    EXPECT_TRUE(plots.feature(alone).attribute(u"Numero").isNull());
    EXPECT_FALSE(plots.feature(alone).attribute(u"Nom").isNull());
    EXPECT_EQ(plots.feature(alone).attribute(u"AngleNumero").toDouble(), 12.5);
    EXPECT_EQ(plots.feature(alone).attribute(u"CLETOMBE").toString(),
              QStringLiteral("Clé « n°7 »"));
    EXPECT_EQ(plots.feature(undone).attribute(u"Nom"), undoneName);
    // The plot whose attributes alone changed is still found where it lies.
    const Feature a = plots.feature(alone);
    const Features there = plots.searchAtPoint(a.centre());
    ASSERT_EQ(there.count(), 1);
    EXPECT_EQ(there.at(0).fid(), alone);
}

TEST(MapStore, BadSourcesGiveClearErrors) {
    PlanFixture plans;
    EXPECT_EQ(openError(plans.dir.filePath("absent.gpkg")), err::PlanIllisible);
    QFile text(plans.dir.filePath("texte.gpkg"));
    ASSERT_TRUE(text.open(QIODevice::WriteOnly));
    text.write("ceci n'est pas un plan\n");
    text.close();
    EXPECT_EQ(openError(text.fileName()), err::PlanIllisible);

    // A plan cut short after its first pages.
    const QString path = plans.sample(200);
    QFile whole(path);
    ASSERT_TRUE(whole.open(QIODevice::ReadOnly));
    const QByteArray head = whole.read(whole.size() / 3);
    QFile cut(plans.dir.filePath("tronque.gpkg"));
    ASSERT_TRUE(cut.open(QIODevice::WriteOnly));
    cut.write(head);
    cut.close();
    EXPECT_NE(openError(cut.fileName()), 0);
}

TEST(MapStore, AFailedLoadKeepsThePreviousMapSet) {
    PlanFixture plans;
    Map map;
    map.loadMapSet(plans.sample(10));
    map.addLayer([] {
        LayerInfo info;
        info.addParameter("Name", QStringLiteral("My_Temp_Layer"));
        return info;
    }());
    EXPECT_THROW(map.loadMapSet(plans.dir.filePath("absent.gpkg")), veldra::Erreur);
    EXPECT_EQ(map.requireLayer(u"Tombes").featureCount(), 10);
    map.loadMapSet(plans.empty());
    EXPECT_EQ(map.layer(u"My_Temp_Layer"), nullptr); // a new map set discards the old layers
    EXPECT_EQ(map.requireLayer(u"Tombes").featureCount(), 0);
}
