#include "plan/ouverture.h"

#include "base/erreur.h"
#include "context/contexte.h"
#include "context/disposition.h"
#include "context/dossier_controle.h"
#include "context/nombre_tombes.h"
#include "context/parametres.h"
#include "context/sablier.h"
#include "plan/calque_courant.h"
#include "plan/couches_temporaires.h"

namespace veldra {

namespace {

const QStringList kCouleursTheme = {QStringLiteral("8421631"),  QStringLiteral("8454143"),
                                    QStringLiteral("12632064"), QStringLiteral("16744703"),
                                    QStringLiteral("16744576"), QStringLiteral("12632256"),
                                    QStringLiteral("8454016"),  QStringLiteral("8438015"),
                                    QStringLiteral("8388736"),  QString()};

class Ouverture {
public:
    explicit Ouverture(Contexte& ctx) : ctx_(ctx), v_(ctx.v), s_(ctx.s) {}

    // Runs one step; its failure is reported and the opening goes on.
    template <typename F> void etape(F&& f) {
        try {
            f();
        } catch (const Erreur& e) {
            ctx_.prompter().message(texteErreur(e.numero(), e.description(), QStringLiteral(" :")),
                                    boutons::Ok, QStringLiteral("OuvreCimetiere"));
        }
    }

    void lie(carto::Layer*& variable, const char* nom) {
        etape([&] { variable = &ctx_.carte().requireLayer(QString::fromUtf8(nom)); });
    }

    void charge(const QString& chemin) {
        ctx_.carte().loadMapSet(chemin, carto::MapSetOptions{QStringLiteral("Texte")});
        // Features whose coordinates cannot be read stay out of the plan, and are said so.
        if (const int n = ctx_.carte().unreadableCount(); n > 0)
            ctx_.prompter().message(n == 1 ? QStringLiteral("1 élément illisible a été ignoré")
                                           : QStringLiteral("%1 éléments illisibles ont été "
                                                            "ignorés")
                                                 .arg(n));
        // The previous plan's layers are gone with it.
        for (carto::Layer** l : {&v_.Calque_Tombe, &v_.Calque_Decor, &v_.Calque_Numero,
                                 &v_.Calque_Texte, &v_.Calque_Sections, &v_.Calque_Allees,
                                 &v_.Calque_Courant, &v_.Calque_Enceinte, &v_.Calque_Raster})
            *l = nullptr;
        v_.DataSetTombes = nullptr;
        v_.ObjSel = carto::Features();
        ctx_.etat.calquePrecedent = nullptr;
        ctx_.etat.calqueTemp = nullptr;
        ctx_.etat.planOuvert = false;
        s_.CB_PlanNumerise->hide();
        s_.CB_QUE_PlanNumerise->hide();
        // What the clerk measured, typed or looked up belongs to the previous plan.
        s_.Panel_Dist->hide();
        s_.L_Distance->clear();
        s_.L_DistTotale->clear();
        s_.PInfos->hide();
        for (QLineEdit* saisie : {s_.TB_SaisieEmplacement, s_.SaisieNum, s_.Label_Nom})
            saisie->clear();
    }

    void prepareCarte() {
        appelle(ctx_.crochets.creeOutilsPersonnalises);
        ctx_.etat.etatPanelInfos = QStringLiteral("Invisible"); // unfolded just below
        emit s_.Btn_Fleche->clicked(); // even while the host keeps the control disabled
        ctx_.etat.couleursTheme = kCouleursTheme;
        INI_FILE& ini = ctx_.ini();
        ini.setPath_Fichier_Ini(dossierInscriptible(ctx_.dossierControle) + u'/');
        ini.setNom_Fichier_Ini(QStringLiteral("UserParam.INI"));
    }

    void etatDesCalques() {
        const QString numeros = v_.Calque_Numero ? v_.Calque_Numero->name() : QString();
        for (carto::Layer* l : ctx_.carte().layers()) {
            const bool raster = l->name().toUpper() == QLatin1String("RASTER");
            if (l->name() != numeros) {
                if (!raster) {
                    l->setEditable(false);
                    l->setAutoLabel(false);
                } else {
                    l->setVisible(false);
                    lie(v_.Calque_Raster, "Raster");
                    s_.CB_PlanNumerise->show();
                    s_.CB_QUE_PlanNumerise->show();
                }
            } else {
                l->setEditable(true);
            }
            if (!raster)
                l->setSelectable(false);
        }
    }

    void etiquettesDesTombes() {
        carto::Layer& tombes = requis(v_.Calque_Tombe, "Tombes");
        v_.DataSetTombes = &ctx_.carte().addDataset(tombes);
        tombes.setLabelDataset(v_.DataSetTombes);
        tombes.setLabelField(v_.DataSetTombes->field(u"nom"));
        tombes.setAutoLabel(true);
        // Names are shown only once the user ticks "Afficher les nom".
        tombes.setLabelsVisible(s_.Check2->isChecked());
    }

