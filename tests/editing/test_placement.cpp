// Fitting drawn sections and alleys into the plan's hierarchy, and deletions: requested
// from the host for sections, alleys and plots, immediate for the other layers.
#include "carte_fixture.h"
#include "carto/geometry/geometry.h"
#include "carto/model/map.h"

#include <QTest>

using namespace veldra;

namespace {

struct Placement : Carte {
    Placement() {
        c->setAnnulation(true);
        edition();
    }
    // A rectangle drawn in the layer, named, and selected alone.
    carto::Feature dessine(carto::Layer& l, const carto::Rect& r, const QString& nom = {}) {
        carto::Feature f = l.addFeature(carto::Feature::region(
            {{{r.xmin, r.ymin}, {r.xmax, r.ymin}, {r.xmax, r.ymax}, {r.xmin, r.ymax}}}));
        if (!nom.isEmpty()) {
            f.setAttribute(u"Nom", nom);
            l.updateFeature(f);
        }
        choisit(l, {f.fid()});
        return l.feature(f.fid());
    }
    void choisit(carto::Layer& l, std::initializer_list<qint64> fids) {
        l.clearSelection();
        for (qint64 fid : fids)
            l.selectAdd(fid);
    }
    QString dernierMessage() const { return messages.empty() ? QString() : messages.back().texte; }
    carto::Feature parNom(const carto::Layer& l, const QString& nom) {
        const carto::Features trouves = l.searchEqual(u"Nom", nom);
        return trouves.isEmpty() ? carto::Feature() : trouves.at(0);
    }
    // The union of the layer's features other than `sauf`.
    carto::Geometry autres(const carto::Layer& l, qint64 sauf) {
        std::vector<carto::Geometry> gs;
        l.forEachFeature([&](const carto::Feature& f) {
            if (f.fid() != sauf)
                gs.push_back(f.geometry());
        });
        std::vector<const carto::Geometry*> refs;
        for (const auto& g : gs)
            refs.push_back(&g);
        return carto::unionOf(refs);
    }
    carto::Layer& sections() { return *c->Calque_Sections; }
    carto::Layer& allees() { return *c->Calque_Allees; }
};

double aireCommune(const carto::Geometry& a, const carto::Geometry& b) {
    return carto::intersection(a, b).area();
}

} // namespace

TEST(Ajustement, ASectionHalfOutsideIsCutAtTheEnclosureAndByItsNeighbours) {
    Placement f;
    f.calque(QStringLiteral("Sections"));
    const carto::Feature a = f.parNom(f.sections(), QStringLiteral("A"));
    const carto::Rect ra = a.bounds();
    const carto::Geometry enceinte = f.c->Calque_Enceinte->unionAll().clone();
    // From below the enclosure's bottom edge up into section A.
    const carto::Rect r{ra.xmin + 5, -10, ra.xmin + 25, ra.ymin + 8};
    const carto::Feature dessin = f.dessine(f.sections(), r, QStringLiteral("N"));
    const carto::Geometry voisines = f.autres(f.sections(), dessin.fid());
    const double attendue =
        carto::difference(carto::intersection(dessin.geometry(), enceinte), voisines).area();
    const qint32 avant = f.sections().featureCount();

    f.c->AjusterSectionOuAllee();
    EXPECT_TRUE(f.messages.empty()) << f.dernierMessage().toStdString();
    const carto::Feature n = f.parNom(f.sections(), QStringLiteral("N"));
    ASSERT_TRUE(n.isValid());
    EXPECT_EQ(f.sections().featureCount(), avant);
    EXPECT_FALSE(f.sections().hasFeature(dessin.fid()));
    EXPECT_NEAR(n.area(), attendue, 1e-6);
    EXPECT_LT(n.area(), dessin.area());
    EXPECT_NEAR(carto::difference(n.geometry(), enceinte).area(), 0, 1e-9);
    EXPECT_NEAR(aireCommune(n.geometry(), f.autres(f.sections(), n.fid())), 0, 1e-9);
    EXPECT_EQ(n.style().regionBorderColor, 255u);
    EXPECT_EQ(n.style().regionColor, 0xC0C0FFu);
    EXPECT_TRUE(f.sections().selection().isEmpty());

    // One step: undone, the drawing is back as drawn, in the file too.
    f.c->surface().Historique->undo();
    EXPECT_FALSE(f.parNom(f.sections(), QStringLiteral("N")).fid() == n.fid());
    ASSERT_TRUE(f.sections().hasFeature(dessin.fid()));
    EXPECT_NEAR(f.sections().feature(dessin.fid()).area(), dessin.area(), 1e-9);
    carto::Map relu;
    relu.loadMapSet(f.c->contexte().carte().mapSet());
    EXPECT_TRUE(relu.requireLayer(u"Sections").hasFeature(dessin.fid()));
    EXPECT_FALSE(relu.requireLayer(u"Sections").hasFeature(n.fid()));
}

