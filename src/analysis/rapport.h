#pragma once
// The plan analysis report "AnalysePlan.txt": its lines, in the order hosts parse them,
// and the file, in Windows-1252 with CR LF line ends, rewritten on every analysis.

#include "analysis/analyse_plan.h"

#include <QString>
#include <QStringList>

namespace veldra {

// What the report says of the plan besides the counts of the analysis.
struct DescriptionPlan {
    QString nom; // the cemetery's name as the control shows it
    int sections = 0;
    int allees = 0;
    int terrains = 0;
    double largeurEnceinte = 0; // metres, of the enclosure's bounding rectangle
    double hauteurEnceinte = 0;
    int elementsEnceinte = 0;
    int elementsDecor = 0;
    int elementsTexte = 0;
};

DescriptionPlan decritPlan(Contexte& ctx);

// A length rounded to one decimal, half to even, with the system's decimal separator and
// no trailing zero: 120 gives "120", 80.25 gives "80,2" with a French separator.
QString longueurRapport(double metres, QChar separateur);

// The report's lines without their ends. With `detaillee`, the overlap and repeated-number
// checks follow in a section of their own, after every line of the original report.
QStringList lignesRapport(const DescriptionPlan& plan, const Constats& c, bool detaillee,
                          QChar separateur);

// Where the report goes: the folder of `repFicAnalyse` (a relative path is taken from
// `dossierControle`), or the fallback folder when that one cannot be written; the file
// keeps the name `repFicAnalyse` gives, "AnalysePlan.txt" when it ends with "/".
QString cheminRapport(const QString& repFicAnalyse, const QString& dossierControle);

// Replaces the file by the lines, at once or not at all. Erreur (AccesRefuse) when it
// cannot be written.
void ecritRapport(const QString& chemin, const QStringList& lignes);

} // namespace veldra
