// A GeoPackage's rows read a batch of columns at a time hold exactly what the same rows
// read feature by feature hold; a layer with columns of other kinds is read feature by
// feature, and still opens whole.
#include "carto/model/map.h"
#include "carto/storage/arrow_rows.h"
#include "carto/storage/gdal_handles.h"
#include "carto/storage/geometry_read.h"
#include "plan_fixture.h"

#include <QDateTime>
#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <memory>
#include <ogrsf_frmts.h>

using namespace carto;

namespace {

std::unique_ptr<GDALDataset> openForUpdate(const QString& path) {
    GDALAllRegister();
    return std::unique_ptr<GDALDataset>(
        GDALDataset::Open(path.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
}

void addFeature(OGRLayer& layer, const char* wkt, const char* name) {
    OGRFeature f(layer.GetLayerDefn());
    if (wkt) {
        OGRGeometry* g = nullptr;
        ASSERT_EQ(OGRGeometryFactory::createFromWkt(wkt, nullptr, &g), OGRERR_NONE);
        f.SetGeometryDirectly(g);
    }
    if (name)
        f.SetField("Nom", name);
    ASSERT_EQ(layer.CreateFeature(&f), OGRERR_NONE);
}

// A field as the feature-by-feature read gives it.
QVariant valueOf(const OGRFeature& f, int i) {
    if (!f.IsFieldSetAndNotNull(i))
        return {};
    switch (f.GetFieldDefnRef(i)->GetType()) {
    case OFTInteger:
        return f.GetFieldAsInteger(i);
    case OFTInteger64:
        return qlonglong(f.GetFieldAsInteger64(i));
    case OFTReal:
        return f.GetFieldAsDouble(i);
    default:
        return QString::fromUtf8(f.GetFieldAsString(i));
    }
}

} // namespace

TEST(ArrowRows, HoldWhatTheFeatureByFeatureReadHolds) {
    PlanFixture plans;
    const QString path = plans.sample(300);
    {
        auto ds = openForUpdate(path);
        ASSERT_TRUE(ds);
        OGRLayer& plots = *ds->GetLayerByName("Tombes");
        OGRFieldDefn big("Grand", OFTInteger64);
        ASSERT_EQ(plots.CreateField(&big), OGRERR_NONE);
        addFeature(plots, nullptr, "sans forme");
        addFeature(plots, "CURVEPOLYGON (CIRCULARSTRING (0 0,2 0,2 2,0 2,0 0))", "courbe");
        addFeature(plots, "MULTIPOLYGON (((0 0,1 0,1 1,0 0)),((5 5,6 5,6 6,5 5)))", "Élodie");
        addFeature(plots, "POLYGON Z ((0 0 1,1 0 1,1 1 1,0 0 1))", "");
        ASSERT_EQ(plots.DeleteFeature(7), OGRERR_NONE); // a gap in the FIDs
        ds->ExecuteSQL("UPDATE Tombes SET Nom = 'ab' || char(0) || 'cd', Grand = 5000000000, "
                       "OGR_STYLE = NULL WHERE fid = 3",
                       nullptr, nullptr);
        ds->ExecuteSQL("UPDATE Tombes SET AngleNumero = NULL, IDGCF = NULL WHERE fid = 4", nullptr,
                       nullptr);
        // Values of another type than their column's, as SQLite lets any program store.
        for (const char* sql :
             {"UPDATE Tombes SET IDGCF = 'abc', AngleNumero = 'x', Nom = x'00ff41' WHERE fid = 5",
              "UPDATE Tombes SET IDGCF = 99999999999, Numero = 12.5, OGR_STYLE = 7 WHERE fid = 6",
              "UPDATE Tombes SET IDGCF = 3.9, AngleNumero = '45', geom = x'0102' WHERE fid = 8",
              "UPDATE Tombes SET Grand = 'grand', CLETOMBE = 1e300, geom = NULL WHERE fid = 9"})
            ds->ExecuteSQL(sql, nullptr, nullptr);
    }
    const gdal::QuietErrors quiet;
    auto ds = openForUpdate(path);
    for (OGRLayer* layer : ds->GetLayers()) {
        if (layer->GetLayerDefn()->GetGeomFieldCount() == 0)
            continue;
        SCOPED_TRACE(layer->GetName());
        const OGRFeatureDefn& defn = *layer->GetLayerDefn();
        const int style = defn.GetFieldIndex("OGR_STYLE");
        std::vector<int> fields;
        for (int i = 0; i < defn.GetFieldCount(); ++i)
            if (i != style)
                fields.push_back(i);
        fields.push_back(-1); // a field the layer lacks
        const auto rows = ArrowRows::open(*layer, fields, style);
        ASSERT_TRUE(rows);

        // The columns are read while the features are: each has its own reading.
        auto second = openForUpdate(path);
        OGRLayer& byFeature = *second->GetLayerByName(layer->GetName());
        int count = 0;
        for (auto& f : byFeature) {
            ASSERT_TRUE(rows->next());
            ++count;
            ASSERT_EQ(rows->fid(), f->GetFID());
            FeatureKind kind = FeatureKind::Region, arrowKind = FeatureKind::Region;
            ShapeBuilder expected, shape;
            if (const OGRGeometry* g = f->GetGeometryRef())
                readGeometry(*g, kind, expected);
            if (!rows->geometry().empty()) {
                EXPECT_TRUE(readWkb(rows->geometry(), arrowKind, shape));
            }
            EXPECT_EQ(arrowKind, kind) << f->GetFID();
            EXPECT_EQ(shape.build(), expected.build()) << f->GetFID();
            const char* styleText =
                f->IsFieldSetAndNotNull(style) ? f->GetFieldAsString(style) : "";
            EXPECT_EQ(rows->style(), QByteArrayView(styleText));
            AttributeValues::Builder values;
            for (size_t i = 0; i < rows->fieldCount(); ++i)
                rows->addField(values, i);
            const AttributeValues read = values.build();
            ASSERT_EQ(read.size(), fields.size());
            for (size_t i = 0; i < fields.size(); ++i)
                EXPECT_EQ(read[i], fields[i] < 0 ? QVariant() : valueOf(*f, fields[i]))
                    << f->GetFID() << " " << i;
        }
        EXPECT_FALSE(rows->next());
        EXPECT_FALSE(rows->failed());
        EXPECT_EQ(count, layer->GetFeatureCount());
    }

    // And through the whole load: the text stops at its NUL, the big number holds.
    Map map;
    map.loadMapSet(path);
    const Layer& plots = map.requireLayer(u"Tombes");
    EXPECT_EQ(plots.feature(3).attribute(u"Nom"), QVariant(QStringLiteral("ab")));
    EXPECT_EQ(plots.feature(3).attribute(u"Grand"), QVariant(qlonglong(5000000000)));
    EXPECT_EQ(plots.featureCount(), 300 - 1 + 4);
}

TEST(ArrowRows, ALayerWithOtherKindsOfColumnsIsReadFeatureByFeature) {
    PlanFixture plans;
    const QString path = plans.sample(20);
    {
        auto ds = openForUpdate(path);
        OGRLayer& plots = *ds->GetLayerByName("Tombes");
        OGRFieldDefn date("Achat", OFTDate), flag("Entretenue", OFTInteger);
        flag.SetSubType(OFSTBoolean);
        ASSERT_EQ(plots.CreateField(&date), OGRERR_NONE);
        ASSERT_EQ(plots.CreateField(&flag), OGRERR_NONE);
        std::unique_ptr<OGRFeature> f(plots.GetFeature(2));
        f->SetField("Achat", 1998, 5, 17);
        f->SetField("Entretenue", 1);
        f->SetField("Nom", "Noël");
        ASSERT_EQ(plots.SetFeature(f.get()), OGRERR_NONE);
    }
    {
        const gdal::QuietErrors quiet;
        auto ds = openForUpdate(path);
        OGRLayer& plots = *ds->GetLayerByName("Tombes");
        const OGRFeatureDefn& defn = *plots.GetLayerDefn();
        const int style = defn.GetFieldIndex("OGR_STYLE");
        for (const char* column : {"Achat", "Entretenue"}) {
            const std::vector<int> fields{defn.GetFieldIndex("Nom"), defn.GetFieldIndex(column)};
            EXPECT_FALSE(ArrowRows::open(plots, fields, style)) << column;
        }
        const std::vector<int> plain{defn.GetFieldIndex("Nom")};
        EXPECT_TRUE(ArrowRows::open(plots, plain, style));
    }
    Map map;
    map.loadMapSet(path);
    const Feature plot = map.requireLayer(u"Tombes").feature(2);
    EXPECT_EQ(plot.attribute(u"Achat").toDateTime().date(), QDate(1998, 5, 17));
    EXPECT_EQ(plot.attribute(u"Entretenue").toInt(), 1);
    EXPECT_EQ(plot.attribute(u"Nom").toString(), QStringLiteral("Noël"));
    EXPECT_EQ(map.requireLayer(u"Tombes").featureCount(), 20);
}

// ---- GeoPackages the columnar stream reads wrongly or not at all: the load still gives
// what the feature-by-feature read gives.

namespace {

std::unique_ptr<GDALDataset> createPlan(const QString& path) {
    GDALAllRegister();
    GDALDriver* gpkg = GetGDALDriverManager()->GetDriverByName("GPKG");
    return std::unique_ptr<GDALDataset>(
        gpkg->Create(path.toUtf8().constData(), 0, 0, 0, GDT_Unknown, nullptr));
}

OGRLayer& squares(GDALDataset& ds, const char* name, int columns, int rows) {
    OGRLayer& layer = *ds.CreateLayer(name, nullptr, wkbPolygon, nullptr);
    for (int c = 0; c < columns; ++c) {
        OGRFieldDefn field(QByteArray("C") + QByteArray::number(c), OFTInteger);
        EXPECT_EQ(layer.CreateField(&field), OGRERR_NONE);
    }
    for (int r = 0; r < rows; ++r) {
        OGRFeature f(layer.GetLayerDefn());
        for (int c = 0; c < columns; ++c)
            f.SetField(c, r * 1000 + c);
        const double x = r * 10;
        OGRPolygon poly;
        OGRLinearRing ring;
        for (const auto& [px, py] : {std::pair{x, 0.0}, {x + 4, 0.0}, {x + 4, 4.0}, {x, 0.0}})
            ring.addPoint(px, py);
        poly.addRing(&ring);
        f.SetGeometry(&poly);
        EXPECT_EQ(layer.CreateFeature(&f), OGRERR_NONE);
    }
    return layer;
}

// The layer loaded through the map holds the rows OGR reads one by one, shapes and fields.
void expectLoadedAsReadOneByOne(const QString& path, const char* name) {
    Map map;
    map.loadMapSet(path);
    const Layer& loaded = map.requireLayer(QString::fromUtf8(name));
    const gdal::QuietErrors quiet;
    auto ds = openForUpdate(path);
    OGRLayer& layer = *ds->GetLayerByName(name);
    int count = 0;
    for (auto& f : layer) {
        ++count;
        SCOPED_TRACE(testing::Message() << name << " fid " << f->GetFID());
        ASSERT_TRUE(loaded.hasFeature(f->GetFID()));
        const Feature feature = loaded.feature(f->GetFID());
        FeatureKind kind = FeatureKind::Region;
        ShapeBuilder shape;
        if (const OGRGeometry* g = f->GetGeometryRef())
            readGeometry(*g, kind, shape);
        EXPECT_EQ(feature.data().parts, shape.build());
        for (int i = 0; i < f->GetFieldCount(); ++i)
            EXPECT_EQ(feature.attribute(QString::fromUtf8(f->GetFieldDefnRef(i)->GetNameRef())),
                      valueOf(*f, i));
    }
    EXPECT_EQ(loaded.featureCount(), count);
}

} // namespace

TEST(ArrowRows, StreamsThatGoWrongFallBackToTheFeatureByFeatureRead) {
    PlanFixture plans;
    const QString path = plans.dir.filePath(QStringLiteral("hostile.gpkg"));
    {
        auto ds = createPlan(path);
        ASSERT_TRUE(ds);
        // More columns than SQLite passes to one function: the stream stalls.
        squares(*ds, "Large", 130, 3);
        // A stale count of features over a gap in the FIDs: the stream repeats rows.
        OGRLayer& stale = squares(*ds, "Perime", 2, 3);
        ASSERT_EQ(stale.DeleteFeature(2), OGRERR_NONE);
        // Geometries and nothing else: the stream gives empty geometries.
        squares(*ds, "Nu", 0, 3);
        // Geometries OGR reads that are not GeoPackage blobs.
        squares(*ds, "Etrangers", 1, 4);
    }
    {
        auto ds = openForUpdate(path);
        ds->ExecuteSQL("UPDATE gpkg_ogr_contents SET feature_count = 3 WHERE table_name = 'Perime'",
                       nullptr, nullptr);
        // A point as the other spatial SQLite format writes it, and a blob stored as text.
        ds->ExecuteSQL("UPDATE Etrangers SET geom = x'0001e6100000000000000000f03f000000000000"
                       "0040000000000000f03f00000000000000407c01000000000000000000f03f000000"
                       "0000000040fe' WHERE fid = 2",
                       nullptr, nullptr);
        ds->ExecuteSQL("UPDATE Etrangers SET geom = CAST(geom AS TEXT) WHERE fid = 3", nullptr,
                       nullptr);
    }
    {
        // The map would keep one of two rows of the same FID; the stream itself says it
        // went wrong.
        const gdal::QuietErrors quiet;
        auto ds = openForUpdate(path);
        const std::vector<int> fields{0, 1};
        const auto rows = ArrowRows::open(*ds->GetLayerByName("Perime"), fields, -1);
        ASSERT_TRUE(rows);
        int read = 0;
        while (rows->next())
            ++read;
        EXPECT_TRUE(rows->failed());
        EXPECT_LE(read, 2);
    }
    for (const char* layer : {"Large", "Perime", "Nu", "Etrangers"})
        expectLoadedAsReadOneByOne(path, layer);
}
