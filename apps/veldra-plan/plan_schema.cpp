#include "veldra-plan/plan_schema.h"

#include "base/erreur.h"
#include "veldra-plan/gdal_support.h"

#include <cstring>

namespace veldra::plantool {

const std::vector<TableDef>& planLayers() {
    static const std::vector<TableDef> layers{
        {layer::Enceinte, {{"Nom", OFTString, 32}}},
        {layer::Sections, {{"Nom", OFTString, 32}}},
        {layer::Allees, {{"Nom", OFTString, 32}}},
        {layer::Decor, {{"Texte", OFTString, 254}, {"Categorie", OFTString, 32}}},
        {layer::Tombes,
         {{"IDGCF", OFTInteger, 0},
          {"Nom", OFTString, 32},
          {"Numero", OFTString, 32},
          {"AngleNumero", OFTReal, 0},
          {"CLETOMBE", OFTString, 32},
          {"Photo", OFTString, 250},
          {"Booleen", OFTString, 1}}},
        {layer::Numeros, {{"Texte", OFTString, 64}}},
        {layer::Texte, {{"Texte", OFTString, 254}}},
    };
    return layers;
}

const TableDef& planLayer(const char* name) {
    for (const TableDef& table : planLayers())
        if (std::strcmp(table.name, name) == 0)
            return table;
    throw Erreur(err::AppelIncorrect,
                 QStringLiteral("Couche de plan inconnue : %1").arg(QString::fromUtf8(name)));
}

const TableDef& libraryLayer() {
    static const TableDef table{layer::Bibli,
                                {{"Categorie", OFTString, 32}, {"Numero", OFTInteger, 0}}};
    return table;
}

void writeLayerOrder(GDALDataset& ds, const std::vector<LayerOrderEntry>& order) {
    Transaction tx(ds);
    writeLayerOrderRows(ds, order);
    tx.commit();
}

void writeLayerOrderRows(GDALDataset& ds, const std::vector<LayerOrderEntry>& order) {
    const auto quoted = [](const QString& s) {
        return QLatin1Char('\'') + QString(s).replace(QLatin1Char('\''), QStringLiteral("''")) +
               QLatin1Char('\'');
    };
    executeSql(ds, QStringLiteral("CREATE TABLE %1(position INTEGER PRIMARY KEY, "
                                  "layer_name TEXT NOT NULL, source TEXT)")
                       .arg(QLatin1String(LayerOrderTable)));
    int position = 1;
    for (const LayerOrderEntry& e : order) {
        executeSql(ds, QStringLiteral("INSERT INTO %1(position, layer_name, source) "
                                      "VALUES(%2, %3, %4)")
                           .arg(QLatin1String(LayerOrderTable))
                           .arg(position++)
                           .arg(quoted(e.layer),
                                e.source.isEmpty() ? QStringLiteral("NULL") : quoted(e.source)));
    }
}

std::vector<LayerOrderEntry> planLayerOrder(const QString& rasterFile) {
    std::vector<LayerOrderEntry> order;
    if (!rasterFile.isEmpty())
        order.push_back({QString::fromUtf8(layer::Raster), rasterFile});
    for (const TableDef& table : planLayers())
        order.push_back({QString::fromUtf8(table.name), {}});
    return order;
}

} // namespace veldra::plantool
