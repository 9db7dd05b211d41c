#include "output/carte_localisation.h"

#include "base/erreur.h"
#include "carto/model/update_access.h"
#include "context/contexte.h"
#include "context/garde.h"

namespace veldra {

namespace {

// The main view's bounds cut to what the overview shows, a pixel in from its edges so
// that a frame reaching beyond them still shows its cut side.
carto::Rect cadreVisible(const carto::MapView& vue, const carto::MapView& apercu) {
    const carto::Rect v = vue.bounds();
    const carto::Rect o = apercu.bounds().expanded(-apercu.viewport().unitsPerPixel());
    if (!v.intersects(o))
        return {};
    return {std::max(v.xmin, o.xmin), std::max(v.ymin, o.ymin), std::min(v.xmax, o.xmax),
            std::min(v.ymax, o.ymax)};
}

// The overview is framed on the enclosure when the plan opens, often while it is hidden
// and not yet of its size: each new size frames it again, with the same margin.
void recadreApercu(Contexte& ctx) {
    carto::MapView& apercu = *ctx.s.MapLocalisation;
    const char* const taille = "tailleCadree";
    if (!ctx.etat.planOuvert || !ctx.v.Calque_Enceinte ||
        apercu.property(taille).toSize() == apercu.size())
        return;
    apercu.setProperty(taille, apercu.size());
    const carto::Layer* enceinte = apercu.map().layer(ctx.v.Calque_Enceinte->name());
    if (!enceinte || enceinte->featureCount() == 0)
        return;
    try {
        apercu.setBounds(enceinte->bounds());
        apercu.setZoom(apercu.zoom() / 0.9);
    } catch (const Erreur&) {
        // The overview keeps the area it had.
    }
}

void centreSur(Contexte& ctx, double x, double y) {
    const carto::Point p = ctx.s.MapLocalisation->toMap(QPointF(x, y));
    ctx.s.Map1->setCentre(p);
}

} // namespace

void suitVuePrincipale(Contexte& ctx) {
    if (!ctx.etat.planOuvert)
        return;
    try {
        carto::MapView& apercu = *ctx.s.MapLocalisation;
        carto::Map& carte = apercu.map();
        carto::Layer* cadre = carte.layer(u"My_Temp_Layer");
        if (!cadre)
            return;
        // The overview only shows: its clicks centre the main view.
        for (carto::Layer* l : carte.layers())
            l->setSelectable(false);
        const carto::Rect r = cadreVisible(*ctx.s.Map1, apercu);
        carto::UpdateAccess acces(carte);
        const carto::Features anciens = cadre->allFeatures();
        for (const qint64 fid : anciens.fids())
            cadre->deleteFeature(fid);
        if (r.width() > 0 && r.height() > 0)
            cadre->addFeature(carto::Feature::region({{{r.xmin, r.ymin},
                                                       {r.xmax, r.ymin},
                                                       {r.xmax, r.ymax},
                                                       {r.xmin, r.ymax},
                                                       {r.xmin, r.ymin}}},
                                                     ctx.etat.marqueur2));
        acces.commit();
    } catch (const Erreur&) {
        // The overview is a help to the eye: a frame that cannot be drawn is left out.
    }
}

void connecteCarteLocalisation(Contexte& ctx) {
    Contexte* c = &ctx;
    carto::MapView* apercu = ctx.s.MapLocalisation;
    QObject::connect(apercu, &carto::MapView::mouseDown, &ctx.controle,
                     garde(ctx, [c](int bouton, int, double x, double y) {
                         if (bouton == carto::mouse::Left && c->etat.planOuvert)
                             centreSur(*c, x, y);
                     }));
    // First shown in the map's bottom left corner, then where the clerk leaves it.
    QObject::connect(
        ctx.s.CB_PlanSitue, &QCheckBox::toggled, &ctx.controle, garde(ctx, [c](bool coche) {
            QFrame* panneau = c->s.Panel_Localisation;
            if (!coche || panneau->pos() != QPoint(0, 0))
                return;
            const QRect carte = c->s.Map1->geometry();
            panneau->move(carte.left() + 12,
                          std::max(carte.top(), carte.bottom() - panneau->height() - 12));
            panneau->raise();
        }));
    // Shown, resized or zoomed, the overview shows another area: the frame is cut again.
    QObject::connect(apercu, &carto::MapView::viewChanged, &ctx.controle, garde(ctx, [c] {
                         recadreApercu(*c);
                         suitVuePrincipale(*c);
                     }));
}

} // namespace veldra
