#pragma once
// The photographs linked to plots: the path of an image file in the plot's "Photo", set
// and cleared by the host by concession key (AddPhoto, DelPhoto), read by plot number
// (CheminPhoto), collected for the whole plan (GetPhotos), and shown to the user with
// the panel's Btn_Visu. The host's writes are not steps of the user's history; as MAJ,
// a write that changed something empties that history, whose earlier steps would bring
// the old links back.

#include "recordset/recordset.h"

#include <QString>

namespace veldra {

class Contexte;

// True when the call ran to its end (a key that matches no plot changes nothing). An
// error is shown titled "AddPhoto" or "DelPhoto" and the result is false. A path longer
// than the column is refused, never cut. DelPhoto leaves " " in the plots that had a link.
bool AddPhoto(Contexte& ctx, const QString& sIdGCF, const QString& sName);
bool DelPhoto(Contexte& ctx, const QString& sIdGCF);

// The "Photo" of the plot whose CLETOMBE is `sID`; empty, after a message, when no plot
// or several plots bear that number. With `Ouvrir`, the photo viewer is shown on it,
// whatever was found.
QString CheminPhoto(Contexte& ctx, const QString& sID, bool Ouvrir);

// One record per region plot with a photo: IdGCF, IdMapInfo, Photo as stored. The gauge
// runs over every plot. Errors are shown titled "GetPhotos" and nothing is returned.
RecordsetPtr GetPhotos(Contexte& ctx);

// The photo of the first selected plot in the viewer; a linked file that has gone is said
// once and the link removed.
void Btn_Visu_Click(Contexte& ctx);

} // namespace veldra
