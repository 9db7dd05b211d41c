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
    parseur.addOption(aide);
    parseur.addOption(plan);
    parseur.addOption(capture);

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

    if (parseur.isSet(plan)) {
        const QFileInfo fichier(parseur.value(plan));
        if (!fichier.isFile())
            throw Erreur(err::AccesRefuse, QStringLiteral("Le plan « %1 » n'existe pas.")
                                               .arg(QDir::toNativeSeparators(parseur.value(plan))));
        o.plan = fichier.absoluteFilePath();
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
