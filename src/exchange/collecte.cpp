#include "exchange/collecte.h"

#include "base/erreur.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/garde.h"
#include "context/jauge.h"
#include "context/sablier.h"
#include "recordset/field_spec.h"

#include <cmath>
#include <iterator>

namespace veldra {

namespace {

using Lecture = carto::ReadAccess;

class Collecte {
public:
    Collecte(Contexte& ctx, bool jauge) : ctx_(ctx), jauge_(jauge), lieux_(ctx) {
        rs_ = recordset::fromFieldSpec(QString::fromLatin1(kSpecCollecte));
        for (const char* nom : {"Section", "Allee", "Num", "IdGCF", "IdMapInfo", "Aire", "Longueur",
                                "Largeur", "Nom"})
            colonnes_.push_back(rs_->fieldIndex(QString::fromLatin1(nom)));
    }

    // One record; `section` and `allee` as given when not null.
    void ajoute(const carto::Feature& t, const QString* section, const QString* allee,
                const QVariant* idgcf) {
        double d1 = 0, d2 = 0;
        const carto::Shape& parts = t.parts();
        if (!parts.empty() && parts.front().size() >= 3) {
            const carto::PartView r = parts.front();
            d1 = DistancePoints(r[1], r[0]);
            d2 = DistancePoints(r[2], r[1]);
            if (d2 > d1)
                std::swap(d1, d2);
        }
        if (t.layer() != calque_) {
            calque_ = t.layer();
            for (size_t i = 0; i < std::size(kAttributs); ++i)
                attributs_[i] = calque_ ? calque_->fieldIndex(kAttributs[i]) : -1;
        }
        const carto::Point centre = section && allee ? carto::Point{} : t.centre();
        rs_->addNew();
        rs_->setText(colonnes_[0], section ? *section : lieux_.section(centre));
        rs_->setText(colonnes_[1], allee ? *allee : lieux_.allee(centre));
        rs_->setValue(colonnes_[2], attribut(t, 0));
        rs_->setValue(colonnes_[3], idgcf ? *idgcf : attribut(t, 1));
        rs_->setNumber(colonnes_[4], double(t.fid()));
        rs_->setNumber(colonnes_[5], t.area());
        rs_->setNumber(colonnes_[6], tronque5(d1));
        rs_->setNumber(colonnes_[7], tronque5(d2));
        rs_->setValue(colonnes_[8], attribut(t, 2));
        rs_->update();
    }

    // Room for every plot of a whole-layer collection.
    void prevoit(qsizetype records) { rs_->reserve(records); }

    void pas() {
        if (jauge_)
            JaugePlus(ctx_);
    }

    RecordsetPtr resultat() {
        RecordsetPtr copie = rs_->clone();
        rs_->close();
        return copie;
    }

private:
    static constexpr QStringView kAttributs[] = {u"Numero", u"IdGCF", u"Nom"};

    // By the column index found once per layer; by name (and its error) when absent.
    QVariant attribut(const carto::Feature& t, size_t i) const {
        return attributs_[i] >= 0 ? t.attributeAt(attributs_[i]) : t.attribute(kAttributs[i]);
    }

