// Plans imported from the formats towns keep them in, written here with OGR: Shapefile,
// GeoJSON, DXF, MapInfo TAB and a GeoPackage with curves; and what is refused.
#include "carto/model/map.h"
#include "veldra-plan/plan_tool.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <ogrsf_frmts.h>

using namespace veldra::plantool;

namespace {

struct Champ {
    const char* nom;
    OGRFieldType type;
};

// A source written by OGR: one layer at a time, features from WKT and values.
class Source {
public:
    Source(const char* driver, const QString& path, const char* const* options = nullptr) {
        GDALAllRegister();
        ds_.reset(GetGDALDriverManager()->GetDriverByName(driver)->Create(
            path.toUtf8().constData(), 0, 0, 0, GDT_Unknown, const_cast<char**>(options)));
        EXPECT_NE(ds_, nullptr) << driver;
    }
    OGRLayer* couche(const char* nom, OGRwkbGeometryType type, std::vector<Champ> champs,
                     const char* const* options = nullptr) {
        OGRLayer* l = ds_->CreateLayer(nom, nullptr, type, const_cast<char**>(options));
        EXPECT_NE(l, nullptr) << nom;
        for (const Champ& c : champs) {
            OGRFieldDefn d(c.nom, c.type);
            EXPECT_EQ(l->CreateField(&d), OGRERR_NONE) << c.nom;
        }
        return l;
    }
    static void ajoute(OGRLayer* l, const char* wkt,
                       std::vector<std::pair<const char*, QString>> valeurs = {},
                       const char* style = nullptr) {
        OGRFeature f(l->GetLayerDefn());
        OGRGeometry* g = nullptr;
        EXPECT_EQ(OGRGeometryFactory::createFromWkt(wkt, nullptr, &g), OGRERR_NONE) << wkt;
        f.SetGeometryDirectly(g);
        for (const auto& [nom, valeur] : valeurs)
            f.SetField(nom, valeur.toUtf8().constData());
        if (style)
            f.SetStyleString(style);
        EXPECT_EQ(l->CreateFeature(&f), OGRERR_NONE) << wkt;
    }
    void ferme() { ds_.reset(); }

private:
    GDALDatasetUniquePtr ds_;
};

QString rect(double x, double y, double w, double h) {
    return QStringLiteral("POLYGON((%1 %2,%3 %2,%3 %4,%1 %4,%1 %2))")
        .arg(x)
        .arg(y)
        .arg(x + w)
        .arg(y + h);
}

struct Import : ::testing::Test {
    QTemporaryDir dir;
    QString chemin(const char* nom) const { return dir.filePath(QString::fromUtf8(nom)); }
    ImportReport importe(const QString& source, std::vector<std::pair<QString, QString>> map = {},
                         std::vector<std::pair<QString, QString>> champs = {}) {
        ImportOptions o;
        o.source = source;
        o.destination = chemin("Plan.gpkg");
        o.layers = std::move(map);
        o.fields = std::move(champs);
        return importPlan(o);
    }
    QString refus(const QString& source, std::vector<std::pair<QString, QString>> map = {},
                  std::vector<std::pair<QString, QString>> champs = {}) {
        try {
            importe(source, std::move(map), std::move(champs));
        } catch (const veldra::Erreur& e) {
            // Nothing written, not even a stage.
            EXPECT_FALSE(QFile::exists(chemin("Plan.gpkg")));
            EXPECT_EQ(QDir(dir.path())
                          .entryList({QStringLiteral(".*partiel*")}, QDir::Files | QDir::Hidden),
                      QStringList());
            return e.description();
        }
        ADD_FAILURE() << "importé";
        return {};
    }
};

} // namespace

