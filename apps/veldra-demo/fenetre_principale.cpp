#include "fenetre_principale.h"

#include "base/erreur.h"
#include "context/prompter.h"
#include "control/veldra.h"
#include "journal_evenements.h"
#include "photos_demo.h"
#include "prompter_hote.h"
#include "proprietes_hote.h"
#include "registre.h"
#include "reponses_concession.h"
#include "reponses_hote.h"
#include "reponses_suppression.h"
#include "sorties_demo.h"
#include "veldra-plan/plan_tool.h"

#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QFontDatabase>
#include <QInputDialog>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
#include <QVBoxLayout>

namespace veldra::demo {

namespace {
const QString TitreFenetre = QStringLiteral("Veldra — démonstration");
}

FenetrePrincipale::FenetrePrincipale(QSettings& reglages, QWidget* parent)
    : QMainWindow(parent), reglages_(reglages) {
    setObjectName(QStringLiteral("FenetrePrincipale"));
    setWindowTitle(TitreFenetre);
    montreDialogue_ = [](QDialog& d) { return d.exec(); };
    confirme_ = [this](const QString& question) {
        return QMessageBox::question(this, QStringLiteral("Suppression"), question,
                                     QMessageBox::Yes | QMessageBox::No,
                                     QMessageBox::No) == QMessageBox::Yes;
    };

    auto* centre = new QWidget;
    pile_ = new QVBoxLayout(centre);
    pile_->setContentsMargins(0, 0, 0, 0);
    pile_->setSpacing(0);
    bandeau_ = new QLabel;
    bandeau_->setObjectName(QStringLiteral("BandeauMessage"));
    bandeau_->setWordWrap(true);
    bandeau_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    bandeau_->setStyleSheet(QStringLiteral(
        "QLabel { background: #FDECEA; color: #611A15; border-bottom: 1px solid #E0A8A2; "
        "padding: 6px 10px; }"));
    bandeau_->hide();
    pile_->addWidget(bandeau_);
    setCentralWidget(centre);
    creeJournal();
    creeMenus();
    installeControle();
}

void FenetrePrincipale::installeControle() {
    plan_ = new Veldra;
    plan_->setObjectName(QStringLiteral("Veldra1"));
    auto prompter = std::make_unique<PrompterHote>(std::make_unique<BoitePrompter>(this));
    prompter_ = prompter.get();
    plan_->setPrompter(std::move(prompter));
    pile_->addWidget(plan_, 1);
    brancheJournal(*plan_, *journal_);
    sansPlan();
    // As a container loading the control: its saved properties before it is shown.
    plan_->ReadProperties(lisProprietes(reglages_));
    // The demo lets its clerks undo their edits, see the analysis' faults on the plan and
    // complete the numbers they search.
    plan_->setAnnulation(true);
    plan_->setAnalyseDetaillee(true);
    plan_->setCompletionNumeros(true);
    // Its clerks print on paper and to PDF from the control's print dialog too; the
    // localisation images it shows are kept lossless. The maps the control hands it to
    // print are shown in a print preview.
    plan_->setImpressionPapier(true);
    plan_->setImageLocalisationPng(true);
    brancheImpression(*plan_, *this);
    // The themes its register can colour the plan with.
    for (auto [libelle, code] : Registre::themes())
        plan_->AjouteTheme(libelle, code);
}

void FenetrePrincipale::redemarreControle() {
    const QString chemin = cheminPlan_, nom = nomPlan_;
    // The register's links use the control: they go before it.
    liensRegistre_.reset();
    registre_.reset();
    PropertyBag sac;
    plan_->WriteProperties(sac);
    ecrisProprietes(reglages_, sac);
    delete plan_; // the control writes its display settings as it goes
    plan_ = nullptr;
    installeControle();
    plan_->show(); // shown before a plan opens, as when the window first appeared
    if (!chemin.isEmpty())
        ouvrePlan(chemin, nom);
}

void FenetrePrincipale::setPrompter(std::unique_ptr<Prompter> prompter) {
    prompter_->setInterieur(std::move(prompter));
}

void FenetrePrincipale::signale(const QString& texte) {
    bandeau_->setText(texte);
    bandeau_->setVisible(!texte.isEmpty());
}

void FenetrePrincipale::sansPlan() {
    plan_->setEnabled(false);
    setWindowTitle(TitreFenetre);
    statusBar()->showMessage(QStringLiteral("Aucun plan ouvert"));
}

FenetrePrincipale::~FenetrePrincipale() = default;

void FenetrePrincipale::creeJournal() {
    journal_ = new QPlainTextEdit;
    journal_->setObjectName(QStringLiteral("JournalEvenements"));
    journal_->setReadOnly(true);
    journal_->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    journal_->setMaximumBlockCount(5000);
    journal_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    journal_->setMinimumWidth(120);

    // A click on an event shows what it carried.
    tableDetails_ = new QTableView;
    tableDetails_->setObjectName(QStringLiteral("TableDetails"));
    tableDetails_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    texteDetails_ = new QPlainTextEdit;
    texteDetails_->setObjectName(QStringLiteral("TexteDetails"));
    texteDetails_->setReadOnly(true);
    texteDetails_->setPlaceholderText(
        QStringLiteral("Cliquez sur un événement pour voir ses arguments en entier."));
    auto* details = new QSplitter(Qt::Vertical);
    details->addWidget(journal_);
    details->addWidget(texteDetails_);
    details->addWidget(tableDetails_);
    details->setStretchFactor(0, 3);
    details->setStretchFactor(1, 1);
    details->setStretchFactor(2, 2);

    dockJournal_ = new QDockWidget(QStringLiteral("Événements du contrôle"), this);
    dockJournal_->setObjectName(QStringLiteral("DockEvenements"));
    dockJournal_->setWidget(details);
    addDockWidget(Qt::RightDockWidgetArea, dockJournal_);
    resizeDocks({dockJournal_}, {340}, Qt::Horizontal);

    brancheDetails(*journal_, *tableDetails_, *texteDetails_);
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

    QMenu* const sorties = menuBar()->addMenu(QStringLiteral("&Sorties"));
    etiquettes_ = sorties->addAction(QStringLiteral("Étiquettes des &titulaires"));
    etiquettes_->setObjectName(QStringLiteral("ActionEtiquettesTitulaires"));
    etiquettes_->setCheckable(true);
    connect(etiquettes_, &QAction::toggled, this, &FenetrePrincipale::etiquettesTitulaires);
    sorties->addAction(QStringLiteral("Image de &localisation…"), this,
                       &FenetrePrincipale::demandeImageLocalisation);

    QMenu* const aide = menuBar()->addMenu(QStringLiteral("A&ide"));
    aide->addAction(QStringLiteral("À &propos"), this, &FenetrePrincipale::aPropos);
}

bool FenetrePrincipale::ouvrePlan(const QString& chemin, const QString& nom) {
    const QString affiche = QDir::toNativeSeparators(chemin);
    if (!QFileInfo(chemin).isFile()) {
        signale(QStringLiteral("Le plan « %1 » n'existe pas.").arg(affiche));
        return false;
    }
    // The control takes its arguments by reference, as its host language did.
    QString fichier = chemin;
    bool nouveau = false;
    QString nomCimetiere = nom;
    bool droitEdition = true;
    QStringList messages;
    {
        const PrompterHote::Retenue retenue(*prompter_, messages);
        plan_->OuvreCimetiere(fichier, nouveau, nomCimetiere, droitEdition);
    }
    // The control reports each failed step and carries on, keeping the previous plan when
    // the new file cannot be read: opened means this file, with its plots layer.
    if (!plan_->Calque_Tombe ||
        QFileInfo(plan_->contexte().carte().mapSet()) != QFileInfo(chemin)) {
        // The control names the file too: its reason alone follows the host's sentence.
        QString pourquoi = messages.isEmpty() ? QString() : messages.constFirst();
        if (const qsizetype fin = pourquoi.lastIndexOf(QStringLiteral("» : ")); fin >= 0)
            pourquoi = pourquoi.mid(fin + 4);
        if (!cheminPlan_.isEmpty() && QFileInfo(cheminPlan_).isFile()) {
            // Back to the plan the clerk had, name and all.
            const QString precedent = cheminPlan_;
            cheminPlan_.clear();
            ouvrePlan(precedent, nomPlan_);
        } else {
            sansPlan();
        }
        signale(
            QStringLiteral("Le plan « %1 » n'a pas pu être ouvert%2.")
                .arg(affiche, pourquoi.isEmpty() ? QString() : QStringLiteral(" : ") + pourquoi));
        return false;
    }
    signale(messages.isEmpty()
                ? QString()
                : QStringLiteral("Le plan « %1 » est ouvert, avec ces remarques : %2")
                      .arg(affiche, messages.join(QStringLiteral(" ; "))));
    planOuvert(chemin, nom);
    return true;
}

void FenetrePrincipale::planOuvert(const QString& chemin, const QString& nom) {
    cheminPlan_ = chemin;
    nomPlan_ = nom;
    plan_->setEnabled(true);
    {
        // A plan opens without labels.
        const QSignalBlocker bloque(etiquettes_);
        etiquettes_->setChecked(false);
    }
    ouvreRegistre(chemin);
    setWindowTitle(nom + QStringLiteral(" — ") + TitreFenetre);
    statusBar()->showMessage(QDir::toNativeSeparators(chemin));
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
            if (RecordsetPtr plots = plan_->GetInfo(type, p1, p2, jauge, message)) {
                registre->genere(*plots);
                // A new register: its first concessions come with photographs.
                creePhotosDemo(*plan_, *registre, chemin);
            }
        }
        registre_ = std::move(registre);
        liensRegistre_ = std::make_unique<QObject>();
        brancheRegistre(*plan_, *registre_, *journal_, *liensRegistre_);
        brancheSuppressions(*plan_, *registre_, *journal_, *liensRegistre_,
                            [this](const QString& question) { return confirme_(question); });
        brancheAffectation(*plan_, *registre_, *journal_, *liensRegistre_,
                           [this](QDialog& d) { return montreDialogue_(d); });
    } catch (const Erreur& e) {
        journal_->appendPlainText(QStringLiteral("Registre indisponible : ") + e.description());
    }
}

