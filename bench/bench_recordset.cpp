// Filling and reading the collection record set the host receives for a whole plan,
// beside a plain vector of structs holding the same values (the peer).
#include "recordset/field_spec.h"

#include <benchmark/benchmark.h>
#include <vector>

namespace {

constexpr auto kSpec = u"Section C(32),Allee C(32),Num C(32),IdGCF N,IdMapInfo N,Aire N(3.2),"
                       u"Longueur N(3.2),Largeur N(3.2),Nom C(32)";

void BM_RecordsetFill(benchmark::State& state) {
    const int n = int(state.range(0));
    for (auto _ : state) {
        auto rs = recordset::fromFieldSpec(kSpec);
        for (int i = 0; i < n; ++i) {
            rs->addNew();
            rs->setValue(0, QStringLiteral("A"));
            rs->setValue(1, QStringLiteral("Allée 3"));
            rs->setValue(2, QString::number(i % 200));
            rs->setValue(3, i % 30000);
            rs->setValue(4, i % 30000);
            rs->setValue(5, 2.5);
            rs->setValue(6, 2.0);
            rs->setValue(7, 1.25);
            rs->update();
        }
        auto copy = rs->clone();
        double total = 0;
        for (copy->moveFirst(); !copy->eof(); copy->moveNext())
            total += copy->value(u"Aire").toDouble();
        benchmark::DoNotOptimize(total);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_RecordsetFill)->Arg(30000)->Unit(benchmark::kMillisecond);

struct Row {
    QString section, allee, num;
    qint16 idgcf, idmapinfo;
    double aire, longueur, largeur;
    QString nom;
};

void BM_PeerVectorFill(benchmark::State& state) {
    const int n = int(state.range(0));
    for (auto _ : state) {
        std::vector<Row> rows;
        for (int i = 0; i < n; ++i)
            rows.push_back(Row{QStringLiteral("A"),
                               QStringLiteral("Allée 3"),
                               QString::number(i % 200),
                               qint16(i % 30000),
                               qint16(i % 30000),
                               2.5,
                               2.0,
                               1.25,
                               {}});
        const std::vector<Row> copy = rows;
        double total = 0;
        for (const Row& r : copy)
            total += r.aire;
        benchmark::DoNotOptimize(total);
    }
    state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(BM_PeerVectorFill)->Arg(30000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
