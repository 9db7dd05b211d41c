#pragma once
// The tables of a plan and of the symbol library, as the map engine reads them: each vector
// table has a GEOMETRY column in a local plane (see layer_writer.h), its own columns and a
// text column OGR_STYLE; the plain table mapset_layers gives the drawing order, bottom first.

#include <QString>
#include <ogr_core.h>
#include <vector>

class GDALDataset;

namespace veldra::plantool {

namespace layer {
inline constexpr char Raster[] = "Raster";
inline constexpr char Enceinte[] = "Enceinte";
inline constexpr char Sections[] = "Sections";
inline constexpr char Allees[] = "Allées";
inline constexpr char Decor[] = "Décor";
inline constexpr char Tombes[] = "Tombes";
inline constexpr char Numeros[] = "Numeros";
inline constexpr char Texte[] = "Texte";
inline constexpr char Bibli[] = "Bibli";
} // namespace layer

inline constexpr char StyleColumn[] = "OGR_STYLE";
inline constexpr char LayerOrderTable[] = "mapset_layers";

struct ColumnDef {
    const char* name;
    OGRFieldType type;
    int width; // 0: unbounded text, or a number
};

struct TableDef {
    const char* name;
    std::vector<ColumnDef> fields; // OGR_STYLE comes on top of these
};

// The vector tables of a plan, in drawing order.
const std::vector<TableDef>& planLayers();
const TableDef& planLayer(const char* name);
const TableDef& libraryLayer();

struct LayerOrderEntry {
    QString layer;
    QString source; // empty: a table of the GeoPackage itself
};

// Creates mapset_layers (unregistered in gpkg_contents) and fills it, positions from 1,
// in a transaction of its own.
void writeLayerOrder(GDALDataset& ds, const std::vector<LayerOrderEntry>& order);
// The same inside a transaction the caller holds (a database copied in one transaction).
void writeLayerOrderRows(GDALDataset& ds, const std::vector<LayerOrderEntry>& order);

// The order of a plan: the raster first when there is one, then planLayers().
std::vector<LayerOrderEntry> planLayerOrder(const QString& rasterFile);

} // namespace veldra::plantool
