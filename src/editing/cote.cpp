#include "editing/cote.h"

#include "base/erreur.h"

namespace veldra {

Cote coteDe(const QString& cle) {
    if (cle == QLatin1String("Haut"))
        return Cote::Haut;
    if (cle == QLatin1String("Bas"))
        return Cote::Bas;
    if (cle == QLatin1String("Gauche"))
        return Cote::Gauche;
    if (cle == QLatin1String("Droite"))
        return Cote::Droite;
    throw Erreur(err::ArgumentsIncorrects,
                 QStringLiteral("Côté inconnu : « %1 » (Haut, Bas, Gauche ou Droite).").arg(cle));
}

} // namespace veldra
