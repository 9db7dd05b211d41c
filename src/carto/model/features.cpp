#include "features.h"

#include "base/erreur.h"
#include "carto/model/layer.h"

#include <algorithm>

namespace carto {

using veldra::Erreur;
namespace err = veldra::err;

Features::Features(const Layer* layer, std::vector<qint64> fids) : layer_(layer) {
    if (std::adjacent_find(fids.begin(), fids.end(), std::greater_equal<>()) == fids.end()) {
        fids_ = std::move(fids); // already ascending and unique: nothing to check
        return;
    }
    fids_.reserve(fids.size());
    for (qint64 fid : fids)
        add(fid);
}

bool Features::contains(qint64 fid) const {
    return ascending_ ? std::binary_search(fids_.begin(), fids_.end(), fid)
                      : members_.contains(fid);
}

void Features::add(qint64 fid) {
    if (ascending_ && (fids_.empty() || fids_.back() < fid)) {
        fids_.push_back(fid);
        return;
    }
    if (contains(fid))
        return;
    if (ascending_) { // from here on the order no longer answers membership
        members_.insert(fids_.begin(), fids_.end());
        ascending_ = false;
    }
    members_.insert(fid);
    fids_.push_back(fid);
}

void Features::add(const Feature& f) {
    if (!f.isValid() || f.fid() < 0 || (layer_ && f.layer() != layer_))
        throw Erreur(err::ObjetIncompatible,
                     QStringLiteral("L'objet n'appartient pas à la couche de la collection."));
    if (!layer_)
        layer_ = f.layer();
    add(f.fid());
}

void Features::add(const Features& other) {
    if (other.isEmpty())
        return;
    if (layer_ && other.layer_ != layer_)
        throw Erreur(err::ObjetIncompatible,
                     QStringLiteral("Les collections appartiennent à des couches différentes."));
    layer_ = other.layer_;
    for (qint64 fid : other.fids_)
        add(fid);
}

void Features::remove(qint64 fid) {
    if (!contains(fid))
        return;
    fids_.erase(ascending_ ? std::lower_bound(fids_.begin(), fids_.end(), fid)
                           : std::find(fids_.begin(), fids_.end(), fid));
    members_.erase(fid);
}

void Features::clear() {
    fids_.clear();
    members_.clear();
    ascending_ = true;
}

void Features::intersect(const Features& other) {
    std::vector<qint64> kept;
    for (qint64 fid : fids_)
        if (other.contains(fid) && (other.layer_ == layer_ || other.isEmpty()))
            kept.push_back(fid);
    clear();
    for (qint64 fid : kept)
        add(fid);
}

Feature Features::at(int index) const {
    if (index < 0 || index >= count() || !layer_)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Objet n° %1 hors de la collection.").arg(index));
    return layer_->feature(fids_[size_t(index)]);
}

Rect Features::bounds() const {
    Rect r;
    for (qint64 fid : fids_)
        if (layer_ && layer_->hasFeature(fid))
            r = r.united(layer_->feature(fid).bounds());
    return r;
}

} // namespace carto
