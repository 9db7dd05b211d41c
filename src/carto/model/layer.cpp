#include "layer.h"

#include "carto/model/map.h"
#include "carto/storage/map_store.h"
#include "recordset/erreur.h"

#include <algorithm>

namespace carto {

using veldra::Erreur;
namespace err = veldra::err;

namespace {

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
        Rect r;
        for (const auto& [fid, data] : features_)
            r = r.united(data->bounds);
        bounds_ = r;
    }
    return *bounds_;
}

Features Layer::allFeatures() const {
    std::vector<qint64> fids;
    fids.reserve(features_.size());
    for (const auto& entry : features_)
        fids.push_back(entry.first);
    return Features(this, std::move(fids));
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

void Layer::beginAccess(int mode) {
    if (mode != 0 && mode != 1)
        throw Erreur(err::AccesIncorrect, QStringLiteral("Mode d'accès %1 inconnu.").arg(mode));
    if (mode == 1 && !memory_ && map_->store())
        map_->store()->begin();
    accessModes_.push_back(mode);
    updateDepth_ += mode;
}

void Layer::endAccess() {
    if (accessModes_.empty())
        throw Erreur(
            err::AccesIncorrect,
            QStringLiteral("Fin d'accès sans début d'accès sur la couche « %1 ».").arg(name_));
    const int mode = accessModes_.back();
    accessModes_.pop_back();
    updateDepth_ -= mode;
    if (mode == 1 && !memory_ && map_->store())
        map_->store()->commit();
}

std::shared_ptr<const FeatureData> Layer::conform(const Feature& f) const {
    const FeatureData& src = f.data();
    if (src.kind == FeatureKind::Region || src.kind == FeatureKind::Line) {
        if (src.parts.empty())
            throw Erreur(err::GeometrieInvalide,
                         QStringLiteral("Un objet sans géométrie ne peut pas être enregistré."));
    } else if (src.parts.empty() || src.parts[0].empty()) {
        throw Erreur(err::GeometrieInvalide,
                     QStringLiteral("Un objet sans position ne peut pas être enregistré."));
    }
    auto data = std::make_shared<FeatureData>(src);
    if (!data->style)
        data->style = std::make_shared<const Style>(map_->defaultStyle);
    if (f.layer() != this) {
        // Attributes follow their column names into this layer.
        data->attributes.assign(fields_.size(), QVariant());
        if (const Layer* from = f.layer())
            for (size_t i = 0; i < fields_.size(); ++i)
                if (const qsizetype j = from->fieldIndex(fields_[i].name);
                    j >= 0 && size_t(j) < src.attributes.size())
                    data->attributes[i] = src.attributes[size_t(j)];
    } else {
        data->attributes.resize(fields_.size());
    }
    refreshDerived(*data);
    return data;
}

void Layer::writeTransaction(const std::function<void()>& write) {
    MapStore* store = memory_ ? nullptr : map_->store();
    if (!store) {
        write();
        return;
    }
    store->begin();
    try {
        write();
    } catch (...) {
        if (store->transactionDepth() == 1)
            store->rollback();
        else
            store->commit(); // the bracket goes on; the failed write changed nothing
        throw;
    }
    store->commit();
}

void Layer::indexFeature(qint64 fid, const FeatureData& d) {
    index_.insert(d.bounds, fid);
}

void Layer::unindexFeature(qint64 fid, const FeatureData& d) {
    index_.remove(d.bounds, fid);
    prepared_.erase(fid);
}

Feature Layer::addFeature(const Feature& f) {
    auto data = conform(f);
    qint64 fid = -1;
    writeTransaction([&] {
        fid = memory_ || !map_->store() ? nextMemoryFid_
                                        : map_->store()->insert(name_, *data, fields_);
    });
    nextMemoryFid_ = std::max(nextMemoryFid_, fid + 1);
    features_.put(fid, data);
    indexFeature(fid, *data);
    changed();
    notify(data->bounds);
    return Feature(this, fid, std::move(data));
}

void Layer::updateFeature(const Feature& f) {
    if (f.layer() != this)
        throw Erreur(err::ObjetIncompatible,
                     QStringLiteral("L'objet n'appartient pas à la couche « %1 ».").arg(name_));
    const auto it = features_.find(f.fid());
    if (it == features_.end())
        unknownFeature(name_, f.uniqueKey());
    auto data = conform(f);
    writeTransaction([&] {
        if (!memory_ && map_->store())
            map_->store()->update(name_, f.fid(), *data, fields_);
    });
    const Rect before = it->second->bounds;
    unindexFeature(f.fid(), *it->second);
    it->second = data;
    indexFeature(f.fid(), *data);
    changed();
    notify(before.united(data->bounds));
}

void Layer::deleteFeature(qint64 fid) {
    const auto it = features_.find(fid);
    if (it == features_.end())
        unknownFeature(name_, QString::number(fid));
    writeTransaction([&] {
        if (!memory_ && map_->store())
            map_->store()->remove(name_, fid);
    });
    const Rect before = it->second->bounds;
    unindexFeature(fid, *it->second);
    features_.erase(it);
    const bool wasSelected = selection_.contains(fid);
    selection_.remove(fid);
    changed();
    notify(before);
    if (wasSelected)
        emit map_->selectionChanged(this);
}

void Layer::deleteFeature(QStringView uniqueKey) {
    deleteFeature(featureByKey(uniqueKey).fid());
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

Features Layer::searchAtPoint(Point p) const {
    std::vector<qint64> hits;
    for (qint64 fid : index_.containingPoint(p)) {
        const FeatureData& d = *features_.at(fid);
        if (d.kind != FeatureKind::Region || prepared(fid).covers(p))
            hits.push_back(fid);
    }
    std::sort(hits.begin(), hits.end());
    return Features(this, std::move(hits));
}

Feature Layer::firstAtPoint(Point p) const {
    qint64 first = -1;
    for (qint64 fid : index_.containingPoint(p)) {
        if (first >= 0 && fid > first)
            continue;
        const FeatureData& d = *features_.at(fid);
        if (d.kind != FeatureKind::Region || prepared(fid).covers(p))
            first = fid;
    }
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
            if (within(d.bounds, r)) {
                keep = true;
            } else {
                if (!area)
                    area.emplace(Geometry::rectangle(r));
                keep = area->intersects(geometryOf(d));
            }
            break;
        case searchmode::EntirelyWithin:
            keep = within(d.bounds, r);
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
    const qsizetype column = fieldIndex(findField);
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

void Layer::loadFeatures(std::vector<std::pair<qint64, std::shared_ptr<const FeatureData>>> rows) {
    features_.clear();
    prepared_.clear();
    const auto byFid = [](const auto& a, const auto& b) { return a.first < b.first; };
    if (!std::is_sorted(rows.begin(), rows.end(), byFid))
        std::sort(rows.begin(), rows.end(), byFid);
    features_.reserve(rows.size());
    std::vector<std::pair<Rect, qint64>> boxes;
    boxes.reserve(rows.size());
    for (auto& [fid, data] : rows) {
        boxes.emplace_back(data->bounds, fid);
        nextMemoryFid_ = std::max(nextMemoryFid_, fid + 1);
        features_.put(fid, std::move(data));
    }
    index_.rebuild(boxes);
    changed();
}

void Layer::changed() {
    union_.reset();
    bounds_.reset();
    valueIndex_.clear();
}

void Layer::notify(const Rect& dirty) {
    emit map_->featuresChanged(this, dirty);
}

std::vector<std::pair<qint64, std::shared_ptr<const FeatureData>>>
Layer::dataInBox(const Rect& box) const {
    std::vector<std::pair<qint64, std::shared_ptr<const FeatureData>>> out;
    std::vector<qint64> fids = index_.intersecting(box);
    std::sort(fids.begin(), fids.end()); // drawing order is FID order, as stored
    out.reserve(fids.size());
    for (const qint64 fid : fids)
        if (const auto it = features_.find(fid); it != features_.end())
            out.emplace_back(fid, it->second);
    return out;
}

} // namespace carto
