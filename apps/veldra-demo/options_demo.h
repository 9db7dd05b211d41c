#pragma once
// The demo's command line:
//   --plan FICHIER.gpkg    opens that plan instead of the sample plan
//   --screenshot FICHIER   saves a PNG of the window once the plan is drawn, prints its
//                          path and quits
//   --scenario NOM         plays a scripted session, saves a PNG per step into the data
//                          folder's scenarios/NOM, prints that folder and quits
// With no display (offscreen platform) the demo always takes a screenshot, by default
// into the data folder, since nobody could see or close the window.

#include <QString>
#include <QStringList>

namespace veldra::demo {

struct OptionsDemo {
    QString plan;     // absolute path; empty for the sample plan
    QString capture;  // absolute path (a folder for a scenario); empty for an interactive session
    QString scenario; // empty unless a scenario is played
    bool aide = false;
    QString texteAide;
};

inline const QString NomCaptureParDefaut = QStringLiteral("capture-veldra-demo.png");

// `arguments` as QCoreApplication::arguments() gives them (program name first).
// Erreur with a French message for an unknown option, a missing value or a stray
// argument.
OptionsDemo analyseLigneDeCommande(const QStringList& arguments, bool sansAffichage,
                                   const QString& dossierDonnees);

} // namespace veldra::demo
