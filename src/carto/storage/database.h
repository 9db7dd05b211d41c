#pragma once
// What is particular to a map set held in a PostgreSQL + PostGIS database, opened through
// OGR's "PG:" connection strings: how such a source is shown in messages (never with its
// password), and the French sentences for what the server or libpq answered.

#include <QString>

namespace carto::database {

// True for an OGR connection string to PostgreSQL ("PG:...", any letter case).
bool isPostgres(const QString& source);

// The source as messages show it: the value of a password= option replaced by "***".
QString shownSource(const QString& source);

// Why a connection could not be made, in one French sentence, from GDAL's message.
QString connectionFailure(const QString& why);

enum class Failure {
    Other,
    Busy,              // a lock held by another clerk, a deadlock, a serialisation conflict
    ConnectionLost,    // the server went away or the connection broke
    WrongGeometryType, // a table whose geometry column takes another kind of geometry
    Vanished           // a feature written here was deleted by another clerk meanwhile
};
// What BatchedUpdates reports when a row it updates is no longer there.
inline constexpr char kVanished[] = "feature deleted meanwhile";
Failure classify(const QString& why);

// A PostgreSQL identifier in double quotes; "schema.table" becomes "schema"."table".
QString quotedName(const QString& name);
// A PostgreSQL text literal (standard_conforming_strings on): quotes doubled.
QString quotedText(const QByteArray& utf8);

} // namespace carto::database
