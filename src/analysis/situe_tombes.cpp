#include "analysis/situe_tombes.h"

#include "carto/model/layer.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/garde.h"
#include "context/sablier.h"

namespace veldra {

namespace {

// The plots layer becomes the current one as if chosen in the layer list; edit mode
// stays as the clerk left it.
void tombesCourantes(Contexte& ctx, carto::Layer& tombes) {
    QComboBox& liste = *ctx.s.Combo_Calque;
    const int i = liste.findText(tombes.name());
    if (i >= 0) {
        const QSignalBlocker bloque(liste);
        liste.setCurrentIndex(i);
    }
    if (ctx.crochets.changeCalqueCourant && i >= 0)
        ctx.crochets.changeCalqueCourant();
    else
        ctx.v.Calque_Courant = &tombes;
}

} // namespace

void SitueTombes(Contexte& ctx, const QString& listeId, bool modifieZoom) {
    const QStringList morceaux = listeId.isEmpty() ? QStringList() : listeId.split(u'@');
    if (morceaux.size() == 1) {
        ctx.prompter().message(QStringLiteral("L'identifiant de la tombe à situer n'est pas "
                                              "indiqué !"),
                               boutons::Ok, QString());
        return;
    }
    carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
    carto::Features resultat(&tombes);
    {
        const Sablier sablier;
        tombesCourantes(ctx, tombes);
        tombes.clearSelection();
        const carto::ReadAccess lecture(tombes);
        tombes.setKeyField(QStringLiteral("IDGCF"));
        // The text after the last "@" is no key: empty in the expected form.
        for (qsizetype i = 0; i + 1 < morceaux.size(); ++i)
            resultat.add(tombes.searchEqual(u"IDGCF", morceaux[i]));
        // One change of selection for the whole list, whatever its length.
        tombes.selectOnly(resultat);
    }
    carto::MapView& carte = *ctx.s.Map1;
    carte.setMousePointer(carto::pointer::Default);
    if (carte.editingMode() != carto::editmode::Features)
        carte.setEditingMode(carto::editmode::Features);
    if (modifieZoom && !resultat.isEmpty()) {
        carte.setBounds(resultat.bounds());
        carte.setZoom(carte.zoom() * 2.9);
    }
}

void parcourtSelection(Contexte& ctx, int partie) {
    Surface& s = ctx.s;
    carto::Layer* courant = ctx.v.Calque_Courant;
    const int n = courant ? courant->selection().count() : 0;
    if (s.Num_Selec->text() == QLatin1String("0/0") || n == 0)
        return;
    // The caption may still give the selection's size over the layer's (after a change of
    // selection): k stays within the selection.
    const int lu = s.Num_Selec->text().section(u'/', 0, 0).toInt();
    int k = std::clamp(lu, 1, n);
    switch (partie) {
    case 0:
        k = 1;
        break;
    case 1:
        if (k != 1)
            --k;
        break;
    case 2:
        if (s.Num_Selec->text() != QStringLiteral("%1/%1").arg(n))
            k = std::min(lu + 1, n);
        break;
    case 3:
        k = n;
        break;
    default:
        return;
    }
    k = std::clamp(k, 1, n);
    s.Num_Selec->setText(QStringLiteral("%1/%2").arg(k).arg(n));
    const carto::Feature f = courant->selection().at(k - 1);
    s.Map1->setCentre(f.centre());
    if (ctx.crochets.afficheObjetSelectionne)
        ctx.crochets.afficheObjetSelectionne(f);
    if (ctx.v.ModeEdition)
        s.Btn_Sauver->setEnabled(true);
    s.Btn_Visu->setVisible(true);
}

void connecteParcours(Contexte& ctx) {
    Contexte* c = &ctx;
    for (int i = 0; i < int(ctx.s.b_selec_.size()); ++i)
        QObject::connect(ctx.s.b_selec_[size_t(i)], &QToolButton::clicked, &ctx.controle,
                         garde(ctx, [c, i] { parcourtSelection(*c, i); }));
}

} // namespace veldra