    Contexte& ctx_;
    bool jauge_;
    LieuxConnus lieux_;
    RecordsetPtr rs_;
    std::vector<qsizetype> colonnes_;
    const carto::Layer* calque_ = nullptr;
    qsizetype attributs_[3] = {-1, -1, -1};
};

bool estRegion(const carto::Feature& f) {
    return f.kind() == carto::FeatureKind::Region;
}

// Ends a request early with a message: no record set.
RecordsetPtr refus(Contexte& ctx, const QString& message) {
    ctx.prompter().message(message, boutons::Ok, QString());
    return nullptr;
}

RecordsetPtr collecte(Contexte& ctx, const QString& sType, const QString& param,
                      const QString& param2, bool jauge) {
    VariablesPubliques& v = ctx.v;
    Collecte c(ctx, jauge);
    carto::Layer& tombes = calqueOuvert(v.Calque_Tombe, "Tombes");

    if (sType == QLatin1String("T")) {
        const Lecture lecture(tombes);
        const carto::Features trouves = tombes.searchEqual(u"IDGCF", param);
        if (trouves.isEmpty())
            return refus(ctx, QStringLiteral("Ce Terrain n'existe pas"));
        const carto::Feature t = trouves.at(0);
        if (estRegion(t)) {
            const QVariant id(param);
            c.ajoute(t, nullptr, nullptr, &id);
        }
        return c.resultat();
    }

    if (jauge) {
        qint32 min = 0, max = tombes.featureCount();
        JaugeParam(ctx, min, max, QStringLiteral("Collecte des données Graphiques"),
                   QStringLiteral("Synchronisation"));
    }
    const FinDeJauge fin(ctx, jauge);

    if (sType == QLatin1String("C") || sType == QLatin1String("CT")) {
        const bool tout = sType == QLatin1String("C");
        const Lecture lecture(tombes);
        const auto une = [&](const carto::Feature& t) {
            if (estRegion(t))
                c.ajoute(t, nullptr, nullptr, nullptr);
            if (tout)
                c.pas();
        };
        if (tout) {
            c.prevoit(tombes.featureCount());
            tombes.forEachFeature(une);
        } else
            for (const carto::Feature& t : tombes.selection())
                une(t);
    } else if (sType == QLatin1String("S")) {
        carto::Layer& sections = calqueOuvert(v.Calque_Sections, "Sections");
        carto::Feature section;
        {
            const Lecture lecture(sections);
            const carto::Features trouves = sections.searchEqual(u"Nom", param);
            if (trouves.isEmpty())
                return refus(ctx, QStringLiteral("Cette section n'existe pas"));
            section = trouves.at(0);
        }
        const Lecture lecture(tombes);
        for (const carto::Feature& t :
             tombes.searchWithinFeature(section, carto::searchmode::CentreWithin)) {
            const QString allee = AlleeDuTerrain(ctx, t);
            c.ajoute(t, &param, &allee, nullptr);
            c.pas();
        }
    } else if (sType == QLatin1String("A")) {
        carto::Layer& allees = calqueOuvert(v.Calque_Allees, "Allées");
        carto::Feature gardee;
        {
            const Lecture lecture(allees);
            const carto::Features trouves = allees.searchEqual(u"Nom", param2);
            if (trouves.isEmpty())
                return refus(ctx, QStringLiteral("Cette allée n'existe pas"));
            for (const carto::Feature& a : trouves)
                if (SectionDuTerrain(ctx, a) == param)
                    gardee = a;
        }
        if (!gardee.isValid())
            throw Erreur(err::ObjetInconnu,
                         QStringLiteral("L'allée « %1 » n'est pas dans la section « %2 ».")
                             .arg(param2, param));
        const Lecture lecture(tombes);
        for (const carto::Feature& t :
             tombes.searchWithinFeature(gardee, carto::searchmode::CentreWithin)) {
            c.ajoute(t, &param, &param2, nullptr);
            c.pas();
        }
    }
    return c.resultat();
}

// A collection of the selection, handed to the host as "U".
void synchroSelection(Contexte& ctx) {
    RecordsetPtr rs = GetInfo(ctx, QStringLiteral("CT"), QString(), QString(), false);
    QString type = QStringLiteral("U");
    if (ctx.evenements.Synchro)
        ctx.evenements.Synchro(rs, type);
}

} // namespace

double tronque5(double d) {
    return std::floor(d * 100000) / 100000;
}

RecordsetPtr GetInfo(Contexte& ctx, const QString& sType, const QString& param,
                     const QString& param2, bool jauge) {
    if (param.isEmpty() && !sType.startsWith(u'C')) {
        ctx.prompter().message(QStringLiteral("Il manque un paramètre dans l'appel de 'GetInfo'"),
                               boutons::Ok, QString());
        return nullptr;
    }
    const Sablier sablier;
    try {
        return collecte(ctx, sType, param, param2, jauge);
    } catch (const Erreur& e) {
        ctx.prompter().message(texteErreur(e.numero(), e.description(), QStringLiteral(" :")),
                               boutons::Ok, QStringLiteral("GetInfo"));
        return nullptr;
    }
}

void InfosTerrainSelectionne(Contexte& ctx) {
    carto::Layer* tombes = ctx.v.Calque_Tombe;
    if (!tombes || tombes->selection().count() != 1)
        return;
    synchroSelection(ctx);
    const carto::Feature t = tombes->selection().at(0);
    const QString numero = t.attribute(u"NUMERO").toString();
    ctx.s.L_Tombes->setText(numero.isEmpty() ? QStringLiteral("???") : numero);
    const QString section = SectionDuTerrain(ctx, t);
    const QString allee = AlleeDuTerrain(ctx, t);
    ctx.s.L_Section->setText(section == QLatin1String("-1") ? QStringLiteral("Indéterminée")
                                                            : section);
    ctx.s.L_Allee->setText(allee == QLatin1String("-1") ? QString() : allee);
    QString id = t.attribute(u"IDGCF").toString();
    if (ctx.evenements.InfoTombes)
        ctx.evenements.InfoTombes(id);
}

void OuvreFicheTombes(Contexte& ctx) {
    carto::Layer* tombes = ctx.v.Calque_Tombe;
    if (!tombes)
        return;
    synchroSelection(ctx);
    QString liste;
    int n = 0;
    {
        const Lecture lecture(*tombes);
        for (const carto::Feature& t : tombes->selection()) {
            liste += t.attribute(u"IDGCF").toString() + u'@';
            ++n;
        }
    }
    if (n == 0) {
        ctx.prompter().message(QStringLiteral("Aucune concession n'est sélectionnée !"),
                               boutons::Ok, QString());
        return;
    }
    if (ctx.evenements.FicheTombe)
        ctx.evenements.FicheTombe(liste);
}

void AffecteUneConcession(Contexte& ctx) {
    carto::Layer* tombes = ctx.v.Calque_Tombe;
    if (!tombes || tombes->selection().isEmpty()) {
        ctx.prompter().message(QStringLiteral("Aucune concession n'est sélectionnée !"),
                               boutons::Ok, QString());
        return;
    }
    synchroSelection(ctx);
    tombes->setKeyField(QStringLiteral("IDGCF"));
    QString id = tombes->selection().at(0).keyValue().toString();
    if (ctx.evenements.AffecterUneConcession)
        ctx.evenements.AffecterUneConcession(id);
}

void synchronise(Contexte& ctx) {
    RecordsetPtr rs = GetInfo(ctx, QStringLiteral("C"), QString(), QString(), true);
    QString type = QStringLiteral("A");
    if (ctx.evenements.Synchro)
        ctx.evenements.Synchro(rs, type);
}

void connecteCollecte(Contexte& ctx) {
    Contexte* c = &ctx;
    Surface& s = ctx.s;
    ctx.crochets.ouvreFicheTombes = [c] { OuvreFicheTombes(*c); };
    ctx.crochets.affecteConcession = [c] { AffecteUneConcession(*c); };
    QObject::connect(s.Btn_Synchro, &QPushButton::clicked, &ctx.controle,
                     garde(ctx, [c] { synchronise(*c); }));
    for (QAbstractButton* b :
         {static_cast<QAbstractButton*>(s.HLBBttn2), static_cast<QAbstractButton*>(s.HLBBttn5)})
        QObject::connect(b, &QAbstractButton::clicked, &ctx.controle,
                         garde(ctx, [c] { OuvreFicheTombes(*c); }));
}

} // namespace veldra
