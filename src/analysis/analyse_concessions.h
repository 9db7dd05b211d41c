#pragma once
// The plan analysis as the control runs it: the three passes under the gauge, the report
// written, and for the analysis button the report opened in the text editor. Every error
// is told in a message titled "AnalyseConcessions" and the analysis goes on, so the
// report is written (and opened) whatever happened before.

#include <QString>

namespace veldra {

class Contexte;

// Runs the analysis and writes the report. The report's path.
QString AnalyseConcessions(Contexte& ctx);
// Btn_AnalysePlan: the analysis, then the report in the editor.
void analyseEtOuvre(Contexte& ctx);

} // namespace veldra
