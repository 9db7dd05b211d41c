#include "context/garde.h"

#include "context/contexte.h"

namespace veldra {

void signaleErreur(Contexte& ctx, const Erreur& e, const QString& titre) {
    ctx.prompter().message(texteErreur(e, QStringLiteral(" : ")), boutons::Ok, titre);
}

} // namespace veldra
