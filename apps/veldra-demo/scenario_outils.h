#pragma once
// What the scripted sessions share: a step (a name, a window size, what the clerk does),
// and the clerk's hand on the map (mouse and keys as the map view receives them).

#include "base/erreur.h"
#include "carto/geometry/point.h"
#include "context/prompter.h"

#include <QDialog>
#include <QDir>
#include <QEvent>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <vector>

class QAction;
class QMenu;

namespace carto {
class MapView;
}

namespace veldra {
struct Surface;
}

namespace veldra::demo {

class FenetrePrincipale;

struct Etape {
    QString nom;
    QSize taille;
    std::function<void()> action;
    bool capture = true; // false when the step took its own pictures
};

// The pictures of a scenario, numbered in the order they are taken.
class Album {
public:
    Album(FenetrePrincipale& fenetre, const QString& dossier);
    // The path of the next picture, named after the step.
    QString suivante(const QString& nom);
    // The window as it is, with the pop-up menus and dialogs open over it.
    void fenetre(const QString& nom, QSize taille);
    // The window with a modal dialog over it.
    void dialogue(QDialog& d, const QString& nom, QSize taille);
    // The window with a pop-up menu open at `ecran`.
    void menu(QWidget& m, QPoint ecran, const QString& nom, QSize taille);
    const QStringList& images() const { return images_; }

private:
    FenetrePrincipale& fenetre_;
    QDir dossier_;
    int numero_ = 0;
    QStringList images_;
};

// The control's messages in the window's banner, so that a picture shows them.
class PrompterBandeau : public Prompter {
public:
    explicit PrompterBandeau(FenetrePrincipale& f) : f_(f) {}
    int message(const QString& texte, int boutons, const QString& titre) override;

private:
    FenetrePrincipale& f_;
};

// The child widget named `nom`; Erreur when the scenario does not find it.
template <typename T> T* enfant(QWidget& w, const char* nom) {
    T* trouve = w.findChild<T*>(QString::fromLatin1(nom));
    if (!trouve)
        throw Erreur(
            err::ErreurInterne,
            QStringLiteral("Scénario : « %1 » introuvable.").arg(QString::fromLatin1(nom)));
    return trouve;
}

// Mouse events as the map receives them; the left button is held between press and
// release.
void souris(carto::MapView& carte, QEvent::Type type, carto::Point p,
            Qt::MouseButton bouton = Qt::LeftButton);
void glisse(carto::MapView& carte, carto::Point de, carto::Point a);
void clique(carto::MapView& carte, carto::Point p);
// The pointer over `p` with no button held, as between two corners of a drawing.
void survole(carto::MapView& carte, carto::Point p);
// A polygon drawn corner by corner, closed by a double click on the last corner.
void polygone(carto::MapView& carte, const std::vector<carto::Point>& coins);
// A key pressed on the map, as the clerk's keyboard sends it.
void touche(carto::MapView& carte, int cle, Qt::KeyboardModifiers modificateurs);
// The clerk picks a layer in Combo_Calque.
void choisitCalque(const Surface& s, const QString& nom);
// The sample plan and its picture copied into `dossier`, so that a scenario may change
// it; the copy's path.
QString copieExemple(const QString& exemple, const QString& dossier);
// The entry of a pop-up menu or of its sub-menus captioned `texte`; nullptr when none.
QAction* entreeDe(QMenu& menu, const QString& texte);
// Lets the event loop run until `fini` says so, two seconds at most.
void attends(const std::function<bool()>& fini);

} // namespace veldra::demo
