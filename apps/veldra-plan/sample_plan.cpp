#include "veldra-plan/sample_plan.h"

#include "base/erreur.h"
#include "veldra-plan/gdal_support.h"
#include "veldra-plan/layer_writer.h"
#include "veldra-plan/output_file.h"
#include "veldra-plan/paper_raster.h"
#include "veldra-plan/plan_styles.h"
#include "veldra-plan/sample_layout.h"

#include <QDir>
#include <optional>

namespace veldra::plantool {

namespace {

// Colours in the plan's 0x00BBGGRR form.
constexpr Colour Black = 0x000000;
constexpr Colour White = 0xFFFFFF;
constexpr Colour Wall = 0x303030;
constexpr Colour SectionBorder = 255;
constexpr Colour SectionFill = 0xC0C0FF;
constexpr Colour AlleyBorder = 49152;
constexpr Colour AlleyFill = 0xC0FFC0;
constexpr Colour PlotBorder = 0x606060;

constexpr Colour PlotFill = 0xE0E8EC;   // light stone
constexpr Colour PathColour = 0x5080A0; // gravel brown
constexpr Colour TreeGreen = 0x207020;
constexpr Colour WaterBlue = 0xC06000;
constexpr Colour Ink = 0x202840; // brown-black

constexpr char32_t TreeGlyph = 0x2663;     // club suit: a round crown on a trunk
constexpr char32_t FountainGlyph = 0x25C9; // fisheye: a basin
// Plots held by nobody yet: every 29th has no concession key and no name.
constexpr int kUnheldEvery = 29;

void writeNamedRegions(LayerWriter& w, const std::vector<std::pair<QString, const Ring*>>& regions,
                       const QString& style) {
    const int nom = w.field("Nom");
    for (const auto& [name, ring] : regions) {
        OGRFeatureUniquePtr f = w.blank();
        setText(*f, nom, name);
        w.add(*f, polygon(*ring), style);
    }
}

void writeDecor(LayerWriter& w, const SampleLayout& layout) {
    const int texte = w.field("Texte");
    const int categorie = w.field("Categorie");
    const auto add = [&](OGRGeometryUniquePtr g, const QString& style, const QString& text,
                         const QString& category) {
        OGRFeatureUniquePtr f = w.blank();
        setText(*f, texte, text);
        setText(*f, categorie, category);
        w.add(*f, std::move(g), style);
    };
    RegionStyle chapel{Wall, 0x808080, carto::pattern::DiagonalCross, 0xE0E0E0};
    add(polygon(layout.chapel), regionStyle(chapel), QStringLiteral("Chapelle"), {});
    for (const Polyline& path : layout.paths)
        add(lineString(path), lineStyle(PathColour), {}, {});
    const QString treeStyle = symbolStyle(TreeGlyph, TreeGreen, 3);
    for (const TreeLayout& t : layout.trees)
        add(point(t.at), treeStyle, t.species, QStringLiteral("ARBRES"));
    add(point(layout.fountain), symbolStyle(FountainGlyph, WaterBlue, 1.5),
        QStringLiteral("Fontaine"), QStringLiteral("POINTS D'EAU"));
}

void writePlots(LayerWriter& plots, LayerWriter& numbers, const SampleLayout& layout) {
    const int idgcf = plots.field("IDGCF");
    const int nom = plots.field("Nom");
    const int numero = plots.field("Numero");
    const int angle = plots.field("AngleNumero");
    const int cle = plots.field("CLETOMBE");
    const int photo = plots.field("Photo");
    const int booleen = plots.field("Booleen");
    const int texte = numbers.field("Texte");
    const QString plotStyle = regionStyle({PlotBorder, PlotFill});
    int id = 0;
    for (const SectionLayout& s : layout.sections) {
        for (const AlleyLayout& a : s.alleys) {
            for (const PlotLayout& p : a.plots) {
                const QString number = p.numbered ? QString::number(p.numero) : QString();
                OGRFeatureUniquePtr plot = plots.blank();
                if (++id % kUnheldEvery != 0) {
                    plot->SetField(idgcf, id);
                    setText(*plot, nom, p.family);
                } else {
                    setText(*plot, nom, {});
                }
                setText(*plot, numero, number);
                plot->SetField(angle, p.angle);
                setText(*plot, cle,
                        QStringLiteral("%1-%2-%3").arg(s.name).arg(a.ordinal).arg(number));
                setText(*plot, photo, {});
                setText(*plot, booleen, {});
                plots.add(*plot, polygon(p.corners), plotStyle);
                if (!p.numbered)
                    continue;

                OGRFeatureUniquePtr label = numbers.blank();
                setText(*label, texte, number);
                TextStyle ts;
                ts.size = p.numberSize;
                ts.angle = p.angle;
                ts.colour = Black;
                numbers.add(*label, point(p.centre), textStyle(ts));
            }
        }
    }
}

void writeTexts(LayerWriter& w, const SampleLayout& layout) {
    const int texte = w.field("Texte");
    for (const FreeText& t : layout.texts) {
        OGRFeatureUniquePtr f = w.blank();
        setText(*f, texte, t.text);
        TextStyle ts;
        ts.size = t.size;
        ts.colour = Ink;
        ts.bold = t.bold;
        ts.halo = t.halo;
        ts.back = White;
        w.add(*f, point(t.at), textStyle(ts));
    }
}

void writePlan(GDALDataset& ds, const SampleLayout& layout, const QString& rasterFile) {
    LayerWriter enclosure(ds, planLayer(layer::Enceinte));
    LayerWriter sections(ds, planLayer(layer::Sections));
    LayerWriter alleys(ds, planLayer(layer::Allees));
    LayerWriter decor(ds, planLayer(layer::Decor));
    LayerWriter plots(ds, planLayer(layer::Tombes));
    LayerWriter numbers(ds, planLayer(layer::Numeros));
    LayerWriter texts(ds, planLayer(layer::Texte));

    std::vector<std::pair<QString, const Ring*>> sectionRings;
    std::vector<std::pair<QString, const Ring*>> alleyRings;
    for (const SectionLayout& s : layout.sections) {
        sectionRings.emplace_back(s.name, &s.outline);
        for (const AlleyLayout& a : s.alleys)
            alleyRings.emplace_back(a.name, &a.outline);
    }

    // One transaction per table: thousands of single inserts would each sync the file.
    const auto inTransaction = [&ds](auto&& write) {
        Transaction tx(ds);
        write();
        tx.commit();
    };
    inTransaction([&] {
        writeNamedRegions(enclosure, {{QStringLiteral("Enceinte"), &layout.enclosure}},
                          regionStyle({Wall, White, carto::pattern::None}));
    });
    inTransaction([&] {
        writeNamedRegions(sections, sectionRings, regionStyle({SectionBorder, SectionFill}));
    });
    inTransaction([&] {
        writeNamedRegions(alleys, alleyRings, regionStyle({AlleyBorder, AlleyFill}));
    });
    inTransaction([&] { writeDecor(decor, layout); });
    inTransaction([&] { writePlots(plots, numbers, layout); });
    inTransaction([&] { writeTexts(texts, layout); });
    writeLayerOrder(ds, planLayerOrder(rasterFile));
}

} // namespace

QString generateSamplePlan(const QString& folder, const SampleOptions& options) {
    if (options.plots < 0 || options.plots > MaxSamplePlots)
        throw Erreur(err::ArgumentsIncorrects,
                     QStringLiteral("Nombre d'emplacements incorrect : %1 (de 0 à %2)")
                         .arg(options.plots)
                         .arg(MaxSamplePlots));
    checkFileName(options.name);
    const QDir dir(prepareFolder(folder));
    SampleLayout layout = layOutSample(options.plots, options.name, options.seed);
    if (options.faults)
        addDeliberateFaults(layout);

    StagedFile plan(dir.filePath(options.name + QStringLiteral(".gpkg")), QStringLiteral("gpkg"));
    std::optional<StagedFile> image;
    QString rasterFile;
    if (options.raster) {
        rasterFile = options.name + QStringLiteral(".tif");
        image.emplace(dir.filePath(rasterFile), QStringLiteral("tif"));
        writePaperRaster(layout, image->stagePath());
    }
    {
        GDALDatasetUniquePtr ds = createGeoPackage(plan.stagePath());
        writePlan(*ds, layout, rasterFile);
        closeDataset(std::move(ds), plan.stagePath());
    }
    if (image)
        image->commit();
    plan.commit();
    return plan.finalPath();
}

} // namespace veldra::plantool
