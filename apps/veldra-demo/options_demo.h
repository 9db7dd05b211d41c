#pragma once
// The demo's command line:
//   --plan FICHIER.gpkg    opens that plan instead of the sample plan
//   --screenshot FICHIER   saves a PNG of the window once the plan is drawn, prints its
//                          path and quits
// With no display (offscreen platform) the demo always takes a screenshot, by default
// into the data folder, since nobody could see or close the window.

#include <QString>
#include <QStringList>

namespace veldra::demo {

struct OptionsDemo {
    QString plan;    // absolute path; empty for the sample plan
    QString capture; // absolute path; empty for an interactive session
    bool aide = false;
    QString texteAide;
};

inline const QString NomCaptureParDefaut = QStringLiteral("capture-veldra-demo.png");

// `arguments` as QCoreApplication::arguments() gives them (program name first).
// Erreur with a French message for an unknown option, a missing value, a stray argument
// or a plan that does not exist.
OptionsDemo analyseLigneDeCommande(const QStringList& arguments, bool sansAffichage,
                                   const QString& dossierDonnees);

} // namespace veldra::demo
