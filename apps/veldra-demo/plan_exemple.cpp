#include "plan_exemple.h"

#include "base/erreur.h"

#include <QDir>
#include <QFileInfo>

namespace veldra::demo {

plantool::SampleOptions optionsExemple() {
    plantool::SampleOptions o;
    o.plots = 600;
    o.seed = 1;
    o.raster = true;
    o.name = QStringLiteral("Exemple");
    o.faults = true; // for the plan analysis to find
    return o;
}

void prepareDossier(const QString& dossier) {
    const bool cree = QDir().mkpath(dossier);
    const QFileInfo info(dossier);
    if (!cree || !info.isDir() || !info.isWritable())
        throw Erreur(err::AccesRefuse, QStringLiteral("Impossible d'écrire dans le dossier « %1 ».")
                                           .arg(QDir::toNativeSeparators(dossier)));
}

QString assurePlanExemple(const QString& dossierDonnees, const plantool::SampleOptions& options) {
    const QString dossier = QDir(dossierDonnees).filePath(QStringLiteral("Exemple"));
    const QString chemin = QDir(dossier).filePath(options.name + QStringLiteral(".gpkg"));
    if (QFileInfo(chemin).isFile())
        return chemin;
    prepareDossier(dossier);
    try {
        return plantool::generateSamplePlan(dossier, options);
    } catch (const Erreur& e) {
        throw Erreur(e.numero(),
                     QStringLiteral("Le plan d'exemple n'a pas pu être créé dans « %1 » : %2")
                         .arg(QDir::toNativeSeparators(dossier), e.description()));
    }
}

} // namespace veldra::demo
