#include "map_store.h"

#include "base/erreur.h"
#include "carto/geometry/geometry.h"
#include "carto/geometry/rings.h"
#include "carto/model/conform.h"
#include "carto/storage/arrow_rows.h"
#include "carto/storage/database.h"
#include "carto/storage/gdal_handles.h"
#include "carto/storage/geometry_read.h"
#include "carto/storage/style_string.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <ogr_geometry.h>
#include <optional>
#include <sqlite3.h>
#include <string>

namespace carto {

using veldra::Erreur;
namespace err = veldra::err;

void DatasetCloser::operator()(GDALDataset* ds) const {
    GDALClose(ds);
}

namespace {

constexpr const char* kStyleColumn = "OGR_STYLE";

QString lastGdalError() {
    const QString msg = QString::fromUtf8(CPLGetLastErrorMsg());
    return msg.isEmpty() ? QStringLiteral("erreur inconnue") : msg;
}

[[noreturn]] void unreadable(const QString& source, const QString& why) {
    throw Erreur(err::PlanIllisible,
                 QStringLiteral("Impossible d'ouvrir le plan « %1 » : %2").arg(source, why));
}

// How long a statement waits for another program's lock on the plan before giving up.
// GDAL may wait four times for one feature, so the clerk hears of it within 2 s.
constexpr const char* kBusyTimeout = "PRAGMA busy_timeout = 400";
// While the plan is open its writes go to a write-ahead log: a commit is appended, not
// synced, so an edit costs well under a millisecond instead of the disk's flushes, and a
// killed process still loses nothing it committed. Closed, the plan is a plain
// GeoPackage again.
constexpr const char* kJournalOuvert = "PRAGMA journal_mode = WAL";
constexpr const char* kSynchronisation = "PRAGMA synchronous = NORMAL";
constexpr const char* kJournalFerme = "PRAGMA journal_mode = DELETE";

bool lockedByAnother(const QString& why) {
    return why.contains(QLatin1String("database is locked")) ||
           why.contains(QLatin1String("database table is locked"));
}

[[noreturn]] void writeFailed(const QString& layer, const QString& why, bool locked) {
    if (locked || lockedByAnother(why))
        throw Erreur(err::PlanOccupe,
                     QStringLiteral("Le plan est utilisé par un autre programme : rien n'a été "
                                    "modifié. Réessayez quand il l'aura libéré."));
    throw Erreur(err::EcritureImpossible,
                 QStringLiteral("Écriture impossible dans la couche « %1 » : %2").arg(layer, why));
}

[[noreturn]] void databaseWriteFailed(const QString& layer, const QString& why) {
    switch (database::classify(why)) {
    case database::Failure::Busy:
        throw Erreur(err::PlanOccupe,
                     QStringLiteral("Le plan est en cours de modification sur un autre poste : "
                                    "rien n'a été modifié. Réessayez dans un instant."));
    case database::Failure::Vanished:
        throw Erreur(err::PlanOccupe,
                     QStringLiteral("Un élément de la couche « %1 » a été supprimé sur un autre "
                                    "poste : rien n'a été modifié. Rouvrez le plan.")
                         .arg(layer));
    case database::Failure::ConnectionLost:
        throw Erreur(err::EcritureImpossible,
                     QStringLiteral("La connexion à la base de données est perdue : la mise à "
                                    "jour n'a pas été enregistrée."));
    case database::Failure::WrongGeometryType:
        throw Erreur(err::EcritureImpossible,
                     QStringLiteral("La table « %1 » de la base n'accepte pas cette sorte de "
                                    "géométrie : rien n'a été modifié.")
                         .arg(layer));
    case database::Failure::Other:
        break;
    }
    throw Erreur(err::EcritureImpossible,
                 QStringLiteral("Écriture impossible dans la couche « %1 » : %2").arg(layer, why));
}

// A database connection's settings: how long a write waits for another clerk's lock
// before giving up, and text literals as the batched updates write them.
void prepareSession(GDALDataset& ds, const QString& shown) {
    CPLErrorReset();
    const bool postgis = gdal::executeSql(ds, "SELECT postgis_version()") != nullptr &&
                         CPLGetLastErrorType() < CE_Failure;
    if (!postgis)
        unreadable(shown, QStringLiteral("cette base de données n'a pas l'extension PostGIS"));
    gdal::executeSql(ds, "SET lock_timeout = '1500ms'");
    gdal::executeSql(ds, "SET standard_conforming_strings = on");
    CPLErrorReset();
}

FieldType typeOf(OGRFieldType t) {
    switch (t) {
    case OFTInteger:
        return FieldType::Integer;
    case OFTInteger64:
        return FieldType::Integer64;
    case OFTReal:
        return FieldType::Real;
    case OFTDate:
    case OFTDateTime:
        return FieldType::Date;
    default:
        return FieldType::Text;
    }
}

std::unique_ptr<OGRLinearRing> ringOf(PartView part) {
    auto ring = std::make_unique<OGRLinearRing>();
    ring->setNumPoints(int(part.size()), FALSE);
    for (size_t i = 0; i < part.size(); ++i)
        ring->setPoint(int(i), part[i].x, part[i].y);
    ring->closeRings();
    return ring;
}

std::unique_ptr<OGRGeometry> ogrGeometry(const FeatureData& d) {
    if (d.parts.empty())
        return nullptr;
    switch (d.kind) {
    case FeatureKind::Symbol:
    case FeatureKind::Text:
        return std::make_unique<OGRPoint>(d.parts[0].at(0).x, d.parts[0].at(0).y);
    case FeatureKind::Line: {
        auto lineOf = [](PartView part) {
            auto line = std::make_unique<OGRLineString>();
            line->setNumPoints(int(part.size()), FALSE);
            for (size_t i = 0; i < part.size(); ++i)
                line->setPoint(int(i), part[i].x, part[i].y);
            return line;
        };
        if (d.parts.size() == 1)
            return lineOf(d.parts[0]);
        auto multi = std::make_unique<OGRMultiLineString>();
        for (const PartView part : d.parts)
            multi->addGeometryDirectly(lineOf(part).release());
        return multi;
    }
    case FeatureKind::Region:
        break;
    }
    // Each polygon's shell, then its holes, ring by ring as memory holds them: what is
    // read back is what was written.
    const auto polygonOf = [&](const std::vector<std::size_t>& group) {
        auto poly = std::make_unique<OGRPolygon>();
        for (const std::size_t i : group)
            poly->addRingDirectly(ringOf(d.parts[i]).release());
        return poly;
    };
    const std::vector<std::vector<std::size_t>> groups =
        d.parts.size() == 1 ? std::vector<std::vector<std::size_t>>{{0}}
                            : polygonsOf(d.parts.toParts());
    if (groups.size() == 1)
        return polygonOf(groups.front());
    auto multi = std::make_unique<OGRMultiPolygon>();
    for (const auto& group : groups)
        multi->addGeometryDirectly(polygonOf(group).release());
    return multi;
}

// One column's value into the feature's attribute block: texts decoded straight into it.
void readField(AttributeValues::Builder& values, const OGRFeature& f, int i, OGRFieldType type) {
    if (!f.IsFieldSetAndNotNull(i))
        return values.addNull();
    switch (type) {
    case OFTInteger:
        return values.addInt(f.GetFieldAsInteger(i));
    case OFTInteger64:
        return values.addInt64(f.GetFieldAsInteger64(i));
    case OFTReal:
        return values.addReal(f.GetFieldAsDouble(i));
    case OFTDate:
    case OFTDateTime: {
        int y = 0, mo = 0, d = 0, h = 0, mi = 0, tz = 0;
        float s = 0;
        f.GetFieldAsDateTime(i, &y, &mo, &d, &h, &mi, &s, &tz);
        return values.add(QDateTime(QDate(y, mo, d), QTime(h, mi, int(s))));
    }
    default:
        return values.addUtf8(f.GetFieldAsString(i));
    }
}

void writeField(OGRFeature& f, int i, FieldType type, const QVariant& v) {
    if (!v.isValid() || v.isNull()) {
        f.SetFieldNull(i);
        return;
    }
    switch (type) {
    case FieldType::Integer:
    case FieldType::Integer64:
        f.SetField(i, GIntBig(v.toLongLong()));
        break;
    case FieldType::Real:
        f.SetField(i, v.toDouble());
        break;
    case FieldType::Date: {
        const QDateTime d = v.toDateTime();
        f.SetField(i, d.date().year(), d.date().month(), d.date().day(), d.time().hour(),
                   d.time().minute(), float(d.time().second()), 0);
        break;
    }
    case FieldType::Text:
        f.SetField(i, v.toString().toUtf8().constData());
        break;
    }
}

} // namespace

MapStore::MapStore(QString source, std::unique_ptr<GDALDataset, DatasetCloser> ds)
    : source_(std::move(source)), ds_(std::move(ds)) {}

MapStore::~MapStore() {
    attributes_.reset(); // its statements, before the connection closes
    if (depth_ > 0 && ds_)
        ds_->RollbackTransaction();
    if (ds_ && wal_) {
        const gdal::QuietErrors quiet;
        gdal::executeSql(*ds_, kJournalFerme); // refused while another program reads it
    }
}

void MapStore::releaseReadMemory() const {
    if (!wal_)
        return;
    if (auto* db = static_cast<sqlite3*>(ds_->GetInternalHandle("SQLITE_HANDLE")))
        sqlite3_db_release_memory(db);
}

std::unique_ptr<MapStore> MapStore::open(const QString& pathOrConnection) {
    GDALAllRegister();
    const gdal::QuietErrors quiet;
    CPLErrorReset();
    const bool db = database::isPostgres(pathOrConnection);
    const QString shown = db ? database::shownSource(pathOrConnection) : pathOrConnection;
    const bool isFile =
        !db && (!pathOrConnection.contains(u':') || QFileInfo::exists(pathOrConnection));
    if (isFile && !QFileInfo(pathOrConnection).isFile())
        unreadable(pathOrConnection, QStringLiteral("fichier introuvable"));
    // The plan's SQL needs none of SpatiaLite's functions (GDAL has the GeoPackage's own);
    // loading it costs every open several megabytes of projection tables.
    const gdal::ThreadOption noSpatialite("SPATIALITE_LOAD", "NO");
    std::unique_ptr<GDALDataset, DatasetCloser> ds(
        GDALDataset::Open(pathOrConnection.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE,
                          nullptr, nullptr, nullptr));
    if (!ds && db)
        unreadable(shown, database::connectionFailure(QString::fromUtf8(CPLGetLastErrorMsg())));
    if (!ds) // GDAL says nothing of a file it does not recognise
        unreadable(pathOrConnection, CPLGetLastErrorMsg()[0] == '\0'
                                         ? QStringLiteral("ce fichier n'est pas un plan")
                                         : lastGdalError());
    if (isFile) // GDAL sets its own wait when it opens the file; ours is shorter
        gdal::executeSql(*ds, kBusyTimeout);
    const bool geopackage = isFile && QString::fromUtf8(ds->GetDriverName()) == u"GPKG";
    if (geopackage) {
        gdal::executeSql(*ds, kJournalOuvert);
        gdal::executeSql(*ds, kSynchronisation);
    }
    if (db)
        prepareSession(*ds, shown);
    std::unique_ptr<MapStore> store(new MapStore(pathOrConnection, std::move(ds)));
    store->wal_ = geopackage;
    if (geopackage)
        if (auto* db = static_cast<sqlite3*>(store->ds_->GetInternalHandle("SQLITE_HANDLE")))
            store->attributes_ = std::make_unique<AttributeUpdates>(db);
    store->database_ = db;
    GDALDataset& d = *store->ds_;

    const QString folder = isFile ? QFileInfo(pathOrConnection).absolutePath() : QString();
    if (auto order =
            gdal::executeSql(d, "SELECT layer_name, source FROM mapset_layers ORDER BY position")) {
        for (auto& row : *order) {
            LayerEntry e{QString::fromUtf8(row->GetFieldAsString(0)), {}};
            if (row->IsFieldSetAndNotNull(1)) {
                const QString src = QString::fromUtf8(row->GetFieldAsString(1));
                e.rasterSource = isFile && QDir::isRelativePath(src) ? folder + u'/' + src : src;
            } else if (!d.GetLayerByName(row->GetFieldAsString(0)) && isFile) {
                // A tile table of the GeoPackage itself.
                e.rasterSource = QStringLiteral("GPKG:%1:%2").arg(pathOrConnection, e.name);
            }
            store->layers_.push_back(std::move(e));
        }
    }
    if (store->layers_.empty()) {
        CPLErrorReset();
        for (int i = 0; i < d.GetLayerCount(); ++i)
            store->layers_.push_back({QString::fromUtf8(d.GetLayer(i)->GetName()), {}});
    }
    if (store->layers_.empty())
        unreadable(shown, QStringLiteral("aucune couche"));
    return store;
}

OGRLayer* MapStore::ogrLayer(const QString& name) const {
    OGRLayer* layer = ds_->GetLayerByName(name.toUtf8().constData());
    if (!layer)
        throw Erreur(err::CoucheInconnue,
                     QStringLiteral("La couche « %1 » est introuvable dans le plan.").arg(name));
    return layer;
}

FieldList MapStore::fields(const QString& layer) const {
    const gdal::QuietErrors quiet;
    FieldList out;
    const OGRFeatureDefn* defn = ogrLayer(layer)->GetLayerDefn();
    for (int i = 0; i < defn->GetFieldCount(); ++i) {
        const OGRFieldDefn* f = defn->GetFieldDefn(i);
        if (EQUAL(f->GetNameRef(), kStyleColumn))
            continue;
        out.push_back({QString::fromUtf8(f->GetNameRef()), typeOf(f->GetType()), f->GetWidth()});
    }
    return out;
}

namespace {

// Makes features from rows, whichever way the rows are read: the geometry first, then the
// style, then the fields; a row whose coordinates cannot be read is left out.
class FeatureAssembler {
public:
    FeatureAssembler(const FieldList& fields, const QString& defaultTextColumn,
                     MapStore::Read& read, size_t expected)
        : fields_(fields), read_(read), columns_(fields.size()) {
        columns_.reserve(expected);
        if (!defaultTextColumn.isEmpty() && columnOf(defaultTextColumn) >= 0)
            read_.textField = fields_[size_t(columnOf(defaultTextColumn))].name;
    }

