#pragma once
// What changed in a map, as Map::changed reports it: one value per layer and per update
// bracket (or per setting changed), emitted once the bracket has ended, so a view reacts
// in one place to whatever made the change.

#include "carto/geometry/rect.h"

#include <QMetaType>
#include <QtGlobal>
#include <vector>

namespace carto {

class Layer;

struct Change {
    enum Kind : unsigned {
        Added = 1,
        Updated = 2,
        Deleted = 4,
        Display = 8,   // a setting that changes the picture (visible, labels, styles)
        Behaviour = 16 // a setting that changes what tools may do (selectable, editable)
    };

    const Layer* layer = nullptr;
    unsigned kinds = 0;
    std::vector<qint64> fids; // the features added, updated or deleted, in order
    Rect area;                // their bounds before and after; null for settings

    bool has(Kind k) const { return (kinds & k) != 0; }
    bool touchesFeatures() const { return (kinds & (Added | Updated | Deleted)) != 0; }
};

} // namespace carto

Q_DECLARE_METATYPE(carto::Change)
