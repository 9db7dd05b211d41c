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
        for (const auto& entry : features_)
            all = all.united(entry.second->bounds());
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
    for (const auto& entry : features_)
        fids.push_back(entry.first);
    return Features(this, std::move(fids));
}

Feature Layer::firstFeature() const {
    if (features_.empty())
        return {};
    const auto& [fid, data] = *features_.begin();
    return Feature(this, fid, data);
}

bool Layer::hasFeature(qint64 fid) const {
    return features_.contains(fid);
}

Feature Layer::feature(qint64 fid) const {
    const auto it = features_.find(fid);
    if (it == features_.end())
        unknownFeature(name_, QString::number(fid));
    return Feature(this, fid, it->second);
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
    if (const auto it = features_.find(fid); it != features_.end()) {
        const FeatureData& old = *it->second;
        // An attribute or a style changed: the R-tree and the prepared shape still hold.
        if (old.kind != data->kind || old.parts != data->parts)
            prepared_.erase(fid);
        const Rect was = old.bounds(), now = data->bounds();
        if (!(was == now)) {
            index_.remove(was, fid);
            boundsRemoved(was);
            index_.insert(now, fid);
            boundsAdded(now);
        }
        it->second = std::move(data);
    } else {
        const Rect box = data->bounds();
        index_.insert(box, fid);
        boundsAdded(box);
        features_.put(fid, std::move(data));
        nextMemoryFid_ = std::max(nextMemoryFid_, fid + 1);
    }
    changed();
}

void Layer::eraseFromMemory(qint64 fid) {
    const auto it = features_.find(fid);
    if (it == features_.end())
        return;
    const Rect box = it->second->bounds();
    index_.remove(box, fid);
    boundsRemoved(box);
    prepared_.erase(fid);
    features_.erase(it);
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
    const auto held = features_.find(fid);
    map_->journal(*this, fid, held == features_.end() ? nullptr : held->second);
    const Rect area = data->bounds();
    putInMemory(fid, data);
    map_->noteChange(*this, Change::Added, fid, area);
    return Feature(this, fid, std::move(data));
}

FeaturePtr Layer::storeReplace(qint64 fid, FeaturePtr data) {
    requireBracket();
    const auto it = features_.find(fid);
    if (it == features_.end())
        unknownFeature(name_, QString::number(fid));
    if (!memory_ && map_->store())
        map_->store()->update(name_, fid, *data, fields_, textField_, it->second.get());
    FeaturePtr before = it->second;
    const Rect area = before->bounds().united(data->bounds());
    map_->journal(*this, fid, before);
    putInMemory(fid, std::move(data));
    map_->noteChange(*this, Change::Updated, fid, area);
    return before;
}

FeaturePtr Layer::storeErase(qint64 fid) {
    requireBracket();
    const auto it = features_.find(fid);
    if (it == features_.end())
        unknownFeature(name_, QString::number(fid));
    if (!memory_ && map_->store())
        map_->store()->remove(name_, fid);
    FeaturePtr before = it->second;
    const Rect area = before->bounds();
    map_->journal(*this, fid, before);
    eraseFromMemory(fid);
    map_->noteChange(*this, Change::Deleted, fid, area);
    return before;
}

