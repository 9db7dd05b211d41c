#pragma once
// A map: the layers of one map set (in drawing order, bottom first), the memory layers
// added to it, its datasets and its styles. Loading a map set replaces everything; a map
// set that cannot be opened leaves the map as it was. Views connect to the signals.
//
// Features change only through edit commands (execute) inside update brackets
// (UpdateAccess); the map journals every write of an open bracket so that a failed
// bracket leaves memory and storage as they were, and reports what changed once, through
// changed(), when the outermost bracket ends.

#include "base/erreur.h"
#include "carto/model/change.h"
#include "carto/model/dataset.h"
#include "carto/model/layer.h"

#include <QObject>
#include <QPointer>
#include <QUndoStack>
#include <map>
#include <memory>
#include <vector>

namespace carto {

class EditCommand;
class EditGroup;
class MapStore;
class UpdateAccess;
struct UndoStep;

// Names the map engine reads and writes where a map set leaves them open.
struct MapSetOptions {
    // The text column of text layers whose style does not name one ({column} in a LABEL).
    QString textColumn;
};

class Map : public QObject {
    Q_OBJECT
public:
    explicit Map(QObject* parent = nullptr);
    ~Map() override;

    // Erreur (PlanIllisible, CoucheInconnue...) when the map set cannot be read; Erreur
    // (AccesIncorrect) inside an update bracket.
    void loadMapSet(const QString& pathOrConnection, const MapSetOptions& options = {});
    QString mapSet() const;
    MapStore* store() const { return store_.get(); }
    // How many features the last load left out because their coordinates could not be
    // read (NaN, infinite, or beyond kCoordinateLimit): they stay in storage, untouched.
    int unreadableCount() const { return unreadable_; }

    int layerCount() const { return int(layers_.size()); }
    Layer* layerAt(int index) const;      // 0-based, drawing order; Erreur out of range
    Layer* layer(QStringView name) const; // exact name; nullptr when absent
    Layer& requireLayer(QStringView name) const;
    std::vector<Layer*> layers() const;

    // A temporary layer from a creation description (type 6); it lives in memory only
    // and is drawn on top.
    Layer& addLayer(const LayerInfo& info);
    // Erreur (AccesIncorrect) inside an update bracket, whose journal refers to layers.
    void removeLayer(QStringView name);
    void removeAllLayers();

    Dataset& addDataset(Layer& layer, const QString& name = {});
    // A record set bound to the layer's column `bindField`, or to its key column at this
    // moment when `bindField` is empty. Erreur (ChampInconnu) for a missing column: the map
    // is then unchanged.
    Dataset& addDataset(Layer& layer, const recordset::Recordset& rows, const QString& geoField,
                        const QString& name, const QString& bindField = {});
    Dataset* dataset(QStringView name) const;
    std::vector<Dataset*> datasets() const;
    std::vector<Dataset*> datasetsOf(const Layer& layer) const;
    void removeDataset(QStringView name);

    // Runs the command inside one update bracket. Erreur when it fails: nothing of it is
    // kept. Done outside any bracket, it then goes on the attached undo stack, if any;
    // inside a bracket opened with an UndoStep, it becomes part of that step.
    void execute(std::unique_ptr<EditCommand> command);
    // The stack that keeps executed commands (not owned); cleared when layers go away.
    void setUndoStack(QUndoStack* stack);
    QUndoStack* undoStack() const { return undoStack_; }
    bool inUpdateBracket() const { return depth_ > 0; }

    Style defaultStyle;
    Style selectionStyle;

    static double distance(Point a, Point b);

signals:
    void layersChanged();
    // Features or settings of a layer changed; one per layer and bracket.
    void changed(const carto::Change& change);
    void selectionChanged(carto::Layer* layer);
    void datasetsChanged();
    // An undo or redo of the undo stack failed; the map is as it was before it.
    void editFailed(const veldra::Erreur& error);

private:
    friend class Layer;
    friend class UpdateAccess;
    friend class EditCommand;

    // The bracket: open returns the journal's mark, close keeps or undoes what follows it.
    std::size_t openBracket(const UndoStep* step = nullptr);
    void closeBracket(std::size_t mark, bool keep);
    // Called by layers for every write inside a bracket: what the feature was before.
    void journal(Layer& layer, qint64 fid, FeaturePtr before);
    void noteChange(const Layer& layer, Change::Kind kind, qint64 fid, const Rect& area);
    void emitSettings(const Layer& layer, Change::Kind kind);
    void undoBack(std::size_t mark, bool inStorage);
    void flushChanges();
    void clearUndoStack();

    struct JournalEntry {
        Layer* layer;
        qint64 fid;
        FeaturePtr before; // null: the feature did not exist
    };

    std::unique_ptr<MapStore> store_;
    std::vector<std::unique_ptr<Layer>> layers_;
    std::vector<std::unique_ptr<Dataset>> datasets_;
    MapSetOptions options_;
    int unreadable_ = 0;

    int depth_ = 0;
    bool poisoned_ = false; // an inner bracket could not undo its writes
    std::vector<JournalEntry> journal_;
    std::map<const Layer*, Change> pending_;
    QPointer<QUndoStack> undoStack_;

    // The commands of a bracket opened with an UndoStep; marks_ holds, per open bracket,
    // how many there were when it opened, so that a failed inner bracket drops its own.
    struct Recording {
        QString text;
        bool joinsPrevious = false;
        bool joinsNext = false;
        std::vector<std::unique_ptr<EditCommand>> commands;
        std::vector<std::size_t> marks;
    };
    std::unique_ptr<Recording> recording_;
    void pushRecorded(std::unique_ptr<Recording> step);
    // Every step reaches the stack here, joined with the held step if there is one.
    void pushStep(std::unique_ptr<EditCommand> step);
    void releaseHeldStep();
    std::unique_ptr<EditGroup> held_;
};

} // namespace carto
