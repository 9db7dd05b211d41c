#include "base/erreur.h"
#include "plan_reader.h"
#include "veldra-plan/plan_tool.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace veldra;
using namespace veldra::plantool;
using namespace planfile;

namespace {

struct ExpectedField {
    const char* name;
    OGRFieldType type;
    int width;
};

struct ExpectedLayer {
    const char* name;
    std::vector<ExpectedField> fields;
};

// The columns the map engine reads, written out here rather than taken from the schema.
const std::vector<ExpectedLayer> expectedLayers{
    {"Enceinte", {{"Nom", OFTString, 32}}},
    {"Sections", {{"Nom", OFTString, 32}}},
    {"Allées", {{"Nom", OFTString, 32}}},
    {"Décor", {{"Texte", OFTString, 254}, {"Categorie", OFTString, 32}}},
    {"Tombes",
     {{"IDGCF", OFTInteger, 0},
      {"Nom", OFTString, 32},
      {"Numero", OFTString, 32},
      {"AngleNumero", OFTReal, 0},
      {"CLETOMBE", OFTString, 32},
      {"Photo", OFTString, 250},
      {"Booleen", OFTString, 1}}},
    {"Numeros", {{"Texte", OFTString, 64}}},
    {"Texte", {{"Texte", OFTString, 254}}},
};

void write(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

} // namespace

TEST(EmptyPlan, HoldsEveryTableWithItsColumnsAndNoFeature) {
    QTemporaryDir dir;
    const QString path = createEmptyPlan(dir.path(), QStringLiteral("Neuf"));
    EXPECT_EQ(path, QDir(dir.path()).filePath("Neuf.gpkg"));
    const GDALDatasetUniquePtr ds = openVector(path);
    ASSERT_TRUE(ds);
    EXPECT_STREQ(ds->GetDriver()->GetDescription(), "GPKG");
    for (const ExpectedLayer& want : expectedLayers) {
        SCOPED_TRACE(want.name);
        OGRLayer* layer = ds->GetLayerByName(want.name);
        ASSERT_NE(layer, nullptr);
        EXPECT_EQ(layer->GetGeomType(), wkbUnknown);
        EXPECT_EQ(layer->GetFeatureCount(), 0);
        const OGRFeatureDefn* defn = layer->GetLayerDefn();
        ASSERT_EQ(defn->GetFieldCount(), static_cast<int>(want.fields.size()) + 1);
        for (std::size_t i = 0; i < want.fields.size(); ++i) {
            const OGRFieldDefn* f = defn->GetFieldDefn(static_cast<int>(i));
            EXPECT_STREQ(f->GetNameRef(), want.fields[i].name);
            EXPECT_EQ(f->GetType(), want.fields[i].type) << want.fields[i].name;
            EXPECT_EQ(f->GetWidth(), want.fields[i].width) << want.fields[i].name;
        }
        const OGRFieldDefn* style = defn->GetFieldDefn(defn->GetFieldCount() - 1);
        EXPECT_STREQ(style->GetNameRef(), "OGR_STYLE");
        EXPECT_EQ(style->GetType(), OFTString);
        // A local plane in metres, not a place on Earth.
        const OGRSpatialReference* srs = layer->GetSpatialRef();
        if (srs != nullptr) {
            EXPECT_FALSE(srs->IsGeographic());
        }
    }
}

TEST(EmptyPlan, DrawingOrderListsTheTablesBottomFirstWithoutRaster) {
    QTemporaryDir dir;
    const GDALDatasetUniquePtr ds = openVector(createEmptyPlan(dir.path(), "Neuf"));
    ASSERT_TRUE(ds);
    const std::vector<OrderRow> order = layerOrder(*ds);
    ASSERT_EQ(order.size(), expectedLayers.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(order[i].position, static_cast<int>(i) + 1);
        EXPECT_EQ(order[i].layer, QString::fromUtf8(expectedLayers[i].name));
        EXPECT_EQ(order[i].source, "(null)");
    }
    // The order table is plain: not registered as content of the GeoPackage.
    EXPECT_EQ(queryRow(*ds, "SELECT count(*) FROM gpkg_contents "
                            "WHERE table_name = 'mapset_layers'"),
              std::vector<QString>{"0"});
}

TEST(EmptyPlan, NeverReplacesAFileAndLeavesNoStageBehind) {
    QTemporaryDir dir;
    const QString existing = QDir(dir.path()).filePath("Ancien.gpkg");
    write(existing, "ne pas toucher");
    try {
        createEmptyPlan(dir.path(), "Ancien");
        FAIL() << "an existing plan was replaced";
    } catch (const Erreur& e) {
        EXPECT_EQ(e.numero(), PlanExistant);
        EXPECT_TRUE(e.description().contains("existe déjà"));
    }
    QFile f(existing);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_EQ(f.readAll(), "ne pas toucher");

    createEmptyPlan(dir.path(), "Second");
    EXPECT_THROW(createEmptyPlan(dir.path(), "Second"), Erreur);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden),
              (QStringList{"Ancien.gpkg", "Second.gpkg"}));
}

TEST(EmptyPlan, CreatesMissingFoldersAndRefusesImpossibleOnesAndBadNames) {
    QTemporaryDir dir;
    const QString deep = QDir(dir.path()).filePath("a/b/c");
    EXPECT_TRUE(QFile::exists(createEmptyPlan(deep, "P")));

    write(QDir(dir.path()).filePath("fichier"), "x");
    try {
        createEmptyPlan(QDir(dir.path()).filePath("fichier/sous"), "P");
        FAIL() << "a folder was made under a file";
    } catch (const Erreur& e) {
        EXPECT_EQ(e.numero(), err::AccesRefuse);
    }
    for (const char* bad : {"", " ", "a/b", "..", "."}) {
        SCOPED_TRACE(bad);
        try {
            createEmptyPlan(dir.path(), QString::fromUtf8(bad));
            FAIL();
        } catch (const Erreur& e) {
            EXPECT_EQ(e.numero(), err::ArgumentsIncorrects);
        }
    }
    EXPECT_THROW(createEmptyPlan({}, "P"), Erreur);
}
