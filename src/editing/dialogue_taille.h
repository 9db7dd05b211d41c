#pragma once
// Define_Taille: the length, width and area of a plot. Leaving the length box makes the
// area length x width; leaving the area box makes the width area / length (the length
// area / width when no length is given). Numbers are read leniently (text that is not a
// number counts as 0) with a comma or a point.

#include <QDialog>

class QLineEdit;
class QPushButton;

namespace veldra {

class Define_Taille : public QDialog {
    Q_OBJECT
public:
    Define_Taille(double longueur, double largeur, double aire, QWidget* parent = nullptr);

    bool valide() const { return valide_; }
    double longueur() const { return longueur_; }
    double largeur() const { return largeur_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void quitteLongueur();
    void quitteAire();

    QLineEdit* Text1;
    QLineEdit* Text2;
    QLineEdit* Text3;
    QPushButton* Command1;
    QPushButton* Command2;
    bool valide_ = false;
    double longueur_ = 0;
    double largeur_ = 0;
};

} // namespace veldra
