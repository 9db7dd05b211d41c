#include "context/calques.h"

#include "base/erreur.h"
#include "carto/model/layer.h"

namespace veldra {

bool estCalque(const carto::Layer* l, const carto::Layer* autre) {
    return l && autre && l->name() == autre->name();
}

carto::Layer& calqueOuvert(carto::Layer* l, const char* nom) {
    if (!l)
        throw Erreur(
            err::CoucheInconnue,
            QStringLiteral("La couche « %1 » n'est pas ouverte.").arg(QString::fromUtf8(nom)));
    return *l;
}

} // namespace veldra
