#pragma once
// The memorised selection: the concession keys of the plots selected when the clerk
// memorised them, kept by the control until the next memorisation, shown again on the
// map on request and handed to the host as a record set ("IdGCF N").

#include "recordset/recordset.h"

namespace veldra {

class Contexte;

inline constexpr const char* kSpecMemorisation = "IdGCF N";

// The plots of ObjSel (the current layer's selection), by their IDGCF, in selection
// order. Features of another layer than the plots are left out. The set is replaced only
// once it is whole.
void EnregistreMemorisation(Contexte& ctx);
// Btn_VoirMemorisation: the memorised plots selected and framed (SitueTombes).
void AfficheMemorisation(Contexte& ctx);
// A copy of the memorised set on its first record, with rows of its own; a message and
// nullptr before any memorisation.
RecordsetPtr GetEltsMemorises(Contexte& ctx);
qint32 GetNbEltsMemorises(const Contexte& ctx);

// Connects Btn_VoirMemorisation.
void connecteMemorisation(Contexte& ctx);

} // namespace veldra
