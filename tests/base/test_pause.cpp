#include "base/erreur.h"
#include "base/pause.h"

#include <QElapsedTimer>
#include <QTimer>
#include <gtest/gtest.h>
#include <limits>

using namespace veldra;

TEST(Pause, WaitsAtLeastTheTimeAndKeepsTheEventLoopRunning) {
    int fired = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++fired; });
    timer.start(10);
    QElapsedTimer clock;
    clock.start();
    Pause(150);
    EXPECT_GE(clock.elapsed(), 150);
    // A loaded machine may wake the loop late, never early; the timer ran meanwhile.
    EXPECT_LT(clock.elapsed(), 5000);
    EXPECT_GE(fired, 1);
}

TEST(Pause, ZeroOrNegativeReturnsAtOnceAndAnOverflowIsRefused) {
    QElapsedTimer clock;
    clock.start();
    Pause(0);
    Pause(-5);
    EXPECT_LT(clock.elapsed(), 1000); // no wait at all, however busy the machine
    Pause(2); // the tick counter is now past 0, so the longest wait cannot end in range
    EXPECT_THROW(Pause(std::numeric_limits<qint32>::max()), Erreur);
}
