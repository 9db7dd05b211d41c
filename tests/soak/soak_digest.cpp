#include "soak_digest.h"

#include <QCryptographicHash>
#include <cstring>

namespace soak {

namespace {

void addDouble(QCryptographicHash& h, double d) {
    char bytes[sizeof d];
    std::memcpy(bytes, &d, sizeof d);
    h.addData(QByteArrayView(bytes, sizeof bytes));
}

} // namespace

QByteArray digest(const carto::Map& map) {
    QCryptographicHash h(QCryptographicHash::Sha1);
    for (const char* name : {"Tombes", "Numeros"}) {
        const carto::Layer* layer = map.layer(QString::fromUtf8(name));
        if (!layer)
            continue;
        h.addData(QByteArrayView(name));
        layer->forEachFeature([&](const carto::Feature& f) {
            const carto::FeatureData& d = f.data();
            h.addData(QByteArray::number(f.fid()) + ':' + QByteArray::number(int(d.kind)));
            for (const carto::Part& part : d.parts) {
                h.addData(QByteArrayView("|"));
                for (const carto::Point& p : part) {
                    addDouble(h, p.x);
                    addDouble(h, p.y);
                }
            }
            for (const QVariant& v : d.attributes)
                h.addData(QByteArray::number(v.typeId()) + '=' + v.toString().toUtf8() + ';');
            h.addData(d.text.toString().toUtf8());
        });
    }
    return h.result().toHex();
}

} // namespace soak
