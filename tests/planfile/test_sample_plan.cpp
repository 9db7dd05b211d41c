#include "base/erreur.h"
#include "plan_reader.h"
#include "veldra-plan/plan_tool.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>
#include <ogr_featurestyle.h>

using namespace veldra;
using namespace veldra::plantool;
using namespace planfile;

namespace {

const std::vector<const char*> vectorLayers{"Enceinte", "Sections", "Allées", "Décor",
                                            "Tombes",   "Numeros",  "Texte"};

constexpr int Plots = 2500;

// One plan generated for the whole suite: reading it back is what the tests share.
class SamplePlan : public testing::Test {
protected:
    static void SetUpTestSuite() {
        dir_ = std::make_unique<QTemporaryDir>();
        SampleOptions o;
        o.plots = Plots;
        o.seed = 7;
        o.name = QStringLiteral("Saint-Essai");
        path_ = generateSamplePlan(dir_->path(), o);
    }
    static void TearDownTestSuite() { dir_.reset(); }

    void SetUp() override {
        ds_ = openVector(path_);
        ASSERT_TRUE(ds_);
    }

    static QString folder() { return dir_->path(); }
    GDALDataset& ds() { return *ds_; }

    static inline std::unique_ptr<QTemporaryDir> dir_;
    static inline QString path_;
    GDALDatasetUniquePtr ds_;
};

struct Region {
    QString name;
    std::unique_ptr<OGRGeometry> geometry;
};

std::vector<Region> regions(GDALDataset& ds, const char* layer) {
    std::vector<Region> out;
    for (const OGRFeatureUniquePtr& f : readFeatures(ds, layer))
        out.push_back(
            {text(*f, "Nom"), std::unique_ptr<OGRGeometry>(f->GetGeometryRef()->clone())});
    return out;
}

// Indexes of the regions that hold the point.
std::vector<std::size_t> holding(const std::vector<Region>& rs, const OGRPoint& p) {
    std::vector<std::size_t> out;
    for (std::size_t i = 0; i < rs.size(); ++i)
        if (p.Within(rs[i].geometry.get()))
            out.push_back(i);
    return out;
}

QString centreKey(double x, double y) {
    return QStringLiteral("%1;%2").arg(std::lround(x * 1000)).arg(std::lround(y * 1000));
}

SampleOptions options(int plots, quint32 seed, bool raster, const QString& name = "Exemple") {
    SampleOptions o;
    o.plots = plots;
    o.seed = seed;
    o.raster = raster;
    o.name = name;
    return o;
}

} // namespace

TEST_F(SamplePlan, DrawingOrderStartsWithItsGeoreferencedRaster) {
    const std::vector<OrderRow> order = layerOrder(ds());
    ASSERT_EQ(order.size(), 8u);
    EXPECT_EQ(order[0].layer, "Raster");
    EXPECT_EQ(order[0].source, "Saint-Essai.tif");
    for (std::size_t i = 1; i < order.size(); ++i)
        EXPECT_EQ(order[i].layer, QString::fromUtf8(vectorLayers[i - 1]));

    const GDALDatasetUniquePtr raster(
        GDALDataset::Open(QFile::encodeName(QDir(folder()).filePath(order[0].source)).constData(),
                          GDAL_OF_RASTER | GDAL_OF_READONLY));
    ASSERT_TRUE(raster);
    EXPECT_STREQ(raster->GetDriver()->GetDescription(), "GTiff");
    EXPECT_EQ(raster->GetRasterCount(), 3);
    double gt[6];
    ASSERT_EQ(raster->GetGeoTransform(gt), CE_None);
    EXPECT_GT(gt[1], 0);
    EXPECT_EQ(gt[2], 0);
    EXPECT_EQ(gt[4], 0);
    EXPECT_LT(gt[5], 0); // north up

    // The image covers the enclosure, with little paper to spare.
    OGREnvelope env;
    ASSERT_EQ(ds().GetLayerByName("Enceinte")->GetExtent(&env), OGRERR_NONE);
    const double west = gt[0];
    const double north = gt[3];
    const double east = west + gt[1] * raster->GetRasterXSize();
    const double south = north + gt[5] * raster->GetRasterYSize();
    EXPECT_LE(west, env.MinX);
    EXPECT_GE(east, env.MaxX);
    EXPECT_LE(south, env.MinY);
    EXPECT_GE(north, env.MaxY);
    EXPECT_LT((east - west) * (north - south), 1.5 * (env.MaxX - env.MinX) * (env.MaxY - env.MinY));
    EXPECT_NEAR(env.MinX, 0, 1e-9);
    EXPECT_NEAR(env.MinY, 0, 1e-9);
}

