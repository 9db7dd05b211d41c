#pragma once
// The control's two pointer files: "CurRegle.cur" (measuring a distance) and "Infos.cur"
// (the information tool), drawn here and written as Windows cursor files through Qt's
// image writer, so that a host's RepCurseurs folder can hold its own instead.

#include <QString>

namespace veldra::plantool {

// Writes both cursors into "<folder>/Images/Curseurs/" and returns that folder. Erreur
// (AccesRefuse) when it cannot be written.
QString writeCursors(const QString& folder);

// What a control's own folder holds: the cursors and the symbol library. Returns the folder.
QString writeControlResources(const QString& folder);

} // namespace veldra::plantool