void FenetrePrincipale::setConfirmation(std::function<bool(const QString&)> confirme) {
    confirme_ = std::move(confirme);
}

void FenetrePrincipale::setMontreDialogue(std::function<int(QDialog&)> montre) {
    montreDialogue_ = std::move(montre);
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

bool FenetrePrincipale::nouveauCimetiere(const QString& dossier, const QString& nom) {
    QString chemin;
    try {
        chemin = plantool::createEmptyPlan(dossier, nom);
    } catch (const std::exception& e) {
        signale(
            QStringLiteral("Le plan n'a pas pu être créé : %1").arg(QString::fromUtf8(e.what())));
        return false;
    }
    QString nomCimetiere = nom;
    bool nouveau = true, droit = true;
    plan_->OuvreCimetiere(chemin, nouveau, nomCimetiere, droit);
    if (QFileInfo(plan_->contexte().carte().mapSet()) != QFileInfo(chemin)) {
        // The size was not given: the empty file must not stop the next try.
        for (const QString& suffixe : {QString(), QStringLiteral("-wal"), QStringLiteral("-shm"),
                                       QStringLiteral("-journal")})
            QFile::remove(chemin + suffixe);
        return false;
    }
    signale(QString());
    planOuvert(chemin, nom);
    return true;
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

void FenetrePrincipale::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    // A small window squeezes the log; it gets its width back when there is room again.
    const int voulue = 340;
    if (dockJournal_->isVisible() && !dockJournal_->isFloating() &&
        dockJournal_->width() < voulue && width() - voulue >= plan_->minimumWidth() + 40)
        resizeDocks({dockJournal_}, {voulue}, Qt::Horizontal);
}

void FenetrePrincipale::closeEvent(QCloseEvent* event) {
    // As a container saving the control: the properties that differ from their defaults.
    PropertyBag sac;
    plan_->WriteProperties(sac);
    ecrisProprietes(reglages_, sac);
    event->accept();
}

void FenetrePrincipale::etiquettesTitulaires(bool montre) {
    {
        const QSignalBlocker bloque(etiquettes_);
        etiquettes_->setChecked(montre && registre_);
    }
    if (montre && registre_)
        etiquetteTitulaires(*plan_, *registre_);
    else
        plan_->RAZEtiquette();
}

QDialog* FenetrePrincipale::imageLocalisation(const QString& id) {
    QDialog* fenetre = nullptr;
    try {
        fenetre = montreImageLocalisation(*plan_, this, id);
    } catch (const Erreur& e) {
        signale(QStringLiteral("L'image de localisation n'a pas pu être faite : ") +
                e.description());
        return nullptr;
    }
    if (!fenetre)
        signale(QStringLiteral("Aucun emplacement du plan ne porte la concession « %1 ».")
                    .arg(id.left(40)));
    return fenetre;
}

void FenetrePrincipale::demandeImageLocalisation() {
    bool ok = false;
    const QString id = QInputDialog::getText(this, QStringLiteral("Image de localisation"),
                                             QStringLiteral("Numéro de la concession (IDGCF) :"),
                                             QLineEdit::Normal, QString(), &ok);
    if (ok)
        imageLocalisation(id.trimmed());
}

} // namespace veldra::demo