TEST_F(SamplePlan, OnePlotPerIdAndOneNumberLabelAtEachPlotsCentre) {
    const auto plots = readFeatures(ds(), "Tombes");
    const auto labels = readFeatures(ds(), "Numeros");
    ASSERT_EQ(plots.size(), static_cast<std::size_t>(Plots));
    ASSERT_EQ(labels.size(), static_cast<std::size_t>(Plots));

    QHash<QString, const OGRFeature*> labelAt;
    for (const OGRFeatureUniquePtr& l : labels) {
        const auto* p = l->GetGeometryRef()->toPoint();
        labelAt.insert(centreKey(p->getX(), p->getY()), l.get());
    }
    QSet<int> ids;
    int named = 0, unheld = 0;
    for (const OGRFeatureUniquePtr& f : plots) {
        const int id = f->GetFieldAsInteger("IDGCF");
        if (f->IsFieldNull(f->GetFieldIndex("IDGCF"))) {
            ++unheld; // nobody holds it yet: no name either
            EXPECT_TRUE(text(*f, "Nom").isEmpty());
        } else {
            ASSERT_GE(id, 1);
            ASSERT_LE(id, Plots);
            ids.insert(id);
        }
        named += text(*f, "Nom").isEmpty() ? 0 : 1;

        OGRPoint centre;
        ASSERT_EQ(f->GetGeometryRef()->Centroid(&centre), OGRERR_NONE);
        const OGRFeature* label = labelAt.value(centreKey(centre.getX(), centre.getY()));
        ASSERT_NE(label, nullptr) << "no number at the centre of plot " << id;
        EXPECT_EQ(text(*label, "Texte"), text(*f, "Numero"));
        const auto style = stylePart(label->GetFieldAsString("OGR_STYLE"), 0);
        ASSERT_NE(style, nullptr);
        GBool isNull = TRUE;
        auto& ls = static_cast<OGRStyleLabel&>(*style);
        EXPECT_DOUBLE_EQ(ls.Angle(isNull), f->GetFieldAsDouble("AngleNumero"));
        EXPECT_STREQ(ls.TextString(isNull), "{Texte}");
        EXPECT_LE(ls.Size(isNull), 0.5);
    }
    EXPECT_EQ(unheld, Plots / 29);
    EXPECT_EQ(ids.size(), Plots - unheld);
    EXPECT_GT(named, 0);
    EXPECT_LT(named, Plots);
}

TEST_F(SamplePlan, EveryPlotLiesInOneSectionAndOneAlleyNumberedFromOne) {
    const std::vector<Region> sections = regions(ds(), "Sections");
    const std::vector<Region> alleys = regions(ds(), "Allées");
    ASSERT_GE(sections.size(), 2u);

    // Numbers and keys gathered per alley, the alley known by what holds the plot.
    std::map<std::size_t, std::vector<int>> numbers;
    std::map<std::size_t, QSet<QString>> keyPrefixes;
    int turned = 0;
    for (const OGRFeatureUniquePtr& f : readFeatures(ds(), "Tombes")) {
        const OGRGeometry* g = f->GetGeometryRef();
        ASSERT_EQ(wkbFlatten(g->getGeometryType()), wkbPolygon);
        const OGRLinearRing* ring = g->toPolygon()->getExteriorRing();
        ASSERT_EQ(ring->getNumPoints(), 5);
        QSet<QString> corners;
        for (int i = 0; i < 4; ++i)
            corners.insert(centreKey(ring->getX(i), ring->getY(i)));
        ASSERT_EQ(corners.size(), 4);

        OGRPoint centre;
        ASSERT_EQ(g->Centroid(&centre), OGRERR_NONE);
        const auto inSections = holding(sections, centre);
        const auto inAlleys = holding(alleys, centre);
        ASSERT_EQ(inSections.size(), 1u) << f->GetFieldAsString("CLETOMBE");
        ASSERT_EQ(inAlleys.size(), 1u) << f->GetFieldAsString("CLETOMBE");
        EXPECT_TRUE(g->Within(sections[inSections[0]].geometry.get()));
        EXPECT_TRUE(g->Within(alleys[inAlleys[0]].geometry.get()));

        const QString numero = text(*f, "Numero");
        const QString key = text(*f, "CLETOMBE");
        EXPECT_TRUE(key.startsWith(sections[inSections[0]].name + "-")) << key.toStdString();
        EXPECT_TRUE(key.endsWith("-" + numero)) << key.toStdString();
        keyPrefixes[inAlleys[0]].insert(key.chopped(numero.size()));
        numbers[inAlleys[0]].push_back(numero.toInt());
        turned += f->GetFieldAsDouble("AngleNumero") != 0 ? 1 : 0;
    }
    EXPECT_GT(turned, 0);
    for (auto& [alley, list] : numbers) {
        std::sort(list.begin(), list.end());
        for (std::size_t i = 0; i < list.size(); ++i)
            ASSERT_EQ(list[i], static_cast<int>(i) + 1) << alleys[alley].name.toStdString();
        EXPECT_EQ(keyPrefixes[alley].size(), 1) << "one key prefix per alley";
    }
}

