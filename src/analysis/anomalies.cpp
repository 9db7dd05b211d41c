#include "analysis/anomalies.h"

#include "base/erreur.h"
#include "carto/model/layer.h"
#include "carto/model/update_access.h"
#include "context/contexte.h"
#include "context/garde.h"

#include <QSet>

namespace veldra {

namespace {

constexpr int kRoleCalque = Qt::UserRole;
constexpr int kRoleFid = Qt::UserRole + 1;
const char* const kProprietePlan = "planAnalyse";
constexpr carto::Colour kRouge = 255;

const QString kChampTemp = QStringLiteral("My_Field_Name");

// Which plan the faults belong to: its file and its scratch layer, made anew by each
// opening, even of the same file.
QString planCourant(Contexte& ctx) {
    return ctx.carte().mapSet() + u'#' +
           QString::number(reinterpret_cast<quintptr>(ctx.etat.calqueTemp));
}

carto::Style styleMarque(bool terrain) {
    carto::Style s;
    s.regionColor = kRouge;
    s.regionPattern = terrain ? carto::pattern::DiagonalCross : carto::pattern::None;
    s.regionTransparent = true;
    s.regionBorderColor = kRouge;
    s.regionBorderWidth = terrain ? 2 : 3;
    return s;
}

void retireMarques(Contexte& ctx) {
    carto::Layer* temp = ctx.etat.calqueTemp;
    if (!temp || temp->fieldIndex(kChampTemp) < 0)
        return;
    const carto::Features marques =
        temp->searchEqual(kChampTemp, QString::fromLatin1(kMarqueAnomalie));
    if (marques.isEmpty())
        return;
    carto::UpdateAccess acces(ctx.carte());
    for (const qint64 fid : marques.fids())
        temp->deleteFeature(fid);
    acces.commit();
}

// Each faulty region once, in red, over the plan.
void marque(Contexte& ctx, const Constats& c) {
    carto::Layer* temp = ctx.etat.calqueTemp;
    if (!temp)
        return;
    QSet<QString> faits;
    carto::UpdateAccess acces(ctx.carte());
    for (const Anomalie& a : c.anomalies) {
        const QString cle = a.calque + u'#' + QString::number(a.fid);
        if (faits.contains(cle))
            continue;
        faits.insert(cle);
        const carto::Layer* calque = ctx.carte().layer(a.calque);
        if (!calque || !calque->hasFeature(a.fid))
            continue;
        const carto::Feature f = calque->feature(a.fid);
        if (f.kind() != carto::FeatureKind::Region || f.parts().empty())
            continue;
        const bool terrain = ctx.v.Calque_Tombe && calque->name() == ctx.v.Calque_Tombe->name();
        carto::Feature m =
            temp->addFeature(carto::Feature::region(f.parts(), styleMarque(terrain)));
        m.setAttribute(kChampTemp, QString::fromLatin1(kMarqueAnomalie));
        temp->updateFeature(m);
    }
    acces.commit();
}

} // namespace

void montreAnomalies(Contexte& ctx, const Constats& c) {
    Surface& s = ctx.s;
    QListWidget& liste = *s.Liste_Anomalies;
    liste.clear();
    for (const Anomalie& a : c.anomalies) {
        auto* ligne = new QListWidgetItem(a.libelle, &liste);
        ligne->setData(kRoleCalque, a.calque);
        ligne->setData(kRoleFid, a.fid);
        ligne->setToolTip(a.libelle);
    }
    if (c.anomalies.empty()) {
        auto* ligne =
            new QListWidgetItem(QStringLiteral("Aucune anomalie : le plan est en ordre."), &liste);
        ligne->setFlags(Qt::NoItemFlags);
    }
    s.Label_Anomalies->setText(
        QStringLiteral("Anomalies du plan (%1)").arg(qsizetype(c.anomalies.size())));
    s.Panel_Anomalies->setProperty(kProprietePlan, planCourant(ctx));
    retireMarques(ctx);
    marque(ctx, c);
    if (s.Panel_Anomalies->isHidden()) {
        // First shown in the map's bottom right corner, where a plan's drawing usually
        // leaves room; then where the user left it.
        const QRect carte = s.Map1->geometry();
        if (s.Panel_Anomalies->pos() == QPoint(0, 0))
            s.Panel_Anomalies->move(
                std::max(carte.left(), carte.right() - s.Panel_Anomalies->width() - 12),
                std::max(carte.top(), carte.bottom() - s.Panel_Anomalies->height() - 12));
        s.Panel_Anomalies->show();
    }
    s.Panel_Anomalies->raise();
}

void effaceAnomalies(Contexte& ctx) {
    Surface& s = ctx.s;
    s.Liste_Anomalies->clear();
    s.Panel_Anomalies->hide();
    s.Panel_Anomalies->setProperty(kProprietePlan, QVariant());
    retireMarques(ctx);
}

void situeAnomalie(Contexte& ctx, int ligne) {
    const QListWidgetItem* item = ctx.s.Liste_Anomalies->item(ligne);
    if (!item || !item->data(kRoleFid).isValid())
        return;
    carto::Layer* calque = ctx.carte().layer(item->data(kRoleCalque).toString());
    const qint64 fid = item->data(kRoleFid).toLongLong();
    if (!calque || !calque->hasFeature(fid))
        throw Erreur(err::ObjetInconnu,
                     QStringLiteral("Cet élément n'est plus sur le plan : relancez l'analyse."));
    calque->selectOnly(carto::Features(calque, {fid}));
    carto::MapView& carte = *ctx.s.Map1;
    carte.setBounds(calque->feature(fid).bounds());
    // A plot is seen with its neighbours, as a search shows it; a section or an alley whole.
    const bool terrain = ctx.v.Calque_Tombe && calque->name() == ctx.v.Calque_Tombe->name();
    carte.setZoom(carte.zoom() / (terrain ? 0.1 : 0.9));
}

void connecteAnomalies(Contexte& ctx) {
    Contexte* c = &ctx;
    Surface& s = ctx.s;
    QObject::connect(s.Liste_Anomalies, &QListWidget::itemClicked, &ctx.controle,
                     garde(ctx, [c](QListWidgetItem* item) {
                         situeAnomalie(*c, c->s.Liste_Anomalies->row(item));
                     }));
    QObject::connect(s.Btn_FermerAnomalies, &QToolButton::clicked, &ctx.controle,
                     garde(ctx, [c] { effaceAnomalies(*c); }));
    // Another plan: the faults and their marks were the previous plan's.
    QObject::connect(&ctx.carte(), &carto::Map::layersChanged, &ctx.controle, garde(ctx, [c] {
        const QVariant plan = c->s.Panel_Anomalies->property(kProprietePlan);
        if (plan.isValid() && plan.toString() != planCourant(*c)) {
            c->s.Liste_Anomalies->clear();
            c->s.Panel_Anomalies->hide();
            c->s.Panel_Anomalies->setProperty(kProprietePlan, QVariant());
        }
    }));
}

} // namespace veldra
