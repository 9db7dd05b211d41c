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

#include <cstddef>

namespace carto {

class Layer;
class Map;

class UpdateAccess {
public:
    // Erreur (EcritureImpossible) when storage cannot start a transaction.
    explicit UpdateAccess(Map& map);
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
