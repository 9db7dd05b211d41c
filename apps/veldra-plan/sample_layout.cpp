#include "veldra-plan/sample_layout.h"

#include "veldra-plan/random.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

namespace veldra::plantool {

namespace {

// Metres. An alley is a band: a row of plots, the walkway, a second row facing the first.
constexpr double Pitch = 1.6; // plot to plot along an alley; wide enough for turned plots
constexpr double AlleyEnd = 0.5;
constexpr double BandHeight = 8.0;
constexpr double RowZone = 2.9; // from the band's edge to the walkway's edge of a row
constexpr double WalkwayBottom = 3.2;
constexpr double WalkwayTop = 4.8;
constexpr double BandGap = 0.8;
constexpr double SectionMargin = 0.8;
constexpr double MainPath = 5.0;
constexpr double WallMargin = 6.0;
constexpr double Forecourt = 24.0;
constexpr double MinWidth = 70.0;
constexpr int MaxSections = 100;

// Grid of sections and size of the alleys for a count of plots: square-ish sections, about
// 300 plots each until there are 100 of them.
struct Grid {
    int sections;
    int columns;
    int rows;
    int alleysPerSection;
    int plotsPerRow;
};

Grid gridFor(int plots) {
    Grid g{};
    g.sections = std::clamp((plots + 299) / 300, 2, MaxSections);
    g.columns = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(g.sections))));
    g.rows = (g.sections + g.columns - 1) / g.columns;
    const int perSection = (plots + g.sections - 1) / g.sections;
    // A section is as wide as tall when plotsPerRow * Pitch ~ alleys * BandHeight.
    g.alleysPerSection = std::max(2, static_cast<int>(std::lround(std::sqrt(perSection / 10.0))));
    g.plotsPerRow =
        std::max(4, (perSection + 2 * g.alleysPerSection - 1) / (2 * g.alleysPerSection));
    return g;
}

const QStringList& families() {
    static const QStringList names{
        QStringLiteral("Martin"),   QStringLiteral("Bernard"),  QStringLiteral("Dubois"),
        QStringLiteral("Thomas"),   QStringLiteral("Robert"),   QStringLiteral("Richard"),
        QStringLiteral("Petit"),    QStringLiteral("Durand"),   QStringLiteral("Leroy"),
        QStringLiteral("Moreau"),   QStringLiteral("Simon"),    QStringLiteral("Laurent"),
        QStringLiteral("Lefèvre"),  QStringLiteral("Michel"),   QStringLiteral("Garnier"),
        QStringLiteral("Faure"),    QStringLiteral("Rousseau"), QStringLiteral("Blanc"),
        QStringLiteral("Guérin"),   QStringLiteral("Muller"),   QStringLiteral("Henry"),
        QStringLiteral("Roussel"),  QStringLiteral("Nicolas"),  QStringLiteral("Perrin"),
        QStringLiteral("Morin"),    QStringLiteral("Mathieu"),  QStringLiteral("Clément"),
        QStringLiteral("Gauthier"), QStringLiteral("Dumont"),   QStringLiteral("Lopez"),
        QStringLiteral("Fontaine"), QStringLiteral("Chevalier")};
    return names;
}

const QStringList& species() {
    static const QStringList names{QStringLiteral("Tilleul"), QStringLiteral("If"),
                                   QStringLiteral("Cyprès"), QStringLiteral("Marronnier"),
                                   QStringLiteral("Thuya")};
    return names;
}

// The largest number height, in steps of 1 cm, whose digits fit across a plot `width` wide.
double numberSizeFor(int numero, double width) {
    const int digits = static_cast<int>(QString::number(numero).size());
    const double fit = 0.85 * width / (0.64 * digits); // a digit is about 0.64 of its height
    return std::min(0.5, std::floor(fit * 100) / 100);
}

PlotLayout plotAt(Point centre, double width, double depth, double angle) {
    PlotLayout p;
    const Ring upright = rectangle(centre.x - width / 2, centre.y - depth / 2, centre.x + width / 2,
                                   centre.y + depth / 2);
    p.corners = angle == 0 ? upright : rotated(upright, centre, angle);
    p.centre = centre;
    p.angle = angle;
    return p;
}

