#include "output/echelle.h"

#include "context/contexte.h"

#include <cmath>

namespace veldra {

QString formatMilliers(double valeur) {
    const qint64 n = qint64(std::llround(valeur));
    if (n == 0)
        return QStringLiteral(" ");
    const QString chiffres = QString::number(std::llabs(n));
    const QString signe = n < 0 ? QStringLiteral("-") : QString();
    if (chiffres.size() <= 3)
        return signe + u' ' + chiffres;
    return signe + chiffres.left(chiffres.size() - 3) + u' ' + chiffres.right(3);
}

void afficheEchelle(Contexte& ctx) {
    const carto::MapView& carte = *ctx.s.Map1;
    const double largeur = carte.paperWidth();
    if (!(largeur > 0))
        return;
    const double z = carte.zoom();
    QString texte = formatMilliers(z / largeur * 100);
    if (texte.trimmed().isEmpty()) {
        // Below one: the scale with its decimals, in thousandths.
        const double fin = std::round(z / largeur * 10000 * 100) / 100;
        texte = QString::number(fin / 1000);
    }
    ctx.s.L_echelle->setText(texte);
}

} // namespace veldra
