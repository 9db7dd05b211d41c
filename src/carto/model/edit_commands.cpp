#include "carto/model/edit_commands.h"

#include "base/erreur.h"
#include "carto/model/layer.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"

namespace carto {

using veldra::Erreur;
namespace err = veldra::err;

namespace {

std::vector<Feature> featuresOf(const Layer& layer, const std::vector<qint64>& fids) {
    std::vector<Feature> out;
    out.reserve(fids.size());
    for (const qint64 fid : fids)
        out.push_back(layer.feature(fid));
    return out;
}

} // namespace

// ---- EditCommand

EditCommand::EditCommand(Map& map, const QString& text) : QUndoCommand(text), map_(map) {}

void EditCommand::run() {
    UpdateAccess access(map_);
    apply();
    for (const auto& f : followers_)
        f->apply();
    access.commit();
}

void EditCommand::redo() {
    if (std::exchange(done_, false))
        return;
    try {
        run();
    } catch (const Erreur& e) {
        setObsolete(true);
        emit map_.editFailed(e);
    }
}

void EditCommand::undo() {
    try {
        UpdateAccess access(map_);
        for (auto it = followers_.rbegin(); it != followers_.rend(); ++it)
            (*it)->revert();
        revert();
        access.commit();
    } catch (const Erreur& e) {
        setObsolete(true);
        emit map_.editFailed(e);
    }
}

bool EditCommand::mergeWith(const QUndoCommand* other) {
    const auto* step = dynamic_cast<const EditGroup*>(other);
    if (!step || !step->joinsPrevious_)
        return false;
    followers_.insert(followers_.end(), step->commands_.begin(), step->commands_.end());
    return true;
}

// ---- AddFeatures

AddFeatures::AddFeatures(Layer& layer, std::vector<Feature> features, const QString& text)
    : EditCommand(*layer.map(), text), layer_(layer), features_(std::move(features)),
      added_(std::make_shared<std::vector<Feature>>()) {}

void AddFeatures::apply() {
    // Done again after an undo, the features come back under their first FIDs.
    const std::vector<Feature>& first = *added_;
    const bool again = !first.empty();
    std::vector<Feature> added;
    added.reserve(features_.size());
    for (size_t i = 0; i < features_.size(); ++i)
        added.push_back(again ? layer_.storeNew(first[i].shared(), first[i].fid())
                              : layer_.storeNew(layer_.conform(features_[i])));
    *added_ = std::move(added);
}

void AddFeatures::revert() {
    for (auto it = added_->rbegin(); it != added_->rend(); ++it)
        layer_.storeErase(it->fid());
}

// ---- DeleteFeatures

DeleteFeatures::DeleteFeatures(Layer& layer, std::vector<qint64> fids, const QString& text)
    : EditCommand(*layer.map(), text), layer_(layer), fids_(Features(&layer, fids).fids()) {}

void DeleteFeatures::apply() {
    std::vector<FeaturePtr> removed;
    removed.reserve(fids_.size());
    for (const qint64 fid : fids_)
        removed.push_back(layer_.storeErase(fid));
    removed_ = std::move(removed);
}

void DeleteFeatures::revert() {
    for (size_t i = removed_.size(); i-- > 0;)
        layer_.storeNew(removed_[i], fids_[i]);
}

// ---- ReplaceFeatures and its kinds

ReplaceFeatures::ReplaceFeatures(Layer& layer, std::vector<Feature> features, const QString& text)
    : EditCommand(*layer.map(), text), layer_(layer), after_(std::move(features)) {
    for (const Feature& f : after_)
        if (f.layer() != &layer)
            throw Erreur(
                err::ObjetIncompatible,
                QStringLiteral("L'objet n'appartient pas à la couche « %1 ».").arg(layer.name()));
}

void ReplaceFeatures::apply() {
    std::vector<FeaturePtr> before;
    before.reserve(after_.size());
    for (Feature& f : after_) {
        auto data = layer_.conform(f, &layer_.feature(f.fid()).data());
        before.push_back(layer_.storeReplace(f.fid(), data));
        f = Feature(&layer_, f.fid(), std::move(data));
    }
    before_ = std::move(before);
}

void ReplaceFeatures::revert() {
    for (size_t i = after_.size(); i-- > 0;)
        layer_.storeReplace(after_[i].fid(), before_[i]);
}

namespace {

std::vector<Feature> moved(const Layer& layer, const std::vector<qint64>& fids, double dx,
                           double dy) {
    std::vector<Feature> out = featuresOf(layer, fids);
    for (Feature& f : out)
        f.offset(dx, dy);
    return out;
}

std::vector<Feature> reshaped(const Layer& layer, qint64 fid, Parts parts) {
    Feature f = layer.feature(fid);
    f.setParts(std::move(parts));
    return {f};
}

std::vector<Feature> withAttribute(const Layer& layer, const std::vector<qint64>& fids,
                                   QStringView column, const QVariant& value) {
    std::vector<Feature> out = featuresOf(layer, fids);
    for (Feature& f : out)
        f.setAttribute(column, value);
    return out;
}

std::vector<Feature> withStyle(const Layer& layer, const std::vector<qint64>& fids,
                               const Style& style) {
    std::vector<Feature> out = featuresOf(layer, fids);
    for (Feature& f : out)
        f.setStyle(style);
    return out;
}

} // namespace

MoveFeatures::MoveFeatures(Layer& layer, const std::vector<qint64>& fids, double dx, double dy)
    : ReplaceFeatures(layer, moved(layer, fids, dx, dy), QStringLiteral("Déplacer")) {}

ReshapeFeature::ReshapeFeature(Layer& layer, qint64 fid, Parts parts)
    : ReplaceFeatures(layer, reshaped(layer, fid, std::move(parts)),
                      QStringLiteral("Modifier la forme")) {}

SetAttribute::SetAttribute(Layer& layer, const std::vector<qint64>& fids, QStringView column,
                           const QVariant& value)
    : ReplaceFeatures(layer, withAttribute(layer, fids, column, value),
                      QStringLiteral("Modifier « %1 »").arg(column.toString())) {}

SetStyle::SetStyle(Layer& layer, const std::vector<qint64>& fids, const Style& style)
    : ReplaceFeatures(layer, withStyle(layer, fids, style), QStringLiteral("Modifier le style")) {}

// ---- EditGroup

EditGroup::EditGroup(Map& map, const QString& text, bool joinsPrevious)
    : EditCommand(map, text), joinsPrevious_(joinsPrevious) {}

void EditGroup::apply() {
    for (const auto& c : commands_)
        c->apply();
}

void EditGroup::revert() {
    for (auto it = commands_.rbegin(); it != commands_.rend(); ++it)
        (*it)->revert();
}

} // namespace carto
