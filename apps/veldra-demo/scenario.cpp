#include "scenario.h"

#include "base/cp1252.h"
#include "base/erreur.h"
#include "capture_fenetre.h"
#include "carto/view/map_view.h"
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"
#include "plan_exemple.h"
#include "scenario_menu.h"
#include "scenario_outils.h"
#include "scenario_placement.h"
#include "scenario_presentation.h"
#include "scenario_rangee.h"
#include "scenario_recherche.h"
#include "scenario_sortie.h"
#include "scenario_themes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTimer>
#include <QToolButton>
#include <functional>
#include <vector>

namespace veldra::demo {

namespace {

// The clerk's first hour: the sample plan at small and large sizes, names shown, a
// synchronisation and what it carried, plans that cannot be opened, a new plan given up
// then made, and back to the sample.
std::vector<Etape> premiereHeure(FenetrePrincipale& f, const QString& exemple,
                                 const QString& brouillon) {
    Veldra& c = f.plan();
    const Surface& s = c.surface();
    const auto noms = [&s] {
        if (!s.Check2->isChecked())
            s.Check2->click();
    };
    const auto repondTaille = [&c](bool valide) {
        c.setModalHook([valide](QDialog& d) {
            if (!valide)
                return int(QDialog::Rejected);
            d.findChild<QLineEdit*>(QStringLiteral("TB_Longueur"))->setText(QStringLiteral("120"));
            d.findChild<QLineEdit*>(QStringLiteral("TB_Largeur"))->setText(QStringLiteral("80"));
            d.findChild<QPushButton*>(QStringLiteral("Btn_Valider"))->click();
            return d.result();
        });
    };
    return {
        {QStringLiteral("exemple-800x600"), {800, 600}, [] {}},
        {QStringLiteral("noms-800x600"), {800, 600}, noms},
        {QStringLiteral("noms-1920x1200"), {1920, 1200}, noms},
        {QStringLiteral("synchronisation"), {1280, 800}, [&s] { s.Btn_Synchro->click(); }},
        {QStringLiteral("details-synchro"),
         {1280, 800},
         [&f] {
             QPlainTextEdit& j = f.journal();
             for (QTextBlock b = j.document()->lastBlock(); b.isValid(); b = b.previous())
                 if (b.text().contains(QStringLiteral("Synchro("))) {
                     QTextCursor curseur(b);
                     j.setTextCursor(curseur);
                     break;
                 }
         }},
        {QStringLiteral("plan-absent"),
         {1280, 800},
         [&f, brouillon] {
             f.ouvrePlan(brouillon + QStringLiteral("/absent.gpkg"), QStringLiteral("Absent"));
         }},
        {QStringLiteral("plan-corrompu"),
         {1280, 800},
         [&f, brouillon] {
             const QString faux = brouillon + QStringLiteral("/corrompu.gpkg");
             QFile fichier(faux);
             if (fichier.open(QIODevice::WriteOnly))
                 fichier.write("ceci n'est pas un plan");
             fichier.close();
             f.ouvrePlan(faux, QStringLiteral("Corrompu"));
         }},
        {QStringLiteral("nouveau-plan-abandonne"),
         {1280, 800},
         [&f, repondTaille, brouillon] {
             repondTaille(false);
             f.nouveauCimetiere(brouillon, QStringLiteral("Saint-Roch"));
         }},
        {QStringLiteral("nouveau-plan"),
         {1280, 800},
         [&f, repondTaille, brouillon] {
             repondTaille(true);
             f.nouveauCimetiere(brouillon, QStringLiteral("Saint-Roch"));
         }},
        {QStringLiteral("retour-exemple"),
         {1280, 800},
         [&f, exemple] { f.ouvrePlan(exemple, QStringLiteral("Cimetière d'exemple")); }},
    };
}

// A clerk edits the sample plan: a section drawn as a rectangle, a plot drawn corner by
// corner and numbered, the plot moved with its number following, a distance measured;
// then the move undone and redone, and everything undone, which leaves the sample as it
// was.
std::vector<Etape> edition(FenetrePrincipale& f) {
    Veldra& c = f.plan();
    const Surface& s = c.surface();
    carto::MapView& carte = *s.Map1;
    // An empty corner of the plan, right of the chapel.
    const carto::Rect e =
        c.Calque_Enceinte ? c.Calque_Enceinte->bounds() : carto::Rect{0, 0, 100, 60};
    const carto::Point o{e.xmin + 0.80 * e.width(), e.ymin + 0.12 * e.height()};
    const carto::Point coin1{o.x - 6, o.y - 3}, coin2{o.x + 6, o.y + 5};
    const carto::Point terrain{o.x + 2, o.y};
    return {
        {QStringLiteral("mode-edition"),
         {1280, 800},
         [&s, &carte, o] {
             s.CB_ModeEdition->click();
             if (!s.C_AffSections->isChecked())
                 s.C_AffSections->click();
             carte.setBounds({o.x - 15, o.y - 10, o.x + 15, o.y + 10});
         }},
        {QStringLiteral("section-dessinee"),
         {1280, 800},
         [&s, &carte, coin1, coin2] {
             choisitCalque(s, QStringLiteral("Sections"));
             s.Btn_OutilsDessin_[4]->click();
             glisse(carte, coin1, coin2);
         }},
        {QStringLiteral("terrain-dessine"),
         {1280, 800},
         [&s, &carte, terrain] {
             choisitCalque(s, QStringLiteral("Tombes"));
             s.Btn_OutilsDessin_[3]->click();
             const carto::Point coins[] = {{terrain.x - 0.6, terrain.y - 1},
                                           {terrain.x + 0.6, terrain.y - 1},
                                           {terrain.x + 0.6, terrain.y + 1},
                                           {terrain.x - 0.6, terrain.y + 1}};
             polygone(carte, {std::begin(coins), std::end(coins)});
         }},
        {QStringLiteral("numero-enregistre"),
         {1280, 800},
         [&s, &carte, terrain] {
             s.B_Outils_[3]->click();
             clique(carte, terrain);
             s.SaisieNum->setText(QStringLiteral("99"));
             s.Btn_Sauver->click();
             clique(carte, {terrain.x - 8, terrain.y + 8}); // nothing there: the number shows
         }},
        {QStringLiteral("terrain-deplace"),
         {1280, 800},
         [&s, &carte, terrain] {
             s.Btn_OutilsDessin_[2]->click();
             glisse(carte, terrain, {terrain.x + 2.5, terrain.y + 1});
             // The number follows once the deferred save has run.
             attends([&s] { return !s.Timer1->isActive(); });
             s.B_Outils_[3]->click();
             clique(carte, {terrain.x - 8, terrain.y + 8});
         }},
        {QStringLiteral("distance-mesuree"),
         {1280, 800},
         [&s, &carte, coin1, coin2] {
             s.B_Outils_[7]->click();
             souris(carte, QEvent::MouseButtonPress, coin1);
             souris(carte, QEvent::MouseButtonRelease, coin1);
             const QPointF ecran = carte.toScreen(coin2);
             QMouseEvent e(QEvent::MouseMove, ecran, carte.mapToGlobal(ecran), Qt::NoButton,
                           Qt::NoButton, Qt::NoModifier);
             QCoreApplication::sendEvent(&carte, &e);
         }},
        {QStringLiteral("deplacement-annule"),
         {1280, 800},
         [&s, &carte] {
             s.Btn_FemerPanelDist->click();
             s.B_Outils_[3]->click();
             touche(carte, Qt::Key_Z, Qt::ControlModifier);
         }},
        {QStringLiteral("deplacement-retabli"),
         {1280, 800},
         [&carte] { touche(carte, Qt::Key_Y, Qt::ControlModifier); }},
        {QStringLiteral("tout-annule"),
         {1280, 800},
         [&s] {
             for (int i = 0; i < 20 && s.Btn_AnnulerEdition->isEnabled(); ++i)
                 s.Btn_AnnulerEdition->click();
         }},
    };
}
} // namespace

QStringList nomsScenarios() {
    return {QStringLiteral("premiere-heure"), QStringLiteral("edition"),
            QStringLiteral("placement"),      QStringLiteral("menu"),
            QStringLiteral("recherche"),      QStringLiteral("themes"),
            QStringLiteral("sortie"),         QStringLiteral("rangee"),
            QStringLiteral("presentation")};
}

QStringList joueScenario(FenetrePrincipale& fenetre, const QString& nom, const QString& planExemple,
                         const QString& dossier) {
    if (!nomsScenarios().contains(nom))
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Scénario inconnu : %1 (connus : %2)")
                         .arg(nom, nomsScenarios().join(QStringLiteral(", "))));
    if (!QDir().mkpath(dossier))
        throw Erreur(err::AccesRefuse, QStringLiteral("Le dossier « %1 » ne peut pas être créé.")
                                           .arg(QDir::toNativeSeparators(dossier)));
    QTemporaryDir brouillon;
    Album album(fenetre, dossier);
    const std::vector<Etape> etapes =
        nom == QLatin1String("edition")     ? edition(fenetre)
        : nom == QLatin1String("placement") ? placement(fenetre, planExemple, brouillon.path())
        : nom == QLatin1String("menu")      ? menu(fenetre, album, planExemple, brouillon.path())
        : nom == QLatin1String("recherche") ? recherche(fenetre, brouillon.path())
        : nom == QLatin1String("themes")    ? themes(fenetre, album)
        : nom == QLatin1String("sortie")    ? sortie(fenetre, album, dossier)
        : nom == QLatin1String("rangee")    ? rangee(fenetre, album, planExemple, brouillon.path())
        : nom == QLatin1String("presentation")
            ? presentation(fenetre, album, planExemple, brouillon.path())
            : premiereHeure(fenetre, planExemple, brouillon.path());
    for (const Etape& e : etapes) {
        fenetre.resize(e.taille);
        e.action();
        if (e.capture)
            album.fenetre(e.nom, e.taille);
    }
    // A plan opened from the scratch folder is closed before the folder goes.
    if (nom == QLatin1String("placement") || nom == QLatin1String("recherche") ||
        nom == QLatin1String("menu") || nom == QLatin1String("rangee") ||
        nom == QLatin1String("presentation"))
        fenetre.ouvrePlan(planExemple, QStringLiteral("Cimetière d'exemple"));
    return album.images();
}

} // namespace veldra::demo
