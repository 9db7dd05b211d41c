#pragma once
// Reads back what a PDF page draws, in the page's own coordinates (points, origin at the
// bottom left): the filled paths with their fill colour, through the transformation
// matrices of the content stream, and the number of text-showing operators. Enough of the
// content-stream grammar for what Qt's PDF writer emits; no outside tool.

#include <QByteArray>
#include <QColor>
#include <QFile>
#include <QPointF>
#include <QRectF>
#include <QRegularExpression>
#include <QTransform>
#include <QtEndian>
#include <vector>

struct TraceePdf {
    QColor remplissage; // invalid for a stroke
    std::vector<QPointF> points;
    QRectF boite() const {
        if (points.empty())
            return {};
        double x0 = points[0].x(), y0 = points[0].y(), x1 = x0, y1 = y0;
        for (const QPointF& p : points) {
            x0 = std::min(x0, p.x());
            y0 = std::min(y0, p.y());
            x1 = std::max(x1, p.x());
            y1 = std::max(y1, p.y());
        }
        return QRectF(QPointF(x0, y0), QPointF(x1, y1));
    }
};

struct ContenuPdf {
    QByteArray brut;
    QSizeF page; // MediaBox, points
    std::vector<TraceePdf> traces;
    int textes = 0; // Tj and TJ operators
    bool images = false;
};

inline QByteArray decompresse(const QByteArray& flux) {
    QByteArray avecTaille(4, '\0');
    qToBigEndian<quint32>(quint32(std::max<qsizetype>(flux.size() * 16, 4096)), avecTaille.data());
    return qUncompress(avecTaille + flux);
}

inline ContenuPdf litPdf(const QString& fichier) {
    ContenuPdf c;
    QFile f(fichier);
    if (!f.open(QIODevice::ReadOnly))
        return c;
    c.brut = f.readAll();
    c.images = c.brut.contains("/Subtype /Image");
    const QRegularExpression boite(QStringLiteral("/MediaBox \\[0 0 ([0-9.]+) ([0-9.]+)\\]"));
    const auto m = boite.match(QString::fromLatin1(c.brut));
    if (m.hasMatch())
        c.page = QSizeF(m.captured(1).toDouble(), m.captured(2).toDouble());

    // The page's content: the first stream that draws paths.
    QByteArray contenu;
    for (qsizetype i = c.brut.indexOf("stream\n"); i >= 0; i = c.brut.indexOf("stream\n", i + 1)) {
        if (i > 0 && c.brut[i - 1] == 'd')
            continue; // "endstream"
        const qsizetype debut = i + 7, fin = c.brut.indexOf("endstream", debut);
        if (fin < 0)
            break;
        const qsizetype objet = c.brut.lastIndexOf(" obj", i);
        if (!c.brut.mid(objet, i - objet).contains("/FlateDecode"))
            continue;
        const QByteArray d = decompresse(c.brut.mid(debut, fin - debut));
        if (d.contains(" cm") && d.contains(" m\n")) {
            contenu = d;
            break;
        }
    }

    static const QRegularExpression jeton(
        QStringLiteral("\\[[^\\]]*\\]|<[0-9A-Fa-f]*>|\\([^)]*\\)|/[^\\s/\\[\\]<>()]+|"
                       "[-+]?[0-9]*\\.?[0-9]+|[A-Za-z*'\"]+"));
    std::vector<double> nombres;
    std::vector<QTransform> pile;
    QTransform ctm;
    QColor remplissage(Qt::black);
    std::vector<QPointF> chemin;
    auto it = jeton.globalMatch(QString::fromLatin1(contenu));
    while (it.hasNext()) {
        const QString t = it.next().captured();
        bool nombre = false;
        const double v = t.toDouble(&nombre);
        if (nombre) {
            nombres.push_back(v);
            continue;
        }
        const auto n = [&](size_t i) { return nombres[nombres.size() - i]; };
        if (t == u"q") {
            pile.push_back(ctm);
        } else if (t == u"Q" && !pile.empty()) {
            ctm = pile.back();
            pile.pop_back();
        } else if (t == u"cm" && nombres.size() >= 6) {
            ctm = QTransform(n(6), n(5), n(4), n(3), n(2), n(1)) * ctm;
        } else if ((t == u"m" || t == u"l") && nombres.size() >= 2) {
            chemin.push_back(ctm.map(QPointF(n(2), n(1))));
        } else if (t == u"re" && nombres.size() >= 4) {
            const double x = n(4), y = n(3), w = n(2), h = n(1);
            for (const QPointF p :
                 {QPointF(x, y), QPointF(x + w, y), QPointF(x + w, y + h), QPointF(x, y + h)})
                chemin.push_back(ctm.map(p));
        } else if ((t == u"scn" || t == u"sc" || t == u"rg") && nombres.size() >= 3) {
            remplissage = QColor::fromRgbF(float(n(3)), float(n(2)), float(n(1)));
        } else if (t == u"f" || t == u"f*" || t == u"B" || t == u"B*" || t == u"b" || t == u"b*") {
            c.traces.push_back({remplissage, chemin});
            chemin.clear();
        } else if (t == u"S" || t == u"s") {
            c.traces.push_back({QColor(), chemin});
            chemin.clear();
        } else if (t == u"n") {
            chemin.clear();
        } else if (t == u"Tj" || t == u"TJ") {
            ++c.textes;
        }
        if (!t.startsWith(u'/') && !t.startsWith(u'[') && !t.startsWith(u'<') &&
            !t.startsWith(u'('))
            nombres.clear();
    }
    return c;
}
