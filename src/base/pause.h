#pragma once
// Waits at least `ms` milliseconds while the user-interface event loop keeps running, so
// paint and input events are handled during the wait. Throws veldra::Erreur (Depassement)
// when the end of the wait does not fit the 32-bit tick counter.

#include <QtGlobal>

namespace veldra {

void Pause(qint32 ms);

} // namespace veldra
