#pragma once
// Divers: the small dialog through which the clerk writes a free text, turns the selected
// features or the numbers of the selected plots, and sets the size, weight and colour of
// every plot number. One of its procedures prepares it (the panel and the mode), then the
// control shows it modally; its buttons act on the plan through the control's context.
//   Coordonnees  a new text at a point          (mode "Texte", Panel_Texte)
//   Texte        an existing text                (mode "Texte", Panel_Texte)
//   Etiquette    the lettering of plots' labels  (mode "Etiquette", Panel_Texte)
//   PRotation    turn the selected features      (mode "Rotation", Panel_Rotation)
//   PRotationNumero  turn the plots' numbers     (mode "RotationNumero", Panel_Rotation)
//   PTailleNumeroTerrain  every plot number      (Panel_TailleNumeroTerrain)

#include "carto/geometry/point.h"
#include "carto/model/colour.h"
#include "carto/model/feature.h"

#include <QDialog>
#include <functional>
#include <optional>

class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QLineEdit;
class QPushButton;

namespace veldra {

class Contexte;
class EchantillonCouleur;

class Divers : public QDialog {
    Q_OBJECT
public:
    Divers(Contexte& ctx, QWidget* parent = nullptr);

    void Coordonnees(double X1, double Y1, double X2, double Y2);
    void Texte(const carto::Feature& texte);
    void Etiquette();
    void PRotation();
    void PRotationNumero();
    void PTailleNumeroTerrain();
    // Turns as the mode says: by the angle in degrees (read leniently, a comma allowed),
    // or back to horizontal with "H".
    void Rotation(const QString& angle);

    const QString& mode() const { return mode_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void montrePanneau(QFrame* panneau);
    void valideTexte();
    void valideTailleNumero();

    Contexte& ctx_;
    QString mode_;
    carto::Point point_;
    std::optional<carto::Feature> texte_;

    QFrame* Panel_Texte;
    QLineEdit* Text;
    QLineEdit* Taille;
    QCheckBox* cb_Gras;
    QCheckBox* CB_Souligne;
    QCheckBox* cb_Ombre;
    QComboBox* CB_Fond;
    EchantillonCouleur* PCouleur;
    EchantillonCouleur* PCouleurFond;
    QCheckBox* Cb_Sauvegarde;
    QLabel* L_NomCalque;
    QPushButton* Btn_Valider;
    QPushButton* Btn_Annuler;

    QFrame* Panel_Rotation;
    QLineEdit* Angle;
    QPushButton* Btn_ValiderRotation;
    QPushButton* Btn_Horizontal;
    QPushButton* Btn_AnnulerRot;

    QFrame* Panel_TailleNumeroTerrain;
    QLineEdit* T_Taille;
    QCheckBox* CB_NumeroGras;
    EchantillonCouleur* P_CouleurNumero;
    QPushButton* Btn_ValiderTailleNumero;
};

// Creates the dialog, lets `prepare` choose its panel, and shows it through the control's
// modal hook, owned by the control.
void ouvreDivers(Contexte& ctx, const std::function<void(Divers&)>& prepare);

} // namespace veldra
