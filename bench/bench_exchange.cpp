// The host's round trip on the 30,000-plot plan: GetInfo("C") without the gauge, and
// MAJ("A") changing only attributes, then redrawing every plot; and the whole
// synchronisation as a clerk starts it, from the button to the plan updated by the demo
// host. Peers measured in the same run: the bare GEOS join and the SQL join of the same
// question, and a raw OGR transaction loop of the same number of writes.
#include "bench_plans.h"
#include "control/veldra.h"
#include "journal_evenements.h"
#include "registre.h"
#include "reponses_hote.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <benchmark/benchmark.h>

namespace {

struct Controle {
    veldra::Veldra c;
    explicit Controle(const QString& plan) {
        c.resize(1200, 800);
        QString chemin = plan, nom = QStringLiteral("Banc d'essai");
        bool nouveau = false, droit = true;
        c.OuvreCimetiere(chemin, nouveau, nom, droit);
    }
    RecordsetPtr collecte() {
        QString type = QStringLiteral("C"), p1, p2, message;
        bool jauge = false;
        return c.GetInfo(type, p1, p2, jauge, message);
    }
};

void BM_GetInfoC(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    qint32 records = 0;
    for (auto _ : state) {
        RecordsetPtr rs = f.collecte();
        records = rs ? rs->recordCount() : -1;
    }
    state.counters["records"] = records;
    reportPerPlot(state);
}
// Not at 300,000: the record set's IdGCF and IdMapInfo columns are 16-bit integers, so a
// plan past 32,767 plots overflows them and GetInfo refuses with its message.
BENCHMARK(BM_GetInfoC)->Arg(3000)->Arg(30000)->Unit(benchmark::kMillisecond);

// The host's answer: every record with a new name, and sizes changed or not.
RecordsetPtr reponse(Controle& f, int round, bool nouvellesTailles) {
    RecordsetPtr rs = f.collecte();
    for (rs->moveFirst(); !rs->eof(); rs->moveNext()) {
        rs->setValue(u"Nom", QStringLiteral("Famille %1").arg(round));
        if (nouvellesTailles)
            rs->setValue(u"Longueur", rs->value(u"Longueur").toDouble() + 0.1);
        rs->update();
    }
    return rs;
}

void majBench(benchmark::State& state, bool nouvellesTailles) {
    Controle f(copyOf(int(state.range(0))));
    int round = 0;
    for (auto _ : state) {
        state.PauseTiming();
        RecordsetPtr rs = reponse(f, ++round, nouvellesTailles);
        QString type = QStringLiteral("A");
        state.ResumeTiming();
        f.c.MAJ(rs, type);
    }
}

void BM_MajAttributes(benchmark::State& state) {
    majBench(state, false);
    reportPerPlot(state);
}
BENCHMARK(BM_MajAttributes)->Arg(3000)->Arg(30000)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_MajRedraw(benchmark::State& state) {
    majBench(state, true);
}
BENCHMARK(BM_MajRedraw)->Arg(30000)->Unit(benchmark::kMillisecond)->Iterations(3);

// One plot's number saved from the side panel: the rule checked in its alley, its old
// label deleted, the new one created, turned and written with the plot.
void BM_SauvePlot(benchmark::State& state) {
    Controle f(copyOf(int(state.range(0))));
    f.c.findChild<QCheckBox*>(QStringLiteral("CB_ModeEdition"))->click();
    carto::Layer& plots = *f.c.Calque_Tombe;
    const qint64 fid = plots.allFeatures().at(100).fid();
    plots.selectAdd(fid);
    auto* saisie = f.c.findChild<QLineEdit*>(QStringLiteral("SaisieNum"));
    int round = 0;
    for (auto _ : state) {
        saisie->setText(QStringLiteral("S%1").arg(++round));
        carto::Feature plot = plots.feature(fid);
        f.c.Sauve(plot);
    }
    if (plots.feature(fid).attribute(u"Numero").toString() != saisie->text())
        state.SkipWithError("the number was not saved");
}
BENCHMARK(BM_SauvePlot)->Arg(30000)->Unit(benchmark::kMillisecond);

// Every alley with the section at its centre, for the host's lists.
void BM_ListeAllees(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    qint32 alleys = 0;
    for (auto _ : state) {
        QString toutes;
        RecordsetPtr rs = f.c.GetListeAllees(toutes);
        alleys = rs->recordCount();
    }
    state.counters["alleys"] = alleys;
}
BENCHMARK(BM_ListeAllees)->Arg(30000)->Unit(benchmark::kMillisecond);

// Button to plan updated: the control's collection with its gauge, the demo host matching
// every plot with its SQLite register, then MAJ("A"). The counters split the time.
void BM_SynchroRoundTrip(benchmark::State& state) {
    const int plots = int(state.range(0));
    Controle f(copyOf(plots));
    const QString fichier =
        QDir::tempPath() + QStringLiteral("/veldra-bench/Plan%1.registre.sqlite").arg(plots);
    QFile::remove(fichier);
    veldra::demo::Registre registre(fichier);
    registre.genere(*f.collecte());
    QPlainTextEdit journal;
    QObject lien;
    QElapsedTimer horloge;
    qint64 collecte = 0, hote = 0;
    // Connected before the host's answer, so it runs first.
    QObject::connect(&f.c, &veldra::Veldra::Synchro, &lien,
                     [&](RecordsetPtr&, QString&) { collecte += horloge.elapsed(); });
    veldra::demo::brancheJournal(f.c, journal); // the demo logs every event too
    veldra::demo::brancheRegistre(f.c, registre, journal, lien);
    auto* bouton = f.c.findChild<QPushButton*>(QStringLiteral("Btn_Synchro"));
    qint64 total = 0;
    for (auto _ : state) {
        horloge.start();
        bouton->click();
        total += horloge.elapsed();
        state.PauseTiming();
        QElapsedTimer h;
        h.start();
        registre.associe(*f.collecte());
        hote += h.elapsed();
        state.ResumeTiming();
    }
    const double n = double(state.iterations());
    state.counters["collecte_ms"] = double(collecte) / n;
    state.counters["hote_ms"] = double(hote) / n;
    state.counters["maj_ms"] = double(total - collecte - hote) / n;
    if (!journal.toPlainText().contains(QStringLiteral("plan mis à jour")))
        state.SkipWithError("the host did not update the plan");
}
BENCHMARK(BM_SynchroRoundTrip)->Arg(30000)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks<QApplication>(argc, argv);
}
