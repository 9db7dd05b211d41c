#pragma once
// Printing through the host: the main map exported as "carte.jpg" into the export folder
// and handed to the host, with the title, the comments and the scale, by
// DemandeImpressionCarte; the host lays out the page and prints it. Btn_Imprimer asks for
// these in the Impression dialog first; hosts may call ImpCarte themselves.

#include <QString>

namespace veldra {

class Contexte;

// The folder of "carte.jpg": Repertoire_Export, or the control's own folder when it is
// empty; the user's data folder when that folder cannot be written (missing, read-only,
// a file).
QString dossierExport(const Contexte& ctx);

// Format and TrameP change nothing. With ImprimeSelection, the image shows the selection
// and is 29 cm wide, as high as the view's proportions make it; otherwise it is the
// view's size. A failure is shown titled "ImpCarte" and raises no event.
void ImpCarte(Contexte& ctx, QString& Format, QString& sTitre, QString& sCommentaires, bool& TrameP,
              QString& sEchelle, bool& ImprimeSelection);

// Btn_Imprimer: the Impression dialog, then ImpCarte with what it gave; beyond the
// original, the paper print, the preview or the PDF the clerk chose in it instead.
void imprimeDepuisBouton(Contexte& ctx);

} // namespace veldra
