#include "veldra-plan/plan_source.h"

#include "carto/storage/database.h"
#include "veldra-plan/gdal_support.h"

#include <QDir>
#include <QFileInfo>

namespace veldra::plantool {

bool isDatabase(const QString& source) {
    return carto::database::isPostgres(source);
}

QString shownSource(const QString& source) {
    return carto::database::shownSource(source);
}

GDALDatasetUniquePtr openSource(const QString& source, bool update) {
    gdalDriver("GPKG"); // registers the drivers
    const QuietGdal quiet;
    const bool db = isDatabase(source);
    if (!db && !QFileInfo(source).exists())
        throw Erreur(err::AccesRefuse, QStringLiteral("« %1 » est introuvable").arg(source));
    GDALDatasetUniquePtr ds(GDALDataset::Open(
        db ? source.toUtf8().constData() : gdalPath(source).constData(),
        GDAL_OF_VECTOR | (update ? GDAL_OF_UPDATE : GDAL_OF_READONLY), nullptr, nullptr, nullptr));
    if (!ds && db)
        throw Erreur(err::AccesRefuse,
                     QStringLiteral("Impossible d'ouvrir la base « %1 » : %2")
                         .arg(shownSource(source), carto::database::connectionFailure(
                                                       QString::fromUtf8(CPLGetLastErrorMsg()))));
    if (!ds)
        fail(QStringLiteral("Impossible de lire « %1 »").arg(source));
    if (db) {
        CPLErrorReset();
        OGRLayer* version = ds->ExecuteSQL("SELECT postgis_version()", nullptr, nullptr);
        if (version)
            ds->ReleaseResultSet(version);
        if (!version || CPLGetLastErrorType() >= CE_Failure)
            throw Erreur(err::AccesRefuse,
                         QStringLiteral("La base « %1 » n'a pas l'extension PostGIS")
                             .arg(shownSource(source)));
    }
    return ds;
}

std::vector<PlanLayerRef> planLayersOf(GDALDataset& ds, const QString& source) {
    const QuietGdal quiet;
    const bool file = !isDatabase(source);
    const QString folder = file ? QFileInfo(source).absolutePath() : QString();
    std::vector<PlanLayerRef> out;
    if (OGRLayer* order = ds.ExecuteSQL("SELECT layer_name, source FROM mapset_layers "
                                        "ORDER BY position",
                                        nullptr, nullptr)) {
        for (auto& row : *order) {
            PlanLayerRef ref{QString::fromUtf8(row->GetFieldAsString(0)), {}};
            if (row->IsFieldSetAndNotNull(1)) {
                const QString image = QString::fromUtf8(row->GetFieldAsString(1));
                ref.raster = file && QDir::isRelativePath(image)
                                 ? QDir::cleanPath(folder + u'/' + image)
                                 : image;
            } else if (!ds.GetLayerByName(row->GetFieldAsString(0)) && file) {
                ref.raster = QStringLiteral("GPKG:%1:%2")
                                 .arg(QFileInfo(source).absoluteFilePath(), ref.name);
            }
            out.push_back(std::move(ref));
        }
        ds.ReleaseResultSet(order);
    }
    if (out.empty())
        for (OGRLayer* layer : ds.GetLayers())
            out.push_back({QString::fromUtf8(layer->GetName()), {}});
    return out;
}

} // namespace veldra::plantool
