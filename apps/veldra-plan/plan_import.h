#pragma once
// Imports a plan held in any OGR vector source (MapInfo TAB, Shapefile, DXF, GeoJSON...)
// into a new GeoPackage plan. Layers of the plan are taken from the source's layers of
// the same name (letter case and accents aside) or as --map says; in a DXF file, whose
// entities share one table, a "layer" is the value of their Layer column. Columns are
// taken by name or as --field says ("Numero=NUM" for every layer, "Tombes.Numero=NUM" for
// one).
//
// What is checked and repaired, and counted in the summary:
// - the enclosure, sections, alleys and plots must be surfaces: closed polylines become
//   polygons, other kinds are skipped;
// - curves are replaced by their linear approximation, 3D and measures are dropped;
// - invalid polygons are made valid with GEOS; those left empty are skipped;
// - texts longer than their column are cut, values that cannot be read are left empty;
// - without an enclosure, one is drawn around everything imported;
// - plots with a number get their number label when the source gives no numbers layer.
// A source with nothing to import, a --map naming a layer the source lacks or a --field
// naming a column it lacks is refused: nothing is written.

#include <QString>
#include <QStringList>
#include <utility>
#include <vector>

namespace veldra::plantool {

struct ImportOptions {
    QString source;
    QString destination;                             // a .gpkg that must not exist
    std::vector<std::pair<QString, QString>> layers; // plan layer -> source layer
    std::vector<std::pair<QString, QString>> fields; // [layer.]column -> source column
};

struct LayerImport {
    QString layer;  // of the plan
    QString source; // where it came from
    int imported = 0;
    int repaired = 0;
    int closedLines = 0; // closed polylines made polygons
    int curves = 0;
    int flattened = 0; // 3D or measured geometries made 2D
    int cut = 0;       // texts cut to their column's width
    int unreadable = 0;
    std::vector<std::pair<QString, int>> skipped; // why, how many
};

struct ImportReport {
    QString destination;
    std::vector<LayerImport> layers;
    bool enclosureDrawn = false;
    int labels = 0; // number labels made for the plots
    QString warning;
    QString summary() const;
};

ImportReport importPlan(const ImportOptions& options);

// "Tombes=LAYER,Sections=LAYER" into pairs; Erreur (ArgumentsIncorrects) when malformed.
std::vector<std::pair<QString, QString>> parsePairs(const QString& text, const QString& option);

} // namespace veldra::plantool
