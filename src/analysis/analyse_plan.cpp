#include "analysis/analyse_plan.h"

#include "base/erreur.h"
#include "carto/geometry/prepared.h"
#include "carto/model/layer.h"
#include "carto/model/update_access.h"
#include "context/contexte.h"
#include "context/lieux.h"
#include "context/jauge.h"

#include <QHash>
#include <QSet>
#include <optional>

namespace veldra {

namespace {

const QString kTitreJauge = QStringLiteral("Analyse du plan");
const QString kAucun = QStringLiteral("-1");

// What the faults panel calls a plot: its number and where it lies.
QString designeTerrain(const QString& numero, const QString& section, const QString& allee) {
    QString nom = numero.isEmpty() ? QStringLiteral("Terrain sans numéro")
                                   : QStringLiteral("Terrain n° %1").arg(numero);
    QStringList lieu;
    if (section != kAucun)
        lieu << (section.isEmpty() ? QStringLiteral("section sans nom")
                                   : QStringLiteral("section %1").arg(section));
    if (allee != kAucun)
        lieu << (allee.isEmpty() ? QStringLiteral("allée sans nom") : allee);
    if (!lieu.isEmpty())
        nom += QStringLiteral(" (%1)").arg(lieu.join(QStringLiteral(", ")));
    return nom;
}

// The enclosure once for the whole analysis; none when the plan has no enclosure feature.
std::optional<carto::PreparedGeometry> enceintePreparee(const carto::Layer* enceinte) {
    if (!enceinte || enceinte->featureCount() == 0)
        return std::nullopt;
    return carto::PreparedGeometry(enceinte->unionAll().clone());
}

// Mode 2 then mode 1 of the enclosure test, as the passes count them.
struct Position {
    bool inclus = true;
    bool touche = true;
};

Position position(const std::optional<carto::PreparedGeometry>& enceinte,
                  const carto::Geometry& g) {
    Position p;
    if (!enceinte)
        return p;
    p.inclus = enceinte->contains(g);
    p.touche = p.inclus || enceinte->intersects(g);
    return p;
}

// One pass: a read bracket on the layer, the gauge when asked, every feature through
// `une`. A feature that fails is told once per pass and the pass goes on. True when the
// gauge was left open (`fermeJauge` false).
template <typename F>
bool passe(Contexte& ctx, const OptionsAnalyse& o, carto::Layer* calque, const char* nom,
           const QString& message, bool fermeJauge, F&& une) {
    if (!calque)
        throw Erreur(
            err::CoucheInconnue,
            QStringLiteral("La couche « %1 » n'est pas ouverte.").arg(QString::fromUtf8(nom)));
    const carto::ReadAccess lecture(*calque);
    const bool jauge = o.jauge && calque->featureCount() > 0;
    if (jauge)
        JaugeParam(ctx, 0, calque->featureCount(), message, kTitreJauge);
    const FinDeJauge fin(ctx, jauge && fermeJauge);
    bool signale = false;
    calque->forEachFeature([&](const carto::Feature& f) {
        try {
            une(f);
        } catch (const Erreur& e) {
            if (!signale && o.signale)
                o.signale(e);
            signale = true;
        }
        if (jauge)
            JaugePlus(ctx);
    });
    return jauge && !fermeJauge;
}

class Analyse {
public:
    Analyse(Contexte& ctx, const OptionsAnalyse& o, std::optional<carto::PreparedGeometry> enceinte)
        : ctx_(ctx), o_(o), enceinte_(std::move(enceinte)) {}

    void terrains() {
        carto::Layer* tombes = ctx_.v.Calque_Tombe;
        passe(ctx_, o_, tombes, "Tombes", QStringLiteral("Analyse des concessions"), true,
              [this](const carto::Feature& t) { terrain(t); });
        if (o_.detaillee)
            numerosRepetes();
    }

