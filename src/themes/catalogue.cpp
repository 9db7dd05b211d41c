#include "themes/catalogue.h"

#include "base/erreur.h"
#include "context/contexte.h"

namespace veldra {

void AjouteTheme(Contexte& ctx, const QString& Libelle, const QString& Code) {
    EtatThemes& t = ctx.etat.themes;
    if (t.NbThemes >= EtatThemes::kLignes) {
        ctx.prompter().message(
            QStringLiteral("La liste des thèmes est complète (%1 thèmes au plus).")
                .arg(EtatThemes::kLignes),
            boutons::Ok, QStringLiteral("AjouteTheme"));
        return;
    }
    t.TableauThemes[size_t(t.NbThemes)] = {Libelle, Code};
    ++t.NbThemes;
}

QVariant GetTableauThemes(const Contexte& ctx) {
    QVariantList lignes;
    for (const auto& [libelle, code] : ctx.etat.themes.TableauThemes)
        lignes.append(QVariant(QStringList{libelle, code}));
    return lignes;
}

} // namespace veldra
