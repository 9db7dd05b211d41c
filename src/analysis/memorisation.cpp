#include "analysis/memorisation.h"

#include "analysis/situe_tombes.h"
#include "carto/model/layer.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/garde.h"
#include "context/sablier.h"
#include "recordset/field_spec.h"

namespace veldra {

void EnregistreMemorisation(Contexte& ctx) {
    const Sablier sablier;
    const RecordsetPtr rs = recordset::fromFieldSpec(QString::fromLatin1(kSpecMemorisation));
    const qsizetype idgcf = rs->fieldIndex(u"IdGCF");
    carto::Layer* tombes = ctx.v.Calque_Tombe;
    const carto::Features choisis = ctx.v.ObjSel;
    if (tombes && !choisis.isEmpty() && estCalque(choisis.layer(), tombes)) {
        const carto::ReadAccess lecture(*tombes);
        tombes->setKeyField(QStringLiteral("IDGCF"));
        for (const carto::Feature& t : choisis) {
            rs->addNew();
            rs->setValue(idgcf, t.attribute(u"IDGCF"));
            rs->update();
        }
    }
    ctx.etat.memorisation = rs;
    ctx.etat.nbMemorises = rs->recordCount();
}

void AfficheMemorisation(Contexte& ctx) {
    const RecordsetPtr& rs = ctx.etat.memorisation;
    if (ctx.etat.nbMemorises <= 0 || !rs) {
        ctx.prompter().message(QStringLiteral("Aucun élément n'a été mémorisé !"), boutons::Ok,
                               QString());
        return;
    }
    QString liste;
    const RecordsetPtr parcours = rs->clone();
    for (; !parcours->eof(); parcours->moveNext())
        liste += parcours->value(u"idgcf").toString() + u'@';
    SitueTombes(ctx, liste, true);
}

RecordsetPtr GetEltsMemorises(Contexte& ctx) {
    if (!ctx.etat.memorisation) {
        ctx.prompter().message(QStringLiteral("Aucun élément mémorisé !"), boutons::Ok, QString());
        return nullptr;
    }
    // Rows of its own: what the host writes in its copy never reaches the control's set.
    const RecordsetPtr copie = recordset::fromFieldSpec(QString::fromLatin1(kSpecMemorisation));
    const RecordsetPtr lu = ctx.etat.memorisation->clone();
    for (; !lu->eof(); lu->moveNext()) {
        copie->addNew();
        copie->setValue(0, lu->value(0));
        copie->update();
    }
    if (copie->recordCount() > 0)
        copie->moveFirst();
    return copie;
}

qint32 GetNbEltsMemorises(const Contexte& ctx) {
    return ctx.etat.nbMemorises;
}

void connecteMemorisation(Contexte& ctx) {
    Contexte* c = &ctx;
    QObject::connect(ctx.s.Btn_VoirMemorisation, &QPushButton::clicked, &ctx.controle,
                     garde(ctx, [c] { AfficheMemorisation(*c); }));
}

} // namespace veldra
