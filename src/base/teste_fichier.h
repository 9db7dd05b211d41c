#pragma once
// TesteFichier: can the file be read? 0 when it opens and its first line can be read,
// 1 when it cannot be opened (missing, a folder, no permission), 2 when it opens but has
// no first line (an empty file). A relative name is taken in `dossierControle`, the
// control's own folder. Never throws; the file is always closed.

#include <QString>

namespace veldra {

int TesteFichier(const QString& nom, const QString& dossierControle);

// The name as TesteFichier and the photo links resolve it.
QString cheminDansDossier(const QString& nom, const QString& dossier);

} // namespace veldra
