// The peers the engine's and the exchange's figures are read against, in one place so
// each program measures them in its own run: a bare GEOS join, the same join asked of the
// GeoPackage in SQL, and a raw OGR transaction loop.
#include "bench_plans.h"

#include <benchmark/benchmark.h>
#include <gdal_priv.h>
#include <geos_c.h>
#include <memory>
#include <ogrsf_frmts.h>
#include <vector>

namespace {

// Peer: a bare GEOS STRtree of sections and alleys, prepared, queried with the plots'
// centroids (all read beforehand).
void BM_PeerGeosJoin(benchmark::State& state) {
    GEOSContextHandle_t ctx = GEOS_init_r();
    auto ds = openOgr(planOf(int(state.range(0))), false);
    auto read = [&](const char* name) {
        std::vector<GEOSGeometry*> out;
        for (auto& f : *ds->GetLayerByName(name))
            out.push_back(f->GetGeometryRef()->exportToGEOS(ctx));
        return out;
    };
    const auto plots = read("Tombes"), sections = read("Sections"), alleys = read("Allées");
    struct Tree {
        GEOSSTRtree* tree;
        std::vector<const GEOSPreparedGeometry*> prepared;
    };
    auto build = [&](const std::vector<GEOSGeometry*>& geoms) {
        Tree t{GEOSSTRtree_create_r(ctx, 10), {}};
        for (GEOSGeometry* g : geoms) {
            t.prepared.push_back(GEOSPrepare_r(ctx, g));
            GEOSSTRtree_insert_r(ctx, t.tree, g,
                                 const_cast<GEOSPreparedGeometry*>(t.prepared.back()));
        }
        return t;
    };
    Tree s = build(sections), a = build(alleys);
    for (auto _ : state) {
        int found = 0;
        for (GEOSGeometry* plot : plots) {
            GEOSGeometry* c = GEOSGetCentroid_r(ctx, plot);
            struct Hit {
                GEOSContextHandle_t ctx;
                const GEOSGeometry* point;
                int* found;
            } hit{ctx, c, &found};
            auto cb = [](void* item, void* data) {
                auto* h = static_cast<Hit*>(data);
                if (GEOSPreparedContains_r(h->ctx, static_cast<const GEOSPreparedGeometry*>(item),
                                           h->point))
                    ++*h->found;
            };
            GEOSSTRtree_query_r(ctx, s.tree, c, cb, &hit);
            GEOSSTRtree_query_r(ctx, a.tree, c, cb, &hit);
            GEOSGeom_destroy_r(ctx, c);
        }
        benchmark::DoNotOptimize(found);
        state.counters["matches"] = found;
    }
    for (Tree* t : {&s, &a}) {
        for (auto* p : t->prepared)
            GEOSPreparedGeom_destroy_r(ctx, p);
        GEOSSTRtree_destroy_r(ctx, t->tree);
    }
    for (const auto* v : {&plots, &sections, &alleys})
        for (GEOSGeometry* g : *v)
            GEOSGeom_destroy_r(ctx, g);
    GEOS_finish_r(ctx);
}
BENCHMARK(BM_PeerGeosJoin)->Arg(30000)->Unit(benchmark::kMillisecond);

// Peer: the GeoPackage answers in SQL through its R-tree indexes, then checks each
// candidate exactly (centre of the plot's box inside the section or alley).
void BM_PeerSqlJoin(benchmark::State& state) {
    auto ds = openOgr(planOf(int(state.range(0))), false);
    const char* sql =
        "SELECT count(*) FROM ("
        " SELECT t.fid FROM Tombes t JOIN rtree_Tombes_geom rt ON rt.id = t.fid"
        " JOIN rtree_Sections_geom rs ON rs.minx <= (rt.minx + rt.maxx) / 2"
        "  AND rs.maxx >= (rt.minx + rt.maxx) / 2 AND rs.miny <= (rt.miny + rt.maxy) / 2"
        "  AND rs.maxy >= (rt.miny + rt.maxy) / 2"
        " JOIN Sections s ON s.fid = rs.id"
        " WHERE ST_Intersects(s.geom, MakePoint((rt.minx + rt.maxx) / 2, (rt.miny + rt.maxy) / 2))"
        " UNION ALL"
        " SELECT t.fid FROM Tombes t JOIN rtree_Tombes_geom rt ON rt.id = t.fid"
        " JOIN \"rtree_Allées_geom\" ra ON ra.minx <= (rt.minx + rt.maxx) / 2"
        "  AND ra.maxx >= (rt.minx + rt.maxx) / 2 AND ra.miny <= (rt.miny + rt.maxy) / 2"
        "  AND ra.maxy >= (rt.miny + rt.maxy) / 2"
        " JOIN \"Allées\" a ON a.fid = ra.id"
        " WHERE ST_Intersects(a.geom, MakePoint((rt.minx + rt.maxx) / 2, (rt.miny + rt.maxy) / "
        "2)))";
    for (auto _ : state) {
        OGRLayer* result = ds->ExecuteSQL(sql, nullptr, "SQLITE");
        if (!result) {
            state.SkipWithError("the GeoPackage's SQL has no spatial functions here");
            return;
        }
        auto f = std::unique_ptr<OGRFeature>(result->GetNextFeature());
        state.counters["matches"] = f ? double(f->GetFieldAsInteger64(0)) : 0;
        ds->ReleaseResultSet(result);
    }
}
BENCHMARK(BM_PeerSqlJoin)->Arg(30000)->Unit(benchmark::kMillisecond);

// Peer: the same writes as a raw OGR transaction loop.
void BM_PeerOgrUpdate(benchmark::State& state) {
    // The first range(0) plots of the 30,000-plot plan.
    const QString path = copyOf(30000);
    auto ds = openOgr(path, true);
    OGRLayer* plots = ds->GetLayerByName("Tombes");
    const qint64 n = state.range(0);
    std::vector<GIntBig> fids;
    for (auto& f : *plots) {
        if (qint64(fids.size()) == n)
            break;
        fids.push_back(f->GetFID());
    }
    const int field = plots->GetLayerDefn()->GetFieldIndex("CLETOMBE");
    int round = 0;
    for (auto _ : state) {
        const QByteArray value = "R" + QByteArray::number(++round);
        ds->StartTransaction();
        for (GIntBig fid : fids) {
            std::unique_ptr<OGRFeature> f(plots->GetFeature(fid));
            f->SetField(field, value.constData());
            if (plots->SetFeature(f.get()) != OGRERR_NONE)
                state.SkipWithError("SetFeature failed");
        }
        ds->CommitTransaction();
    }
}
BENCHMARK(BM_PeerOgrUpdate)->Arg(30000)->Arg(1000)->Unit(benchmark::kMillisecond);

// Peer of saved numbers: range(0) text features inserted through OGR in one transaction
// on the 30,000-plot plan (1: a single number saved).
void BM_PeerOgrInsert(benchmark::State& state) {
    const QString path = copyOf(30000);
    auto ds = openOgr(path, true);
    OGRLayer* numbers = ds->GetLayerByName("Numeros");
    const int field = numbers->GetLayerDefn()->GetFieldIndex("Texte");
    int round = 0;
    for (auto _ : state) {
        ds->StartTransaction();
        for (int i = 0; i < state.range(0); ++i) {
            OGRFeature f(numbers->GetLayerDefn());
            f.SetField(field, QByteArray::number(++round).constData());
            f.SetGeometry(std::make_unique<OGRPoint>(round % 100, 7).get());
            if (numbers->CreateFeature(&f) != OGRERR_NONE)
                state.SkipWithError("CreateFeature failed");
        }
        ds->CommitTransaction();
    }
}
BENCHMARK(BM_PeerOgrInsert)->Arg(1)->Arg(1000)->Arg(30000)->Unit(benchmark::kMillisecond);

} // namespace
