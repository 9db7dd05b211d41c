#include "scenario_sortie.h"

#include "carto/model/layer.h"
#include "carto/view/map_view.h"
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QToolButton>

namespace veldra::demo {

namespace {

constexpr QSize kTaille(1280, 800);

// The host's print preview the control's request opened, if any.
QDialog* apercuOuvert() {
    for (QWidget* w : QApplication::topLevelWidgets())
        if (w->objectName() == QLatin1String("ApercuCarte") && w->isVisible())
            return qobject_cast<QDialog*>(w);
    return nullptr;
}

// The Impression dialog filled as the clerk fills it.
void remplitImpression(QDialog& d, const QString& titre, const QString& commentaires, int ligne,
                       bool selection) {
    enfant<QLineEdit>(d, "sTitre")->setText(titre);
    enfant<QPlainTextEdit>(d, "sCommentaires")->setPlainText(commentaires);
    enfant<QListWidget>(d, "Liste_Echelle")->setCurrentRow(ligne);
    if (selection)
        enfant<QCheckBox>(d, "Cb_ImpSelection")->click();
}

// Btn_Imprimer pressed from the processing panel, which is closed again afterwards.
void imprimeDepuisTraitements(const Surface& s) {
    if (s.P_traitements->isHidden())
        s.Btn_Traitements->click();
    s.Btn_Imprimer->click();
    if (!s.P_traitements->isHidden())
        s.Btn_Traitements->click();
}

// The plots with a concession key around a point, nearest first.
std::vector<carto::Feature> tenuesAutour(const carto::Layer& tombes, carto::Point p, double r) {
    std::vector<carto::Feature> out;
    for (const carto::Feature& t : tombes.searchWithinRectangle(
             {p.x - r, p.y - r, p.x + r, p.y + r}, carto::searchmode::CentreWithin))
        if (t.attribute(u"IDGCF").toInt() > 0)
            out.push_back(t);
    std::sort(out.begin(), out.end(), [p](const carto::Feature& a, const carto::Feature& b) {
        return carto::Map::distance(a.centre(), p) < carto::Map::distance(b.centre(), p);
    });
    return out;
}

} // namespace

std::vector<Etape> sortie(FenetrePrincipale& f, Album& album, const QString& dossier) {
    Veldra& c = f.plan();
    const Surface& s = c.surface();
    carto::MapView& carte = *s.Map1;
    const carto::Rect plan = c.Calque_Tombe ? c.Calque_Tombe->bounds() : carto::Rect{0, 0, 100, 60};
    const carto::Point milieu = plan.center();
    const std::vector<carto::Feature> proches =
        c.Calque_Tombe ? tenuesAutour(*c.Calque_Tombe, milieu, 12) : std::vector<carto::Feature>{};
    const QString pdf = QDir(dossier).filePath(QStringLiteral("plan-A3-1-500.pdf"));
    const auto apercu = [&album](const QString& nom) {
        attends([] { return apercuOuvert() != nullptr; });
        if (QDialog* a = apercuOuvert()) {
            album.dialogue(*a, nom, kTaille);
            a->close();
        }
    };
    const auto imprime = [&c, &s, &album](const QString& titre, const QString& commentaires,
                                          int ligne, bool selection, const QString& image) {
        c.setModalHook([=, &album](QDialog& d) {
            remplitImpression(d, titre, commentaires, ligne, selection);
            if (!image.isEmpty())
                album.dialogue(d, image, kTaille);
            enfant<QPushButton>(d, "Btn_ValiderImpression")->click();
            return d.result();
        });
        imprimeDepuisTraitements(s);
    };
    // Room for a tree and a bench in the forecourt, right of the chapel.
    const carto::Rect enceinte = c.Calque_Enceinte ? c.Calque_Enceinte->bounds() : plan;
    const carto::Point parvis{enceinte.xmin + 0.83 * enceinte.width(),
                              (enceinte.ymin + plan.ymin) / 2};
    return {
        {QStringLiteral("plan-et-situation"), kTaille,
         [&s] {
             s.B_Outils_[8]->click();
             if (!s.CB_PlanSitue->isChecked())
                 s.CB_PlanSitue->click();
         }},
        {QStringLiteral("dialogue-impression"), kTaille,
         [imprime] {
             imprime(QStringLiteral("Cimetière d'exemple"),
                     QStringLiteral("Plan général remis à la mairie."), 0, false,
                     QStringLiteral("dialogue-impression"));
         },
         false},
        {QStringLiteral("apercu-plan-entier"), kTaille,
         [apercu] { apercu(QStringLiteral("apercu-plan-entier")); }, false},
        {QStringLiteral("apercu-selection"), kTaille,
         [&c, &carte, imprime, apercu, proches, milieu] {
             carte.setBounds({milieu.x - 20, milieu.y - 14, milieu.x + 20, milieu.y + 14});
             QString liste;
             for (size_t i = 0; i < proches.size() && i < 3; ++i)
                 liste += QString::number(proches[i].attribute(u"IDGCF").toInt()) + u'@';
             bool zoom = false;
             c.SitueTombes(liste, zoom);
             imprime(QStringLiteral("Concessions à relever"),
                     QStringLiteral("Les trois emplacements en jaune."), 1, true, QString());
             apercu(QStringLiteral("apercu-selection"));
         },
         false},
        {QStringLiteral("etiquettes-titulaires"), kTaille,
         [&f, &carte, milieu] {
             f.etiquettesTitulaires(true);
             carte.setBounds({milieu.x - 16, milieu.y - 10, milieu.x + 16, milieu.y + 10});
         }},
        {QStringLiteral("dialogue-impression-pdf"), kTaille,
         [&f, &c, &s, &album, pdf] {
             s.B_Outils_[8]->click();
             c.setModalHook([&album, pdf](QDialog& d) {
                 if (auto* choix = qobject_cast<QFileDialog*>(&d)) {
                     choix->selectFile(pdf);
                     static_cast<QDialog*>(choix)->accept();
                     return d.result();
                 }
                 enfant<QComboBox>(d, "Combo_Papier")->setCurrentIndex(1);      // A3
                 enfant<QComboBox>(d, "Combo_Orientation")->setCurrentIndex(1); // landscape
                 remplitImpression(d, QStringLiteral("Cimetière d'exemple"),
                                   QStringLiteral("Plan au 1/500 avec les titulaires des "
                                                  "concessions."),
                                   1, false);
                 album.dialogue(d, QStringLiteral("dialogue-impression-pdf"), kTaille);
                 enfant<QPushButton>(d, "Btn_Pdf")->click();
                 return d.result();
             });
             QFile::remove(pdf);
             imprimeDepuisTraitements(s);
             // The PDF's first page as a picture, to be looked at.
             const QString outil = QStandardPaths::findExecutable(QStringLiteral("pdftoppm"));
             if (outil.isEmpty() || !QFileInfo::exists(pdf)) {
                 f.signale(QStringLiteral("La page du PDF n'a pas pu être convertie en image "
                                          "(pdftoppm, du paquet poppler-utils, est-il là ?)."));
                 return;
             }
             QString image = album.suivante(QStringLiteral("pdf-a3-1-500-page"));
             image.chop(4); // pdftoppm adds ".png"
             QProcess::execute(outil,
                               {QStringLiteral("-png"), QStringLiteral("-r"), QStringLiteral("80"),
                                QStringLiteral("-singlefile"), pdf, image});
         },
         false},
        {QStringLiteral("image-localisation"), kTaille,
         [&f, &album, proches] {
             if (proches.empty())
                 return;
             if (QDialog* d =
                     f.imageLocalisation(QString::number(proches[0].attribute(u"IDGCF").toInt()))) {
                 album.dialogue(*d, QStringLiteral("image-localisation"), kTaille);
                 d->close();
             }
         },
         false},
        {QStringLiteral("symboles-inseres"), kTaille,
         [&s, &carte, parvis] {
             if (!s.CB_ModeEdition->isChecked())
                 s.CB_ModeEdition->click();
             if (!s.CB_Bibliotheque->isChecked())
                 s.CB_Bibliotheque->click();
             carte.setBounds({parvis.x - 12, parvis.y - 8, parvis.x + 12, parvis.y + 8});
             s.Btn_Biblio_[0]->click();
             carte.setCentre({parvis.x - 3, parvis.y});
             s.Btn_BiblioInserer->click();
             s.Btn_Biblio_[1]->click();
             carte.setCentre({parvis.x + 2, parvis.y - 1});
             s.Btn_BiblioInserer->click();
             carte.setCentre(parvis);
         }},
        {QStringLiteral("tout-remis"), kTaille,
         [&f, &s] {
             // The sample as it was: the symbols undone, no labels, the panels closed.
             for (int i = 0; i < 2 && s.Btn_AnnulerEdition->isEnabled(); ++i)
                 s.Btn_AnnulerEdition->click();
             s.Btn_FermerBibli->click();
             if (s.CB_ModeEdition->isChecked())
                 s.CB_ModeEdition->click();
             f.etiquettesTitulaires(false);
             if (s.CB_PlanSitue->isChecked())
                 s.CB_PlanSitue->click();
             choisitCalque(s, QStringLiteral("Tombes"));
             s.B_Outils_[8]->click();
         }},
    };
}

} // namespace veldra::demo