void Layer::restore(qint64 fid, const FeaturePtr& before, bool inStorage) {
    const auto it = features_.find(fid);
    const bool present = it != features_.end();
    Rect area = present ? it->second->bounds() : Rect{};
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
        for (const auto& [fid, data] : features_)
            if (size_t(column) < data->attributes.size())
                index[Condition::key(data->attributes[size_t(column)], numeric)].push_back(fid);
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

bool Layer::covers(qint64 fid, const FeatureData& d, Point p) const {
    // A region's prepared shape tests its own bounds first; computing them here would walk
    // every point of a large region.
    return d.kind == FeatureKind::Region ? prepared(fid).covers(p) : d.bounds().contains(p);
}

Features Layer::searchAtPoint(Point p) const {
    std::vector<qint64> hits;
    for (qint64 fid : index_.containingPoint(p)) {
        if (covers(fid, *features_.at(fid), p))
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
        const FeatureData& d = *features_.at(reaching[0]);
        if (d.kind == FeatureKind::Region && ringsHoldRect(d.parts, cell))
            return reaching[0];
    }
    return PointCells::kAsk;
}

Feature Layer::firstAtPoint(Point p) const {
    if (const qint64 known = cells_.answer(
            p, [this] { return bounds(); }, [this](const Rect& cell) { return cellAnswer(cell); });
        known != PointCells::kAsk)
        return known < 0 ? Feature() : Feature(this, known, features_.at(known));
    qint64 first = -1;
    index_.visitContaining(p, [&](qint64 fid) {
        if (first >= 0 && fid > first)
            return;
        const auto it = features_.find(fid);
        if (it != features_.end() && covers(fid, *it->second, p))
            first = fid;
    });
    return first < 0 ? Feature() : Feature(this, first, features_.at(first));
}

Features Layer::searchWithinRectangle(const Rect& r, int mode) const {
    std::vector<qint64> hits;
    std::optional<PreparedGeometry> area;
    for (qint64 fid : index_.intersecting(r)) {
        const FeatureData& d = *features_.at(fid);
        const Feature f(this, fid, features_.at(fid));
        bool keep = false;
        switch (mode) {
        case searchmode::CentreWithin:
            keep = r.contains(f.centre());
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
        const Feature f(this, fid, features_.at(fid));
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
        for (const auto& [fid, data] : features_)
            if (size_t(column) < data->attributes.size() &&
                data->attributes[size_t(column)].toString().trimmed().startsWith(
                    name.trimmed(), Qt::CaseInsensitive)) {
                found = fid;
                result.code = 2;
                break;
            }
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
        for (const auto& entry : features_)
            if (!entry.second->parts.empty())
                parts.push_back(geometryOf(*entry.second));
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
                 .emplace(fid, std::make_unique<PreparedGeometry>(geometryOf(*features_.at(fid))))
                 .first;
    return *it->second;
}

void Layer::loadFeatures(std::vector<std::pair<qint64, FeaturePtr>> rows) {
    features_.clear();
    prepared_.clear();
    selection_.clear();
    const auto byFid = [](const auto& a, const auto& b) { return a.first < b.first; };
    if (!std::is_sorted(rows.begin(), rows.end(), byFid))
        std::sort(rows.begin(), rows.end(), byFid);
    features_.reserve(rows.size());
    std::vector<std::pair<Rect, qint64>> boxes;
    boxes.reserve(rows.size());
    Rect all;
    for (auto& [fid, data] : rows) {
        boxes.emplace_back(data->bounds(), fid);
        all = all.united(boxes.back().first);
        nextMemoryFid_ = std::max(nextMemoryFid_, fid + 1);
        features_.put(fid, std::move(data));
    }
    index_.rebuild(boxes);
    bounds_ = all;
    changed();
}

void Layer::changed() {
    union_.reset();
    cells_.clear();
    valueIndex_.clear();
}

std::vector<std::pair<qint64, FeaturePtr>> Layer::dataInBox(const Rect& box) const {
    std::vector<std::pair<qint64, FeaturePtr>> out;
    const Rect all = bounds();
    const bool whole = box.contains(all);
    if (whole || coversMostOf(box, all)) {
        // Most of the layer in view (the plan shown whole or nearly): the table is already
        // in FID order, and testing each box as it goes costs less than sorting what the
        // tree would answer. Features without bounds are not in the tree, and stay out
        // here too (a null box meets nothing).
        out.reserve(features_.size());
        for (const auto& [fid, data] : features_)
            if (whole ? !data->bounds().isNull() : box.intersects(data->bounds()))
                out.emplace_back(fid, data);
        return out;
    }
    std::vector<qint64> fids = index_.intersecting(box);
    std::sort(fids.begin(), fids.end()); // drawing order is FID order, as stored
    out.reserve(fids.size());
    for (const qint64 fid : fids)
        if (const auto it = features_.find(fid);
            it != features_.end() && box.intersects(it->second->bounds()))
            out.emplace_back(fid, it->second);
    return out;
}

} // namespace carto
