#include "analysis/infos_rapides.h"

#include "base/erreur.h"
#include "context/contexte.h"
#include "context/garde.h"

namespace veldra {

namespace {

// Blanks only, as the register's texts are padded.
QString sansBlancs(const QString& t) {
    qsizetype debut = 0, fin = t.size();
    while (debut < fin && t[debut] == u' ')
        ++debut;
    while (fin > debut && t[fin - 1] == u' ')
        --fin;
    return t.mid(debut, fin - debut);
}

qsizetype colonne(const recordset::Recordset& rs, const char* nom, const char* role) {
    const qsizetype i = rs.fieldIndex(QString::fromLatin1(nom));
    if (i < 0)
        throw Erreur(err::ChampInconnu,
                     QStringLiteral("AfficheInfosRapides : la colonne « %1 » manque au jeu "
                                    "d'enregistrements %2.")
                         .arg(QString::fromLatin1(nom), QString::fromUtf8(role)));
    return i;
}

struct Lignes {
    QStringList titulaires, ayantsDroit, inhumes;
};

void remplit(QListWidget& liste, const QStringList& lignes) {
    liste.clear();
    liste.addItems(lignes);
}

} // namespace

QString lignePersonne(const QVariant& nom, const QVariant& prenom) {
    QString ligne = nom.isNull() ? QString() : sansBlancs(nom.toString());
    if (!prenom.isNull())
        ligne += u' ' + sansBlancs(prenom.toString());
    return ligne;
}

void AfficheInfosRapides(Contexte& ctx, recordset::Recordset* oRs, recordset::Recordset* oRsIn) {
    // Every line is read before a list changes, so a record set of the wrong shape leaves
    // the panel as it was.
    Lignes l;
    if (oRs && oRs->recordCount() != 0) {
        const qsizetype nom = colonne(*oRs, "nom", "des concessionnaires");
        const qsizetype prenom = colonne(*oRs, "prenom", "des concessionnaires");
        const qsizetype type = colonne(*oRs, "type", "des concessionnaires");
        for (; !oRs->eof(); oRs->moveNext()) {
            const QString ligne = lignePersonne(oRs->value(nom), oRs->value(prenom));
            const QVariant t = oRs->value(type);
            // A null type is not "A" either way: such a person is a right holder.
            if (!t.isNull() && sansBlancs(t.toString()) != QLatin1String("A"))
                l.titulaires << ligne;
            else
                l.ayantsDroit << ligne;
        }
    }
    if (oRsIn && oRsIn->recordCount() != 0) {
        const qsizetype nom = colonne(*oRsIn, "nom", "des inhumés");
        const qsizetype prenom = colonne(*oRsIn, "prenom", "des inhumés");
        for (; !oRsIn->eof(); oRsIn->moveNext())
            l.inhumes << lignePersonne(oRsIn->value(nom), oRsIn->value(prenom));
    }
    Surface& s = ctx.s;
    remplit(*s.List1, l.titulaires);
    remplit(*s.List2, l.inhumes);
    remplit(*s.List3, l.ayantsDroit);
}

void ouvreInfosRapides(Contexte& ctx) {
    Surface& s = ctx.s;
    carto::MapView& carte = *s.Map1;
    if (s.PInfos->isHidden() && s.PInfos->pos() == QPoint(0, 0)) {
        // First shown over the map's top left corner; then where the user left it.
        const QRect r = carte.geometry();
        s.PInfos->move(r.left() + 12, r.top() + 12);
    }
    s.PInfos->show();
    s.PInfos->raise();
    try {
        carte.setCurrentTool(carto::tool::Select);
        // The pointer changes only with its picture: a missing file leaves the usual one.
        carte.setMouseIcon(ctx.controle.property("RepCurseurs").toString() +
                           QStringLiteral("Infos.cur"));
        carte.setMousePointer(carto::pointer::Custom);
    } catch (const Erreur&) {
        // The panel works without its pointer.
    }
    appelle(ctx.crochets.infosTerrainSelectionne);
}

void connecteInfosRapides(Contexte& ctx) {
    Contexte* c = &ctx;
    Surface& s = ctx.s;
    for (QAbstractButton* b : {static_cast<QAbstractButton*>(s.Btn_InfosRapides),
                               static_cast<QAbstractButton*>(s.B_OutilsInfo)})
        QObject::connect(b, &QAbstractButton::clicked, &ctx.controle,
                         garde(ctx, [c] { ouvreInfosRapides(*c); }));
    // While the panel is shown, it follows the selected plot.
    QObject::connect(s.Map1, &carto::MapView::selectionChanged, &ctx.controle, garde(ctx, [c] {
                         if (!c->s.PInfos->isHidden())
                             appelle(c->crochets.infosTerrainSelectionne);
                     }));
}

} // namespace veldra
