#pragma once
// The gate every write of a feature passes (Layer::conform): storage is given only what it
// holds exactly, and memory keeps exactly what storage was given.
// - A value a column cannot hold exactly is refused (an integer out of the column's range
//   or with a fraction, a text that is not a number in a numeric column, a Boolean where a
//   number is asked, a number that is not finite), never rounded, clamped or zeroed.
// - Texts are cut to their column's width, counted in characters.
// - Each value takes the type reading it back gives (int, qlonglong, double, QString,
//   QDateTime), so a value written and a value read compare equal.
// - Coordinates must be finite and within kCoordinateLimit of the origin; a region's
//   rings are kept closed and grouped as storage keeps them (shell, then its holes); a new
//   or reshaped geometry must be valid and not empty.

#include "carto/model/feature_data.h"
#include "carto/model/layer_info.h"

#include <QString>
#include <QVariant>

namespace carto {

// Far beyond any projected grid, near enough that areas and sides stay finite.
inline constexpr double kCoordinateLimit = 1e12;

// True when every point is finite and within kCoordinateLimit.
bool readableParts(const Shape& parts);

// The value as the column stores it. Erreur (TypeIncompatible) saying why it cannot.
QVariant columnValue(const FieldDef& field, const QVariant& value);

// The text with at most `width` characters (no limit when width <= 0).
QString cutToWidth(const QString& text, int width);

// Checks and settles the shape of data about to be stored: coordinates readable, rings
// closed and grouped; when `checkValidity`, a valid geometry that is not empty.
// Erreur (GeometrieInvalide) saying why not.
void settleShape(FeatureData& data, bool checkValidity);

// Sizes and angles of the style at the precision storage keeps them, colours on 24 bits.
Style storedStyle(const Style& style);

} // namespace carto
