// Presentation on the 30,000-plot plan: a scale applied from the top band and the view
// drawn at it, beside a plain redraw of the same view; and one style given to 1,000
// selected plots with storage, beside a raw OGR transaction loop of as many writes.
#include "bench_plans.h"
#include "carto/model/features.h"
#include "context/contexte.h"
#include "controle_banc.h"
#include "edition_fixture.h"
#include "output/echelle.h"
#include "output/style_selection.h"

#include <benchmark/benchmark.h>
#include <cmath>

namespace {

void BM_Redraw(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    for (auto _ : state)
        f.redessine();
}
BENCHMARK(BM_Redraw)->Arg(30000)->Unit(benchmark::kMillisecond);

// 1/500 and 1/1000 in turn, so that every iteration shows a new view.
void BM_AppliqueEchelle(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    veldra::Contexte& ctx = f.c.contexte();
    bool grande = false;
    for (auto _ : state) {
        grande = !grande;
        veldra::AppliqueEchelle(ctx, grande ? 1000 : 500);
        f.vue().waitForRender();
    }
    const double n = f.vue().zoom() / f.vue().paperWidth() * 100;
    state.counters["scale"] = n;
    if (std::abs(n - (grande ? 1000 : 500)) > 1e-6)
        state.SkipWithError("the view is not at the scale asked");
}
BENCHMARK(BM_AppliqueEchelle)->Arg(30000)->Unit(benchmark::kMillisecond);

// Two hatches in turn, so that every iteration writes all 1,000 plots.
void BM_StyleSelection(benchmark::State& state) {
    Edition f(copyOf(30000), QStringLiteral("Tombes"));
    const int n = int(state.range(0));
    f.choisitTerrains(n);
    carto::Style style = f.c.Calque_Tombe->selection().at(0).style();
    int changes = 0;
    for (auto _ : state) {
        style.regionPattern = style.regionPattern == carto::pattern::Cross
                                  ? carto::pattern::Vertical
                                  : carto::pattern::Cross;
        changes = veldra::appliqueStyleSelection(f.c.contexte(), carto::FeatureKind::Region, style);
    }
    state.counters["plots"] = changes;
    if (changes != n)
        state.SkipWithError("not every selected plot was styled");
}
BENCHMARK(BM_StyleSelection)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks<QApplication>(argc, argv);
}
