#pragma once
// Themes: the dialog that lists the host's themes, then the photo theme, and starts the
// one the user picks (Valider, or a double click on its row) through Action, after the
// theme on show has been removed. Fermer closes it without a change.

#include <QDialog>
#include <QIcon>
#include <array>

class QPushButton;
class QTreeWidget;

namespace veldra {

class Contexte;

class Themes : public QDialog {
    Q_OBJECT
public:
    explicit Themes(Contexte& ctx, QWidget* parent = nullptr);

    // One row per theme of the catalogue, up to its first empty label, then the photo
    // theme's row when the catalogue is not full. Errors titled "Charge".
    void Charge(const std::array<std::array<QString, 2>, 100>& tableau);
    // Starts the selected row's theme and closes the dialog. Errors titled "ExecuteTheme".
    void ExecuteTheme();

    // The control, while the dialog is open.
    Contexte* ObOCXT;
    QTreeWidget* ListView1;
    QPushButton* Btn_Valider;
    QPushButton* Command2;

protected:
    void done(int resultat) override;

private:
    QIcon des_; // the image list's "des" entry
};

// BTN_Themes: the dialog, filled from the catalogue and shown modally. Errors titled
// "BTN_Themes_Click".
void BTN_Themes_Click(Contexte& ctx);

} // namespace veldra
