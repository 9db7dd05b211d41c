// The map's context menu: which entries each layer and selection offer, and what each
// chosen entry does to the plan; copy and paste from the menu and the keyboard.
#include "carte_fixture.h"
#include "carto/geometry/geometry.h"
#include "editing/menu_contextuel.h"
#include "editing/menu_surgissant.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <cmath>

using namespace veldra;

namespace {

QAction* action(QMenu& m, const QString& texte) {
    for (QAction* a : m.actions()) {
        if (a->text() == texte)
            return a;
        if (a->menu())
            if (QAction* b = action(*a->menu(), texte))
                return b;
    }
    return nullptr;
}

struct Menu : Carte {
    QStringList vus; // the captions of the last menu shown, in order
    Menu() {
        c->setAnnulation(true);
        edition();
        calque(QStringLiteral("Tombes"));
    }
    carto::Layer& tombes() { return *c->Calque_Tombe; }
    void choisit(carto::Layer& l, const std::vector<qint64>& fids) {
        l.clearSelection();
        for (qint64 fid : fids)
            l.selectAdd(fid);
    }
    // A right click on the map whose menu answers with the entry captioned `choix`.
    void clicDroit(const QString& choix) {
        vus.clear();
        c->contexte().montreMenu = [this, choix](QMenu& m, const QPoint&) {
            std::function<void(QMenu&)> liste = [&](QMenu& sous) {
                for (QAction* a : sous.actions()) {
                    if (!a->isSeparator())
                        vus << a->text();
                    if (a->menu())
                        liste(*a->menu());
                }
            };
            liste(m);
            return action(m, choix);
        };
        emit vue().mouseUp(carto::mouse::Right, 0, 50, 50);
    }
    // The menu built for the current state, without showing it.
    MenuSurgissant arbre() {
        MenuSurgissant m;
        const int n = c->Calque_Courant->selection().count();
        if (c->ModeEdition)
            construitMenuEdition(c->contexte(), m, n);
        else
            construitMenuLecture(c->contexte(), m, n);
        return m;
    }
    void touche(int cle, Qt::KeyboardModifiers m = Qt::ControlModifier) {
        QKeyEvent e(QEvent::KeyPress, cle, m);
        QCoreApplication::sendEvent(&vue(), &e);
    }
};

} // namespace

TEST(MenuContextuel, PlotsOfferTheirTwentyThreeEntriesInOrder) {
    Menu f;
    f.choisit(f.tombes(), {f.tombes().allFeatures().at(0).fid()});
    MenuSurgissant m = f.arbre();
    ASSERT_EQ(m.nombre(), 23);
    const QStringList attendus{"EDITION",
                               "Copier",
                               "Coller",
                               "Supprimer",
                               "INFORMATIONS",
                               "Voir la fiche détaillée",
                               "ALIGNEMENT",
                               "Angle droit",
                               "Aligner la sélection",
                               "en Haut",
                               "en Bas",
                               "à Gauche",
                               "à Droite",
                               "Orienter la sélection",
                               "la même en Haut",
                               "la même en Bas",
                               "la même à Gauche",
                               "la même à Droite",
                               "CONCESSIONS",
                               "Affecter une concession",
                               "Mémoriser la sélection",
                               "Définir la taille",
                               "Style de la sélection"};
    for (int i = 1; i <= 23; ++i)
        EXPECT_EQ(m.entree(i).libelle, attendus[i - 1]) << i;
    EXPECT_EQ(m.entree(8).cle, QStringLiteral("AjusterContours"));
    EXPECT_EQ(m.entree(12).cle, QStringLiteral("PositionGauche"));
    EXPECT_EQ(m.entree(12).etiquette, QStringLiteral("Gauche"));
    EXPECT_EQ(m.entree(17).etiquette, QStringLiteral("Gauche"));
    EXPECT_EQ(m.entree(20).cle, QStringLiteral("AffecterConcession"));
    EXPECT_EQ(m.entree(21).cle, QStringLiteral("MemoriserSelection"));
    // One plot: no alignment nor orientation, nothing to paste yet.
    EXPECT_FALSE(m.disponible(9));
    EXPECT_FALSE(m.disponible(11));
    EXPECT_FALSE(m.disponible(14));
    EXPECT_FALSE(m.disponible(3));
    EXPECT_TRUE(m.disponible(2));
    f.choisit(f.tombes(),
              {f.tombes().allFeatures().at(0).fid(), f.tombes().allFeatures().at(1).fid()});
    EXPECT_TRUE(f.arbre().disponible(11));
    EXPECT_TRUE(f.arbre().disponible(16));
}

