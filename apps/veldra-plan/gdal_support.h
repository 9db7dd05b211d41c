#pragma once
// The GDAL pieces every writer of the tool shares. Failures become veldra::Erreur with a
// French message followed by GDAL's own reason; GDAL's messages never reach stderr while
// the engine's guard (QuietGdal) is alive.

#include "base/erreur.h"
#include "carto/storage/gdal_handles.h"

#include <QString>
#include <cpl_error.h>
#include <gdal_priv.h>

namespace veldra::plantool {

// Keeps GDAL from printing its errors; the last one is read by fail().
using QuietGdal = carto::gdal::QuietErrors;

// Throws Erreur(AccesRefuse) whose description is `what`, then GDAL's last message if any.
[[noreturn]] void fail(const QString& what);

// A driver registered with GDAL; Erreur when this GDAL lacks it.
GDALDriver& gdalDriver(const char* name);

// The path as GDAL takes it (the file system's encoding).
QByteArray gdalPath(const QString& path);

// A new, empty GeoPackage at `path`, which must not exist.
GDALDatasetUniquePtr createGeoPackage(const QString& path);

// Closes (and so flushes) the dataset at `path`; Erreur when GDAL reports a failure.
void closeDataset(GDALDatasetUniquePtr ds, const QString& path);

// Runs SQL that returns no rows (DDL, INSERT); Erreur when it fails.
void executeSql(GDALDataset& ds, const QString& sql);

// A dataset transaction, rolled back unless commit() is reached.
class Transaction {
public:
    explicit Transaction(GDALDataset& ds);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void commit();

private:
    GDALDataset& ds_;
    bool open_ = false;
};

} // namespace veldra::plantool
