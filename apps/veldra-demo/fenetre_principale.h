#pragma once
// The demo host's main window: the control as its central widget, the log of its events
// in a dock on the right, and the menus a host would offer to open a plan. The control's
// design-time properties are read from the host's settings before the window is shown
// and written back when it closes.

#include <QMainWindow>
#include <QString>
#include <functional>
#include <memory>

class QAction;
class QDialog;
class QDockWidget;
class QLabel;
class QPlainTextEdit;
class QSettings;
class QTableView;
class QVBoxLayout;

namespace veldra {
class Prompter;
class Veldra;
} // namespace veldra

namespace veldra::demo {

class PrompterHote;
class Registre;

class FenetrePrincipale : public QMainWindow {
    Q_OBJECT

public:
    explicit FenetrePrincipale(QSettings& reglages, QWidget* parent = nullptr);
    ~FenetrePrincipale() override;

    Veldra& plan() { return *plan_; }
    QPlainTextEdit& journal() { return *journal_; }
    QTableView& tableDetails() { return *tableDetails_; }
    QPlainTextEdit& texteDetails() { return *texteDetails_; }
    // The host's message shown above the control; hidden when there is none.
    QLabel& bandeau() { return *bandeau_; }
    // Who answers the control's messages: message boxes by default.
    void setPrompter(std::unique_ptr<Prompter> prompter);
    // The register of the open plan; nullptr before a plan is open.
    Registre* registre() { return registre_.get(); }

    // Opens the plan at `chemin` under the name `nom`, with the right to edit it. False
    // when it could not be opened: the window then says why in one message and goes back
    // to the plan it had, if any.
    bool ouvrePlan(const QString& chemin, const QString& nom);
    // Writes an empty plan named `nom` in `dossier` and opens it as a new cemetery: the
    // control asks for its size. Cancelled, nothing is left in the folder. True when the
    // new plan is open.
    bool nouveauCimetiere(const QString& dossier, const QString& nom);
    // Shows `texte` above the control until the next plan opens.
    void signale(const QString& texte);
    // Who answers the host's own yes-or-no questions (a deletion to confirm): a French
    // message box by default.
    void setConfirmation(std::function<bool(const QString&)> confirme);
    // Who answers the host's own dialogs (the concession to assign): exec() by default.
    void setMontreDialogue(std::function<int(QDialog&)> montre);
    // The plots labelled with their holders' names from the register, or not.
    void etiquettesTitulaires(bool montre);
    // The localisation image of concession `id` in a window; nullptr when the plan has no
    // plot of that key (the window's message bar then says so).
    QDialog* imageLocalisation(const QString& id);
    // The control closed as its container would close it (its settings written) and a new
    // one put in its place, with the plan that was open opened again.
    void redemarreControle();

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void creeJournal();
    // The control made, wired to the window and given its saved properties.
    void installeControle();
    // The control's state when no plan is open: nothing to click.
    void sansPlan();
    void planOuvert(const QString& chemin, const QString& nom);
    void creeMenus();
    void choisisPlan();
    void demandeNouveauCimetiere();
    // The register beside the plan, made from the plan's plots the first time.
    void ouvreRegistre(const QString& chemin);
    void aPropos();
    void demandeImageLocalisation();

    QSettings& reglages_;
    Veldra* plan_ = nullptr; // owned by the window's central widget
    PrompterHote* prompter_; // owned by the control
    QLabel* bandeau_ = nullptr;
    QVBoxLayout* pile_ = nullptr; // the banner above the control
    QDockWidget* dockJournal_ = nullptr;
    QAction* etiquettes_ = nullptr;
    QPlainTextEdit* journal_ = nullptr;
    QTableView* tableDetails_ = nullptr;
    QPlainTextEdit* texteDetails_ = nullptr;
    QString cheminPlan_;
    QString nomPlan_;
    std::unique_ptr<Registre> registre_;
    std::function<bool(const QString&)> confirme_;
    std::function<int(QDialog&)> montreDialogue_;
    std::unique_ptr<QObject> liensRegistre_; // destroyed first: its connections use the register
};

} // namespace veldra::demo
