#include "editing/barre_outils.h"

#include "base/erreur.h"
#include "context/contexte.h"
#include "context/garde.h"
#include "editing/accrochage.h"
#include "editing/divers.h"
#include "editing/rangee.h"

namespace veldra {

namespace {

using carto::MapView;

template <typename F> void ignoreErreurs(F&& f) {
    try {
        f();
    } catch (const Erreur&) {
        // A failing step of a tool-bar press must not stop the next one.
    }
}

bool estCalque(const carto::Layer* l, const QString& nom) {
    return l && l->name() == nom;
}

} // namespace

void creeOutilsPersonnalises(Contexte& ctx) {
    MapView& m = *ctx.s.Map1;
    m.createCustomTool(outil::Mesure, carto::CustomToolType::BrokenLine, 2);
    m.createCustomTool(outil::Rectangle, carto::CustomToolType::Rectangle, 2);
    m.createCustomTool(outil::Cercle, carto::CustomToolType::Circle, 2);
    m.createCustomTool(outil::Texte, carto::CustomToolType::Point, 22);
}

void boutonOutils(Contexte& ctx, int index) {
    Surface& s = ctx.s;
    MapView& m = *s.Map1;
    ignoreErreurs([&] { m.setMousePointer(carto::pointer::Default); });
    ignoreErreurs([&] {
        if (m.editingMode() != carto::editmode::Features)
            m.setEditingMode(carto::editmode::Features);
    });
    switch (index) {
    case 0:
        ignoreErreurs([&] { m.setCurrentTool(carto::tool::ZoomIn); });
        break;
    case 1:
        ignoreErreurs([&] { m.setCurrentTool(carto::tool::ZoomOut); });
        break;
    case 2:
        ignoreErreurs([&] { m.setCurrentTool(carto::tool::Pan); });
        break;
    case 3:
        ignoreErreurs([&] { m.setCurrentTool(carto::tool::Select); });
        s.Regle->setEnabled(true);
        s.RegleV->setEnabled(true);
        break;
    case 4:
        ignoreErreurs([&] { m.setCurrentTool(carto::tool::RectangleSelect); });
        break;
    case 5:
        ignoreErreurs([&] { m.setCurrentTool(carto::tool::PolygonSelect); });
        break;
    case 6:
        ignoreErreurs([&] { m.setCurrentTool(carto::tool::RadiusSelect); });
        break;
    case 7:
        s.L_Distance->clear();
        s.L_DistTotale->clear();
        s.Panel_Dist->show();
        s.Panel_Dist->raise();
        ignoreErreurs([&] { m.setCurrentTool(outil::Mesure); });
        ignoreErreurs([&] {
            m.setMousePointer(carto::pointer::Custom);
            m.setMouseIcon(ctx.controle.property("RepCurseurs").toString() +
                           QStringLiteral("CurRegle.cur"));
        });
        break;
    case 8:
        ignoreErreurs([&] {
            if (!ctx.v.Calque_Enceinte)
                return;
            const carto::Rect tout = ctx.v.Calque_Enceinte->bounds();
            m.setBounds(tout);
            if (tout.width() != 0)
                m.setZoom(m.zoom() / 0.9);
        });
        break;
    default:
        break;
    }
    ctx.etat.indexOutil = qint16(index);
}

void boutonOutilsDessin(Contexte& ctx, int index) {
    Surface& s = ctx.s;
    MapView& m = *s.Map1;
    // The drawing tools belong to an open plan (its custom tools are made by the opening).
    if (!ctx.etat.planOuvert)
        return;
    ignoreErreurs([&] { m.setMousePointer(carto::pointer::Default); });
    m.setInsertionLayer(ctx.carte().layer(s.Combo_Calque->currentText()));
    ignoreErreurs([&] { m.setEditingMode(carto::editmode::Features); });
    switch (index) {
    case 0:
        if (ctx.v.ObjSel.isEmpty())
            ctx.prompter().message(QStringLiteral("Vous devez sélectionner au moins un élément !"));
        else
            ouvreDivers(ctx, [](Divers& d) { d.PRotation(); });
        break;
    case 1:
        m.setCurrentTool(carto::tool::Select);
        m.setEditingMode(carto::editmode::Vertices);
        break;
    case 2:
        m.setCurrentTool(carto::tool::Select);
        m.setEditingMode(carto::editmode::Features);
        break;
    case 3:
        m.setCurrentTool(carto::tool::DrawPolygon);
        break;
    case 4:
        m.setCurrentTool(outil::Rectangle);
        break;
    case 5:
        m.setCurrentTool(outil::Cercle);
        break;
    case 6:
        m.setCurrentTool(carto::tool::Select);
        m.setEditingMode(carto::editmode::Vertices);
        m.setEditingMode(carto::editmode::AddVertices);
        break;
    case 7:
        m.setCurrentTool(carto::tool::DrawLine);
        break;
    default:
        break;
    }
    s.Regle->setEnabled(false);
    s.RegleV->setEnabled(false);
}

void activeOutilsDessin(Contexte& ctx) {
    Surface& s = ctx.s;
    const carto::Layer* c = ctx.v.Calque_Courant;
    const bool texte = estCalque(c, QStringLiteral("Texte"));
    const bool formes = c && !texte;
    const bool lignes = estCalque(c, QStringLiteral("Décor"));
    for (int i = 0; i < 8; ++i) {
        const bool actif = i == 7 ? lignes : i == 0 ? c != nullptr : formes;
        s.Btn_OutilsDessin_[size_t(i)]->setEnabled(actif);
    }
    s.Btn_Texte->setEnabled(texte);
}

void prepareOutilsCarte(Contexte& ctx) {
    MapView& m = *ctx.s.Map1;
    m.setInsertionLayer(ctx.v.Calque_Courant);
    m.setEditingMode(carto::editmode::Features);
    m.setCurrentTool(carto::tool::Select);
}

void connecteBarresOutils(Contexte& ctx) {
    Surface& s = ctx.s;
    Contexte* c = &ctx;
    for (int i = 0; i < int(s.B_Outils_.size()); ++i)
        QObject::connect(s.B_Outils_[size_t(i)], &QToolButton::clicked, &ctx.controle,
                         garde(ctx, [c, i] { boutonOutils(*c, i); }));
    for (int i = 0; i < int(s.Btn_OutilsDessin_.size()); ++i)
        QObject::connect(s.Btn_OutilsDessin_[size_t(i)], &QToolButton::clicked, &ctx.controle,
                         garde(ctx, [c, i] { boutonOutilsDessin(*c, i); }));
    QObject::connect(s.Btn_RotationNumero, &QToolButton::clicked, &ctx.controle,
                     garde(ctx, [c] { ouvreDivers(*c, [](Divers& d) { d.PRotationNumero(); }); }));
    QObject::connect(
        s.Btn_ModifierTailleNumero, &QToolButton::clicked, &ctx.controle,
        garde(ctx, [c] { ouvreDivers(*c, [](Divers& d) { d.PTailleNumeroTerrain(); }); }));
    // The drawing aids.
    QObject::connect(s.CB_Accrochage, &QCheckBox::toggled, &ctx.controle,
                     garde(ctx, [c](bool) { appliqueAccrochage(*c); }));
    QObject::connect(s.SB_ToleranceAccrochage, &QSpinBox::valueChanged, &ctx.controle,
                     garde(ctx, [c](int) { appliqueAccrochage(*c); }));
    QObject::connect(s.CB_Rangees, &QCheckBox::toggled, &ctx.controle, [c](bool oui) {
        c->s.Btn_Rangee->setVisible(oui);
        c->s.Panel_Outils->adjustSize();
    });
    QObject::connect(s.Btn_Rangee, &QToolButton::clicked, &ctx.controle,
                     garde(ctx, [c] { commandeRangee(*c); }));
    QObject::connect(s.Btn_Texte, &QToolButton::clicked, &ctx.controle, garde(ctx, [c] {
                         if (c->etat.planOuvert)
                             c->s.Map1->setCurrentTool(outil::Texte);
                     }));
}

} // namespace veldra
