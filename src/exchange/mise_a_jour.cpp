#include "exchange/mise_a_jour.h"

#include "base/erreur.h"
#include "carto/model/edit_commands.h"
#include "carto/model/update_access.h"
#include "context/contexte.h"
#include "context/jauge.h"
#include "exchange/collecte.h"

#include <cmath>

namespace veldra {

namespace {

constexpr double kParallele = 1e-6;

struct Colonnes {
    qsizetype idmapinfo, idgcf, nom, longueur, largeur;

    explicit Colonnes(const recordset::Recordset& rs) {
        auto col = [&](const char* nom) {
            const qsizetype i = rs.fieldIndex(QString::fromLatin1(nom));
            if (i < 0)
                throw Erreur(err::ChampInconnu,
                             QStringLiteral("La colonne « %1 » manque au jeu d'enregistrements.")
                                 .arg(QString::fromLatin1(nom)));
            return i;
        };
        idmapinfo = col("idmapinfo");
        idgcf = col("idgcf");
        nom = col("Nom");
        longueur = col("Longueur");
        largeur = col("Largeur");
    }
};

double nombre(const QVariant& v, const char* colonne) {
    bool ok = false;
    const double d = v.toDouble(&ok);
    if (!ok || !std::isfinite(d))
        throw Erreur(err::TypeIncompatible,
                     QStringLiteral("La colonne « %1 » doit contenir un nombre.")
                         .arg(QString::fromLatin1(colonne)));
    return d;
}

int signe(double d) {
    return std::fabs(d) < kParallele ? 0 : (d > 0 ? 1 : -1);
}

// The plot redrawn at L1 along P1P2 and L2 along P2P3, P1 kept.
void redessine(carto::Feature& t, double l1, double l2) {
    if (!(l1 > 0) || !(l2 > 0))
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Longueur et largeur doivent être strictement positives."));
    carto::Parts parts = t.parts();
    carto::Part& r = parts.front();
    const carto::Point p1 = r[0], p2 = r[1], p3 = r[2];
    const double dx = p2.x - p1.x, dy = p2.y - p1.y;
    carto::Point u, n;
    if (signe(dx) == 0 || signe(dy) == 0) {
        // Along an axis: the second side's direction is the first's with X and Y exchanged.
        u = {double(signe(dx)), double(signe(dy))};
        n = {u.y, u.x};
    } else {
        // Oblique: the first side keeps its direction, the second is at right angles to it
        // on the side where the old P3 was.
        const double d = std::hypot(dx, dy);
        u = {dx / d, dy / d};
        n = {-u.y, u.x};
        if (n.x * (p3.x - p2.x) + n.y * (p3.y - p2.y) < 0)
            n = {-n.x, -n.y};
    }
    const carto::Point q2{p1.x + l1 * u.x, p1.y + l1 * u.y};
    r[1] = q2;
    r[2] = {q2.x + l2 * n.x, q2.y + l2 * n.y};
    r[3] = {p1.x + l2 * n.x, p1.y + l2 * n.y};
    t.setParts(std::move(parts));
}

// The new state of one plot, built before anything is written. When only the redraw
// fails, `redraw` holds its error and the attributes still go.
struct Modification {
    carto::Feature terrain;
    std::optional<Erreur> redessin;
};

Modification prepare(carto::Layer& tombes, const recordset::Recordset& rs, const Colonnes& c) {
    const QString id = rs.value(c.idmapinfo).toString().trimmed();
    carto::Feature t = tombes.featureByKey(id);
    t.setAttribute(u"IDGCF", rs.value(c.idgcf));
    t.setAttribute(u"Nom", rs.value(c.nom));
    Modification m{t, std::nullopt};

    const carto::Shape& parts = t.parts();
    if (parts.empty() || parts.front().size() < 4)
        throw Erreur(err::ObjetIncompatible,
                     QStringLiteral("L'emplacement %1 n'est pas un quadrilatère.").arg(id));
    const carto::PartView r = parts.front();
    double d1 = DistancePoints(r[1], r[0]);
    double d2 = DistancePoints(r[2], r[1]);
    const double longueur = nombre(rs.value(c.longueur), "Longueur");
    const double largeur = nombre(rs.value(c.largeur), "Largeur");
    double l1 = longueur, l2 = largeur;
    if (d2 > d1) {
        std::swap(l1, l2);
        std::swap(d1, d2);
    }
    if (longueur != tronque5(d1) || largeur != tronque5(d2)) {
        try {
            redessine(m.terrain, l1, l2);
        } catch (const Erreur& e) {
            m.terrain = t;
            m.redessin = e;
        }
    }
    return m;
}

} // namespace

void MAJ(Contexte& ctx, RecordsetPtr& rs, const QString& typeMaj) {
    if (!rs)
        throw Erreur(err::AppelIncorrect,
                     QStringLiteral("Aucun jeu d'enregistrements à intégrer."));
    const qint32 total = rs->recordCount();
    if (total == 0) {
        ctx.prompter().message(QStringLiteral("Aucun élément à mettre à jour"), boutons::Ok,
                               QString());
        return;
    }
    if (!ctx.v.Calque_Tombe)
        throw Erreur(err::CoucheInconnue,
                     QStringLiteral("La couche « Tombes » n'est pas ouverte."));
    carto::Layer& tombes = *ctx.v.Calque_Tombe;
    const bool jauge = typeMaj == QLatin1String("A");
    const Colonnes colonnes(*rs);
    if (jauge) {
        qint32 min = 0, max = total;
        JaugeParam(ctx, min, max, QStringLiteral("Intégration des données dans la carte"),
                   QStringLiteral("Synchronisation"));
    }
    const FinDeJauge fin(ctx, jauge);
    rs->moveFirst();
    // One bracket for the whole update: a failure that escapes it leaves the plan as it was.
    carto::UpdateAccess acces(ctx.carte());
    bool premier = true;
    while (!rs->eof()) {
        try {
            const Modification m = prepare(tombes, *rs, colonnes);
            if (premier && m.redessin)
                throw *m.redessin;
            ctx.carte().execute(std::make_unique<carto::ReplaceFeatures>(
                tombes, std::vector<carto::Feature>{m.terrain}, QStringLiteral("Mise à jour")));
        } catch (const Erreur&) {
            if (premier)
                throw;
            // Past the first record a failing record is skipped, and nothing of it kept.
        }
        try {
            JaugePlus(ctx);
        } catch (const Erreur&) {
            // Outside a whole-plan update the bar is hidden; it may be full already.
            if (premier && jauge)
                throw;
        }
        premier = false;
        rs->moveNext();
    }
    acces.commit();
    // The host's register has moved on: the user's earlier steps cannot be undone safely.
    ctx.s.Historique->clear();
    rs->close();
    rs = nullptr;
}

} // namespace veldra