    // True when the alleys' gauge is left open.
    bool sectionsEtAllees(bool sections) {
        VariablesPubliques& v = ctx_.v;
        carto::Layer* calque = sections ? v.Calque_Sections : v.Calque_Allees;
        return passe(ctx_, o_, calque, sections ? "Sections" : "Allées",
                     sections ? QStringLiteral("Analyse des sections")
                              : QStringLiteral("Analyse des allées"),
                     sections, [this, sections](const carto::Feature& f) { zone(f, sections); });
    }

    Constats resultat() { return std::move(c_); }

private:
    void note(GenreAnomalie genre, const carto::Feature& f, const QString& libelle) {
        if (o_.detaillee)
            c_.anomalies.push_back({genre, f.layer()->name(), f.fid(), libelle});
    }

    void terrain(const carto::Feature& t) {
        const QString numero = t.attribute(u"Numero").toString();
        const QString section = SectionDuTerrain(ctx_, t);
        const QString allee = AlleeDuTerrain(ctx_, t);
        const QString nom = designeTerrain(numero, section, allee);
        if (numero.isEmpty()) {
            ++c_.terrainsSansNumero;
            note(GenreAnomalie::TerrainSansNumero, t, nom + QStringLiteral(" : numéro manquant"));
        }
        if (section == kAucun) {
            ++c_.terrainsSansSection;
            note(GenreAnomalie::TerrainSansSection, t,
                 nom + QStringLiteral(" : dans aucune section"));
        }
        if (allee == kAucun) {
            ++c_.terrainsSansAllee;
            note(GenreAnomalie::TerrainSansAllee, t, nom + QStringLiteral(" : dans aucune allée"));
        }
        const carto::Geometry g = t.geometry();
        const Position p = position(enceinte_, g);
        if (!p.inclus) {
            ++c_.terrainsNonInclus;
            note(GenreAnomalie::TerrainNonInclus, t,
                 nom + QStringLiteral(" : pas entièrement dans l'enceinte"));
        }
        if (!p.touche) {
            ++c_.terrainsExterieurs;
            note(GenreAnomalie::TerrainExterieur, t, nom + QStringLiteral(" : hors de l'enceinte"));
        }
        if (!o_.detaillee)
            return;
        noms_.insert(t.fid(), nom);
        if (!numero.isEmpty())
            parLieu_[section + QChar(0x1F) + allee + QChar(0x1F) + numero].push_back(t.fid());
        chevauchements(t, g);
    }

    // Each pair once: with the plots of higher FID whose boxes meet this one's.
    void chevauchements(const carto::Feature& t, const carto::Geometry& g) {
        if (t.kind() != carto::FeatureKind::Region)
            return;
        const carto::Layer& tombes = *t.layer();
        for (const auto& [fid, donnees] : tombes.dataInBox(t.bounds())) {
            if (fid <= t.fid() || donnees->kind != carto::FeatureKind::Region)
                continue;
            const carto::Geometry autre = carto::geometryOf(*donnees);
            if (carto::intersection(g, autre).area() <= kChevauchementMinimal)
                continue;
            paires_.emplace_back(t.fid(), fid);
            chevauchants_.insert(t.fid());
            chevauchants_.insert(fid);
        }
    }

    void numerosRepetes() {
        carto::Layer& tombes = *ctx_.v.Calque_Tombe;
        c_.terrainsChevauchants = int(chevauchants_.size());
        for (const auto& [a, b] : paires_) {
            const auto autre = [this, &tombes](qint64 ici, qint64 la) {
                const QString numero = tombes.feature(la).attribute(u"Numero").toString();
                note(GenreAnomalie::TerrainChevauchant, tombes.feature(ici),
                     noms_.value(ici) +
                         (numero.isEmpty()
                              ? QStringLiteral(" : chevauche un terrain sans numéro")
                              : QStringLiteral(" : chevauche le terrain n° %1").arg(numero)));
            };
            autre(a, b);
            autre(b, a);
        }
        for (const std::vector<qint64>& fids : std::as_const(parLieu_)) {
            if (fids.size() < 2)
                continue;
            c_.numerosRepetes += int(fids.size());
            for (const qint64 fid : fids)
                note(GenreAnomalie::NumeroRepete, tombes.feature(fid),
                     noms_.value(fid) + QStringLiteral(" : numéro porté par %1 terrains de "
                                                       "cette allée")
                                            .arg(fids.size()));
        }
    }

