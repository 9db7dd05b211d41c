#pragma once
// The guarded update bracket of a map. Every write to a feature happens inside one: the
// writes of a bracket go to storage in one transaction and are journaled in memory.
// commit() makes them durable; leaving the scope without commit() (an exception) undoes
// them in storage and in memory alike, so both hold exactly what they held before the
// bracket opened.
//
// Brackets nest. An inner bracket joins the outer transaction; when it fails it undoes
// only its own writes, so the outer bracket may go on (a record skipped in a batch). The
// changes are reported by Map::changed when the outermost bracket ends.

#include <QString>
#include <cstddef>

namespace carto {

class Layer;
class Map;

// What a user's action leaves on the map's undo stack: every command run inside its
// bracket, as one step named `text`. A step that finishes a gesture begun by the step
// before it (a moved plot getting its number again) joins that step; a step that prepares
// the command about to follow in the same event (labels cleared before a tool moves their
// plots) is held and joined by it, or stands alone once the event is over.
struct UndoStep {
    QString text;
    bool joinsPrevious = false;
    bool joinsNext = false;
};

class UpdateAccess {
public:
    // Erreur (EcritureImpossible) when storage cannot start a transaction.
    explicit UpdateAccess(Map& map);
    // The same, and the bracket's commands become one step of the undo stack when it is
    // the outermost one, is committed and the map has a stack. Inner brackets ignore it.
    UpdateAccess(Map& map, UndoStep step);
    // Rolls back unless committed.
    ~UpdateAccess();
    UpdateAccess(const UpdateAccess&) = delete;
    UpdateAccess& operator=(const UpdateAccess&) = delete;

    // Ends the bracket, keeping its writes. For the outermost bracket, Erreur when storage
    // refuses the commit: the writes are then undone in memory too.
    void commit();

private:
    Map& map_;
    std::size_t mark_;
    bool open_ = true;
};

// A read bracket on a layer (begin-access in mode 0 ... end-access), closed whatever
// happens: what a host sees open while the control reads.
class ReadAccess {
public:
    explicit ReadAccess(Layer& layer);
    ~ReadAccess();
    ReadAccess(const ReadAccess&) = delete;
    ReadAccess& operator=(const ReadAccess&) = delete;

private:
    Layer& layer_;
};

} // namespace carto
