#include "scenario.h"

#include "base/erreur.h"
#include "capture_fenetre.h"
#include "carto/view/map_view.h"
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"
#include "photos_demo.h"
#include "registre.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <functional>
#include <vector>

namespace veldra::demo {

namespace {

struct Etape {
    QString nom;
    QSize taille;
    std::function<void()> action;
    bool capture = true; // false when the step took its own pictures
};

// The pictures of a scenario, numbered in the order they are taken.
class Album {
public:
    Album(FenetrePrincipale& fenetre, const QString& dossier)
        : fenetre_(fenetre), dossier_(dossier) {}
    QString suivante(const QString& nom) {
        const QString image = dossier_.filePath(
            QStringLiteral("%1-%2.png").arg(++numero_, 2, 10, QLatin1Char('0')).arg(nom));
        images_ << image;
        return image;
    }
    void fenetre(const QString& nom, QSize taille) {
        captureFenetre(fenetre_, fenetre_.plan().surface().Map1, suivante(nom), taille);
    }
    void dialogue(QDialog& d, const QString& nom, QSize taille) {
        captureDialogue(fenetre_, d, fenetre_.plan().surface().Map1, suivante(nom), taille);
    }
    const QStringList& images() const { return images_; }

private:
    FenetrePrincipale& fenetre_;
    QDir dossier_;
    int numero_ = 0;
    QStringList images_;
};

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

// Mouse events as the map receives them; the left button is held between press and
// release.
void souris(carto::MapView& carte, QEvent::Type type, carto::Point p,
            Qt::MouseButton bouton = Qt::LeftButton) {
    const QPointF ecran = carte.toScreen(p);
    const Qt::MouseButtons tenus = type == QEvent::MouseMove ? Qt::MouseButtons(Qt::LeftButton)
                                   : type == QEvent::MouseButtonRelease ? Qt::MouseButtons()
                                                                        : Qt::MouseButtons(bouton);
    QMouseEvent e(type, ecran, carte.mapToGlobal(ecran), bouton, tenus, Qt::NoModifier);
    QCoreApplication::sendEvent(&carte, &e);
}

void glisse(carto::MapView& carte, carto::Point de, carto::Point a) {
    souris(carte, QEvent::MouseButtonPress, de);
    for (int i = 1; i <= 4; ++i)
        souris(carte, QEvent::MouseMove,
               {de.x + (a.x - de.x) * i / 4, de.y + (a.y - de.y) * i / 4});
    souris(carte, QEvent::MouseButtonRelease, a);
}

void clique(carto::MapView& carte, carto::Point p) {
    souris(carte, QEvent::MouseButtonPress, p);
    souris(carte, QEvent::MouseButtonRelease, p);
}

// A key pressed on the map, as the clerk's keyboard sends it.
void touche(carto::MapView& carte, int cle, Qt::KeyboardModifiers modificateurs) {
    QKeyEvent e(QEvent::KeyPress, cle, modificateurs);
    QCoreApplication::sendEvent(&carte, &e);
}

void choisitCalque(const Surface& s, const QString& nom) {
    const int i = s.Combo_Calque->findText(nom);
    s.Combo_Calque->setCurrentIndex(i);
    emit s.Combo_Calque->activated(i);
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
             for (const carto::Point& p : coins)
                 clique(carte, p);
             souris(carte, QEvent::MouseButtonDblClick, coins[3]);
             souris(carte, QEvent::MouseButtonRelease, coins[3]);
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
             const QDeadlineTimer fin(2000);
             while (s.Timer1->isActive() && !fin.hasExpired())
                 QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
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

template <typename T> T* enfant(QWidget& w, const char* nom) {
    T* trouve = w.findChild<T*>(QString::fromLatin1(nom));
    if (!trouve)
        throw Erreur(
            err::ErreurInterne,
            QStringLiteral("Scénario : « %1 » introuvable.").arg(QString::fromLatin1(nom)));
    return trouve;
}

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
         [&c, &s, &album, sans, avec, autour, selectionne, taille] {
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

} // namespace

QStringList nomsScenarios() {
    return {QStringLiteral("premiere-heure"), QStringLiteral("edition"), QStringLiteral("themes")};
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
    const std::vector<Etape> etapes = nom == QLatin1String("edition") ? edition(fenetre)
                                      : nom == QLatin1String("themes")
                                          ? themes(fenetre, album)
                                          : premiereHeure(fenetre, planExemple, brouillon.path());
    for (const Etape& e : etapes) {
        fenetre.resize(e.taille);
        e.action();
        if (e.capture)
            album.fenetre(e.nom, e.taille);
    }
    return album.images();
}

} // namespace veldra::demo
