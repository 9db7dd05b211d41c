// The editing commands on the 30,000-plot plan (100 sections, 500 alleys): fitting a new
// section among the others, aligning and orienting 1,000 selected plots, and the deletion
// of 1,000 plots with their labels, storage included. Peers in the same run: the fitting's
// overlays as bare GEOS calls, and the same writes as raw OGR transaction loops.
#include "bench_plans.h"
#include "carto/model/update_access.h"
#include "control/veldra.h"
#include "editing/menu_contextuel.h"
#include "edition_fixture.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QUndoStack>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <geos_c.h>
#include <ogrsf_frmts.h>

namespace {

// A rectangle over the bottom edge of the i-th section, reaching into the path below it.
carto::Rect chevauchant(const carto::Layer& sections, int i) {
    const carto::Rect s = sections.allFeatures().at(i % sections.featureCount()).bounds();
    return {s.xmin + 3, s.ymin - 4, s.xmin + 15, s.ymin + 3};
}

void BM_FitSection(benchmark::State& state) {
    Edition f(copyOf(int(state.range(0))), QStringLiteral("Sections"));
    carto::Layer& sections = *f.c.Calque_Sections;
    state.counters["sections"] = sections.featureCount();
    int i = 0;
    for (auto _ : state) {
        state.PauseTiming();
        const carto::Rect r = chevauchant(sections, i++);
        carto::Feature d = sections.addFeature(carto::Feature::region(
            {{{r.xmin, r.ymin}, {r.xmax, r.ymin}, {r.xmax, r.ymax}, {r.xmin, r.ymax}}}));
        sections.selectOnly(carto::Features(&sections, {d.fid()}));
        state.ResumeTiming();
        f.c.AjusterSectionOuAllee();
    }
}
BENCHMARK(BM_FitSection)->Arg(30000)->Unit(benchmark::kMillisecond)->Iterations(30);

// Peer: the same union (the enclosure), intersection and difference (with the sections
// around the drawing) as bare GEOS calls on geometries read once through OGR.
void BM_PeerGeosFit(benchmark::State& state) {
    auto ds = openOgr(planOf(int(state.range(0))), false);
    GEOSContextHandle_t h = GEOS_init_r();
    const auto lis = [&](const char* couche) {
        std::vector<GEOSGeometry*> out;
        for (auto& f : *ds->GetLayerByName(couche)) {
            const OGRGeometry* g = f->GetGeometryRef();
            std::vector<unsigned char> wkb(size_t(g->WkbSize()));
            g->exportToWkb(wkbNDR, wkb.data());
            out.push_back(GEOSGeomFromWKB_buf_r(h, wkb.data(), wkb.size()));
        }
        return out;
    };
    std::vector<GEOSGeometry*> enceinte = lis("Enceinte"), sections = lis("Sections");
    int i = 0;
    for (auto _ : state) {
        GEOSGeometry* s = sections[size_t(i++) % sections.size()];
        double x0, y0, x1, y1;
        GEOSGeom_getXMin_r(h, s, &x0);
        GEOSGeom_getYMin_r(h, s, &y0);
        GEOSGeom_getXMax_r(h, s, &x1);
        GEOSGeom_getYMax_r(h, s, &y1);
        GEOSGeometry* dessin = GEOSGeom_createRectangle_r(h, x0 + 3, y0 - 4, x0 + 15, y0 + 3);
        std::vector<GEOSGeometry*> copies; // the enclosure's union
        for (GEOSGeometry* e : enceinte)
            copies.push_back(GEOSGeom_clone_r(h, e));
        GEOSGeometry* tout = GEOSGeom_createCollection_r(h, GEOS_GEOMETRYCOLLECTION, copies.data(),
                                                         unsigned(copies.size()));
        GEOSGeometry* c = GEOSUnaryUnion_r(h, tout);
        GEOSGeometry* k = GEOSIntersection_r(h, dessin, c);
        // The neighbours the R-tree would give: those whose box meets the drawing's.
        std::vector<GEOSGeometry*> voisins;
        for (GEOSGeometry* autre : sections) {
            double a0, b0, a1, b1;
            GEOSGeom_getXMin_r(h, autre, &a0);
            GEOSGeom_getYMin_r(h, autre, &b0);
            GEOSGeom_getXMax_r(h, autre, &a1);
            GEOSGeom_getYMax_r(h, autre, &b1);
            if (a0 <= x0 + 15 && a1 >= x0 + 3 && b0 <= y0 + 3 && b1 >= y0 - 4)
                voisins.push_back(GEOSGeom_clone_r(h, autre));
        }
        GEOSGeometry* groupe = GEOSGeom_createCollection_r(
            h, GEOS_GEOMETRYCOLLECTION, voisins.data(), unsigned(voisins.size()));
        GEOSGeometry* u = GEOSUnaryUnion_r(h, groupe);
        benchmark::DoNotOptimize(GEOSWithin_r(h, k, u));
        GEOSGeometry* reste = GEOSDifference_r(h, k, u);
        benchmark::DoNotOptimize(GEOSArea_r(h, reste, &x1));
        for (GEOSGeometry* g : {dessin, tout, c, k, groupe, u, reste})
            GEOSGeom_destroy_r(h, g);
    }
    for (GEOSGeometry* g : enceinte)
        GEOSGeom_destroy_r(h, g);
    for (GEOSGeometry* g : sections)
        GEOSGeom_destroy_r(h, g);
    GEOS_finish_r(h);
}
BENCHMARK(BM_PeerGeosFit)->Arg(30000)->Unit(benchmark::kMillisecond);

void BM_AlignPlots(benchmark::State& state) {
    Edition f(copyOf(30000), QStringLiteral("Tombes"));
    f.choisitTerrains(int(state.range(0)));
    int i = 0;
    for (auto _ : state) {
        QString cote = i++ % 2 ? QStringLiteral("Haut") : QStringLiteral("Bas");
        f.c.AlignerTerrains(cote);
    }
}
BENCHMARK(BM_AlignPlots)->Arg(1000)->Unit(benchmark::kMillisecond);

// The first selected plot is one turned a few degrees, so every other plot turns to it;
// each round is undone (untimed) so that the next has the same work.
void BM_OrientPlots(benchmark::State& state) {
    Edition f(copyOf(30000), QStringLiteral("Tombes"));
    f.c.setAnnulation(true);
    carto::Layer& t = *f.c.Calque_Tombe;
    const carto::Features toutes = t.allFeatures();
    const int n = int(state.range(0));
    std::vector<qint64> fids(toutes.fids().begin(), toutes.fids().begin() + n);
    const auto tourne = std::find_if(fids.begin(), fids.end(), [&t](qint64 fid) {
        const carto::Part& r = t.feature(fid).parts()[0];
        return r[0].y != r[1].y && r[0].x != r[1].x;
    });
    if (tourne == fids.end())
        return state.SkipWithError("no turned plot among them");
    std::iter_swap(fids.begin(), tourne);
    t.selectOnly(carto::Features(&t, fids));
    const int avant = f.c.surface().Historique->count();
    for (auto _ : state) {
        QString bas = QStringLiteral("Bas");
        f.c.OrienterTerrains(bas);
        state.PauseTiming();
        if (f.c.surface().Historique->count() != avant + 1)
            state.SkipWithError("nothing was oriented");
        f.c.surface().Historique->undo();
        f.c.surface().Historique->clear();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_OrientPlots)->Arg(1000)->Unit(benchmark::kMillisecond);

// The deletion the host confirms: 1,000 plots and the labels lying on them.
void BM_DeletePlots(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto f = std::make_unique<Edition>(copyOf(30000), QStringLiteral("Tombes"));
        f->choisitTerrains(int(state.range(0)));
        bool oui = true;
        QString rien;
        state.ResumeTiming();
        f->c.ConfirmSupp(oui, rien);
        state.PauseTiming();
        state.counters["left"] = f->c.Calque_Tombe->featureCount();
        f.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_DeletePlots)->Arg(1000)->Unit(benchmark::kMillisecond)->Iterations(3);

// Peer: the same 2,000 features deleted by a raw OGR loop in one transaction.
void BM_PeerOgrDelete(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        auto ds = openOgr(copyOf(30000), true);
        std::vector<std::pair<OGRLayer*, GIntBig>> cibles;
        for (const char* nom : {"Tombes", "Numeros"}) {
            OGRLayer* l = ds->GetLayerByName(nom);
            int n = 0;
            for (auto& feat : *l) {
                if (n++ == state.range(0) / 2)
                    break;
                cibles.emplace_back(l, feat->GetFID());
            }
        }
        state.ResumeTiming();
        ds->StartTransaction();
        for (const auto& [l, fid] : cibles)
            if (l->DeleteFeature(fid) != OGRERR_NONE)
                state.SkipWithError("DeleteFeature failed");
        ds->CommitTransaction();
    }
}
BENCHMARK(BM_PeerOgrDelete)->Arg(2000)->Unit(benchmark::kMillisecond)->Iterations(3);

// Every plot's number made again, fitted and turned, in one bracket: what moving the
// whole plan would cost its deferred save.
void BM_RenumberAll(benchmark::State& state) {
    Edition f(copyOf(int(state.range(0))), QStringLiteral("Tombes"));
    carto::Layer& t = *f.c.Calque_Tombe;
    auto* saisie = f.c.findChild<QLineEdit*>(QStringLiteral("SaisieNum"));
    const carto::Features toutes = t.allFeatures();
    for (auto _ : state) {
        carto::UpdateAccess acces(f.c.contexte().carte());
        for (const qint64 fid : toutes.fids()) {
            carto::Feature plot = t.feature(fid);
            saisie->setText(plot.attribute(u"Numero").toString());
            f.c.Sauve(plot);
        }
        acces.commit();
    }
    state.counters["labels"] = f.c.Calque_Numero->featureCount();
}
BENCHMARK(BM_RenumberAll)->Arg(30000)->Unit(benchmark::kMillisecond)->Iterations(2);

// Copying 1,000 plots and pasting them, storage included.
void BM_CopyPaste(benchmark::State& state) {
    Edition f(copyOf(30000), QStringLiteral("Tombes"));
    veldra::Contexte& ctx = f.c.contexte();
    for (auto _ : state) {
        state.PauseTiming();
        f.choisitTerrains(int(state.range(0)));
        state.ResumeTiming();
        veldra::dispatche(ctx, 2, {}); // Copier
        veldra::dispatche(ctx, 3, {}); // Coller
    }
    state.counters["plots"] = f.c.Calque_Tombe->featureCount();
}
BENCHMARK(BM_CopyPaste)->Arg(1000)->Unit(benchmark::kMillisecond)->Iterations(5);

// From the right click to the menu built for a plot (shown and closed at once).
void BM_ContextMenuOpen(benchmark::State& state) {
    Edition f(planOf(30000), QStringLiteral("Tombes"));
    f.choisitTerrains(1);
    int montres = 0;
    f.c.contexte().montreMenu = [&montres](QMenu& m, const QPoint&) {
        montres += m.actions().isEmpty() ? 0 : 1;
        return static_cast<QAction*>(nullptr);
    };
    for (auto _ : state)
        emit f.c.surface().Map1->mouseUp(carto::mouse::Right, 0, 100, 100);
    if (montres == 0)
        state.SkipWithError("no menu was built");
}
BENCHMARK(BM_ContextMenuOpen)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks<QApplication>(argc, argv);
}
