#include "plan/calque_courant.h"

#include "context/calques.h"
#include "context/contexte.h"

namespace veldra {

namespace {

// The side panel follows the current layer: plot numbers, or section and alley names.
void ajusteVoletLateral(Contexte& ctx) {
    Surface& s = ctx.s;
    VariablesPubliques& v = ctx.v;
    const carto::Layer* c = v.Calque_Courant;
    const bool selection = c && !c->selection().isEmpty();
    if (estCalque(c, v.Calque_Tombe)) {
        s.Frame_Numero->show();
        s.Frame_Nom->hide();
    } else if (estCalque(c, v.Calque_Sections) || estCalque(c, v.Calque_Allees)) {
        s.Frame_Nom->show();
        s.Frame_Numero->hide();
    } else {
        s.Frame_Numero->hide();
        s.Frame_Nom->hide();
    }
    // The text layer shows the panel too: its style button letters the selected text.
    if (estCalque(c, v.Calque_Tombe) || estCalque(c, v.Calque_Sections) ||
        estCalque(c, v.Calque_Allees) || estCalque(c, v.Calque_Decor) ||
        estCalque(c, v.Calque_Texte))
        s.Panel_Infos->show();
    // Styles apply to drawn shapes and texts; labels belong to plots. Both need a selection.
    const bool styles = estCalque(c, v.Calque_Decor) || estCalque(c, v.Calque_Sections) ||
                        estCalque(c, v.Calque_Allees) || estCalque(c, v.Calque_Texte);
    s.Btn_ModifStyle->setVisible(v.ModeEdition && selection && styles);
    s.Btn_DeplaceEtiquette->setVisible(v.ModeEdition && estCalque(c, v.Calque_Tombe));
}

} // namespace

void appliqueModeEdition(Contexte& ctx) {
    Surface& s = ctx.s;
    VariablesPubliques& v = ctx.v;
    carto::MapView& carte = *s.Map1;
    carte.setInsertionLayer(nullptr);
    if (v.Calque_Courant)
        v.Calque_Courant->setSelectable(true);
    if (s.CB_ModeEdition->isChecked()) {
        v.ModeEdition = true;
        s.CB_Bibliotheque->show();
        if (v.Calque_Courant)
            v.Calque_Courant->setEditable(true);
        appelle(ctx.crochets.activeOutilsDessin);
        s.Panel_Outils->move(0, int(1680 / (1440.0 / std::max(1, ctx.controle.logicalDpiY()))));
        s.Panel_Outils->show();
        s.Panel_Outils->raise();
        s.Panel_Outils->move(s.Panel_Outils->x() + 10, s.Panel_Outils->y());
        appelle(ctx.crochets.prepareOutilsCarte);
    } else {
        v.ModeEdition = false;
        s.CB_Bibliotheque->setChecked(false);
        s.CB_Bibliotheque->hide();
        carte.setInsertionLayer(nullptr);
        if (v.Calque_Courant)
            v.Calque_Courant->setEditable(false);
        carte.setCurrentTool(carto::tool::Select);
        s.Panel_Outils->hide();
    }
    ajusteVoletLateral(ctx);
}

void quitteModeEdition(Contexte& ctx) {
    Surface& s = ctx.s;
    if (!s.CB_ModeEdition->isChecked() && !ctx.v.ModeEdition)
        return;
    {
        const QSignalBlocker bloque(s.CB_ModeEdition);
        s.CB_ModeEdition->setChecked(false);
    }
    ctx.v.ModeEdition = false;
    s.CB_Bibliotheque->setChecked(false);
    s.CB_Bibliotheque->hide();
    s.Map1->setInsertionLayer(nullptr);
    s.Panel_Outils->hide();
    ajusteVoletLateral(ctx);
}

void changeCalqueCourant(Contexte& ctx) {
    Surface& s = ctx.s;
    VariablesPubliques& v = ctx.v;
    s.Map1->setInsertionLayer(nullptr);
    if (carto::Layer* avant = ctx.etat.calquePrecedent) {
        avant->setEditable(false);
        avant->setSelectable(false);
        avant->clearSelection();
    }
    v.Calque_Courant = ctx.carte().layer(s.Combo_Calque->currentText());
    ctx.etat.calquePrecedent = v.Calque_Courant;
    appliqueModeEdition(ctx);
    const bool tombes = estCalque(v.Calque_Courant, v.Calque_Tombe);
    for (QWidget* w :
         std::initializer_list<QWidget*>{s.L_RechEmp, s.TB_SaisieEmplacement, s.Combo_section,
                                         s.LrechercheSection, s.Btn_Rechercher})
        w->setVisible(tombes);
}

} // namespace veldra
