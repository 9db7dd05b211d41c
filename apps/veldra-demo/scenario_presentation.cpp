#include "scenario_presentation.h"

#include "carto/model/layer.h"
#include "carto/view/map_view.h"
#include "context/contexte.h"
#include "context/echantillon_couleur.h"
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QHelpEvent>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QPushButton>
#include <QToolButton>
#include <memory>
#include <optional>

namespace veldra::demo {

namespace {

constexpr QSize kTaille(1280, 800);

// A press or a release of the left button on `w`, at `global` on the screen.
void bouton(QWidget& w, QEvent::Type type, QPoint global) {
    const QPointF local = w.mapFromGlobal(QPointF(global));
    QMouseEvent e(type, local, QPointF(global), Qt::LeftButton,
                  type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&w, &e);
}

// A guide taken from its ruler and dropped over map point `p`.
void deposeGuide(QWidget& guide, carto::MapView& carte, carto::Point p) {
    QEvent entre(QEvent::Enter);
    QCoreApplication::sendEvent(&guide, &entre);
    bouton(guide, QEvent::MouseButtonPress, guide.mapToGlobal(QPoint(1, 1)));
    bouton(guide, QEvent::MouseButtonRelease, carte.mapToGlobal(carte.toScreen(p).toPoint()));
}

} // namespace

std::vector<Etape> presentation(FenetrePrincipale& f, Album& album, const QString& exemple,
                                const QString& brouillon) {
    Veldra& c = f.plan();
    const Surface& s = c.surface();
    carto::MapView& carte = *s.Map1;
    // The context menu's "Style de la sélection", its dialog photographed once `regle`
    // has set it, then confirmed.
    const auto styleDeLaSelection = [&c, &carte, &album](carto::Point ou, const QString& nom,
                                                         std::function<void(QDialog&)> regle) {
        c.contexte().montreMenu = [](QMenu& m, const QPoint&) {
            return entreeDe(m, QStringLiteral("Style de la sélection"));
        };
        c.setModalHook([&album, nom, regle](QDialog& d) {
            regle(d);
            album.dialogue(d, nom, kTaille);
            enfant<QPushButton>(d, "Btn_Ok")->click();
            return d.result();
        });
        souris(carte, QEvent::MouseButtonRelease, ou, Qt::RightButton);
    };
    auto ici = std::make_shared<carto::Rect>();
    return {
        {QStringLiteral("style-section"), kTaille,
         [&f, &c, &s, &carte, &album, exemple, brouillon, ici] {
             f.ouvrePlan(copieExemple(exemple, brouillon),
                         QStringLiteral("Cimetière d'exemple (copie)"));
             s.CB_ModeEdition->click();
             if (c.contexte().etat.etatPanelInfos != QLatin1String("Visible"))
                 s.Btn_Fleche->click();
             if (!s.C_AffSections->isChecked())
                 s.C_AffSections->click();
             const carto::Feature a =
                 c.Calque_Sections->searchEqual(u"Nom", QStringLiteral("A")).at(0);
             const carto::Rect r = a.bounds();
             *ici = {r.xmin - 3, r.ymin - 3, r.xmin + 30, r.ymin + 20};
             carte.setBounds(*ici);
             choisitCalque(s, QStringLiteral("Sections"));
             s.B_Outils_[3]->click();
             clique(carte, {r.xmin + 1.5, (r.ymin + r.ymax) / 2});
             c.setModalHook([&album](QDialog& d) {
                 auto* type = d.findChild<QComboBox*>(QStringLiteral("ImageComboRegion"));
                 type->setCurrentIndex(4); // forward diagonal hatch
                 d.findChild<EchantillonCouleur*>(QStringLiteral("b_couleur_Motif"))
                     ->setCouleur(0x2E7D32);
                 d.findChild<EchantillonCouleur*>(QStringLiteral("b_couleur_Int"))
                     ->setCouleur(0xE8F5E9);
                 d.findChild<EchantillonCouleur*>(QStringLiteral("b_couleur_Contour"))
                     ->setCouleur(0x1B5E20);
                 album.dialogue(d, QStringLiteral("fstyle-section"), kTaille);
                 enfant<QPushButton>(d, "Btn_Valider")->click();
                 return d.result();
             });
             s.Btn_ModifStyle->click();
             c.Calque_Sections->clearSelection();
         }},
        {QStringLiteral("style-emplacements"), kTaille,
         [&c, &s, ici, styleDeLaSelection] {
             choisitCalque(s, QStringLiteral("Tombes"));
             const carto::Features dedans = c.Calque_Tombe->searchWithinRectangle(
                 {ici->xmin, ici->ymin, ici->xmin + 20, ici->ymin + 14},
                 carto::searchmode::EntirelyWithin);
             c.Calque_Tombe->selectOnly(dedans);
             styleDeLaSelection(dedans.at(0).centre(), QStringLiteral("style-des-emplacements"),
                                [](QDialog& d) {
                                    enfant<QComboBox>(d, "ImageCombo1")->setCurrentIndex(1);
                                    d.findChild<EchantillonCouleur*>(QStringLiteral("CouleurMotif"))
                                        ->setCouleur(0xB3E5FC);
                                    enfant<QComboBox>(d, "ImageCombo3")->setCurrentIndex(1);
                                });
             c.Calque_Tombe->clearSelection();
         }},
        {QStringLiteral("style-texte"), kTaille,
         [&c, &s, &carte, &album] {
             choisitCalque(s, QStringLiteral("Texte"));
             const carto::Feature t = c.Calque_Texte->allFeatures().at(0);
             carte.setBounds(t.bounds().expanded(14));
             clique(carte, t.centre());
             c.setModalHook([&album](QDialog& d) {
                 QWidget* cadre = enfant<QWidget>(d, "Frame_Texte");
                 cadre->findChild<QComboBox*>(QStringLiteral("ImageCombo2"))->setCurrentIndex(6);
                 cadre->findChild<QComboBox*>(QStringLiteral("ImageCombo3"))->setCurrentIndex(1);
                 enfant<QCheckBox>(d, "Epaisseur")->setChecked(true);
                 d.findChild<EchantillonCouleur*>(QStringLiteral("b_couleur_Texte"))
                     ->setCouleur(0x8B3A1A);
                 album.dialogue(d, QStringLiteral("fstyle-texte"), kTaille);
                 enfant<QPushButton>(d, "Btn_Valider")->click();
                 return d.result();
             });
             s.Btn_ModifStyle->click();
             c.Calque_Texte->clearSelection();
         }},
        {QStringLiteral("style-symbole"), kTaille,
         [&c, &s, &carte, &album] {
             choisitCalque(s, QStringLiteral("Décor"));
             std::optional<carto::Feature> arbre;
             c.Calque_Decor->forEachFeature([&](const carto::Feature& d) {
                 if (!arbre && d.kind() == carto::FeatureKind::Symbol)
                     arbre = d;
             });
             carte.setBounds(arbre->bounds().expanded(12));
             clique(carte, arbre->centre());
             c.setModalHook([&album](QDialog& d) {
                 auto* police = enfant<QComboBox>(d, "Combo1");
                 police->setCurrentIndex(police->count() - 1); // the control's own symbols
                 enfant<QListWidget>(d, "Caracteres")->setCurrentRow(6); // a flower
                 d.findChild<EchantillonCouleur*>(QStringLiteral("Couleur"))->setCouleur(0x7B1FA2);
                 album.dialogue(d, QStringLiteral("style-du-symbole"), kTaille);
                 enfant<QPushButton>(d, "Btn_Ok")->click();
                 return d.result();
             });
             s.Btn_ModifStyle->click();
             c.Calque_Decor->clearSelection();
         }},
        {QStringLiteral("bulle"), kTaille,
         [&s, &album] {
             // The pointer rests on the measuring tool: its balloon comes up.
             QToolButton* outil = s.B_Outils_[7];
             const QPoint milieu = outil->rect().center();
             QHelpEvent aide(QEvent::ToolTip, milieu, outil->mapToGlobal(milieu));
             QCoreApplication::sendEvent(outil, &aide);
             for (QWidget* w : QApplication::topLevelWidgets())
                 if (w->objectName() == QLatin1String("cToolTip") && w->isVisible()) {
                     album.menu(*w, w->pos(), QStringLiteral("bulle"), kTaille);
                     w->hide();
                 }
         },
         false},
        {QStringLiteral("echelle-1-500"), kTaille,
         [&s, &carte, ici] {
             carte.setBounds(*ici);
             s.L_echelle->setText(QStringLiteral("500"));
             emit s.L_echelle->returnPressed();
         }},
        {QStringLiteral("echelles-predefinies"), kTaille,
         [&c, &s, &album] {
             c.contexte().montreMenu = [&album](QMenu& m, const QPoint& ecran) {
                 album.menu(m, ecran, QStringLiteral("echelles-predefinies"), kTaille);
                 return static_cast<QAction*>(nullptr);
             };
             s.Echelle->click();
         },
         false},
        {QStringLiteral("reperes"), kTaille,
         [&s, &carte, ici] {
             s.Check1->click();
             s.B_Outils_[3]->click();
             deposeGuide(*s.Regle, carte, {ici->xmin + 10, ici->ymin + 8.2});
             deposeGuide(*s.RegleV, carte, {ici->xmin + 12.4, ici->ymin + 10});
         }},
        {QStringLiteral("distance"), kTaille,
         [&s, &carte, ici] {
             s.B_Outils_[7]->click();
             const carto::Point a{ici->xmin + 2, ici->ymin + 2}, b{ici->xmin + 16, ici->ymin + 2},
                 d{ici->xmin + 16, ici->ymin + 12};
             clique(carte, a);
             clique(carte, b);
             survole(carte, d);
             clique(carte, d);
             survole(carte, {d.x + 0.01, d.y});
         }},
        {QStringLiteral("palette"), kTaille,
         [&s] {
             s.Btn_Pref->click();
             QMouseEvent clic(QEvent::MouseButtonRelease, QPointF(5, 5), QPointF(5, 5),
                              Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
             QCoreApplication::sendEvent(s.PCouleur, &clic);
         }},
        {QStringLiteral("couleur-de-fond"), kTaille,
         [&s] {
             const int cellule = s.picStandard->width() / 10;
             // Row 5, column 4: the pale green of cell 36.
             QMouseEvent clic(QEvent::MouseButtonPress, QPointF(3.5 * cellule, 4.5 * cellule),
                              QPointF(), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
             QCoreApplication::sendEvent(s.picMore, &clic);
             s.Btn_Pref->click();
             if (!s.CB_PlanSitue->isChecked())
                 s.CB_PlanSitue->click();
         }},
        {QStringLiteral("apres-redemarrage"), kTaille, [&f] { f.redemarreControle(); }},
        // The demo's next sessions start from a white plan again (cell 40), unrecorded.
        {QStringLiteral("fond-blanc"), kTaille,
         [&f] {
             const Surface& n = f.plan().surface();
             n.Btn_Pref->click();
             QMouseEvent ouvre(QEvent::MouseButtonRelease, QPointF(5, 5), QPointF(5, 5),
                               Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
             QCoreApplication::sendEvent(n.PCouleur, &ouvre);
             const int cellule = n.picStandard->width() / 10;
             QMouseEvent blanc(QEvent::MouseButtonPress, QPointF(7.5 * cellule, 4.5 * cellule),
                               QPointF(), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
             QCoreApplication::sendEvent(n.picMore, &blanc);
             n.Btn_Pref->click();
             f.redemarreControle(); // the settings file is written as the control closes
         },
         false},
    };
}

} // namespace veldra::demo
