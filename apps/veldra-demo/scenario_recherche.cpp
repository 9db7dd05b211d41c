#include "scenario_recherche.h"

#include "base/cp1252.h"
#include "context/prompter.h"
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"
#include "plan_exemple.h"
#include "veldra-plan/plan_tool.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFile>
#include <QFocusEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

namespace veldra::demo {

namespace {

// The number box as a clerk fills it: typed, then left (it turns upper case).
void tape(const Surface& s, const QString& section, const QString& numero) {
    s.Combo_section->setCurrentIndex(s.Combo_section->findText(section));
    s.TB_SaisieEmplacement->setText(numero);
    QFocusEvent sortie(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(s.TB_SaisieEmplacement, &sortie);
    s.Btn_Rechercher->click();
}

// A clerk checks a fresh sample plan and finds plots: the analysis and its faults, a
// fault found on the map, numbers searched, plots located by the host, a selection
// memorised and shown again, and who is concerned by a plot.
} // namespace

std::vector<Etape> recherche(FenetrePrincipale& f, const QString& brouillon) {
    Veldra& c = f.plan();
    const Surface& s = c.surface();
    const auto situe = [&c](const QString& ids, bool zoom) {
        QString liste = ids;
        bool z = zoom;
        c.SitueTombes(liste, z);
    };
    return {
        {QStringLiteral("plan-a-verifier"),
         {1280, 800},
         [&f, &c, brouillon] {
             // The sample as it is made, with its faults, whatever was done to the clerk's.
             const QString plan = plantool::generateSamplePlan(brouillon, optionsExemple());
             f.ouvrePlan(plan, QStringLiteral("Cimetière d'exemple"));
             f.setPrompter(std::make_unique<PrompterBandeau>(f));
             c.setRepFicAnalyse(brouillon);
             // The report shows beside the plan instead of in a text editor.
             c.setEditeurHook([&f](const QString& fichier) {
                 QFile rapport(fichier);
                 if (rapport.open(QIODevice::ReadOnly))
                     f.texteDetails().setPlainText(fromCp1252(rapport.readAll()));
             });
         }},
        {QStringLiteral("analyse-du-plan"),
         {1280, 800},
         [&s] {
             s.Btn_Traitements->click();
             s.Btn_AnalysePlan->click();
             s.Btn_Traitements->click();
         }},
        {QStringLiteral("anomalie-situee"),
         {1280, 800},
         [&s] {
             QListWidget& l = *s.Liste_Anomalies;
             for (int i = 0; i < l.count(); ++i)
                 if (l.item(i)->text().endsWith(QStringLiteral("hors de l'enceinte"))) {
                     l.setCurrentRow(i);
                     emit l.itemClicked(l.item(i));
                     break;
                 }
         }},
        {QStringLiteral("recherche-12"),
         {1280, 800},
         [&s] {
             s.Btn_FermerAnomalies->click();
             tape(s, QStringLiteral("Toutes les sections"), QStringLiteral("12"));
         }},
        {QStringLiteral("recherche-1-etoile"),
         {1280, 800},
         [&s] { tape(s, QStringLiteral("Toutes les sections"), QStringLiteral("1*")); }},
        {QStringLiteral("recherche-absente"),
         {1280, 800},
         [&s] { tape(s, QStringLiteral("Toutes les sections"), QStringLiteral("999")); }},
        {QStringLiteral("trois-terrains-situes"),
         {1280, 800},
         [&f, situe] {
             f.signale(QString());
             situe(QStringLiteral("12@57@450@"), true);
         }},
        {QStringLiteral("autre-selection"),
         {1280, 800},
         [&c, &s] {
             c.contexte().crochets.enregistreMemorisation();
             tape(s, QStringLiteral("B"), QStringLiteral("7"));
         }},
        {QStringLiteral("memorisation-revue"),
         {1280, 800},
         [&s] {
             s.Btn_Traitements->click();
             s.Btn_VoirMemorisation->click();
             s.Btn_Traitements->click();
         }},
        {QStringLiteral("infos-rapides"),
         {1280, 800},
         [&s, situe] {
             situe(QStringLiteral("57@"), true);
             s.Btn_InfosRapides->click();
         }},
    };
}

} // namespace veldra::demo
