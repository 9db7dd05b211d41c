#pragma once
// The progress gauge over the map: a title, a message and a bar, shown by JaugeParam,
// advanced by JaugePlus and hidden by JaugeFin, for the control's own long work and for
// the host's.

#include <QtGlobal>

class QString;

namespace veldra {

class Contexte;

// Does nothing at all when `max` is 0. A range the bar cannot take (min above max) is
// refused with Erreur 380 before anything changes.
void JaugeParam(Contexte& ctx, qint32 min, qint32 max, const QString& message,
                const QString& titre);
// One step; a value beyond the maximum is refused with Erreur 380 and the bar unchanged.
void JaugePlus(Contexte& ctx);
void JaugeFin(Contexte& ctx);

// Closes the gauge at the end of the scope, when it was opened, whatever happens.
class FinDeJauge {
public:
    FinDeJauge(Contexte& ctx, bool ouverte) : ctx_(ctx), ouverte_(ouverte) {}
    ~FinDeJauge() {
        if (ouverte_)
            JaugeFin(ctx_);
    }
    FinDeJauge(const FinDeJauge&) = delete;
    FinDeJauge& operator=(const FinDeJauge&) = delete;

private:
    Contexte& ctx_;
    bool ouverte_;
};

} // namespace veldra
