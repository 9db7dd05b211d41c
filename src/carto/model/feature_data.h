#pragma once
// What a layer stores for one feature. Shared between the layer and the Feature values
// handed out (copy on write), so enumerating a large layer copies no geometry.

#include "carto/geometry/point.h"
#include "carto/geometry/rect.h"
#include "carto/geometry/shape.h"
#include "carto/model/attribute_values.h"
#include "carto/model/data_ref.h"
#include "carto/model/feature_text.h"
#include "carto/model/style.h"

#include <QString>
#include <QVariant>
#include <memory>
#include <optional>
#include <vector>

namespace carto {

// Codes of the feature kinds, as hosts read them.
enum class FeatureKind : int { Region = 0, Line = 1, Symbol = 2, Text = 5 };

// What drawing and testing a feature read of it, wherever it is held: valid while that
// stays unchanged.
struct FeatureView {
    FeatureKind kind = FeatureKind::Region;
    ShapeView parts;
    const FeatureText* text = nullptr; // texts only
    Point extent;                      // as FeatureData::extent

    // A text's or a symbol's from its point and extent; the rest's from their points.
    Rect bounds() const;
};

struct FeatureData {
    FeatureKind kind = FeatureKind::Region;
    RefCount refs; // of the FeaturePtr that share it; fills what kind leaves of 8 bytes
    Shape parts;   // flat: see shape.h
    StylePtr style;
    AttributeValues attributes; // by the layer's column order
    FeatureText text;           // texts only

    // Derived, kept with the data: recomputed whenever the data changes. How far a text or
    // a symbol reaches from its point on each side (a text's from its font); zero for the
    // rest, whose bounds come from their points.
    Point extent;

    FeatureView view() const { return {kind, parts.view(), &text, extent}; }
    Rect bounds() const { return view().bounds(); }
};

using FeaturePtr = DataRef<const FeatureData>;
using MutableFeaturePtr = DataRef<FeatureData>;

} // namespace carto