TEST(MenuContextuel, SectionsAlleysAndOtherLayersOfferTheirOwnTrees) {
    Menu f;
    f.calque(QStringLiteral("Sections"));
    carto::Layer& sections = *f.c->Calque_Sections;
    f.choisit(sections, {sections.allFeatures().at(0).fid()});
    MenuSurgissant m = f.arbre();
    ASSERT_EQ(m.nombre(), 13);
    EXPECT_EQ(m.entree(7).libelle, QStringLiteral("AJUSTAGE"));
    EXPECT_EQ(m.entree(9).cle, QStringLiteral("AjusterPosition"));
    EXPECT_TRUE(m.disponible(8));
    EXPECT_TRUE(m.disponible(10));
    f.choisit(sections, sections.allFeatures().fids());
    EXPECT_FALSE(f.arbre().disponible(8)); // two sections: nothing to fit
    EXPECT_FALSE(f.arbre().disponible(13));

    f.calque(QStringLiteral("Décor"));
    EXPECT_EQ(f.arbre().nombre(), 4);

    // Outside edit mode: offered on the plots only, "Copier" unavailable.
    f.calque(QStringLiteral("Tombes"));
    f.edition();
    f.choisit(f.tombes(), {f.tombes().allFeatures().at(0).fid()});
    MenuSurgissant lecture = f.arbre();
    EXPECT_EQ(lecture.nombre(), 23);
    EXPECT_FALSE(lecture.disponible(2));
    EXPECT_TRUE(lecture.disponible(6));
    EXPECT_FALSE(lecture.disponible(8));
    f.calque(QStringLiteral("Sections"));
    f.clicDroit(QStringLiteral("Copier"));
    EXPECT_TRUE(f.vus.isEmpty());
}

TEST(MenuContextuel, ChosenEntriesRunTheirCommands) {
    Menu f;
    QStringList terrains, fiches, concessions, synchros;
    QObject::connect(f.c.get(), &Veldra::SuppressionTerrain, [&](QString& l) { terrains << l; });
    QObject::connect(f.c.get(), &Veldra::FicheTombe, [&](QString& l) { fiches << l; });
    QObject::connect(f.c.get(), &Veldra::AffecterUneConcession,
                     [&](QString& l) { concessions << l; });
    QObject::connect(f.c.get(), &Veldra::Synchro,
                     [&](RecordsetPtr&, QString& t) { synchros << t; });
    const carto::Feature t = f.tombes().allFeatures().at(3);
    const QString id = t.attribute(u"IDGCF").toString();
    f.choisit(f.tombes(), {t.fid()});

    f.clicDroit(QStringLiteral("Voir la fiche détaillée"));
    EXPECT_EQ(f.vus.value(0), QStringLiteral("EDITION"));
    EXPECT_EQ(fiches, QStringList{id + u'@'});
    f.clicDroit(QStringLiteral("Affecter une concession"));
    EXPECT_EQ(concessions, QStringList{id});
    EXPECT_TRUE(synchros.contains(QStringLiteral("U")));
    f.clicDroit(QStringLiteral("Mémoriser la sélection"));
    EXPECT_EQ(f.c->GetNbEltsMemorises(), 1);
    f.clicDroit(QStringLiteral("Supprimer"));
    EXPECT_EQ(terrains, QStringList{id + u'*'});
    EXPECT_TRUE(f.tombes().hasFeature(t.fid())); // the host decides

    // Squaring from the menu is one step of the history.
    const carto::Point o = f.c->Calque_Enceinte->bounds().center();
    const carto::Feature oblique = f.tombes().addFeature(carto::Feature::region(
        {{{o.x, o.y}, {o.x + 2, o.y + 0.3}, {o.x + 1.9, o.y + 1.3}, {o.x - 0.1, o.y + 1}}}));
    f.choisit(f.tombes(), {oblique.fid()});
    const int pas = f.c->surface().Historique->count();
    f.clicDroit(QStringLiteral("Angle droit"));
    EXPECT_EQ(f.c->surface().Historique->count(), pas + 1);
    EXPECT_EQ(f.c->surface().Historique->undoText(), QStringLiteral("Angle droit"));

    // A section fitted from the menu.
    f.calque(QStringLiteral("Sections"));
    carto::Layer& sections = *f.c->Calque_Sections;
    const carto::Rect e = f.c->Calque_Enceinte->bounds();
    const carto::Feature d =
        sections.addFeature(carto::Feature::region({{{e.xmin - 3, e.ymin + 1},
                                                     {e.xmin + 3, e.ymin + 1},
                                                     {e.xmin + 3, e.ymin + 3},
                                                     {e.xmin - 3, e.ymin + 3}}}));
    f.choisit(sections, {d.fid()});
    f.clicDroit(QStringLiteral("Ajuster les contours"));
    EXPECT_FALSE(sections.hasFeature(d.fid()));
    EXPECT_LT(sections.bounds().xmin, e.xmin + 3);
}