    // The row's geometry goes into newShape(), emptied for it, then start() with its kind;
    // false when the row is left out.
    ShapeBuilder& newShape() {
        shape_.clear();
        return shape_;
    }
    bool start(FeatureKind kind) {
        // The data of the row before, when the columns took a copy: made anew otherwise.
        if (!data_)
            data_ = MutableFeaturePtr::make();
        data_->kind = kind;
        data_->text = {};
        data_->parts = shape_.build();
        if (readableParts(data_->parts))
            return true;
        ++read_.unreadable; // NaN, infinite or absurd coordinates: never handed on
        return false;
    }
    // The fields go into values(), in the order of the field list, before finish().
    AttributeValues::Builder& values() { return values_; }
    void finish(qint64 fid, QByteArrayView styleText) {
        FeatureData& data = *data_;
        data.style = styleOf(styleText);
        const ParsedStyle& parsed = previousStyle_->second;
        if (parsed.kind && data.kind == FeatureKind::Symbol)
            data.kind = *parsed.kind;
        data.attributes = values_.build();
        if (data.kind == FeatureKind::Text) {
            // The style names the column holding the text, or holds the text itself.
            const qsizetype column =
                columnOf(parsed.textField.isEmpty() ? read_.textField : parsed.textField);
            if (!parsed.textField.isEmpty() && column >= 0 && !textFieldSeen_) {
                read_.textField = fields_[size_t(column)].name;
                textFieldSeen_ = true;
            }
            data.text = !parsed.literalText.isNull() ? parsed.literalText
                        : column >= 0                ? data.attributes[size_t(column)].toString()
                                                     : QString();
        }
        refreshDerived(data);
        if (!columns_.add(fid, data))
            read_.rows.emplace_back(fid, std::move(data_));
    }
    // After the last row.
    void done() { read_.columns = columns_.finish(); }

private:
    qsizetype columnOf(const QString& column) const {
        for (size_t i = 0; i < fields_.size(); ++i)
            if (fields_[i].name.compare(column, Qt::CaseInsensitive) == 0)
                return qsizetype(i);
        return -1;
    }
    // Features mostly share a few style strings: each distinct one is parsed once, and
    // looked up again only when it differs from the previous feature's.
    StylePtr styleOf(QByteArrayView text) {
        if (!previousStyle_ || text != previousStyleText_) {
            previousStyleText_ = text.toByteArray();
            auto it = styles_.find(previousStyleText_);
            if (it == styles_.end()) {
                ParsedStyle parsed = parseStyleString(previousStyleText_);
                auto style = StylePtr::make(parsed.style);
                it = styles_.insert(previousStyleText_, {std::move(style), std::move(parsed)});
            }
            previousStyle_ = &it.value();
        }
        return previousStyle_->first;
    }

