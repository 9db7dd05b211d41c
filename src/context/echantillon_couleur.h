#pragma once
// A small coloured box that stands for a colour setting: a click opens the colour chooser
// (through the control's modal hook) and the chosen colour becomes the box's colour.

#include "carto/model/colour.h"

#include <QFrame>

namespace veldra {

class Contexte;

class EchantillonCouleur : public QFrame {
    Q_OBJECT
public:
    EchantillonCouleur(Contexte& ctx, QWidget* parent, const char* nom);

    carto::Colour couleur() const;
    void setCouleur(carto::Colour c);
    // The colour chooser, as a click opens it.
    void choisit();

signals:
    void couleurChoisie(carto::Colour c);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    Contexte& ctx_;
};

} // namespace veldra
