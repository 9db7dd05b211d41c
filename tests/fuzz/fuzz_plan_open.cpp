// Any bytes written as a plan's file either open as a plan or are refused with Erreur;
// nothing crashes or hangs. Inputs that do not begin like an SQLite file are read as
// patches (offset, byte) over a small, real plan, so the fuzzer reaches deep into it.
#include "base/erreur.h"
#include "carto/model/map.h"
#include "veldra-plan/plan_tool.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>

namespace {

struct Setting {
    QTemporaryDir dir;
    QByteArray pristine; // a plan of a few plots
    QString path;

    Setting() {
        veldra::plantool::SampleOptions o;
        o.plots = 12;
        o.raster = false;
        o.name = QStringLiteral("Graine");
        QFile f(veldra::plantool::generateSamplePlan(dir.path(), o));
        f.open(QIODevice::ReadOnly);
        pristine = f.readAll();
        path = dir.filePath(QStringLiteral("essai.gpkg"));
    }
};

Setting& setting() {
    static int argc = 1;
    static char name[] = "fuzz_plan_open";
    static char* argv[] = {name, nullptr};
    // Never destroyed: Qt's exit routines must not run after the statics they use.
    static QGuiApplication* app = new QGuiApplication(argc, argv);
    (void)app;
    static Setting s;
    return s;
}

QByteArray fileFor(const Setting& s, const uint8_t* data, size_t size) {
    const QByteArray raw(reinterpret_cast<const char*>(data), qsizetype(size));
    if (raw.startsWith("SQLite format 3"))
        return raw;
    QByteArray file = s.pristine;
    for (size_t i = 0; i + 4 <= size; i += 4) {
        const quint32 offset = (quint32(data[i]) << 16 | quint32(data[i + 1]) << 8 | data[i + 2]) %
                               quint32(file.size());
        file[qsizetype(offset)] = char(data[i + 3]);
    }
    return file;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Setting& s = setting();
    QFile::remove(s.path + QStringLiteral("-journal"));
    {
        QFile f(s.path);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return 0;
        f.write(fileFor(s, data, size));
    }
    carto::Map map;
    try {
        map.loadMapSet(s.path, carto::MapSetOptions{QStringLiteral("Texte")});
        for (const carto::Layer* l : map.layers()) {
            if (!l->isRaster() && l->featureCount() > 0) {
                (void)l->bounds();
                l->forEachFeature([](const carto::Feature& f) {
                    (void)f.area();
                    (void)f.centre();
                });
            }
        }
    } catch (const veldra::Erreur&) {
    }
    return 0;
}