    const FieldList& fields_;
    MapStore::Read& read_;
    QHash<QByteArray, std::pair<StylePtr, ParsedStyle>> styles_;
    const std::pair<StylePtr, ParsedStyle>* previousStyle_ = nullptr;
    QByteArray previousStyleText_;
    AttributeValues::Builder values_;
    ShapeBuilder shape_;
    FeatureColumns::Builder columns_;
    MutableFeaturePtr data_;
    bool textFieldSeen_ = false;
};

// Rows of a GeoPackage table without any geometry; -1 when it cannot be told.
qint64 storedNullGeometries(GDALDataset& ds, OGRLayer& layer) {
    const auto quoted = [](const char* name) {
        QByteArray q(name);
        return '"' + q.replace('"', "\"\"") + '"';
    };
    const QByteArray sql = "SELECT COUNT(*) FROM " + quoted(layer.GetName()) + " WHERE " +
                           quoted(layer.GetGeometryColumn()) + " IS NULL";
    const auto count = gdal::executeSql(ds, sql.constData());
    const std::unique_ptr<OGRFeature> row{count ? count->GetNextFeature() : nullptr};
    return row ? row->GetFieldAsInteger64(0) : -1;
}

void readArrowRows(ArrowRows& rows, FeatureAssembler& out) {
    while (rows.next()) {
        FeatureKind kind = FeatureKind::Region;
        ShapeBuilder& shape = out.newShape();
        if (const auto wkb = rows.geometry(); !wkb.empty())
            readWkb(wkb, kind, shape); // bytes OGR would not read give no geometry
        if (!out.start(kind))
            continue;
        for (std::size_t i = 0; i < rows.fieldCount(); ++i)
            rows.addField(out.values(), i);
        out.finish(rows.fid(), rows.style());
    }
    out.done();
}

} // namespace

MapStore::Read MapStore::readFeatures(const QString& name, const FieldList& fields,
                                      const QString& defaultTextColumn) const {
    const gdal::QuietErrors quiet;
    OGRLayer* layer = ogrLayer(name);
    const OGRFeatureDefn* defn = layer->GetLayerDefn();
    const int styleIndex = defn->GetFieldIndex(kStyleColumn);
    std::vector<int> sourceIndex;
    std::vector<OGRFieldType> sourceType;
    for (const FieldDef& f : fields) {
        const int i = defn->GetFieldIndex(f.name.toUtf8().constData());
        sourceIndex.push_back(i);
        sourceType.push_back(i >= 0 ? defn->GetFieldDefn(i)->GetType() : OFTString);
    }
    const auto reserved = size_t(std::max<GIntBig>(0, layer->GetFeatureCount(FALSE)));

    // A GeoPackage's rows come a batch of columns at a time, much faster than feature by
    // feature. A stream seen going wrong, or one that lost geometries OGR reads, and the
    // layer is read again the slow way.
    if (wal_) {
        if (const auto rows = ArrowRows::open(*layer, sourceIndex, styleIndex)) {
            Read read;
            FeatureAssembler out(fields, defaultTextColumn, read, reserved);
            readArrowRows(*rows, out);
            if (!rows->failed() && (rows->nullGeometries() == 0 ||
                                    rows->nullGeometries() == storedNullGeometries(*ds_, *layer)))
                return read;
        }
        CPLErrorReset();
    }

    Read read;
    FeatureAssembler out(fields, defaultTextColumn, read, reserved);
    layer->ResetReading();
    for (auto& f : *layer) {
        FeatureKind kind = FeatureKind::Region;
        ShapeBuilder& shape = out.newShape();
        if (const OGRGeometry* g = f->GetGeometryRef())
            readGeometry(*g, kind, shape);
        if (!out.start(kind))
            continue;
        for (size_t i = 0; i < fields.size(); ++i) {
            if (sourceIndex[i] >= 0)
                readField(out.values(), *f, sourceIndex[i], sourceType[i]);
            else
                out.values().addNull();
        }
        const char* styleChars = styleIndex >= 0 && f->IsFieldSetAndNotNull(styleIndex)
                                     ? f->GetFieldAsString(styleIndex)
                                     : f->GetStyleString();
        out.finish(f->GetFID(), QByteArrayView(styleChars ? styleChars : ""));
    }
    out.done();
    if (CPLGetLastErrorType() >= CE_Failure && !read.columns && read.rows.empty() &&
        layer->GetFeatureCount() > 0)
        unreadable(database_ ? database::shownSource(source_) : source_, lastGdalError());
    return read;
}

qint64 MapStore::writeFeature(const QString& name, qint64 fid, const FeatureData& data,
                              const FieldList& fields, const QString& textField, bool create) {
    const gdal::QuietErrors quiet;
    CPLErrorReset();
    OGRLayer* layer = ogrLayer(name);
    const OGRFeatureDefn* defn = layer->GetLayerDefn();
    OGRFeature f(const_cast<OGRFeatureDefn*>(defn));
    if (fid >= 0)
        f.SetFID(fid);
    f.SetGeometryDirectly(ogrGeometry(data).release());
    for (size_t i = 0; i < fields.size() && i < data.attributes.size(); ++i) {
        const int index = defn->GetFieldIndex(fields[i].name.toUtf8().constData());
        if (index >= 0)
            writeField(f, index, fields[i].type, data.attributes[i]);
    }
    const int textIndex =
        textField.isEmpty() ? -1 : defn->GetFieldIndex(textField.toUtf8().constData());
    if (data.kind == FeatureKind::Text && textIndex >= 0)
        f.SetField(textIndex, data.text.toString().toUtf8().constData());
    if (const int styleIndex = defn->GetFieldIndex(kStyleColumn); styleIndex >= 0 && data.style) {
        // A bulk update writes the same shared style again and again: keep its string.
        // Texts carry their own text in theirs.
        const bool reuse = data.kind != FeatureKind::Text && data.style == written_.style &&
                           data.kind == written_.kind;
        if (!reuse) {
            written_.text = styleString(
                data.kind, *data.style, data.text,
                textIndex >= 0 ? QString::fromUtf8(defn->GetFieldDefn(textIndex)->GetNameRef())
                               : QString());
            written_.style = data.kind != FeatureKind::Text ? data.style : nullptr;
            written_.kind = data.kind;
        }
        f.SetField(styleIndex, written_.text.constData());
    }
    if (!create && database_ && depth_ > 0) {
        held_.hold(*layer, OgrFeaturePtr(f.Clone()));
        return fid;
    }
    const OGRErr e = create ? layer->CreateFeature(&f) : layer->SetFeature(&f);
    if (e != OGRERR_NONE)
        failWrite(name);
    return f.GetFID();
}

qint64 MapStore::insert(const QString& layer, const FeatureData& data, const FieldList& fields,
                        const QString& textField, qint64 fid) {
    return writeFeature(layer, fid, data, fields, textField, true);
}

void MapStore::update(const QString& layer, qint64 fid, const FeatureData& data,
                      const FieldList& fields, const QString& textField,
                      const FeatureData* before) {
    if (before && attributes_ && updateAttributes(layer, fid, data, *before, fields))
        return;
    writeFeature(layer, fid, data, fields, textField, false);
}

namespace {

// Same value as far as the stored row goes: the same type, both null or neither.
bool sameValue(const QVariant& a, const QVariant& b) {
    return a.metaType() == b.metaType() && a.isNull() == b.isNull() && a == b;
}

// How a column is written without going through OGR, when it can be: only plain numbers
// and texts (dates, booleans and small integers keep OGR's own conversions).
std::optional<AttributeUpdates::Kind> plainKind(const OGRFieldDefn& f, FieldType type) {
    if (f.GetSubType() != OFSTNone)
        return std::nullopt;
    switch (type) {
    case FieldType::Integer:
        return f.GetType() == OFTInteger ? std::optional(AttributeUpdates::Kind::Integer)
                                         : std::nullopt;
    case FieldType::Integer64:
        return f.GetType() == OFTInteger64 ? std::optional(AttributeUpdates::Kind::Integer)
                                           : std::nullopt;
    case FieldType::Real:
        return f.GetType() == OFTReal ? std::optional(AttributeUpdates::Kind::Real) : std::nullopt;
    case FieldType::Text:
        return f.GetType() == OFTString ? std::optional(AttributeUpdates::Kind::Text)
                                        : std::nullopt;
    case FieldType::Date:
        break;
    }
    return std::nullopt;
}

} // namespace

bool MapStore::updateAttributes(const QString& name, qint64 fid, const FeatureData& data,
                                const FeatureData& before, const FieldList& fields) {
    // A text's text may live in a column: those go through the whole write.
    if (data.kind == FeatureKind::Text || before.kind != data.kind || before.text != data.text ||
        before.parts != data.parts)
        return false;
    if (data.style != before.style &&
        (!data.style || !before.style || !(*data.style == *before.style)))
        return false;
    const gdal::QuietErrors quiet;
    OGRLayer* layer = ogrLayer(name);
    const OGRFeatureDefn* defn = layer->GetLayerDefn();
    std::vector<AttributeUpdates::Cell> cells;
    for (size_t i = 0; i < fields.size(); ++i) {
        QVariant now = data.attributes[i]; // Null past the end
        const QVariant was = before.attributes[i];
        if (sameValue(now, was))
            continue;
        const int index = defn->GetFieldIndex(fields[i].name.toUtf8().constData());
        if (index < 0)
            continue; // not a column of the table: never written
        const OGRFieldDefn& column = *defn->GetFieldDefn(index);
        const auto kind = plainKind(column, fields[i].type);
        if (!kind)
            return false;
        cells.push_back({QByteArray(column.GetNameRef()), *kind, std::move(now)});
    }
    if (cells.empty())
        return true;
    QString why;
    if (!attributes_->write(layer->GetName(), layer->GetFIDColumn(), fid, cells, &why))
        failWrite(name, why);
    return true;
}

void MapStore::remove(const QString& name, qint64 fid) {
    const gdal::QuietErrors quiet;
    CPLErrorReset();
    OGRLayer* layer = ogrLayer(name);
    held_.forget(*layer, fid);
    if (layer->DeleteFeature(fid) != OGRERR_NONE)
        failWrite(name);
}

bool MapStore::locked() const {
    // GDAL does not always say why a statement failed: ask the file with a read of its own.
    if (!source_.endsWith(QLatin1String(".gpkg"), Qt::CaseInsensitive) &&
        !QFileInfo(source_).isFile())
        return false;
    gdal::executeSql(*ds_, "PRAGMA busy_timeout = 0"); // the answer at once
    CPLErrorReset();
    gdal::executeSql(*ds_, "SELECT COUNT(*) FROM sqlite_master");
    const bool held = lockedByAnother(QString::fromUtf8(CPLGetLastErrorMsg()));
    gdal::executeSql(*ds_, kBusyTimeout);
    return held;
}

void MapStore::failWrite(const QString& layer) const {
    failWrite(layer, lastGdalError());
}

void MapStore::failWrite(const QString& layer, const QString& why) const {
    if (database_)
        databaseWriteFailed(database::shownSource(layer), why);
    writeFailed(layer, why, lockedByAnother(why) || locked());
}

void MapStore::begin() {
    if (depth_++ == 0) {
        const gdal::QuietErrors quiet;
        if (ds_->StartTransaction(FALSE) != OGRERR_NONE) {
            depth_ = 0;
            failWrite(source_);
        }
    }
}

void MapStore::commit() {
    if (depth_ == 0)
        throw Erreur(err::AccesIncorrect, QStringLiteral("Aucune transaction en cours."));
    if (--depth_ == 0) {
        const gdal::QuietErrors quiet;
        QString why, layer = source_;
        if (!held_.empty() && !held_.flush(*ds_, &why, &layer)) {
            ds_->RollbackTransaction();
            failWrite(layer, why);
        }
        if (ds_->CommitTransaction() != OGRERR_NONE) {
            why = lastGdalError();
            ds_->RollbackTransaction(); // nothing of the transaction is kept
            failWrite(source_, why);
        }
    }
}

void MapStore::rollback() {
    if (depth_ == 0)
        return;
    depth_ = 0;
    held_.clear();
    const gdal::QuietErrors quiet;
    ds_->RollbackTransaction();
}

} // namespace carto
