#include "map.h"

#include "carto/model/edit_commands.h"
#include "carto/model/update_access.h"
#include "carto/storage/map_store.h"

#include <QUndoStack>
#include <cmath>
#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

namespace carto {

using veldra::Erreur;
namespace err = veldra::err;

Map::Map(QObject* parent) : QObject(parent) {
    selectionStyle.regionPattern = pattern::DiagonalCross;
    selectionStyle.regionColor = 0x00FFFF; // yellow
    selectionStyle.regionTransparent = true;
    selectionStyle.regionBorderColor = 0x00FFFF;
    selectionStyle.regionBorderWidth = 2;
    selectionStyle.lineColor = 0x00FFFF;
}

Map::~Map() {
    clearUndoStack();
    // Datasets refer to layers: drop them first.
    datasets_.clear();
    layers_.clear();
}

void Map::loadMapSet(const QString& pathOrConnection, const MapSetOptions& options) {
    if (depth_ > 0)
        throw Erreur(err::AccesIncorrect,
                     QStringLiteral("Un plan ne peut pas être chargé pendant une mise à jour."));
    auto store = MapStore::open(pathOrConnection);
    std::vector<std::unique_ptr<Layer>> layers;
    int unreadable = 0;
    for (const MapStore::LayerEntry& entry : store->layers()) {
        if (!entry.rasterSource.isEmpty()) {
            auto raster = std::make_unique<Layer>(this, entry.name, FieldList{}, true);
            raster->rasterSource_ = entry.rasterSource;
            raster->selectable_ = false;
            layers.push_back(std::move(raster));
            continue;
        }
        const FieldList fields = store->fields(entry.name);
        auto layer = std::make_unique<Layer>(this, entry.name, fields, false);
        MapStore::Read read = store->readFeatures(entry.name, fields, options.textColumn);
        unreadable += read.unreadable;
        layer->textField_ = read.textField;
        layer->loadFeatures(std::move(read.columns), std::move(read.rows));
        layers.push_back(std::move(layer));
    }
    store->releaseReadMemory();
    clearUndoStack();
    datasets_.clear();
    layers_ = std::move(layers);
    store_ = std::move(store);
    options_ = options;
    unreadable_ = unreadable;
#ifdef __GLIBC__
    // Reading freed as much as it kept (OGR features, the previous map set); hand those
    // pages back so a large plan costs what it holds.
    malloc_trim(0);
#endif
    emit datasetsChanged();
    emit layersChanged();
}

QString Map::mapSet() const {
    return store_ ? store_->source() : QString();
}

Layer* Map::layerAt(int index) const {
    if (index < 0 || index >= layerCount())
        throw Erreur(err::CoucheInconnue,
                     QStringLiteral("Il n'y a pas de couche n° %1.").arg(index));
    return layers_[size_t(index)].get();
}

Layer* Map::layer(QStringView name) const {
    for (const auto& l : layers_)
        if (l->name() == name)
            return l.get();
    return nullptr;
}

Layer& Map::requireLayer(QStringView name) const {
    if (Layer* l = layer(name))
        return *l;
    throw Erreur(err::CoucheInconnue,
                 QStringLiteral("La couche « %1 » est introuvable.").arg(name.toString()));
}

std::vector<Layer*> Map::layers() const {
    std::vector<Layer*> out;
    for (const auto& l : layers_)
        out.push_back(l.get());
    return out;
}

Layer& Map::addLayer(const LayerInfo& info) {
    if (info.type != LayerInfoTemporary)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Type de couche %1 non pris en charge.").arg(info.type));
    const auto param = [&](const char* key) -> const LayerInfo::Parameter* {
        for (const auto& [name, value] : info.parameters)
            if (name.compare(QLatin1String(key), Qt::CaseInsensitive) == 0)
                return &value;
        return nullptr;
    };
    const auto* name = param("Name");
    if (!name || !std::holds_alternative<QString>(*name) || std::get<QString>(*name).isEmpty())
        throw Erreur(err::AppelIncorrect, QStringLiteral("Le nom de la couche à créer manque."));
    if (const auto* storage = param("TableStorageType");
        storage && (!std::holds_alternative<QString>(*storage) ||
                    std::get<QString>(*storage).compare(u"MemTable", Qt::CaseInsensitive) != 0))
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Seules les couches en mémoire (« MemTable ») sont créées."));
    const Features* source = nullptr;
    if (const auto* f = param("Features"); f && std::holds_alternative<Features>(*f))
        source = &std::get<Features>(*f);
    FieldList fields;
    if (const auto* f = param("Fields"); f && std::holds_alternative<FieldList>(*f))
        fields = std::get<FieldList>(*f);
    else if (source && source->layer())
        fields = source->layer()->fields();

    auto layer = std::make_unique<Layer>(this, std::get<QString>(*name), fields, true);
    layer->editable_ = true;
    if (source) {
        // A copy made in one go: nothing to journal or undo.
        MapStore::Rows rows;
        qint64 fid = 0;
        for (const Feature& f : *source)
            rows.emplace_back(++fid, layer->conform(f, &f.data())); // copied as they are
        layer->loadFeatures(std::move(rows));
    }
    layers_.push_back(std::move(layer));
    emit layersChanged();
    return *layers_.back();
}

namespace {

void refuseInBracket(int depth) {
    if (depth > 0)
        throw Erreur(
            err::AccesIncorrect,
            QStringLiteral("Une couche ne peut pas être retirée pendant une mise à jour."));
}

} // namespace

void Map::removeLayer(QStringView name) {
    refuseInBracket(depth_);
    clearUndoStack();
    std::erase_if(datasets_, [&](const auto& d) { return d->layer().name() == name; });
    std::erase_if(layers_, [&](const auto& l) { return l->name() == name; });
    emit layersChanged();
}

void Map::removeAllLayers() {
    refuseInBracket(depth_);
    clearUndoStack();
    datasets_.clear();
    layers_.clear();
    store_.reset();
    emit datasetsChanged();
    emit layersChanged();
}

Dataset& Map::addDataset(Layer& layer, const QString& name) {
    if (!name.isEmpty())
        removeDataset(name);
    datasets_.push_back(std::make_unique<Dataset>(name, layer));
    emit datasetsChanged();
    return *datasets_.back();
}

Dataset& Map::addDataset(Layer& layer, const recordset::Recordset& rows, const QString& geoField,
                         const QString& name, const QString& bindField) {
    auto dataset = std::make_unique<Dataset>(name, layer, rows, geoField,
                                             bindField.isEmpty() ? layer.keyField() : bindField);
    if (!name.isEmpty())
        removeDataset(name);
    datasets_.push_back(std::move(dataset));
    emit datasetsChanged();
    return *datasets_.back();
}

Dataset* Map::dataset(QStringView name) const {
    for (const auto& d : datasets_)
        if (QStringView(d->name()).compare(name, Qt::CaseInsensitive) == 0)
            return d.get();
    return nullptr;
}

std::vector<Dataset*> Map::datasets() const {
    std::vector<Dataset*> out;
    for (const auto& d : datasets_)
        out.push_back(d.get());
    return out;
}

std::vector<Dataset*> Map::datasetsOf(const Layer& layer) const {
    std::vector<Dataset*> out;
    for (const auto& d : datasets_)
        if (&d->layer() == &layer)
            out.push_back(d.get());
    return out;
}

void Map::removeDataset(QStringView name) {
    const auto before = datasets_.size();
    for (const auto& l : layers_)
        if (l->labels().dataset &&
            QStringView(l->labels().dataset->name()).compare(name, Qt::CaseInsensitive) == 0)
            l->setLabelDataset(nullptr);
    std::erase_if(datasets_, [&](const auto& d) {
        return QStringView(d->name()).compare(name, Qt::CaseInsensitive) == 0;
    });
    if (datasets_.size() != before)
        emit datasetsChanged();
}

double Map::distance(Point a, Point b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

// ---- edit commands and update brackets

void Map::execute(std::unique_ptr<EditCommand> command) {
    const bool topLevel = depth_ == 0;
    command->run();
    if (topLevel && undoStack_) {
        command->markDone();
        pushStep(std::move(command));
    } else if (!topLevel && recording_) {
        recording_->commands.push_back(std::move(command));
    }
}

void Map::pushRecorded(std::unique_ptr<Recording> r) {
    if (!r || r->commands.empty() || !undoStack_)
        return;
    auto group = std::make_unique<EditGroup>(*this, r->text, r->joinsPrevious);
    for (auto& c : r->commands)
        group->add(std::move(c));
    group->markDone();
    if (!r->joinsNext)
        return pushStep(std::move(group));
    releaseHeldStep();
    held_ = std::move(group);
    QMetaObject::invokeMethod(this, &Map::releaseHeldStep, Qt::QueuedConnection);
}

void Map::pushStep(std::unique_ptr<EditCommand> step) {
    if (held_) {
        // The held step and this one are one action: undone together, this one first.
        auto action = std::make_unique<EditGroup>(*this, step->text());
        action->add(std::move(held_));
        action->add(std::move(step));
        action->markDone();
        step = std::move(action);
    }
    if (undoStack_)
        undoStack_->push(step.release());
}

void Map::releaseHeldStep() {
    if (held_)
        pushStep(std::unique_ptr<EditCommand>(std::move(held_)));
}

void Map::setUndoStack(QUndoStack* stack) {
    held_.reset();
    undoStack_ = stack;
}

void Map::clearUndoStack() {
    held_.reset();
    if (undoStack_)
        undoStack_->clear();
}

std::size_t Map::openBracket(const UndoStep* step) {
    if (depth_ == 0) {
        if (store_)
            store_->begin();
        journal_.clear();
        pending_.clear();
        poisoned_ = false;
        recording_.reset();
        if (step && undoStack_) {
            recording_ = std::make_unique<Recording>();
            recording_->text = step->text;
            recording_->joinsPrevious = step->joinsPrevious;
            recording_->joinsNext = step->joinsNext;
        }
    }
    if (recording_)
        recording_->marks.push_back(recording_->commands.size());
    ++depth_;
    return journal_.size();
}

void Map::closeBracket(std::size_t mark, bool keep) {
    std::size_t recorded = 0;
    if (recording_) {
        recorded = recording_->marks.back();
        recording_->marks.pop_back();
    }
    if (depth_ > 1) {
        --depth_;
        if (!keep && recording_)
            recording_->commands.resize(recorded);
        if (!keep) {
            // Only this bracket's writes go; the outer transaction goes on.
            try {
                undoBack(mark, true);
            } catch (const Erreur&) {
                poisoned_ = true; // the outermost bracket will roll everything back
            }
        }
        return;
    }
    // The outermost bracket: depth_ stays 1 until memory is settled, so that what the
    // undo restores is reported with the rest, once.
    std::optional<Erreur> failure;
    if (keep && poisoned_)
        failure = Erreur(err::EcritureImpossible,
                         QStringLiteral("Une écriture annulée n'a pas pu être défaite : la "
                                        "mise à jour est abandonnée."));
    if (keep && !failure && store_) {
        try {
            store_->commit();
        } catch (const Erreur& e) {
            failure = e;
        }
    }
    if (!keep || failure) {
        if (store_)
            store_->rollback();
        undoBack(0, false);
    }
    journal_.clear();
    poisoned_ = false;
    depth_ = 0;
    for (const auto& layer : layers_)
        layer->foldChanges();
    // Taken before the changes are reported: a listener may open a bracket of its own.
    std::unique_ptr<Recording> step = std::move(recording_);
    flushChanges();
    if (keep && !failure)
        pushRecorded(std::move(step));
    if (failure)
        throw *failure;
}

void Map::journal(Layer& layer, qint64 fid, FeaturePtr before) {
    journal_.push_back({&layer, fid, std::move(before)});
}

void Map::undoBack(std::size_t mark, bool inStorage) {
    while (journal_.size() > mark) {
        const JournalEntry e = journal_.back();
        e.layer->restore(e.fid, e.before, inStorage && !e.layer->isMemory() && store_);
        journal_.pop_back();
    }
}

void Map::noteChange(const Layer& layer, Change::Kind kind, qint64 fid, const Rect& area) {
    Change& c = pending_[&layer];
    c.layer = &layer;
    c.kinds |= kind;
    c.fids.push_back(fid);
    c.area = c.area.united(area);
    if (depth_ == 0)
        flushChanges();
}

void Map::emitSettings(const Layer& layer, Change::Kind kind) {
    Change c;
    c.layer = &layer;
    c.kinds = kind;
    emit changed(c);
}

void Map::flushChanges() {
    std::map<const Layer*, Change> pending;
    pending.swap(pending_);
    for (auto& [layer, change] : pending) {
        std::sort(change.fids.begin(), change.fids.end());
        change.fids.erase(std::unique(change.fids.begin(), change.fids.end()), change.fids.end());
        emit changed(change);
    }
}

UpdateAccess::UpdateAccess(Map& map) : map_(map), mark_(map.openBracket()) {}

UpdateAccess::UpdateAccess(Map& map, UndoStep step) : map_(map), mark_(map.openBracket(&step)) {}

UpdateAccess::~UpdateAccess() {
    if (open_)
        map_.closeBracket(mark_, false);
}

ReadAccess::ReadAccess(Layer& layer) : layer_(layer) {
    layer_.beginAccess(0);
}

ReadAccess::~ReadAccess() {
    try {
        layer_.endAccess();
    } catch (const Erreur&) {
        // Unbalanced by someone else: nothing of ours to close.
    }
}

void UpdateAccess::commit() {
    if (!open_)
        return;
    open_ = false;
    map_.closeBracket(mark_, true);
}

} // namespace carto
