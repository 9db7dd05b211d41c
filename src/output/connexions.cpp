#include "output/connexions.h"

#include "context/contexte.h"
#include "context/garde.h"
#include "output/bibliotheque.h"
#include "output/carte_localisation.h"
#include "output/etiquettes.h"
#include "output/imp_carte.h"

namespace veldra {

void connecteSorties(Contexte& ctx) {
    Contexte* c = &ctx;
    QObject::connect(ctx.s.Btn_Imprimer, &QPushButton::clicked, &ctx.controle,
                     garde(ctx, [c] { imprimeDepuisBouton(*c); }));
    QObject::connect(ctx.s.Btn_DeplaceEtiquette, &QPushButton::clicked, &ctx.controle,
                     garde(ctx, [c] { menuEtiquettes(*c); }));
    connecteBibliotheque(ctx);
    connecteCarteLocalisation(ctx);
}

} // namespace veldra
