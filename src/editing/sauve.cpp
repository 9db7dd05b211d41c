#include "editing/sauve.h"

#include "base/erreur.h"
#include "carto/geometry/geometry.h"
#include "carto/model/conform.h"
#include "carto/model/layer.h"
#include "carto/model/text_metrics.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"

#include <QLineEdit>
#include <cmath>

namespace veldra {

namespace {

// Fitting bounds: no label grows past 100 m nor shrinks below a point.
constexpr double kTailleMax = 10000;
constexpr double kTailleMin = 1;

void dit(Contexte& ctx, const QString& texte) {
    ctx.prompter().message(texte, boutons::Ok, QString());
}

// The label's own rectangle, turned as it is drawn.
carto::Geometry contour(carto::Point ancre, const QString& texte, const carto::Style& style) {
    const QSizeF t = carto::textSize(texte, style);
    const double a = style.textRotation * M_PI / 180, c = std::cos(a), s = std::sin(a);
    carto::Part anneau;
    for (const auto& [dx, dy] : {std::pair{-1, -1}, {1, -1}, {1, 1}, {-1, 1}, {-1, -1}}) {
        const double x = dx * t.width() / 2, y = dy * t.height() / 2;
        anneau.push_back({ancre.x + x * c - y * s, ancre.y + x * s + y * c});
    }
    return carto::regionGeometry({anneau});
}

struct Etiquette {
    carto::Point ancre;
    QString texte;
    carto::Style style;