// Plots of one alley: the lower row from left to right, then the upper row back from right
// to left, so that numbers run round the walkway.
void fillAlley(AlleyLayout& alley, double x0, double bottom, int count, Random& rnd) {
    const double width = 0.9 + 0.1 * rnd.integer(0, 3);
    const double depth = 2.0 + 0.1 * rnd.integer(0, 4);
    double angle = 0;
    if (rnd.chance(0.25)) {
        const double turn = std::round(rnd.real(3, 8) * 2) / 2; // half degrees
        angle = rnd.chance(0.5) ? turn : -turn;
    }
    const int lower = (count + 1) / 2;
    const int upper = count - lower;
    alley.plots.reserve(static_cast<std::size_t>(count));
    const auto add = [&](int column, bool upperRow) {
        const double cx = x0 + AlleyEnd + (column + 0.5) * Pitch;
        const double cy = upperRow ? bottom + BandHeight - RowZone + 0.3 + depth / 2
                                   : bottom + RowZone - 0.3 - depth / 2;
        PlotLayout p = plotAt({cx, cy}, width, depth, angle);
        p.numero = static_cast<int>(alley.plots.size()) + 1;
        p.numberSize = numberSizeFor(p.numero, width);
        if (rnd.chance(0.3))
            p.family = families().at(rnd.integer(0, static_cast<int>(families().size()) - 1));
        alley.plots.push_back(std::move(p));
    };
    for (int i = 0; i < lower; ++i)
        add(i, false);
    for (int i = upper - 1; i >= 0; --i)
        add(i, true);
}

Ring latinCross(Point c) {
    // Nave 5 m wide and 12 m long from south to north, transept 11 m by 4 m.
    const double n = 2.5;
    const double t = 5.5;
    return {{c.x - n, c.y - 6},   {c.x + n, c.y - 6},   {c.x + n, c.y - 0.5}, {c.x + t, c.y - 0.5},
            {c.x + t, c.y + 3.5}, {c.x + n, c.y + 3.5}, {c.x + n, c.y + 6},   {c.x - n, c.y + 6},
            {c.x - n, c.y + 3.5}, {c.x - t, c.y + 3.5}, {c.x - t, c.y - 0.5}, {c.x - n, c.y - 0.5}};
}

} // namespace

int SampleLayout::plotCount() const {
    int n = 0;
    for (const SectionLayout& s : sections)
        for (const AlleyLayout& a : s.alleys)
            n += static_cast<int>(a.plots.size());
    return n;
}

