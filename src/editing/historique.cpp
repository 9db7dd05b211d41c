#include "editing/historique.h"

#include "context/contexte.h"
#include "context/garde.h"
#include "context/nombre_tombes.h"
#include "editing/selection.h"

#include <QApplication>

namespace veldra {

namespace {

bool gesteEnCours(const Contexte& ctx) {
    return QApplication::mouseButtons() != Qt::NoButton || ctx.etat.pointeur.glisse ||
           ctx.s.Timer1->isActive();
}

void boutonsHistorique(Contexte& ctx) {
    Surface& s = ctx.s;
    const bool actif = historiqueActif(ctx);
    s.Btn_AnnulerEdition->setVisible(actif);
    s.Btn_RetablirEdition->setVisible(actif);
    s.Btn_AnnulerEdition->setEnabled(actif && s.Historique->canUndo());
    s.Btn_RetablirEdition->setEnabled(actif && s.Historique->canRedo());
    s.Panel_Outils->adjustSize();
}

} // namespace

bool historiqueActif(const Contexte& ctx) {
    return ctx.s.Map1->map().undoStack() == ctx.s.Historique;
}

void activeHistorique(Contexte& ctx, bool active) {
    ctx.s.Historique->clear();
    ctx.carte().setUndoStack(active ? ctx.s.Historique : nullptr);
    boutonsHistorique(ctx);
}

namespace {

// The counts of the panel follow what an undo or a redo added or took away.
void apresPas(Contexte& ctx) {
    afficheNombreTombes(ctx);
    selectionChangee(ctx);
}

} // namespace

void annuleEdition(Contexte& ctx) {
    if (!historiqueActif(ctx) || gesteEnCours(ctx) || !ctx.s.Historique->canUndo())
        return;
    ctx.s.Historique->undo();
    apresPas(ctx);
}

void retablitEdition(Contexte& ctx) {
    if (!historiqueActif(ctx) || gesteEnCours(ctx) || !ctx.s.Historique->canRedo())
        return;
    ctx.s.Historique->redo();
    apresPas(ctx);
}

void oublieHistorique(Contexte& ctx) {
    ctx.s.Historique->clear();
}

void connecteHistorique(Contexte& ctx) {
    Surface& s = ctx.s;
    Contexte* c = &ctx;
    QObject* o = &ctx.controle;
    QObject::connect(s.Btn_AnnulerEdition, &QToolButton::clicked, o,
                     garde(ctx, [c] { annuleEdition(*c); }));
    QObject::connect(s.Btn_RetablirEdition, &QToolButton::clicked, o,
                     garde(ctx, [c] { retablitEdition(*c); }));
    QObject::connect(s.Historique, &QUndoStack::canUndoChanged, o, [c] { boutonsHistorique(*c); });
    QObject::connect(s.Historique, &QUndoStack::canRedoChanged, o, [c] { boutonsHistorique(*c); });
    // An undo the plan refused leaves it as it was; the clerk is told why.
    QObject::connect(&ctx.carte(), &carto::Map::editFailed, o,
                     [c](const Erreur& e) { signaleErreur(*c, e); });
}

} // namespace veldra
