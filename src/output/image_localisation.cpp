#include "output/image_localisation.h"

#include "base/erreur.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/dossier_controle.h"

#include <QDir>

namespace veldra {

namespace {

// The ring around the plot: its radius against the diagonal of the plot's bounds.
constexpr double kRayon = 0.7;

carto::Style styleAnneau() {
    carto::Style s;
    s.regionPattern = carto::pattern::None;
    s.regionBorderColor = 255; // pure red
    s.regionBorderWidth = 3;
    return s;
}

// What the clerk was looking at, put back however the image ends: the view's zoom and
// centre, the plots' selection and ObjSel.
class VueGardee {
public:
    VueGardee(Contexte& ctx, carto::Layer& tombes)
        : ctx_(ctx), tombes_(tombes), zoom_(ctx.s.Map1->zoom()), centre_(ctx.s.Map1->centre()),
          selection_(tombes.selection()) {}
    ~VueGardee() {
        try {
            remet();
        } catch (const Erreur&) {
            // Only a failure on the way out gets here; the first one is the host's.
        }
    }
    VueGardee(const VueGardee&) = delete;
    VueGardee& operator=(const VueGardee&) = delete;

    void remet() {
        if (std::exchange(remise_, true))
            return;
        carto::MapView& carte = *ctx_.s.Map1;
        carte.setZoom(zoom_);
        carte.setCentre(centre_);
        if (selection_.isEmpty())
            tombes_.clearSelection();
        else
            tombes_.selectOnly(selection_);
        ctx_.v.ObjSel = tombes_.selection();
    }

private:
    Contexte& ctx_;
    carto::Layer& tombes_;
    double zoom_;
    carto::Point centre_;
    carto::Features selection_;
    bool remise_ = false;
};

// The ring lives in the scratch layer only while the image is made.
class Anneau {
public:
    Anneau(carto::Map& carte, carto::Layer& temp, const carto::Feature& tombe)
        : carte_(carte), temp_(temp) {
        const carto::Rect b = tombe.bounds();
        const double rayon = kRayon * carto::Map::distance({b.xmin, b.ymin}, {b.xmax, b.ymax});
        carto::UpdateAccess acces(carte_);
        fid_ =
            temp_
                .addFeature(carto::Feature::fromGeometry(
                    carto::Geometry::circle(tombe.centre(), std::max(rayon, 0.01)), styleAnneau()))
                .fid();
        acces.commit();
    }
    ~Anneau() {
        try {
            carto::UpdateAccess acces(carte_);
            if (temp_.hasFeature(fid_))
                temp_.deleteFeature(fid_);
            acces.commit();
        } catch (const Erreur&) {
            // A memory layer: its deletion does not fail but with the map itself.
        }
    }
    Anneau(const Anneau&) = delete;
    Anneau& operator=(const Anneau&) = delete;

private:
    carto::Map& carte_;
    carto::Layer& temp_;
    qint64 fid_ = -1;
};

carto::Layer& calqueTemporaire(Contexte& ctx) {
    if (!ctx.etat.calqueTemp || !ctx.carte().layer(u"My_Temp_Layer"))
        appelle(ctx.crochets.creeCalqueTemporaire);
    if (!ctx.etat.calqueTemp)
        throw Erreur(err::CoucheInconnue,
                     QStringLiteral("La couche temporaire du plan est introuvable."));
    return *ctx.etat.calqueTemp;
}

void ecrit(carto::MapView& carte, const QString& chemin, bool png) {
    if (carte.width() < 1 || carte.height() < 1)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("La carte n'a pas de surface à l'écran : l'image de "
                                    "localisation ne peut pas être faite."));
    if (!png) {
        carte.exportImage(chemin, 1);
        return;
    }
    if (!carte.renderImage(carte.size(), carte.exportSelection).save(chemin, "PNG"))
        throw Erreur(err::EcritureImpossible,
                     QStringLiteral("L'image « %1 » ne peut pas être écrite.").arg(chemin));
}

} // namespace

QString cheminImageLocalisation(const Contexte& ctx) {
    return dossierInscriptible(ctx.dossierControle) + (ctx.etat.imageLocalisationPng
                                                           ? QStringLiteral("/ImageL.png")
                                                           : QStringLiteral("/ImageL.jpg"));
}

void ImageLocalisation(Contexte& ctx, const QString& sIdGCF) {
    ctx.etat.imageLocalisationTerminee = QStringLiteral("-1");
    carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
    carto::MapView& carte = *ctx.s.Map1;
    QString chemin;
    {
        VueGardee vue(ctx, tombes);
        if (ctx.v.Calque_Enceinte)
            carte.setBounds(ctx.v.Calque_Enceinte->bounds());
        carte.setZoom(carte.zoom() / 0.9);
        const carto::Features trouves = tombes.searchEqual(u"IDGCF", sIdGCF);
        if (!trouves.isEmpty()) {
            tombes.selectOnly(carto::Features(&tombes, {trouves.fids().front()}));
            ctx.v.ObjSel = tombes.selection();
            const Anneau anneau(ctx.carte(), calqueTemporaire(ctx), ctx.v.ObjSel.at(0));
            carte.exportSelection = true;
            chemin = cheminImageLocalisation(ctx);
            ecrit(carte, chemin, ctx.etat.imageLocalisationPng);
        }
        vue.remet();
    }
    if (!chemin.isEmpty())
        ctx.etat.imageLocalisationTerminee = QDir::toNativeSeparators(chemin);
}

} // namespace veldra
