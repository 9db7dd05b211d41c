#include "scenario_themes.h"

#include "carto/model/layer.h"
#include "carto/view/map_view.h"
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"
#include "photos_demo.h"
#include "registre.h"

#include <QCheckBox>
#include <QDialog>
#include <QFileDialog>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <QTreeWidget>

namespace veldra::demo {

// A clerk colours the plan by each of the register's themes, then by photographs; looks
// at a grave's photograph and zooms on it; links a photograph to another grave in edit
// mode and removes the link; undoes both and takes the theme away.
std::vector<Etape> themes(FenetrePrincipale& f, Album& album) {
    Veldra& c = f.plan();
    const Surface& s = c.surface();
    carto::MapView& carte = *s.Map1;
    constexpr QSize taille(1280, 800);
    if (Registre* r = f.registre())
        creePhotosDemo(c, *r, c.contexte().carte().mapSet());
    // A grave with a photograph, and its neighbour without one.
    carto::Feature avec, sans;
    if (RecordsetPtr photos = c.GetPhotos(); photos && photos->recordCount() > 0) {
        photos->moveFirst();
        avec = c.Calque_Tombe->feature(photos->value(u"IdMapInfo").toLongLong());
        const carto::Point p = avec.centre();
        for (const carto::Feature& t : c.Calque_Tombe->searchWithinRectangle(
                 {p.x - 6, p.y - 4, p.x + 6, p.y + 4}, carto::searchmode::CentreWithin))
            if (!sans.isValid() && t.fid() != avec.fid() &&
                t.attribute(u"Photo").toString().trimmed().isEmpty())
                sans = t;
    }
    const auto autour = [&carte](const carto::Feature& t) {
        if (!t.isValid())
            return;
        const carto::Point p = t.centre();
        carte.setBounds({p.x - 14, p.y - 9, p.x + 14, p.y + 9});
    };
    const auto selectionne = [&s, &carte](const carto::Feature& t) {
        if (!t.isValid())
            return;
        choisitCalque(s, QStringLiteral("Tombes"));
        s.B_Outils_[3]->click();
        clique(carte, t.centre());
    };
    // The theme list opened from the processing panel, the row `ligne` chosen.
    const auto choisitTheme = [&c, &s, &album, taille](int ligne, bool photographiee) {
        c.setModalHook([&album, ligne, photographiee, taille](QDialog& d) {
            auto* liste = enfant<QTreeWidget>(d, "ListView1");
            liste->setCurrentItem(liste->topLevelItem(ligne));
            if (photographiee)
                album.dialogue(d, QStringLiteral("liste-des-themes"), taille);
            enfant<QPushButton>(d, "Btn_Valider")->click();
            return d.result();
        });
        if (s.P_traitements->isHidden())
            s.Btn_Traitements->click();
        s.BTN_Themes->click();
        s.Btn_Traitements->click(); // the panel out of the legend's way
    };
    return {
        {QStringLiteral("traitements"), taille, [&s] { s.Btn_Traitements->click(); }},
        {QStringLiteral("liste-des-themes"), taille, [choisitTheme] { choisitTheme(0, true); },
         false},
        {QStringLiteral("theme-type-de-concession"), taille, [] {}},
        {QStringLiteral("theme-annee-d-echeance"), taille,
         [choisitTheme] { choisitTheme(1, false); }},
        {QStringLiteral("theme-concessions-echues"), taille,
         [choisitTheme] { choisitTheme(2, false); }},
        {QStringLiteral("theme-photo"), taille, [choisitTheme] { choisitTheme(3, false); }},
        {QStringLiteral("photo-visionneuse"), taille,
         [&c, &s, &album, avec, autour, selectionne, taille] {
             autour(avec);
             selectionne(avec);
             c.setModalHook([&album, taille](QDialog& d) {
                 album.dialogue(d, QStringLiteral("photo-visionneuse"), taille);
                 enfant<QToolButton>(d, "cmdZoomIn")->click();
                 enfant<QToolButton>(d, "cmdZoomIn")->click();
                 enfant<QScrollBar>(d, "horizontalScroll")->setValue(6000);
                 enfant<QScrollBar>(d, "verticalScroll")->setValue(4000);
                 album.dialogue(d, QStringLiteral("photo-zoomee"), taille);
                 d.accept();
                 return d.result();
             });
             s.Btn_Visu->click();
         },
         false},
        {QStringLiteral("photo-liee"), taille,
         [&c, &s, &album, sans, avec, selectionne, taille] {
             if (!s.CB_ModeEdition->isChecked())
                 s.CB_ModeEdition->click();
             selectionne(sans);
             const QString fichier =
                 avec.isValid() ? avec.attribute(u"Photo").toString() : QString();
             c.setModalHook([&album, fichier, taille](QDialog& d) {
                 if (auto* choix = qobject_cast<QFileDialog*>(&d)) {
                     choix->selectFile(fichier);
                     static_cast<QDialog*>(choix)->accept();
                     return d.result();
                 }
                 album.dialogue(d, QStringLiteral("visionneuse-vide"), taille);
                 enfant<QPushButton>(d, "Btn_LierImage")->click();
                 album.dialogue(d, QStringLiteral("photo-liee"), taille);
                 enfant<QPushButton>(d, "Btn_Supprimer")->click();
                 album.dialogue(d, QStringLiteral("photo-deliee"), taille);
                 d.accept();
                 return d.result();
             });
             s.Btn_Visu->click();
         },
         false},
        {QStringLiteral("theme-supprime"), taille,
         [&s] {
             // The link and its removal undone: the sample keeps its photographs as they were.
             for (int i = 0; i < 2 && s.Btn_AnnulerEdition->isEnabled(); ++i)
                 s.Btn_AnnulerEdition->click();
             if (s.CB_ModeEdition->isChecked())
                 s.CB_ModeEdition->click();
             s.Btn_Traitements->click();
             s.Btn_SuppTheme->click();
         }},
    };
}

} // namespace veldra::demo
