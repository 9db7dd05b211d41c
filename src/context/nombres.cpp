#include "context/nombres.h"

#include <QLocale>
#include <cmath>

namespace veldra {

namespace {

QString sansEspaces(QString t) {
    return t.remove(QChar(0x202F)).remove(QChar(0xA0));
}

const QLocale& francais() {
    static const QLocale l(QLocale::French, QLocale::France);
    return l;
}

} // namespace

QString nombreSimple(double v) {
    return sansEspaces(francais().toString(v, 'g', 12));
}

QString deuxDecimales(double v) {
    return sansEspaces(francais().toString(v, 'f', 2));
}

double nombreLu(const QString& texte) {
    const QString t = texte.trimmed();
    qsizetype i = 0;
    const auto chiffres = [&] {
        const qsizetype debut = i;
        while (i < t.size() && t[i] >= u'0' && t[i] <= u'9')
            ++i;
        return i - debut;
    };
    if (i < t.size() && (t[i] == u'-' || t[i] == u'+'))
        ++i;
    qsizetype n = chiffres();
    if (i < t.size() && (t[i] == u',' || t[i] == u'.')) {
        ++i;
        n += chiffres();
    }
    if (n == 0)
        return 0;
    qsizetype fin = i;
    if (i < t.size() && (t[i] == u'e' || t[i] == u'E')) {
        ++i;
        if (i < t.size() && (t[i] == u'-' || t[i] == u'+'))
            ++i;
        if (chiffres() > 0)
            fin = i;
    }
    bool ok = false;
    const double v = t.left(fin).replace(u',', u'.').toDouble(&ok);
    return ok && std::isfinite(v) ? v : 0;
}

} // namespace veldra
