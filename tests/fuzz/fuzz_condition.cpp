// Any text given as a condition is either refused with Erreur or searches a layer without
// failing; a condition that parses finds only features that satisfy it.
#include "base/erreur.h"
#include "carto/model/map.h"

#include <QGuiApplication>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace {

carto::Map& map() {
    static int argc = 1;
    static char name[] = "fuzz_condition";
    static char* argv[] = {name, nullptr};
    // Never destroyed: Qt's exit routines must not run after the statics they use.
    static QGuiApplication* app = new QGuiApplication(argc, argv);
    (void)app;
    static carto::Map m;
    static bool filled = [] {
        carto::LayerInfo info;
        info.addParameter(QStringLiteral("Name"), QStringLiteral("Tombes"));
        info.addParameter(QStringLiteral("Fields"),
                          carto::FieldList{{QStringLiteral("Nom"), carto::FieldType::Text, 32},
                                           {QStringLiteral("IDGCF"), carto::FieldType::Integer, 0},
                                           {QStringLiteral("Aire"), carto::FieldType::Real, 0}});
        carto::Layer& l = m.addLayer(info);
        const QString noms[] = {QStringLiteral("A"), QStringLiteral("Allée \"1\""),
                                QStringLiteral("l'Est"), QString()};
        for (int i = 0; i < 8; ++i) {
            carto::Feature f = l.addFeature(carto::Feature::region(
                {{{double(i), 0}, {i + 1.0, 0}, {i + 1.0, 1}, {double(i), 1}}}));
            f.setAttribute(u"Nom", noms[i % 4]);
            f.setAttribute(u"IDGCF", i);
            f.setAttribute(u"Aire", i / 2.0);
            l.updateFeature(f);
        }
        return true;
    }();
    (void)filled;
    return m;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    carto::Layer& layer = map().requireLayer(u"Tombes");
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    try {
        const carto::Features hits = layer.search(text);
        if (hits.count() > layer.featureCount())
            __builtin_trap();
        // The same text as a typed value matches nothing it should not.
        for (const carto::Feature& f : layer.searchEqual(u"Nom", text))
            if (f.attribute(u"Nom").toString().compare(text, Qt::CaseInsensitive) != 0)
                __builtin_trap();
    } catch (const veldra::Erreur&) {
    }
    return 0;
}
