#include "feature.h"

#include "base/erreur.h"
#include "carto/model/layer.h"
#include "carto/model/text_metrics.h"

#include <cmath>

namespace carto {

using veldra::Erreur;
namespace err = veldra::err;

namespace {

const Shape kNoParts{};
const Style kDefaultStyle;

[[noreturn]] void detached() {
    throw Erreur(err::ObjetInconnu, QStringLiteral("L'objet n'est pas valide."));
}

Feature make(FeatureKind kind, Parts parts, const Style& style, QString text = {}) {
    auto data = MutableFeaturePtr::make();
    data->kind = kind;
    data->parts = std::move(parts);
    data->style = StylePtr::make(style);
    data->text = std::move(text);
    refreshDerived(*data);
    return Feature(nullptr, -1, std::move(data));
}

} // namespace

namespace {

bool hasAnchor(const FeatureView& data) {
    return (data.kind == FeatureKind::Text || data.kind == FeatureKind::Symbol) &&
           !data.parts.empty() && !data.parts[0].empty();
}

} // namespace

void refreshDerived(FeatureData& data) {
    const Style& style = data.style ? *data.style : kDefaultStyle;
    if (!hasAnchor(data.view())) {
        data.extent = {};
    } else if (data.kind == FeatureKind::Text) {
        data.extent = textExtent(data.text, style);
    } else {
        // A symbol of s points covers a square s / 100 map units wide, as texts do.
        const double h = std::max(style.symbolSize, 0.0) / 200.0;
        data.extent = {h, h};
    }
}

Rect FeatureView::bounds() const {
    if (hasAnchor(*this)) {
        const Point p = parts[0][0];
        return Rect{p.x - extent.x, p.y - extent.y, p.x + extent.x, p.y + extent.y};
    }
    Rect r;
    for (const Point& p : parts.points()) {
        if (std::isnan(p.x) || std::isnan(p.y))
            continue; // as Rect::united leaves a null rectangle out
        r.xmin = std::min(r.xmin, p.x);
        r.ymin = std::min(r.ymin, p.y);
        r.xmax = std::max(r.xmax, p.x);
        r.ymax = std::max(r.ymax, p.y);
    }
    return r;
}

Geometry regionGeometry(const Parts& rings) {
    return Geometry::fromRings(rings);
}

namespace {

Parts partsOf(ShapeView shape) {
    Parts out;
    out.reserve(shape.size());
    for (const PartView part : shape)
        out.emplace_back(part.begin(), part.end());
    return out;
}

} // namespace

Geometry geometryOf(const FeatureData& data) {
    return geometryOf(data.view());
}

Geometry geometryOf(const FeatureView& data) {
    if (data.parts.empty())
        return Geometry::empty();
    switch (data.kind) {
    case FeatureKind::Region:
        return regionGeometry(partsOf(data.parts));
    case FeatureKind::Line:
        return data.parts.size() == 1 ? Geometry::lineString(data.parts[0])
                                      : Geometry::multiLineString(partsOf(data.parts));
    case FeatureKind::Text:
        return Geometry::rectangle(data.bounds());
    case FeatureKind::Symbol:
        break;
    }
    return Geometry::point(data.parts[0].at(0));
}

Feature::Feature() = default;

Feature::Feature(const Layer* layer, qint64 fid, FeaturePtr data)
    : layer_(layer), fid_(fid), data_(std::move(data)) {}

Feature::Feature(const Layer* layer, qint64 fid, std::shared_ptr<const FeatureColumns> columns,
                 size_t row)
    : layer_(layer), fid_(fid), columns_(std::move(columns)), row_(row) {}

Feature Feature::region(const Parts& rings, const Style& style) {
    for (const Part& ring : rings)
        Geometry::polygon({ring}); // refuses NaN and short rings
    return make(FeatureKind::Region, rings, style);
}

Feature Feature::line(const Parts& lines, const Style& style) {
    for (const Part& l : lines)
        Geometry::lineString(l);
    return make(FeatureKind::Line, lines, style);
}

Feature Feature::symbol(Point at, const Style& style) {
    Geometry::point(at);
    return make(FeatureKind::Symbol, {{at}}, style);
}

Feature Feature::textAt(Point anchor, const QString& text, const Style& style) {
    Geometry::point(anchor);
    return make(FeatureKind::Text, {{anchor}}, style, text);
}

Feature Feature::fromGeometry(const Geometry& g, const Style& style) {
    switch (g.type()) {
    case GeometryType::Polygon:
        return make(FeatureKind::Region, g.parts(), style);
    case GeometryType::Line:
        return make(FeatureKind::Line, g.parts(), style);
    case GeometryType::Point:
        return make(FeatureKind::Symbol, g.parts(), style);
    default:
        throw Erreur(err::GeometrieInvalide,
                     QStringLiteral("La géométrie ne peut pas devenir un objet du plan."));
    }
}

const FeatureData& Feature::data() const {
    if (!data_) {
        if (!columns_)
            detached();
        data_ = columns_->data(row_);
    }
    return *data_;
}

FeaturePtr Feature::shared() const {
    if (!data_ && columns_)
        data();
    return data_;
}

FeatureView Feature::view() const {
    if (data_)
        return data_->view();
    if (!columns_)
        detached();
    return columns_->view(row_);
}

FeatureData& Feature::edit() {
    data();
    columns_.reset();
    if (data_.use_count() > 1) {
        auto copy = MutableFeaturePtr::make(*data_);
        data_ = copy;
        return *copy;
    }
    return const_cast<FeatureData&>(*data_);
}

FeatureKind Feature::kind() const {
    return view().kind;
}

QString Feature::uniqueKey() const {
    return fid_ < 0 ? QString() : QString::number(fid_);
}

const Shape& Feature::parts() const {
    if (!data_ && columns_)
        data();
    return data_ ? data_->parts : kNoParts;
}

int Feature::numParts() const {
    const FeatureView d = view();
    if (d.kind != FeatureKind::Region || d.parts.size() <= 1)
        return int(d.parts.size());
    return geometry().numParts();
}

Point Feature::point(int part, int index) const {
    const ShapeView p = view().parts;
    if (part < 0 || size_t(part) >= p.size() || index < 0 ||
        size_t(index) >= p[size_t(part)].size())
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Point %1 de la partie %2 inexistant.").arg(index).arg(part));
    return p[size_t(part)][size_t(index)];
}

void Feature::setPoint(int part, int index, Point pt) {
    point(part, index); // range check
    if (!std::isfinite(pt.x) || !std::isfinite(pt.y))
        throw Erreur(err::GeometrieInvalide, QStringLiteral("Coordonnées non finies."));
    FeatureData& d = edit();
    Parts parts = d.parts.toParts();
    Part& ring = parts[size_t(part)];
    const bool closesRing = d.kind == FeatureKind::Region && ring.size() > 1 &&
                            ring.front() == ring.back() &&
                            (index == 0 || size_t(index) == ring.size() - 1);
    ring[size_t(index)] = pt;
    if (closesRing) { // keep a closed ring closed
        ring.front() = pt;
        ring.back() = pt;
    }
    d.parts = parts;
    refreshDerived(d);
}

void Feature::setParts(Parts parts) {
    const FeatureKind k = kind();
    const Feature check = k == FeatureKind::Region ? region(parts)
                          : k == FeatureKind::Line ? line(parts)
                                                   : symbol(parts.at(0).at(0));
    FeatureData& d = edit();
    d.parts = check.data().parts;
    refreshDerived(d);
}

namespace {

// Twice the signed area of a ring and its centroid, by the shoelace formulas: a plot is a
// single ring, and these cost far less than building a GEOS geometry for it. Computed
// from the ring's first point, so that a plot of a few metres keeps its precision however
// far from the grid's origin it lies (products of coordinates near 1e9 would lose it).
struct RingMeasure {
    double twiceArea = 0;
    Point centre;
};

RingMeasure measureRing(PartView r) {
    RingMeasure a;
    if (r.empty())
        return a;
    const Point o = r.front();
    double cx = 0, cy = 0;
    const size_t n = r.size();
    for (size_t i = 0; i < n; ++i) {
        const size_t j = i + 1 < n ? i + 1 : 0;
        const Point p{r[i].x - o.x, r[i].y - o.y};
        const Point q{r[j].x - o.x, r[j].y - o.y};
        const double c = p.x * q.y - q.x * p.y;
        a.twiceArea += c;
        cx += (p.x + q.x) * c;
        cy += (p.y + q.y) * c;
    }
    if (a.twiceArea != 0)
        a.centre = {o.x + cx / (3 * a.twiceArea), o.y + cy / (3 * a.twiceArea)};
    return a;
}

// A region of several rings measured by GEOS, moved first to the corner of its bounds for
// the same precision.
struct RegionMeasure {
    double area = 0;
    Point centre;
};

RegionMeasure measureRegion(const FeatureView& d) {
    const Rect box = d.bounds();
    const Point o{box.xmin, box.ymin};
    Parts local = partsOf(d.parts);
    for (Part& ring : local)
        for (Point& p : ring)
            p = {p.x - o.x, p.y - o.y};
    const Geometry g = regionGeometry(local);
    RegionMeasure m;
    m.area = g.area();
    if (!g.isEmpty()) {
        const Point c = g.centroid();
        m.centre = {o.x + c.x, o.y + c.y};
    }
    return m;
}

} // namespace

Point Feature::centre() const {
    // Not cached: for a single ring (nearly every feature) the shoelace costs less than
    // the memory a cache would take on every feature.
    const FeatureView d = view();
    if (d.kind == FeatureKind::Region && d.parts.size() == 1) {
        const RingMeasure simple = measureRing(d.parts.front());
        if (simple.twiceArea != 0)
            return simple.centre;
    }
    if (d.kind == FeatureKind::Region && !d.parts.empty() && d.parts.size() > 1)
        if (const RegionMeasure m = measureRegion(d); m.area > 0)
            return m.centre;
    const Rect box = d.bounds();
    return box.isNull() ? Point{} : box.center();
}

Rect Feature::bounds() const {
    return view().bounds();
}

double Feature::area() const {
    const FeatureView d = view();
    if (d.kind != FeatureKind::Region || d.parts.empty())
        return 0.0;
    if (d.parts.size() == 1)
        return std::fabs(measureRing(d.parts.front()).twiceArea) / 2;
    return measureRegion(d).area;
}

double Feature::length() const {
    const FeatureView d = view();
    return (d.kind == FeatureKind::Region || d.kind == FeatureKind::Line) && !d.parts.empty()
               ? geometry().length()
               : 0.0;
}

Geometry Feature::geometry() const {
    return geometryOf(view());
}

void Feature::offset(double dx, double dy) {
    if (!std::isfinite(dx) || !std::isfinite(dy))
        throw Erreur(err::GeometrieInvalide, QStringLiteral("Déplacement non fini."));
    FeatureData& d = edit();
    for (Point& p : d.parts.points()) {
        p.x += dx;
        p.y += dy;
    }
    refreshDerived(d);
}

QString Feature::text() const {
    const FeatureView d = view();
    return d.text ? d.text->toString() : QString();
}

void Feature::setText(const QString& text) {
    FeatureData& d = edit();
    d.text = text;
    refreshDerived(d);
}

const Style& Feature::style() const {
    const StylePtr& s = !data_ && columns_ ? columns_->style(row_) : data().style;
    return s ? *s : kDefaultStyle;
}

void Feature::setStyle(const Style& style) {
    FeatureData& d = edit();
    d.style = StylePtr::make(style);
    refreshDerived(d);
}

qsizetype Feature::column(QStringView name) const {
    const qsizetype i = layer_ ? layer_->fieldIndex(name) : -1;
    if (i < 0)
        throw Erreur(err::ChampInconnu,
                     QStringLiteral("La colonne « %1 » est introuvable%2.")
                         .arg(name.toString(),
                              layer_ ? QStringLiteral(" dans la couche « %1 »").arg(layer_->name())
                                     : QString()));
    return i;
}

QVariant Feature::attribute(QStringView name) const {
    return attributeAt(column(name));
}

QVariant Feature::attributeAt(qsizetype i) const {
    if (i < 0)
        return {};
    if (!data_ && columns_)
        return columns_->attribute(row_, size_t(i));
    return data().attributes[size_t(i)];
}

void Feature::setAttribute(QStringView name, const QVariant& value) {
    const qsizetype i = column(name);
    FeatureData& d = edit();
    d.attributes.set(size_t(i), value);
}

QVariant Feature::keyValue() const {
    if (!layer_ || layer_->keyField().isEmpty())
        return fid_ < 0 ? QVariant() : QVariant(fid_);
    return attribute(layer_->keyField());
}

void Feature::setKeyValue(const QVariant& value) {
    if (!layer_ || layer_->keyField().isEmpty())
        throw Erreur(err::ChampInconnu, QStringLiteral("La couche n'a pas de colonne clé."));
    setAttribute(layer_->keyField(), value);
}

void Feature::attach(const Layer* layer, qint64 fid, FeaturePtr data) {
    layer_ = layer;
    fid_ = fid;
    data_ = std::move(data);
    columns_.reset();
}

} // namespace carto
