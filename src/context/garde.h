#pragma once
// The control's error boundary. Every slot that the control or one of its modules connects
// to a widget or to the map view runs inside garde(), so that no exception crosses Qt's
// event loop: an Erreur is shown through the prompter as "number : description", any
// other exception as an Erreur of its kind (7 out of memory, 51 internal error).

#include "base/erreur.h"

#include <QString>
#include <exception>
#include <new>
#include <utility>

namespace veldra {

class Contexte;

// Shows the error to the user, titled `titre` (empty for the control's own handlers).
void signaleErreur(Contexte& ctx, const Erreur& e, const QString& titre = {});

// Runs f, turning whatever it throws into a message.
template <typename F> void sousGarde(Contexte& ctx, F&& f) {
    try {
        std::forward<F>(f)();
    } catch (const Erreur& e) {
        signaleErreur(ctx, e);
    } catch (const std::bad_alloc&) {
        signaleErreur(ctx,
                      Erreur(err::MemoireInsuffisante, QStringLiteral("Mémoire insuffisante")));
    } catch (const std::exception& e) {
        signaleErreur(ctx, Erreur(err::ErreurInterne, QString::fromLocal8Bit(e.what())));
    } catch (...) {
        signaleErreur(ctx, Erreur(err::ErreurInterne, QStringLiteral("Erreur interne")));
    }
}

namespace detail {
template <typename F, typename R, typename C, typename... A>
auto gardeAvec(Contexte& ctx, F f, R (C::*)(A...) const) {
    return [&ctx, f = std::move(f)](A... args) {
        sousGarde(ctx, [&] { f(std::forward<A>(args)...); });
    };
}
template <typename F, typename R, typename C, typename... A>
auto gardeAvec(Contexte& ctx, F f, R (C::*)(A...)) {
    return [&ctx, f = std::move(f)](A... args) mutable {
        sousGarde(ctx, [&] { f(std::forward<A>(args)...); });
    };
}
} // namespace detail

// A slot for QObject::connect: f, with the very parameters it declares (so that Qt matches
// it to the signal as it would match f), run under sousGarde.
template <typename F> auto garde(Contexte& ctx, F f) {
    return detail::gardeAvec(ctx, std::move(f), &F::operator());
}

} // namespace veldra
