#pragma once
// The localisation image: the whole cemetery with one plot highlighted and ringed in red,
// written beside the control as "ImageL.jpg" for the host's documents (a concession file,
// a letter to a family). The clerk's view, the plots' selection and ObjSel are put back
// exactly as they were. The result, read once by the host through
// ImageLocalisationTerminee, is the image's path, or "-1" when no plot bears the key.

#include <QString>

namespace veldra {

class Contexte;

// The file the image goes to: "ImageL.jpg" (beyond the original, "ImageL.png" when the
// host asks for PNG) in the control's folder, or in the user's data folder when that
// folder cannot be written.
QString cheminImageLocalisation(const Contexte& ctx);

// Any text is accepted as the key: one that is not a plot's number finds nothing. No
// image is written when nothing is found, even over an earlier selection. Erreur (no plan
// open, an image that cannot be written) after the view and selection are put back, the
// result then being "-1".
void ImageLocalisation(Contexte& ctx, const QString& sIdGCF);

} // namespace veldra