TEST(MenuContextuel, CopiesArePastedEachTimeJustBesideTheOriginals) {
    Menu f;
    const carto::Features toutes = f.tombes().allFeatures();
    const carto::Feature a = toutes.at(0), b = toutes.at(1);
    const qint32 avant = f.tombes().featureCount();
    f.choisit(f.tombes(), {a.fid(), b.fid()});
    f.clicDroit(QStringLiteral("Copier"));
    f.clicDroit(QStringLiteral("Coller"));
    f.touche(Qt::Key_V);
    ASSERT_EQ(f.tombes().featureCount(), avant + 4);
    // The second paste is selected: two copies of a and b, each 1.9e-5 away from them.
    const carto::Features colles = f.tombes().selection();
    ASSERT_EQ(colles.count(), 2);
    const carto::Point ca = a.parts()[0][0], cc = colles.at(0).parts()[0][0];
    EXPECT_NEAR(cc.x - ca.x, 1.9e-5, 1e-9);
    EXPECT_NEAR(cc.y - ca.y, 1.9e-5, 1e-9);
    EXPECT_TRUE(colles.at(0).attribute(u"IDGCF").isNull()); // no key of the original's
    // Undone, one paste goes whole.
    f.c->surface().Historique->undo();
    EXPECT_EQ(f.tombes().featureCount(), avant + 2);

    // Another layer: nothing to paste there.
    f.calque(QStringLiteral("Allées"));
    EXPECT_FALSE(f.arbre().disponible(3));
    f.touche(Qt::Key_V);
    EXPECT_EQ(f.c->Calque_Allees->featureCount(), f.c->Calque_Allees->featureCount());
    // Only Ctrl alone: Ctrl+Shift+V does nothing, nor a paste outside edit mode.
    f.calque(QStringLiteral("Tombes"));
    f.touche(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(f.tombes().featureCount(), avant + 2);
    f.edition();
    f.touche(Qt::Key_V);
    EXPECT_EQ(f.tombes().featureCount(), avant + 2);
    // Another plan opened: what was copied belonged to the previous one.
    f.edition();
    f.ouvre(f.plan(30, false, QStringLiteral("Autre")));
    f.edition();
    f.calque(QStringLiteral("Tombes"));
    f.touche(Qt::Key_V);
    EXPECT_EQ(f.c->Calque_Tombe->featureCount(), 30);
}

TEST(MenuContextuel, NoMenuWhileTheLeftButtonStillDrags) {
    Menu f;
    f.choisit(f.tombes(), {f.tombes().allFeatures().at(0).fid()});
    bool montre = false;
    f.c->contexte().montreMenu = [&](QMenu&, const QPoint&) {
        montre = true;
        return nullptr;
    };
    const QPointF p(60, 60);
    QMouseEvent presse(QEvent::MouseButtonPress, p, f.vue().mapToGlobal(p), Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&f.vue(), &presse);
    QMouseEvent droit(QEvent::MouseButtonRelease, p, f.vue().mapToGlobal(p), Qt::RightButton,
                      Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&f.vue(), &droit);
    EXPECT_FALSE(montre);
    QMouseEvent relache(QEvent::MouseButtonRelease, p, f.vue().mapToGlobal(p), Qt::LeftButton,
                        Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&f.vue(), &relache);
}