TEST_F(Import, ShapefileLayersAndColumnsMappedWithInvalidPlotsRepaired) {
    {
        Source shp("ESRI Shapefile", chemin("sig"));
        OGRLayer* parcelles =
            shp.couche("PARCELLES", wkbPolygon, {{"NUM", OFTInteger}, {"FAMILLE", OFTString}});
        for (int i = 0; i < 6; ++i)
            Source::ajoute(
                parcelles, rect(10 + 3 * i, 10, 2, 2.5).toUtf8().constData(),
                {{"NUM", QString::number(i + 1)}, {"FAMILLE", QStringLiteral("Martin")}});
        // A bow tie: invalid, repaired. A name longer than the plan's column: cut.
        Source::ajoute(
            parcelles, "POLYGON((40 10,42 12.5,42 10,40 12.5,40 10))",
            {{"NUM", QStringLiteral("7")},
             {"FAMILLE", QStringLiteral("Famille au nom bien trop long pour la colonne")}});
        OGRLayer* sections = shp.couche("SECTIONS", wkbPolygon, {{"NOM", OFTString}});
        Source::ajoute(sections, rect(5, 5, 45, 15).toUtf8().constData(),
                       {{"NOM", QStringLiteral("A")}});
    }
    const ImportReport r = importe(chemin("sig"),
                                   {{QStringLiteral("Tombes"), QStringLiteral("PARCELLES")},
                                    {QStringLiteral("Sections"), QStringLiteral("SECTIONS")}},
                                   {{QStringLiteral("Numero"), QStringLiteral("NUM")},
                                    {QStringLiteral("Tombes.Nom"), QStringLiteral("FAMILLE")}});
    carto::Map m;
    m.loadMapSet(chemin("Plan.gpkg"));
    const carto::Layer& tombes = m.requireLayer(u"Tombes");
    ASSERT_EQ(tombes.featureCount(), 7);
    int repares = 0;
    tombes.forEachFeature([&](const carto::Feature& f) {
        EXPECT_TRUE(f.geometry().isValid());
        repares += f.attribute(u"Numero").toString() == QLatin1String("7");
    });
    EXPECT_EQ(repares, 1);
    EXPECT_EQ(tombes.feature(1).attribute(u"Nom").toString(), "Martin");
    EXPECT_EQ(tombes.feature(7).attribute(u"Nom").toString().size(), 32);
    EXPECT_EQ(m.requireLayer(u"Sections").feature(1).attribute(u"Nom").toString(), "A");
    // Every plot has its number label; the enclosure is drawn around everything.
    EXPECT_EQ(m.requireLayer(u"Numeros").featureCount(), 7);
    EXPECT_EQ(m.requireLayer(u"Enceinte").featureCount(), 1);
    EXPECT_TRUE(
        m.requireLayer(u"Enceinte").bounds().contains(m.requireLayer(u"Sections").bounds()));
    // The plan opens in the control's layer order.
    EXPECT_EQ(m.layerAt(0)->name(), "Enceinte");
    EXPECT_EQ(m.layerAt(3)->name(), "Décor");

    const QString resume = r.summary();
    EXPECT_TRUE(resume.contains(u"Tombes (de « PARCELLES ») : 7 importé(s), 1 réparé(s)"))
        << qPrintable(resume);
    EXPECT_TRUE(resume.contains(u"1 texte(s) coupé(s)"));
    EXPECT_TRUE(resume.contains(u"Enceinte : tracée"));
    EXPECT_TRUE(resume.contains(u"7 numéro(s) placé(s)"));
}

TEST_F(Import, GeoJsonIn3DWithLongColumnNamesAndWrongKindsSkipped) {
    const QByteArray longNom(200, 'n');
    {
        Source js("GeoJSON", chemin("Tombes.geojson"));
        OGRLayer* l = js.couche("Tombes", wkbUnknown, {{longNom.constData(), OFTString}});
        Source::ajoute(l, "POLYGON Z((0 0 5,2 0 5,2 3 5,0 3 5,0 0 5))",
                       {{longNom.constData(), QStringLiteral("12")}});
        Source::ajoute(l, "POLYGON Z((4 0 5,6 0 5,6 3 5,4 3 5,4 0 5))",
                       {{longNom.constData(), QStringLiteral("13")}});
        Source::ajoute(l, "POINT(9 9)", {{longNom.constData(), QStringLiteral("14")}});
        Source::ajoute(l, "LINESTRING(0 9,5 9)");
    }
    const ImportReport r = importe(chemin("Tombes.geojson"), {},
                                   {{QStringLiteral("Numero"), QString::fromLatin1(longNom)}});
    carto::Map m;
    m.loadMapSet(chemin("Plan.gpkg"));
    const carto::Layer& tombes = m.requireLayer(u"Tombes");
    ASSERT_EQ(tombes.featureCount(), 2);
    EXPECT_EQ(tombes.feature(2).attribute(u"Numero").toString(), "13");
    EXPECT_DOUBLE_EQ(tombes.feature(1).area(), 6);
    const QString resume = r.summary();
    EXPECT_TRUE(resume.contains(u"2 en 3D ramené(s) en 2D")) << qPrintable(resume);
    EXPECT_TRUE(resume.contains(u"ignoré(s) : 2 (pas une surface)")) << qPrintable(resume);
}

TEST_F(Import, DxfLayersAreTheEntitiesLayerColumnAndClosedPolylinesBecomePlots) {
    {
        Source dxf("DXF", chemin("plan.dxf"));
        OGRLayer* e = dxf.couche("entities", wkbUnknown, {});
        const int layer = e->GetLayerDefn()->GetFieldIndex("Layer");
        ASSERT_GE(layer, 0);
        const auto ligne = [&](const char* wkt, const char* calque) {
            Source::ajoute(e, wkt, {{"Layer", QString::fromLatin1(calque)}});
        };
        ligne("LINESTRING(0 0,30 0,30 20,0 20,0 0)", "MUR");
        ligne("LINESTRING(2 2,4 2,4 5,2 5,2 2)", "TOMBES");
        ligne("LINESTRING(6 2,8 2,8 5,6 5,6 2)", "TOMBES");
        ligne("LINESTRING(10 2,12 2,12 5)", "TOMBES"); // open: not a plot
    }
    const ImportReport r =
        importe(chemin("plan.dxf"), {{QStringLiteral("Tombes"), QStringLiteral("TOMBES")},
                                     {QStringLiteral("Enceinte"), QStringLiteral("MUR")}});
    carto::Map m;
    m.loadMapSet(
        chemin("plan.dxf").replace(QStringLiteral("plan.dxf"), QStringLiteral("Plan.gpkg")));
    EXPECT_EQ(m.requireLayer(u"Tombes").featureCount(), 2);
    EXPECT_DOUBLE_EQ(m.requireLayer(u"Enceinte").feature(1).area(), 600);
    EXPECT_FALSE(r.enclosureDrawn);
    EXPECT_TRUE(r.summary().contains(u"2 polyligne(s) fermée(s) changée(s) en surface"))
        << qPrintable(r.summary());
}

