#include "output/etiquettes.h"

#include "base/erreur.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/disposition.h"

#include <QMenu>

namespace veldra {

namespace {

const QString kJeuEtiquettes = QStringLiteral("DSEtiquette");

// The dataset the labels come from, found as the map's datasets are walked.
bool aEtiquettes(const Contexte& ctx) {
    return ctx.s.Map1->map().dataset(kJeuEtiquettes) != nullptr;
}

} // namespace

void SetEtiquette(Contexte& ctx, RecordsetPtr& Rs, const QString& ChampEtiquette) {
    try {
        carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
        carto::Map& carte = ctx.carte();
        if (aEtiquettes(ctx))
            carte.removeDataset(kJeuEtiquettes);
        if (!Rs)
            throw Erreur(err::AppelIncorrect,
                         QStringLiteral("Aucun jeu d'enregistrements n'est donné aux étiquettes."));
        Rs->moveFirst();
        carto::Dataset& donnees = carte.addDataset(tombes, *Rs, QStringLiteral("IDGCF"),
                                                   kJeuEtiquettes, QStringLiteral("IDGCF"));
        // The column is found before the labels take the dataset: a name that is not one
        // of its columns leaves the labels as they were.
        const QString champ = donnees.field(ChampEtiquette);
        tombes.setLabelDataset(&donnees);
        tombes.setLabelField(champ);
        if (ctx.v.Calque_Numero)
            ctx.v.Calque_Numero->setVisible(false);
        tombes.setLabelsVisible(true);
        tombes.setAutoLabel(true);
        Rs->close();
        Rs = nullptr;
    } catch (const Erreur& e) {
        ctx.prompter().message(texteErreur(e, QStringLiteral(": ")), boutons::Ok,
                               QStringLiteral("SetEtiquette"));
    }
}

void RAZEtiquette(Contexte& ctx) {
    try {
        if (!aEtiquettes(ctx))
            return;
        ctx.carte().removeDataset(kJeuEtiquettes);
        if (ctx.v.Calque_Numero)
            ctx.v.Calque_Numero->setVisible(true);
        if (carto::Layer* tombes = ctx.v.Calque_Tombe) {
            tombes->setLabelsVisible(false);
            tombes->setAutoLabel(false);
            // The names of "Afficher les nom" come from the plots' own dataset again.
            if (ctx.v.DataSetTombes && &ctx.v.DataSetTombes->layer() == tombes) {
                tombes->setLabelDataset(ctx.v.DataSetTombes);
                tombes->setLabelField(ctx.v.DataSetTombes->field(u"nom"));
            }
        }
    } catch (const Erreur& e) {
        ctx.prompter().message(texteErreur(e, QStringLiteral(": ")));
    }
}

void styleEtiquettes(Contexte& ctx, const carto::Style& style) {
    carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
    if (!(style.textSize > 0))
        throw Erreur(err::ArgumentsIncorrects,
                     QStringLiteral("La taille des étiquettes doit être un nombre positif."));
    tombes.setLabelStyle(style);
}

void menuEtiquettes(Contexte& ctx) {
    QPushButton& bouton = *ctx.s.Btn_DeplaceEtiquette;
    QMenu menu(&bouton);
    menu.setObjectName(QStringLiteral("MenuEtiquettes"));
    QAction* outil = menu.addAction(QStringLiteral("Outil 'Etiquettes'"));
    QAction* proprietes = menu.addAction(QStringLiteral("Propriétés des Etiquettes"));
    // To the left of the button, just below it, off the button itself.
    const int remonte = int(30 / twipsParPixel(ctx));
    const QPoint ou = bouton.mapToGlobal(QPoint(-bouton.width(), bouton.height() - remonte));
    const QAction* choisie = ctx.montreMenu(menu, ou);
    bouton.setDown(false);
    if (choisie == outil) {
        ctx.s.Map1->setCurrentTool(carto::tool::Label);
    } else if (choisie == proprietes) {
        appelle(ctx.crochets.proprietesEtiquettes);
        if (!ctx.carte().layer(u"My_Temp_Layer"))
            appelle(ctx.crochets.creeCalqueTemporaire);
    }
}

} // namespace veldra
