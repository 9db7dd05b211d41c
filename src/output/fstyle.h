#pragma once
// fStyle: the style of one feature (a line, an area or a text), edited in the frame of its
// kind and written back to the feature when the clerk confirms.
//   Frame_Ligne     colour b_couleur_obj, width ImageCombo2, dash ImageCombo3
//   Frame_Polygone  border b_couleur_Contour, ImageCombo1 (width), ImageComboType (style);
//                   inside ImageComboRegion (fill type), b_couleur_Int, b_couleur_Motif
//   Frame_Texte     font ImageCombo1, size ImageCombo2, border ImageCombo3, weight
//                   "Epaisseur", colour b_couleur_Texte and the "Exemple" preview

#include "carto/model/feature.h"

#include <QDialog>
#include <optional>

class QCheckBox;
class QComboBox;
class QFrame;
class QLabel;
class QPushButton;

namespace veldra {

class Contexte;
class EchantillonCouleur;

class fStyle : public QDialog {
    Q_OBJECT
public:
    fStyle(Contexte& ctx, QWidget* parent = nullptr);

    // Prepares the dialog for "Ligne", "Polygone" or "Texte" and `feature`.
    void Style(const QString& sType, const carto::Feature& feature);
    // The style the controls hold, over the feature's own.
    carto::Style styleSaisi() const;
    const QString& type() const { return type_; }

private:
    void choisitInterieur();
    void previsualise();
    void valide();

    Contexte& ctx_;
    QString type_;
    std::optional<carto::Feature> objet_;

    QLabel* Titre_Style;
    QFrame* Frame_Ligne;
    EchantillonCouleur* b_couleur_obj;
    QComboBox* ImageCombo2;
    QComboBox* ImageCombo3;

    QFrame* Frame_Polygone;
    EchantillonCouleur* b_couleur_Contour;
    QComboBox* ImageCombo1;
    QComboBox* ImageComboType;
    QComboBox* ImageComboRegion;
    QLabel* L_couleurInterieure;
    EchantillonCouleur* b_couleur_Int;
    QLabel* L_couleurMotif;
    EchantillonCouleur* b_couleur_Motif;
    QLabel* L_InfoInterieur;

    QFrame* Frame_Texte;
    QComboBox* Police_Texte;
    QComboBox* Taille_Texte;
    QComboBox* Bordure_Texte;
    QCheckBox* Epaisseur;
    EchantillonCouleur* b_couleur_Texte;
    EchantillonCouleur* b_couleur_FondTexte;
    QLabel* Exemple;

    QPushButton* Btn_Valider;
    QPushButton* Btn_AnnulerRot;
};

// The sizes offered for texts, in points.
inline constexpr double kTaillesTexte[] = {6, 8, 10, 12, 14, 18, 24, 36, 48, 72};

} // namespace veldra
