#pragma once
// Beyond the original: the page of mise_en_page.h printed on paper through the system's
// print dialog, shown in a print preview, or written as a PDF file. The dialogs go
// through the control's modal hook.

#include <QString>

class QPrinter;

namespace veldra {

class Contexte;
struct MiseEnPage;

// Writes the page as a PDF at `chemin`, replacing it only once the whole file is written.
// Erreur when the file cannot be written: nothing is left of it.
void ecritPdf(const Contexte& ctx, const QString& chemin, const MiseEnPage& m);
// Prepares `printer` for the page: its paper, orientation and resolution.
void preparePrinter(QPrinter& printer, const MiseEnPage& m);
// Asks for a printer, then prints. False when the clerk gave up.
bool imprimeSurPapier(Contexte& ctx, const MiseEnPage& m);
// Shows the page in a print preview, from which the clerk may print it.
void apercu(Contexte& ctx, const MiseEnPage& m);
// Asks for a file name, then writes the PDF there. The file written, empty when the clerk
// gave up.
QString enregistrePdf(Contexte& ctx, const MiseEnPage& m);

} // namespace veldra
