#pragma once
// The checks of the plan analysis: three passes (plots, sections, alleys) that count what
// a hand-drawn plan gets wrong: plots without a number, outside every section or alley,
// features sticking out of the enclosure or lying outside it, sections and alleys
// without a name. The detailed analysis (off unless the host asks) also finds plots that
// overlap and numbers repeated in an alley, and lists every fault with its feature.
//
// The enclosure is the union of the enclosure layer's features, prepared once per
// analysis. A plan without enclosure features gets no enclosure test at all: nothing is
// counted against an enclosure that does not exist.

#include "carto/model/feature.h"

#include <QString>
#include <functional>
#include <vector>

namespace veldra {

class Contexte;
class Erreur;

enum class GenreAnomalie {
    TerrainSansNumero,
    TerrainSansAllee,
    TerrainSansSection,
    TerrainNonInclus,
    TerrainExterieur,
    TerrainChevauchant,
    NumeroRepete,
    SectionSansNom,
    SectionExterieure,
    SectionNonIncluse,
    AlleeSansNom,
    AlleeExterieure,
    AlleeNonIncluse,
};

// One fault of one feature, as the faults panel lists it.
struct Anomalie {
    GenreAnomalie genre;
    QString calque; // the layer's name
    qint64 fid = -1;
    QString libelle; // "Terrain n° 12 (section A, Allée 1) : hors de l'enceinte"
};

struct Constats {
    int terrainsSansNumero = 0;
    int terrainsSansAllee = 0;
    int terrainsSansSection = 0;
    int terrainsNonInclus = 0; // not entirely inside the enclosure
    int terrainsExterieurs = 0;
    int sectionsSansNom = 0;
    int sectionsExterieures = 0;
    int sectionsNonIncluses = 0;
    int alleesSansNom = 0;
    int alleesExterieures = 0;
    int alleesNonIncluses = 0;
    // Detailed analysis only.
    int terrainsChevauchants = 0; // plots overlapping another by more than 0.01 m²
    int numerosRepetes = 0;       // plots whose number another plot of their alley bears
    std::vector<Anomalie> anomalies;
};

struct OptionsAnalyse {
    bool jauge = true;      // each pass shows the gauge
    bool detaillee = false; // overlaps, repeated numbers and the list of faults
    // Told of a pass's first error; the pass goes on with the next feature and the
    // analysis with the next pass.
    std::function<void(const Erreur&)> signale;
};

// Overlaps smaller than this are drawing noise, not two plots on the same ground.
inline constexpr double kChevauchementMinimal = 0.01; // m²

// Runs the three passes, then `ensuite` (the report written) under the alleys' gauge,
// which closes after it.
Constats analysePlan(Contexte& ctx, const OptionsAnalyse& options,
                     const std::function<void(const Constats&)>& ensuite = {});

// The engine's intersection test of `f` against the union of the enclosure's features,
// combined again on each call: mode 1, they intersect; mode 2, `f` lies entirely within
// it. Erreur when the plan has no enclosure feature or the mode is neither.
bool DansEnceinte(Contexte& ctx, const carto::Feature& f, int mode);

} // namespace veldra
