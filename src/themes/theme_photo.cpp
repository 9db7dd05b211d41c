#include "themes/theme_photo.h"

#include "base/erreur.h"
#include "carto/model/edit_commands.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/sablier.h"
#include "themes/affichage_theme.h"
#include "themes/ecriture_lien.h"

namespace veldra {

namespace {

constexpr carto::Colour kAvecPhoto = 0x8080FF;

// Booleen of every plot from its Photo, in one bracket. Only the plots whose flag differs
// are written: the others already hold what the theme would write.
void ecritDrapeaux(Contexte& ctx, carto::Layer& tombes) {
    if (tombes.fieldIndex(u"Booleen") < 0)
        throw Erreur(
            err::ChampInconnu,
            QStringLiteral("La couche « %1 » n'a pas de colonne « Booleen ».").arg(tombes.name()));
    std::vector<qint64> avec, sans;
    tombes.forEachFeature([&](const carto::Feature& t) {
        const QString voulu = drapeauPhoto(t.attribute(u"Photo"));
        if (t.attribute(u"Booleen").toString() != voulu)
            (voulu == QLatin1String("F") ? avec : sans).push_back(t.fid());
    });
    if (avec.empty() && sans.empty())
        return;
    carto::Map& carte = ctx.carte();
    carto::UpdateAccess acces(carte);
    if (!avec.empty())
        carte.execute(
            std::make_unique<carto::SetAttribute>(tombes, avec, u"Booleen", QStringLiteral("F")));
    if (!sans.empty())
        carte.execute(
            std::make_unique<carto::SetAttribute>(tombes, sans, u"Booleen", QStringLiteral("T")));
    acces.commit();
}

} // namespace

void habilleThemePhoto(carto::Theme& theme) {
    auto& categories = theme.categories();
    auto& textes = theme.legend.texts;
    textes.resize(categories.size());
    if (categories.size() == 2) {
        categories[0].style.regionColor = kAvecPhoto;
        textes[0] = QStringLiteral("Lien avec une photo");
        categories[1].style.regionColor = couleurFaceBouton();
        textes[1] = QStringLiteral("Aucune photo");
    } else if (!categories.empty()) {
        categories[0].style.regionColor = couleurFaceBouton();
        textes[0] = QStringLiteral("Aucune photo");
    }
}

void ThemePhoto(Contexte& ctx) {
    const Sablier sablier;
    try {
        carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
        ecritDrapeaux(ctx, tombes);
        carto::Dataset& donnees = ctx.carte().addDataset(tombes, QStringLiteral("Theme"));
        tombes.setKeyField(donnees.field(u"Photo"));
        carto::Theme& theme =
            donnees.addTheme(carto::ThemeKind::Ranges, u"Booleen", QStringLiteral("Theme"));
        carto::Legend& legende = theme.legend;
        legende.visible = false;
        legende.title = QStringLiteral("Concessions avec photo");
        legende.subtitle.clear();
        habilleThemePhoto(theme);
        legende.visible = true;
        legende.showTitle = true;
        legende.showCounts = true;
        StyleSelectionTheme(ctx, true);
        ctx.etat.themes.affiche = EtatThemes::Affiche::Photo;
        ctx.s.Map1->refresh();
    } catch (const Erreur& e) {
        ctx.prompter().message(texteErreur(e, QStringLiteral(" : ")), boutons::Ok,
                               QStringLiteral("ThemePhoto"));
    }
}

} // namespace veldra
