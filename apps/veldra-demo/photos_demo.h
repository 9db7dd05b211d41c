#pragma once
// The demo's photographs: a few small pictures of graves, drawn on the first run beside
// the plan (never downloaded) and linked to concessions with AddPhoto, as a host would
// after a clerk's visit with a camera.

#include <QString>
#include <QStringList>

namespace veldra {
class Veldra;
}

namespace veldra::demo {

class Registre;

// The folder of the plan's photographs: "Photos" beside the plan.
QString dossierPhotos(const QString& cheminPlan);

// The photographs of `n` concessions that have a plot, spread over the plan: drawn when
// their file is missing, linked when their plot is not. The photographs linked.
QStringList creePhotosDemo(Veldra& plan, const Registre& registre, const QString& cheminPlan,
                           int n = 6);

} // namespace veldra::demo
