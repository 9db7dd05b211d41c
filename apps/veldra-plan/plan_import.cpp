#include "veldra-plan/plan_import.h"

#include "carto/geometry/geometry.h"
#include "veldra-plan/gdal_support.h"
#include "veldra-plan/layer_writer.h"
#include "veldra-plan/output_file.h"
#include "veldra-plan/plan_schema.h"
#include "veldra-plan/plan_source.h"
#include "veldra-plan/plan_styles.h"

#include <QFileInfo>
#include <QSet>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <optional>

namespace veldra::plantool {

namespace {

enum class Want { Surface, Point, Any };

Want wantOf(const char* layerName) {
    if (std::strcmp(layerName, layer::Numeros) == 0 || std::strcmp(layerName, layer::Texte) == 0)
        return Want::Point;
    if (std::strcmp(layerName, layer::Decor) == 0)
        return Want::Any;
    return Want::Surface;
}

// Without letter case or accents: "ALLEES" finds "Allées".
QString folded(const QString& s) {
    QString out;
    for (const QChar c : s.normalized(QString::NormalizationForm_D))
        if (c.category() != QChar::Mark_NonSpacing)
            out += c.toLower();
    return out;
}

QString listed(const QStringList& names) {
    QStringList shown;
    for (const QString& n : names)
        shown << (n.size() > 40 ? n.left(37) + QStringLiteral("...") : n);
    return shown.isEmpty() ? QStringLiteral("aucune") : shown.join(QStringLiteral(", "));
}

// A layer of the source: an OGR layer, or in a DXF file the entities of one DXF layer.
struct SourceLayer {
    OGRLayer* layer = nullptr;
    QString dxfLayer; // the value of the Layer column; empty: the whole OGR layer
    QString name;
};

std::vector<SourceLayer> sourceLayers(GDALDataset& ds) {
    const bool dxf = ds.GetDriver() && EQUAL(ds.GetDriver()->GetDescription(), "DXF");
    std::vector<SourceLayer> out;
    for (OGRLayer* l : ds.GetLayers()) {
        const int column = l->GetLayerDefn()->GetFieldIndex("Layer");
        if (!dxf || column < 0) {
            out.push_back({l, {}, QString::fromUtf8(l->GetName())});
            continue;
        }
        QStringList seen;
        l->ResetReading();
        for (auto& f : *l) {
            const QString value = QString::fromUtf8(f->GetFieldAsString(column));
            if (!seen.contains(value))
                seen << value;
        }
        for (const QString& value : seen)
            out.push_back({l, value, value});
    }
    return out;
}

const SourceLayer* findLayer(const std::vector<SourceLayer>& layers, const QString& name) {
    for (const SourceLayer& l : layers)
        if (l.name == name)
            return &l;
    for (const SourceLayer& l : layers)
        if (folded(l.name) == folded(name))
            return &l;
    return nullptr;
}

QStringList namesOf(const std::vector<SourceLayer>& layers) {
    QStringList names;
    for (const SourceLayer& l : layers)
        names << l.name;
    return names;
}

int sourceColumn(const OGRFeatureDefn& defn, const QString& name) {
    for (int i = 0; i < defn.GetFieldCount(); ++i)
        if (QString::fromUtf8(defn.GetFieldDefn(i)->GetNameRef())
                .compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

QStringList columnsOf(const OGRFeatureDefn& defn) {
    QStringList names;
    for (int i = 0; i < defn.GetFieldCount(); ++i)
        names << QString::fromUtf8(defn.GetFieldDefn(i)->GetNameRef());
    return names;
}

// For each column of the plan's table, the source column it is read from (-1: none).
std::vector<int> mapColumns(const TableDef& table, const SourceLayer& from,
                            const ImportOptions& options) {
    const OGRFeatureDefn& defn = *from.layer->GetLayerDefn();
    std::vector<int> out;
    for (const ColumnDef& c : table.fields) {
        const QString column = QString::fromUtf8(c.name);
        int index = -1;
        std::optional<QString> asked;
        for (const auto& [key, source] : options.fields) {
            const qsizetype dot = key.indexOf(u'.');
            const QString keyLayer = dot < 0 ? QString() : key.left(dot);
            const QString keyColumn = dot < 0 ? key : key.mid(dot + 1);
            if (folded(keyColumn) != folded(column))
                continue;
            if (!keyLayer.isEmpty() && folded(keyLayer) != folded(QString::fromUtf8(table.name)))
                continue;
            if (!asked || !keyLayer.isEmpty())
                asked = source;
        }
        if (asked) {
            index = sourceColumn(defn, *asked);
            if (index < 0)
                throw Erreur(err::ArgumentsIncorrects,
                             QStringLiteral("La couche « %1 » de la source n'a pas de colonne "
                                            "« %2 » (colonnes : %3) : rien n'a été importé")
                                 .arg(from.name, *asked, listed(columnsOf(defn))));
        } else {
            index = sourceColumn(defn, column);
            if (index < 0 && column == QLatin1String(TextColumn))
                index = sourceColumn(defn, QStringLiteral("Text")); // DXF's texts
        }
        out.push_back(index);
    }
    return out;
}

// Checks that every --field names a column of some layer of the plan.
void checkFieldTargets(const ImportOptions& options) {
    for (const auto& [key, source] : options.fields) {
        const qsizetype dot = key.indexOf(u'.');
        const QString keyLayer = dot < 0 ? QString() : key.left(dot);
        const QString keyColumn = dot < 0 ? key : key.mid(dot + 1);
        bool known = false;
        QStringList columns;
        for (const TableDef& t : planLayers()) {
            if (!keyLayer.isEmpty() && folded(keyLayer) != folded(QString::fromUtf8(t.name)))
                continue;
            for (const ColumnDef& c : t.fields) {
                columns << QString::fromUtf8(c.name);
                known = known || folded(QString::fromUtf8(c.name)) == folded(keyColumn);
            }
        }
        if (!known)
            throw Erreur(err::ArgumentsIncorrects,
                         QStringLiteral("--field %1 : le plan n'a pas de colonne « %2 »%3 "
                                        "(colonnes : %4)")
                             .arg(listed({key}), listed({keyColumn}),
                                  keyLayer.isEmpty() ? QString()
                                                     : QStringLiteral(" dans « %1 »").arg(keyLayer),
                                  listed(columns)));
    }
}

// ---- geometries

struct Shape {
    OGRGeometryUniquePtr geometry;
    QString skipped; // why it is left out, when it is
    bool repaired = false;
    bool closedLine = false;
    bool curve = false;
    bool flattened = false;
    std::optional<carto::Geometry> geos; // surfaces only
};

OGRGeometryUniquePtr owned(OGRGeometry* g) {
    return OGRGeometryUniquePtr(g);
}

// The polygons that closed polylines draw; null when a line is open.
OGRGeometryUniquePtr polygonsOfLines(const OGRGeometry& g) {
    std::vector<const OGRLineString*> lines;
    if (wkbFlatten(g.getGeometryType()) == wkbLineString)
        lines.push_back(g.toLineString());
    else
        for (const OGRGeometry* member : *g.toGeometryCollection())
            if (wkbFlatten(member->getGeometryType()) == wkbLineString)
                lines.push_back(member->toLineString());
            else
                return nullptr;
    auto multi = std::make_unique<OGRMultiPolygon>();
    for (const OGRLineString* line : lines) {
        if (line->getNumPoints() < 4 || !line->get_IsClosed())
            return nullptr;
        auto ring = std::make_unique<OGRLinearRing>();
        ring->addSubLineString(line);
        auto poly = std::make_unique<OGRPolygon>();
        poly->addRingDirectly(ring.release());
        multi->addGeometryDirectly(poly.release());
    }
    if (multi->getNumGeometries() == 1)
        return owned(multi->getGeometryRef(0)->clone());
    return owned(multi.release());
}

std::vector<std::vector<carto::Point>> ringsOf(const OGRPolygon& poly) {
    std::vector<std::vector<carto::Point>> rings;
    for (const OGRLinearRing* ring : poly) {
        std::vector<carto::Point> points;
        points.reserve(size_t(ring->getNumPoints()));
        for (int i = 0; i < ring->getNumPoints(); ++i)
            points.push_back(carto::Point{ring->getX(i), ring->getY(i)});
        rings.push_back(std::move(points));
    }
    return rings;
}

// A surface checked by GEOS, repaired when invalid.
void settleSurface(Shape& s) {
    std::vector<std::vector<std::vector<carto::Point>>> polygons;
    const OGRGeometry& g = *s.geometry;
    if (wkbFlatten(g.getGeometryType()) == wkbPolygon)
        polygons.push_back(ringsOf(*g.toPolygon()));
    else
        for (const OGRPolygon* p : *g.toMultiPolygon())
            polygons.push_back(ringsOf(*p));
    try {
        carto::Geometry geos = polygons.size() == 1 ? carto::Geometry::polygon(polygons.front())
                                                    : carto::Geometry::multiPolygon(polygons);
        if (!geos.isValid()) {
            geos = geos.makeValid().polygonalPart();
            if (geos.isEmpty()) {
                s.skipped = QStringLiteral("vide une fois réparée");
                return;
            }
            OGRGeometry* repaired = nullptr;
            const QByteArray wkt = geos.toWkt(9).toUtf8();
            if (OGRGeometryFactory::createFromWkt(wkt.constData(), nullptr, &repaired) !=
                    OGRERR_NONE ||
                !repaired) {
                s.skipped = QStringLiteral("géométrie inutilisable");
                return;
            }
            s.geometry = owned(repaired);
            s.repaired = true;
        }
        s.geos.emplace(std::move(geos));
    } catch (const Erreur&) {
        s.skipped = QStringLiteral("géométrie inutilisable");
    }
}

Shape shapeOf(const OGRGeometry* source, Want want) {
    Shape s;
    if (!source || source->IsEmpty()) {
        s.skipped = QStringLiteral("sans géométrie");
        return s;
    }
    s.geometry = owned(source->clone());
    if (s.geometry->Is3D() || s.geometry->IsMeasured()) {
        s.geometry->flattenTo2D();
        s.flattened = true;
    }
    if (s.geometry->hasCurveGeometry()) {
        s.geometry = owned(s.geometry->getLinearGeometry());
        s.curve = true;
    }
    const OGRwkbGeometryType type = wkbFlatten(s.geometry->getGeometryType());
    switch (want) {
    case Want::Any:
        return s;
    case Want::Point:
        if (type != wkbPoint)
            s.skipped = QStringLiteral("pas un point");
        return s;
    case Want::Surface:
        break;
    }
    if (type == wkbLineString || type == wkbMultiLineString) {
        if (OGRGeometryUniquePtr polygons = polygonsOfLines(*s.geometry)) {
            s.geometry = std::move(polygons);
            s.closedLine = true;
        }
    } else if (type == wkbGeometryCollection) {
        auto multi = std::make_unique<OGRMultiPolygon>();
        for (const OGRGeometry* member : *s.geometry->toGeometryCollection())
            if (wkbFlatten(member->getGeometryType()) == wkbPolygon)
                multi->addGeometry(member);
        if (!multi->IsEmpty())
            s.geometry = owned(multi.release());
    }
    const OGRwkbGeometryType now = wkbFlatten(s.geometry->getGeometryType());
    if (now != wkbPolygon && now != wkbMultiPolygon) {
        s.skipped = QStringLiteral("pas une surface");
        return s;
    }
    settleSurface(s);
    return s;
}

// ---- attributes

// Sets the plan's column from the source's; false when the value cannot be read. Texts
// longer than the column are cut (`cut` is set).
bool copyValue(const OGRFeature& from, int index, OGRFeature& to, int target,
               const ColumnDef& column, bool& cut) {
    if (!from.IsFieldSetAndNotNull(index))
        return true;
    const OGRFieldType sourceType = from.GetFieldDefnRef(index)->GetType();
    const QString text = QString::fromUtf8(from.GetFieldAsString(index)).trimmed();
    switch (column.type) {
    case OFTInteger:
    case OFTInteger64: {
        bool ok = true;
        qlonglong v = 0;
        if (sourceType == OFTInteger || sourceType == OFTInteger64)
            v = from.GetFieldAsInteger64(index);
        else {
            const double d = text.toDouble(&ok);
            ok = ok && std::isfinite(d) && d == std::floor(d) && std::abs(d) < 2e9;
            v = qlonglong(d);
        }
        if (!ok || v < INT32_MIN || v > INT32_MAX)
            return text.isEmpty();
        to.SetField(target, GIntBig(v));
        return true;
    }
    case OFTReal: {
        bool ok = true;
        const double d =
            sourceType == OFTReal || sourceType == OFTInteger || sourceType == OFTInteger64
                ? from.GetFieldAsDouble(index)
                : text.toDouble(&ok);
        if (!ok || !std::isfinite(d))
            return text.isEmpty();
        to.SetField(target, d);
        return true;
    }
    default: {
        QString value = text;
        if (column.width > 0 && value.size() > column.width) {
            value.truncate(column.width);
            cut = true;
        }
        setText(to, target, value);
        return true;
    }
    }
}

// ---- the default looks of imported features without a style of their own

QString defaultStyle(const char* layerName, OGRwkbGeometryType type) {
    constexpr Colour Wall = 0x303030;
    if (std::strcmp(layerName, layer::Enceinte) == 0)
        return regionStyle({Wall, 0xFFFFFF, carto::pattern::None});
    if (std::strcmp(layerName, layer::Sections) == 0)
        return regionStyle({255, 0xC0C0FF});
    if (std::strcmp(layerName, layer::Allees) == 0)
        return regionStyle({49152, 0xC0FFC0});
    if (std::strcmp(layerName, layer::Tombes) == 0)
        return regionStyle({0x606060, 0xE0E8EC});
    if (wantOf(layerName) == Want::Point) {
        TextStyle t;
        t.size = std::strcmp(layerName, layer::Numeros) == 0 ? 0.4 : 1.0;
        return textStyle(t);
    }
    switch (type) {
    case wkbPoint:
    case wkbMultiPoint:
        return symbolStyle(0x25CF, Wall, 1); // a black circle
    case wkbLineString:
    case wkbMultiLineString:
        return lineStyle(Wall);
    default:
        return regionStyle({Wall, 0x808080});
    }
}

QString styleOf(const OGRFeature& f, const char* layerName, OGRwkbGeometryType type) {
    if (wantOf(layerName) != Want::Point) {
        const int column = f.GetDefnRef()->GetFieldIndex(StyleColumn);
        if (column >= 0 && f.IsFieldSetAndNotNull(column))
            return QString::fromUtf8(f.GetFieldAsString(column));
        if (f.GetStyleString() && f.GetStyleString()[0] != '\0')
            return QString::fromUtf8(f.GetStyleString());
    }
    return defaultStyle(layerName, type);
}

struct Extent {
    double minX = INFINITY, minY = INFINITY, maxX = -INFINITY, maxY = -INFINITY;
    void add(const OGRGeometry& g) {
        OGREnvelope e;
        g.getEnvelope(&e);
        minX = std::min(minX, e.MinX);
        minY = std::min(minY, e.MinY);
        maxX = std::max(maxX, e.MaxX);
        maxY = std::max(maxY, e.MaxY);
    }
    bool empty() const { return !(minX <= maxX && minY <= maxY); }
};

struct NumberLabel {
    QString text;
    carto::Point at;
    double size;
    double angle;
};

// The largest height, in centimetres, whose digits fit across the plot.
double labelSize(const QString& text, const OGRGeometry& plot) {
    OGREnvelope e;
    plot.getEnvelope(&e);
    const double width = std::min(e.MaxX - e.MinX, e.MaxY - e.MinY);
    const double fit = 0.85 * width / (0.64 * double(std::max<qsizetype>(1, text.size())));
    return std::clamp(std::floor(fit * 100) / 100, 0.05, 0.5);
}

class Importer {
public:
    Importer(const ImportOptions& options, GDALDataset& source)
        : options_(options), layers_(sourceLayers(source)) {}

    // Which source layer each plan layer comes from; Erreur when --map names a layer the
    // plan or the source lacks, or when nothing matches.
    std::map<QString, const SourceLayer*> match() const {
        std::map<QString, const SourceLayer*> out;
        for (const auto& [plan, source] : options_.layers) {
            const TableDef* table = nullptr;
            for (const TableDef& t : planLayers())
                if (folded(QString::fromUtf8(t.name)) == folded(plan))
                    table = &t;
            if (!table) {
                QStringList names;
                for (const TableDef& t : planLayers())
                    names << QString::fromUtf8(t.name);
                throw Erreur(err::ArgumentsIncorrects,
                             QStringLiteral("--map : le plan n'a pas de couche « %1 » (couches : "
                                            "%2) : rien n'a été importé")
                                 .arg(listed({plan}), listed(names)));
            }
            const SourceLayer* found = findLayer(layers_, source);
            if (!found)
                throw Erreur(err::ArgumentsIncorrects,
                             QStringLiteral("La source n'a pas de couche « %1 » (couches : %2) : "
                                            "rien n'a été importé")
                                 .arg(listed({source}), listed(namesOf(layers_))));
            out[QString::fromUtf8(table->name)] = found;
        }
        for (const TableDef& t : planLayers()) {
            const QString name = QString::fromUtf8(t.name);
            if (out.count(name) == 0)
                if (const SourceLayer* found = findLayer(layers_, name))
                    out[name] = found;
        }
        if (out.empty())
            throw Erreur(err::ArgumentsIncorrects,
                         QStringLiteral("Aucune couche de la source ne correspond au plan "
                                        "(couches de la source : %1) : indiquez-les avec --map, "
                                        "par exemple --map Tombes=COUCHE ; rien n'a été importé")
                             .arg(listed(namesOf(layers_))));
        return out;
    }

    ImportReport run(GDALDataset& to) {
        const std::map<QString, const SourceLayer*> matched = match();
        checkFieldTargets(options_);
        ImportReport report;
        // Columns are checked before anything is written.
        std::map<QString, std::vector<int>> columns;
        for (const auto& [name, from] : matched)
            columns[name] = mapColumns(planLayer(name.toUtf8().constData()), *from, options_);

        std::vector<NumberLabel> labels;
        Extent extent;
        int enclosures = 0;
        for (const TableDef& table : planLayers()) {
            LayerWriter writer(to, table);
            const QString name = QString::fromUtf8(table.name);
            const auto found = matched.find(name);
            if (found == matched.end())
                continue;
            LayerImport stats;
            stats.layer = name;
            stats.source = found->second->name;
            Transaction tx(to);
            importLayer(*found->second, table, columns[name], writer, stats, extent,
                        name == QLatin1String(layer::Tombes) ? &labels : nullptr);
            tx.commit();
            if (name == QLatin1String(layer::Enceinte))
                enclosures = stats.imported;
            report.layers.push_back(std::move(stats));
        }
        if (extent.empty())
            throw Erreur(err::ArgumentsIncorrects,
                         QStringLiteral("Rien à importer : aucun objet utilisable dans les couches "
                                        "retenues"));
        if (enclosures == 0) {
            drawEnclosure(to, extent);
            report.enclosureDrawn = true;
        }
        if (matched.count(QString::fromUtf8(layer::Numeros)) == 0)
            report.labels = writeLabels(to, labels);
        writeLayerOrder(to, planLayerOrder({}));
        return report;
    }

private:
    void importLayer(const SourceLayer& from, const TableDef& table, const std::vector<int>& map,
                     LayerWriter& writer, LayerImport& stats, Extent& extent,
                     std::vector<NumberLabel>* labels) {
        const Want want = wantOf(table.name);
        std::map<QString, int> skipped;
        const int layerColumn =
            from.dxfLayer.isEmpty() ? -1 : from.layer->GetLayerDefn()->GetFieldIndex("Layer");
        std::vector<int> targets;
        for (const ColumnDef& c : table.fields)
            targets.push_back(writer.field(c.name));
        qsizetype numero = -1;
        for (size_t i = 0; i < table.fields.size() && labels; ++i)
            if (std::strcmp(table.fields[i].name, "Numero") == 0)
                numero = qsizetype(i);
        from.layer->ResetReading();
        for (auto& f : *from.layer) {
            if (layerColumn >= 0 &&
                QString::fromUtf8(f->GetFieldAsString(layerColumn)) != from.dxfLayer)
                continue;
            Shape shape = shapeOf(f->GetGeometryRef(), want);
            if (!shape.skipped.isEmpty()) {
                ++skipped[shape.skipped];
                continue;
            }
            OGRFeatureUniquePtr out = writer.blank();
            bool cut = false;
            bool unreadable = false;
            for (size_t i = 0; i < map.size(); ++i)
                if (map[i] >= 0 && !copyValue(*f, map[i], *out, targets[i], table.fields[i], cut))
                    unreadable = true;
            stats.cut += cut;
            stats.unreadable += unreadable;
            stats.repaired += shape.repaired;
            stats.closedLines += shape.closedLine;
            stats.curves += shape.curve;
            stats.flattened += shape.flattened;
            extent.add(*shape.geometry);
            if (numero >= 0 && shape.geos) {
                const QString number =
                    QString::fromUtf8(out->GetFieldAsString(targets[size_t(numero)])).trimmed();
                if (!number.isEmpty()) {
                    const carto::Point at = shape.geos->interiorPoint();
                    labels->push_back({number, at, labelSize(number, *shape.geometry),
                                       out->GetFieldAsDouble(writer.field("AngleNumero"))});
                }
            }
            const QString style =
                styleOf(*f, table.name, wkbFlatten(shape.geometry->getGeometryType()));
            writer.add(*out, std::move(shape.geometry), style);
            ++stats.imported;
        }
        for (const auto& [why, count] : skipped)
            stats.skipped.emplace_back(why, count);
    }

    void drawEnclosure(GDALDataset& to, const Extent& e) {
        OGRLayer* layer = to.GetLayerByName(layer::Enceinte);
        const double margin = std::max(1.0, 0.02 * std::max(e.maxX - e.minX, e.maxY - e.minY));
        OGRFeature f(layer->GetLayerDefn());
        setText(f, f.GetFieldIndex("Nom"), QString::fromUtf8(layer::Enceinte));
        setText(f, f.GetFieldIndex(StyleColumn), defaultStyle(layer::Enceinte, wkbPolygon));
        f.SetGeometryDirectly(polygon({{e.minX - margin, e.minY - margin},
                                       {e.maxX + margin, e.minY - margin},
                                       {e.maxX + margin, e.maxY + margin},
                                       {e.minX - margin, e.maxY + margin}})
                                  .release());
        if (layer->CreateFeature(&f) != OGRERR_NONE)
            fail(QStringLiteral("Impossible d'écrire l'enceinte"));
    }

    int writeLabels(GDALDataset& to, const std::vector<NumberLabel>& labels) {
        OGRLayer* layer = to.GetLayerByName(layer::Numeros);
        const int texte = layer->GetLayerDefn()->GetFieldIndex(TextColumn);
        const int style = layer->GetLayerDefn()->GetFieldIndex(StyleColumn);
        Transaction tx(to);
        for (const NumberLabel& l : labels) {
            OGRFeature f(layer->GetLayerDefn());
            setText(f, texte, l.text);
            TextStyle ts;
            ts.size = l.size;
            ts.angle = l.angle;
            setText(f, style, textStyle(ts));
            f.SetGeometryDirectly(point({l.at.x, l.at.y}).release());
            if (layer->CreateFeature(&f) != OGRERR_NONE)
                fail(QStringLiteral("Impossible d'écrire les numéros"));
        }
        tx.commit();
        return int(labels.size());
    }

    const ImportOptions& options_;
    std::vector<SourceLayer> layers_;
};

QString warningFor(GDALDataset& ds) {
    for (OGRLayer* l : ds.GetLayers()) {
        const OGRSpatialReference* srs = l->GetSpatialRef();
        OGREnvelope e;
        if (srs && srs->IsGeographic() && l->GetExtent(&e, TRUE) == OGRERR_NONE &&
            e.MaxX - e.MinX < 1 && e.MaxY - e.MinY < 1)
            return QStringLiteral("les coordonnées de la source sont en degrés : le plan les garde "
                                  "telles quelles ; projetez la source en mètres avant l'import "
                                  "(ogr2ogr -t_srs) pour des longueurs et des surfaces justes");
    }
    return {};
}

} // namespace

std::vector<std::pair<QString, QString>> parsePairs(const QString& text, const QString& option) {
    std::vector<std::pair<QString, QString>> out;
    for (const QString& item : text.split(u',', Qt::SkipEmptyParts)) {
        const qsizetype eq = item.indexOf(u'=');
        if (eq <= 0 || eq == item.size() - 1)
            throw Erreur(err::ArgumentsIncorrects,
                         QStringLiteral("%1 attend NOM=SOURCE, reçu « %2 »").arg(option, item));
        out.emplace_back(item.left(eq).trimmed(), item.mid(eq + 1).trimmed());
    }
    if (out.empty())
        throw Erreur(err::ArgumentsIncorrects, QStringLiteral("%1 est vide").arg(option));
    return out;
}

QString ImportReport::summary() const {
    QStringList lines{QStringLiteral("Plan importé dans « %1 » :").arg(destination)};
    for (const LayerImport& l : layers) {
        QStringList done{QStringLiteral("%1 importé(s)").arg(l.imported)};
        const auto note = [&](int n, const char* what) {
            if (n > 0)
                done << QStringLiteral("%1 %2").arg(n).arg(QString::fromUtf8(what));
        };
        note(l.repaired, "réparé(s)");
        note(l.closedLines, "polyligne(s) fermée(s) changée(s) en surface");
        note(l.curves, "courbe(s) remplacée(s) par des segments");
        note(l.flattened, "en 3D ramené(s) en 2D");
        note(l.cut, "texte(s) coupé(s) à la largeur de leur colonne");
        note(l.unreadable, "valeur(s) illisible(s) laissée(s) vide(s)");
        QString line = QStringLiteral("  %1 (de « %2 ») : %3")
                           .arg(l.layer, l.source, done.join(QStringLiteral(", ")));
        QStringList skips;
        for (const auto& [why, n] : l.skipped)
            skips << QStringLiteral("%1 (%2)").arg(n).arg(why);
        if (!skips.isEmpty())
            line += QStringLiteral(" ; ignoré(s) : ") + skips.join(QStringLiteral(", "));
        lines << line;
    }
    if (enclosureDrawn)
        lines << QStringLiteral("  Enceinte : tracée autour de tout ce qui a été importé");
    if (labels > 0)
        lines << QStringLiteral("  Numeros : %1 numéro(s) placé(s) sur les tombes").arg(labels);
    if (!warning.isEmpty())
        lines << QStringLiteral("  Attention : ") + warning;
    return lines.join(u'\n');
}

ImportReport importPlan(const ImportOptions& options) {
    if (isDatabase(options.destination) ||
        !options.destination.endsWith(QLatin1String(".gpkg"), Qt::CaseInsensitive))
        throw Erreur(err::ArgumentsIncorrects,
                     QStringLiteral("Le plan importé est un fichier .gpkg : « %1 »")
                         .arg(shownSource(options.destination)));
    if (QFileInfo::exists(options.destination))
        throw Erreur(err::AccesRefuse,
                     QStringLiteral("Le fichier « %1 » existe déjà : rien n'a été importé")
                         .arg(options.destination));
    GDALDatasetUniquePtr source = openSource(options.source, false);
    Importer importer(options, *source);
    importer.match(); // refuses a bad --map before a file is made

    prepareFolder(QFileInfo(options.destination).absolutePath());
    StagedFile plan(QFileInfo(options.destination).absoluteFilePath(), QStringLiteral("gpkg"));
    ImportReport report;
    {
        GDALDatasetUniquePtr to = createGeoPackage(plan.stagePath());
        const QuietGdal quiet;
        report = importer.run(*to);
        closeDataset(std::move(to), plan.stagePath());
    }
    plan.commit();
    report.destination = plan.finalPath();
    report.warning = warningFor(*source);
    return report;
}

} // namespace veldra::plantool
