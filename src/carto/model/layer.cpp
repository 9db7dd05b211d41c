#include "layer.h"

#include "base/erreur.h"
#include "carto/geometry/ring_cover.h"
#include "carto/model/conform.h"
#include "carto/model/edit_commands.h"
#include "carto/model/map.h"
#include "carto/storage/map_store.h"

#include <algorithm>
#include <cmath>

namespace carto {

using veldra::Erreur;
namespace err = veldra::err;

namespace {

// Whether the box covers at least a quarter of the area of `all`.
bool coversMostOf(const Rect& box, const Rect& all) {
    if (!box.intersects(all) || all.width() <= 0 || all.height() <= 0)
        return false;
    const double w = std::min(box.xmax, all.xmax) - std::max(box.xmin, all.xmin);
    const double h = std::min(box.ymax, all.ymax) - std::max(box.ymin, all.ymin);
    return 4 * w * h >= all.width() * all.height();
}

[[noreturn]] void unknownFeature(const QString& layer, const QString& key) {
    throw Erreur(
        err::ObjetInconnu,
        QStringLiteral("L'objet « %1 » est introuvable dans la couche « %2 ».").arg(key, layer));
}

bool within(const Rect& inner, const Rect& outer) {
    return outer.contains(inner);
}

} // namespace

Layer::Layer(Map* map, QString name, FieldList fields, bool memory)
    : map_(map), name_(std::move(name)), fields_(std::move(fields)), memory_(memory),
      selection_(this) {}

Layer::~Layer() = default;

qsizetype Layer::fieldIndex(QStringView name) const {
    for (size_t i = 0; i < fields_.size(); ++i)
        if (QStringView(fields_[i].name).compare(name, Qt::CaseInsensitive) == 0)
            return qsizetype(i);
    return -1;
}

Rect Layer::bounds() const {
    if (!bounds_) {
        Rect all;
        features_.forEach(
            [&](qint64, const FeatureStore::Ref& r) { all = all.united(r.bounds()); });
        bounds_ = all;
    }
    return *bounds_;
}

void Layer::boundsAdded(const Rect& box) {
    if (bounds_)
        bounds_ = bounds_->united(box);
}

void Layer::boundsRemoved(const Rect& box) {
    // Only a box on the edge can take the bounds in; the walk waits for the next ask.
    if (bounds_ && !box.isNull() &&
        (box.xmin <= bounds_->xmin || box.ymin <= bounds_->ymin || box.xmax >= bounds_->xmax ||
         box.ymax >= bounds_->ymax))
        bounds_.reset();
}

Features Layer::allFeatures() const {
    std::vector<qint64> fids;
    fids.reserve(features_.size());
    features_.forEach([&](qint64 fid, const FeatureStore::Ref&) { fids.push_back(fid); });
    return Features(this, std::move(fids));
}

Feature Layer::firstFeature() const {
    Feature first;
    features_.forEach([&](qint64 fid, const FeatureStore::Ref& r) {
        first = featureAt(fid, r);
        return false;
    });
    return first;
}

bool Layer::hasFeature(qint64 fid) const {
    return features_.contains(fid);
}

Feature Layer::feature(qint64 fid) const {
    const auto r = features_.ref(fid);
    if (!r)
        unknownFeature(name_, QString::number(fid));
    return featureAt(fid, *r);
}

Feature Layer::featureByKey(QStringView uniqueKey) const {
    bool ok = false;
    const qint64 fid = uniqueKey.trimmed().toLongLong(&ok);
    if (!ok)
        unknownFeature(name_, uniqueKey.toString());
    return feature(fid);
}

// ---- settings

void Layer::settingChanged(bool display) {
    map_->emitSettings(*this, display ? Change::Display : Change::Behaviour);
}

void Layer::setVisible(bool v) {
    if (std::exchange(visible_, v) != v)
        settingChanged(true);
}

void Layer::setSelectable(bool v) {
    if (std::exchange(selectable_, v) != v)
        settingChanged(false);
}

void Layer::setEditable(bool v) {
    if (std::exchange(editable_, v) != v)
        settingChanged(false);
}

void Layer::setAutoLabel(bool v) {
    if (std::exchange(autoLabel_, v) != v)
        settingChanged(true);
}

void Layer::setLabelDataset(const Dataset* dataset) {
    if (std::exchange(labels_.dataset, dataset) != dataset)
        settingChanged(true);
}

void Layer::setLabelField(const QString& field) {
    if (std::exchange(labels_.field, field) != field)
        settingChanged(true);
}

void Layer::setLabelsVisible(bool v) {
    if (std::exchange(labels_.visible, v) != v)
        settingChanged(true);
}

void Layer::setLabelStyle(const Style& style) {
    if (!(std::exchange(labels_.style, style) == style))
        settingChanged(true);
}

void Layer::setLabelOffset(qint64 fid, Point offset) {
    if (!std::isfinite(offset.x) || !std::isfinite(offset.y))
        throw Erreur(err::GeometrieInvalide, QStringLiteral("Décalage d'étiquette non fini."));
    labels_.offsets[fid] = offset;
    settingChanged(true);
}

void Layer::setKeyField(const QString& column) {
    if (std::exchange(keyField_, column) != column)
        settingChanged(false);
}

void Layer::setFindField(const QString& column) {
    findField_ = column;
}

void Layer::setTextField(const QString& column) {
    textField_ = column;
}

// ---- update brackets

void Layer::beginAccess(int mode) {
    if (mode != 0 && mode != 1)
        throw Erreur(err::AccesIncorrect, QStringLiteral("Mode d'accès %1 inconnu.").arg(mode));
    accessMarks_.push_back(mode == 1 ? map_->openBracket() : 0);
    accessModes_.push_back(mode);
    updateDepth_ += mode;
}

void Layer::endAccess() {
    if (accessModes_.empty())
        throw Erreur(
            err::AccesIncorrect,
            QStringLiteral("Fin d'accès sans début d'accès sur la couche « %1 ».").arg(name_));
    const int mode = accessModes_.back();
    const std::size_t mark = accessMarks_.back();
    accessModes_.pop_back();
    accessMarks_.pop_back();
    updateDepth_ -= mode;
    if (mode == 1)
        map_->closeBracket(mark, true);
}

FeaturePtr Layer::conform(const Feature& f, const FeatureData* replaced) const {
    const FeatureData& src = f.data();
    auto data = MutableFeaturePtr::make(src);
    if (!data->style)
        data->style = StylePtr::make(map_->defaultStyle);
    try {
        const qsizetype t = data->kind == FeatureKind::Text ? fieldIndex(textField_) : -1;
        // The text lives in its column: as wide as it, and the column says the same.
        if (t >= 0)
            data->text = cutToWidth(data->text, fields_[size_t(t)].width);
        // Attributes follow their column names into another layer.
        const Layer* from = f.layer();
        AttributeValues::Builder values;
        for (size_t i = 0; i < fields_.size(); ++i) {
            const qsizetype j = from == this ? qsizetype(i)
                                : from       ? from->fieldIndex(fields_[i].name)
                                             : -1;
            const QVariant v =
                columnValue(fields_[i], j >= 0 ? src.attributes[size_t(j)] : QVariant());
            values.add(qsizetype(i) == t ? QVariant(data->text) : v);
        }
        data->attributes = values.build();
        settleShape(*data,
                    !replaced || replaced->kind != data->kind || replaced->parts != data->parts);
    } catch (const Erreur& e) {
        const QString record =
            replaced ? QStringLiteral("L'objet %1 de la couche « %2 »").arg(f.fid()).arg(name_)
                     : QStringLiteral("Un nouvel objet de la couche « %1 »").arg(name_);
        throw Erreur(e.numero(), record + QStringLiteral(" : ") + e.description());
    }
    if (const Style stored = storedStyle(*data->style); !(stored == *data->style))
        data->style = StylePtr::make(stored);
    refreshDerived(*data);
    return data;
}

// ---- edits: commands of the map

Feature Layer::addFeature(const Feature& f) {
    auto command = std::make_unique<AddFeatures>(*this, std::vector<Feature>{f});
    const AddFeatures::Added added = command->added();
    map_->execute(std::move(command));
    return added->front();
}

void Layer::updateFeature(const Feature& f) {
    if (f.layer() != this)
        throw Erreur(err::ObjetIncompatible,
                     QStringLiteral("L'objet n'appartient pas à la couche « %1 ».").arg(name_));
    if (!hasFeature(f.fid()))
        unknownFeature(name_, f.uniqueKey());
    map_->execute(std::make_unique<ReplaceFeatures>(*this, std::vector<Feature>{f}));
}

void Layer::deleteFeature(qint64 fid) {
    if (!hasFeature(fid))
        unknownFeature(name_, QString::number(fid));
    map_->execute(std::make_unique<DeleteFeatures>(*this, std::vector<qint64>{fid}));
}

void Layer::deleteFeature(QStringView uniqueKey) {
    deleteFeature(featureByKey(uniqueKey).fid());
}

// ---- write primitives

void Layer::requireBracket() const {
    if (!map_->inUpdateBracket())
        throw Erreur(
            err::AccesIncorrect,
            QStringLiteral("Écriture hors d'une mise à jour sur la couche « %1 ».").arg(name_));
}

void Layer::putInMemory(qint64 fid, FeaturePtr data) {
    if (const auto old = features_.ref(fid)) {
        const FeatureView was = old->view();
        // An attribute or a style changed: the R-tree and the prepared shape still hold.
        if (was.kind != data->kind || !(was.parts == data->parts.view()))
            prepared_.erase(fid);
        const Rect before = was.bounds(), now = data->bounds();
        if (!(before == now)) {
            index_.remove(before, fid);
            boundsRemoved(before);
            index_.insert(now, fid);
            boundsAdded(now);
        }
    } else {
        const Rect box = data->bounds();
        index_.insert(box, fid);
        boundsAdded(box);
        nextMemoryFid_ = std::max(nextMemoryFid_, fid + 1);
    }
    features_.put(fid, std::move(data));
    changed();
}

void Layer::eraseFromMemory(qint64 fid) {
    const auto r = features_.ref(fid);
    if (!r)
        return;
    const Rect box = r->bounds();
    index_.remove(box, fid);
    boundsRemoved(box);
    prepared_.erase(fid);
    features_.erase(fid);
    changed();
    if (selection_.contains(fid)) {
        selection_.remove(fid);
        emit map_->selectionChanged(this);
    }
}

Feature Layer::storeNew(FeaturePtr data, qint64 fid) {
    requireBracket();
    if (fid >= 0 && hasFeature(fid))
        throw Erreur(
            err::EcritureImpossible,
            QStringLiteral("L'objet %1 existe déjà dans la couche « %2 ».").arg(fid).arg(name_));
    MapStore* store = memory_ ? nullptr : map_->store();
    if (store)
        fid = store->insert(name_, *data, fields_, textField_, fid);
    else if (fid < 0)
        fid = nextMemoryFid_;
    // What memory held under that FID, normally nothing, is what an undo puts back.
    map_->journal(*this, fid, features_.find(fid));
    const Rect area = data->bounds();
    putInMemory(fid, data);
    map_->noteChange(*this, Change::Added, fid, area);
    return Feature(this, fid, std::move(data));
}

FeaturePtr Layer::storeReplace(qint64 fid, FeaturePtr data) {
    requireBracket();
    FeaturePtr before = features_.find(fid);
    if (!before)
        unknownFeature(name_, QString::number(fid));
    if (!memory_ && map_->store())
        map_->store()->update(name_, fid, *data, fields_, textField_, before.get());
    const Rect area = before->bounds().united(data->bounds());
    map_->journal(*this, fid, before);
    putInMemory(fid, std::move(data));
    map_->noteChange(*this, Change::Updated, fid, area);
    return before;
}

FeaturePtr Layer::storeErase(qint64 fid) {
    requireBracket();
    FeaturePtr before = features_.find(fid);
    if (!before)
        unknownFeature(name_, QString::number(fid));
    if (!memory_ && map_->store())
        map_->store()->remove(name_, fid);
    const Rect area = before->bounds();
    map_->journal(*this, fid, before);
    eraseFromMemory(fid);
    map_->noteChange(*this, Change::Deleted, fid, area);
    return before;
}

void Layer::restore(qint64 fid, const FeaturePtr& before, bool inStorage) {
    const auto now = features_.ref(fid);
    const bool present = now.has_value();
    Rect area = present ? now->bounds() : Rect{};
    if (inStorage) {
        MapStore& store = *map_->store();
        if (before && present)
            store.update(name_, fid, *before, fields_, textField_);
        else if (before)
            store.insert(name_, *before, fields_, textField_, fid);
        else if (present)
            store.remove(name_, fid);
    }
    if (before) {
        area = area.united(before->bounds());
        putInMemory(fid, before);
    } else {
        eraseFromMemory(fid);
    }
    map_->noteChange(*this, Change::Updated, fid, area);
}

void Layer::selectOnly(const Features& f) {
    if (!f.isEmpty() && f.layer() != this)
        throw Erreur(err::ObjetIncompatible,
                     QStringLiteral("La sélection doit venir de la couche « %1 ».").arg(name_));
    selection_ = Features(this);
    for (qint64 fid : f.fids())
        if (hasFeature(fid))
            selection_.add(fid);
    emit map_->selectionChanged(this);
}

void Layer::selectAdd(qint64 fid) {
    if (!hasFeature(fid))
        unknownFeature(name_, QString::number(fid));
    selection_.add(fid);
    emit map_->selectionChanged(this);
}

void Layer::selectRemove(qint64 fid) {
    selection_.remove(fid);
    emit map_->selectionChanged(this);
}

void Layer::clearSelection() {
    const bool had = !selection_.isEmpty();
    selection_.clear();
    if (had)
        emit map_->selectionChanged(this);
}

const std::vector<qint64>* Layer::lookup(qsizetype column, const QString& key, bool numeric) const {
    auto& index = valueIndex_[{column, numeric}];
    if (index.isEmpty() && !features_.empty()) {
        features_.forEach([&](qint64 fid, const FeatureStore::Ref& r) {
            if (size_t(column) < r.attributeCount())
                index[Condition::key(r.attribute(size_t(column)), numeric)].push_back(fid);
        });
    }
    const auto it = index.constFind(key);
    return it == index.constEnd() ? nullptr : &*it;
}

std::vector<qint64> Layer::matching(const Condition& c) const {
    std::vector<qint64> result;
    bool first = true;
    for (const Clause& clause : c.clauses) {
        const qsizetype column = fieldIndex(clause.column);
        if (column < 0)
            throw Erreur(err::ChampInconnu,
                         QStringLiteral("La colonne « %1 » est introuvable dans la couche « %2 ».")
                             .arg(clause.column, name_));
        const bool numeric = std::holds_alternative<double>(clause.literal);
        const std::vector<qint64>* hits = lookup(column, Condition::key(clause.literal), numeric);
        if (!hits)
            return {};
        if (first) {
            result = *hits;
            first = false;
        } else {
            std::vector<qint64> both;
            std::set_intersection(result.begin(), result.end(), hits->begin(), hits->end(),
                                  std::back_inserter(both));
            result.swap(both);
        }
    }
    return result;
}

Features Layer::search(QStringView condition) const {
    return Features(this, matching(Condition::parse(condition)));
}

bool Layer::isNumeric(qsizetype column) const {
    const FieldType t = fields_[size_t(column)].type;
    return t == FieldType::Integer || t == FieldType::Integer64 || t == FieldType::Real;
}

Features Layer::searchEqual(QStringView column, const QVariant& value) const {
    const qsizetype i = fieldIndex(column);
    if (i < 0)
        throw Erreur(err::ChampInconnu,
                     QStringLiteral("La colonne « %1 » est introuvable dans la couche « %2 ».")
                         .arg(column.toString(), name_));
    const bool numeric = isNumeric(i);
    const QString key = Condition::key(value, numeric);
    if (key.isNull())
        return Features(this); // null, or not a number in a numeric column
    const std::vector<qint64>* hits = lookup(i, key, numeric);
    return hits ? Features(this, *hits) : Features(this);
}

bool Layer::covers(qint64 fid, const FeatureView& d, Point p) const {
    // A region's prepared shape tests its own bounds first; computing them here would walk
    // every point of a large region.
    return d.kind == FeatureKind::Region ? prepared(fid).covers(p) : d.bounds().contains(p);
}

Features Layer::searchAtPoint(Point p) const {
    std::vector<qint64> hits;
    for (qint64 fid : index_.containingPoint(p)) {
        if (covers(fid, features_.at(fid).view(), p))
            hits.push_back(fid);
    }
    std::sort(hits.begin(), hits.end());
    return Features(this, std::move(hits));
}

qint64 Layer::cellAnswer(const Rect& cell) const {
    const std::vector<qint64> reaching = index_.intersecting(cell);
    if (reaching.empty())
        return PointCells::kNothing;
    if (reaching.size() == 1) {
        const FeatureView d = features_.at(reaching[0]).view();
        if (d.kind == FeatureKind::Region && ringsHoldRect(d.parts, cell))
            return reaching[0];
    }
    return PointCells::kAsk;
}

Feature Layer::firstAtPoint(Point p) const {
    if (const qint64 known = cells_.answer(
            p, [this] { return bounds(); }, [this](const Rect& cell) { return cellAnswer(cell); });
        known != PointCells::kAsk)
        return known < 0 ? Feature() : feature(known);
    qint64 first = -1;
    index_.visitContaining(p, [&](qint64 fid) {
        if (first >= 0 && fid > first)
            return;
        const auto r = features_.ref(fid);
        if (r && covers(fid, r->view(), p))
            first = fid;
    });
    return first < 0 ? Feature() : feature(first);
}

Features Layer::searchWithinRectangle(const Rect& r, int mode) const {
    std::vector<qint64> hits;
    std::optional<PreparedGeometry> area;
    for (qint64 fid : index_.intersecting(r)) {
        const FeatureStore::Ref held = features_.at(fid);
        const FeatureView d = held.view();
        bool keep = false;
        switch (mode) {
        case searchmode::CentreWithin:
            keep = r.contains(featureAt(fid, held).centre());
            break;
        case searchmode::PartlyWithin:
            if (within(d.bounds(), r)) {
                keep = true;
            } else {
                if (!area)
                    area.emplace(Geometry::rectangle(r));
                keep = area->intersects(geometryOf(d));
            }
            break;
        case searchmode::EntirelyWithin:
            keep = within(d.bounds(), r);
            break;
        default:
            throw Erreur(err::AppelIncorrect,
                         QStringLiteral("Mode de recherche %1 inconnu.").arg(mode));
        }
        if (keep)
            hits.push_back(fid);
    }
    std::sort(hits.begin(), hits.end());
    return Features(this, std::move(hits));
}

Features Layer::searchWithinFeature(const Feature& container, int mode) const {
    if (mode < searchmode::CentreWithin || mode > searchmode::EntirelyWithin)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Mode de recherche %1 inconnu.").arg(mode));
    const PreparedGeometry area(container.geometry());
    const Rect box = container.bounds();
    std::vector<qint64> hits;
    for (qint64 fid : index_.intersecting(box)) {
        const Feature f = featureAt(fid, features_.at(fid));
        bool keep = false;
        if (mode == searchmode::CentreWithin)
            keep = area.contains(f.centre());
        else if (mode == searchmode::PartlyWithin)
            keep = area.intersects(f.geometry());
        else
            keep = within(f.bounds(), box) && area.contains(f.geometry());
        if (keep)
            hits.push_back(fid);
    }
    std::sort(hits.begin(), hits.end());
    return Features(this, std::move(hits));
}

FindResult Layer::find(QStringView name) const {
    FindResult result;
    const qsizetype column = fieldIndex(findField_);
    if (column < 0 || name.trimmed().isEmpty())
        return result;
    const QString key = name.trimmed().toString().toCaseFolded();
    qint64 found = -1;
    if (const auto* exact = lookup(column, key, false); exact && !exact->empty()) {
        found = exact->front();
        result.code = 1;
    } else {
        features_.forEach([&](qint64 fid, const FeatureStore::Ref& r) {
            if (size_t(column) < r.attributeCount() &&
                r.attribute(size_t(column))
                    .toString()
                    .trimmed()
                    .startsWith(name.trimmed(), Qt::CaseInsensitive)) {
                found = fid;
                result.code = 2;
                return false;
            }
            return true;
        });
    }
    if (found >= 0) {
        result.feature = feature(found);
        result.bounds = result.feature.bounds();
    }
    return result;
}

const Geometry& Layer::unionAll() const {
    if (!union_) {
        if (features_.empty())
            throw Erreur(err::GeometrieInvalide,
                         QStringLiteral("La couche « %1 » ne contient aucun objet.").arg(name_));
        std::vector<Geometry> parts;
        parts.reserve(features_.size());
        features_.forEach([&](qint64, const FeatureStore::Ref& r) {
            const FeatureView v = r.view();
            if (!v.parts.empty())
                parts.push_back(geometryOf(v));
        });
        std::vector<const Geometry*> refs;
        for (const Geometry& g : parts)
            refs.push_back(&g);
        union_ = unionOf(refs);
    }
    return *union_;
}

const PreparedGeometry& Layer::prepared(qint64 fid) const {
    auto it = prepared_.find(fid);
    if (it == prepared_.end())
        it = prepared_
                 .emplace(fid,
                          std::make_unique<PreparedGeometry>(geometryOf(features_.at(fid).view())))
                 .first;
    return *it->second;
}

void Layer::loadFeatures(std::vector<std::pair<qint64, FeaturePtr>> rows) {
    const auto byFid = [](const auto& x, const auto& y) { return x.first < y.first; };
    if (!std::is_sorted(rows.begin(), rows.end(), byFid))
        std::sort(rows.begin(), rows.end(), byFid);
    auto columns = FeatureColumns::take(rows, fields_.size());
    loadFeatures(std::move(columns), std::move(rows));
}

void Layer::loadFeatures(std::shared_ptr<const FeatureColumns> columns,
                         std::vector<std::pair<qint64, FeaturePtr>> rest) {
    prepared_.clear();
    selection_.clear();
    features_.load(std::move(columns), std::move(rest));
    std::vector<std::pair<Rect, qint64>> boxes;
    boxes.reserve(features_.size());
    Rect all;
    features_.forEach([&](qint64 fid, const FeatureStore::Ref& r) {
        boxes.emplace_back(r.bounds(), fid);
        all = all.united(boxes.back().first);
        nextMemoryFid_ = std::max(nextMemoryFid_, fid + 1);
    });
    index_.rebuild(boxes);
    bounds_ = all;
    changed();
}

void Layer::changed() {
    union_.reset();
    cells_.clear();
    valueIndex_.clear();
}

bool Layer::mostlyIn(const Rect& box) const {
    const Rect all = bounds();
    return box.contains(all) || coversMostOf(box, all);
}

std::vector<std::pair<qint64, FeaturePtr>> Layer::dataInBox(const Rect& box) const {
    std::vector<std::pair<qint64, FeaturePtr>> out;
    visitInBox(box,
               [&](qint64 fid, const FeatureStore::Ref& r) { out.emplace_back(fid, r.data()); });
    return out;
}

} // namespace carto