    carto::Rect bornes() const { return carto::textBounds(ancre, texte, style); }
    bool dans(const carto::Geometry& terrain) const {
        return carto::within(contour(ancre, texte, style), terrain);
    }
};

// Grows by `pas` while `plusGrand` says the plot is larger, then shrinks by 1 while it is
// smaller; then, down to 1.5, shrinks until the label lies inside the plot.
void ajuste(Etiquette& l, const carto::Rect& t, const carto::Geometry& terrain, bool grandirSiUn) {
    const auto plusGrand = [&] {
        const carto::Rect r = l.bornes();
        return grandirSiUn ? (t.width() > r.width() || t.height() > r.height())
                           : (t.width() > r.width() && t.height() > r.height());
    };
    while (plusGrand() && l.style.textSize + 5 <= kTailleMax)
        l.style.textSize += 5;
    for (carto::Rect r = l.bornes();
         (t.width() < r.width() || t.height() < r.height()) && l.style.textSize - 1 >= kTailleMin;
         r = l.bornes())
        l.style.textSize -= 1;
    while (l.style.textSize > 1.5 && !l.dans(terrain))
        l.style.textSize -= 1;
}

void sauveNom(Contexte& ctx, carto::Layer& calque, const carto::Feature& fSel,
              const carto::Features& rivaux, const QString& dejaPris) {
    const QString nom = ctx.s.Label_Nom->text();
    if (nom.trimmed().isEmpty())
        return dit(ctx, QStringLiteral("Vous devez saisir un nom !"));
    for (const carto::Feature& r : rivaux)
        if (r.attribute(u"Nom").toString() == nom && r.fid() != fSel.fid())
            return dit(ctx, dejaPris);
    calque.setKeyField(QStringLiteral("Nom"));
    carto::Feature f = fSel;
    f.setKeyValue(nom);
    calque.updateFeature(f);
}

void sauveTerrain(Contexte& ctx, const carto::Feature& fSel) {
    VariablesPubliques& v = ctx.v;
    carto::Layer& tombes = *v.Calque_Tombe;
    if (!v.Calque_Numero)
        throw Erreur(err::CoucheInconnue,
                     QStringLiteral("La couche « Numeros » n'est pas ouverte."));
    carto::Layer& numeros = *v.Calque_Numero;
    // The number as the plot's column keeps it, so its label bears the same text.
    const qsizetype colonne = tombes.fieldIndex(u"Numero");
    const QString saisie = carto::cutToWidth(
        ctx.s.SaisieNum->text(), colonne < 0 ? 0 : tombes.fields()[size_t(colonne)].width);
    const carto::Point centre = fSel.centre();
    tombes.setKeyField(QStringLiteral("Numero"));

    // One bracket: a broken rule or a failure writes nothing.
    carto::UpdateAccess acces(ctx.carte(),
                              carto::UndoStep{QStringLiteral("Enregistrer le numéro")});
    if (v.Calque_Allees && !saisie.trimmed().isEmpty()) {
        const carto::Features allees = v.Calque_Allees->searchAtPoint(centre);
        if (!allees.isEmpty())
            for (const carto::Feature& t :
                 tombes.searchWithinFeature(allees.at(0), carto::searchmode::CentreWithin))
                if (t.attribute(u"Numero").toString() == saisie && t.fid() != fSel.fid())
                    return dit(ctx,
                               QStringLiteral("Un terrain porte déjà ce nom dans cette allée !"));
    }
    const bool premier = numeros.featureCount() == 0;
    const QString ancien = fSel.attribute(u"Numero").toString();
    for (const carto::Feature& n :
         numeros.searchWithinFeature(fSel, carto::searchmode::PartlyWithin))
        if (n.text() == ancien) {
            numeros.deleteFeature(n.fid());
            break;
        }
    const double angle = fSel.attribute(u"AngleNumero").toDouble();

    numeros.setEditable(true);
    const carto::Rect t = fSel.bounds();
    const carto::Geometry terrain = fSel.geometry();
    Etiquette l{centre, saisie, ctx.carte().defaultStyle};
    if (premier) {
        l.style.textBold = true;
        l.style.textRotation = -angle;
        if (!saisie.trimmed().isEmpty())
            ajuste(l, t, terrain, true);
    } else {
        l.style = numeros.firstFeature().style();
        l.style.textRotation = -angle;
        l.ancre = {(t.xmin + t.xmax) / 2, (t.ymin + t.ymax) / 2};
        if (ctx.etat.fontMax) {
            l.style.textBold = true;
            l.style.textSize = 2;
            if (l.bornes().width() > 0 && !saisie.trimmed().isEmpty())
                ajuste(l, t, terrain, false);
        }
    }
    numeros.addFeature(carto::Feature::textAt(l.ancre, l.texte, l.style));
    numeros.setEditable(false);

    carto::Feature f = fSel;
    f.setAttribute(u"Numero", saisie.trimmed().isEmpty() ? QStringLiteral(" ") : saisie);
    tombes.updateFeature(f);
    acces.commit();
}

} // namespace

void Sauve(Contexte& ctx, const carto::Feature& fSel) {
    VariablesPubliques& v = ctx.v;
    carto::Layer* courant = v.Calque_Courant;
    if (!courant || !fSel.isValid())
        return;
    try {
        if (estCalque(courant, v.Calque_Sections)) {
            carto::Layer& sections = *v.Calque_Sections;
            sauveNom(ctx, sections, fSel, sections.allFeatures(),
                     QStringLiteral("Ce nom de section est déjà utilisé !"));
        } else if (estCalque(courant, v.Calque_Allees)) {
            carto::Features rivaux;
            if (v.Calque_Sections) {
                const carto::Features ici = v.Calque_Sections->searchAtPoint(fSel.centre());
                if (!ici.isEmpty())
                    rivaux = v.Calque_Allees->searchWithinFeature(
                        ici.at(0), carto::searchmode::EntirelyWithin);
            }
            sauveNom(ctx, *v.Calque_Allees, fSel, rivaux,
                     QStringLiteral("Ce nom d'allée est déjà utilisé dans cette section!"));
        } else if (estCalque(courant, v.Calque_Tombe)) {
            sauveTerrain(ctx, fSel);
        }
    } catch (const Erreur&) {
        // The engine refused: the bracket has put everything back, and nothing is said.
    }
}

void sauveSelection(Contexte& ctx) {
    VariablesPubliques& v = ctx.v;
    if (v.ObjSel.isEmpty())
        return;
    Sauve(ctx, v.ObjSel.at(0));
    if (estCalque(v.Calque_Courant, v.Calque_Sections))
        appelle(ctx.crochets.creeComboSection);
}

} // namespace veldra
