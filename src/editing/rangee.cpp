#include "editing/rangee.h"

#include "base/erreur.h"
#include "carto/geometry/geometry.h"
#include "carto/geometry/prepared.h"
#include "carto/model/edit_commands.h"
#include "carto/model/layer.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"
#include "context/calques.h"
#include "context/contexte.h"
#include "context/nombre_tombes.h"
#include "context/sablier.h"
#include "editing/dialogue_rangee.h"
#include "editing/sauve.h"
#include "editing/selection.h"

#include <QLineEdit>
#include <QSet>
#include <cmath>
#include <limits>

namespace veldra {

namespace {

constexpr int kNombreMax = 1000;
// Below this, two plots side by side only touch.
constexpr double kRecouvrementMinimal = 1e-6;

[[noreturn]] void refuse(const QString& pourquoi) {
    throw Erreur(err::ArgumentsIncorrects, pourquoi);
}

} // namespace

QString numeroDeRangee(const DemandeRangee& d, int i) {
    return d.prefixe + QString::number(d.premier + qint64(i) * d.pas) + d.suffixe;
}

BilanRangee creeRangee(Contexte& ctx, const carto::Feature& modele, const DemandeRangee& d) {
    carto::Layer& tombes = calqueOuvert(ctx.v.Calque_Tombe, "Tombes");
    if (modele.kind() != carto::FeatureKind::Region || modele.numParts() != 1 ||
        modele.parts()[0].size() != 5)
        refuse(QStringLiteral("L'emplacement modèle doit avoir quatre coins."));
    if (d.nombre < 1 || d.nombre > kNombreMax)
        refuse(QStringLiteral("Le nombre d'emplacements doit être compris entre 1 et %1.")
                   .arg(kNombreMax));
    const carto::Rect plan = tombes.bounds().united(modele.bounds());
    const double etendue = std::max(plan.width(), plan.height());
    if (!(d.ecart >= 0) || d.ecart > etendue)
        refuse(
            QStringLiteral("L'écart doit être compris entre 0 et %1 m.").arg(std::floor(etendue)));
    const double dernier = double(d.premier) + double(d.nombre - 1) * double(d.pas);
    if (d.premier < 0 || !(std::fabs(dernier) < 1e15) || dernier < 0)
        refuse(QStringLiteral("Les numéros de la rangée ne peuvent pas être écrits."));
    const qsizetype colonne = tombes.fieldIndex(u"Numero");
    const int largeur = colonne < 0 ? 0 : tombes.fields()[size_t(colonne)].width;
    if (largeur > 0 &&
        (numeroDeRangee(d, 0).size() > largeur || numeroDeRangee(d, d.nombre - 1).size() > largeur))
        refuse(QStringLiteral("Un numéro de la rangée dépasse %1 caractères.").arg(largeur));

    // The step from one plot to the next: a side's direction, its length and the gap.
    const carto::PartView r = modele.parts()[0];
    const carto::Point b = d.enTravers ? r[2] : r[1];
    const carto::Point o = d.enTravers ? r[1] : r[0];
    const double cote = carto::distance(o, b);
    if (!(cote > 0))
        refuse(QStringLiteral("L'emplacement modèle doit avoir quatre coins."));
    const double k = (cote + d.ecart) / cote;
    const carto::Point pas{(b.x - o.x) * k, (b.y - o.y) * k};

    // The numbers of the section, to refuse those already borne.
    const carto::Feature section = ctx.v.Calque_Sections
                                       ? ctx.v.Calque_Sections->firstAtPoint(modele.centre())
                                       : carto::Feature();
    QSet<QString> pris;
    const auto noteNumero = [&](const carto::Feature& t) {
        pris.insert(t.attribute(u"Numero").toString());
    };
    if (section.isValid())
        for (const carto::Feature& t :
             tombes.searchWithinFeature(section, carto::searchmode::CentreWithin))
            noteNumero(t);
    else
        tombes.forEachFeature(noteNumero);
    QStringList doubles;
    for (int i = 0; i < d.nombre && doubles.size() < 5; ++i)
        if (pris.contains(numeroDeRangee(d, i)))
            doubles << numeroDeRangee(d, i);
    if (!doubles.isEmpty())
        refuse(QStringLiteral("Ces numéros existent déjà dans la section : %1. Rien n'a été créé.")
                   .arg(doubles.join(QStringLiteral(", "))));

    // The plots that fit: inside the section, on no other plot.
    const Sablier sablier;
    std::optional<carto::PreparedGeometry> dansSection;
    if (section.isValid())
        dansSection.emplace(section.geometry());
    BilanRangee bilan;
    std::vector<carto::Feature> nouveaux;
    std::vector<QString> numeros;
    const double angle = modele.attribute(u"AngleNumero").toDouble();
    for (int i = 1; i <= d.nombre; ++i) {
        carto::Part coins = r;
        for (carto::Point& p : coins)
            p = {p.x + pas.x * i, p.y + pas.y * i};
        carto::Feature t = carto::Feature::region({coins}, modele.style());
        const carto::Geometry g = t.geometry();
        if (dansSection && !dansSection->covers(g)) {
            ++bilan.horsSection;
            continue;
        }
        bool recouvre = false;
        for (const carto::Feature& autre :
             tombes.searchWithinRectangle(g.bounds(), carto::searchmode::PartlyWithin))
            if (tombes.prepared(autre.fid()).intersects(g) &&
                carto::intersection(autre.geometry(), g).area() > kRecouvrementMinimal) {
                recouvre = true;
                break;
            }
        if (recouvre) {
            ++bilan.surUnAutre;
            continue;
        }
        nouveaux.push_back(std::move(t));
        numeros.push_back(numeroDeRangee(d, i - 1));
    }
    if (nouveaux.empty())
        return bilan;

    carto::UpdateAccess acces(ctx.carte(),
                              carto::UndoStep{QStringLiteral("Créer une rangée d'emplacements")});
    auto ajout = std::make_unique<carto::AddFeatures>(tombes, std::move(nouveaux),
                                                      QStringLiteral("Créer une rangée"));
    const carto::AddFeatures::Added ajoutes = ajout->added();
    ctx.carte().execute(std::move(ajout));
    // Each plot numbered and labelled as Sauve does it, turned like the model's number.
    std::vector<carto::Feature> angles;
    for (carto::Feature t : *ajoutes) {
        t.setAttribute(u"AngleNumero", angle);
        angles.push_back(std::move(t));
    }
    ctx.carte().execute(std::make_unique<carto::ReplaceFeatures>(tombes, std::move(angles)));
    carto::Layer* courant = ctx.v.Calque_Courant;
    ctx.v.Calque_Courant = &tombes;
    const QString saisie = ctx.s.SaisieNum->text();
    for (size_t i = 0; i < ajoutes->size(); ++i) {
        ctx.s.SaisieNum->setText(numeros[i]);
        Sauve(ctx, tombes.feature((*ajoutes)[i].fid()));
    }
    ctx.s.SaisieNum->setText(saisie);
    ctx.v.Calque_Courant = courant;
    acces.commit();
    bilan.crees = int(ajoutes->size());
    afficheNombreTombes(ctx);
    return bilan;
}

void commandeRangee(Contexte& ctx) {
    const std::vector<carto::Feature> choisis = selectionCourante(ctx);
    if (choisis.size() != 1 || !estCalque(ctx.v.Calque_Courant, ctx.v.Calque_Tombe)) {
        ctx.prompter().message(
            QStringLiteral("Sélectionnez un seul emplacement : il servira de modèle."), boutons::Ok,
            QString());
        return;
    }
    Dialogue_Rangee dialogue(&ctx.controle);
    if (ctx.montreModal(dialogue) != QDialog::Accepted)
        return;
    const BilanRangee b = creeRangee(ctx, choisis.front(), dialogue.demande());
    QString texte = QStringLiteral("%1 emplacement(s) créé(s).").arg(b.crees);
    if (b.horsSection + b.surUnAutre > 0) {
        QStringList pourquoi;
        if (b.horsSection > 0)
            pourquoi << QStringLiteral("%1 hors de la section").arg(b.horsSection);
        if (b.surUnAutre > 0)
            pourquoi << QStringLiteral("%1 sur un emplacement existant").arg(b.surUnAutre);
        texte += QStringLiteral(" %1 non créé(s) : %2.")
                     .arg(b.horsSection + b.surUnAutre)
                     .arg(pourquoi.join(QStringLiteral(", ")));
    }
    ctx.prompter().message(texte, boutons::Ok, QStringLiteral("Rangée d'emplacements"));
}

} // namespace veldra
