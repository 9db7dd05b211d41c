#pragma once
// A picture of the whole window, taken once the control has finished drawing: the map
// view renders in the background, so the window is given time to lay out and paint, then
// the render under way is awaited before the grab.

#include <QPoint>
#include <QSize>
#include <QString>

class QWidget;

namespace carto {
class MapView;
}

namespace veldra::demo {

inline constexpr QSize TailleCapture{1280, 800};

// Shows `fenetre` at `taille`, waits for `carte` (may be null) and saves the window as a
// PNG to `fichier`. Erreur with a French message when the file cannot be written.
void captureFenetre(QWidget& fenetre, carto::MapView* carte, const QString& fichier,
                    QSize taille = TailleCapture);

// The same, with `dialogue` (a modal dialog the control opened) drawn over the window, in
// its middle, under a title bar bearing its title, as the clerk sees it.
void captureDialogue(QWidget& fenetre, QWidget& dialogue, carto::MapView* carte,
                     const QString& fichier, QSize taille = TailleCapture);

// The same, with a pop-up `menu` open at `ecran` (global coordinates) drawn over the
// window where the clerk sees it, with a shadow.
void captureMenu(QWidget& fenetre, QWidget& menu, QPoint ecran, carto::MapView* carte,
                 const QString& fichier, QSize taille = TailleCapture);

} // namespace veldra::demo
