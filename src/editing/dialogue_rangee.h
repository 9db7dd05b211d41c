#pragma once
// Dialogue_Rangee: what row of plots the clerk asks for. Counts and numbers are whole
// numbers; the gap is read leniently (comma or point); the direction is along the model's
// first side or across it.

#include "editing/rangee.h"

#include <QDialog>

class QComboBox;
class QLineEdit;
class QSpinBox;

namespace veldra {

class Dialogue_Rangee : public QDialog {
    Q_OBJECT
public:
    explicit Dialogue_Rangee(QWidget* parent = nullptr);
    DemandeRangee demande() const;

private:
    QSpinBox* nombre_;
    QLineEdit* ecart_;
    QComboBox* sens_;
    QLineEdit* premier_;
    QLineEdit* pas_;
    QLineEdit* prefixe_;
    QLineEdit* suffixe_;
};

} // namespace veldra
