// The map engine on a generated plan of 30,000 plots (and 100,000 for memory), each figure
// beside its peer measured in the same run: a plain OGR read, a bare GEOS join, the same
// question asked of the GeoPackage in SQL, a raw OGR transaction loop.
#include "carto/model/map.h"
#include "carto/storage/map_store.h"
#include "bench_plans.h"

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

// A scratch copy for benchmarks that write.
QString copyOf(int plots) {
    const QString copy = QDir::tempPath() + QStringLiteral("/veldra-bench/copie.gpkg");
    QFile::remove(copy);
    QFile::copy(planOf(plots), copy);
    return copy;
}

double residentMegabytes() {
    QFile statm(QStringLiteral("/proc/self/statm"));
    if (!statm.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = statm.readAll().split(' ');
    return fields.size() > 1 ? fields[1].toDouble() * double(sysconf(_SC_PAGESIZE)) / 1048576.0 : 0;
}

using DatasetPtr = std::unique_ptr<GDALDataset, void (*)(GDALDataset*)>;
DatasetPtr openOgr(const QString& path, bool update) {
    return DatasetPtr(GDALDataset::Open(path.toUtf8().constData(),
                                        GDAL_OF_VECTOR | (update ? GDAL_OF_UPDATE : 0)),
                      [](GDALDataset* d) { GDALClose(d); });
}

void BM_OpenPlan(benchmark::State& state) {
    const QString path = planOf(int(state.range(0)));
    const double before = residentMegabytes();
    double after = before;
    for (auto _ : state) {
        carto::Map map;
        map.loadMapSet(path);
        benchmark::DoNotOptimize(map.layerCount());
        after = std::max(after, residentMegabytes());
    }
    state.counters["rss_mb"] = after;
    state.counters["rss_delta_mb"] = after - before;
}
BENCHMARK(BM_OpenPlan)->Arg(30000)->Arg(100000)->Unit(benchmark::kMillisecond);

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
}
BENCHMARK(BM_PeerOgrRead)->Arg(30000)->Unit(benchmark::kMillisecond);

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
}
BENCHMARK(BM_CentreJoin)->Arg(30000)->Unit(benchmark::kMillisecond);

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

// Peer: the same writes as a raw OGR transaction loop.
void BM_PeerOgrUpdate(benchmark::State& state) {
    const QString path = copyOf(int(state.range(0)));
    auto ds = openOgr(path, true);
    OGRLayer* plots = ds->GetLayerByName("Tombes");
    std::vector<GIntBig> fids;
    for (auto& f : *plots)
        fids.push_back(f->GetFID());
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
BENCHMARK(BM_PeerOgrUpdate)->Arg(30000)->Unit(benchmark::kMillisecond);

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
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv); // texts are measured with Qt's fonts
    GDALAllRegister();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
