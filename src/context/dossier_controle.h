#pragma once
// The control's own folder: where the module holding the control was loaded from, found
// with dladdr, unless the host or a test chose another. The settings file and the cursor
// images live there; a folder the user cannot write falls back to the user's data folder.

#include <QString>

namespace veldra {

// The folder of the loaded module that holds the control, without a trailing "/".
QString dossierDuModule();

// `dossier` when it can be written, otherwise $XDG_DATA_HOME/veldra (created on demand).
QString dossierInscriptible(const QString& dossier);

} // namespace veldra
