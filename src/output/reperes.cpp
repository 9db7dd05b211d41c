#include "output/reperes.h"

#include "context/contexte.h"
#include "context/garde.h"

#include <QMouseEvent>

namespace veldra {

namespace {

// Follows the pointer on the guides: which one it went over, and a drag from one of them
// until the button is released over the map.
class GlisseRepere : public QObject {
public:
    GlisseRepere(Contexte& ctx) : QObject(&ctx.controle), ctx_(ctx) {}

protected:
    bool eventFilter(QObject* objet, QEvent* event) override {
        Surface& s = ctx_.s;
        auto* guide = qobject_cast<QWidget*>(objet);
        if (guide != s.Regle && guide != s.RegleV)
            return false;
        const bool horizontal = guide == s.Regle;
        switch (event->type()) {
        case QEvent::Enter:
        case QEvent::MouseMove: {
            ctx_.etat.reperes.survole = horizontal ? QStringLiteral("H") : QStringLiteral("V");
            auto* m = dynamic_cast<QMouseEvent*>(event);
            if (m && (m->buttons() & Qt::LeftButton) && guide->isEnabled()) {
                // The guide follows the pointer while it is dragged.
                const QPoint ici =
                    guide->parentWidget()->mapFromGlobal(m->globalPosition()).toPoint();
                if (horizontal)
                    guide->move(guide->x(), ici.y());
                else
                    guide->move(ici.x(), guide->y());
                return true;
            }
            return false;
        }
        case QEvent::MouseButtonPress:
            depart_ = guide->pos();
            return static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton;
        case QEvent::MouseButtonRelease: {
            auto* m = static_cast<QMouseEvent*>(event);
            if (m->button() != Qt::LeftButton)
                return false;
            const QPointF surCarte = s.Map1->mapFromGlobal(m->globalPosition());
            if (s.Map1->rect().contains(surCarte.toPoint()))
                sousGarde(ctx_, [&] { deposeRepere(ctx_, surCarte.x(), surCarte.y()); });
            else
                guide->move(depart_); // dropped off the map: back where it was
            return true;
        }
        default:
            return false;
        }
    }

private:
    Contexte& ctx_;
    QPoint depart_;
};

} // namespace

void deposeRepere(Contexte& ctx, double x, double y) {
    Surface& s = ctx.s;
    const QRect carte = s.Map1->geometry();
    if (ctx.etat.reperes.survole == QLatin1String("H")) {
        const int haut = carte.top() + int(y);
        ctx.etat.reperes.yH = haut;
        s.Regle->move(s.Regle->x(), haut);
    } else {
        const int gauche = carte.left() + int(x);
        ctx.etat.reperes.xV = gauche;
        s.RegleV->move(gauche, s.RegleV->y());
    }
}

void connecteReperes(Contexte& ctx) {
    auto* filtre = new GlisseRepere(ctx);
    for (QWidget* g : {static_cast<QWidget*>(ctx.s.Regle), static_cast<QWidget*>(ctx.s.RegleV)}) {
        g->setMouseTracking(true);
        g->installEventFilter(filtre);
    }
    Contexte* c = &ctx;
    QObject::connect(ctx.s.Map1, &carto::MapView::dropped, &ctx.controle,
                     garde(ctx, [c](QObject*, double x, double y) { deposeRepere(*c, x, y); }));
}

} // namespace veldra
