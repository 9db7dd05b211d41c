#include "themes/liens_photos.h"

#include "base/erreur.h"
#include "base/teste_fichier.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/jauge.h"
#include "context/sablier.h"
#include "recordset/field_spec.h"
#include "themes/ecriture_lien.h"
#include "themes/fimage.h"

namespace veldra {

namespace {

void dit(Contexte& ctx, const QString& texte) {
    ctx.prompter().message(texte, boutons::Ok, QString());
}

// AddPhoto and DelPhoto: the plots of the key, those that do not hold the path already.
bool ecritParCle(Contexte& ctx, const QString& sIdGCF, const QString& chemin,
                 const QString& titre) {
    const Sablier sablier;
    try {
        carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
        tombes.setKeyField(QStringLiteral("IDGCF"));
        const bool efface = chemin == QLatin1String(" ");
        std::vector<qint64> fids;
        for (const carto::Feature& t : tombes.searchEqual(u"IDGCF", sIdGCF)) {
            const QVariant avant = t.attribute(u"Photo");
            const bool inchange = efface ? sansPhoto(avant) : avant.toString() == chemin;
            if (!inchange)
                fids.push_back(t.fid());
        }
        ecritLien(ctx, tombes, fids, chemin);
        if (!fids.empty())
            ctx.s.Historique->clear();
        return true;
    } catch (const Erreur& e) {
        ctx.prompter().message(texteErreur(e, QStringLiteral(" :")), boutons::Ok, titre);
        return false;
    }
}

} // namespace

bool AddPhoto(Contexte& ctx, const QString& sIdGCF, const QString& sName) {
    return ecritParCle(ctx, sIdGCF, sName, QStringLiteral("AddPhoto"));
}

bool DelPhoto(Contexte& ctx, const QString& sIdGCF) {
    return ecritParCle(ctx, sIdGCF, QStringLiteral(" "), QStringLiteral("DelPhoto"));
}

QString CheminPhoto(Contexte& ctx, const QString& sID, bool Ouvrir) {
    carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
    QString chemin;
    int n = 0;
    qint64 trouve = -1;
    {
        const carto::ReadAccess lecture(tombes);
        for (const carto::Feature& t : tombes.searchEqual(u"CLETOMBE", sID)) {
            chemin = t.attribute(u"Photo").toString();
            trouve = t.fid();
            ++n;
        }
    }
    if (n == 0)
        dit(ctx, QStringLiteral("Le numéro ") + sID +
                     QStringLiteral(" ne correspond à aucune concession"));
    else if (n >= 2)
        dit(ctx, QStringLiteral("Le numéro ") + sID +
                     QStringLiteral(" correspond à plusieurs concessions !"));
    if (n != 1)
        chemin.clear();
    if (Ouvrir) {
        // The viewer works on the plot found, not on whatever the map has selected.
        FImage visionneuse(ctx, n == 1 ? std::optional<qint64>(trouve) : std::nullopt);
        visionneuse.ChargeImage(chemin);
        ctx.montreModal(visionneuse);
    }
    return chemin;
}

RecordsetPtr GetPhotos(Contexte& ctx) {
    const Sablier sablier;
    try {
        RecordsetPtr rs = recordset::fromFieldSpec(u"IdGCF N,IdMapInfo N,Photo C(250)");
        const qsizetype idgcf = rs->fieldIndex(u"IdGCF"), idmapinfo = rs->fieldIndex(u"IdMapInfo"),
                        photo = rs->fieldIndex(u"Photo");
        carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
        const qint32 total = tombes.featureCount();
        JaugeParam(ctx, 0, total, QStringLiteral("Collecte des données photographiques"),
                   QStringLiteral("Analyse"));
        const FinDeJauge fin(ctx, total != 0);
        {
            const carto::ReadAccess lecture(tombes);
            tombes.forEachFeature([&](const carto::Feature& t) {
                if (t.kind() == carto::FeatureKind::Region) {
                    const QVariant valeur = t.attribute(u"Photo");
                    if (!sansPhoto(valeur)) {
                        rs->addNew();
                        rs->setValue(photo, valeur);
                        rs->setValue(idgcf, t.attribute(u"IDGCF"));
                        rs->setValue(idmapinfo, t.fid());
                        rs->update();
                    }
                }
                JaugePlus(ctx);
            });
        }
        RecordsetPtr copie = rs->clone();
        rs->close();
        return copie;
    } catch (const Erreur& e) {
        ctx.prompter().message(texteErreur(e, QStringLiteral(" :")), boutons::Ok,
                               QStringLiteral("GetPhotos"));
        return nullptr;
    }
}

void Btn_Visu_Click(Contexte& ctx) {
    try {
        carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
        if (tombes.selection().isEmpty())
            throw Erreur(err::ObjetInconnu,
                         QStringLiteral("Aucune concession n'est sélectionnée."));
        const carto::Feature premier = tombes.selection().at(0);
        FImage visionneuse(ctx, premier.fid());
        tombes.setKeyField(QStringLiteral("Photo"));
        const QString valeur = premier.keyValue().toString();
        if (!valeur.trimmed().isEmpty() && TesteFichier(valeur, ctx.dossierControle) == 1) {
            dit(ctx, QStringLiteral("Le fichier qui était lié à cette concession a été déplacé "
                                    "ou supprimé !"));
            visionneuse.supprimeLien(false);
            visionneuse.ChargeImage(QString());
        } else {
            visionneuse.ChargeImage(valeur);
        }
        ctx.montreModal(visionneuse);
    } catch (const Erreur& e) {
        ctx.prompter().message(e.description(), boutons::Ok, QStringLiteral("Btn_Visu_Click"));
    }
}

} // namespace veldra
