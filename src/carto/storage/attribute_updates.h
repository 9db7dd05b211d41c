#pragma once
// Changes of a GeoPackage feature's attributes alone, written straight through the
// package's SQLite connection. SetFeature rewrites the whole row, geometry included, and
// the R-tree's triggers then run for every feature although its shape did not move:
// an UPDATE of the changed columns alone leaves the geometry and its index untouched.
// The statements are prepared once per table and set of columns, and finalised before the
// connection closes.

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <map>
#include <memory>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace carto {

class AttributeUpdates {
public:
    enum class Kind { Integer, Real, Text };
    struct Cell {
        QByteArray column;
        Kind kind;
        QVariant value; // null or invalid: SQL NULL
    };

    // `db` stays owned by its dataset, which must outlive this object.
    explicit AttributeUpdates(sqlite3* db) : db_(db) {}

    // Writes the cells into the row of that FID; false with SQLite's message in `why` when
    // the statement fails (the transaction then decides what is kept).
    bool write(const QByteArray& table, const QByteArray& fidColumn, qint64 fid,
               const std::vector<Cell>& cells, QString* why);

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* s) const;
    };
    using Statement = std::unique_ptr<sqlite3_stmt, Finalizer>;

    sqlite3_stmt* statement(const QByteArray& table, const QByteArray& fidColumn,
                            const std::vector<Cell>& cells, QString* why);

    sqlite3* db_;
    std::map<QByteArray, Statement> statements_;
};

} // namespace carto
