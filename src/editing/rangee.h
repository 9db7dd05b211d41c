#pragma once
// Rows of numbered plots (beyond the original, with "Rangées d'emplacements" ticked): from
// a model plot, a number of plots side by side along its first side or across it, each
// numbered (prefix, number, suffix) and labelled as Sauve labels a plot. One transaction,
// one step of the history. Plots that would leave the model's section or cover another
// plot are not made; numbers already borne in that section are refused before anything is
// written.

#include "carto/model/feature.h"

#include <QString>

namespace veldra {

class Contexte;

struct DemandeRangee {
    int nombre = 10;
    double ecart = 0;       // metres between two plots
    bool enTravers = false; // along the model's second side instead of its first
    qint64 premier = 1;     // the first number
    qint64 pas = 1;
    QString prefixe;
    QString suffixe;
};

struct BilanRangee {
    int crees = 0;
    int horsSection = 0;
    int surUnAutre = 0;
};

// The number of the i-th plot of the row (0-based), as written in its Numero.
QString numeroDeRangee(const DemandeRangee& d, int i);

// Erreur (ArgumentsIncorrects) with a French message when the model is not a plot of four
// corners, a value is out of bounds, a number would not fit the plots' column or is
// already borne in the section: nothing is written then.
BilanRangee creeRangee(Contexte& ctx, const carto::Feature& modele, const DemandeRangee& d);

// The command: the dialog for the selected plot, the row, and what was made and skipped.
void commandeRangee(Contexte& ctx);

} // namespace veldra
