#include "veldra-plan/gdal_support.h"

#include <QFile>

namespace veldra::plantool {

void fail(const QString& what) {
    const QString reason = QString::fromUtf8(CPLGetLastErrorMsg()).trimmed();
    throw Erreur(err::AccesRefuse, reason.isEmpty() ? what : what + QStringLiteral(" : ") + reason);
}

GDALDriver& gdalDriver(const char* name) {
    // Registering is idempotent but not free; once per process is enough.
    static const bool registered = [] {
        GDALAllRegister();
        return true;
    }();
    (void)registered;
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(name);
    if (driver == nullptr)
        throw Erreur(err::AccesRefuse,
                     QStringLiteral("Le pilote GDAL « %1 » est absent").arg(QLatin1String(name)));
    return *driver;
}

QByteArray gdalPath(const QString& path) {
    return QFile::encodeName(path);
}

GDALDatasetUniquePtr createGeoPackage(const QString& path) {
    const QuietGdal quiet;
    GDALDatasetUniquePtr ds(
        gdalDriver("GPKG").Create(gdalPath(path).constData(), 0, 0, 0, GDT_Unknown, nullptr));
    if (!ds)
        fail(QStringLiteral("Impossible de créer le fichier « %1 »").arg(path));
    return ds;
}

void closeDataset(GDALDatasetUniquePtr ds, const QString& path) {
    const QuietGdal quiet;
    ds.reset();
    if (CPLGetLastErrorType() >= CE_Failure)
        fail(QStringLiteral("Impossible d'enregistrer le fichier « %1 »").arg(path));
}

void executeSql(GDALDataset& ds, const QString& sql) {
    const QuietGdal quiet;
    OGRLayer* result = ds.ExecuteSQL(sql.toUtf8().constData(), nullptr, nullptr);
    if (result != nullptr)
        ds.ReleaseResultSet(result);
    if (CPLGetLastErrorType() >= CE_Failure)
        fail(QStringLiteral("Échec de la requête « %1 »").arg(sql));
}

Transaction::Transaction(GDALDataset& ds) : ds_(ds) {
    const QuietGdal quiet;
    if (ds_.StartTransaction() != OGRERR_NONE)
        fail(QStringLiteral("Impossible d'ouvrir une transaction"));
    open_ = true;
}

Transaction::~Transaction() {
    if (open_) {
        const QuietGdal quiet;
        ds_.RollbackTransaction();
    }
}

void Transaction::commit() {
    const QuietGdal quiet;
    open_ = false;
    if (ds_.CommitTransaction() != OGRERR_NONE)
        fail(QStringLiteral("Impossible d'enregistrer la transaction"));
}

} // namespace veldra::plantool
