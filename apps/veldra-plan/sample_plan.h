#pragma once
// A realistic sample plan for fixtures, benchmarks and demonstrations; see sample_layout.h
// for what it holds. The same options always give the same features. Plots carry IDGCF
// 1..N in the order they are written (section by section, alley by alley), CLETOMBE
// "section-alley-number", and one number label each on "Numeros" at their centre.

#include <QString>
#include <QtGlobal>

namespace veldra::plantool {

struct SampleOptions {
    int plots = 1200;
    quint32 seed = 1;
    bool raster = true; // also a paper-like image of the plan, "<name>.tif", as layer "Raster"
    QString name = QStringLiteral("Exemple");
    bool faults = false; // a few deliberate faults for the analysis (addDeliberateFaults)
};

inline constexpr int MaxSamplePlots = 1'000'000;

// Writes "<folder>/<name>.gpkg" (and its image), replacing files of the same names;
// creates the folder if needed. Returns the plan's path. Erreur for a negative or too
// large count, a bad name, or a folder or file that cannot be written; a previous plan of
// the same name is then left as it was.
QString generateSamplePlan(const QString& folder, const SampleOptions& options);

} // namespace veldra::plantool
