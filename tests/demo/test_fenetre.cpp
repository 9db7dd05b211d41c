// The host window as a container: it keeps the control's properties across restarts and
// knows whether a plan really opened.
#include "control/veldra.h"
#include "fenetre_principale.h"
#include "plan_exemple.h"
#include "session_sans_ecran.h"

#include <QFile>
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
        f->plan().setPrompter(std::make_unique<PrompterSansEcran>(sortie));
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

TEST(FenetrePrincipale, OpenedOnlyWhenTheControlReallyHoldsThatPlan) {
    Hote hote;
    const QString plan = hote.planExemple();
    const QString faux = hote.dossier.filePath(QStringLiteral("faux.gpkg"));
    QFile fichier(faux);
    ASSERT_TRUE(fichier.open(QIODevice::WriteOnly));
    fichier.write("pas un plan");
    fichier.close();

    auto f = hote.fenetre();
    EXPECT_FALSE(f->ouvrePlan(faux, QStringLiteral("Faux")));
    EXPECT_FALSE(hote.messages.isEmpty());

    EXPECT_TRUE(f->ouvrePlan(plan, QStringLiteral("Essai")));
    EXPECT_TRUE(f->windowTitle().startsWith(QStringLiteral("Essai")));

    // The control keeps the plan it had when the next file cannot be read.
    EXPECT_FALSE(f->ouvrePlan(faux, QStringLiteral("Faux")));
    EXPECT_TRUE(f->windowTitle().startsWith(QStringLiteral("Essai")));
}