TEST_F(SamplePlan, AlleyNamesRepeatAcrossSectionsAndOneIsUnique) {
    const std::vector<Region> sections = regions(ds(), "Sections");
    std::map<QString, QSet<QString>> sectionsOfAlley;
    for (const Region& a : regions(ds(), "Allées")) {
        OGRPoint centre;
        ASSERT_EQ(a.geometry->Centroid(&centre), OGRERR_NONE);
        const auto in = holding(sections, centre);
        ASSERT_EQ(in.size(), 1u);
        EXPECT_TRUE(a.geometry->Within(sections[in[0]].geometry.get()));
        sectionsOfAlley[a.name].insert(sections[in[0]].name);
    }
    EXPECT_GE(sectionsOfAlley["Allée 1"].size(), 2);
    EXPECT_TRUE(std::any_of(sectionsOfAlley.begin(), sectionsOfAlley.end(),
                            [](const auto& e) { return e.second.size() == 1; }));

    const auto enclosure = readFeatures(ds(), "Enceinte");
    ASSERT_EQ(enclosure.size(), 1u);
    for (const Region& s : sections)
        EXPECT_TRUE(s.geometry->Within(enclosure[0]->GetGeometryRef()));
}

TEST_F(SamplePlan, StylesParseAndSuitTheirFeatures) {
    for (const char* layer : vectorLayers) {
        SCOPED_TRACE(layer);
        const auto features = readFeatures(ds(), layer);
        ASSERT_FALSE(features.empty());
        for (const OGRFeatureUniquePtr& f : features) {
            const char* style = f->GetFieldAsString("OGR_STYLE");
            const std::vector<std::string> parts = styleParts(style);
            const OGRwkbGeometryType type = wkbFlatten(f->GetGeometryRef()->getGeometryType());
            if (type == wkbPolygon || type == wkbMultiPolygon)
                EXPECT_EQ(parts, (std::vector<std::string>{"PEN", "BRUSH"})) << style;
            else if (type == wkbLineString)
                EXPECT_EQ(parts, std::vector<std::string>{"PEN"}) << style;
            else if (type == wkbPoint)
                EXPECT_EQ(parts, std::vector<std::string>{std::string(layer) == "Décor" ? "SYMBOL"
                                                                                        : "LABEL"})
                    << style;
            else
                ADD_FAILURE() << "unexpected geometry " << OGRGeometryTypeToName(type);
        }
    }
    const auto sections = readFeatures(ds(), "Sections");
    EXPECT_STREQ(sections[0]->GetFieldAsString("OGR_STYLE"),
                 R"(PEN(c:#FF0000,w:1px,id:"veldra-pen-2,ogr-pen-0");)"
                 R"(BRUSH(fc:#FFC0C0,id:"veldra-brush-2,ogr-brush-0"))");
    const auto alleys = readFeatures(ds(), "Allées");
    EXPECT_STREQ(alleys[0]->GetFieldAsString("OGR_STYLE"),
                 R"(PEN(c:#00C000,w:1px,id:"veldra-pen-2,ogr-pen-0");)"
                 R"(BRUSH(fc:#C0FFC0,id:"veldra-brush-2,ogr-brush-0"))");

    QSet<QString> texts;
    for (const OGRFeatureUniquePtr& f : readFeatures(ds(), "Texte"))
        texts.insert(text(*f, "Texte"));
    EXPECT_TRUE(texts.contains("Cimetière Saint-Essai"));
    EXPECT_TRUE(texts.contains("Entrée"));
}

TEST_F(SamplePlan, OgrinfoListsTheLayers) {
    const QString ogrinfo = QStandardPaths::findExecutable("ogrinfo");
    if (ogrinfo.isEmpty())
        GTEST_SKIP() << "ogrinfo is not installed";
    QProcess p;
    p.start(ogrinfo, {"-so", path_});
    ASSERT_TRUE(p.waitForFinished(30000));
    EXPECT_EQ(p.exitCode(), 0) << p.readAllStandardError().toStdString();
    // Lines such as "3: Décor" or "8: mapset_layers (None)".
    const QString out = QString::fromUtf8(p.readAllStandardOutput());
    const QRegularExpression line(QStringLiteral(R"(^\d+: (.+?)( \(.*\))?$)"),
                                  QRegularExpression::MultilineOption);
    QSet<QString> listed;
    for (auto it = line.globalMatch(out); it.hasNext();)
        listed.insert(it.next().captured(1));
    for (const char* layer : vectorLayers)
        EXPECT_TRUE(listed.contains(QString::fromUtf8(layer))) << layer << "\n"
                                                               << out.toStdString();
}

