#pragma once
// Edits of features as commands: every change to the features of a layer is one of these,
// run by Map::execute inside one update bracket. Each is a QUndoCommand, so an undo stack
// attached to the map keeps them; redo and undo run in their own brackets too, and a
// failure leaves the map as it was (the command is then marked obsolete and the map
// reports the error through Map::editFailed).
//
// Features are named by FID. A command captures what it replaces when it first runs, so
// undoing gives back exactly what was there, styles and attributes included; redoing an
// addition gives the features their first FIDs again.

#include "carto/model/feature.h"
#include "carto/model/style.h"

#include <QString>
#include <QUndoCommand>
#include <QVariant>
#include <memory>
#include <vector>

namespace carto {

class Layer;
class Map;

class EditCommand : public QUndoCommand {
public:
    EditCommand(Map& map, const QString& text);

    // Applies the command in a bracket of its own; Erreur leaves the map as it was.
    void run();
    // QUndoCommand: errors are reported, never thrown into the undo stack.
    void redo() final;
    void undo() final;
    // Map::execute has run the command already: the stack's first redo() does nothing.
    void markDone() { done_ = true; }
    // Every edit command has this id, so the undo stack offers each new step to the one
    // before it; mergeWith takes only a step that joins the previous one (UndoStep).
    int id() const override { return kId; }
    bool mergeWith(const QUndoCommand* other) override;

protected:
    // Called inside an update bracket. Throw to fail: the bracket undoes what was written.
    virtual void apply() = 0;
    virtual void revert() = 0;
    Map& map() const { return map_; }

private:
    friend class EditGroup;
    static constexpr int kId = 0x5645;
    Map& map_;
    bool done_ = false;
    // Steps joined to this one: redone after it, undone before it, in one bracket.
    std::vector<std::shared_ptr<EditCommand>> followers_;
};

// New features in a layer. added() gives them as stored, with their FIDs; the handle
// outlives the command, which an undo stack may own or which may be gone.
class AddFeatures : public EditCommand {
public:
    using Added = std::shared_ptr<const std::vector<Feature>>;
    AddFeatures(Layer& layer, std::vector<Feature> features,
                const QString& text = QStringLiteral("Ajouter"));
    Added added() const { return added_; }

protected:
    void apply() override;
    void revert() override;

private:
    Layer& layer_;
    std::vector<Feature> features_;
    std::shared_ptr<std::vector<Feature>> added_;
};

class DeleteFeatures : public EditCommand {
public:
    DeleteFeatures(Layer& layer, std::vector<qint64> fids,
                   const QString& text = QStringLiteral("Supprimer"));

protected:
    void apply() override;
    void revert() override;

private:
    Layer& layer_;
    std::vector<qint64> fids_;
    std::vector<FeaturePtr> removed_;
};

// Features of a layer replaced by new values of themselves (same FIDs): the generic
// "set a value on N features", which the commands below specialise.
class ReplaceFeatures : public EditCommand {
public:
    ReplaceFeatures(Layer& layer, std::vector<Feature> features,
                    const QString& text = QStringLiteral("Modifier"));

protected:
    void apply() override;
    void revert() override;

private:
    Layer& layer_;
    std::vector<Feature> after_;
    std::vector<FeaturePtr> before_;
};

class MoveFeatures : public ReplaceFeatures {
public:
    MoveFeatures(Layer& layer, const std::vector<qint64>& fids, double dx, double dy);
};

class ReshapeFeature : public ReplaceFeatures {
public:
    ReshapeFeature(Layer& layer, qint64 fid, Parts parts);
};

class SetAttribute : public ReplaceFeatures {
public:
    SetAttribute(Layer& layer, const std::vector<qint64>& fids, QStringView column,
                 const QVariant& value);
};

class SetStyle : public ReplaceFeatures {
public:
    SetStyle(Layer& layer, const std::vector<qint64>& fids, const Style& style);
};

// Several commands done as one, in order, and undone in reverse order. A group that
// joins the previous step gives its commands to that step when the stack merges them.
class EditGroup : public EditCommand {
public:
    EditGroup(Map& map, const QString& text, bool joinsPrevious = false);
    // The command is done when the group is; returns it for reading its results.
    template <typename C> C& add(std::unique_ptr<C> command) {
        C& ref = *command;
        commands_.push_back(std::shared_ptr<EditCommand>(std::move(command)));
        return ref;
    }
    bool isEmpty() const { return commands_.empty(); }

protected:
    void apply() override;
    void revert() override;

private:
    friend class EditCommand;
    // Shared, so that a step merged into another stays alive once the stack deletes it.
    std::vector<std::shared_ptr<EditCommand>> commands_;
    bool joinsPrevious_;
};

} // namespace carto
