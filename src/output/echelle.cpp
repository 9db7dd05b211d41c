#include "output/echelle.h"

#include "base/erreur.h"
#include "context/contexte.h"
#include "context/garde.h"
#include "recordset/value.h"

#include <QAction>
#include <cmath>

namespace veldra {

namespace {

// Beyond this the view would be wider than the Earth many times over.
constexpr double kEchelleMaximale = 1e9;

QList<QAction*> entrees(const Contexte& ctx) {
    return ctx.s.MenuEchelle->actions();
}

} // namespace

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

void AppliqueEchelle(Contexte& ctx, double N) {
    if (!(N > 0) || !std::isfinite(N) || N > kEchelleMaximale)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("L'échelle 1/%1 ne peut pas être affichée.").arg(N));
    carto::MapView& carte = *ctx.s.Map1;
    carte.setZoom(carte.paperWidth() * N / 100);
    const QList<QAction*> e = entrees(ctx);
    for (qsizetype i = 1; i < e.size(); ++i)
        e[i]->setChecked(kEchellesPredefinies[i - 1] == N);
}

void appliqueEchelleSaisie(Contexte& ctx) {
    QLineEdit& saisie = *ctx.s.L_echelle;
    QString texte = saisie.text();
    // The box shows its own value grouped by thousands: "1 235" is 1235.
    texte.remove(u' ');
    texte.remove(QChar(0xA0));
    const double n = recordset::leadingNumber(texte);
    if (saisie.text().trimmed().isEmpty() || !(n > 0)) {
        ctx.prompter().message(QStringLiteral("Vous devez saisir un nombre supérieur à 0 !"),
                               boutons::Ok, QString());
        saisie.setFocus();
        return;
    }
    AppliqueEchelle(ctx, n);
    ctx.s.Map1->refresh();
}

void menuEchelle(Contexte& ctx) {
    QToolButton& bouton = *ctx.s.Echelle;
    // Under the button, its left edge on the button's.
    const QPoint ou = bouton.mapToGlobal(QPoint(0, bouton.height()));
    const QAction* choisie = ctx.montreMenu(*ctx.s.MenuEchelle, ou);
    bouton.setDown(false);
    const QList<QAction*> e = entrees(ctx);
    for (qsizetype i = 1; i < e.size(); ++i)
        if (e[i] == choisie)
            AppliqueEchelle(ctx, kEchellesPredefinies[i - 1]);
}

void connecteEchelle(Contexte& ctx) {
    Contexte* c = &ctx;
    const Surface& s = ctx.s;
    QObject::connect(s.b_rafraichir, &QToolButton::clicked, &ctx.controle,
                     garde(ctx, [c] { appliqueEchelleSaisie(*c); }));
    QObject::connect(s.L_echelle, &QLineEdit::returnPressed, &ctx.controle,
                     garde(ctx, [c] { appliqueEchelleSaisie(*c); }));
    QObject::connect(s.Echelle, &QToolButton::clicked, &ctx.controle,
                     garde(ctx, [c] { menuEchelle(*c); }));
}

} // namespace veldra
