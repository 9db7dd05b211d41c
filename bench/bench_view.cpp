// Drawing the 30,000-plot plan: a full redraw of the view, an export to JPEG, a pan shown
// from the cached picture, and one plot moved (then undone and redone) with its area drawn
// again, beside gdal_rasterize of the same polygons at the same size measured in the same
// run.
#include "bench_plans.h"
#include "carto/model/edit_commands.h"
#include "carto/view/map_view.h"

#include <QApplication>
#include <QUndoStack>
#include <QWindow>
#include <benchmark/benchmark.h>
#include <gdal_priv.h>
#include <gdal_utils.h>
#include <memory>
#include <ogrsf_frmts.h>

namespace {

constexpr QSize kViewSize(1600, 1000);

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

void BM_Redraw(benchmark::State& state) {
    ViewFixture f(int(state.range(0)));
    for (auto _ : state) {
        f.view.refresh();
        f.view.waitForRender();
    }
}
BENCHMARK(BM_Redraw)->Arg(30000)->Unit(benchmark::kMillisecond);

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

void BM_Export(benchmark::State& state) {
    ViewFixture f(int(state.range(0)));
    const QString path = QDir::tempPath() + QStringLiteral("/veldra-bench/export.jpg");
    // 2000 x 1500 pixels at the screen's resolution, in centimetres.
    const double w = 2000 / double(f.view.logicalDpiX()) * 2.54;
    const double h = 1500 / double(f.view.logicalDpiY()) * 2.54;
    for (auto _ : state)
        f.view.exportImage(path, 1, w, h);
    const QImage out(path);
    state.counters["width"] = out.width();
    state.counters["height"] = out.height();
}
BENCHMARK(BM_Export)->Arg(30000)->Unit(benchmark::kMillisecond);

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

// Peer: the polygon layers burnt into an in-memory raster of the view's size.
void BM_PeerRasterize(benchmark::State& state) {
    const QString path = planOf(int(state.range(0)));
    const GDALDatasetUniquePtr src(
        GDALDataset::Open(path.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
    OGREnvelope e;
    if (src->GetLayerByName("Enceinte")->GetExtent(&e) != OGRERR_NONE)
        return state.SkipWithError("no enclosure extent");
    const QByteArray te = QStringLiteral("%1 %2 %3 %4")
                              .arg(e.MinX, 0, 'f', 6)
                              .arg(e.MinY, 0, 'f', 6)
                              .arg(e.MaxX, 0, 'f', 6)
                              .arg(e.MaxY, 0, 'f', 6)
                              .toUtf8();
    CPLStringList args;
    for (const char* a : {"-of", "MEM", "-ot", "Byte", "-burn", "255", "-l", "Enceinte", "-l",
                          "Sections", "-l", "Allées", "-l", "Tombes", "-ts"})
        args.AddString(a);
    args.AddString(QByteArray::number(kViewSize.width()).constData());
    args.AddString(QByteArray::number(kViewSize.height()).constData());
    args.AddString("-te");
    for (const QByteArray& v : te.split(' '))
        args.AddString(v.constData());
    std::unique_ptr<GDALRasterizeOptions, void (*)(GDALRasterizeOptions*)> options(
        GDALRasterizeOptionsNew(args.List(), nullptr), GDALRasterizeOptionsFree);
    for (auto _ : state) {
        int failed = 0;
        GDALDatasetH out =
            GDALRasterize("", nullptr, GDALDataset::ToHandle(src.get()), options.get(), &failed);
        if (!out || failed) {
            state.SkipWithError("gdal_rasterize failed");
            break;
        }
        GDALClose(out);
    }
}
BENCHMARK(BM_PeerRasterize)->Arg(30000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks<QApplication>(argc, argv);
}
