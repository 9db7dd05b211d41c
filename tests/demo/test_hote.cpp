// The host side: its command line, where it keeps the control's properties, the sample
// plan it generates once, and how it answers the control when nobody watches.
#include "base/erreur.h"
#include "options_demo.h"
#include "plan_exemple.h"
#include "proprietes_hote.h"
#include "session_sans_ecran.h"
#include "traduction_qt.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace veldra;
using namespace veldra::demo;

namespace {

QString messageDe(const std::function<void()>& f) {
    try {
        f();
    } catch (const Erreur& e) {
        return e.description();
    }
    return QStringLiteral("(pas d'erreur)");
}

OptionsDemo analyse(QStringList args, bool sansAffichage = false) {
    args.prepend(QStringLiteral("veldra-demo"));
    return analyseLigneDeCommande(args, sansAffichage, QStringLiteral("/donnees"));
}

} // namespace

TEST(OptionsDemo, ScreenshotOnlyWhenAskedOrWithoutDisplay) {
    EXPECT_TRUE(analyse({}).capture.isEmpty());
    EXPECT_EQ(analyse({}, true).capture, QStringLiteral("/donnees/") + NomCaptureParDefaut);
    EXPECT_EQ(analyse({QStringLiteral("--screenshot"), QStringLiteral("a.png")}, true).capture,
              QDir::current().absoluteFilePath(QStringLiteral("a.png")));
}

TEST(OptionsDemo, BadUsageIsExplainedInFrench) {
    QTemporaryDir dossier;
    const QString plan = dossier.filePath(QStringLiteral("p.gpkg"));
    QFile(plan).open(QIODevice::WriteOnly);
    EXPECT_EQ(analyse({QStringLiteral("--plan"), plan}).plan, plan);
    // A plan that does not exist is the window's to say, in one message.
    EXPECT_EQ(analyse({QStringLiteral("--plan"), plan + u'x'}).plan, plan + u'x');
    const OptionsDemo scenario =
        analyse({QStringLiteral("--scenario"), QStringLiteral("premiere-heure")});
    EXPECT_EQ(scenario.scenario, QStringLiteral("premiere-heure"));
    EXPECT_EQ(scenario.capture, QStringLiteral("/donnees/scenarios/premiere-heure"));
    EXPECT_TRUE(messageDe([] {
                    analyse({QStringLiteral("--zoom")});
                }).startsWith(QStringLiteral("Option inconnue : --zoom")));
    EXPECT_TRUE(messageDe([] {
                    analyse({QStringLiteral("plan.gpkg")});
                }).startsWith(QStringLiteral("Argument inattendu : plan.gpkg")));
    EXPECT_TRUE(messageDe([] {
                    analyse({QStringLiteral("--screenshot=")});
                }).startsWith(QStringLiteral("--screenshot attend")));
    EXPECT_TRUE(analyse({QStringLiteral("--help")}).aide);
}

TEST(ProprietesHote, SettingsMirrorTheBagAndLeaveOtherGroupsAlone) {
    QTemporaryDir dossier;
    QSettings reglages(dossier.filePath(QStringLiteral("demo.ini")), QSettings::IniFormat);
    reglages.setValue(QStringLiteral("Fenetre/largeur"), 800);

    PropertyBag sac;
    sac.WriteProperty(QStringLiteral("RepCurseurs"), QStringLiteral("/opt/curseurs"), QString());
    sac.WriteProperty(QStringLiteral("RepFicAnalyse"), QStringLiteral("Rapport.txt"),
                      QStringLiteral("AnalysePlan.txt"));
    ecrisProprietes(reglages, sac);
    EXPECT_EQ(lisProprietes(reglages).values(), sac.values());

    // Back to its default, a property leaves the bag and must leave the settings too.
    sac.WriteProperty(QStringLiteral("RepFicAnalyse"), QStringLiteral("AnalysePlan.txt"),
                      QStringLiteral("AnalysePlan.txt"));
    ecrisProprietes(reglages, sac);
    QSettings relu(dossier.filePath(QStringLiteral("demo.ini")), QSettings::IniFormat);
    const PropertyBag lu = lisProprietes(relu);
    EXPECT_FALSE(lu.contains(QStringLiteral("RepFicAnalyse")));
    EXPECT_EQ(lu.ReadProperty(QStringLiteral("RepCurseurs"), {}),
              QVariant(QStringLiteral("/opt/curseurs")));
    EXPECT_EQ(relu.value(QStringLiteral("Fenetre/largeur")).toInt(), 800);
}

TEST(PlanExemple, GeneratedOnceThenReusedAsTheUserLeftIt) {
    QTemporaryDir donnees;
    plantool::SampleOptions options = optionsExemple();
    options.plots = 12;
    options.raster = false;
    const QString chemin = assurePlanExemple(donnees.path(), options);
    EXPECT_EQ(chemin, donnees.filePath(QStringLiteral("Exemple/Exemple.gpkg")));
    ASSERT_TRUE(QFileInfo(chemin).isFile());

    // A plan the user edited is never written over by a second start.
    QFile fichier(chemin);
    ASSERT_TRUE(fichier.open(QIODevice::Append));
    fichier.write("modifié");
    fichier.close();
    const qint64 taille = QFileInfo(chemin).size();
    EXPECT_EQ(assurePlanExemple(donnees.path(), options), chemin);
    EXPECT_EQ(QFileInfo(chemin).size(), taille);
}

TEST(PlanExemple, FolderThatCannotBeCreatedIsReportedInFrench) {
    QTemporaryDir donnees;
    const QString fichier = donnees.filePath(QStringLiteral("fichier"));
    QFile(fichier).open(QIODevice::WriteOnly);
    // Under a plain file no folder can exist, whoever runs the test.
    const QString message = messageDe([&] { assurePlanExemple(fichier); });
    EXPECT_TRUE(message.startsWith(QStringLiteral("Impossible d'écrire dans le dossier « ")))
        << message.toStdString();
    EXPECT_TRUE(message.contains(fichier)) << message.toStdString();
}

TEST(SessionSansEcran, AnswersWithTheChoiceThatChangesNothing) {
    EXPECT_EQ(reponseSansEcran(boutons::Ok | boutons::Information), reponse::Ok);
    EXPECT_EQ(reponseSansEcran(boutons::OkAnnuler), reponse::Annuler);
    EXPECT_EQ(reponseSansEcran(boutons::OuiNonAnnuler | boutons::Question), reponse::Annuler);
    EXPECT_EQ(reponseSansEcran(boutons::OuiNon | boutons::Exclamation), reponse::Non);

    QString texte;
    QTextStream sortie(&texte);
    PrompterSansEcran prompter(sortie);
    EXPECT_EQ(
        prompter.message(QStringLiteral("Supprimer ?"), boutons::OuiNon, QStringLiteral("Plan")),
        reponse::Non);
    EXPECT_EQ(texte, QStringLiteral("Message du contrôle (Plan) : Supprimer ?\n"));
}

TEST(TraductionQt, StandardButtonsAndChoosersSpeakFrench) {
    ASSERT_TRUE(installeTraductionQt(*QCoreApplication::instance()))
        << "scripts/setup installs Qt's translations";
    QDialogButtonBox boutons(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    EXPECT_EQ(boutons.button(QDialogButtonBox::Cancel)->text().remove(u'&'),
              QStringLiteral("Annuler"));
    EXPECT_EQ(QCoreApplication::translate("QFileDialog", "Look in:"),
              QStringLiteral("Voir dans :"));
}