TEST(SampleGeneration, SameSeedSameFilesOtherSeedOtherPlan) {
    QTemporaryDir dir;
    const QString a = generateSamplePlan(dir.filePath("a"), options(400, 5, true));
    const QString b = generateSamplePlan(dir.filePath("b"), options(400, 5, true));
    const QString c = generateSamplePlan(dir.filePath("c"), options(400, 6, false));
    const auto dsA = openVector(a);
    const auto dsB = openVector(b);
    const auto dsC = openVector(c);
    ASSERT_TRUE(dsA && dsB && dsC);
    EXPECT_EQ(dump(*dsA, vectorLayers), dump(*dsB, vectorLayers));
    EXPECT_NE(dump(*dsA, vectorLayers), dump(*dsC, vectorLayers));
    EXPECT_EQ(readFeatures(*dsC, "Tombes").size(), 400u);

    QFile ta(dir.filePath("a/Exemple.tif"));
    QFile tb(dir.filePath("b/Exemple.tif"));
    ASSERT_TRUE(ta.open(QIODevice::ReadOnly) && tb.open(QIODevice::ReadOnly));
    EXPECT_TRUE(ta.readAll() == tb.readAll()) << "the image differs for the same seed";
    EXPECT_FALSE(QFile::exists(dir.filePath("c/Exemple.tif")));
    EXPECT_EQ(layerOrder(*dsC).front().layer, "Enceinte");
}

TEST(SampleGeneration, ReplacesAPreviousPlanAndLeavesNoStageBehind) {
    QTemporaryDir dir;
    generateSamplePlan(dir.path(), options(300, 1, true));
    const QString path = generateSamplePlan(dir.path(), options(12, 1, true));
    const auto ds = openVector(path);
    ASSERT_TRUE(ds);
    EXPECT_EQ(readFeatures(*ds, "Tombes").size(), 12u);
    EXPECT_EQ(readFeatures(*ds, "Numeros").size(), 12u);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
              (QStringList{"Exemple.gpkg", "Exemple.tif"}));
}

TEST(SampleGeneration, ZeroPlotsStillGivesSectionsAndAlleys) {
    QTemporaryDir dir;
    const auto ds = openVector(generateSamplePlan(dir.path(), options(0, 1, false)));
    ASSERT_TRUE(ds);
    EXPECT_TRUE(readFeatures(*ds, "Tombes").empty());
    EXPECT_TRUE(readFeatures(*ds, "Numeros").empty());
    EXPECT_GE(readFeatures(*ds, "Sections").size(), 2u);
    EXPECT_GE(readFeatures(*ds, "Allées").size(), 4u);
}

TEST(SampleGeneration, RefusesBadCountsAndNamesWithoutWritingAnything) {
    QTemporaryDir dir;
    for (int bad : {-1, MaxSamplePlots + 1}) {
        try {
            generateSamplePlan(dir.path(), options(bad, 1, true));
            FAIL() << bad;
        } catch (const Erreur& e) {
            EXPECT_EQ(e.numero(), err::ArgumentsIncorrects);
        }
    }
    EXPECT_THROW(generateSamplePlan(dir.path(), options(10, 1, true, "x/y")), Erreur);
    EXPECT_TRUE(QDir(dir.path())
                    .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden)
                    .isEmpty());
}

TEST(SampleGeneration, ThirtyThousandPlotsInAFewSeconds) {
    QTemporaryDir dir;
    QElapsedTimer timer;
    timer.start();
    const QString path = generateSamplePlan(dir.path(), options(30000, 3, false));
    const qint64 ms = timer.elapsed();
    EXPECT_LT(ms, 20000) << "one transaction per table keeps this to seconds";
    const auto ds = openVector(path);
    ASSERT_TRUE(ds);
    EXPECT_EQ(ds->GetLayerByName("Tombes")->GetFeatureCount(), 30000);
    EXPECT_EQ(ds->GetLayerByName("Numeros")->GetFeatureCount(), 30000);
    // Identifiers fit the host's 16-bit integers.
    EXPECT_EQ(queryRow(*ds, "SELECT max(IDGCF), count(DISTINCT IDGCF) FROM Tombes"),
              (std::vector<QString>{"30000", "28966"}));
}
