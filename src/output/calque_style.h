#pragma once
// The four layer style dialogs behind "Style de la sélection": one style of one kind of
// feature, loaded, edited and left readable once the clerk confirmed (Btn_Ok) or cancelled
// (Btn_cancel).
//   Calque_style_ligne    colour, width, dash
//   Calque_style_region   fill pattern ImageCombo1 (68), border style ImageCombo2 (118),
//                         pixel width ImageCombo3 (7) or a width of Combo1, colours, Check1
//   Calque_style_symbole  font (ending with "Symboles personnalisés"), character, size,
//                         colour and a preview
//   Calque_style_texte    font, size, colour, effects and the "Aa" preview

#include "carto/model/style.h"

#include <QDialog>
#include <functional>

class QCheckBox;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

namespace veldra {

class Contexte;
class EchantillonCouleur;

class CalqueStyle : public QDialog {
    Q_OBJECT
public:
    // Loads `style`, shows the dialog through the control's modal hook and says whether the
    // clerk confirmed.
    bool Edite(const carto::Style& style);
    const carto::Style& style() const { return style_; }

protected:
    CalqueStyle(Contexte& ctx, QWidget* parent, const char* nom, const QString& titre);
    virtual void charge(const carto::Style& s) = 0;
    virtual void lit(carto::Style& s) const = 0;
    // The preview follows the controls.
    virtual void previsualise() {}
    void suit(QComboBox* c);
    void suit(QCheckBox* c);
    void suit(EchantillonCouleur* e);

    Contexte& ctx_;
    QVBoxLayout* corps_;
    carto::Style style_;

private:
    QPushButton* Btn_Ok;
    QPushButton* Btn_cancel;
};

class Calque_style_ligne : public CalqueStyle {
    Q_OBJECT
public:
    Calque_style_ligne(Contexte& ctx, QWidget* parent);

protected:
    void charge(const carto::Style& s) override;
    void lit(carto::Style& s) const override;

private:
    EchantillonCouleur* Couleur;
    QComboBox* ImageCombo1; // width
    QComboBox* ImageCombo2; // dash
};

class Calque_style_region : public CalqueStyle {
    Q_OBJECT
public:
    Calque_style_region(Contexte& ctx, QWidget* parent);
    // The widths of Combo1, in its order.
    static constexpr int kLargeurs[10] = {2, 5, 7, 10, 15, 20, 25, 30, 40, 50};

protected:
    void charge(const carto::Style& s) override;
    void lit(carto::Style& s) const override;

private:
    QCheckBox* Check1; // the hatch drawn without its background
    QComboBox* ImageCombo1;
    EchantillonCouleur* CouleurMotif;
    EchantillonCouleur* CouleurFond;
    QComboBox* ImageCombo2;
    QRadioButton* OptionPixels;
    QComboBox* ImageCombo3;
    QRadioButton* OptionLargeurs;
    QComboBox* Combo1;
    EchantillonCouleur* CouleurContour;
};

class Calque_style_symbole : public CalqueStyle {
    Q_OBJECT
public:
    Calque_style_symbole(Contexte& ctx, QWidget* parent);
    static inline const QString kPersonnalises = QStringLiteral("Symboles personnalisés");

protected:
    void charge(const carto::Style& s) override;
    void lit(carto::Style& s) const override;
    void previsualise() override;

private:
    void remplitCaracteres();

    QComboBox* Police;
    QListWidget* Caracteres;
    QComboBox* Taille;
    EchantillonCouleur* Couleur;
    QLabel* Apercu;
};

class Calque_style_texte : public CalqueStyle {
    Q_OBJECT
public:
    Calque_style_texte(Contexte& ctx, QWidget* parent);

protected:
    void charge(const carto::Style& s) override;
    void lit(carto::Style& s) const override;
    void previsualise() override;

private:
    QComboBox* Police;
    QComboBox* Taille;
    EchantillonCouleur* Couleur;
    EchantillonCouleur* CouleurFond;
    QCheckBox* Check1; // bold
    QCheckBox* Check2; // underlined
    QCheckBox* Check3; // halo
    QCheckBox* Check4; // box
    QCheckBox* Check5; // shadow
    QLabel* Apercu;
};

} // namespace veldra
