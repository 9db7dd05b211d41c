#include "pause.h"

#include "base/erreur.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <limits>
#include <thread>

namespace veldra {
namespace {

// Milliseconds since the first call: the process's own tick counter.
qint64 tickCount() {
    static const QElapsedTimer start = [] {
        QElapsedTimer t;
        t.start();
        return t;
    }();
    return start.elapsed();
}

} // namespace

void Pause(qint32 ms) {
    const qint64 end = tickCount() + qint64(ms);
    if (end > std::numeric_limits<qint32>::max())
        throw Erreur(err::Depassement, QStringLiteral("Dépassement de capacité"));
    for (qint64 left = end - tickCount(); left > 0; left = end - tickCount()) {
        if (!QCoreApplication::instance()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(left));
            continue;
        }
        // A nested loop sleeps until the timer or an event arrives: no busy wait.
        QEventLoop loop;
        QTimer::singleShot(std::chrono::milliseconds(left), Qt::PreciseTimer, &loop,
                           &QEventLoop::quit);
        loop.exec();
    }
}

} // namespace veldra
