// Drawing the 30,000-plot plan: a full redraw of the view, a pan shown from the cached
// picture, and one plot moved (then undone and redone) with its area drawn again; the
// export to JPEG and gdal_rasterize of the same polygons at the same size (view_peers.cpp)
// are measured in the same run.
#include "bench_plans.h"
#include "carto/model/edit_commands.h"
#include "carto/view/map_view.h"
#include "view_fixture.h"

#include <QApplication>
#include <QUndoStack>
#include <QWindow>
#include <benchmark/benchmark.h>
#include <memory>

namespace {

void BM_Redraw(benchmark::State& state) {
    ViewFixture f(int(state.range(0)));
    for (auto _ : state) {
        f.view.refresh();
        f.view.waitForRender();
    }
    reportPerPlot(state);
}
// The drawing runs on the render thread: count the time the view waits, not this thread.
BENCHMARK(BM_Redraw)->Apply(scalingSizes)->UseRealTime()->Unit(benchmark::kMillisecond);

// One plot moved by a few centimetres, stored in the plan, and its area drawn again.
void BM_MovePlotRedraw(benchmark::State& state) {
    ViewFixture f(int(state.range(0)), true);
    carto::Layer& plots = f.view.map().requireLayer(u"Tombes");
    const std::vector<qint64> fid{plots.allFeatures().at(15000).fid()};
    double dx = 0.05;
    for (auto _ : state) {
        dx = -dx;
        f.view.map().execute(std::make_unique<carto::MoveFeatures>(plots, fid, dx, 0));
        QApplication::processEvents(); // the coalesced redraw of the touched area
    }
}
BENCHMARK(BM_MovePlotRedraw)->Arg(30000)->Unit(benchmark::kMillisecond);

// Undo then redo of that move, each stored and drawn.
void BM_UndoRedoMove(benchmark::State& state) {
    ViewFixture f(int(state.range(0)), true);
    QUndoStack history;
    f.view.map().setUndoStack(&history);
    carto::Layer& plots = f.view.map().requireLayer(u"Tombes");
    const std::vector<qint64> fid{plots.allFeatures().at(15000).fid()};
    f.view.map().execute(std::make_unique<carto::MoveFeatures>(plots, fid, 0.05, 0));
    QApplication::processEvents();
    for (auto _ : state) {
        history.undo();
        QApplication::processEvents();
        history.redo();
        QApplication::processEvents();
    }
    f.view.map().setUndoStack(nullptr);
}
BENCHMARK(BM_UndoRedoMove)->Arg(30000)->Unit(benchmark::kMillisecond);

// Each step moves the view by 40 pixels and repaints it from the cached picture; the
// render that follows a pan is not part of this figure.
void BM_PanCached(benchmark::State& state) {
    ViewFixture f(int(state.range(0)));
    const double step = 40 * f.view.viewport().unitsPerPixel();
    int i = 0;
    for (auto _ : state) {
        const carto::Point c = f.view.centre();
        f.view.setCentre({c.x + ((i++ & 1) ? -step : step), c.y});
        f.view.repaint();
    }
    if (!f.view.windowHandle()->isExposed())
        state.SkipWithError("the view was never shown");
}
BENCHMARK(BM_PanCached)->Arg(30000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks<QApplication>(argc, argv);
}
