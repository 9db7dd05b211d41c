#include "scenario.h"

#include "base/erreur.h"
#include "capture_fenetre.h"
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"

#include <QCheckBox>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextBlock>
#include <functional>
#include <vector>

namespace veldra::demo {

namespace {

struct Etape {
    QString nom;
    QSize taille;
    std::function<void()> action;
};

// The clerk's first hour: the sample plan at small and large sizes, names shown, a
// synchronisation and what it carried, plans that cannot be opened, a new plan given up
// then made, and back to the sample.
std::vector<Etape> premiereHeure(FenetrePrincipale& f, const QString& exemple,
                                 const QString& brouillon) {
    Veldra& c = f.plan();
    const Surface& s = c.surface();
    const auto noms = [&s] {
        if (!s.Check2->isChecked())
            s.Check2->click();
    };
    const auto repondTaille = [&c](bool valide) {
        c.setModalHook([valide](QDialog& d) {
            if (!valide)
                return int(QDialog::Rejected);
            d.findChild<QLineEdit*>(QStringLiteral("TB_Longueur"))->setText(QStringLiteral("120"));
            d.findChild<QLineEdit*>(QStringLiteral("TB_Largeur"))->setText(QStringLiteral("80"));
            d.findChild<QPushButton*>(QStringLiteral("Btn_Valider"))->click();
            return d.result();
        });
    };
    return {
        {QStringLiteral("exemple-800x600"), {800, 600}, [] {}},
        {QStringLiteral("noms-800x600"), {800, 600}, noms},
        {QStringLiteral("noms-1920x1200"), {1920, 1200}, noms},
        {QStringLiteral("synchronisation"), {1280, 800}, [&s] { s.Btn_Synchro->click(); }},
        {QStringLiteral("details-synchro"),
         {1280, 800},
         [&f] {
             QPlainTextEdit& j = f.journal();
             for (QTextBlock b = j.document()->lastBlock(); b.isValid(); b = b.previous())
                 if (b.text().contains(QStringLiteral("Synchro("))) {
                     QTextCursor curseur(b);
                     j.setTextCursor(curseur);
                     break;
                 }
         }},
        {QStringLiteral("plan-absent"),
         {1280, 800},
         [&f, brouillon] {
             f.ouvrePlan(brouillon + QStringLiteral("/absent.gpkg"), QStringLiteral("Absent"));
         }},
        {QStringLiteral("plan-corrompu"),
         {1280, 800},
         [&f, brouillon] {
             const QString faux = brouillon + QStringLiteral("/corrompu.gpkg");
             QFile fichier(faux);
             if (fichier.open(QIODevice::WriteOnly))
                 fichier.write("ceci n'est pas un plan");
             fichier.close();
             f.ouvrePlan(faux, QStringLiteral("Corrompu"));
         }},
        {QStringLiteral("nouveau-plan-abandonne"),
         {1280, 800},
         [&f, repondTaille, brouillon] {
             repondTaille(false);
             f.nouveauCimetiere(brouillon, QStringLiteral("Saint-Roch"));
         }},
        {QStringLiteral("nouveau-plan"),
         {1280, 800},
         [&f, repondTaille, brouillon] {
             repondTaille(true);
             f.nouveauCimetiere(brouillon, QStringLiteral("Saint-Roch"));
         }},
        {QStringLiteral("retour-exemple"),
         {1280, 800},
         [&f, exemple] { f.ouvrePlan(exemple, QStringLiteral("Cimetière d'exemple")); }},
    };
}

} // namespace

QStringList nomsScenarios() {
    return {QStringLiteral("premiere-heure")};
}

QStringList joueScenario(FenetrePrincipale& fenetre, const QString& nom, const QString& planExemple,
                         const QString& dossier) {
    if (!nomsScenarios().contains(nom))
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Scénario inconnu : %1 (connus : %2)")
                         .arg(nom, nomsScenarios().join(QStringLiteral(", "))));
    if (!QDir().mkpath(dossier))
        throw Erreur(err::AccesRefuse, QStringLiteral("Le dossier « %1 » ne peut pas être créé.")
                                           .arg(QDir::toNativeSeparators(dossier)));
    QTemporaryDir brouillon;
    const std::vector<Etape> etapes = premiereHeure(fenetre, planExemple, brouillon.path());
    QStringList images;
    int numero = 0;
    for (const Etape& e : etapes) {
        fenetre.resize(e.taille);
        e.action();
        const QString image = QDir(dossier).filePath(
            QStringLiteral("%1-%2.png").arg(++numero, 2, 10, QLatin1Char('0')).arg(e.nom));
        captureFenetre(fenetre, fenetre.plan().surface().Map1, image, e.taille);
        images << image;
    }
    return images;
}

} // namespace veldra::demo
