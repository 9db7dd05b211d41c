// A plan copied from one GeoPackage to another: nothing lost, the scanned plan still
// found, and never over an existing file. (Copies through a database: tests/postgis.)
#include "carto/model/map.h"
#include "plans_egaux.h"
#include "veldra-plan/plan_tool.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace veldra::plantool;

TEST(CopyPlan, AnotherFolderKeepsEverythingAndFindsTheImage) {
    QTemporaryDir dir;
    SampleOptions o;
    o.plots = 90;
    const QString plan = generateSamplePlan(dir.filePath(QStringLiteral("a")), o);
    const QString copie = dir.filePath(QStringLiteral("b/Copie.gpkg"));
    const CopyReport r = copyPlan(plan, copie);
    EXPECT_EQ(r.layers, 8);
    EXPECT_EQ(r.rasters, 1);
    carto::Map a, b;
    a.loadMapSet(plan);
    b.loadMapSet(copie);
    expectSamePlans(a, b);
    EXPECT_TRUE(QFile::exists(b.layerAt(0)->rasterSource()));
    EXPECT_TRUE(r.summary().contains(u"8 couche(s)")) << qPrintable(r.summary());

    try {
        copyPlan(plan, copie);
        ADD_FAILURE() << "copié par-dessus";
    } catch (const veldra::Erreur& e) {
        EXPECT_TRUE(e.description().contains(u"existe déjà"));
    }
    try {
        copyPlan(dir.filePath(QStringLiteral("rien.gpkg")), dir.filePath(QStringLiteral("c.gpkg")));
        ADD_FAILURE() << "copié de rien";
    } catch (const veldra::Erreur& e) {
        EXPECT_TRUE(e.description().contains(u"introuvable"));
    }
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("c.gpkg"))));
}
