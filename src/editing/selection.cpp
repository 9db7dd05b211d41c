#include "editing/selection.h"

#include "carto/model/layer.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/garde.h"
#include "editing/sauve.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>

namespace veldra {

void afficheObjetSelectionne(Contexte& ctx, const carto::Feature& f) {
    VariablesPubliques& v = ctx.v;
    carto::Layer* courant = v.Calque_Courant;
    if (estCalque(courant, v.Calque_Tombe)) {
        courant->setKeyField(QStringLiteral("Numero"));
        ctx.s.SaisieNum->setText(f.keyValue().toString());
    } else if (estCalque(courant, v.Calque_Allees) || estCalque(courant, v.Calque_Sections)) {
        courant->setKeyField(QStringLiteral("Nom"));
        ctx.s.Label_Nom->setText(f.keyValue().toString());
    }
}

std::vector<carto::Feature> selectionCourante(Contexte& ctx) {
    std::vector<carto::Feature> choisis;
    const carto::Layer* courant = ctx.v.Calque_Courant;
    if (!courant)
        return choisis;
    for (const qint64 fid : ctx.v.ObjSel.fids())
        if (estCalque(ctx.v.ObjSel.layer(), courant) && courant->hasFeature(fid))
            choisis.push_back(courant->feature(fid));
    return choisis;
}

void selectionChangee(Contexte& ctx) {
    VariablesPubliques& v = ctx.v;
    Surface& s = ctx.s;
    carto::Layer* courant = v.Calque_Courant;
    if (!courant)
        return;
    v.ObjSel = courant->selection();
    const bool plots = estCalque(courant, v.Calque_Tombe);
    const bool nomme = estCalque(courant, v.Calque_Allees) || estCalque(courant, v.Calque_Sections);
    if (v.ObjSel.count() == 1) {
        afficheObjetSelectionne(ctx, v.ObjSel.at(0));
        if (v.ModeEdition)
            s.Btn_Sauver->setEnabled(true);
        s.Btn_Visu->setVisible(true);
        if (v.ModeEdition) {
            if (plots) {
                s.SaisieNum->setEnabled(true);
                s.Btn_RotationNumero->setVisible(true);
                s.Btn_ModifierTailleNumero->setVisible(true);
            } else if (nomme || estCalque(courant, v.Calque_Decor)) {
                s.Btn_ModifStyle->setVisible(true);
                s.Label_Nom->setReadOnly(false);
            } else if (estCalque(courant, v.Calque_Texte)) {
                s.Btn_ModifStyle->setVisible(true); // a text's lettering, in fStyle
            }
        } else {
            s.Label_Nom->setReadOnly(true);
        }
    } else {
        s.Label_Nom->setReadOnly(!(nomme && !v.ObjSel.isEmpty()));
        s.Btn_Sauver->setEnabled(false);
        s.Btn_Visu->setVisible(false);
        s.SaisieNum->setEnabled(false);
        s.SaisieNum->clear();
        s.Label_Nom->clear();
        s.Btn_ModifStyle->setVisible(false);
        s.Btn_RotationNumero->setVisible(plots && v.ModeEdition);
        s.Btn_ModifierTailleNumero->setVisible(plots && v.ModeEdition);
    }
    s.Num_Selec->setText(
        QStringLiteral("%1/%2").arg(v.ObjSel.count()).arg(courant->featureCount()));
}

void connecteSelection(Contexte& ctx) {
    Contexte* c = &ctx;
    QObject::connect(ctx.s.Map1, &carto::MapView::selectionChanged, &ctx.controle,
                     garde(ctx, [c] { selectionChangee(*c); }));
    QObject::connect(ctx.s.Btn_Sauver, &QPushButton::clicked, &ctx.controle,
                     garde(ctx, [c] { sauveSelection(*c); }));
}

} // namespace veldra
