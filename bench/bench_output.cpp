// Output on the 30,000-plot plan: the map printed through the host ("carte.jpg" and its
// event) beside the view's plain JPEG export; a localisation image with the view and the
// selection put back; a vector A3 PDF of the whole plan with its plots labelled, beside
// gdal_rasterize of the same plan at the view's size; 30,000 host labels bound and drawn.
// The peers (BM_Export, BM_PeerRasterize) are in view_peers.cpp, measured in this run.
#include "bench_plans.h"
#include "control/veldra.h"
#include "output/impression_papier.h"
#include "output/mise_en_page.h"
#include "recordset/field_spec.h"

#include <QApplication>
#include <QFileInfo>
#include <QWindow>
#include <benchmark/benchmark.h>

namespace {

// Messages would wait for a click: a benchmark counts them instead.
class Compteur : public veldra::Prompter {
public:
    explicit Compteur(int& n) : n_(n) {}
    int message(const QString&, int, const QString&) override {
        ++n_;
        return veldra::reponse::Ok;
    }

private:
    int& n_;
};

struct Controle {
    veldra::Veldra c;
    int messages = 0;
    explicit Controle(const QString& plan) {
        c.setPrompter(std::make_unique<Compteur>(messages));
        c.resize(1600, 1000);
        QString chemin = plan, nom = QStringLiteral("Banc d'essai");
        bool nouveau = false, droit = true;
        c.OuvreCimetiere(chemin, nouveau, nom, droit);
        c.show();
        for (int i = 0; i < 10 && !c.windowHandle()->isExposed(); ++i)
            QApplication::processEvents(QEventLoop::AllEvents, 50);
        vue().waitForRender();
    }
    carto::MapView& vue() { return *c.surface().Map1; }

    // One label per plot with a concession key: the key's holder, as a host names them.
    RecordsetPtr etiquettes() {
        RecordsetPtr rs = recordset::fromFieldSpec(u"IDGCF N,Titulaire C(40)");
        c.Calque_Tombe->forEachFeature([&](const carto::Feature& t) {
            if (const int id = t.attribute(u"IDGCF").toInt(); id > 0) {
                rs->addNew();
                rs->setValue(qsizetype(0), id);
                rs->setValue(qsizetype(1), QStringLiteral("FAMILLE %1").arg(id));
                rs->update();
            }
        });
        return rs;
    }
    void etiquette() {
        RecordsetPtr rs = etiquettes();
        QString champ = QStringLiteral("Titulaire");
        c.SetEtiquette(rs, champ);
    }
};

QString dossierBanc() {
    return QDir::tempPath() + QStringLiteral("/veldra-bench");
}

void BM_ImpCarte(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    f.c.setRepertoire_Export(dossierBanc());
    int demandes = 0;
    QObject::connect(&f.c, &veldra::Veldra::DemandeImpressionCarte, &f.c,
                     [&demandes](QString&, QString&, QString&, QString&) { ++demandes; });
    for (auto _ : state) {
        QString format = QStringLiteral("A4"), titre = QStringLiteral("Plan"), commentaires,
                echelle = QStringLiteral(" Echelle courante");
        bool trame = false, selection = false;
        f.c.ImpCarte(format, titre, commentaires, trame, echelle, selection);
    }
    if (demandes != int(state.iterations()) || f.messages > 0)
        state.SkipWithError("the printed map was not handed to the host");
}
BENCHMARK(BM_ImpCarte)->Arg(30000)->Unit(benchmark::kMillisecond);

// A plot ringed on the whole plan, the clerk's zoomed view and selection of three plots
// put back.
void BM_ImageLocalisation(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    carto::Layer& tombes = *f.c.Calque_Tombe;
    std::vector<qint64> choisies;
    QString id;
    tombes.forEachFeature([&](const carto::Feature& t) {
        if (t.attribute(u"IDGCF").toInt() > 0 && choisies.size() < 3)
            choisies.push_back(t.fid());
        if (t.fid() == 15000)
            id = QString::number(t.attribute(u"IDGCF").toInt());
    });
    tombes.selectOnly(carto::Features(&tombes, choisies));
    f.vue().setCentre(tombes.feature(choisies[0]).centre());
    f.vue().setZoom(40);
    const double zoom = f.vue().zoom();
    for (auto _ : state) {
        QString cle = id;
        f.c.ImageLocalisation(cle);
    }
    if (f.c.ImageLocalisationTerminee() == QLatin1String("-1") || f.vue().zoom() != zoom ||
        tombes.selection().fids() != choisies)
        state.SkipWithError("the image was not made, or the view was not put back");
}
BENCHMARK(BM_ImageLocalisation)->Arg(30000)->Unit(benchmark::kMillisecond);

// The whole plan on A3 landscape at the round scale that holds it, its plots labelled.
void BM_PdfA3(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    f.etiquette();
    const carto::Rect plan = f.c.Calque_Enceinte->bounds();
    f.vue().setCentre(plan.center());
    veldra::MiseEnPage m;
    m.papier = QPageSize::A3;
    m.orientation = QPageLayout::Landscape;
    m.titre = QStringLiteral("Plan général");
    const QRectF cadre = veldra::cadreCarte(m);
    const double metresParUnite = 25.4 / veldra::kResolution / 1000;
    m.echelle = std::ceil(std::max(plan.width() / (cadre.width() * metresParUnite),
                                   plan.height() / (cadre.height() * metresParUnite)) /
                          100) *
                100;
    const QString chemin = dossierBanc() + QStringLiteral("/plan-A3.pdf");
    for (auto _ : state)
        veldra::ecritPdf(f.c.contexte(), chemin, m);
    state.counters["echelle"] = m.echelle;
    state.counters["Ko"] = double(QFileInfo(chemin).size()) / 1024;
}
BENCHMARK(BM_PdfA3)->Arg(30000)->Unit(benchmark::kMillisecond);

// The host's 30,000 labels bound to the plots, then the clerk's view drawn with them: a
// zoom at which plots are wide enough to carry a name.
void BM_SetEtiquette(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    f.vue().setCentre(f.c.Calque_Tombe->bounds().center());
    f.vue().setZoom(90);
    f.vue().waitForRender();
    qint32 lignes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        RecordsetPtr rs = f.etiquettes();
        lignes = rs->recordCount();
        QString champ = QStringLiteral("Titulaire");
        state.ResumeTiming();
        f.c.SetEtiquette(rs, champ);
        f.vue().refresh();
        f.vue().waitForRender();
    }
    state.counters["lignes"] = lignes;
    if (f.messages > 0 || !f.c.Calque_Tombe->labels().visible)
        state.SkipWithError("the labels were not bound");
}
BENCHMARK(BM_SetEtiquette)->Arg(30000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks<QApplication>(argc, argv);
}