TEST_F(Import, MapInfoTablesKeepTheirStylesAndGeoPackageCurvesAreStraightened) {
    {
        const char* const bornes[] = {"BOUNDS=-1000,-1000,1000,1000", nullptr};
        Source tab("MapInfo File", chemin("Tombes.tab"));
        OGRLayer* l = tab.couche("Tombes", wkbPolygon, {{"Numero", OFTString}}, bornes);
        Source::ajoute(
            l, rect(0, 0, 2, 3).toUtf8().constData(), {{"Numero", QStringLiteral("4")}},
            "BRUSH(fc:#ff0000,bc:#ffffff,id:\"mapinfo-brush-2,ogr-brush-0\");PEN(c:#000000,w:1px)");
    }
    importe(chemin("Tombes.tab"));
    {
        carto::Map m;
        m.loadMapSet(chemin("Plan.gpkg"));
        const carto::Feature f = m.requireLayer(u"Tombes").feature(1);
        EXPECT_EQ(f.attribute(u"Numero").toString(), "4");
        EXPECT_EQ(f.style().regionColor, 0x0000FFu); // red, in the plan's 0x00BBGGRR form
    }
    QFile::remove(chemin("Plan.gpkg"));
    {
        Source gpkg("GPKG", chemin("courbes.gpkg"));
        OGRLayer* l = gpkg.couche("Sections", wkbCurvePolygon, {{"Nom", OFTString}});
        Source::ajoute(l, "CURVEPOLYGON(CIRCULARSTRING(0 0,10 0,0 0))",
                       {{"Nom", QStringLiteral("Rond")}});
    }
    const ImportReport r = importe(chemin("courbes.gpkg"));
    carto::Map m;
    m.loadMapSet(chemin("Plan.gpkg"));
    const carto::Feature rond = m.requireLayer(u"Sections").feature(1);
    EXPECT_GT(rond.parts().front().size(), 20u);
    EXPECT_NEAR(rond.area(), 3.14159 * 25, 1);
    EXPECT_TRUE(r.summary().contains(u"1 courbe(s) remplacée(s)")) << qPrintable(r.summary());
}

TEST_F(Import, BadSourcesAndMappingsAreRefusedWithNothingWritten) {
    {
        Source js("GeoJSON", chemin("autre.geojson"));
        OGRLayer* l = js.couche("autre", wkbPolygon, {{"NUM", OFTString}});
        Source::ajoute(l, rect(0, 0, 2, 2).toUtf8().constData());
    }
    const QString source = chemin("autre.geojson");
    EXPECT_TRUE(refus(source).contains(u"Aucune couche de la source ne correspond"));
    EXPECT_TRUE(refus(source, {{QStringLiteral("Tombes"), QStringLiteral("ABSENTE")}})
                    .contains(u"pas de couche « ABSENTE »"));
    EXPECT_TRUE(refus(source, {{QStringLiteral("Cimetiere"), QStringLiteral("autre")}})
                    .contains(u"le plan n'a pas de couche"));
    EXPECT_TRUE(refus(source, {{QStringLiteral("Tombes"), QStringLiteral("autre")}},
                      {{QStringLiteral("Numero"), QStringLiteral("ABSENT")}})
                    .contains(u"pas de colonne « ABSENT »"));
    EXPECT_TRUE(refus(source, {{QStringLiteral("Tombes"), QStringLiteral("autre")}},
                      {{QString(200, u'x'), QStringLiteral("NUM")}})
                    .contains(u"le plan n'a pas de colonne"));
    EXPECT_TRUE(refus(chemin("absente.shp")).contains(u"introuvable"));
    // An existing plan is never replaced.
    QFile existant(chemin("Plan.gpkg"));
    ASSERT_TRUE(existant.open(QIODevice::WriteOnly));
    existant.write("plan");
    existant.close();
    try {
        importe(source, {{QStringLiteral("Tombes"), QStringLiteral("autre")}});
        ADD_FAILURE() << "remplacé";
    } catch (const veldra::Erreur& e) {
        EXPECT_TRUE(e.description().contains(u"existe déjà"));
    }
    ASSERT_TRUE(existant.open(QIODevice::ReadOnly));
    EXPECT_EQ(existant.readAll(), "plan");
}
