#include "themes/affichage_theme.h"

#include "base/erreur.h"
#include "carto/model/map.h"
#include "context/contexte.h"
#include "context/garde.h"
#include "themes/dialogue_themes.h"
#include "themes/liens_photos.h"
#include "themes/theme_hote.h"
#include "themes/theme_photo.h"

#include <QApplication>
#include <QPalette>

namespace veldra {

namespace {

// The palette as the theme list knows it; the plan's table overrides it entry by entry.
constexpr carto::Colour kPalette[10] = {8421631,  8454143, 12632064, 16744703, 16744576,
                                        12632256, 8454016, 8438015,  8388736,  16448};

bool nomme(const carto::Dataset& d) {
    return d.name().compare(QLatin1String("Theme"), Qt::CaseInsensitive) == 0;
}

// What a theme shows, to tell whether applying it again changed the picture.
struct Apparence {
    std::vector<QString> valeurs;
    std::vector<carto::Colour> couleurs;
    std::vector<QString> textes;
    bool operator==(const Apparence&) const = default;

    explicit Apparence(const carto::Theme& t) : textes(t.legend.texts) {
        for (const carto::ThemeCategory& c : t.categories()) {
            valeurs.push_back(c.value.toString() + u'|' + QString::number(c.min) + u'|' +
                              QString::number(c.max));
            couleurs.push_back(c.style.regionColor);
        }
    }
};

} // namespace

carto::Colour couleurTheme(const Contexte& ctx, int i) {
    const QStringList& table = ctx.etat.couleursTheme;
    if (i >= 1 && i <= table.size()) {
        bool ok = false;
        const qlonglong c = table[i - 1].trimmed().toLongLong(&ok);
        if (ok && c >= 0 && c <= 0xFFFFFF)
            return carto::Colour(c);
    }
    return i >= 1 && i <= 10 ? kPalette[i - 1] : carto::Colour(0);
}

carto::Colour couleurFaceBouton() {
    const QColor c = QApplication::palette().color(QPalette::Active, QPalette::Button);
    return carto::Colour(c.red() | (c.green() << 8) | (c.blue() << 16));
}

void StyleSelectionTheme(Contexte& ctx, bool theme) {
    carto::Style& sel = ctx.carte().selectionStyle;
    if (theme) {
        sel.regionPattern = carto::pattern::DiagonalCross;
        sel.regionColor = 0;
        sel.regionBackColor = 65535;
        sel.regionTransparent = false;
    } else {
        sel.regionPattern = carto::pattern::Solid;
        sel.regionColor = 65535;
    }
    ctx.s.Map1->update();
}

carto::Dataset* datasetTheme(Contexte& ctx) {
    carto::Layer* tombes = ctx.v.Calque_Tombe;
    if (!tombes)
        return nullptr;
    for (carto::Dataset* d : ctx.carte().datasetsOf(*tombes))
        if (nomme(*d))
            return d;
    return nullptr;
}

carto::Theme* themeAffiche(Contexte& ctx) {
    carto::Dataset* d = datasetTheme(ctx);
    return d ? d->theme(u"Theme") : nullptr;
}

void retireTheme(Contexte& ctx) {
    if (datasetTheme(ctx))
        ctx.carte().removeDataset(u"Theme");
    ctx.etat.themes.affiche = EtatThemes::Affiche::Aucun;
}

void Action(Contexte& ctx, QString& sLibelle, QString& sCode) {
    if (sCode == QLatin1String("Photo")) {
        ThemePhoto(ctx);
        return;
    }
    if (ctx.evenements.ChargeTheme)
        ctx.evenements.ChargeTheme(sLibelle, sCode);
}

void supprimeTheme(Contexte& ctx) {
    retireTheme(ctx);
    StyleSelectionTheme(ctx, false);
}

void reappliqueTheme(Contexte& ctx) {
    const EtatThemes::Affiche affiche = ctx.etat.themes.affiche;
    if (affiche == EtatThemes::Affiche::Aucun)
        return;
    carto::Theme* theme = themeAffiche(ctx);
    if (!theme) {
        ctx.etat.themes.affiche = EtatThemes::Affiche::Aucun;
        return;
    }
    const Apparence avant(*theme);
    theme->recompute();
    if (affiche == EtatThemes::Affiche::Hote) {
        try {
            habilleThemeHote(ctx, *theme, ctx.etat.themes.sParam);
        } catch (const Erreur&) {
            // A new value met an entry without "*": its legend text stays the value, as
            // the build would have left it; an edit is no time for a message.
        }
    } else {
        habilleThemePhoto(*theme);
    }
    if (!(Apparence(*theme) == avant))
        ctx.s.Map1->refresh();
}

void connecteThemes(Contexte& ctx) {
    Contexte* c = &ctx;
    QObject* o = &ctx.controle;
    QObject::connect(ctx.s.BTN_Themes, &QPushButton::clicked, o,
                     garde(ctx, [c] { BTN_Themes_Click(*c); }));
    QObject::connect(ctx.s.Btn_SuppTheme, &QPushButton::clicked, o,
                     garde(ctx, [c] { supprimeTheme(*c); }));
    QObject::connect(ctx.s.Btn_Visu, &QPushButton::clicked, o,
                     garde(ctx, [c] { Btn_Visu_Click(*c); }));
    QObject::connect(
        &ctx.carte(), &carto::Map::changed, o, garde(ctx, [c](const carto::Change& change) {
            if (change.touchesFeatures() && c->v.Calque_Tombe && change.layer == c->v.Calque_Tombe)
                reappliqueTheme(*c);
        }));
}

} // namespace veldra
