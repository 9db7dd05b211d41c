#pragma once
// Saving what the clerk typed in the side panel: a section's or an alley's name, or a
// plot's number with its label, fitted inside the plot and turned by its number angle.
// The plan's naming rules hold: a section name is unique in the plan, an alley name in
// its section, a plot number in its alley.

namespace carto {
class Feature;
}

namespace veldra {

class Contexte;

// Saves `fSel` of the current layer from Label_Nom or SaisieNum. A broken rule is told
// to the user and nothing is written; a failure of the engine ends it silently, with
// nothing written either.
void Sauve(Contexte& ctx, const carto::Feature& fSel);

// Btn_Sauver: the first feature of ObjSel; the section list follows a section's new name.
void sauveSelection(Contexte& ctx);

} // namespace veldra
