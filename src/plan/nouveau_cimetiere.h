#pragma once
// A new plan: the dialog New_Cim asks for the approximate size of the cemetery, then the
// empty plan the host prepared is opened with its enclosure drawn at that size.

#include <QDialog>
#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace veldra {

class Contexte;

class New_Cim : public QDialog {
    Q_OBJECT
public:
    // What confirming calls: the control's NouveauCimetiere.
    using Creation =
        std::function<void(QString& chemin, QString& nom, double& longueur, double& largeur)>;

    New_Cim(Contexte& ctx, QString nom, QString chemin, Creation creation, QWidget* parent);

    QLabel* Titre = nullptr;
    QLineEdit* TB_Longueur = nullptr;
    QLineEdit* TB_Largeur = nullptr;
    QPushButton* Btn_Valider = nullptr;

private:
    void valide();

    Contexte& ctx_;
    QString nom_;
    QString chemin_;
    Creation creation_;
};

// Keeps the size and opens the plan as a new one, with the right to edit.
void nouveauCimetiere(Contexte& ctx, const QString& chemin, const QString& nom, double longueur,
                      double largeur);
// Shows New_Cim through the control's modal-dialog hook.
void demandeTailleCimetiere(Contexte& ctx, const QString& chemin, const QString& nom,
                            New_Cim::Creation creation);

} // namespace veldra
