#include "context/jauge.h"

#include "base/erreur.h"
#include "base/pause.h"
#include "context/contexte.h"

#include <QGuiApplication>

namespace veldra {

namespace {

constexpr qint32 kValeurIncorrecte = 380;
// Long work keeps the event loop waiting: the bar is drawn at once this often.
constexpr qint64 kIntervalleDessinMs = 100;

// The screen's hourglass is set once however many gauges start, and restored once.
void sablierEcran(Contexte& ctx, bool actif) {
    if (actif == ctx.etat.sablierJauge)
        return;
    if (actif)
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QGuiApplication::restoreOverrideCursor();
    ctx.etat.sablierJauge = actif;
}

} // namespace

void JaugeParam(Contexte& ctx, qint32 min, qint32 max, const QString& message,
                const QString& titre) {
    if (max == 0)
        return;
    if (min > max)
        throw Erreur(kValeurIncorrecte,
                     QStringLiteral("Valeur de propriété non valide (minimum %1, maximum %2).")
                         .arg(min)
                         .arg(max));
    Surface& s = ctx.s;
    ctx.etat.pointeurCarte = s.Map1->mousePointer();
    s.Map1->setMousePointer(carto::pointer::Hourglass);
    sablierEcran(ctx, true);
    s.ProgressBar1->setRange(min, max);
    s.ProgressBar1->setValue(min);
    s.Titre_Jauge->setText(QLatin1Char(' ') + titre);
    s.L_Message->setText(message);
    s.L_Message->repaint();
    s.Panel_Jauge->show();
    s.Panel_Jauge->raise();
    // Long work starts right after: let the panel be drawn first.
    Pause(150);
    ctx.etat.jaugeDessinee.start();
}

void JaugePlus(Contexte& ctx) {
    QProgressBar& bar = *ctx.s.ProgressBar1;
    const qint32 suivante = bar.value() + 1;
    if (suivante > bar.maximum() || suivante < bar.minimum())
        throw Erreur(kValeurIncorrecte,
                     QStringLiteral("Valeur de propriété non valide (%1 au-delà de %2).")
                         .arg(suivante)
                         .arg(bar.maximum()));
    bar.setValue(suivante);
    QElapsedTimer& dessinee = ctx.etat.jaugeDessinee;
    if (dessinee.isValid() && dessinee.elapsed() >= kIntervalleDessinMs) {
        bar.repaint();
        dessinee.start();
    }
}

void JaugeFin(Contexte& ctx) {
    ctx.s.Map1->setMousePointer(ctx.etat.pointeurCarte);
    sablierEcran(ctx, false);
    ctx.s.Panel_Jauge->hide();
}

} // namespace veldra
