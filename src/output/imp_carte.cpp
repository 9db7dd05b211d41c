#include "output/imp_carte.h"

#include "base/erreur.h"
#include "context/contexte.h"
#include "context/dossier_controle.h"
#include "context/sablier.h"
#include "output/dialogue_impression.h"
#include "output/impression_papier.h"
#include "output/mise_en_page.h"

#include <QDir>

namespace veldra {

namespace {

// The width, in the engine's paper units (centimetres), of an image of the selection.
constexpr double kLargeurSelection = 29;

void imprimeSurPapierDepuis(Contexte& ctx, const Impression& d) {
    MiseEnPage m;
    m.papier = d.papier;
    m.orientation = d.orientation;
    m.titre = d.TitreImp;
    m.commentaires = d.Commentaires;
    m.echelle = denominateurEchelle(ctx, d.Echelle);
    m.selection = d.ImprimeSelection;
    switch (d.destination) {
    case Impression::Destination::Papier:
        imprimeSurPapier(ctx, m);
        break;
    case Impression::Destination::Apercu:
        apercu(ctx, m);
        break;
    case Impression::Destination::Pdf:
        enregistrePdf(ctx, m);
        break;
    case Impression::Destination::Hote:
        break;
    }
}

} // namespace

QString dossierExport(const Contexte& ctx) {
    const QString dossier =
        ctx.etat.repertoireExport.isEmpty() ? ctx.dossierControle : ctx.etat.repertoireExport;
    return dossierInscriptible(dossier);
}

void ImpCarte(Contexte& ctx, QString& /*Format*/, QString& sTitre, QString& sCommentaires,
              bool& /*TrameP*/, QString& sEchelle, bool& ImprimeSelection) {
    QString chemin;
    try {
        const Sablier sablier;
        chemin = dossierExport(ctx) + QStringLiteral("/carte.jpg");
        carto::MapView& carte = *ctx.s.Map1;
        const double w = carte.width(), h = carte.height();
        if (w < 1 || h < 1)
            throw Erreur(err::AppelIncorrect,
                         QStringLiteral("La carte n'a pas de surface à l'écran : l'image à "
                                        "imprimer ne peut pas être faite."));
        if (ImprimeSelection) {
            carte.exportSelection = true;
            carte.exportImage(chemin, 1, kLargeurSelection, h / (w / kLargeurSelection));
        } else {
            carte.exportSelection = false;
            carte.exportImage(chemin, 1);
        }
    } catch (const Erreur& e) {
        ctx.prompter().message(e.description(), boutons::Ok, QStringLiteral("ImpCarte"));
        return;
    }
    QString cheminCarte = QDir::toNativeSeparators(chemin);
    if (ctx.evenements.DemandeImpressionCarte)
        ctx.evenements.DemandeImpressionCarte(cheminCarte, sTitre, sCommentaires, sEchelle);
}

void imprimeDepuisBouton(Contexte& ctx) {
    try {
        Impression d(ctx.etat.impressionPapier, &ctx.controle);
        ctx.montreModal(d);
        if (d.bAnnuler)
            return;
        if (d.destination != Impression::Destination::Hote) {
            imprimeSurPapierDepuis(ctx, d);
            return;
        }
        QString format = d.Format, titre = d.TitreImp, commentaires = d.Commentaires,
                echelle = d.Echelle;
        bool trame = false, selection = d.ImprimeSelection;
        ImpCarte(ctx, format, titre, commentaires, trame, echelle, selection);
    } catch (const Erreur& e) {
        ctx.prompter().message(texteErreur(e, QStringLiteral(" : ")), boutons::Ok,
                               QStringLiteral("Btn_Imprimer_Click"));
    }
}

} // namespace veldra
