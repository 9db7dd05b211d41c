#pragma once
// The analysis module's widgets connected to their behaviour, in one call for the control.

namespace veldra {

class Contexte;

// Btn_AnalysePlan and the faults panel, the search row, b_selec, Btn_VoirMemorisation,
// Btn_InfosRapides and B_OutilsInfo.
void connecteAnalyse(Contexte& ctx);

} // namespace veldra