SampleLayout layOutSample(int plots, const QString& cemetery, quint32 seed) {
    Random rnd(seed);
    const Grid g = gridFor(std::max(plots, 0));
    const int totalAlleys = g.sections * g.alleysPerSection;
    const double alleyLength = g.plotsPerRow * Pitch + 2 * AlleyEnd;
    const double sectionWidth = alleyLength + 2 * SectionMargin;
    const double sectionHeight =
        2 * SectionMargin + g.alleysPerSection * BandHeight + (g.alleysPerSection - 1) * BandGap;
    const double gridWidth = g.columns * sectionWidth + (g.columns - 1) * MainPath;
    const double gridHeight = g.rows * sectionHeight + (g.rows - 1) * MainPath;

    SampleLayout out;
    out.width = std::max(gridWidth + 2 * WallMargin, MinWidth);
    const double top = Forecourt + gridHeight + WallMargin;
    // A slanting north wall keeps the enclosure from being a plain rectangle.
    const double rise = rnd.real(0, 6);
    const bool risesEast = rnd.chance(0.5);
    out.enclosure = {{0, 0},
                     {out.width, 0},
                     {out.width, top + (risesEast ? rise : 0)},
                     {0, top + (risesEast ? 0 : rise)}};
    out.height = top + rise;

    const double gridX = (out.width - gridWidth) / 2;
    const double gridY = Forecourt;
    int alleyIndex = 0;
    for (int s = 0; s < g.sections; ++s) {
        SectionLayout section;
        // "A" to "Z", then "AA", "AB"...
        section.name = s < 26 ? QString(QChar(u'A' + s))
                              : QString(QChar(u'A' + s / 26 - 1)) + QChar(u'A' + s % 26);
        const double x0 = gridX + (s % g.columns) * (sectionWidth + MainPath);
        const double y1 = gridY + gridHeight - (s / g.columns) * (sectionHeight + MainPath);
        const double y0 = y1 - sectionHeight;
        // Hand-drawn corners: each pushed out by up to half a metre.
        const auto jitter = [&rnd] { return rnd.real(0, 0.5); };
        section.outline = {{x0 - jitter(), y0 - jitter()},
                           {x0 + sectionWidth + jitter(), y0 - jitter()},
                           {x0 + sectionWidth + jitter(), y1 + jitter()},
                           {x0 - jitter(), y1 + jitter()}};
        for (int a = 0; a < g.alleysPerSection; ++a, ++alleyIndex) {
            AlleyLayout alley;
            alley.ordinal = a + 1;
            const bool ownName = s == 0 && a == g.alleysPerSection - 1;
            alley.name = ownName ? QStringLiteral("Allée des Cyprès")
                                 : QStringLiteral("Allée %1").arg(alley.ordinal);
            const double ax = x0 + SectionMargin;
            const double bandTop = y1 - SectionMargin - a * (BandHeight + BandGap);
            const double bandBottom = bandTop - BandHeight;
            alley.outline = rectangle(ax, bandBottom, ax + alleyLength, bandTop);
            const double walkY = bandBottom + (WalkwayBottom + WalkwayTop) / 2;
            alley.walkway = {{ax, walkY}, {ax + alleyLength, walkY}};
            const int count = plots / totalAlleys + (alleyIndex < plots % totalAlleys ? 1 : 0);
            fillAlley(alley, ax, bandBottom, count, rnd);
            section.alleys.push_back(std::move(alley));
        }
        out.sections.push_back(std::move(section));
    }

    // Main paths: round the sections, between them, and from the gate to the sections.
    const double left = gridX - MainPath / 2;
    const double right = gridX + gridWidth + MainPath / 2;
    const double bottom = gridY - MainPath / 2;
    const double upper = gridY + gridHeight + MainPath / 2;
    out.paths.push_back(
        {{left, bottom}, {right, bottom}, {right, upper}, {left, upper}, {left, bottom}});
    for (int c = 1; c < g.columns; ++c) {
        const double x = gridX + c * (sectionWidth + MainPath) - MainPath / 2;
        out.paths.push_back({{x, bottom}, {x, upper}});
    }
    for (int r = 1; r < g.rows; ++r) {
        const double y = gridY + gridHeight - r * (sectionHeight + MainPath) + MainPath / 2;
        out.paths.push_back({{left, y}, {right, y}});
    }
    const double gate = out.width / 2;
    out.paths.push_back({{gate, 0}, {gate, bottom}});

    out.chapelCentre = {gate + 16, Forecourt / 2};
    out.chapel = latinCross(out.chapelCentre);
    out.fountain = {gate - 8, 18.5}; // by the path, clear of the name and the avenue

    const auto tree = [&](Point at) {
        out.trees.push_back(
            {at, species().at(rnd.integer(0, static_cast<int>(species().size()) - 1))});
    };
    for (double y = 5; y < top - 3; y += 10) {
        tree({2.5, y});
        tree({out.width - 2.5, y});
    }
    for (double y = 4; y < Forecourt - 6; y += 6) {
        tree({gate - 3.5, y});
        tree({gate + 3.5, y});
    }

    out.texts.push_back({QStringLiteral("Cimetière ") + cemetery,
                         {out.width / 4, Forecourt / 2},
                         2.5,
                         true,
                         false});
    out.texts.push_back({QStringLiteral("Entrée"), {gate, 2}, 1.5, false, true});
    out.texts.push_back({QStringLiteral("Chapelle"), out.chapelCentre, 1.2, false, true});
    return out;
}

namespace {

void moveTo(PlotLayout& p, Point centre) {
    const double dx = centre.x - p.centre.x, dy = centre.y - p.centre.y;
    for (Point& c : p.corners) {
        c.x += dx;
        c.y += dy;
    }
    p.centre = centre;
}

} // namespace

void addDeliberateFaults(SampleLayout& layout) {
    if (layout.sections.empty() || layout.sections.front().alleys.empty())
        return;
    std::vector<PlotLayout>& first = layout.sections.front().alleys.front().plots;
    if (first.size() >= 4) {
        PlotLayout& moved = first[1];
        moveTo(moved, {moved.centre.x - 1.0, moved.centre.y});
        first[3].numero = first[2].numero;
        first[3].numberSize = first[2].numberSize;
    }
    if (first.size() >= 6)
        first[5].numbered = false;

    SectionLayout& lastSection = layout.sections.back();
    if (lastSection.alleys.size() >= 2)
        lastSection.alleys[1].name.clear();
    std::vector<PlotLayout>& last = lastSection.alleys.back().plots;
    if (&last == &first || last.size() < 3)
        return;
    // Clear of the forecourt's trees, paths and texts; the east wall is x = width.
    const double forecourt = Forecourt - 5;
    moveTo(last[last.size() - 3], {0.1 * layout.width, forecourt});
    moveTo(last[last.size() - 2], {layout.width, 10});
    moveTo(last[last.size() - 1], {layout.width + 4, 10});
}

} // namespace veldra::plantool
