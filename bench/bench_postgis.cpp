// Plans in PostgreSQL + PostGIS, on a server of the benchmark's own (started once, stopped at
// the end; without one the benchmarks say why and are skipped), and the import of a plan.
// Peers measured in the same run: a plain OGR read of the same tables, and ogr2ogr's own
// translation (GDALVectorTranslate) of the same Shapefile to a GeoPackage.
#include "bench_plans.h"
#include "carto/model/map.h"
#include "control/veldra.h"
#include "pg_server.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <gdal_utils.h>
#include <geos_c.h>
#include <map>
#include <ogrsf_frmts.h>

namespace {

using veldra::testpg::PgServer;

struct Base {
    std::unique_ptr<PgServer> server;
    QString why;
    std::map<int, QString> plans; // plots -> connection string of a database holding them
};

Base& base() {
    static Base b = [] {
        Base b;
        b.server = PgServer::start(&b.why);
        return b;
    }();
    return b;
}

// A database holding the sample plan of `plots` plots; empty when there is no server.
QString planPg(benchmark::State& state, int plots) {
    Base& b = base();
    if (!b.server) {
        state.SkipWithError(qPrintable(veldra::testpg::unavailableLine(b.why)));
        return {};
    }
    QString& conn = b.plans[plots];
    if (conn.isEmpty()) {
        conn = b.server->connection(b.server->createDatabase());
        veldra::plantool::copyPlan(planOf(plots), conn);
    }
    return conn;
}

void BM_OpenPlanPg(benchmark::State& state) {
    const QString conn = planPg(state, int(state.range(0)));
    if (conn.isEmpty())
        return;
    for (auto _ : state) {
        carto::Map map;
        map.loadMapSet(conn);
        benchmark::DoNotOptimize(map.layerCount());
    }
}
BENCHMARK(BM_OpenPlanPg)->Arg(30000)->Unit(benchmark::kMillisecond);

// Peer: every table read with plain OGR into GEOS geometries.
void BM_PeerOgrReadPg(benchmark::State& state) {
    const QString conn = planPg(state, int(state.range(0)));
    if (conn.isEmpty())
        return;
    GEOSContextHandle_t ctx = GEOS_init_r();
    for (auto _ : state) {
        auto ds = openOgr(conn, false);
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
BENCHMARK(BM_PeerOgrReadPg)->Arg(30000)->Unit(benchmark::kMillisecond);

// The host's MAJ("A") on the plan in the database: a new name for every plot, sizes
// unchanged, in one bracket, that is one transaction.
void BM_MajAttributesPg(benchmark::State& state) {
    const QString conn = planPg(state, int(state.range(0)));
    if (conn.isEmpty())
        return;
    veldra::Veldra c;
    c.resize(1200, 800);
    QString chemin = conn, nom = QStringLiteral("Banc d'essai");
    bool nouveau = false, droit = true;
    c.OuvreCimetiere(chemin, nouveau, nom, droit);
    int round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QString type = QStringLiteral("C"), p1, p2, message;
        bool jauge = false;
        RecordsetPtr rs = c.GetInfo(type, p1, p2, jauge, message);
        ++round;
        for (rs->moveFirst(); !rs->eof(); rs->moveNext()) {
            rs->setValue(u"Nom", QStringLiteral("Famille %1").arg(round));
            rs->update();
        }
        QString maj = QStringLiteral("A");
        state.ResumeTiming();
        c.MAJ(rs, maj);
    }
    state.counters["plots"] = double(c.Calque_Tombe ? c.Calque_Tombe->featureCount() : 0);
}
BENCHMARK(BM_MajAttributesPg)->Arg(30000)->Unit(benchmark::kMillisecond)->Iterations(3);

// The plots of the sample plan as a town's Shapefile: its own columns, no styles.
QString shapefileOf(int plots) {
    const QString folder = QDir::tempPath() + QStringLiteral("/veldra-bench/sig%1").arg(plots);
    const QString path = folder + QStringLiteral("/PARCELLES.shp");
    if (QFileInfo::exists(path))
        return path;
    QDir().mkpath(folder);
    auto src = openOgr(planOf(plots), false);
    const char* args[] = {"-f",        "ESRI Shapefile", "-nln",
                          "PARCELLES", "-select",        "IDGCF,Nom,Numero,AngleNumero,CLETOMBE",
                          "Tombes",    nullptr};
    GDALVectorTranslateOptions* options =
        GDALVectorTranslateOptionsNew(const_cast<char**>(args), nullptr);
    GDALDatasetH in = src.get();
    GDALClose(GDALVectorTranslate(path.toUtf8().constData(), nullptr, 1, &in, options, nullptr));
    GDALVectorTranslateOptionsFree(options);
    return path;
}

void BM_Import(benchmark::State& state) {
    const QString source = shapefileOf(int(state.range(0)));
    const QTemporaryDir dir;
    int n = 0;
    for (auto _ : state) {
        veldra::plantool::ImportOptions o;
        o.source = source;
        o.destination = dir.filePath(QStringLiteral("Plan%1.gpkg").arg(++n));
        o.layers = {{QStringLiteral("Tombes"), QStringLiteral("PARCELLES")}};
        o.fields = {{QStringLiteral("AngleNumero"), QStringLiteral("AngleNumer")}};
        benchmark::DoNotOptimize(veldra::plantool::importPlan(o).layers.size());
    }
}
BENCHMARK(BM_Import)->Arg(30000)->Unit(benchmark::kMillisecond);

// Peer: ogr2ogr of the same Shapefile to a GeoPackage.
void BM_PeerOgr2ogrImport(benchmark::State& state) {
    const QString source = shapefileOf(int(state.range(0)));
    const QTemporaryDir dir;
    int n = 0;
    for (auto _ : state) {
        auto src = openOgr(source, false);
        const char* args[] = {"-f", "GPKG", nullptr};
        GDALVectorTranslateOptions* options =
            GDALVectorTranslateOptionsNew(const_cast<char**>(args), nullptr);
        GDALDatasetH in = src.get();
        const QString out = dir.filePath(QStringLiteral("ogr%1.gpkg").arg(++n));
        GDALClose(GDALVectorTranslate(out.toUtf8().constData(), nullptr, 1, &in, options, nullptr));
        GDALVectorTranslateOptionsFree(options);
    }
}
BENCHMARK(BM_PeerOgr2ogrImport)->Arg(30000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    const int status = runBenchmarks<QApplication>(argc, argv);
    base().server.reset(); // stopped while Qt still runs pg_ctl
    return status;
}