    void calqueCourant(bool nouveauPlan) {
        if (nouveauPlan) {
            v_.Calque_Courant = v_.Calque_Enceinte;
            ctx_.etat.calquePrecedent = v_.Calque_Courant;
            choisitDansListe(0);
            // Ticked already (by the previous plan): the procedure still runs, for this
            // plan's enclosure.
            if (!s_.CB_ModeEdition->isChecked())
                s_.CB_ModeEdition->click();
            else
                appliqueModeEdition(ctx_);
            carto::Layer& enceinte = requis(v_.Calque_Courant, "Enceinte");
            const carto::Rect r{0, 0, ctx_.etat.longueurPlan, ctx_.etat.largeurPlan};
            carto::Feature f =
                enceinte.addFeature(carto::Feature::region({{{r.xmin, r.ymin},
                                                             {r.xmax, r.ymin},
                                                             {r.xmax, r.ymax},
                                                             {r.xmin, r.ymax},
                                                             {r.xmin, r.ymin}}},
                                                           ctx_.carte().defaultStyle));
            enceinte.updateFeature(f);
            // The zoom shows 1.2 times the length: centred, the whole enclosure is seen.
            s_.Map1->setCentre({(r.xmin + r.xmax) / 2, (r.ymin + r.ymax) / 2});
        } else {
            v_.Calque_Courant = v_.Calque_Tombe;
            ctx_.etat.calquePrecedent = v_.Calque_Courant;
            choisitDansListe(4);
            // An existing plan opens out of edit mode, whatever the previous plan left.
            quitteModeEdition(ctx_);
        }
    }

private:
    carto::Layer& requis(carto::Layer* l, const char* nom) {
        if (!l)
            throw Erreur(
                err::CoucheInconnue,
                QStringLiteral("La couche « %1 » n'existe pas.").arg(QString::fromUtf8(nom)));
        return *l;
    }

    // The list shows the entry without running its change procedure: the opening has just
    // chosen the layer itself.
    void choisitDansListe(int index) {
        const QSignalBlocker bloque(s_.Combo_Calque);
        s_.Combo_Calque->setCurrentIndex(index);
    }

    Contexte& ctx_;
    VariablesPubliques& v_;
    Surface& s_;
};

} // namespace

void ouvrePlan(Contexte& ctx, const QString& chemin, const QString& nom, bool nouveauPlan,
               bool droitEdition) {
    const Sablier sablier;
    Ouverture o(ctx);
    VariablesPubliques& v = ctx.v;
    Surface& s = ctx.s;
    carto::MapView& carte = *s.Map1;

    o.etape([&] {
        s.L_NomCimetiere->setText(nom);
        dispose(ctx); // the name's font fits its place
    });
    o.etape([&] { o.charge(chemin); });
    o.lie(v.Calque_Tombe, "Tombes");
    o.lie(v.Calque_Numero, "Numeros");
    o.lie(v.Calque_Decor, "Décor");
    o.lie(v.Calque_Texte, "Texte");
    o.lie(v.Calque_Sections, "Sections");
    o.lie(v.Calque_Allees, "Allées");
    o.lie(v.Calque_Enceinte, "Enceinte");
    o.etape([&] { o.prepareCarte(); });
    o.etape([&] { creeCalqueTemporaire(ctx); });
    o.etape([&] { o.etatDesCalques(); });
    o.etape([&] {
        for (carto::Layer* l : {v.Calque_Sections, v.Calque_Allees})
            if (l)
                l->setVisible(false);
    });
    o.etape([&] {
        if (v.Calque_Enceinte && v.Calque_Enceinte->featureCount() > 0)
            carte.setBounds(v.Calque_Enceinte->bounds());
    });
    o.etape([&] {
        if (nouveauPlan)
            carte.setZoom(1.2 * ctx.etat.longueurPlan);
        else
            carte.setZoom(carte.zoom() / 0.95);
    });
    o.etape([&] {
        carto::Style& sel = ctx.carte().selectionStyle;
        sel.regionPattern = carto::pattern::Solid;
        sel.regionColor = 65535;
        carte.setCurrentTool(carto::tool::Select);
    });
    o.etape([&] { o.etiquettesDesTombes(); });
    o.etape([&] { o.calqueCourant(nouveauPlan); });
    o.etape([&] {
        ctx.etat.droitEdition = droitEdition;
        s.CB_ModeEdition->setVisible(droitEdition);
    });
    o.etape([&] { v.ObjSel = carto::Features(v.Calque_Courant); });
    o.etape([&] {
        if (!v.Calque_Sections || !v.Calque_Allees)
            throw Erreur(err::CoucheInconnue,
                         QStringLiteral("Les couches « Sections » et « Allées » sont requises."));
        ctx.carte().addDataset(*v.Calque_Sections, QStringLiteral("DsSections"));
        ctx.carte().addDataset(*v.Calque_Allees, QStringLiteral("DsAllees"));
    });
    o.etape([&] { afficheNombreTombes(ctx); });
    ctx.etat.planOuvert = true;
    o.etape([&] { prepareCarteLocalisation(ctx); });
    o.etape([&] { litParametres(ctx); });
    o.etape([&] { appelle(ctx.crochets.creeComboSection); });
    // The new plan's enclosure is where the plan starts, not a step to undo; what was
    // copied belonged to the plan before.
    s.Historique->clear();
    ctx.etat.copies.clear();
    ctx.etat.calqueCopie.clear();
}

} // namespace veldra
