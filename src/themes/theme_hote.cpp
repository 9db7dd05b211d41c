#include "themes/theme_hote.h"

#include "base/erreur.h"
#include "carto/model/map.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/sablier.h"
#include "themes/affichage_theme.h"

namespace veldra {

namespace {

void couleurs(const Contexte& ctx, carto::Theme& theme) {
    auto& categories = theme.categories();
    for (size_t i = 0; i < categories.size() && i < 10; ++i)
        categories[i].style.regionColor = couleurTheme(ctx, int(i) + 1);
}

// Each legend text takes the label of the first entry whose value is that text.
void relibelle(carto::Theme& theme, const QString& sParam) {
    const QStringList entrees =
        sParam.isEmpty() ? QStringList() : sParam.split(u'@', Qt::KeepEmptyParts);
    for (QString& texte : theme.legend.texts) {
        for (const QString& entree : entrees) {
            const qsizetype etoile = entree.indexOf(u'*');
            if (etoile < 0)
                throw Erreur(err::AppelIncorrect,
                             QStringLiteral("L'entrée « %1 » de la légende n'a pas de « * » "
                                            "entre la valeur et son libellé.")
                                 .arg(entree));
            if (QStringView(entree).left(etoile) == texte) {
                texte = entree.mid(etoile + 1);
                break;
            }
        }
    }
}

void nonRenseigne(carto::Theme& theme) {
    for (QString& texte : theme.legend.texts)
        if (texte == QLatin1String("0"))
            texte = QStringLiteral("Non renseigné");
}

void colonneRequise(const recordset::Recordset& rs, const QString& colonne, const char* role) {
    if (rs.fieldIndex(colonne) < 0)
        throw Erreur(err::ChampInconnu,
                     QStringLiteral("Le jeu d'enregistrements du thème n'a pas la colonne « %1 » "
                                    "(%2).")
                         .arg(colonne, QString::fromUtf8(role)));
}

} // namespace

void habilleThemeHote(Contexte& ctx, carto::Theme& theme, const QString& sParam) {
    couleurs(ctx, theme);
    relibelle(theme, sParam);
    nonRenseigne(theme);
}

void Theme(Contexte& ctx, RecordsetPtr& Rs, const QString& sParam, const QString& Champ,
           const QString& ChampGeo, const QString& TitreTheme) {
    const Sablier sablier;
    try {
        if (!Rs)
            throw Erreur(err::AppelIncorrect,
                         QStringLiteral("Aucun jeu d'enregistrements n'est donné au thème."));
        carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
        if (!Rs->isOpen())
            throw Erreur(err::ObjetFerme,
                         QStringLiteral("Le jeu d'enregistrements du thème est fermé."));
        colonneRequise(*Rs, ChampGeo, "clé des emplacements");
        colonneRequise(*Rs, Champ, "valeur du thème");

        ctx.etat.themes.affiche = EtatThemes::Affiche::Aucun;
        carto::Dataset& donnees = ctx.carte().addDataset(
            tombes, *Rs, ChampGeo, QStringLiteral("Theme"), QStringLiteral("IDGCF"));
        carto::Theme& theme =
            donnees.addTheme(carto::ThemeKind::IndividualValues, Champ, QStringLiteral("Theme"));
        carto::Legend& legende = theme.legend;
        legende.visible = false;
        legende.title = TitreTheme;
        legende.subtitle.clear();
        QString correspondance = sParam;
        if (correspondance.endsWith(u'@'))
            correspondance.chop(1);
        try {
            habilleThemeHote(ctx, theme, correspondance);
        } catch (const Erreur&) {
            ctx.s.Map1->refresh(); // what was built so far is on show
            throw;
        }
        legende.visible = true;
        legende.showTitle = true;
        legende.showCounts = true;
        Rs->close();
        Rs = nullptr;
        StyleSelectionTheme(ctx, true);
        ctx.etat.themes.affiche = EtatThemes::Affiche::Hote;
        ctx.etat.themes.sParam = correspondance;
        ctx.s.Map1->refresh();
    } catch (const Erreur& e) {
        ctx.prompter().message(texteErreur(e, QStringLiteral(" ")), boutons::Ok,
                               QStringLiteral("Métahode ThemeEtat"));
    }
}

} // namespace veldra