TEST(Ajustement, RefusedSectionsGoWithTheirMessage) {
    Placement f;
    f.calque(QStringLiteral("Sections"));
    const carto::Feature a = f.parNom(f.sections(), QStringLiteral("A"));
    const carto::Rect ra = a.bounds();
    const qint32 avant = f.sections().featureCount();

    // Wholly on section A.
    f.dessine(f.sections(), {ra.xmin + 2, ra.ymin + 2, ra.xmin + 6, ra.ymin + 6}, "Sur A");
    f.c->AjusterSectionOuAllee();
    EXPECT_EQ(f.dernierMessage(), QStringLiteral("Une section est déjà dessinée à cet endroit !"));
    EXPECT_EQ(f.sections().featureCount(), avant);

    // Wholly outside the enclosure.
    const carto::Rect e = f.c->Calque_Enceinte->bounds();
    f.dessine(f.sections(), {e.xmax + 10, e.ymax + 10, e.xmax + 20, e.ymax + 20}, "Dehors");
    f.c->AjusterSectionOuAllee();
    EXPECT_EQ(f.dernierMessage(), QStringLiteral("Une section ne peut être crée à l'extérieure de "
                                                 "l'enceinte du cimetière"));
    EXPECT_EQ(f.sections().featureCount(), avant);
    EXPECT_FALSE(f.parNom(f.sections(), QStringLiteral("Dehors")).isValid());
}

TEST(Ajustement, TheFirstSectionIsOnlyClippedAndAnEmptyEnclosureIsSaid) {
    Placement f;
    f.calque(QStringLiteral("Sections"));
    const carto::Geometry enceinte = f.c->Calque_Enceinte->unionAll().clone();
    const carto::Rect e = enceinte.bounds();
    const carto::Features toutes = f.sections().allFeatures();
    for (qint64 fid : toutes.fids())
        f.sections().deleteFeature(fid);
    const carto::Feature seule =
        f.dessine(f.sections(), {e.xmin - 5, e.ymin + 5, e.xmin + 20, e.ymin + 15}, "Seule");
    f.c->AjusterSectionOuAllee();
    ASSERT_EQ(f.sections().featureCount(), 1);
    EXPECT_NEAR(f.parNom(f.sections(), QStringLiteral("Seule")).area(),
                carto::intersection(seule.geometry(), enceinte).area(), 1e-9);

    const carto::Features murs = f.c->Calque_Enceinte->allFeatures();
    for (qint64 fid : murs.fids())
        f.c->Calque_Enceinte->deleteFeature(fid);
    const carto::Feature autre = f.dessine(f.sections(), {1, 1, 5, 5}, "Autre");
    f.c->AjusterSectionOuAllee();
    EXPECT_EQ(f.dernierMessage(), QStringLiteral("Vous devez dessiner l'enceinte du cimetière "
                                                 "avant d'ajuster les sections !"));
    EXPECT_TRUE(f.sections().hasFeature(autre.fid()));
}

TEST(Ajustement, AnEnclosureOfTwoDisjointPartsGivesAClearErrorAndChangesNothing) {
    Placement f;
    f.calque(QStringLiteral("Enceinte"));
    const carto::Rect e = f.c->Calque_Enceinte->bounds();
    f.c->Calque_Enceinte->addFeature(carto::Feature::region(
        {{{e.xmax + 50, 0}, {e.xmax + 90, 0}, {e.xmax + 90, 40}, {e.xmax + 50, 40}}}));
    f.calque(QStringLiteral("Sections"));
    const carto::Feature d =
        f.dessine(f.sections(), {e.xmin + 1, e.ymin + 1, e.xmin + 4, e.ymin + 4});
    const std::size_t pas = f.c->surface().Historique->count();
    try {
        f.c->AjusterSectionOuAllee();
        ADD_FAILURE() << "no error";
    } catch (const Erreur& err) {
        EXPECT_FALSE(err.description().isEmpty());
    }
    EXPECT_TRUE(f.sections().hasFeature(d.fid()));
    EXPECT_EQ(std::size_t(f.c->surface().Historique->count()), pas);
}

