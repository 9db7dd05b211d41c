// Themes and photographs on the 30,000-plot plan: a host theme of twelve values applied
// and drawn, beside a plain redraw of the same view; the photo theme, which writes
// "Booleen" into every plot, beside a raw OGR transaction loop of as many writes; and a
// 4000 x 3000 JPEG opened in the photo viewer, fitted and painted.
#include "bench_plans.h"
#include "carto/model/edit_commands.h"
#include "carto/model/update_access.h"
#include "control/veldra.h"
#include "controle_banc.h"
#include "recordset/field_spec.h"
#include "themes/fimage.h"
#include "themes/vue_image.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>
#include <QWindow>
#include <benchmark/benchmark.h>

namespace {

// Peer: the same view drawn again with no theme.
void BM_Redraw(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    for (auto _ : state)
        f.redessine();
}
BENCHMARK(BM_Redraw)->Arg(30000)->Unit(benchmark::kMillisecond);

// The host's record set (one record per plot, twelve values) handed to Theme, then the
// view drawn in the theme's colours.
void BM_Theme(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    std::vector<int> cles;
    f.c.Calque_Tombe->forEachFeature([&](const carto::Feature& t) {
        if (const int id = t.attribute(u"IDGCF").toInt(); id > 0)
            cles.push_back(id);
    });
    qint32 categories = 0;
    for (auto _ : state) {
        state.PauseTiming();
        RecordsetPtr rs = recordset::fromFieldSpec(u"IdGCF N,Etat N");
        for (size_t i = 0; i < cles.size(); ++i) {
            rs->addNew();
            rs->setValue(qsizetype(0), cles[i]);
            rs->setValue(qsizetype(1), int(i % 12) + 1);
            rs->update();
        }
        QString sParam = QStringLiteral("1*Perpétuelle@2*Trentenaire@3*Cinquantenaire@"),
                champ = QStringLiteral("Etat"), geo = QStringLiteral("IdGCF"),
                titre = QStringLiteral("État");
        state.ResumeTiming();
        f.c.Theme(rs, sParam, champ, geo, titre);
        f.redessine();
        state.PauseTiming();
        const carto::Dataset* d = f.c.contexte().carte().dataset(u"Theme");
        categories = d && !d->themes().empty() ? qint32(d->themes()[0]->categories().size()) : 0;
        state.ResumeTiming();
    }
    state.counters["categories"] = categories;
    if (categories != 12)
        state.SkipWithError("the theme was not built");
}
BENCHMARK(BM_Theme)->Arg(30000)->Unit(benchmark::kMillisecond);

// Every plot's flag set to a value the theme replaces, so each round writes them all.
void BM_ThemePhoto(benchmark::State& state) {
    Controle f(copyOf(int(state.range(0))));
    carto::Layer& plots = *f.c.Calque_Tombe;
    std::vector<qint64> fids;
    plots.forEachFeature([&](const carto::Feature& t) { fids.push_back(t.fid()); });
    carto::Map& carte = f.c.contexte().carte();
    QString libelle = QStringLiteral("Photos"), code = QStringLiteral("Photo");
    for (auto _ : state) {
        state.PauseTiming();
        carte.execute(
            std::make_unique<carto::SetAttribute>(plots, fids, u"Booleen", QStringLiteral("X")));
        state.ResumeTiming();
        f.c.Action(libelle, code);
    }
    int flagged = 0;
    plots.forEachFeature(
        [&](const carto::Feature& t) { flagged += t.attribute(u"Booleen") == "T" ? 1 : 0; });
    state.counters["plots"] = flagged;
    if (flagged != int(fids.size()))
        state.SkipWithError("the flags were not written");
}
BENCHMARK(BM_ThemePhoto)->Arg(30000)->Unit(benchmark::kMillisecond)->Iterations(5);

// A photograph as a camera gives it: 4000 x 3000, shades and grain (a flat picture would
// decode faster than any real one).
QString photo4000() {
    const QString chemin = QDir::tempPath() + QStringLiteral("/veldra-bench/photo-4000.jpg");
    if (QFileInfo::exists(chemin))
        return chemin;
    QImage image(4000, 3000, QImage::Format_RGB32);
    QRandomGenerator hasard(7);
    for (int y = 0; y < image.height(); ++y) {
        auto* ligne = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int grain = int(hasard.bounded(24));
            ligne[x] = qRgb((x * 255 / 4000 + grain) & 255, (y * 255 / 3000 + grain) & 255,
                            (128 + grain) & 255);
        }
    }
    QPainter p(&image);
    p.setBrush(QColor(120, 120, 120));
    p.drawRoundedRect(1200, 800, 1600, 2000, 200, 200);
    p.end();
    QDir().mkpath(QFileInfo(chemin).path());
    image.save(chemin, "JPG", 90);
    return chemin;
}

void BM_OpenPhoto(benchmark::State& state) {
    const QString chemin = photo4000();
    veldra::Veldra controle;
    controle.resize(1200, 800);
    QSize montree;
    for (auto _ : state) {
        veldra::FImage visionneuse(controle.contexte(), std::nullopt);
        visionneuse.ChargeImage(chemin);
        const QPixmap vue = visionneuse.img2Show->grab(); // painted, as the user sees it
        montree = vue.size();
    }
    state.counters["width"] = montree.width();
    state.counters["height"] = montree.height();
    if (montree.isEmpty())
        state.SkipWithError("nothing was shown");
}
BENCHMARK(BM_OpenPhoto)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks<QApplication>(argc, argv);
}
