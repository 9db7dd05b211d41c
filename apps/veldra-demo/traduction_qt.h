#pragma once
// Qt's own texts (standard buttons, file and colour choosers) in French, from the
// translations Qt installs. A host embedding the control does the same at start-up.

class QCoreApplication;

namespace veldra::demo {

// Installs Qt's French translation in `application`, which then owns it. False when the
// translation files are missing: Qt's texts stay in English, nothing else changes.
bool installeTraductionQt(QCoreApplication& application);

} // namespace veldra::demo
