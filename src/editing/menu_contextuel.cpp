#include "editing/menu_contextuel.h"

#include "carto/model/layer.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "editing/ajustement.h"
#include "editing/alignement.h"
#include "editing/menu_surgissant.h"
#include "editing/presse_papiers.h"
#include "editing/rangee.h"
#include "editing/suppression.h"

namespace veldra {

namespace {

enum Entree {
    Copie = 2,
    Collage = 3,
    Suppression = 4,
    Fiche = 6,
    Ajustage = 8,
    PositionPremiere = 10,
    PositionDerniere = 13,
    OrientationPremiere = 15,
    OrientationDerniere = 18,
    Concession = 20,
    Memorisation = 21,
    Taille = 22,
    Style = 23,
    Rangee = 25, // after the header 24, with the rows of plots ticked
};

// The four sides under `groupe`, with their keys when given.
void cotes(MenuSurgissant& m, int groupe, const QStringList& libelles, bool avecCles) {
    const QStringList tags{QStringLiteral("Haut"), QStringLiteral("Bas"), QStringLiteral("Gauche"),
                           QStringLiteral("Droite")};
    for (int i = 0; i < 4; ++i)
        m.ajoute(libelles[i], avecCles ? QStringLiteral("Position") + tags[i] : QString(), tags[i],
                 groupe);
}

const QStringList kPositions{QStringLiteral("en Haut"), QStringLiteral("en Bas"),
                             QStringLiteral("à Gauche"), QStringLiteral("à Droite")};
const QStringList kOrientations{QStringLiteral("la même en Haut"), QStringLiteral("la même en Bas"),
                                QStringLiteral("la même à Gauche"),
                                QStringLiteral("la même à Droite")};

// Entries 1 to 4.
void edition(Contexte& ctx, MenuSurgissant& m, int n) {
    const int e = m.ajouteEntete(QStringLiteral("EDITION"));
    m.ajoute(QStringLiteral("Copier"), {}, {}, e, n >= 1);
    m.ajoute(QStringLiteral("Coller"), {}, {}, e, collable(ctx));
    m.ajoute(QStringLiteral("Supprimer"), {}, {}, e, n >= 1);
}

// Entries 5 and 6; on the plots layer the first selected plot's key is read first.
void informations(Contexte& ctx, MenuSurgissant& m, int n, bool tombes) {
    if (tombes && n >= 1) {
        carto::Layer& t = *ctx.v.Calque_Courant;
        t.setKeyField(QStringLiteral("IDGCF"));
        (void)t.selection().at(0).keyValue();
    }
    const int i = m.ajouteEntete(QStringLiteral("INFORMATIONS"));
    m.ajoute(QStringLiteral("Voir la fiche détaillée"), QStringLiteral("FicheDetaillee"), {}, i,
             tombes && n >= 1);
}

// Entries 19 to 23.
void concessions(MenuSurgissant& m, int n, bool edite) {
    const int c = m.ajouteEntete(QStringLiteral("CONCESSIONS"));
    m.ajoute(QStringLiteral("Affecter une concession"), QStringLiteral("AffecterConcession"), {}, c,
             n >= 1);
    m.ajoute(QStringLiteral("Mémoriser la sélection"), QStringLiteral("MemoriserSelection"), {}, c,
             n >= 1);
    m.ajoute(QStringLiteral("Définir la taille"), {}, {}, c, edite && n >= 1);
    m.ajoute(QStringLiteral("Style de la sélection"), {}, {}, c, edite && n >= 1);
}

} // namespace

void construitMenuEdition(Contexte& ctx, MenuSurgissant& m, int n) {
    VariablesPubliques& v = ctx.v;
    const carto::Layer* c = v.Calque_Courant;
    const bool tombes = estCalque(c, v.Calque_Tombe);
    const bool nommes = estCalque(c, v.Calque_Sections) || estCalque(c, v.Calque_Allees);
    edition(ctx, m, n);
    if (!tombes && !nommes)
        return;
    informations(ctx, m, n, tombes);
    if (nommes) {
        const int a = m.ajouteEntete(QStringLiteral("AJUSTAGE"));
        m.ajoute(QStringLiteral("Ajuster les contours"), QStringLiteral("AjusterContours"), {}, a,
                 n == 1);
        const int p = m.ajoute(QStringLiteral("Ajuster la position"),
                               QStringLiteral("AjusterPosition"), {}, a, n == 1);
        cotes(m, p, kPositions, true);
        return;
    }
    const int a = m.ajouteEntete(QStringLiteral("ALIGNEMENT"));
    m.ajoute(QStringLiteral("Angle droit"), QStringLiteral("AjusterContours"), {}, a, n >= 1);
    cotes(m, m.ajoute(QStringLiteral("Aligner la sélection"), {}, {}, a, n >= 2), kPositions, true);
    cotes(m, m.ajoute(QStringLiteral("Orienter la sélection"), {}, {}, a, n >= 2), kOrientations,
          false);
    concessions(m, n, true);
    if (ctx.s.CB_Rangees->isChecked()) {
        const int e = m.ajouteEntete(QStringLiteral("EMPLACEMENTS"));
        m.ajoute(QStringLiteral("Créer une rangée d'emplacements…"), QStringLiteral("CreerRangee"),
                 {}, e, n == 1);
    }
}

void construitMenuLecture(Contexte& ctx, MenuSurgissant& m, int n) {
    edition(ctx, m, n);
    m.setActif(Copie, false);
    m.setActif(Collage, false);
    m.setActif(Suppression, false);
    informations(ctx, m, n, true);
    const int a = m.ajouteEntete(QStringLiteral("AJUSTAGE"));
    m.ajoute(QStringLiteral("Ajuster les contours"), QStringLiteral("AjusterContours"), {}, a,
             false);
    cotes(m,
          m.ajoute(QStringLiteral("Ajuster la position"), QStringLiteral("AjusterPosition"), {}, a,
                   false),
          kPositions, true);
    cotes(m, m.ajoute(QStringLiteral("Orienter la sélection"), {}, {}, a, false), kOrientations,
          false);
    concessions(m, n, false);
}

void dispatche(Contexte& ctx, int numero, const QString& etiquette) {
    VariablesPubliques& v = ctx.v;
    const bool tombes = estCalque(v.Calque_Courant, v.Calque_Tombe);
    if (numero == Copie)
        Copier(ctx);
    else if (numero == Collage)
        Coller(ctx);
    else if (numero == Suppression)
        DemandeSuppression(ctx);
    else if (numero == Fiche)
        appelle(ctx.crochets.ouvreFicheTombes);
    // Each command is one update bracket of its own (one transaction, one step).
    else if (numero == Ajustage && tombes)
        AngleDroit(ctx);
    else if (numero == Ajustage)
        AjusterSectionOuAllee(ctx);
    else if (numero >= PositionPremiere && numero <= PositionDerniere && tombes)
        AlignerTerrains(ctx, etiquette);
    else if (numero >= PositionPremiere && numero <= PositionDerniere)
        AjusterPosition(ctx, etiquette);
    else if (numero >= OrientationPremiere && numero <= OrientationDerniere && tombes)
        OrienterTerrains(ctx, etiquette);
    else if (numero == Concession)
        appelle(ctx.crochets.affecteConcession);
    else if (numero == Memorisation)
        appelle(ctx.crochets.enregistreMemorisation);
    else if (numero == Taille)
        DefinirTaille(ctx);
    else if (numero == Style)
        appelle(ctx.crochets.styleSelection);
    else if (numero == Rangee && tombes && ctx.s.CB_Rangees->isChecked())
        commandeRangee(ctx);
}

void ouvreMenuContextuel(Contexte& ctx, const QPoint& ecran) {
    VariablesPubliques& v = ctx.v;
    carto::Layer* courant = v.Calque_Courant;
    if (!courant || !ctx.etat.planOuvert)
        return;
    const int n = courant->selection().count();
    MenuSurgissant menu;
    if (v.ModeEdition)
        construitMenuEdition(ctx, menu, n);
    else if (estCalque(courant, v.Calque_Tombe))
        construitMenuLecture(ctx, menu, n);
    else
        return;
    const int choix = menu.montre(ecran, std::nullopt, ctx.montreMenu);
    dispatche(ctx, choix, menu.etiquetteChoisie());
}

} // namespace veldra
