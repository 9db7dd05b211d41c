// The figures a drawing is read against, in one place so each program measures them in its
// own run: the view exported to JPEG, and gdal_rasterize of the plan's polygons at the
// view's size.
#include "bench_plans.h"
#include "view_fixture.h"

#include <QImage>
#include <benchmark/benchmark.h>
#include <gdal_priv.h>
#include <gdal_utils.h>
#include <memory>
#include <ogrsf_frmts.h>

namespace {

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
