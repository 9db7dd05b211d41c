#include "veldra-plan/symbol_library.h"

#include "veldra-plan/gdal_support.h"
#include "veldra-plan/layer_writer.h"
#include "veldra-plan/output_file.h"
#include "veldra-plan/plan_styles.h"

#include <QDir>
#include <functional>

namespace veldra::plantool {

namespace {

constexpr double Spacing = 6; // metres between elements

struct Element {
    OGRGeometryUniquePtr geometry;
    QString style;
};

using Drawing = std::function<Element(Point centre)>;

struct Category {
    const char* code;
    std::vector<Drawing> elements;
};

Drawing symbol(char32_t glyph, Colour colour, double size) {
    return [=](Point) { return Element{nullptr, symbolStyle(glyph, colour, size)}; };
}

Drawing region(std::function<Ring(Point)> shape, RegionStyle style) {
    return [=](Point c) { return Element{polygon(shape(c)), regionStyle(style)}; };
}

// A crown seen from above: points alternating between two radii.
Ring star(Point c, double outer, double inner, int points) {
    Ring ring;
    const Ring big = circle(c, outer, points);
    const Ring small = rotated(circle(c, inner, points), c, 180.0 / points);
    for (int i = 0; i < points; ++i) {
        ring.push_back(big[static_cast<std::size_t>(i)]);
        ring.push_back(small[static_cast<std::size_t>(i)]);
    }
    return ring;
}

Ring box(Point c, double w, double h) {
    return rectangle(c.x - w / 2, c.y - h / 2, c.x + w / 2, c.y + h / 2);
}

std::vector<Category> catalogue() {
    // Colours in the plan's 0x00BBGGRR form.
    const Colour leaf = 0x50B050;
    const Colour darkLeaf = 0x206020;
    const Colour wood = 0x326496;
    const Colour darkWood = 0x1E3C64;
    const Colour water = 0xE6AA78;
    const Colour deepWater = 0xB46428;
    const Colour metal = 0x505050;
    const Colour bin = 0x285A28;

    std::vector<Category> c;
    c.push_back({"ARBRES",
                 {symbol(0x2663, darkLeaf, 2.5), // leafy tree
                  region([](Point p) { return circle(p, 1.5); }, {darkLeaf, leaf}),
                  symbol(0x2660, darkLeaf, 2.5), // conifer
                  region([](Point p) { return star(p, 1.6, 1.0, 9); }, {darkLeaf, 0x308030})}});
    c.push_back(
        {"BANCS",
         {region([](Point p) { return box(p, 1.8, 0.5); }, {darkWood, wood}),
          [=](Point p) { // seat and backrest
              return Element{multiPolygon({box({p.x, p.y - 0.1}, 2.0, 0.45),
                                           box({p.x, p.y + 0.3}, 2.0, 0.12)}),
                             regionStyle({darkWood, wood})};
          },
          [=](Point p) { // a plank
              return Element{lineString({{p.x - 1, p.y}, {p.x + 1, p.y}}), lineStyle(darkWood)};
          }}});
    c.push_back({"POINTS D'EAU",
                 {region([](Point p) { return circle(p, 0.6); }, {deepWater, water}),
                  symbol(0x25C9, deepWater, 1.2), // tap
                  region([](Point p) { return box(p, 1.2, 0.8); },
                         {deepWater, deepWater, carto::pattern::Horizontal, water})}});
    c.push_back(
        {"POTEAUX",
         {symbol(0x25A0, metal, 0.4), region([](Point p) { return box(p, 0.3, 0.3); }, {0, metal}),
          symbol(0x25CF, 0, 0.3)}});
    c.push_back({"POUBELLES",
                 {region([](Point p) { return circle(p, 0.35, 16); }, {0, bin}),
                  region([](Point p) { return box(p, 0.6, 0.4); }, {0, metal}),
                  symbol(0x25A3, metal, 0.6)}});
    return c;
}

} // namespace

QString buildSymbolLibrary(const QString& folder) {
    const QDir dir(prepareFolder(prepareFolder(folder) + QStringLiteral("/Bibli")));
    StagedFile library(dir.filePath(QStringLiteral("Bibli.gst")), QStringLiteral("gpkg"));
    {
        GDALDatasetUniquePtr ds = createGeoPackage(library.stagePath());
        LayerWriter w(*ds, libraryLayer());
        const int categorie = w.field("Categorie");
        const int numero = w.field("Numero");
        Transaction tx(*ds);
        const std::vector<Category> categories = catalogue();
        for (std::size_t row = 0; row < categories.size(); ++row) {
            const Category& cat = categories[row];
            for (std::size_t i = 0; i < cat.elements.size(); ++i) {
                const Point centre{Spacing / 2 + Spacing * static_cast<double>(i),
                                   Spacing / 2 + Spacing * static_cast<double>(row)};
                Element e = cat.elements[i](centre);
                OGRFeatureUniquePtr f = w.blank();
                setText(*f, categorie, QString::fromUtf8(cat.code));
                f->SetField(numero, static_cast<int>(i) + 1);
                w.add(*f, e.geometry ? std::move(e.geometry) : point(centre), e.style);
            }
        }
        tx.commit();
        writeLayerOrder(*ds, {{QString::fromUtf8(layer::Bibli), {}}});
        closeDataset(std::move(ds), library.stagePath());
    }
    library.commit();
    return library.finalPath();
}

} // namespace veldra::plantool
