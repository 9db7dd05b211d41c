#include "context/disposition.h"

#include "context/contexte.h"

#include <QFontMetrics>
#include <QLabel>
#include <cmath>

namespace veldra {

double twipsParPixel(const Contexte& ctx) {
    return 1440.0 / std::max(1, ctx.controle.logicalDpiX());
}

namespace {

// A long name gets a smaller font rather than being cut, then a second line.
void ajustePolice(QLabel& nom) {
    QFont police = nom.font();
    const QRect cadre = nom.contentsRect();
    const auto tient = [&](double taille, bool lignes) {
        police.setPointSizeF(taille);
        const QFontMetrics m(police);
        if (!lignes)
            return m.horizontalAdvance(nom.text()) <= cadre.width();
        const QRect r = m.boundingRect(cadre, Qt::AlignCenter | Qt::TextWordWrap, nom.text());
        return r.width() <= cadre.width() && r.height() <= cadre.height();
    };
    bool trouve = false;
    for (double taille = 13; taille >= 9 && !trouve; taille -= 1)
        trouve = tient(taille, false);
    for (double taille = 11; taille >= 7 && !trouve; taille -= 1)
        trouve = tient(taille, true);
    nom.setWordWrap(!tient(police.pointSizeF(), false));
    nom.setFont(police);
}

} // namespace

void dispose(Contexte& ctx) {
    Surface& s = ctx.s;
    QWidget& c = ctx.controle;
    const double tpp = twipsParPixel(ctx);
    auto px = [tpp](double twips) { return int(std::lround(twips / tpp)); };

    // Narrower than the minimum: the control widens itself. No minimum height.
    if (c.width() < px(kLargeurMinimaleTwips))
        c.resize(px(kLargeurMinimaleTwips), c.height());
    const int largeur = c.width(), hauteur = c.height();
    const int droite = px(3000); // the right band's width
    // The top band is 870 twips high, so the map's top (band + 15) and its height (the
    // rest less the bottom band and 885) meet exactly.
    const int haut = px(870);
    const int bas = s.Panel_Bas->height();

    // Each element is placed on its own so a very small control never stops the layout.
    s.Panel_Haut->setGeometry(0, 0, largeur, haut);
    const QRect carte(0, haut + px(15), std::max(1, largeur - droite - px(15)),
                      std::max(1, hauteur - bas - px(885)));
    s.Map1->setGeometry(carte);
    s.Panel_Droite->setGeometry(carte.right() + 1 + px(15), haut, droite,
                                std::max(1, hauteur - haut - bas));
    s.Panel_Bas->setGeometry(0, hauteur - bas, largeur, bas);

    // Top band: tools on the left, scale and preferences against the map's right edge, the
    // name centred between them. In a narrow control the scale moves right, over the right
    // band's corner, rather than over the tools or the name.
    s.B_Outils->move(px(105), (haut - s.B_Outils->height()) / 2);
    const int libelle = std::max(px(560), s.Echelle->sizeHint().width());
    const int nomG = s.B_Outils->geometry().right() + px(300);
    const int groupe = libelle - px(560) + px(1755) + s.Btn_Pref->width() + px(105);
    const int droiteGroupe = std::min(
        largeur - 1, std::max(carte.right(), nomG + px(kNomMinimalTwips) + px(300) + groupe));
    s.Btn_Pref->move(droiteGroupe - s.Btn_Pref->width() - px(105),
                     (haut - s.Btn_Pref->height()) / 2);
    const int echelleG = s.Btn_Pref->x() - px(1755);
    // The scale's drop-down, value and refresh button share one line, above L_echelle2.
    s.Echelle->setGeometry(echelleG - libelle + px(560), px(120), libelle, haut - px(390));
    const int valeurG = echelleG + px(560) + px(30);
    s.L_echelle->setGeometry(valeurG, px(120), px(700), haut - px(390));
    s.b_rafraichir->setGeometry(valeurG + px(700) + px(15), px(120), px(420), haut - px(390));
    s.L_echelle2->setGeometry(echelleG + px(560) + px(30), haut - px(150), px(1100), px(150));
    const int place = std::max(0, s.Echelle->x() - px(300) - nomG);
    s.L_NomCimetiere->setGeometry(nomG, 0, place, haut);
    ajustePolice(*s.L_NomCimetiere);

    // Distance panel against the right band; gauge centred over the map.
    s.Panel_Dist->move(s.Panel_Droite->x() - s.Panel_Dist->width() - px(45), haut + px(30));
    s.Panel_Jauge->move(carte.left() + (carte.width() - s.Panel_Jauge->width()) / 2,
                        carte.top() + (carte.height() - s.Panel_Jauge->height()) / 2);

    // Rulers along the map.
    // A guide the clerk dropped keeps its place across the map; a new one lies on the edge.
    const EtatReperes& r = ctx.etat.reperes;
    s.RegleV->setGeometry(r.xV.value_or(carte.left()), carte.top(), px(60), carte.height());
    s.Regle->setGeometry(carte.left(), r.yH.value_or(carte.top()), carte.width(), px(60));

    // Bottom band: the search row, vertically centred, gaps of 30 (15 after a label).
    int x = px(105);
    const std::pair<QWidget*, int> rangee[] = {{s.LrechercheSection, px(15)},
                                               {s.Combo_section, px(30)},
                                               {s.L_RechEmp, px(15)},
                                               {s.TB_SaisieEmplacement, px(30)},
                                               {s.Btn_Rechercher, 0}};
    for (const auto& [w, ecart] : rangee) {
        w->move(x, (bas - w->height()) / 2);
        x += w->width() + ecart;
    }
}

} // namespace veldra
