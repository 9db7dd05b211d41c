#include "plan_reader.h"
#include "veldra-plan/plan_tool.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <map>

using namespace veldra::plantool;
using namespace planfile;

TEST(SymbolLibrary, EveryCategoryHasElementsNumberedFromOne) {
    QTemporaryDir dir;
    const QString path = buildSymbolLibrary(dir.path());
    EXPECT_EQ(path, QDir(dir.path()).filePath("Bibli/Bibli.gst"));
    const auto ds = openVector(path);
    ASSERT_TRUE(ds);
    ASSERT_GE(ds->GetLayerCount(), 1);
    EXPECT_STREQ(ds->GetLayer(0)->GetName(), "Bibli");
    ASSERT_EQ(layerOrder(*ds).size(), 1u);
    EXPECT_EQ(layerOrder(*ds)[0].layer, "Bibli");

    std::map<QString, std::vector<int>> numbers;
    std::vector<OGREnvelope> extents;
    for (const OGRFeatureUniquePtr& f : readFeatures(*ds, "Bibli")) {
        numbers[text(*f, "Categorie")].push_back(f->GetFieldAsInteger("Numero"));
        const char* style = f->GetFieldAsString("OGR_STYLE");
        const auto parts = styleParts(style);
        const OGRwkbGeometryType type = wkbFlatten(f->GetGeometryRef()->getGeometryType());
        if (type == wkbPoint)
            EXPECT_EQ(parts, std::vector<std::string>{"SYMBOL"}) << style;
        else if (type == wkbLineString)
            EXPECT_EQ(parts, std::vector<std::string>{"PEN"}) << style;
        else
            EXPECT_EQ(parts, (std::vector<std::string>{"PEN", "BRUSH"})) << style;
        OGREnvelope e;
        f->GetGeometryRef()->getEnvelope(&e);
        EXPECT_LT(e.MaxX - e.MinX, 4) << "an element is small";
        EXPECT_LT(e.MaxY - e.MinY, 4);
        extents.push_back(e);
    }
    const std::vector<QString> categories{"ARBRES", "BANCS", "POINTS D'EAU", "POTEAUX",
                                          "POUBELLES"};
    ASSERT_EQ(numbers.size(), categories.size());
    for (const QString& c : categories) {
        std::vector<int>& list = numbers[c];
        ASSERT_GE(list.size(), 2u) << c.toStdString();
        std::sort(list.begin(), list.end());
        for (std::size_t i = 0; i < list.size(); ++i)
            EXPECT_EQ(list[i], static_cast<int>(i) + 1) << c.toStdString();
    }
    // Apart from each other, so that framing one never shows a neighbour's edge.
    for (std::size_t i = 0; i < extents.size(); ++i)
        for (std::size_t j = i + 1; j < extents.size(); ++j)
            EXPECT_FALSE(extents[i].Intersects(extents[j])) << i << " " << j;
}

TEST(SymbolLibrary, RebuildingReplacesTheLibrary) {
    QTemporaryDir dir;
    const QString first = buildSymbolLibrary(dir.path());
    const QString second = buildSymbolLibrary(dir.path());
    EXPECT_EQ(first, second);
    EXPECT_EQ(QDir(dir.filePath("Bibli")).entryList(QDir::Files | QDir::Hidden),
              QStringList{"Bibli.gst"});
    const auto ds = openVector(second);
    ASSERT_TRUE(ds);
    EXPECT_GT(ds->GetLayer(0)->GetFeatureCount(), 10);
}
