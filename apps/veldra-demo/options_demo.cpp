#include "options_demo.h"

#include "base/erreur.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

namespace veldra::demo {

namespace {

Erreur erreurUsage(const QString& texte) {
    return Erreur(err::AppelIncorrect, texte + QStringLiteral(" (voir --help)"));
}

} // namespace

OptionsDemo analyseLigneDeCommande(const QStringList& arguments, bool sansAffichage,
                                   const QString& dossierDonnees) {
    QCommandLineParser parseur;
    parseur.setApplicationDescription(
        QStringLiteral("Application hôte de démonstration du contrôle de plan de cimetière."));
    const QCommandLineOption aide({QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Affiche cette aide."));
    const QCommandLineOption plan(QStringLiteral("plan"),
                                  QStringLiteral("Ouvre ce plan au lieu du plan d'exemple."),
                                  QStringLiteral("fichier.gpkg"));
    const QCommandLineOption capture(
        QStringLiteral("screenshot"),
        QStringLiteral("Enregistre une capture PNG de la fenêtre, affiche son chemin et quitte."),
        QStringLiteral("fichier.png"));
    const QCommandLineOption scenario(
        QStringLiteral("scenario"),
        QStringLiteral("Joue ce scénario sans écran et enregistre une capture par étape, "
                       "affiche le dossier des captures et quitte."),
        QStringLiteral("nom"));
    parseur.addOption(aide);
    parseur.addOption(plan);
    parseur.addOption(capture);
    parseur.addOption(scenario);

    if (!parseur.parse(arguments)) {
        if (!parseur.unknownOptionNames().isEmpty()) {
            const QString nom = parseur.unknownOptionNames().constFirst();
            throw erreurUsage(
                QStringLiteral("Option inconnue : %1%2")
                    .arg(nom.size() == 1 ? QStringLiteral("-") : QStringLiteral("--"), nom));
        }
        throw erreurUsage(
            QStringLiteral("Ligne de commande incorrecte : %1").arg(parseur.errorText()));
    }

    OptionsDemo o;
    if (parseur.isSet(aide)) {
        o.aide = true;
        o.texteAide = parseur.helpText();
        return o;
    }
    if (!parseur.positionalArguments().isEmpty())
        throw erreurUsage(QStringLiteral("Argument inattendu : %1")
                              .arg(parseur.positionalArguments().constFirst()));

    // A plan that does not exist is said in the window, which then opens the sample plan.
    if (parseur.isSet(plan)) {
        if (parseur.value(plan).isEmpty())
            throw erreurUsage(QStringLiteral("--plan attend un nom de fichier"));
        o.plan = QFileInfo(parseur.value(plan)).absoluteFilePath();
    }
    if (parseur.isSet(scenario)) {
        o.scenario = parseur.value(scenario);
        o.capture =
            QDir(dossierDonnees).absoluteFilePath(QStringLiteral("scenarios/") + o.scenario);
        return o;
    }
    if (parseur.isSet(capture)) {
        if (parseur.value(capture).isEmpty())
            throw erreurUsage(QStringLiteral("--screenshot attend un nom de fichier"));
        o.capture = QFileInfo(parseur.value(capture)).absoluteFilePath();
    } else if (sansAffichage)
        o.capture = QDir(dossierDonnees).absoluteFilePath(NomCaptureParDefaut);
    return o;
}

} // namespace veldra::demo
