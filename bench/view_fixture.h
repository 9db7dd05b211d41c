#pragma once
// A map view of a generated plan, shown and drawn once, at the size the view benchmarks
// and their peers share.

#include "bench_plans.h"
#include "carto/view/map_view.h"

#include <QApplication>
#include <QWindow>

inline constexpr QSize kViewSize(1600, 1000);

struct ViewFixture {
    carto::MapView view;
    explicit ViewFixture(int plots, bool copy = false) {
        view.resize(kViewSize);
        view.map().loadMapSet(copy ? copyOf(plots) : planOf(plots));
        view.setBounds(view.map().requireLayer(u"Enceinte").bounds());
        view.show();
        for (int i = 0; i < 10 && !view.windowHandle()->isExposed(); ++i)
            QApplication::processEvents(QEventLoop::AllEvents, 50);
        view.waitForRender();
    }
};