TEST(Ajustement, AnAlleyGoesToTheSectionItSharesMostWithAndIsClippedToIt) {
    Placement f;
    f.calque(QStringLiteral("Allées"));
    const carto::Feature a = f.parNom(f.sections(), QStringLiteral("A"));
    const carto::Feature b = f.parNom(f.sections(), QStringLiteral("B"));
    const carto::Rect ra = a.bounds(), rb = b.bounds();
    ASSERT_LT(ra.xmax, rb.xmin);
    // Across the path between A and B, mostly over B, low enough to miss their alleys.
    const double y = std::max(ra.ymin, rb.ymin) + 0.2;
    const carto::Feature d = f.dessine(f.allees(), {ra.xmax - 2, y, rb.xmin + 6, y + 0.5}, "Pont");
    const carto::Features sous = f.c->SectionSousAllee(const_cast<carto::Feature&>(d));
    ASSERT_EQ(sous.count(), 1);
    EXPECT_EQ(sous.at(0).attribute(u"Nom").toString(), QStringLiteral("B"));

    f.c->AjusterSectionOuAllee();
    const carto::Feature pont = f.parNom(f.allees(), QStringLiteral("Pont"));
    ASSERT_TRUE(pont.isValid()) << f.dernierMessage().toStdString();
    EXPECT_NEAR(carto::difference(pont.geometry(), b.geometry()).area(), 0, 1e-9);
    EXPECT_NEAR(aireCommune(pont.geometry(), f.autres(f.allees(), pont.fid())), 0, 1e-9);
    EXPECT_EQ(pont.style().regionBorderColor, 49152u);
    EXPECT_EQ(pont.style().regionColor, 0xC0FFC0u);

    const carto::Rect e = f.c->Calque_Enceinte->bounds();
    f.dessine(f.allees(), {e.xmin + 0.2, e.ymin + 0.2, e.xmin + 0.8, e.ymin + 0.8}, "Nulle part");
    f.c->AjusterSectionOuAllee();
    EXPECT_EQ(f.dernierMessage(),
              QStringLiteral("Cette allée n'est pas dessinée au dessus d'une section !"));
    EXPECT_TRUE(f.parNom(f.allees(), QStringLiteral("Nulle part")).isValid());
}

TEST(Ajustement, OnlySectionsAndAlleysAreFitted) {
    Placement f;
    f.calque(QStringLiteral("Décor"));
    const carto::Feature d = f.dessine(*f.c->Calque_Decor, {1, 1, 3, 3});
    f.c->AjusterSectionOuAllee();
    EXPECT_EQ(f.c->Calque_Decor->feature(d.fid()).area(), d.area());
    EXPECT_TRUE(f.messages.empty());
}

// ---- deletions

TEST(DemandeSuppression, SectionsAlleysAndPlotsAreAskedOfTheHostInOneEvent) {
    Placement f;
    QStringList sections, allees, terrains;
    QObject::connect(f.c.get(), &Veldra::SuppressionSection, [&](QString& l) { sections << l; });
    QObject::connect(f.c.get(), &Veldra::SuppressionAllee, [&](QString& l) { allees << l; });
    QObject::connect(f.c.get(), &Veldra::SuppressionTerrain, [&](QString& l) { terrains << l; });

    f.calque(QStringLiteral("Sections"));
    const qint64 a = f.parNom(f.sections(), QStringLiteral("A")).fid();
    const qint64 b = f.parNom(f.sections(), QStringLiteral("B")).fid();
    f.choisit(f.sections(), {b, a});
    f.c->DemandeSuppression();
    EXPECT_EQ(sections, QStringList{QStringLiteral("B*A*")});
    EXPECT_EQ(f.sections().featureCount(), 2); // the host decides

    f.calque(QStringLiteral("Allées"));
    const carto::Feature allee = f.parNom(f.allees(), QStringLiteral("Allée des Cyprès"));
    f.choisit(f.allees(), {allee.fid()});
    f.c->DemandeSuppression();
    EXPECT_EQ(allees, QStringList{QStringLiteral("Allée des Cyprès/Allée/A*")});

    f.calque(QStringLiteral("Tombes"));
    carto::Layer& tombes = *f.c->Calque_Tombe;
    const carto::Features toutes = tombes.allFeatures();
    f.choisit(tombes, {toutes.at(4).fid(), toutes.at(1).fid()});
    f.c->DemandeSuppression();
    ASSERT_EQ(terrains.size(), 1);
    EXPECT_EQ(terrains[0],
              QStringLiteral("%1*%2*").arg(toutes.at(4).attribute(u"IDGCF").toString(),
                                           toutes.at(1).attribute(u"IDGCF").toString()));

    // The host agrees: the plots go with their labels; a second answer finds nothing.
    const qint32 avant = tombes.featureCount();
    bool oui = true;
    QString rien;
    f.c->ConfirmSupp(oui, rien);
    EXPECT_EQ(tombes.featureCount(), avant - 2);
    f.c->ConfirmSupp(oui, rien);
    EXPECT_EQ(tombes.featureCount(), avant - 2);

    // Outside edit mode nothing is asked.
    f.edition();
    f.choisit(tombes, {toutes.at(7).fid()});
    f.c->DemandeSuppression();
    EXPECT_EQ(terrains.size(), 1);
}

TEST(DemandeSuppression, OtherLayersLoseTheSelectionAtOnceAsOneUndoableStep) {
    Placement f;
    f.calque(QStringLiteral("Décor"));
    carto::Layer& decor = *f.c->Calque_Decor;
    const qint32 avant = decor.featureCount();
    ASSERT_GE(avant, 2);
    const carto::Features tous = decor.allFeatures();
    f.choisit(decor, {tous.at(0).fid(), tous.at(1).fid()});
    f.c->DemandeSuppression();
    EXPECT_EQ(decor.featureCount(), avant - 2);
    f.c->surface().Historique->undo();
    EXPECT_EQ(decor.featureCount(), avant);
}
