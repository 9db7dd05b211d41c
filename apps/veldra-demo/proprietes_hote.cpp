#include "proprietes_hote.h"

#include <QSettings>

namespace veldra::demo {

PropertyBag lisProprietes(QSettings& reglages, const QString& groupe) {
    QVariantMap valeurs;
    reglages.beginGroup(groupe);
    for (const QString& cle : reglages.childKeys())
        valeurs.insert(cle, reglages.value(cle));
    reglages.endGroup();
    PropertyBag sac;
    sac.setValues(std::move(valeurs));
    return sac;
}

void ecrisProprietes(QSettings& reglages, const PropertyBag& sac, const QString& groupe) {
    reglages.beginGroup(groupe);
    reglages.remove(QString()); // the whole group: what the bag no longer holds goes too
    for (auto it = sac.values().cbegin(); it != sac.values().cend(); ++it)
        reglages.setValue(it.key(), it.value());
    reglages.endGroup();
    reglages.sync();
}

} // namespace veldra::demo
