#include "output/images_style.h"

#include "carto/render/style_paint.h"

#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <cmath>

namespace veldra {

namespace {

constexpr QSize kImage{64, 16};
constexpr int kDernierMotifDirect = 8;
constexpr int kSautMotifs = 3;

QPixmap fond() {
    QPixmap p(kImage);
    p.fill(Qt::white);
    return p;
}

QIcon imageMotif(int code) {
    QPixmap p = fond();
    carto::Style s;
    s.regionPattern = code;
    s.regionColor = 0;
    s.regionBackColor = 0xFFFFFF;
    s.regionBorderColor = 0x808080;
    const carto::RegionPaint r = carto::regionPaint(s);
    QPainter painter(&p);
    const QRect cadre = p.rect().adjusted(1, 1, -2, -2);
    if (r.background.style() != Qt::NoBrush)
        painter.fillRect(cadre, r.background);
    if (r.fill.style() != Qt::NoBrush)
        painter.fillRect(cadre, r.fill);
    painter.setPen(r.border);
    painter.drawRect(cadre);
    return QIcon(p);
}

QIcon imageTrait(int code, int largeur) {
    QPixmap p = fond();
    carto::Style s;
    s.lineStyle = code;
    s.lineWidth = largeur;
    QPainter painter(&p);
    painter.setPen(carto::linePen(s));
    painter.drawLine(2, kImage.height() / 2, kImage.width() - 3, kImage.height() / 2);
    return QIcon(p);
}

void prepare(QComboBox& combo) {
    combo.clear();
    combo.setIconSize(kImage);
    combo.setMaxVisibleItems(16);
}

} // namespace

const std::vector<int>& codesMotifs() {
    static const std::vector<int> codes = [] {
        std::vector<int> c;
        for (int i = 1; motifDeEntree(i) <= carto::pattern::Last; ++i)
            c.push_back(motifDeEntree(i));
        return c;
    }();
    return codes;
}

int motifDeEntree(int entree) {
    return entree <= kDernierMotifDirect ? entree : entree + kSautMotifs;
}

int entreeDeMotif(int code) {
    const std::vector<int>& c = codesMotifs();
    const auto it = std::find(c.begin(), c.end(), code);
    return it == c.end() ? 0 : int(it - c.begin()) + 1;
}

void remplitMotifs(QComboBox& combo, int n) {
    prepare(combo);
    const std::vector<int>& c = codesMotifs();
    for (int i = 0; i < std::min<int>(n, int(c.size())); ++i) {
        const QString nom = c[size_t(i)] == carto::pattern::None    ? QStringLiteral("Transparent")
                            : c[size_t(i)] == carto::pattern::Solid ? QStringLiteral("Plein")
                                                                    : QString::number(i + 1);
        combo.addItem(imageMotif(c[size_t(i)]), nom);
    }
}

void remplitTraits(QComboBox& combo, int n, int largeur) {
    prepare(combo);
    for (int code = 1; code <= n; ++code)
        combo.addItem(imageTrait(code, largeur), code == carto::linestyle::None
                                                     ? QStringLiteral("Aucun")
                                                     : QString::number(code));
}

void remplitEpaisseurs(QComboBox& combo, int n) {
    prepare(combo);
    for (int largeur = 1; largeur <= n; ++largeur)
        combo.addItem(imageTrait(carto::linestyle::Solid, largeur),
                      QStringLiteral("%1 px").arg(largeur));
}

int entreeChoisie(const QComboBox& combo) {
    return combo.currentIndex() + 1;
}

void choisitEntree(QComboBox& combo, int entree) {
    if (combo.count() > 0)
        combo.setCurrentIndex(std::clamp(entree, 1, combo.count()) - 1);
}

int tailleLaPlusProche(std::span<const double> tailles, double valeur) {
    size_t meilleur = 0;
    for (size_t i = 1; i < tailles.size(); ++i)
        if (std::abs(tailles[i] - valeur) < std::abs(tailles[meilleur] - valeur))
            meilleur = i;
    return int(meilleur);
}

} // namespace veldra
