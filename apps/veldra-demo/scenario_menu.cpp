#include "scenario_menu.h"

#include "carto/model/layer.h"
#include "carto/view/map_view.h"
#include "context/contexte.h"
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"

#include <QAction>
#include <QCheckBox>
#include <QColorDialog>
#include <QCoreApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <memory>

namespace veldra::demo {

namespace {

constexpr QSize kTaille(1280, 800);

} // namespace

std::vector<Etape> menu(FenetrePrincipale& f, Album& album, const QString& exemple,
                        const QString& brouillon) {
    Veldra& c = f.plan();
    const Surface& s = c.surface();
    carto::MapView& carte = *s.Map1;
    // A right click at `p` whose menu is photographed, then answered with `choix`.
    const auto clicDroit = [&c, &carte, &album](carto::Point p, const QString& nom,
                                                const QString& choix) {
        c.contexte().montreMenu = [&album, nom, choix](QMenu& m, const QPoint& ecran) {
            album.menu(m, ecran, nom, kTaille);
            return choix.isEmpty() ? nullptr : entreeDe(m, choix);
        };
        souris(carte, QEvent::MouseButtonRelease, p, Qt::RightButton);
    };
    const auto premier = [](carto::Layer* l, const QString& nom) {
        const carto::Features trouves = l->searchEqual(u"Nom", nom);
        return trouves.isEmpty() ? l->allFeatures().at(0) : trouves.at(0);
    };
    // Where the scenario looks: the first alley of section A and its plots.
    auto ici = std::make_shared<carto::Rect>();
    const auto cadre = [&carte, ici] { carte.setBounds(*ici); };
    return {
        {QStringLiteral("menu-terrain"), kTaille,
         [&f, &c, &s, &carte, exemple, brouillon, ici, clicDroit, premier, cadre] {
             f.ouvrePlan(copieExemple(exemple, brouillon),
                         QStringLiteral("Cimetière d'exemple (copie)"));
             s.CB_ModeEdition->click();
             if (c.contexte().etat.etatPanelInfos != QLatin1String("Visible"))
                 s.Btn_Fleche->click();
             if (!s.C_AffSections->isChecked())
                 s.C_AffSections->click();
             if (!s.C_AffAllees->isChecked())
                 s.C_AffAllees->click();
             const carto::Rect a = premier(c.Calque_Allees, QStringLiteral("Allée 1")).bounds();
             *ici = {a.xmin - 2, a.ymin - 6, a.xmin + 24, a.ymin + 10};
             cadre();
             choisitCalque(s, QStringLiteral("Tombes"));
             s.B_Outils_[3]->click();
             const carto::Feature t =
                 c.Calque_Tombe->searchWithinRectangle(a, carto::searchmode::CentreWithin).at(0);
             clique(carte, t.centre());
             clicDroit(t.centre(), QStringLiteral("menu-terrain"), {});
         },
         false},
        {QStringLiteral("menu-section"), kTaille,
         [&c, &s, &carte, ici, clicDroit, premier] {
             choisitCalque(s, QStringLiteral("Sections"));
             const carto::Point p{ici->xmin + 1, ici->ymin + 3};
             c.Calque_Sections->selectOnly(carto::Features(
                 c.Calque_Sections, {premier(c.Calque_Sections, QStringLiteral("A")).fid()}));
             clicDroit(p, QStringLiteral("menu-section"), {});
             (void)carte;
         },
         false},
        {QStringLiteral("menu-allee"), kTaille,
         [&c, &s, ici, clicDroit, premier] {
             choisitCalque(s, QStringLiteral("Allées"));
             const carto::Feature a = premier(c.Calque_Allees, QStringLiteral("Allée 1"));
             c.Calque_Allees->selectOnly(carto::Features(c.Calque_Allees, {a.fid()}));
             clicDroit({ici->xmin + 6, ici->ymin + 9}, QStringLiteral("menu-allee"), {});
         },
         false},
        {QStringLiteral("menu-texte"), kTaille,
         [&c, &s, &carte, clicDroit] {
             choisitCalque(s, QStringLiteral("Texte"));
             const carto::Feature t = c.Calque_Texte->allFeatures().at(0);
             carte.setBounds(t.bounds().expanded(12));
             c.Calque_Texte->selectOnly(carto::Features(c.Calque_Texte, {t.fid()}));
             clicDroit(t.centre(), QStringLiteral("menu-texte"), {});
         },
         false},
        {QStringLiteral("menu-sans-selection"), kTaille,
         [&c, &s, ici, clicDroit, cadre] {
             choisitCalque(s, QStringLiteral("Tombes"));
             cadre();
             c.Calque_Tombe->clearSelection();
             clicDroit({ici->xmin + 0.5, ici->ymin + 0.5}, QStringLiteral("menu-sans-selection"),
                       {});
         },
         false},
        {QStringLiteral("numero-tourne"), kTaille,
         [&c, &s, &carte, &album, ici] {
             const carto::Feature t =
                 c.Calque_Tombe->searchWithinRectangle(*ici, carto::searchmode::EntirelyWithin)
                     .at(2);
             clique(carte, t.centre());
             c.setModalHook([&album](QDialog& d) {
                 enfant<QLineEdit>(d, "Angle")->setText(QStringLiteral("30"));
                 album.dialogue(d, QStringLiteral("rotation-du-numero"), kTaille);
                 enfant<QPushButton>(d, "Btn_ValiderRotation")->click();
                 return int(QDialog::Accepted);
             });
             s.Btn_RotationNumero->click();
         }},
        {QStringLiteral("texte-modifie"), kTaille,
         [&c, &s, &carte, &album] {
             choisitCalque(s, QStringLiteral("Texte"));
             const carto::Feature t = c.Calque_Texte->allFeatures().at(0);
             carte.setBounds(t.bounds().expanded(12));
             c.Calque_Texte->selectOnly(carto::Features(c.Calque_Texte, {t.fid()}));
             c.setModalHook([&album](QDialog& d) {
                 if (auto* couleur = qobject_cast<QColorDialog*>(&d)) {
                     couleur->setCurrentColor(QColor(20, 90, 160));
                     return int(QDialog::Accepted);
                 }
                 enfant<QLineEdit>(d, "Taille")->setText(QStringLiteral("260"));
                 enfant<QCheckBox>(d, "cb_Ombre")->setChecked(true);
                 QWidget* echantillon = enfant<QWidget>(d, "PCouleur");
                 QMouseEvent clic(QEvent::MouseButtonRelease, QPointF(5, 5), QPointF(5, 5),
                                  Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
                 QCoreApplication::sendEvent(echantillon, &clic);
                 album.dialogue(d, QStringLiteral("texte-a-modifier"), kTaille);
                 enfant<QPushButton>(d, "Btn_Valider")->click();
                 return int(QDialog::Accepted);
             });
             emit carte.doubleClicked();
         }},
        {QStringLiteral("trois-terrains-copies"), kTaille,
         [&c, &s, ici, clicDroit, cadre] {
             choisitCalque(s, QStringLiteral("Tombes"));
             cadre();
             const carto::Features dedans =
                 c.Calque_Tombe->searchWithinRectangle(*ici, carto::searchmode::EntirelyWithin);
             c.Calque_Tombe->selectOnly(carto::Features(
                 c.Calque_Tombe, {dedans.fids()[4], dedans.fids()[5], dedans.fids()[6]}));
             clicDroit({ici->xmin + 1, ici->ymin + 1}, QStringLiteral("trois-terrains-copies"),
                       QStringLiteral("Copier"));
         },
         false},
        {QStringLiteral("terrains-colles"), kTaille,
         [ici, clicDroit] {
             clicDroit({ici->xmin + 1, ici->ymin + 1}, QStringLiteral("menu-coller"),
                       QStringLiteral("Coller"));
         }},
    };
}

} // namespace veldra::demo
