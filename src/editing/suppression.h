#pragma once
// Deleting the selected features of the current layer. Sections, alleys and plots go only
// once the host has agreed (ConfirmSupp); the plots take their number labels with them.

#include <QString>

namespace veldra {

class Contexte;

// Deletes the features of ObjSel from the current layer, then resets the side panel and
// clears the selection.
void procedureSuppression(Contexte& ctx);
// The host's answer to a deletion request: true deletes, false shows its message.
// "Supprimer" in edit mode: sections, alleys and plots are only requested from the host
// (SuppressionSection, SuppressionAllee, SuppressionTerrain, each with its list of entries
// ending in "*"), which answers with ConfirmSupp; the features of the other layers go at
// once, as one undoable step.
void DemandeSuppression(Contexte& ctx);
void ConfirmSupp(Contexte& ctx, bool valeurConfirm, const QString& message);

} // namespace veldra
