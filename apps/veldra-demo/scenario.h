#pragma once
// Scripted sessions of the demo: each step acts on the real window as a clerk would (sizes,
// clicks, plans opened) and the window is then saved as a PNG, one per step, so what a
// clerk would see can be looked at without a display.

#include <QString>
#include <QStringList>

namespace veldra::demo {

class FenetrePrincipale;

// The scenarios the demo knows.
QStringList nomsScenarios();

// Plays scenario `nom` on `fenetre`, whose sample plan is `planExemple`, and saves one
// picture per step into `dossier` ("01-etape.png", …). The pictures' paths. Erreur with a
// French message for an unknown scenario or a picture that cannot be written.
QStringList joueScenario(FenetrePrincipale& fenetre, const QString& nom, const QString& planExemple,
                         const QString& dossier);

} // namespace veldra::demo
