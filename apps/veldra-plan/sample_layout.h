#pragma once
// The geometry and names of a sample cemetery, before anything is written. For a count of
// plots and a seed the layout is always the same. Guarantees:
// - the enclosure's lower-left corner is (0, 0) and every other shape lies inside it;
// - at least two sections, named "A", "B"..., that do not overlap;
// - at least two alleys per section, inside it and apart from each other; "Allée 1",
//   "Allée 2"... repeat from section to section, and the last alley of the first section
//   bears a name no other alley has;
// - exactly `plots` plots, spread evenly over the alleys, each a quadrilateral of about
//   1 m by 2 m (some turned a few degrees) lying inside its alley, numbered 1, 2...
//   within its alley.

#include "veldra-plan/shapes.h"

#include <QString>
#include <QtGlobal>
#include <vector>

namespace veldra::plantool {

struct PlotLayout {
    Ring corners; // four distinct corners
    Point centre;
    double angle = 0; // degrees it is turned from its alley; also its number's angle
    int numero = 0;
    bool numbered = true;    // false: the plot has no number yet, and no label
    double numberSize = 0.5; // height of its number, to fit across the plot
    QString family;          // empty for most plots
};

struct AlleyLayout {
    QString name;
    int ordinal = 0; // 1.. within its section
    Ring outline;
    Polyline walkway;
    std::vector<PlotLayout> plots;
};

struct SectionLayout {
    QString name;
    Ring outline;
    std::vector<AlleyLayout> alleys;
};

struct TreeLayout {
    Point at;
    QString species;
};

struct FreeText {
    QString text;
    Point at;
    double size = 1;
    bool bold = false;
    bool halo = false;
};

struct SampleLayout {
    Ring enclosure;
    double width = 0; // the enclosure's bounding box is (0, 0) - (width, height)
    double height = 0;
    std::vector<SectionLayout> sections;
    Ring chapel;
    Point chapelCentre;
    Point fountain;
    std::vector<Polyline> paths;
    std::vector<TreeLayout> trees;
    std::vector<FreeText> texts;

    int plotCount() const;
};

// `plots` >= 0; `cemetery` is the name written on the plan.
SampleLayout layOutSample(int plots, const QString& cemetery, quint32 seed);

// What a plan drawn by hand gets wrong, put into the layout on purpose so that checking
// the plan has something to find. Each fault needs its plots and is left out when the
// layout has too few:
// - in the first alley of the first section: its 2nd plot moved onto the 1st (they
//   overlap), its 4th plot given the number of its 3rd, its 6th plot left unnumbered;
// - from the last alley of the last section, its last three plots moved: one into the
//   forecourt (in no section and no alley), one across the east wall, one outside it;
// - the second alley of the last section has no name.
void addDeliberateFaults(SampleLayout& layout);

} // namespace veldra::plantool
