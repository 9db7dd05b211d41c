#pragma once
// The control's design-time properties, kept by the host in its own settings, one key per
// property under one group. The group mirrors the bag exactly: a property the control no
// longer writes (back to its default) disappears from the settings too.

#include "context/property_bag.h"

#include <QString>

class QSettings;

namespace veldra::demo {

inline const QString GroupeProprietes = QStringLiteral("Controle");

PropertyBag lisProprietes(QSettings& reglages, const QString& groupe = GroupeProprietes);
void ecrisProprietes(QSettings& reglages, const PropertyBag& sac,
                     const QString& groupe = GroupeProprietes);

} // namespace veldra::demo
