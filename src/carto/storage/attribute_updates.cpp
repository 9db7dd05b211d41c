#include "attribute_updates.h"

#include <sqlite3.h>

namespace carto {

namespace {

QByteArray quoted(const QByteArray& name) {
    QByteArray q = name;
    q.replace('"', "\"\"");
    return '"' + q + '"';
}

QString sqliteError(sqlite3* db) {
    return QString::fromUtf8(sqlite3_errmsg(db));
}

} // namespace

void AttributeUpdates::Finalizer::operator()(sqlite3_stmt* s) const {
    sqlite3_finalize(s);
}

sqlite3_stmt* AttributeUpdates::statement(const QByteArray& table, const QByteArray& fidColumn,
                                          const std::vector<Cell>& cells, QString* why) {
    QByteArray key = table;
    for (const Cell& c : cells)
        key += '\0' + c.column;
    if (const auto it = statements_.find(key); it != statements_.end())
        return it->second.get();
    QByteArray sql = "UPDATE " + quoted(table) + " SET ";
    for (size_t i = 0; i < cells.size(); ++i)
        sql += (i ? ", " : "") + quoted(cells[i].column) + " = ?";
    sql += " WHERE " + quoted(fidColumn) + " = ?";
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(db_, sql.constData(), int(sql.size()), &raw, nullptr) != SQLITE_OK) {
        sqlite3_finalize(raw);
        *why = sqliteError(db_);
        return nullptr;
    }
    statements_.emplace(std::move(key), Statement(raw));
    return raw;
}

bool AttributeUpdates::write(const QByteArray& table, const QByteArray& fidColumn, qint64 fid,
                             const std::vector<Cell>& cells, QString* why) {
    sqlite3_stmt* s = statement(table, fidColumn, cells, why);
    if (!s)
        return false;
    int i = 1;
    for (const Cell& c : cells) {
        const QVariant& v = c.value;
        if (!v.isValid() || v.isNull())
            sqlite3_bind_null(s, i);
        else if (c.kind == Kind::Integer)
            sqlite3_bind_int64(s, i, v.toLongLong());
        else if (c.kind == Kind::Real)
            sqlite3_bind_double(s, i, v.toDouble());
        else {
            const QByteArray text = v.toString().toUtf8();
            sqlite3_bind_text(s, i, text.constData(), int(text.size()), SQLITE_TRANSIENT);
        }
        ++i;
    }
    sqlite3_bind_int64(s, i, fid);
    const int rc = sqlite3_step(s);
    if (rc != SQLITE_DONE)
        *why = sqliteError(db_);
    sqlite3_reset(s);
    sqlite3_clear_bindings(s);
    if (rc != SQLITE_DONE)
        return false;
    if (sqlite3_changes(db_) != 1) {
        *why = QStringLiteral("objet %1 introuvable").arg(fid);
        return false;
    }
    return true;
}

} // namespace carto
