#include "scenario_rangee.h"

#include "carto/model/layer.h"
#include "carto/view/map_view.h"
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <memory>

namespace veldra::demo {

namespace {

constexpr QSize kTaille{1280, 800};

// A rectangle drawn with the drawing tools' rectangle on `calque`, then named.
void rectangleNomme(const Surface& s, carto::MapView& carte, const QString& calque, carto::Point de,
                    carto::Point a, const QString& nom) {
    choisitCalque(s, calque);
    s.Btn_OutilsDessin_[4]->click();
    glisse(carte, de, a);
    s.B_Outils_[3]->click();
    clique(carte, {(de.x + a.x) / 2, (de.y + a.y) / 2});
    s.Label_Nom->setText(nom);
    s.Btn_Sauver->click();
}

// A plot drawn corner by corner, then numbered.
void emplacementNumerote(const Surface& s, carto::MapView& carte,
                         const std::vector<carto::Point>& coins, const QString& numero) {
    choisitCalque(s, QStringLiteral("Tombes"));
    s.Btn_OutilsDessin_[3]->click();
    polygone(carte, coins);
    s.B_Outils_[3]->click();
    clique(carte, {(coins[0].x + coins[2].x) / 2, (coins[0].y + coins[2].y) / 2});
    s.SaisieNum->setText(numero);
    s.Btn_Sauver->click();
}

} // namespace

std::vector<Etape> rangee(FenetrePrincipale& f, Album& album, const QString& exemple,
                          const QString& brouillon) {
    Veldra& c = f.plan();
    const Surface& s = c.surface();
    carto::MapView& carte = *s.Map1;
    // The corner of the new section, in the forecourt above its title; the alley runs
    // along its foot, 45 m long: a row of 40 plots 1.5 m apart leaves it after 29.
    auto o = std::make_shared<carto::Point>();
    const auto ici = [o](double x, double y) { return carto::Point{o->x + x, o->y + y}; };
    constexpr double kAllee = 1.5;
    // The model: its first corner on the alley's corner, its first side on the alley.
    const auto modele = [ici](double dx) {
        return std::vector<carto::Point>{ici(dx, kAllee), ici(dx + 1.2, kAllee),
                                         ici(dx + 1.2, kAllee + 2.2), ici(dx, kAllee + 2.2)};
    };
    const auto demande = [&c, &album](const QString& premier, const QString& image) {
        c.setModalHook([&album, premier, image](QDialog& d) {
            d.findChild<QSpinBox*>(QStringLiteral("SB_Nombre"))->setValue(40);
            d.findChild<QLineEdit*>(QStringLiteral("T_Ecart"))->setText(QStringLiteral("0,3"));
            d.findChild<QLineEdit*>(QStringLiteral("T_Premier"))->setText(premier);
            d.findChild<QLineEdit*>(QStringLiteral("T_Pas"))->setText(QStringLiteral("1"));
            if (!image.isEmpty())
                album.dialogue(d, image, kTaille);
            d.findChild<QPushButton*>(QStringLiteral("Btn_Creer"))->click();
            return d.result();
        });
    };
    return {
        {QStringLiteral("allee-dessinee"), kTaille,
         [&f, &c, &s, &carte, exemple, brouillon, o] {
             f.ouvrePlan(copieExemple(exemple, brouillon),
                         QStringLiteral("Cimetière d'exemple (copie)"));
             f.setPrompter(std::make_unique<PrompterBandeau>(f));
             s.CB_ModeEdition->click();
             if (c.contexte().etat.etatPanelInfos != QLatin1String("Visible"))
                 s.Btn_Fleche->click();
             // The sections' colour would hide the alleys: the alleys' shows.
             if (s.C_AffSections->isChecked())
                 s.C_AffSections->click();
             if (!s.C_AffAllees->isChecked())
                 s.C_AffAllees->click();
             if (!s.CB_Accrochage->isChecked())
                 s.CB_Accrochage->click();
             if (!s.CB_Rangees->isChecked())
                 s.CB_Rangees->click();
             const carto::Rect a =
                 c.Calque_Sections->searchEqual(u"Nom", QStringLiteral("A")).at(0).bounds();
             *o = {a.xmin + 1, a.ymin - 9.5};
             carte.setBounds({o->x - 3, o->y - 6, o->x + 49, o->y + 10});
             rectangleNomme(s, carte, QStringLiteral("Sections"), *o, {o->x + 45, o->y + 6.5},
                            QStringLiteral("N"));
             // Drawn a little off the section's corner: the corner snaps onto it.
             rectangleNomme(s, carte, QStringLiteral("Allées"), {o->x + 0.2, o->y - 0.2},
                            {o->x + 45, o->y + kAllee}, QStringLiteral("N1"));
         }},
        {QStringLiteral("emplacement-existant"), kTaille,
         [&s, &carte, modele] {
             // Already on the ground where the row will pass.
             emplacementNumerote(s, carte, modele(23), QStringLiteral("99"));
         }},
        {QStringLiteral("accrochage-coin"), kTaille,
         [&s, &carte, ici] {
             choisitCalque(s, QStringLiteral("Tombes"));
             s.Btn_OutilsDessin_[3]->click();
             // The first corner clicked near the alley's corner, the pointer then near its
             // edge: the marker shows where the next corner will go.
             clique(carte, ici(0.25, kAllee + 0.2));
             survole(carte, ici(1.2, kAllee + 0.25));
         }},
        {QStringLiteral("modele-numerote"), kTaille,
         [&s, &carte, ici, modele] {
             polygone(carte,
                      {ici(1.2, kAllee + 0.25), ici(1.2, kAllee + 2.2), ici(0, kAllee + 2.2)});
             s.B_Outils_[3]->click();
             const std::vector<carto::Point> m = modele(0);
             clique(carte, {(m[0].x + m[2].x) / 2, (m[0].y + m[2].y) / 2});
             s.SaisieNum->setText(QStringLiteral("100"));
             s.Btn_Sauver->click();
         }},
        {QStringLiteral("rangee-creee"), kTaille,
         [&s, demande] {
             demande(QStringLiteral("101"), QStringLiteral("dialogue-rangee"));
             s.Btn_Rangee->click();
         }},
        {QStringLiteral("rangee-annulee"), kTaille,
         [&f, &s] {
             f.signale(QString());
             s.Btn_AnnulerEdition->click();
         }},
        {QStringLiteral("rangee-retablie"), kTaille, [&s] { s.Btn_RetablirEdition->click(); }},
        {QStringLiteral("numeros-refuses"), kTaille,
         [&s, demande] {
             // The same numbers again from the same model: the section bears them already.
             demande(QStringLiteral("101"), QString());
             s.Btn_Rangee->click();
         }},
    };
}

} // namespace veldra::demo
