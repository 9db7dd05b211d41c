#include "fenetre_principale.h"

#include "base/erreur.h"
#include "control/veldra.h"
#include "journal_evenements.h"
#include "proprietes_hote.h"
#include "registre.h"
#include "reponses_hote.h"
#include "veldra-plan/plan_tool.h"

#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QInputDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSettings>
#include <QStatusBar>

namespace veldra::demo {

namespace {
const QString TitreFenetre = QStringLiteral("Veldra — démonstration");
}

FenetrePrincipale::FenetrePrincipale(QSettings& reglages, QWidget* parent)
    : QMainWindow(parent), reglages_(reglages), plan_(new Veldra(this)) {
    setObjectName(QStringLiteral("FenetrePrincipale"));
    setWindowTitle(TitreFenetre);
    plan_->setObjectName(QStringLiteral("Veldra1"));
    setCentralWidget(plan_);
    creeJournal();
    creeMenus();
    statusBar()->showMessage(QStringLiteral("Aucun plan ouvert"));
    // As a container loading the control: its saved properties before it is shown.
    plan_->ReadProperties(lisProprietes(reglages_));
}

FenetrePrincipale::~FenetrePrincipale() = default;

void FenetrePrincipale::creeJournal() {
    journal_ = new QPlainTextEdit;
    journal_->setObjectName(QStringLiteral("JournalEvenements"));
    journal_->setReadOnly(true);
    journal_->setLineWrapMode(QPlainTextEdit::NoWrap);
    journal_->setMaximumBlockCount(5000);
    journal_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));

    dockJournal_ = new QDockWidget(QStringLiteral("Événements du contrôle"), this);
    dockJournal_->setObjectName(QStringLiteral("DockEvenements"));
    dockJournal_->setWidget(journal_);
    addDockWidget(Qt::RightDockWidgetArea, dockJournal_);
    resizeDocks({dockJournal_}, {340}, Qt::Horizontal);

    brancheJournal(*plan_, *journal_);
}

void FenetrePrincipale::creeMenus() {
    QMenu* const fichier = menuBar()->addMenu(QStringLiteral("&Fichier"));
    QAction* const ouvrir = fichier->addAction(QStringLiteral("&Ouvrir un plan…"), this,
                                               &FenetrePrincipale::choisisPlan);
    ouvrir->setShortcut(QKeySequence::Open);
    fichier->addAction(QStringLiteral("&Nouveau cimetière…"), this,
                       &FenetrePrincipale::demandeNouveauCimetiere);
    fichier->addSeparator();
    QAction* const quitter =
        fichier->addAction(QStringLiteral("&Quitter"), this, &FenetrePrincipale::close);
    quitter->setShortcut(QKeySequence::Quit);

    QMenu* const affichage = menuBar()->addMenu(QStringLiteral("&Affichage"));
    QAction* const voirJournal = dockJournal_->toggleViewAction();
    voirJournal->setText(QStringLiteral("&Journal des événements"));
    affichage->addAction(voirJournal);
    affichage->addAction(QStringLiteral("&Effacer le journal"), journal_, &QPlainTextEdit::clear);

    QMenu* const aide = menuBar()->addMenu(QStringLiteral("A&ide"));
    aide->addAction(QStringLiteral("À &propos"), this, &FenetrePrincipale::aPropos);
}

bool FenetrePrincipale::ouvrePlan(const QString& chemin, const QString& nom) {
    // The control takes its arguments by reference, as its host language did.
    QString fichier = chemin;
    bool nouveau = false;
    QString nomCimetiere = nom;
    bool droitEdition = true;
    plan_->OuvreCimetiere(fichier, nouveau, nomCimetiere, droitEdition);
    // The control reports each failed step and carries on, keeping the previous plan when
    // the new file cannot be read: opened means this file, with its plots layer.
    if (!plan_->Calque_Tombe ||
        QFileInfo(plan_->contexte().carte().mapSet()) != QFileInfo(chemin)) {
        statusBar()->showMessage(QStringLiteral("Le plan « %1 » n'a pas été ouvert")
                                     .arg(QDir::toNativeSeparators(chemin)));
        return false;
    }
    cheminPlan_ = chemin;
    ouvreRegistre(chemin);
    setWindowTitle(nom + QStringLiteral(" — ") + TitreFenetre);
    statusBar()->showMessage(QDir::toNativeSeparators(chemin));
    return true;
}

