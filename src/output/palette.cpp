#include "output/palette.h"

#include "context/contexte.h"
#include "context/garde.h"

#include <QMouseEvent>
#include <QPainter>
#include <array>

namespace veldra {

namespace {

constexpr int kColonnes = 8;
constexpr int kLignes = 5;
constexpr int kColonnesStandard = 8;
constexpr int kCellulesStandard = 16;
constexpr int kLargeurStandard = 200;            // picStandard's width: ten cells of 20 pixels
constexpr carto::Colour kOmbreBouton = 0x808080; // the button-shadow system colour

constexpr std::array<carto::Colour, 40> kGrille = {
    0x000000, 0x003399, 0x003333, 0x003300, 0x663300, 0x800000, 0x993333, 0x333333,
    0x000080, 0x0066FF, 0x008080, 0x008000, 0x808000, 0xFF0000, 0x996666, 0x808080,
    0x0000FF, 0x0099FF, 0x00CC99, 0x669933, 0xCCCC33, 0xFF6633, 0x800080, 0x999999,
    0xFF00FF, 0x00CCFF, 0x00FFFF, 0x00FF00, 0xFFFF00, 0xFFCC00, 0x663399, 0xC0C0C0,
    0xCC99FF, 0x99CCFF, 0x99FFFF, 0xCCFFCC, 0xFFFFCC, 0xFFCC99, 0xFF99CC, 0xFFFFFF};
constexpr std::array<carto::Colour, kCellulesStandard> kStandard = {
    0x000000, 0x808080, 0x000080, 0x008080, 0x008000, 0x808000, 0x800000, 0x800080,
    0xFFFFFF, 0xC0C0C0, 0x0000FF, 0x00FFFF, 0x00FF00, 0xFFFF00, 0xFF0000, 0xFF00FF};

// Cells drawn row by row: a filled square two units smaller than the cell, outlined.
void dessineCellules(QWidget& image, bool grille, int colonnes, int nombre, int cellule) {
    QPainter p(&image);
    p.fillRect(image.rect(), image.palette().color(QPalette::Window));
    p.setPen(carto::toQColor(kOmbreBouton));
    for (int i = 0; i < nombre; ++i) {
        const QRect carre((i % colonnes) * cellule + 1, (i / colonnes) * cellule + 1, cellule - 2,
                          cellule - 2);
        p.fillRect(carre, carto::toQColor(couleurCellule(grille, i + 1)));
        p.drawRect(carre.adjusted(0, 0, -1, -1));
    }
}

class FiltrePalette : public QObject {
public:
    explicit FiltrePalette(Contexte& ctx) : QObject(&ctx.controle), ctx_(ctx) {}

protected:
    bool eventFilter(QObject* objet, QEvent* event) override {
        Surface& s = ctx_.s;
        if (event->type() == QEvent::Paint && (objet == s.picMore || objet == s.picStandard)) {
            const bool grille = objet == s.picMore;
            dessineCellules(*static_cast<QWidget*>(objet), grille,
                            grille ? kColonnes : kColonnesStandard,
                            grille ? kColonnes * kLignes : kCellulesStandard, tailleCellule(ctx_));
            return true;
        }
        if (event->type() == QEvent::MouseButtonPress && objet == s.picMore) {
            const QPoint ou = static_cast<QMouseEvent*>(event)->position().toPoint();
            sousGarde(ctx_, [&] { choisitCouleurPalette(ctx_, ou); });
            return true;
        }
        if (objet == s.PCouleur && event->type() == QEvent::MouseButtonRelease) {
            sousGarde(ctx_, [&] { basculePalette(ctx_); });
            return true;
        }
        if (objet == s.P_preferences && event->type() == QEvent::Hide) {
            s.picMore->hide();
            s.picStandard->hide();
        }
        return false;
    }

private:
    Contexte& ctx_;
};

} // namespace

carto::Colour couleurCellule(bool grille, int numero) {
    if (grille)
        return numero >= 1 && numero <= int(kGrille.size()) ? kGrille[size_t(numero - 1)] : 0;
    return numero >= 1 && numero <= int(kStandard.size()) ? kStandard[size_t(numero - 1)] : 0;
}

QString texteCouleur(carto::Colour c) {
    return QStringLiteral("&H") +
           QStringLiteral("%1").arg(uint(c) & 0xFFFFFFu, 6, 16, QLatin1Char('0')).toUpper();
}

carto::Colour couleurDeTexte(const QString& texte) {
    const QString t = texte.trimmed();
    bool ok = false;
    const qint64 n = t.startsWith(QLatin1String("&H"), Qt::CaseInsensitive)
                         ? t.mid(2).toLongLong(&ok, 16)
                         : t.toLongLong(&ok, 10);
    return ok ? carto::Colour(n & 0xFFFFFF) : 0;
}

int tailleCellule(const Contexte& ctx) {
    return std::max(1, ctx.s.picStandard->width() / 10);
}

void basculePalette(Contexte& ctx) {
    Surface& s = ctx.s;
    if (s.picMore->isVisible()) {
        s.picMore->hide();
        s.picStandard->hide();
        return;
    }
    s.picStandard->resize(kLargeurStandard, s.picStandard->height());
    const int cellule = tailleCellule(ctx);
    // Five rows of cells and 30 twips (two pixels) more.
    s.picMore->resize(kColonnes * cellule + 2, kLignes * cellule + 2);
    s.picStandard->resize(kLargeurStandard, (kCellulesStandard / kColonnesStandard) * cellule + 2);
    // Under the sample, kept inside the control.
    QPoint coin = s.PCouleur->mapTo(&ctx.controle, QPoint(0, s.PCouleur->height() + 2));
    coin.setX(std::clamp(coin.x(), 0, std::max(0, ctx.controle.width() - kLargeurStandard)));
    s.picMore->move(coin);
    s.picStandard->move(coin.x(), coin.y() + s.picMore->height() + 4);
    s.picMore->show();
    s.picStandard->show();
    s.picMore->raise();
    s.picStandard->raise();
    s.picMore->update();
    s.picStandard->update();
}

void choisitCouleurPalette(Contexte& ctx, QPoint ou) {
    const int cellule = tailleCellule(ctx);
    if (ou.x() < 0 || ou.y() < 0)
        return;
    const int colonne = ou.x() / cellule, ligne = ou.y() / cellule;
    if (colonne >= kColonnes || ligne >= kLignes)
        return;
    const carto::Colour c = couleurCellule(true, ligne * kColonnes + colonne + 1);
    Surface& s = ctx.s;
    QPalette p = s.PCouleur->palette();
    p.setColor(QPalette::Window, carto::toQColor(c));
    s.PCouleur->setPalette(p);
    s.Map1->setBackgroundColor(couleurDeTexte(texteCouleur(c)));
    s.picMore->hide();
    s.picStandard->hide();
}

void connectePalette(Contexte& ctx) {
    auto* filtre = new FiltrePalette(ctx);
    for (QWidget* w : std::initializer_list<QWidget*>{ctx.s.picMore, ctx.s.picStandard,
                                                      ctx.s.PCouleur, ctx.s.P_preferences})
        w->installEventFilter(filtre);
    ctx.s.PCouleur->setCursor(Qt::PointingHandCursor);
    ctx.s.picStandard->resize(kLargeurStandard, 42);
}

} // namespace veldra
