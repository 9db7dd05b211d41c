// The drawing aids on the 30,000-plot plan: the snap point found under the pointer, a row
// of 500 numbered plots made from a model (storage included), and one new plot cut back
// against its neighbours. Peer in the same run: BM_PeerOgrInsert/1000, the same kind of
// writes as a raw OGR transaction loop.
#include "bench_plans.h"
#include "carto/model/snap.h"
#include "editing/chevauchements.h"
#include "editing/rangee.h"
#include "edition_fixture.h"

#include <QApplication>
#include <QUndoStack>
#include <benchmark/benchmark.h>
#include <random>

namespace {

// The pointer somewhere near a plot's corner, within a few tolerances of it.
std::vector<carto::Point> pointeurs(const carto::Layer& tombes, int n) {
    std::mt19937 alea(7);
    const carto::Features toutes = tombes.allFeatures();
    std::uniform_int_distribution<int> quel(0, toutes.count() - 1);
    std::uniform_real_distribution<double> ecart(-0.6, 0.6);
    std::vector<carto::Point> out;
    for (int i = 0; i < n; ++i) {
        const carto::Point coin = toutes.at(quel(alea)).parts()[0][0];
        out.push_back({coin.x + ecart(alea), coin.y + ecart(alea)});
    }
    return out;
}

// What the view asks on a mouse move: the plots and the alleys, 8 pixels at 1/200 on a
// 96 dpi screen (about 4 cm).
void BM_SnapCandidate(benchmark::State& state) {
    Edition f(planOf(int(state.range(0))), QStringLiteral("Tombes"));
    const carto::Layer* calques[] = {f.c.Calque_Tombe, f.c.Calque_Allees};
    const std::vector<carto::Point> p = pointeurs(*f.c.Calque_Tombe, 4096);
    constexpr double kTolerance = 8 * 0.0254 / 96 * 200;
    size_t i = 0, trouves = 0;
    for (auto _ : state) {
        const auto hit = carto::snapPoint(calques, p[i++ % p.size()], kTolerance);
        trouves += hit ? 1 : 0;
        benchmark::DoNotOptimize(hit);
    }
    state.counters["snapped"] = double(trouves) / double(std::max<size_t>(i, 1));
}
BENCHMARK(BM_SnapCandidate)->Arg(30000)->Unit(benchmark::kMicrosecond);

// A row made from a plot moved out beyond the plan, where every plot of the row fits;
// each round is undone (untimed) so that the next has the same work.
void BM_CreateRow(benchmark::State& state) {
    Edition f(copyOf(30000), QStringLiteral("Tombes"));
    f.c.setAnnulation(true);
    carto::Layer& t = *f.c.Calque_Tombe;
    const carto::Rect plan = t.bounds();
    const carto::Part coins{{plan.xmin, plan.ymin - 10},
                            {plan.xmin + 1.2, plan.ymin - 10},
                            {plan.xmin + 1.2, plan.ymin - 7.8},
                            {plan.xmin, plan.ymin - 7.8},
                            {plan.xmin, plan.ymin - 10}};
    const carto::Feature modele = t.addFeature(carto::Feature::region({coins}));
    veldra::DemandeRangee d;
    d.nombre = int(state.range(0));
    d.ecart = 0.3;
    d.premier = 900001;
    QUndoStack& historique = *f.c.surface().Historique;
    for (auto _ : state) {
        const veldra::BilanRangee b = veldra::creeRangee(f.c.contexte(), modele, d);
        state.PauseTiming();
        if (b.crees != d.nombre)
            state.SkipWithError("the row was not made whole");
        historique.undo();
        historique.clear();
        state.ResumeTiming();
    }
    state.counters["plots"] = t.featureCount();
}
BENCHMARK(BM_CreateRow)->Arg(500)->Unit(benchmark::kMillisecond)->Iterations(5);

// A plot drawn half over the plots beside it, cut back to the free ground.
void BM_OverlapGuard(benchmark::State& state) {
    Edition f(planOf(int(state.range(0))), QStringLiteral("Tombes"));
    const carto::Layer& t = *f.c.Calque_Tombe;
    const carto::Features toutes = t.allFeatures();
    std::vector<carto::Geometry> dessins;
    for (int i = 0; i < toutes.count(); i += toutes.count() / 512) {
        const carto::Rect r = toutes.at(i).bounds();
        const double dx = r.width() * 0.6;
        dessins.push_back(carto::Feature::region({{{r.xmin + dx, r.ymin},
                                                   {r.xmax + dx, r.ymin},
                                                   {r.xmax + dx, r.ymax},
                                                   {r.xmin + dx, r.ymax},
                                                   {r.xmin + dx, r.ymin}}})
                              .geometry());
    }
    size_t i = 0, coupes = 0;
    for (auto _ : state) {
        const carto::Geometry& g = dessins[i++ % dessins.size()];
        const carto::Geometry libre = veldra::solLibre(t, g, -1);
        coupes += libre.area() < g.area() ? 1 : 0;
        benchmark::DoNotOptimize(libre);
    }
    state.counters["cut"] = double(coupes) / double(std::max<size_t>(i, 1));
}
BENCHMARK(BM_OverlapGuard)->Arg(30000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks<QApplication>(argc, argv);
}
