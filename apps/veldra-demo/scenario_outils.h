#pragma once
// What the scripted sessions share: a step (a name, a window size, what the clerk does),
// and the clerk's hand on the map (mouse and keys as the map view receives them).

#include "carto/geometry/point.h"

#include <QEvent>
#include <QSize>
#include <QString>
#include <functional>
#include <vector>

namespace carto {
class MapView;
}

namespace veldra {
struct Surface;
}

namespace veldra::demo {

struct Etape {
    QString nom;
    QSize taille;
    std::function<void()> action;
};

// Mouse events as the map receives them; the left button is held between press and
// release.
void souris(carto::MapView& carte, QEvent::Type type, carto::Point p,
            Qt::MouseButton bouton = Qt::LeftButton);
void glisse(carto::MapView& carte, carto::Point de, carto::Point a);
void clique(carto::MapView& carte, carto::Point p);
// A polygon drawn corner by corner, closed by a double click on the last corner.
void polygone(carto::MapView& carte, const std::vector<carto::Point>& coins);
// A key pressed on the map, as the clerk's keyboard sends it.
void touche(carto::MapView& carte, int cle, Qt::KeyboardModifiers modificateurs);
// The clerk picks a layer in Combo_Calque.
void choisitCalque(const Surface& s, const QString& nom);
// Lets the event loop run until `fini` says so, two seconds at most.
void attends(const std::function<bool()>& fini);

} // namespace veldra::demo
