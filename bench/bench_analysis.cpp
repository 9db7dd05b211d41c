// Search and analysis on the 30,000-plot plan: the plan analysis (its three passes with the
// overlap and repeated-number checks, and its report written), a plot number searched over
// all sections, and 1,000 plots located by their keys. Peers measured in the same run:
// the same counts asked of the GeoPackage in SQL through its R-tree indexes, the bare GEOS
// join (peer_benchmarks.cpp), and the number looked up in SQL.
#include "analysis/analyse_plan.h"
#include "analysis/rapport.h"
#include "bench_plans.h"
#include "control/veldra.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <benchmark/benchmark.h>
#include <ogrsf_frmts.h>

namespace {

// A message would wait for a click that never comes: it ends the benchmark instead.
class Muet : public veldra::Prompter {
public:
    int message(const QString& texte, int, const QString&) override {
        throw std::runtime_error(texte.toStdString());
    }
};

struct Controle {
    veldra::Veldra c;
    explicit Controle(const QString& plan) {
        c.setPrompter(std::make_unique<Muet>());
        c.resize(1200, 800);
        QString chemin = plan, nom = QStringLiteral("Banc d'essai");
        bool nouveau = false, droit = true;
        c.OuvreCimetiere(chemin, nouveau, nom, droit);
        c.setEditeurHook([](const QString&) {});
    }
};

QString rapportBanc() {
    return QDir::tempPath() + QStringLiteral("/veldra-bench/AnalysePlan.txt");
}

// The passes and the report, without the gauge's pauses (150 ms each, for the eye).
void BM_AnalysePlan(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    veldra::OptionsAnalyse o;
    o.jauge = false;
    o.detaillee = true;
    bool echec = false;
    o.signale = [&echec](const veldra::Erreur&) { echec = true; };
    veldra::Constats c;
    for (auto _ : state) {
        c = veldra::analysePlan(f.c.contexte(), o, [&f](const veldra::Constats& constats) {
            veldra::ecritRapport(
                rapportBanc(),
                veldra::lignesRapport(veldra::decritPlan(f.c.contexte()), constats, true, u','));
        });
    }
    if (echec)
        state.SkipWithError("a pass failed");
    state.counters["sans_section"] = c.terrainsSansSection;
    state.counters["sans_allee"] = c.terrainsSansAllee;
    state.counters["non_inclus"] = c.terrainsNonInclus;
    state.counters["chevauchants"] = c.terrainsChevauchants;
    state.counters["numeros_repetes"] = c.numerosRepetes;
}
BENCHMARK(BM_AnalysePlan)->Arg(30000)->Unit(benchmark::kMillisecond);

// As the clerk runs it from the button: the same, under the gauge.
void BM_AnalyseConcessions(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    f.c.setRepFicAnalyse(QDir::tempPath() + QStringLiteral("/veldra-bench"));
    f.c.setAnalyseDetaillee(true);
    auto* bouton = f.c.findChild<QPushButton*>(QStringLiteral("Btn_AnalysePlan"));
    for (auto _ : state)
        bouton->click();
}
BENCHMARK(BM_AnalyseConcessions)->Arg(30000)->Unit(benchmark::kMillisecond)->Iterations(3);

// Peer: the counts of the plots pass, the enclosure tests of the three passes and the
// overlapping pairs, asked of the GeoPackage in SQL; points in sections and alleys are
// the plots' box centres, found through the R-tree tables.
void BM_PeerSqlAnalyse(benchmark::State& state) {
    auto ds = openOgr(planOf(int(state.range(0))), false);
    const auto centreDans = [](const char* zones, const char* rtree) {
        return QStringLiteral(
                   "(SELECT count(*) FROM Tombes t JOIN rtree_Tombes_geom rt ON rt.id = t.fid"
                   " WHERE NOT EXISTS (SELECT 1 FROM \"%2\" r JOIN \"%1\" z ON z.fid = r.id"
                   "  WHERE r.minx <= (rt.minx + rt.maxx) / 2 AND r.maxx >= (rt.minx + rt.maxx) / 2"
                   "  AND r.miny <= (rt.miny + rt.maxy) / 2 AND r.maxy >= (rt.miny + rt.maxy) / 2"
                   "  AND ST_Intersects(z.geom, MakePoint((rt.minx + rt.maxx) / 2,"
                   "  (rt.miny + rt.maxy) / 2))))")
            .arg(QString::fromUtf8(zones), QString::fromUtf8(rtree));
    };
    const auto enceinte = [](const char* couche) {
        return QStringLiteral("(SELECT count(*) FROM \"%1\" x, Enceinte e WHERE NOT "
                              "ST_Within(x.geom, e.geom)), (SELECT count(*) FROM \"%1\" x, "
                              "Enceinte e WHERE NOT ST_Intersects(x.geom, e.geom))")
            .arg(QString::fromUtf8(couche));
    };
    const QString sql =
        QStringLiteral(
            "SELECT (SELECT count(*) FROM Tombes WHERE Numero IS NULL OR Numero = ''), ") +
        centreDans("Sections", "rtree_Sections_geom") + u',' +
        centreDans("Allées", "rtree_Allées_geom") + u',' + enceinte("Tombes") + u',' +
        enceinte("Sections") + u',' + enceinte("Allées") +
        QStringLiteral(", (SELECT count(*) FROM Sections WHERE Nom IS NULL OR Nom = ''),"
                       " (SELECT count(*) FROM \"Allées\" WHERE Nom IS NULL OR Nom = ''),"
                       " (SELECT count(*) FROM rtree_Tombes_geom a JOIN rtree_Tombes_geom b"
                       "  ON b.id > a.id AND b.minx <= a.maxx AND b.maxx >= a.minx"
                       "  AND b.miny <= a.maxy AND b.maxy >= a.miny"
                       "  JOIN Tombes ta ON ta.fid = a.id JOIN Tombes tb ON tb.fid = b.id"
                       "  WHERE ST_Area(ST_Intersection(ta.geom, tb.geom)) > 0.01)");
    const QByteArray requete = sql.toUtf8();
    for (auto _ : state) {
        OGRLayer* result = ds->ExecuteSQL(requete.constData(), nullptr, "SQLITE");
        if (!result) {
            state.SkipWithError("the GeoPackage's SQL has no spatial functions here");
            return;
        }
        auto f = std::unique_ptr<OGRFeature>(result->GetNextFeature());
        if (f) {
            state.counters["sans_section"] = double(f->GetFieldAsInteger64(1));
            state.counters["sans_allee"] = double(f->GetFieldAsInteger64(2));
            state.counters["non_inclus"] = double(f->GetFieldAsInteger64(3));
            state.counters["paires"] = double(f->GetFieldAsInteger64(11));
        }
        ds->ReleaseResultSet(result);
    }
}
BENCHMARK(BM_PeerSqlAnalyse)->Arg(30000)->Unit(benchmark::kMillisecond);

// A number over all sections, from the button: the index finds it, the plots found
// become the selection and the view moves onto them.
void BM_SearchNumber(benchmark::State& state) {
    Controle f(planOf(int(state.range(0))));
    auto* combo = f.c.findChild<QComboBox*>(QStringLiteral("Combo_section"));
    combo->setCurrentIndex(combo->findText(QStringLiteral("Toutes les sections")));
    f.c.findChild<QLineEdit*>(QStringLiteral("TB_SaisieEmplacement"))
        ->setText(QStringLiteral("12"));
    auto* bouton = f.c.findChild<QPushButton*>(QStringLiteral("Btn_Rechercher"));
    bouton->click(); // the index is built by the first search
    for (auto _ : state)
        bouton->click();
    state.counters["found"] = f.c.Calque_Tombe->selection().count();
    if (f.c.Calque_Tombe->selection().isEmpty())
        state.SkipWithError("the number was not found");
}
BENCHMARK(BM_SearchNumber)->Arg(30000)->Unit(benchmark::kMicrosecond);

// Peer: the same number asked of the GeoPackage (no index on the column).
void BM_PeerSqlSearchNumber(benchmark::State& state) {
    auto ds = openOgr(planOf(int(state.range(0))), false);
    for (auto _ : state) {
        OGRLayer* result =
            ds->ExecuteSQL("SELECT fid FROM Tombes WHERE Numero = '12'", nullptr, nullptr);
        state.counters["found"] = result ? double(result->GetFeatureCount()) : -1;
        if (result)
            ds->ReleaseResultSet(result);
    }
}
BENCHMARK(BM_PeerSqlSearchNumber)->Arg(30000)->Unit(benchmark::kMicrosecond);

// The host locates plots by their keys: the plots layer made current, each key looked up,
// the selection set once and the view fitted.
void BM_SitueTombes(benchmark::State& state) {
    Controle f(planOf(30000));
    QString liste;
    for (int i = 1; i <= int(state.range(0)); ++i)
        liste += QString::number(i) + u'@';
    bool zoom = true;
    for (auto _ : state)
        f.c.SitueTombes(liste, zoom);
    state.counters["selected"] = f.c.Calque_Tombe->selection().count();
}
BENCHMARK(BM_SitueTombes)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return runBenchmarks<QApplication>(argc, argv);
}
