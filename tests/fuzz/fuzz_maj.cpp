// Any record set a host hands to MAJ, of any columns, types and values, is written into the
// plan, refused with Erreur, or skipped record by record; nothing crashes, and the plan
// keeps exactly what memory holds.
#include "base/erreur.h"
#include "control/veldra.h"
#include "veldra-plan/plan_tool.h"

#include <QApplication>
#include <QTemporaryDir>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <fuzzer/FuzzedDataProvider.h>

namespace {

class Muet : public veldra::Prompter {
public:
    int message(const QString&, int, const QString&) override { return veldra::reponse::Ok; }
};

struct Setting {
    QTemporaryDir dir;
    std::unique_ptr<veldra::Veldra> control;
    std::vector<qint64> fids;

    Setting() {
        veldra::plantool::SampleOptions o;
        o.plots = 12;
        o.raster = false;
        o.name = QStringLiteral("Maj");
        QString chemin = veldra::plantool::generateSamplePlan(dir.path(), o);
        control = std::make_unique<veldra::Veldra>();
        control->setPrompter(std::make_unique<Muet>());
        control->setDossierControle(dir.path());
        QString nom = QStringLiteral("Fuzz");
        bool nouveau = false, droit = true;
        control->OuvreCimetiere(chemin, nouveau, nom, droit);
        control->Calque_Tombe->forEachFeature(
            [this](const carto::Feature& f) { fids.push_back(f.fid()); });
    }
};

Setting& setting() {
    static int argc = 1;
    static char name[] = "fuzz_maj";
    static char* argv[] = {name, nullptr};
    static bool env = qputenv("QT_QPA_PLATFORM", "offscreen");
    (void)env;
    // Never destroyed: Qt's exit routines must not run after the statics they use.
    static QApplication* app = new QApplication(argc, argv);
    (void)app;
    static Setting s;
    return s;
}

constexpr recordset::DataType kTypes[] = {
    recordset::DataType::SmallInt, recordset::DataType::Double, recordset::DataType::Date,
    recordset::DataType::Boolean, recordset::DataType::VarWChar};

QVariant valueFrom(FuzzedDataProvider& in, const Setting& s) {
    switch (in.ConsumeIntegralInRange(0, 6)) {
    case 0:
        return {};
    case 1:
        return in.ConsumeFloatingPoint<double>();
    case 2:
        return double(s.fids[in.ConsumeIntegralInRange<size_t>(0, s.fids.size() - 1)]);
    case 3:
        return in.ConsumeBool();
    case 4:
        return in.ConsumeIntegralInRange(-40000, 40000);
    case 5:
        return std::nan("");
    default:
        return QString::fromUtf8(in.ConsumeRandomLengthString(64).c_str());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Setting& s = setting();
    FuzzedDataProvider in(data, size);
    auto rs = std::make_shared<recordset::Recordset>();
    const char* columns[] = {"IdMapInfo", "IdGCF", "Nom", "Longueur", "Largeur", "Autre"};
    try {
        for (const char* c : columns)
            if (in.ConsumeIntegralInRange(0, 9) > 0)
                rs->appendField(QString::fromLatin1(c),
                                kTypes[in.ConsumeIntegralInRange<size_t>(0, 4)],
                                in.ConsumeIntegralInRange(0, 300));
        rs->open();
        const int records = in.ConsumeIntegralInRange(0, 8);
        for (int r = 0; r < records; ++r) {
            rs->addNew();
            for (qsizetype c = 0; c < qsizetype(rs->fields().size()); ++c) {
                try {
                    rs->setValue(c, valueFrom(in, s));
                } catch (const veldra::Erreur&) {
                }
            }
            rs->update();
        }
    } catch (const veldra::Erreur&) {
        return 0; // a record set the host could not have built
    }
    QString type = in.ConsumeBool() ? QStringLiteral("A") : QStringLiteral("U");
    RecordsetPtr handed = rs;
    try {
        s.control->MAJ(handed, type);
    } catch (const veldra::Erreur&) {
    }
    // Whatever happened, what memory holds of the plots is what the plan reads back.
    carto::Map reread;
    reread.loadMapSet(s.control->Calque_Tombe->map()->mapSet());
    const carto::Layer& stored = reread.requireLayer(u"Tombes");
    s.control->Calque_Tombe->forEachFeature([&](const carto::Feature& f) {
        const carto::Feature kept = stored.feature(f.fid());
        const carto::FeatureData& back = kept.data();
        if (back.parts != f.data().parts || back.attributes != f.data().attributes)
            __builtin_trap();
    });
    return 0;
}
