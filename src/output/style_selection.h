#pragma once
// Styles written back to the plan: the first selected feature's style from fStyle
// (Btn_ModifStyle), and one style given to every selected feature of one kind from the
// layer style dialogs ("Style de la sélection"). Each change is one step of the history.

#include "carto/model/feature.h"

namespace veldra {

class Contexte;

// Btn_ModifStyle: fStyle for the first feature of ObjSel, shown modally; for a symbol,
// the symbols' dialog over the current layer's selection.
void modifieStyle(Contexte& ctx);
// The context menu's "Style de la sélection": the dialog of the first selected feature's
// kind, then its style given to every selected feature of that kind.
void styleSelection(Contexte& ctx);

// `style` given to every feature of the current layer's selection whose kind is `kind`;
// texts keep their own angle. Returns how many changed.
int appliqueStyleSelection(Contexte& ctx, carto::FeatureKind kind, const carto::Style& style);
// `feature` stored with `style`, as one step of the history.
void enregistreStyle(Contexte& ctx, const carto::Feature& feature, const carto::Style& style);

} // namespace veldra
