#pragma once
// The generated plans the benchmarks run on, made once and kept between runs (they are
// deterministic for a count of plots).

#include "veldra-plan/plan_tool.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <benchmark/benchmark.h>
#include <gdal_priv.h>
#include <malloc.h>
#include <memory>

inline QString planOf(int plots) {
    const QString folder = QDir::tempPath() + QStringLiteral("/veldra-bench");
    const QString name = QStringLiteral("Plan%1").arg(plots);
    const QString path = folder + u'/' + name + QStringLiteral(".gpkg");
    if (!QFileInfo::exists(path)) {
        veldra::plantool::SampleOptions options;
        options.plots = plots;
        options.seed = 2024;
        options.raster = false;
        options.name = name;
        veldra::plantool::generateSamplePlan(folder, options);
    }
    return path;
}

// The plan sizes of the scaling runs: each cost is also reported per plot, so a cost that
// grows faster than the plan shows at once.
inline void scalingSizes(benchmark::internal::Benchmark* b) {
    for (const int plots : {3000, 30000, 300000})
        b->Arg(plots);
}

inline void reportPerPlot(benchmark::State& state) {
    state.counters["s_per_plot"] =
        benchmark::Counter(double(state.range(0)), benchmark::Counter::kIsIterationInvariantRate |
                                                       benchmark::Counter::kInvert);
}

// Bytes of heap in use, for what a loaded plan holds apart from the libraries.
inline double heapInUse() {
    return double(mallinfo2().uordblks);
}

// A scratch copy for benchmarks that write.
inline QString copyOf(int plots) {
    const QString copy = QDir::tempPath() + QStringLiteral("/veldra-bench/copie.gpkg");
    QFile::remove(copy);
    QFile::copy(planOf(plots), copy);
    return copy;
}

using DatasetPtr = std::unique_ptr<GDALDataset, void (*)(GDALDataset*)>;
inline DatasetPtr openOgr(const QString& path, bool update) {
    return DatasetPtr(GDALDataset::Open(path.toUtf8().constData(),
                                        GDAL_OF_VECTOR | (update ? GDAL_OF_UPDATE : 0)),
                      [](GDALDataset* d) { GDALClose(d); });
}

// The main of every benchmark program: offscreen Qt (texts are measured with its fonts),
// GDAL's drivers, then the benchmarks asked for on the command line.
template <typename Application> int runBenchmarks(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    Application app(argc, argv);
    GDALAllRegister();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