void FenetrePrincipale::ouvreRegistre(const QString& chemin) {
    liensRegistre_.reset();
    registre_.reset();
    try {
        // Named after its plan: plans that share a folder do not share a register.
        const QFileInfo plan(chemin);
        auto registre = std::make_unique<Registre>(
            plan.dir().filePath(plan.completeBaseName() + QStringLiteral(".registre.sqlite")));
        if (registre->nombreConcessions() == 0 && plan_->Calque_Tombe &&
            plan_->Calque_Tombe->featureCount() > 0) {
            QString type = QStringLiteral("C"), p1, p2, message;
            bool jauge = false;
            if (RecordsetPtr plots = plan_->GetInfo(type, p1, p2, jauge, message))
                registre->genere(*plots);
        }
        registre_ = std::move(registre);
        liensRegistre_ = std::make_unique<QObject>();
        brancheRegistre(*plan_, *registre_, *journal_, *liensRegistre_);
    } catch (const Erreur& e) {
        journal_->appendPlainText(QStringLiteral("Registre indisponible : ") + e.description());
    }
}

void FenetrePrincipale::demandeNouveauCimetiere() {
    const QString dossier = QFileDialog::getExistingDirectory(
        this, QStringLiteral("Dossier du nouveau cimetière"), QDir::homePath());
    if (dossier.isEmpty())
        return;
    bool ok = false;
    const QString nom = QInputDialog::getText(this, QStringLiteral("Nouveau cimetière"),
                                              QStringLiteral("Nom du cimetière :"),
                                              QLineEdit::Normal, QString(), &ok);
    if (ok && !nom.trimmed().isEmpty())
        nouveauCimetiere(dossier, nom.trimmed());
}

void FenetrePrincipale::nouveauCimetiere(const QString& dossier, const QString& nom) {
    QString chemin;
    try {
        chemin = plantool::createEmptyPlan(dossier, nom);
    } catch (const std::exception& e) {
        QMessageBox::warning(
            this, QStringLiteral("Nouveau cimetière"),
            QStringLiteral("Le plan n'a pas pu être créé : %1").arg(QString::fromUtf8(e.what())));
        return;
    }
    QString nomCimetiere = nom;
    bool nouveau = true, droit = true;
    plan_->OuvreCimetiere(chemin, nouveau, nomCimetiere, droit);
    if (plan_->contexte().carte().mapSet() == chemin) {
        cheminPlan_ = chemin;
        ouvreRegistre(chemin);
        setWindowTitle(nom + QStringLiteral(" — ") + TitreFenetre);
        statusBar()->showMessage(QDir::toNativeSeparators(chemin));
    }
}

void FenetrePrincipale::choisisPlan() {
    const QString dossier =
        cheminPlan_.isEmpty() ? QDir::homePath() : QFileInfo(cheminPlan_).absolutePath();
    const QString chemin = QFileDialog::getOpenFileName(
        this, QStringLiteral("Ouvrir un plan"), dossier,
        QStringLiteral("Plans de cimetière (*.gpkg);;Tous les fichiers (*)"));
    if (!chemin.isEmpty())
        ouvrePlan(chemin, QFileInfo(chemin).completeBaseName());
}

void FenetrePrincipale::aPropos() {
    QMessageBox::about(
        this, QStringLiteral("À propos"),
        QStringLiteral("<p><b>Veldra — démonstration</b></p>"
                       "<p>Une application hôte qui intègre le contrôle de plan de cimetière "
                       "Veldra. Le journal à droite montre chaque événement du contrôle avec "
                       "ses arguments, à l'instant où il arrive.</p>"
                       "<p>Plan ouvert : %1</p>")
            .arg(cheminPlan_.isEmpty() ? QStringLiteral("aucun")
                                       : QDir::toNativeSeparators(cheminPlan_).toHtmlEscaped()));
}

void FenetrePrincipale::closeEvent(QCloseEvent* event) {
    // As a container saving the control: the properties that differ from their defaults.
    PropertyBag sac;
    plan_->WriteProperties(sac);
    ecrisProprietes(reglages_, sac);
    event->accept();
}

} // namespace veldra::demo
