#include "editing/evenements_carte.h"

#include "carto/geometry/geometry.h"
#include "carto/model/layer.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/garde.h"
#include "context/nombre_tombes.h"
#include "context/nombres.h"
#include "editing/chevauchements.h"
#include "editing/divers.h"
#include "editing/historique.h"
#include "editing/menu_contextuel.h"
#include "editing/presse_papiers.h"
#include "editing/sauve.h"
#include "editing/selection.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTimer>
#include <cmath>

namespace veldra {

namespace {

constexpr int kOutilMesure = 105;
constexpr int kOutilRectangle = 106;
constexpr int kOutilCercle = 107;
constexpr int kOutilTexte = 108;
constexpr int kOutilSelection = carto::tool::Select;
constexpr carto::Colour kCouleurSection = 0xC0C0FF;
constexpr carto::Colour kCouleurAllee = 0xC0FFC0;
// A drag is one step of the history: the stale labels cleared on release, the tool's move
// right after, and the numbers made again by the deferred save.
const carto::UndoStep kAvantDeplacement{QStringLiteral("Déplacer"), false, true};
const carto::UndoStep kSuiteDuDeplacement{QStringLiteral("Déplacer"), true, false};

void couleurNouvelle(Contexte& ctx, carto::Style& style, bool autresEnVert) {
    VariablesPubliques& v = ctx.v;
    if (estCalque(v.Calque_Courant, v.Calque_Sections))
        style.regionColor = kCouleurSection;
    else if (autresEnVert || estCalque(v.Calque_Courant, v.Calque_Allees))
        style.regionColor = kCouleurAllee;
}

} // namespace

void boutonEnfonce(Contexte& ctx, int bouton, double x, double y) {
    if (bouton != carto::mouse::Left)
        return;
    EtatPointeur& p = ctx.etat.pointeur;
    p.gaucheTenu = true;
    retiensAvantGeste(ctx);
    p.dernierClic = ctx.s.Map1->toMap({x, y});
    if (ctx.s.Map1->currentTool() == kOutilMesure) {
        p.mesure = true;
        ctx.s.Panel_Dist->show();
    }
}

void pointeurDeplace(Contexte& ctx, int bouton, double x, double y) {
    EtatPointeur& p = ctx.etat.pointeur;
    carto::MapView& carte = *ctx.s.Map1;
    if (bouton == carto::mouse::Left) {
        p.glisse = true;
        p.segment = carto::distance(p.dernierClic, carte.toMap({x, y}));
        return;
    }
    if (carte.currentTool() != kOutilMesure || !p.mesure)
        return;
    p.segment = carto::distance(p.dernierClic, carte.toMap({x, y}));
    ctx.s.L_DistTotale->setText(deuxDecimales(p.longueurMesuree + p.segment));
    p.segment = std::round(p.segment * 100) / 100;
    ctx.s.L_Distance->setText(nombreSimple(p.segment));
}

void tracePolyligne(Contexte& ctx, int outil, int phase, const std::vector<carto::Point>& points) {
    if (outil != kOutilMesure || ctx.s.Map1->currentTool() != kOutilMesure)
        return;
    double somme = 0;
    for (size_t i = 1; i < points.size(); ++i)
        somme += carto::distance(points[i - 1], points[i]);
    ctx.s.L_DistTotale->setText(deuxDecimales(somme));
    if (phase == carto::phase::Finished)
        ctx.etat.pointeur.mesure = false;
    else
        ctx.etat.pointeur.longueurMesuree = somme;
}

void boutonRelache(Contexte& ctx, int bouton, double x, double y) {
    VariablesPubliques& v = ctx.v;
    EtatPointeur& p = ctx.etat.pointeur;
    carto::MapView& carte = *ctx.s.Map1;
    // The right button opens the context menu, unless the left one is still dragging.
    if (bouton == carto::mouse::Right && !p.gaucheTenu)
        ouvreMenuContextuel(ctx, carte.mapToGlobal(QPointF(x, y).toPoint()));
    if (bouton == carto::mouse::Left)
        p.gaucheTenu = false;
    const bool renumerote = p.glisse && v.Calque_Tombe && !v.Calque_Tombe->selection().isEmpty() &&
                            carte.editingMode() != carto::editmode::Vertices &&
                            carte.currentTool() == kOutilSelection && v.ModeEdition &&
                            bouton == carto::mouse::Left;
    p.glisse = false;
    if (!renumerote) {
        p.renumerotation = false;
        return;
    }
    // The labels at the plots' old places go now; Sauve makes them again at the new ones.
    if (v.Calque_Numero) {
        carto::UpdateAccess acces(ctx.carte(), kAvantDeplacement);
        for (const carto::Feature& t : v.ObjSel) {
            const QString numero = t.attribute(u"Numero").toString();
            for (const carto::Feature& n : v.Calque_Numero->searchWithinRectangle(
                     t.bounds(), carto::searchmode::CentreWithin))
                if (n.text() == numero)
                    v.Calque_Numero->deleteFeature(n.fid());
        }
        acces.commit();
    }
    ctx.s.Timer1->start();
    p.renumerotation = true;
}

void outilPersonnaliseUtilise(Contexte& ctx, int outil, double x1, double y1, double x2, double y2,
                              double rayon) {
    carto::Layer* courant = ctx.v.Calque_Courant;
    if (outil == kOutilTexte) {
        ouvreDivers(ctx, [&](Divers& d) { d.Coordonnees(x1, y1, x2, y2); });
        return;
    }
    if ((outil != kOutilRectangle && outil != kOutilCercle) || !courant)
        return;
    carto::Style style = ctx.carte().defaultStyle;
    carto::Feature f;
    if (outil == kOutilRectangle) {
        const bool colore =
            estCalque(courant, ctx.v.Calque_Sections) || estCalque(courant, ctx.v.Calque_Allees);
        if (colore)
            couleurNouvelle(ctx, style, false);
        f = carto::Feature::region({{{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}, {x1, y1}}}, style);
    } else {
        couleurNouvelle(ctx, style, true);
        // A circle as a polygon of 72 sides, fine enough for a plan.
        carto::Part cercle;
        for (int i = 0; i <= 72; ++i) {
            const double a = 2 * M_PI * (i % 72) / 72;
            cercle.push_back({x1 + rayon * std::cos(a), y1 + rayon * std::sin(a)});
        }
        f = carto::Feature::region({cercle}, style);
    }
    const carto::Feature ajoute = courant->addFeature(f);
    if (estCalque(courant, ctx.v.Calque_Tombe))
        gardeNouveaux(ctx, {ajoute});
    afficheNombreTombes(ctx);
}

void toucheEnfoncee(Contexte& ctx, int code, int shift) {
    constexpr int kCtrl = 2, kCtrlMaj = 3, kC = 67, kV = 86, kZ = 90, kY = 89;
    if (shift == kCtrl && code == kC)
        Copier(ctx);
    else if (shift == kCtrl && code == kV)
        Coller(ctx);
    else if (shift == kCtrl && code == kZ)
        annuleEdition(ctx);
    else if ((shift == kCtrl && code == kY) || (shift == kCtrlMaj && code == kZ))
        retablitEdition(ctx);
}

void doubleClic(Contexte& ctx) {
    VariablesPubliques& v = ctx.v;
    if (!v.ModeEdition || ctx.s.Map1->currentTool() != kOutilSelection ||
        ctx.s.Combo_Calque->currentText() != QLatin1String("Texte") || !v.Calque_Texte)
        return;
    const carto::Features choisis = v.Calque_Texte->selection();
    // One text to change: none selected (a double click on nothing) opens nothing.
    if (choisis.count() != 1)
        return;
    const carto::Feature texte = choisis.at(0);
    ouvreDivers(ctx, [&](Divers& d) { d.Texte(texte); });
}

void etatEdition(Contexte& ctx, int code) {
    if (code != carto::editstatus::Completed)
        return;
    gardeChevauchements(ctx);
    afficheNombreTombes(ctx);
    if (ctx.etat.pointeur.renumerotation)
        ctx.etat.pointeur.sauvegardeDifferee = true;
}

void sauvegardeDifferee(Contexte& ctx) {
    EtatPointeur& p = ctx.etat.pointeur;
    if (!p.sauvegardeDifferee)
        return;
    VariablesPubliques& v = ctx.v;
    if (v.Calque_Tombe && !v.Calque_Tombe->selection().isEmpty()) {
        carto::UpdateAccess acces(ctx.carte(), kSuiteDuDeplacement);
        const carto::Features choisis = v.ObjSel;
        for (const carto::Feature& t : choisis) {
            const carto::Feature actuel = t.layer() ? t.layer()->feature(t.fid()) : t;
            ctx.s.SaisieNum->setText(actuel.attribute(u"Numero").toString());
            Sauve(ctx, actuel);
        }
        acces.commit();
    }
    p.sauvegardeDifferee = false;
    p.renumerotation = false;
    ctx.s.Timer1->stop();
}

void connecteEvenementsCarte(Contexte& ctx) {
    Contexte* c = &ctx;
    carto::MapView* carte = ctx.s.Map1;
    QObject* o = &ctx.controle;
    QObject::connect(
        carte, &carto::MapView::mouseDown, o,
        garde(ctx, [c](int b, int, double x, double y) { boutonEnfonce(*c, b, x, y); }));
    QObject::connect(
        carte, &carto::MapView::mouseMoved, o,
        garde(ctx, [c](int b, int, double x, double y) { pointeurDeplace(*c, b, x, y); }));
    QObject::connect(
        carte, &carto::MapView::mouseUp, o,
        garde(ctx, [c](int b, int, double x, double y) { boutonRelache(*c, b, x, y); }));
    QObject::connect(carte, &carto::MapView::doubleClicked, o, garde(ctx, [c] { doubleClic(*c); }));
    QObject::connect(
        carte, &carto::MapView::toolUsed, o,
        garde(ctx, [c](int outil, double x1, double y1, double x2, double y2, double d, bool, bool,
                       bool&) { outilPersonnaliseUtilise(*c, outil, x1, y1, x2, y2, d); }));
    QObject::connect(carte, &carto::MapView::featureDrawing, o,
                     garde(ctx, [c](int outil, int phase, carto::Feature&, bool, bool, bool&) {
                         if (outil == carto::tool::DrawPolygon && phase == carto::phase::Started)
                             couleurNouvelle(*c, c->carte().defaultStyle, false);
                     }));
    QObject::connect(
        carte, &carto::MapView::polyToolUsed, o,
        garde(ctx, [c](int outil, int phase, const std::vector<carto::Point>& points, bool, bool,
                       bool&) { tracePolyligne(*c, outil, phase, points); }));
    QObject::connect(carte, &carto::MapView::keyDown, o,
                     garde(ctx, [c](int code, int shift) { toucheEnfoncee(*c, code, shift); }));
    QObject::connect(&ctx.carte(), &carto::Map::changed, o, [c](const carto::Change& change) {
        if (!estCalque(change.layer, c->v.Calque_Tombe))
            return;
        if (change.kinds == carto::Change::Added)
            noteChangementTombes(*c, change.fids, {});
        else if (change.kinds == carto::Change::Updated)
            noteChangementTombes(*c, {}, change.fids);
    });
    QObject::connect(carte, &carto::MapView::editStatus, o,
                     garde(ctx, [c](int code) { etatEdition(*c, code); }));
    QObject::connect(ctx.s.Timer1, &QTimer::timeout, o,
                     garde(ctx, [c] { sauvegardeDifferee(*c); }));
}

} // namespace veldra
