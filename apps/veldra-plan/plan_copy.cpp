#include "veldra-plan/plan_copy.h"

#include "carto/storage/database.h"
#include "veldra-plan/gdal_support.h"
#include "veldra-plan/output_file.h"
#include "veldra-plan/plan_schema.h"
#include "veldra-plan/plan_source.h"

#include <QDir>
#include <QFileInfo>
#include <optional>

namespace veldra::plantool {

namespace {

// Where the destination finds the raster's image: relative to its own folder when the
// image is inside it, else as it is.
QString rasterReference(const QString& image, const QString& destination) {
    if (isDatabase(destination) || image.startsWith(QLatin1String("GPKG:")) ||
        QDir::isRelativePath(image))
        return image;
    const QDir folder = QFileInfo(destination).absoluteDir();
    const QString relative = folder.relativeFilePath(image);
    return relative.startsWith(QLatin1String("..")) ? image : relative;
}

// The reference of a local plane, which a GeoPackage must be told (see layer_writer.h)
// and a database does not know: none.
std::optional<OGRSpatialReference> referenceFor(const OGRSpatialReference* source, bool database) {
    if (source && !source->IsLocal() && !source->IsEmpty())
        return *source;
    if (database)
        return std::nullopt;
    OGRSpatialReference local;
    local.importFromWkt("LOCAL_CS[\"Undefined cartesian SRS\"]");
    return local;
}

qint64 copyLayer(OGRLayer& from, GDALDataset& to, bool database) {
    const QString name = QString::fromUtf8(from.GetName());
    std::optional<OGRSpatialReference> srs = referenceFor(from.GetSpatialRef(), database);
    CPLStringList options;
    options.SetNameValue("GEOMETRY_NAME", "geom");
    options.SetNameValue("FID", "fid");
    if (database) {
        options.SetNameValue("LAUNDER", "NO"); // "Allées" stays "Allées", "IDGCF" stays "IDGCF"
        options.SetNameValue("SPATIAL_INDEX", "GIST");
    }
    OGRLayer* layer =
        to.CreateLayer(from.GetName(), srs ? &*srs : nullptr, from.GetGeomType(), options.List());
    if (!layer)
        fail(QStringLiteral("Impossible de créer la table « %1 »").arg(name));
    const OGRFeatureDefn* defn = from.GetLayerDefn();
    for (int i = 0; i < defn->GetFieldCount(); ++i) {
        OGRFieldDefn field(defn->GetFieldDefn(i));
        if (layer->CreateField(&field, FALSE) != OGRERR_NONE)
            fail(QStringLiteral("Impossible de créer la colonne « %1 » de « %2 »")
                     .arg(QString::fromUtf8(field.GetNameRef()), name));
    }
    qint64 count = 0;
    from.ResetReading();
    for (auto& f : from) {
        OGRFeature copy(layer->GetLayerDefn());
        copy.SetFrom(f.get(), TRUE);
        copy.SetFID(f->GetFID());
        if (layer->CreateFeature(&copy) != OGRERR_NONE)
            fail(QStringLiteral("Impossible de copier l'objet %1 de « %2 »")
                     .arg(f->GetFID())
                     .arg(name));
        ++count;
    }
    if (CPLGetLastErrorType() >= CE_Failure)
        fail(QStringLiteral("Lecture impossible de la couche « %1 »").arg(name));
    return count;
}

// Refuses a database that already holds one of the tables to write.
void requireFree(GDALDataset& ds, const std::vector<PlanLayerRef>& layers, const QString& shown) {
    const QuietGdal quiet;
    std::vector<QString> tables{QString::fromLatin1(LayerOrderTable)};
    for (const PlanLayerRef& l : layers)
        if (l.raster.isEmpty())
            tables.push_back(l.name);
    for (const QString& t : tables) {
        CPLErrorReset();
        const QString probe =
            QStringLiteral("SELECT to_regclass(%1) IS NOT NULL")
                .arg(carto::database::quotedText(carto::database::quotedName(t).toUtf8()));
        OGRLayer* rs = ds.ExecuteSQL(probe.toUtf8().constData(), nullptr, nullptr);
        bool exists = false;
        if (rs) {
            if (const OGRFeatureUniquePtr row{rs->GetNextFeature()})
                exists = row->GetFieldAsInteger(0) != 0;
            ds.ReleaseResultSet(rs);
        }
        if (exists)
            throw Erreur(err::AccesRefuse,
                         QStringLiteral("La base « %1 » contient déjà la table « %2 » : rien n'a "
                                        "été copié")
                             .arg(shown, t));
    }
}

} // namespace

QString CopyReport::summary() const {
    QString text = QStringLiteral("Plan copié vers « %1 » : %2 couche(s), %3 objet(s)")
                       .arg(destination)
                       .arg(layers)
                       .arg(features);
    if (rasters > 0)
        text += QStringLiteral(", %1 plan numérisé(s) gardé(s) en référence").arg(rasters);
    return text;
}

CopyReport copyPlan(const QString& source, const QString& destination) {
    GDALDatasetUniquePtr from = openSource(source, false);
    const std::vector<PlanLayerRef> layers = planLayersOf(*from, source);
    if (layers.empty())
        throw Erreur(
            err::AccesRefuse,
            QStringLiteral("« %1 » n'est pas un plan : aucune couche").arg(shownSource(source)));
    for (const PlanLayerRef& l : layers)
        if (l.raster.isEmpty() && !from->GetLayerByName(l.name.toUtf8().constData()))
            throw Erreur(err::AccesRefuse, QStringLiteral("La couche « %1 » manque dans « %2 »")
                                               .arg(l.name, shownSource(source)));

    const bool database = isDatabase(destination);
    CopyReport report;
    report.destination = shownSource(destination);
    std::optional<StagedFile> staged;
    GDALDatasetUniquePtr to;
    if (database) {
        to = openSource(destination, true);
        requireFree(*to, layers, report.destination);
    } else {
        if (QFileInfo::exists(destination))
            throw Erreur(err::AccesRefuse,
                         QStringLiteral("Le fichier « %1 » existe déjà : rien n'a été copié")
                             .arg(destination));
        prepareFolder(QFileInfo(destination).absolutePath());
        staged.emplace(QFileInfo(destination).absoluteFilePath(), QStringLiteral("gpkg"));
        to = createGeoPackage(staged->stagePath());
    }

    std::vector<LayerOrderEntry> order;
    {
        const QuietGdal quiet;
        Transaction tx(*to); // one for everything: a database keeps all of it or nothing
        for (const PlanLayerRef& l : layers) {
            if (!l.raster.isEmpty()) {
                order.push_back({l.name, rasterReference(l.raster, destination)});
                ++report.rasters;
                continue;
            }
            report.features +=
                copyLayer(*from->GetLayerByName(l.name.toUtf8().constData()), *to, database);
            order.push_back({l.name, {}});
        }
        writeLayerOrderRows(*to, order);
        tx.commit();
    }
    report.layers = int(order.size());
    if (staged) {
        closeDataset(std::move(to), staged->stagePath());
        staged->commit();
    }
    return report;
}

} // namespace veldra::plantool
