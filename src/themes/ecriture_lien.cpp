#include "themes/ecriture_lien.h"

#include "base/erreur.h"
#include "carto/model/edit_commands.h"
#include "carto/model/map.h"
#include "context/contexte.h"

namespace veldra {

bool sansPhoto(const QVariant& photo) {
    return !photo.isValid() || photo.isNull() || photo.toString().trimmed().isEmpty();
}

QString drapeauPhoto(const QVariant& photo) {
    return sansPhoto(photo) ? QStringLiteral("T") : QStringLiteral("F");
}

void ecritLien(Contexte& ctx, carto::Layer& tombes, const std::vector<qint64>& fids,
               const QString& chemin, const std::optional<carto::UndoStep>& pas) {
    const qsizetype colonne = tombes.fieldIndex(u"Photo");
    if (colonne < 0)
        throw Erreur(
            err::ChampInconnu,
            QStringLiteral("La couche « %1 » n'a pas de colonne « Photo ».").arg(tombes.name()));
    // Counted as the column counts them: characters, not UTF-16 units.
    const int largeur = tombes.fields()[size_t(colonne)].width;
    const qsizetype caracteres = chemin.toUcs4().size();
    if (largeur > 0 && caracteres > largeur)
        throw Erreur(err::TexteTropLong,
                     QStringLiteral("Le chemin de la photo compte %1 caractères ; le plan en "
                                    "garde %2 au plus.")
                         .arg(caracteres)
                         .arg(largeur));
    if (fids.empty())
        return;
    const bool drapeau = tombes.fieldIndex(u"Booleen") >= 0;
    std::vector<carto::Feature> apres;
    apres.reserve(fids.size());
    for (const qint64 fid : fids) {
        carto::Feature t = tombes.feature(fid);
        t.setAttribute(u"Photo", chemin);
        if (drapeau)
            t.setAttribute(u"Booleen", drapeauPhoto(chemin));
        apres.push_back(std::move(t));
    }
    carto::Map& carte = ctx.carte();
    std::optional<carto::UpdateAccess> acces;
    if (pas)
        acces.emplace(carte, *pas);
    else
        acces.emplace(carte);
    carte.execute(std::make_unique<carto::ReplaceFeatures>(tombes, std::move(apres),
                                                           QStringLiteral("Photo")));
    acces->commit();
}

} // namespace veldra
