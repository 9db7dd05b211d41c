#include "context/affichage.h"

#include "context/contexte.h"
#include "context/garde.h"

#include <QMouseEvent>

namespace veldra {

namespace {

void visible(carto::Layer* l, bool v) {
    if (l)
        l->setVisible(v);
}

void quePlanNumerise(Contexte& ctx, bool seul) {
    Surface& s = ctx.s;
    VariablesPubliques& v = ctx.v;
    const std::initializer_list<carto::Layer*> vecteurs = {
        v.Calque_Tombe,    v.Calque_Decor,  v.Calque_Numero,  v.Calque_Texte,
        v.Calque_Sections, v.Calque_Allees, v.Calque_Courant, v.Calque_Enceinte};
    if (seul) {
        for (QCheckBox* b : {s.C_AffSections, s.C_AffAllees, s.CB_PlanNumerise})
            b->setChecked(false);
        s.CB_PlanNumerise->setEnabled(false);
        for (carto::Layer* l : vecteurs)
            visible(l, false);
        visible(v.Calque_Raster, true);
    } else {
        visible(v.Calque_Raster, false);
        for (carto::Layer* l : vecteurs)
            visible(l, true);
        s.C_AffSections->setChecked(true);
        s.C_AffAllees->setChecked(true);
        s.CB_PlanNumerise->setEnabled(true);
    }
}

void montreOnglet(Contexte& ctx, int index) {
    const int numero = index + 1;
    if (numero == ctx.v.mintCurFrame)
        return;
    Surface& s = ctx.s;
    if (ctx.v.mintCurFrame >= 1 && ctx.v.mintCurFrame <= int(s.pages.size()))
        s.pages[size_t(ctx.v.mintCurFrame - 1)]->hide();
    if (index >= 0 && index < int(s.pages.size())) {
        s.pages[size_t(index)]->show();
        s.pages[size_t(index)]->raise();
    }
    ctx.v.mintCurFrame = qint16(numero);
}

// The preferences and processing panels take the place between the map's right edge and
// the bottom band; showing one hides the other, a second press hides it.
void montrePanneau(Contexte& ctx, QFrame* montre, QFrame* cache) {
    cache->hide();
    if (montre->isVisible()) {
        montre->hide();
        return;
    }
    const QRect carte = ctx.s.Map1->geometry();
    const int largeur = 240, hauteur = std::min(260, carte.height());
    montre->setGeometry(carte.right() + 1 - largeur, ctx.s.Panel_Bas->y() - hauteur, largeur,
                        hauteur);
    montre->show();
    montre->raise();
}

} // namespace

void basculePanelInfos(Contexte& ctx) {
    Surface& s = ctx.s;
    if (ctx.etat.etatPanelInfos == QLatin1String("Visible")) {
        ctx.etat.etatPanelInfos = QStringLiteral("Invisible");
        s.Btn_Fleche->setToolTip(QStringLiteral("Afficher les informations"));
        s.Btn_Fleche->setText(QStringLiteral("▶")); // FDroite
        s.corpsInfos->hide();
    } else {
        ctx.etat.etatPanelInfos = QStringLiteral("Visible");
        s.Btn_Fleche->setToolTip(QStringLiteral("Masquer les informations"));
        s.Btn_Fleche->setText(QStringLiteral("◀")); // FGauche
        s.corpsInfos->show();
    }
}

void connecteAffichage(Contexte& ctx) {
    Surface& s = ctx.s;
    Contexte* c = &ctx;
    QObject::connect(s.C_AffSections, &QCheckBox::clicked, &ctx.controle,
                     garde(ctx, [c](bool coche) { visible(c->v.Calque_Sections, coche); }));
    QObject::connect(s.C_AffAllees, &QCheckBox::clicked, &ctx.controle,
                     garde(ctx, [c](bool coche) { visible(c->v.Calque_Allees, coche); }));
    QObject::connect(s.CB_PlanNumerise, &QCheckBox::clicked, &ctx.controle,
                     garde(ctx, [c](bool coche) {
                         visible(c->v.Calque_Raster, coche);
                         c->s.CB_QUE_PlanNumerise->setEnabled(!coche);
                     }));
    QObject::connect(s.CB_QUE_PlanNumerise, &QCheckBox::clicked, &ctx.controle,
                     garde(ctx, [c](bool coche) { quePlanNumerise(*c, coche); }));
    QObject::connect(s.CB_PlanSitue, &QCheckBox::toggled, s.Panel_Localisation,
                     &QWidget::setVisible);
    QObject::connect(s.CB_Bibliotheque, &QCheckBox::toggled, s.Panel_Bibli, &QWidget::setVisible);
    QObject::connect(s.Check1, &QCheckBox::toggled, &ctx.controle, garde(ctx, [c](bool coche) {
                         c->s.Regle->setVisible(coche);
                         c->s.RegleV->setVisible(coche);
                     }));
    QObject::connect(s.Check2, &QCheckBox::clicked, &ctx.controle, garde(ctx, [c](bool coche) {
                         if (c->v.Calque_Tombe)
                             c->v.Calque_Tombe->setLabelsVisible(coche);
                         visible(c->v.Calque_Numero, !coche);
                     }));
    QObject::connect(s.Btn_Fleche, &QToolButton::clicked, &ctx.controle,
                     garde(ctx, [c] { basculePanelInfos(*c); }));
    QObject::connect(s.TabStrip1, &QTabBar::tabBarClicked, &ctx.controle,
                     garde(ctx, [c](int index) { montreOnglet(*c, index); }));
    QObject::connect(s.Btn_Pref, &QToolButton::clicked, &ctx.controle, garde(ctx, [c] {
                         montrePanneau(*c, c->s.P_preferences, c->s.P_traitements);
                     }));
    QObject::connect(s.Btn_Traitements, &QPushButton::clicked, &ctx.controle, garde(ctx, [c] {
                         montrePanneau(*c, c->s.P_traitements, c->s.P_preferences);
                     }));
    QObject::connect(s.HLBBttn1, &QToolButton::clicked, &ctx.controle, garde(ctx, [c] {
                         c->s.Panel_Localisation->hide();
                         c->s.CB_PlanSitue->setChecked(false);
                     }));
    QObject::connect(s.HLBBttn6, &QToolButton::clicked, &ctx.controle, garde(ctx, [c] {
                         c->s.PInfos->hide();
                         c->s.picMore->hide();
                         c->s.Map1->setMousePointer(carto::pointer::Default);
                     }));
    QObject::connect(s.Btn_FemerPanelDist, &QToolButton::clicked, s.Panel_Dist, &QWidget::hide);

    auto* deplaceur = new DeplaceurDePanneaux(&ctx.controle);
    for (auto [panneau, titre] :
         {std::pair{s.Panel_Bibli, s.Label1}, std::pair{s.Panel_Localisation, s.Label8},
          std::pair{s.Panel_Dist, s.Label9}, std::pair{s.Panel_Outils, s.Label7},
          std::pair{s.Panel_Anomalies, s.Label_Anomalies}}) {
        deplaceur->ajoute(panneau, panneau);
        deplaceur->ajoute(panneau, titre);
    }
    deplaceur->ajoute(s.PInfos, s.PInfos);
}

void DeplaceurDePanneaux::ajoute(QWidget* panneau, QWidget* prise) {
    prises_.insert(prise, panneau);
    prise->installEventFilter(this);
}

QWidget* DeplaceurDePanneaux::panneauDe(QObject* prise) const {
    return prises_.value(prise, nullptr);
}

bool DeplaceurDePanneaux::eventFilter(QObject* watched, QEvent* event) {
    QWidget* panneau = panneauDe(watched);
    if (!panneau)
        return false;
    if (event->type() == QEvent::MouseButtonPress) {
        auto* e = static_cast<QMouseEvent*>(event);
        if (e->button() == Qt::LeftButton)
            ecart_ = e->globalPosition().toPoint() - panneau->pos();
    } else if (event->type() == QEvent::MouseMove) {
        auto* e = static_cast<QMouseEvent*>(event);
        if (e->buttons() & Qt::LeftButton) {
            QPoint vers = e->globalPosition().toPoint() - ecart_;
            // The panel stays inside the control, its title within reach.
            if (const QWidget* parent = panneau->parentWidget()) {
                vers.setX(std::clamp(vers.x(), 0, std::max(0, parent->width() - 40)));
                vers.setY(std::clamp(vers.y(), 0, std::max(0, parent->height() - 20)));
            }
            panneau->move(vers);
            return true;
        }
    }
    return false;
}

} // namespace veldra
