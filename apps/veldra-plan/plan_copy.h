#pragma once
// Moves a plan between a GeoPackage and a PostgreSQL + PostGIS database (either way, or
// between two of the same kind) without losing anything the map engine reads: every
// table of the drawing order with its columns and their widths, every feature with its
// FID, geometry, attributes and OGR_STYLE, and the drawing order itself. A raster layer
// stays a reference to its image file: relative to a GeoPackage's folder when the image
// lies in it, absolute otherwise (a database has no folder).
//
// Nothing is half-written: a GeoPackage is written under a stage name and renamed at the
// end, a database receives everything in one transaction. The destination must not hold
// a plan already: an existing file, or a database with one of the plan's tables, is
// refused before anything is written.

#include <QString>

namespace veldra::plantool {

struct CopyReport {
    QString destination; // as messages show it
    int layers = 0;
    int rasters = 0;
    qint64 features = 0;
    QString summary() const;
};

CopyReport copyPlan(const QString& source, const QString& destination);

} // namespace veldra::plantool
