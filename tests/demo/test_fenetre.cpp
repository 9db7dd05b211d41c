// The host window as a container: it keeps the control's properties across restarts and
// knows whether a plan really opened.
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"
#include "plan_exemple.h"
#include "session_sans_ecran.h"

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace veldra;
using namespace veldra::demo;

namespace {

struct Hote {
    QTemporaryDir dossier;
    QSettings reglages{dossier.filePath(QStringLiteral("demo.ini")), QSettings::IniFormat};
    QString messages;
    QTextStream sortie{&messages};

    // A window whose control reports into `messages` instead of message boxes.
    std::unique_ptr<FenetrePrincipale> fenetre() {
        auto f = std::make_unique<FenetrePrincipale>(reglages);
        f->setPrompter(std::make_unique<PrompterSansEcran>(sortie));
        return f;
    }
    QString planExemple() {
        plantool::SampleOptions options = optionsExemple();
        options.plots = 12;
        options.raster = false;
        return assurePlanExemple(dossier.path(), options);
    }
};

} // namespace

TEST(FenetrePrincipale, ControlPropertiesSurviveARestartOfTheHost) {
    Hote hote;
    QString rapport;
    {
        auto f = hote.fenetre();
        f->plan().setRepFicAnalyse(QStringLiteral("/srv/rapports"));
        rapport = f->plan().RepFicAnalyse();
        f->close();
    }
    EXPECT_EQ(hote.reglages.value(QStringLiteral("Controle/RepFicAnalyse")).toString(), rapport);
    EXPECT_EQ(hote.fenetre()->plan().RepFicAnalyse(), rapport);
}

TEST(FenetrePrincipale, APlanThatCannotBeOpenedIsSaidOnceAndThePreviousPlanComesBack) {
    Hote hote;
    const QString plan = hote.planExemple();
    const QString faux = hote.dossier.filePath(QStringLiteral("faux.gpkg"));
    QFile fichier(faux);
    ASSERT_TRUE(fichier.open(QIODevice::WriteOnly));
    fichier.write("pas un plan");
    fichier.close();

    auto f = hote.fenetre();
    // Nothing open yet: nothing to click in the control.
    EXPECT_FALSE(f->plan().isEnabled());
    EXPECT_FALSE(f->ouvrePlan(faux, QStringLiteral("Faux")));
    EXPECT_TRUE(hote.messages.isEmpty()) << hote.messages.toStdString(); // no message box
    EXPECT_EQ(f->bandeau().text(),
              QStringLiteral("Le plan « %1 » n'a pas pu être ouvert : ce fichier n'est pas un "
                             "plan.")
                  .arg(QDir::toNativeSeparators(faux)));
    EXPECT_FALSE(f->plan().isEnabled());
    EXPECT_FALSE(f->windowTitle().contains(QStringLiteral("Faux")));

    EXPECT_TRUE(f->ouvrePlan(plan, QStringLiteral("Essai")));
    EXPECT_TRUE(f->bandeau().isHidden());
    EXPECT_TRUE(f->plan().isEnabled());
    EXPECT_TRUE(f->windowTitle().startsWith(QStringLiteral("Essai")));

    // The clerk keeps the plan they had, under its own name.
    EXPECT_FALSE(f->ouvrePlan(faux, QStringLiteral("Faux")));
    EXPECT_TRUE(f->windowTitle().startsWith(QStringLiteral("Essai")));
    EXPECT_EQ(f->plan().surface().L_NomCimetiere->text(), QStringLiteral("Essai"));
    EXPECT_TRUE(f->plan().isEnabled());
    EXPECT_FALSE(f->bandeau().isHidden());

    const QString absent = hote.dossier.filePath(QStringLiteral("absent.gpkg"));
    EXPECT_FALSE(f->ouvrePlan(absent, QStringLiteral("Absent")));
    EXPECT_EQ(f->bandeau().text(),
              QStringLiteral("Le plan « %1 » n'existe pas.").arg(QDir::toNativeSeparators(absent)));
    EXPECT_TRUE(hote.messages.isEmpty());
}

TEST(FenetrePrincipale, ANewPlanGivenUpLeavesNothingAndCanBeMadeAgain) {
    Hote hote;
    auto f = hote.fenetre();
    QTemporaryDir dossier;
    f->plan().setModalHook([](QDialog&) { return int(QDialog::Rejected); });
    EXPECT_FALSE(f->nouveauCimetiere(dossier.path(), QStringLiteral("Saint-Roch")));
    EXPECT_TRUE(QDir(dossier.path()).entryList(QDir::Files).isEmpty());

    f->plan().setModalHook([](QDialog& d) {
        d.findChild<QLineEdit*>(QStringLiteral("TB_Longueur"))->setText(QStringLiteral("60"));
        d.findChild<QLineEdit*>(QStringLiteral("TB_Largeur"))->setText(QStringLiteral("40"));
        d.findChild<QPushButton*>(QStringLiteral("Btn_Valider"))->click();
        return d.result();
    });
    EXPECT_TRUE(f->nouveauCimetiere(dossier.path(), QStringLiteral("Saint-Roch")));
    EXPECT_TRUE(f->bandeau().isHidden()) << f->bandeau().text().toStdString();
    EXPECT_EQ(f->plan().Calque_Enceinte->featureCount(), 1);
}
