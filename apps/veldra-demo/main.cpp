// The demo host: opens the sample plan (generated in the user's data folder on the first
// run) or the plan given by --plan, in a window that logs the control's events. With
// --screenshot, or with no display, it saves a picture of the window, prints the
// picture's path as the last line of its output and quits; with --scenario it plays a
// scripted session and prints the folder of its pictures.

#include "base/erreur.h"
#include "capture_fenetre.h"
#include "context/sablier.h"
#include "control/veldra.h"
#include "fenetre_principale.h"
#include "options_demo.h"
#include "plan_exemple.h"
#include "scenario.h"
#include "session_sans_ecran.h"
#include "traduction_qt.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QSettings>
#include <QStandardPaths>
#include <QTextStream>
#include <memory>
#include <optional>

using namespace veldra;
using namespace veldra::demo;

namespace {

const QString NomExemple = QStringLiteral("Cimetière d'exemple");

bool sansAffichage() {
    const QString plateforme = QGuiApplication::platformName();
    return plateforme == u"offscreen" || plateforme == u"minimal";
}

// Runs the window. Returns the exit code; `capture` receives the picture's path when one
// was taken.
int lanceDemo(const OptionsDemo& options, const QString& dossierDonnees, QTextStream& erreurs,
              std::optional<QString>& capture) {
    const auto exemple = [&dossierDonnees] {
        const Sablier sablier;
        return assurePlanExemple(dossierDonnees);
    };
    QString chemin = options.plan;
    QString nom = QFileInfo(chemin).completeBaseName();
    if (chemin.isEmpty()) {
        chemin = exemple();
        nom = NomExemple;
    }
    if (!options.capture.isEmpty())
        prepareDossier(options.scenario.isEmpty() ? QFileInfo(options.capture).absolutePath()
                                                  : options.capture);

    QSettings reglages(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("veldra-demo"),
                       QStringLiteral("veldra-demo"));
    FenetrePrincipale fenetre(reglages);
    if (!options.capture.isEmpty()) {
        fenetre.setPrompter(std::make_unique<PrompterSansEcran>(erreurs));
        fenetre.plan().setModalHook([&erreurs](QDialog& d) { return refuseDialogue(erreurs, d); });
    }
    fenetre.resize(TailleCapture);
    fenetre.show();
    QApplication::processEvents();

    if (!fenetre.ouvrePlan(chemin, nom) && !options.plan.isEmpty()) {
        // The plan asked for cannot be opened: said once in the window, and the sample
        // plan is there to work with.
        const QString pourquoi = fenetre.bandeau().text();
        if (fenetre.ouvrePlan(exemple(), NomExemple))
            fenetre.signale(pourquoi + QStringLiteral(" Le plan d'exemple est ouvert à sa place."));
    }
    if (options.capture.isEmpty())
        return QApplication::exec();

    if (!options.scenario.isEmpty()) {
        const QStringList images =
            joueScenario(fenetre, options.scenario, exemple(), options.capture);
        for (const QString& image : images)
            erreurs << QStringLiteral("capture : ") << image << Qt::endl;
    } else {
        captureFenetre(fenetre, fenetre.plan().surface().Map1, options.capture);
    }
    fenetre.close();
    capture = options.capture;
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("veldra-demo"));
    QTextStream erreurs(stderr);
    if (!installeTraductionQt(app))
        erreurs << "veldra-demo : traduction française de Qt introuvable, les boîtes de "
                   "dialogue standard resteront en anglais."
                << Qt::endl;

    const QString dossierDonnees =
        QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    OptionsDemo options;
    try {
        options =
            analyseLigneDeCommande(QApplication::arguments(), sansAffichage(), dossierDonnees);
    } catch (const Erreur& e) {
        erreurs << "veldra-demo : " << e.description() << Qt::endl;
        return 2;
    }
    if (options.aide) {
        QTextStream(stdout) << options.texteAide;
        return 0;
    }

    std::optional<QString> capture;
    int code = 0;
    try {
        code = lanceDemo(options, dossierDonnees, erreurs, capture);
    } catch (const Erreur& e) {
        erreurs << "veldra-demo : " << e.description() << Qt::endl;
        if (options.capture.isEmpty() && !sansAffichage())
            QMessageBox::critical(nullptr, QStringLiteral("Veldra — démonstration"),
                                  e.description());
        return 1;
    }
    // Last, once the window is gone, so scripts can take the path from the final line.
    if (capture)
        QTextStream(stdout) << *capture << Qt::endl;
    return code;
}
