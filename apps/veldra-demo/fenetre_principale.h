#pragma once
// The demo host's main window: the control as its central widget, the log of its events
// in a dock on the right, and the menus a host would offer to open a plan. The control's
// design-time properties are read from the host's settings before the window is shown
// and written back when it closes.

#include <QMainWindow>
#include <QString>
#include <memory>

class QDockWidget;
class QPlainTextEdit;
class QSettings;

namespace veldra {
class Veldra;
}

namespace veldra::demo {

class Registre;

class FenetrePrincipale : public QMainWindow {
    Q_OBJECT

public:
    explicit FenetrePrincipale(QSettings& reglages, QWidget* parent = nullptr);
    ~FenetrePrincipale() override;

    Veldra& plan() { return *plan_; }
    QPlainTextEdit& journal() { return *journal_; }
    // The register of the open plan; nullptr before a plan is open.
    Registre* registre() { return registre_.get(); }

    // Opens the plan at `chemin` under the name `nom`, with the right to edit it. False
    // when the control could not open it (it has then told the user why).
    bool ouvrePlan(const QString& chemin, const QString& nom);
    // Writes an empty plan named `nom` in `dossier` and opens it as a new cemetery: the
    // control asks for its size.
    void nouveauCimetiere(const QString& dossier, const QString& nom);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void creeJournal();
    void creeMenus();
    void choisisPlan();
    void demandeNouveauCimetiere();
    // The register beside the plan, made from the plan's plots the first time.
    void ouvreRegistre(const QString& chemin);
    void aPropos();

    QSettings& reglages_;
    Veldra* plan_;
    QDockWidget* dockJournal_ = nullptr;
    QPlainTextEdit* journal_ = nullptr;
    QString cheminPlan_;
    std::unique_ptr<Registre> registre_;
    std::unique_ptr<QObject> liensRegistre_; // destroyed first: its connections use the register
};

} // namespace veldra::demo
