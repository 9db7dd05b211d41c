#pragma once
// The printed page, beyond the original: the title and the date above the map, the map
// at the chosen scale in a frame, the comments, the scale in words and as a bar, and a
// north arrow below it; the theme's legend in the frame's corner. Everything is drawn as
// vectors and texts, so a PDF keeps lines sharp and texts searchable, and the scale is
// exact on paper: at 1/500, 1 cm of the page shows 5 m of the plan.
//
// The page is drawn in units of 1/kResolution inch: a line of width 1 is that thin, a
// text or a plot smaller than a few of these units is left out, as the screen leaves out
// what is smaller than a few pixels.

#include <QDate>
#include <QPageLayout>
#include <QPageSize>
#include <QRectF>
#include <QString>

class QPainter;

namespace carto {
struct Viewport;
}

namespace veldra {

class Contexte;

struct MiseEnPage {
    QPageSize::PageSizeId papier = QPageSize::A4;
    QPageLayout::Orientation orientation = QPageLayout::Portrait;
    QString titre;
    QString commentaires;
    double echelle = 500;   // the denominator: 500 for 1/500
    bool selection = false; // the selection is highlighted
    QDate date = QDate::currentDate();
};

inline constexpr int kResolution = 192; // units of the page per inch

// The denominator that an Impression scale stands for: " Echelle courante" is the main
// map's scale on screen, rounded to a whole number; otherwise a whole number from 1 to
// 1,000,000, written alone or after "1/". Erreur (AppelIncorrect) for anything else: 0,
// -1, a text, or the current scale of a map with no width on screen.
double denominateurEchelle(const Contexte& ctx, const QString& echelle);

// The page's layout in its units: where the map's frame lies on a page of that format.
QPageLayout disposition(const MiseEnPage& m);
QRectF cadreCarte(const MiseEnPage& m);
// What the frame shows: the main map's centre at the page's scale, the frame's size in
// whole units so the scale stays exact.
carto::Viewport vueImprimee(const Contexte& ctx, const MiseEnPage& m);

// Draws the page with `painter`, whose device has kResolution units per inch and whose
// origin is the paper's corner.
void dessinePage(const Contexte& ctx, QPainter& painter, const MiseEnPage& m);

} // namespace veldra
