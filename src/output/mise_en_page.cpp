#include "output/mise_en_page.h"

#include "base/erreur.h"
#include "carto/render/overlay.h"
#include "carto/render/raster_image.h"
#include "carto/render/scene.h"
#include "context/contexte.h"

#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace veldra {

namespace {

const QString kEchelleCourante = QStringLiteral("Echelle courante");
constexpr double kMaxDenominateur = 1'000'000;

double mm(double millimetres) {
    return millimetres * kResolution / 25.4;
}

QFont police(double points, bool gras = false) {
    QFont f(QStringLiteral("DejaVu Sans"));
    f.setPixelSize(std::max(1, int(std::lround(points * kResolution / 72.0))));
    f.setBold(gras);
    return f;
}

// The page's bands, in its units: margins of 1 cm, a header for the title and a footer
// for the comments, the scale and the north arrow.
struct Bandes {
    QRectF page, entete, cadre, pied;
};

Bandes bandes(const MiseEnPage& m) {
    Bandes b;
    b.page = QRectF(disposition(m).fullRectPixels(kResolution));
    const double marge = mm(10);
    const QRectF utile = b.page.adjusted(marge, marge, -marge, -marge);
    b.entete = QRectF(utile.left(), utile.top(), utile.width(), mm(12));
    b.pied = QRectF(utile.left(), utile.bottom() - mm(24), utile.width(), mm(24));
    // Whole units: the frame's size in units is the viewport's size in pixels.
    b.cadre =
        QRectF(std::round(utile.left()), std::round(b.entete.bottom()), std::floor(utile.width()),
               std::floor(b.pied.top() - mm(2) - b.entete.bottom()));
    return b;
}

// The longest round length (1, 2 or 5 times a power of ten, in metres) whose bar is at
// most `maxMm` long on paper.
double longueurBarre(double denominateur, double maxMm) {
    double meilleure = 0;
    for (int p = -2; p <= 6; ++p)
        for (const double k : {1.0, 2.0, 5.0}) {
            const double l = k * std::pow(10.0, p);
            if (l * 1000 / denominateur <= maxMm)
                meilleure = l;
        }
    return meilleure;
}

QString metres(double l) {
    return l >= 1000 ? QLocale(QLocale::French).toString(l / 1000) + QStringLiteral(" km")
                     : QLocale(QLocale::French).toString(l) + QStringLiteral(" m");
}

void dessineBarre(QPainter& p, const QPointF& origine, double denominateur) {
    const double l = longueurBarre(denominateur, 60);
    if (!(l > 0))
        return;
    const double longueur = mm(l * 1000 / denominateur), hauteur = mm(1.6);
    const QPen trait(Qt::black, mm(0.2));
    for (int i = 0; i < 4; ++i) {
        p.setPen(trait);
        p.setBrush(i % 2 == 0 ? Qt::black : Qt::white);
        p.drawRect(QRectF(origine.x() + longueur * i / 4, origine.y(), longueur / 4, hauteur));
    }
    p.setFont(police(7));
    const QFontMetricsF fm(p.font());
    const double y = origine.y() + hauteur + fm.ascent() + mm(0.6);
    p.drawText(QPointF(origine.x() - fm.horizontalAdvance(QStringLiteral("0")) / 2, y),
               QStringLiteral("0"));
    const QString fin = metres(l);
    p.drawText(QPointF(origine.x() + longueur - fm.horizontalAdvance(fin) / 2, y), fin);
}

void dessineNord(QPainter& p, const QRectF& zone) {
    const double h = std::min(zone.height(), mm(14));
    const double cx = zone.center().x(), haut = zone.top() + (zone.height() - h) / 2;
    p.setFont(police(9, true));
    const QFontMetricsF fm(p.font());
    const double pointe = haut + fm.height();
    p.setPen(Qt::black);
    p.drawText(QPointF(cx - fm.horizontalAdvance(QStringLiteral("N")) / 2, haut + fm.ascent()),
               QStringLiteral("N"));
    QPainterPath gauche, droite;
    const double base = haut + h, demi = h * 0.22;
    gauche.moveTo(cx, pointe);
    gauche.lineTo(cx - demi, base);
    gauche.lineTo(cx, base - h * 0.2);
    gauche.closeSubpath();
    droite.moveTo(cx, pointe);
    droite.lineTo(cx + demi, base);
    droite.lineTo(cx, base - h * 0.2);
    droite.closeSubpath();
    p.setPen(QPen(Qt::black, mm(0.2)));
    p.setBrush(Qt::black);
    p.drawPath(gauche);
    p.setBrush(Qt::white);
    p.drawPath(droite);
}

void dessineCarte(const Contexte& ctx, QPainter& p, const QRectF& cadre, const MiseEnPage& m) {
    const carto::Viewport v = vueImprimee(ctx, m);
    const carto::Map& map = ctx.s.Map1->map();
    const carto::Scene scene = carto::buildScene(
        map, v, v.visible(), [](const QString& source) { return carto::readRaster(source); });
    p.save();
    p.translate(cadre.topLeft());
    p.setClipRect(QRectF(QPointF(0, 0), QSizeF(v.size)));
    p.fillRect(QRectF(QPointF(0, 0), QSizeF(v.size)),
               carto::toQColor(ctx.s.Map1->backgroundColor()));
    p.setRenderHint(QPainter::Antialiasing);
    carto::paintScene(p, scene);
    if (m.selection)
        carto::paintSelection(p, map, v);
    // Legends are laid out in screen pixels.
    const double ecran = kResolution / 96.0;
    p.scale(ecran, ecran);
    carto::paintLegends(p, map, QSize(int(v.size.width() / ecran), int(v.size.height() / ecran)));
    p.restore();
}

} // namespace