    void zone(const carto::Feature& f, bool section) {
        const QString nom = f.attribute(u"Nom").toString();
        QString designation;
        if (section)
            designation = nom.isEmpty() ? QStringLiteral("Section sans nom")
                                        : QStringLiteral("Section %1").arg(nom);
        else if (o_.detaillee) {
            const QString sa = SectionDuTerrain(ctx_, f);
            designation = (nom.isEmpty() ? QStringLiteral("Allée sans nom") : nom) +
                          (sa == kAucun ? QString() : QStringLiteral(" (section %1)").arg(sa));
        }
        if (nom.isEmpty()) {
            ++(section ? c_.sectionsSansNom : c_.alleesSansNom);
            note(section ? GenreAnomalie::SectionSansNom : GenreAnomalie::AlleeSansNom, f,
                 designation + QStringLiteral(" : nom manquant"));
        }
        const Position p = position(enceinte_, f.geometry());
        if (!p.touche) {
            ++(section ? c_.sectionsExterieures : c_.alleesExterieures);
            note(section ? GenreAnomalie::SectionExterieure : GenreAnomalie::AlleeExterieure, f,
                 designation + QStringLiteral(" : hors de l'enceinte"));
        }
        if (!p.inclus) {
            ++(section ? c_.sectionsNonIncluses : c_.alleesNonIncluses);
            note(section ? GenreAnomalie::SectionNonIncluse : GenreAnomalie::AlleeNonIncluse, f,
                 designation + QStringLiteral(" : pas entièrement dans l'enceinte"));
        }
    }

    Contexte& ctx_;
    const OptionsAnalyse& o_;
    std::optional<carto::PreparedGeometry> enceinte_;
    Constats c_;
    // Detailed analysis: each plot's designation, plots by section, alley and number,
    // and the overlapping pairs.
    QHash<qint64, QString> noms_;
    QHash<QString, std::vector<qint64>> parLieu_;
    std::vector<std::pair<qint64, qint64>> paires_;
    QSet<qint64> chevauchants_;
};

// A step that fails is told and the analysis goes on with the next.
template <typename F> void etape(const OptionsAnalyse& o, F&& f) {
    try {
        f();
    } catch (const Erreur& e) {
        if (o.signale)
            o.signale(e);
    }
}

} // namespace

Constats analysePlan(Contexte& ctx, const OptionsAnalyse& options,
                     const std::function<void(const Constats&)>& ensuite) {
    // An enclosure that cannot be formed is told; the passes then run without it.
    std::optional<carto::PreparedGeometry> enceinte;
    etape(options, [&] { enceinte = enceintePreparee(ctx.v.Calque_Enceinte); });
    Analyse a(ctx, options, std::move(enceinte));
    etape(options, [&] { a.terrains(); });
    etape(options, [&] { a.sectionsEtAllees(true); });
    bool jaugeOuverte = false;
    etape(options, [&] { jaugeOuverte = a.sectionsEtAllees(false); });
    const FinDeJauge fin(ctx, jaugeOuverte);
    Constats c = a.resultat();
    if (ensuite)
        ensuite(c);
    return c;
}

bool DansEnceinte(Contexte& ctx, const carto::Feature& f, int mode) {
    carto::Layer* enceinte = ctx.v.Calque_Enceinte;
    if (!enceinte)
        throw Erreur(err::CoucheInconnue,
                     QStringLiteral("La couche « Enceinte » n'est pas ouverte."));
    return carto::intersectionTest(f.geometry(), enceinte->unionAll(), mode);
}

} // namespace veldra
