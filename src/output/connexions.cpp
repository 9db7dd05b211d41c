#include "output/connexions.h"

#include "context/contexte.h"
#include "context/garde.h"
#include "output/bibliotheque.h"
#include "output/carte_localisation.h"
#include "output/echelle.h"
#include "output/etiquettes.h"
#include "output/imp_carte.h"
#include "output/palette.h"
#include "output/reperes.h"
#include "output/style_selection.h"

namespace veldra {

void connecteSorties(Contexte& ctx) {
    Contexte* c = &ctx;
    QObject::connect(ctx.s.Btn_Imprimer, &QPushButton::clicked, &ctx.controle,
                     garde(ctx, [c] { imprimeDepuisBouton(*c); }));
    QObject::connect(ctx.s.Btn_DeplaceEtiquette, &QPushButton::clicked, &ctx.controle,
                     garde(ctx, [c] { menuEtiquettes(*c); }));
    QObject::connect(ctx.s.Btn_ModifStyle, &QPushButton::clicked, &ctx.controle,
                     garde(ctx, [c] { modifieStyle(*c); }));
    connecteEchelle(ctx);
    connecteReperes(ctx);
    connectePalette(ctx);
    connecteBibliotheque(ctx);
    connecteCarteLocalisation(ctx);
}

} // namespace veldra
