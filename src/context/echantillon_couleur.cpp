#include "context/echantillon_couleur.h"

#include "context/contexte.h"
#include "context/garde.h"

#include <QColorDialog>
#include <QMouseEvent>

namespace veldra {

EchantillonCouleur::EchantillonCouleur(Contexte& ctx, QWidget* parent, const char* nom)
    : QFrame(parent), ctx_(ctx) {
    setObjectName(QString::fromLatin1(nom));
    setFrameShape(QFrame::Box);
    setFixedSize(40, 20);
    setAutoFillBackground(true);
    setCursor(Qt::PointingHandCursor);
    setToolTip(QStringLiteral("Choisir la couleur"));
}

carto::Colour EchantillonCouleur::couleur() const {
    return carto::fromQColor(palette().color(QPalette::Window));
}

void EchantillonCouleur::setCouleur(carto::Colour c) {
    QPalette p = palette();
    p.setColor(QPalette::Window, carto::toQColor(c));
    setPalette(p);
}

void EchantillonCouleur::choisit() {
    QColorDialog choix(carto::toQColor(couleur()), this);
    choix.setObjectName(QStringLiteral("palette_couleurs"));
    choix.setWindowTitle(QStringLiteral("Couleur"));
    if (ctx_.montreModal(choix) != QDialog::Accepted)
        return;
    setCouleur(carto::fromQColor(choix.currentColor()));
    emit couleurChoisie(couleur());
}

void EchantillonCouleur::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        sousGarde(ctx_, [this] { choisit(); });
}

} // namespace veldra
