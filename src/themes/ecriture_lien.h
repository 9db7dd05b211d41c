#pragma once
// The one way a photo link is written: the plots' "Photo" and, when the layer has it, the
// matching "Booleen", in one update bracket, so the photo theme on show follows every
// link made or removed. A path longer than the "Photo" column is refused, never cut.

#include "carto/model/update_access.h"

#include <QString>
#include <QVariant>
#include <optional>
#include <vector>

namespace carto {
class Layer;
}

namespace veldra {

class Contexte;

// No photo: no value, or a text that trims to nothing (a cleared link holds " ").
bool sansPhoto(const QVariant& photo);
// What the photo theme writes into "Booleen": "F" with a photo, "T" without.
QString drapeauPhoto(const QVariant& photo);

// Writes `chemin` into the plots `fids`: a step of the user's history when `pas` is given,
// else a write of the host or of the control. Erreur (TexteTropLong) for a path longer
// than the column; any failure leaves the plots as they were.
void ecritLien(Contexte& ctx, carto::Layer& tombes, const std::vector<qint64>& fids,
               const QString& chemin, const std::optional<carto::UndoStep>& pas = std::nullopt);

} // namespace veldra