double denominateurEchelle(const Contexte& ctx, const QString& echelle) {
    const QString texte = echelle.trimmed();
    if (texte.compare(kEchelleCourante, Qt::CaseInsensitive) == 0) {
        const double largeur = ctx.s.Map1->paperWidth();
        if (!(largeur > 0) || !(ctx.s.Map1->zoom() > 0))
            throw Erreur(err::AppelIncorrect,
                         QStringLiteral("La carte n'a pas de largeur à l'écran : son échelle "
                                        "courante ne peut pas être imprimée. Choisissez une "
                                        "échelle."));
        return std::max(1.0, std::round(ctx.s.Map1->zoom() * 100 / largeur));
    }
    QStringView nombre(texte);
    if (nombre.startsWith(u"1/"))
        nombre = nombre.mid(2).trimmed();
    bool ok = false;
    const qlonglong n = nombre.toLongLong(&ok);
    if (!ok || n < 1 || double(n) > kMaxDenominateur)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("L'échelle « %1 » n'est pas valable : donnez son "
                                    "dénominateur, un nombre entier de 1 à 1 000 000 (500 pour "
                                    "1/500), ou « Echelle courante ».")
                         .arg(echelle.left(40)));
    return double(n);
}

QPageLayout disposition(const MiseEnPage& m) {
    return QPageLayout(QPageSize(m.papier), m.orientation, QMarginsF(0, 0, 0, 0),
                       QPageLayout::Millimeter);
}

QRectF cadreCarte(const MiseEnPage& m) {
    return bandes(m).cadre;
}

carto::Viewport vueImprimee(const Contexte& ctx, const MiseEnPage& m) {
    const QRectF cadre = cadreCarte(m);
    carto::Viewport v;
    v.size = QSize(int(cadre.width()), int(cadre.height()));
    v.centre = ctx.s.Map1->centre();
    // One unit of the page is 25.4 / kResolution mm of paper, and m.echelle times that on
    // the ground; map units are metres.
    v.zoom = v.size.width() * 25.4 / kResolution / 1000 * m.echelle;
    return v;
}

void dessinePage(const Contexte& ctx, QPainter& p, const MiseEnPage& m) {
    if (!(m.echelle >= 1) || m.echelle > kMaxDenominateur)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("L'échelle 1/%1 n'est pas valable.").arg(m.echelle));
    const Bandes b = bandes(m);
    dessineCarte(ctx, p, b.cadre, m);

    p.save();
    p.setPen(QPen(Qt::black, mm(0.3)));
    p.setBrush(Qt::NoBrush);
    p.drawRect(b.cadre);

    // Header: the title on the left, the date on the right.
    const QString date = QStringLiteral("Imprimé le ") +
                         QLocale(QLocale::French).toString(m.date, QStringLiteral("d MMMM yyyy"));
    p.setFont(police(9));
    const double largeurDate = QFontMetricsF(p.font()).horizontalAdvance(date);
    p.drawText(QRectF(b.entete.right() - largeurDate, b.entete.top(), largeurDate,
                      b.entete.height() - mm(2)),
               Qt::AlignRight | Qt::AlignBottom, date);
    p.setFont(police(16, true));
    p.drawText(b.entete.adjusted(0, 0, -largeurDate - mm(6), -mm(2)),
               Qt::AlignLeft | Qt::AlignBottom | Qt::TextSingleLine,
               QFontMetricsF(p.font()).elidedText(m.titre, Qt::ElideRight,
                                                  b.entete.width() - largeurDate - mm(6)));

    // Footer: the comments, then the scale and its bar, then the north arrow.
    const QRectF nord(b.pied.right() - mm(14), b.pied.top(), mm(14), b.pied.height());
    const QRectF echelle(nord.left() - mm(70), b.pied.top(), mm(66), b.pied.height());
    const QRectF commentaires(b.pied.left(), b.pied.top() + mm(1),
                              echelle.left() - b.pied.left() - mm(4), b.pied.height() - mm(1));
    p.setFont(police(9));
    p.drawText(commentaires, Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, m.commentaires);
    p.setFont(police(10, true));
    const QString texteEchelle = QStringLiteral("Échelle : 1/%1").arg(qint64(m.echelle));
    const QFontMetricsF fm(p.font());
    p.drawText(QPointF(echelle.left(), echelle.top() + mm(2) + fm.ascent()), texteEchelle);
    dessineBarre(p, QPointF(echelle.left() + mm(2), echelle.top() + mm(4) + fm.height()),
                 m.echelle);
    dessineNord(p, nord);
    p.restore();
}

} // namespace veldra
