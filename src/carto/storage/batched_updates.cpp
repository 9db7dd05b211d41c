#include "carto/storage/batched_updates.h"

#include "carto/storage/database.h"
#include "carto/storage/gdal_handles.h"

#include <QStringList>
#include <cmath>
#include <ogr_geometry.h>
#include <ogrsf_frmts.h>

namespace carto {

namespace {

constexpr std::size_t kRowsPerStatement = 500;

// The SQL type a held value is cast to; empty for a type written feature by feature.
QString sqlType(const OGRFieldDefn& f) {
    switch (f.GetType()) {
    case OFTInteger:
        return f.GetSubType() == OFSTBoolean ? QStringLiteral("boolean")
                                             : QStringLiteral("integer");
    case OFTInteger64:
        return QStringLiteral("bigint");
    case OFTReal:
        return QStringLiteral("double precision");
    case OFTString:
        return QStringLiteral("text");
    case OFTDate:
        return QStringLiteral("date");
    case OFTDateTime:
        return QStringLiteral("timestamp");
    default:
        return {};
    }
}

QString literal(const OGRFeature& f, int i, const QString& type) {
    if (!f.IsFieldSetAndNotNull(i))
        return QStringLiteral("NULL::") + type;
    const OGRFieldDefn& defn = *f.GetFieldDefnRef(i);
    switch (defn.GetType()) {
    case OFTInteger:
        if (defn.GetSubType() == OFSTBoolean)
            return f.GetFieldAsInteger(i) ? QStringLiteral("true") : QStringLiteral("false");
        return QString::number(f.GetFieldAsInteger(i));
    case OFTInteger64:
        return QString::number(f.GetFieldAsInteger64(i));
    case OFTReal: {
        const double v = f.GetFieldAsDouble(i);
        if (std::isnan(v))
            return QStringLiteral("'NaN'::double precision");
        if (std::isinf(v))
            return v > 0 ? QStringLiteral("'Infinity'::double precision")
                         : QStringLiteral("'-Infinity'::double precision");
        return QString::number(v, 'g', 17) + QStringLiteral("::double precision");
    }
    case OFTDate:
    case OFTDateTime: {
        int y = 0, mo = 0, d = 0, h = 0, mi = 0, tz = 0;
        float s = 0;
        f.GetFieldAsDateTime(i, &y, &mo, &d, &h, &mi, &s, &tz);
        return QStringLiteral("'%1-%2-%3 %4:%5:%6'::%7")
            .arg(y, 4, 10, QLatin1Char('0'))
            .arg(mo, 2, 10, QLatin1Char('0'))
            .arg(d, 2, 10, QLatin1Char('0'))
            .arg(h, 2, 10, QLatin1Char('0'))
            .arg(mi, 2, 10, QLatin1Char('0'))
            .arg(double(s), 0, 'f', 3)
            .arg(type);
    }
    default:
        return database::quotedText(QByteArray(f.GetFieldAsString(i))) + QStringLiteral("::") +
               type;
    }
}

QString geometryLiteral(const OGRGeometry* g) {
    if (!g)
        return QStringLiteral("NULL::geometry");
    QByteArray wkb(qsizetype(g->WkbSize()), Qt::Uninitialized);
    g->exportToWkb(wkbNDR, reinterpret_cast<unsigned char*>(wkb.data()), wkbVariantIso);
    return u'\'' + QString::fromLatin1(wkb.toHex()) + QStringLiteral("'::geometry");
}

QString lastError() {
    return QString::fromUtf8(CPLGetLastErrorMsg());
}

} // namespace

void FeatureDeleter::operator()(OGRFeature* f) const {
    delete f;
}

void BatchedUpdates::hold(OGRLayer& layer, OgrFeaturePtr feature) {
    for (Held& h : layers_)
        if (h.layer == &layer) {
            const qint64 fid = feature->GetFID();
            h.rows[fid] = std::move(feature);
            return;
        }
    Held h{&layer, {}};
    const qint64 fid = feature->GetFID();
    h.rows[fid] = std::move(feature);
    layers_.push_back(std::move(h));
}

void BatchedUpdates::forget(OGRLayer& layer, qint64 fid) {
    for (Held& h : layers_)
        if (h.layer == &layer)
            h.rows.erase(fid);
}

bool BatchedUpdates::flush(GDALDataset& ds, QString* why, QString* layer) {
    std::vector<Held> layers;
    layers.swap(layers_);
    for (Held& h : layers)
        if (!h.rows.empty() && !flushLayer(ds, h, why)) {
            *layer = QString::fromUtf8(h.layer->GetName());
            return false;
        }
    return true;
}

bool BatchedUpdates::flushLayer(GDALDataset& ds, Held& held, QString* why) {
    const gdal::QuietErrors quiet;
    OGRLayer& layer = *held.layer;
    const OGRFeatureDefn& defn = *layer.GetLayerDefn();
    const QString fidColumn = QString::fromUtf8(layer.GetFIDColumn());
    const QString geomColumn = QString::fromUtf8(layer.GetGeometryColumn());
    const QString table = database::quotedName(QString::fromUtf8(layer.GetName()));

    // A column is written when every row sets it and left alone when none does, as
    // SetFeature does; rows that disagree, or a column of a kind this writer does not
    // cast, go feature by feature.
    std::vector<int> columns;
    QStringList types;
    bool batchable = !fidColumn.isEmpty();
    for (int i = 0; i < defn.GetFieldCount() && batchable; ++i) {
        std::size_t set = 0;
        for (const auto& [fid, feature] : held.rows)
            set += feature->IsFieldSet(i) ? 1 : 0;
        if (set == 0)
            continue;
        const QString type = sqlType(*defn.GetFieldDefn(i));
        batchable = !type.isEmpty() && set == held.rows.size();
        columns.push_back(i);
        types << type;
    }
    if (!batchable) {
        for (auto& [fid, feature] : held.rows)
            if (layer.SetFeature(feature.get()) != OGRERR_NONE) {
                *why = lastError();
                return false;
            }
        return true;
    }

    // The column's own reference, or else the one each row already has.
    QString srid =
        QStringLiteral("COALESCE(ST_SRID(t.%1), 0)").arg(database::quotedName(geomColumn));
    if (!geomColumn.isEmpty()) {
        const QString ask =
            QStringLiteral("SELECT postgis_typmod_srid(atttypmod) FROM pg_attribute "
                           "WHERE attrelid = %1::regclass AND attname = %2")
                .arg(database::quotedText(table.toUtf8()),
                     database::quotedText(geomColumn.toUtf8()));
        if (auto rs = gdal::executeSql(ds, ask.toUtf8().constData())) {
            if (const std::unique_ptr<OGRFeature> row{rs->GetNextFeature()};
                row && row->GetFieldAsInteger(0) > 0)
                srid = QString::number(row->GetFieldAsInteger(0));
        }
    }

    QStringList names{database::quotedName(fidColumn)};
    QStringList assignments;
    for (int i : columns) {
        const QString name =
            database::quotedName(QString::fromUtf8(defn.GetFieldDefn(i)->GetNameRef()));
        names << name;
        assignments << QStringLiteral("%1 = v.%1").arg(name);
    }
    if (!geomColumn.isEmpty()) {
        const QString name = database::quotedName(geomColumn);
        names << name;
        assignments << QStringLiteral("%1 = ST_SetSRID(v.%1, %2)").arg(name, srid);
    }
    const QString head = QStringLiteral("WITH v(%1) AS (VALUES ").arg(names.join(u','));
    const QString tail =
        QStringLiteral("), u AS (UPDATE %1 AS t SET %2 FROM v WHERE t.%3 = v.%3 RETURNING 1) "
                       "SELECT count(*) FROM u")
            .arg(table, assignments.join(u','), database::quotedName(fidColumn));

    auto row = held.rows.begin();
    while (row != held.rows.end()) {
        QString sql = head;
        std::size_t n = 0;
        for (; row != held.rows.end() && n < kRowsPerStatement; ++row, ++n) {
            const OGRFeature& f = *row->second;
            if (n > 0)
                sql += u',';
            sql += u'(' + QString::number(row->first);
            for (qsizetype c = 0; c < qsizetype(columns.size()); ++c)
                sql += u',' + literal(f, columns[size_t(c)], types[c]);
            if (!geomColumn.isEmpty())
                sql += u',' + geometryLiteral(f.GetGeometryRef());
            sql += u')';
        }
        sql += tail;
        CPLErrorReset();
        auto rs = gdal::executeSql(ds, sql.toUtf8().constData());
        const std::unique_ptr<OGRFeature> count{rs ? rs->GetNextFeature() : nullptr};
        if (!count) {
            *why = lastError();
            return false;
        }
        if (std::size_t(count->GetFieldAsInteger64(0)) != n) {
            *why = QString::fromLatin1(database::kVanished);
            return false;
        }
    }
    return true;
}

} // namespace carto
