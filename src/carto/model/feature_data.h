#pragma once
// What a layer stores for one feature. Shared between the layer and the Feature values
// handed out (copy on write), so enumerating a large layer copies no geometry.

#include "carto/geometry/point.h"
#include "carto/model/attribute_values.h"
#include "carto/geometry/rect.h"
#include "carto/model/style.h"

#include <QString>
#include <QVariant>
#include <memory>
#include <optional>
#include <vector>

namespace carto {

// Codes of the feature kinds, as hosts read them.
enum class FeatureKind : int { Region = 0, Line = 1, Symbol = 2, Text = 5 };

// Rings of a region (each polygon's shell then its holes), lines of a line feature, or
// the single point of a symbol or a text.
using Part = std::vector<Point>;
using Parts = std::vector<Part>;

struct FeatureData {
    FeatureKind kind = FeatureKind::Region;
    Parts parts;
    std::shared_ptr<const Style> style;
    AttributeValues attributes; // by the layer's column order
    QString text;                     // texts only

    // Derived, kept with the data: recomputed whenever the data changes.
    Rect bounds;
};

} // namespace carto
