// A plan in PostGIS opens through the same engine as a GeoPackage and loses nothing on its
// way there and back; its update brackets are transactions of the server.
#include "carto/model/update_access.h"
#include "pg_fixture.h"
#include "plans_egaux.h"

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

using carto::Map;
using carto::UpdateAccess;

TEST_F(PgTest, CopiedPlanOpensAsTheGeoPackageDoes) {
    const QString fichier = echantillon(150, true);
    const QString base = enBase(fichier);
    Map a, b;
    a.loadMapSet(fichier);
    b.loadMapSet(base);
    expectSamePlans(a, b);
    // The drawing order of mapset_layers, the scanned plan first, as a file reference.
    EXPECT_EQ(b.layerAt(0)->name(), "Raster");
    EXPECT_EQ(b.layerAt(0)->rasterSource(), dir.filePath(QStringLiteral("Exemple.tif")));
    EXPECT_EQ(b.layerAt(4)->name(), "Décor");
    EXPECT_EQ(b.requireLayer(u"Numeros").textField(), "Texte");
}

TEST_F(PgTest, BackToAGeoPackageLosesNothing) {
    const QString fichier = echantillon(150, true);
    const QString base = enBase(fichier);
    const QString retour = dir.filePath(QStringLiteral("Retour.gpkg"));
    const auto r = veldra::plantool::copyPlan(base, retour);
    EXPECT_EQ(r.layers, 8);
    EXPECT_EQ(r.rasters, 1);
    Map a, c;
    a.loadMapSet(fichier);
    c.loadMapSet(retour);
    expectSamePlans(a, c);
    // The image lies beside the plan: the reference is relative again.
    GDALDatasetUniquePtr ds(GDALDataset::Open(retour.toUtf8().constData(), GDAL_OF_VECTOR));
    OGRLayer* ordre =
        ds->ExecuteSQL("SELECT source FROM mapset_layers WHERE position = 1", nullptr, nullptr);
    ASSERT_NE(ordre, nullptr);
    const OGRFeatureUniquePtr ligne(ordre->GetNextFeature());
    EXPECT_STREQ(ligne->GetFieldAsString(0), "Exemple.tif");
    ds->ReleaseResultSet(ordre);
}

TEST_F(PgTest, BracketsAreTransactionsSeenOnReopen) {
    const QString base = enBase(200);
    Map m;
    m.loadMapSet(base);
    carto::Layer& tombes = m.requireLayer(u"Tombes");
    carto::Feature plot = tombes.feature(3);
    const qint64 avant = tombes.featureCount();
    qint64 ajout = -1;
    {
        UpdateAccess access(m);
        plot.setAttribute(u"Nom", QStringLiteral("Famille Laurent"));
        plot.setAttribute(u"IDGCF", 4242);
        tombes.updateFeature(plot);
        ajout = tombes.addFeature(carto::Feature::region({{{1, 1}, {3, 1}, {3, 4}, {1, 4}}})).fid();
        tombes.deleteFeature(qint64(8));
        access.commit();
    }
    EXPECT_EQ(relu(base, 3, "Nom").toString(), "Famille Laurent");
    EXPECT_EQ(relu(base, 3, "IDGCF").toInt(), 4242);
    Map autre;
    autre.loadMapSet(base);
    const carto::Layer& vu = autre.requireLayer(u"Tombes");
    EXPECT_EQ(vu.featureCount(), avant);
    EXPECT_TRUE(vu.hasFeature(ajout));
    EXPECT_FALSE(vu.hasFeature(8));

    // A bracket left by an error keeps nothing, in the server or in memory.
    try {
        UpdateAccess access(m);
        plot = tombes.feature(3);
        plot.setAttribute(u"Nom", QStringLiteral("Jamais"));
        tombes.updateFeature(plot);
        tombes.deleteFeature(ajout);
        throw veldra::Erreur(veldra::err::ErreurInterne, QStringLiteral("abandon"));
    } catch (const veldra::Erreur&) {
    }
    EXPECT_EQ(tombes.feature(3).attribute(u"Nom").toString(), "Famille Laurent");
    EXPECT_TRUE(tombes.hasFeature(ajout));
    EXPECT_EQ(relu(base, 3, "Nom").toString(), "Famille Laurent");
    autre.loadMapSet(base);
    EXPECT_TRUE(autre.requireLayer(u"Tombes").hasFeature(ajout));
}

TEST_F(PgTest, ThousandsOfUpdatesInOneBracketAllReachTheServer) {
    const QString base = enBase(1300);
    Map m;
    m.loadMapSet(base);
    carto::Layer& tombes = m.requireLayer(u"Tombes");
    {
        UpdateAccess access(m);
        tombes.forEachFeature([&](carto::Feature f) {
            f.setAttribute(u"Nom", QStringLiteral("N°%1 l'été").arg(f.fid()));
            f.setAttribute(u"AngleNumero", 12.5);
            f.offset(0.25, 0);
            tombes.updateFeature(f);
        });
        access.commit();
    }
    Map relue;
    relue.loadMapSet(base);
    const carto::Layer& vu = relue.requireLayer(u"Tombes");
    ASSERT_EQ(vu.featureCount(), tombes.featureCount());
    int differentes = 0;
    tombes.forEachFeature([&](const carto::Feature& f) {
        const carto::Feature g = vu.feature(f.fid());
        differentes += g.attribute(u"Nom") != f.attribute(u"Nom") ||
                       g.attribute(u"AngleNumero").toDouble() != 12.5 || g.parts() != f.parts();
    });
    EXPECT_EQ(differentes, 0);
    EXPECT_EQ(vu.feature(7).attribute(u"Nom").toString(), "N°7 l'été");
}
