#include "veldra-plan/empty_plan.h"

#include "base/erreur.h"
#include "veldra-plan/gdal_support.h"
#include "veldra-plan/layer_writer.h"
#include "veldra-plan/output_file.h"

#include <QDir>
#include <QFileInfo>

namespace veldra::plantool {

QString createEmptyPlan(const QString& folder, const QString& name) {
    checkFileName(name);
    const QDir dir(prepareFolder(folder));
    const QString path = dir.filePath(name + QStringLiteral(".gpkg"));
    if (QFileInfo::exists(path))
        throw Erreur(PlanExistant, QStringLiteral("Le plan « %1 » existe déjà").arg(path));
    StagedFile plan(path, QStringLiteral("gpkg"));
    {
        GDALDatasetUniquePtr ds = createGeoPackage(plan.stagePath());
        for (const TableDef& table : planLayers())
            LayerWriter{*ds, table}; // the table, left empty
        writeLayerOrder(*ds, planLayerOrder({}));
        closeDataset(std::move(ds), plan.stagePath());
    }
    plan.commit();
    return path;
}

} // namespace veldra::plantool
