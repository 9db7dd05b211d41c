// Edits as commands inside guarded update brackets: a write that storage refuses in the
// middle of an edit leaves storage and memory as they were before the edit; commands undo
// and redo exactly; changes are reported once per bracket.
#include "base/erreur.h"
#include "carto/model/edit_commands.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"
#include "carto/storage/map_store.h"
#include "plan_fixture.h"
#include "refus_ecriture.h"

#include <QCoreApplication>
#include <QUndoStack>
#include <cmath>
#include <gtest/gtest.h>

using namespace carto;

namespace {

Part square(double x, double y, double side) {
    return {{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}, {x, y}};
}

void refuse(const QString& path, const char* what, qint64 fid) {
    refuseWrites(path, "Tombes", what, fid);
}

// A plan of five plots side by side, written and closed, then reopened.
struct Plots {
    PlanFixture plans;
    QString path = plans.empty();
    std::vector<qint64> ids;

    Plots() {
        Map map;
        map.loadMapSet(path);
        Layer& plots = map.requireLayer(u"Tombes");
        for (int i = 0; i < 5; ++i) {
            Feature f = Feature::region({square(10.0 * i, 0, 4)});
            ids.push_back(plots.addFeature(f).fid());
        }
    }

    // The plan loaded into `map`, its plots layer returned; `stack` keeps its edits.
    Layer& open(Map& map, QUndoStack* stack = nullptr) const {
        map.loadMapSet(path);
        map.setUndoStack(stack);
        return map.requireLayer(u"Tombes");
    }

    // Where each plot's lower left corner is, in a map read afresh from storage.
    std::vector<Point> stored() const {
        Map map;
        map.loadMapSet(path);
        return corners(map.requireLayer(u"Tombes"));
    }
    std::vector<Point> corners(const Layer& plots) const {
        std::vector<Point> out;
        for (const qint64 fid : ids)
            out.push_back(plots.hasFeature(fid) ? plots.feature(fid).parts()[0][0] : Point{-1, -1});
        return out;
    }
    std::vector<Point> original() const {
        std::vector<Point> out;
        for (int i = 0; i < 5; ++i)
            out.push_back({10.0 * i, 0});
        return out;
    }
};

} // namespace

TEST(UpdateBracket, AWriteRefusedHalfwayLeavesStorageAndMemoryAsBefore) {
    Plots p;
    refuse(p.path, "UPDATE", p.ids[3]);
    Map map;
    Layer& plots = p.open(map);
    std::vector<Change> changes;
    QObject::connect(&map, &Map::changed, [&](const Change& c) { changes.push_back(c); });

    try {
        map.execute(std::make_unique<MoveFeatures>(plots, p.ids, 0, 100));
        FAIL() << "the refused write must fail the move";
    } catch (const veldra::Erreur& e) {
        EXPECT_EQ(e.numero(), veldra::err::EcritureImpossible);
        EXPECT_TRUE(e.description().contains(QStringLiteral("écriture refusée")));
    }
    EXPECT_EQ(p.corners(plots), p.original());
    EXPECT_EQ(p.stored(), p.original());
    // The R-tree was put back too: plots are found where they are, not where they went.
    EXPECT_EQ(plots.searchAtPoint({1, 1}).count(), 1);
    EXPECT_EQ(plots.searchAtPoint({1, 101}).count(), 0);
    EXPECT_EQ(plots.bounds(), (Rect{0, 0, 44, 4}));
    EXPECT_FALSE(map.inUpdateBracket());
    EXPECT_EQ(map.store()->transactionDepth(), 0);
    // One report, covering what moved and came back, so views redraw it.
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_TRUE(changes[0].area.contains(Rect{0, 100, 4, 104}));

    // The same plan takes the next edit normally.
    map.execute(std::make_unique<MoveFeatures>(plots, std::vector<qint64>{p.ids[0]}, 1, 0));
    EXPECT_EQ(p.stored()[0], (Point{1, 0}));
}

TEST(UpdateBracket, AGroupFailingAtItsLastStepKeepsNothing) {
    Plots p;
    refuse(p.path, "DELETE", p.ids[4]);
    Map map;
    Layer& plots = p.open(map);
    Layer& labels = map.requireLayer(u"Numeros");
    const qint64 label = labels.addFeature(Feature::textAt({42, 2}, QStringLiteral("5"))).fid();

    auto group = std::make_unique<EditGroup>(map, QStringLiteral("Supprimer"));
    group->add(std::make_unique<DeleteFeatures>(labels, std::vector<qint64>{label}));
    group->add(std::make_unique<SetAttribute>(plots, std::vector<qint64>{p.ids[4]}, u"Nom",
                                              QStringLiteral("Martin")));
    group->add(std::make_unique<DeleteFeatures>(plots, std::vector<qint64>{p.ids[4]}));
    EXPECT_THROW(map.execute(std::move(group)), veldra::Erreur);

    EXPECT_TRUE(labels.hasFeature(label));
    EXPECT_EQ(labels.feature(label).text(), QStringLiteral("5"));
    EXPECT_TRUE(plots.feature(p.ids[4]).attribute(u"Nom").isNull());
    Map reread;
    reread.loadMapSet(p.path);
    EXPECT_TRUE(reread.requireLayer(u"Numeros").hasFeature(label));
    EXPECT_TRUE(reread.requireLayer(u"Tombes").feature(p.ids[4]).attribute(u"Nom").isNull());
}

TEST(UpdateBracket, AnInnerBracketThatFailsUndoesOnlyItsOwnWrites) {
    Plots p;
    refuse(p.path, "UPDATE", p.ids[2]);
    Map map;
    Layer& plots = p.open(map);
    {
        UpdateAccess outer(map);
        map.execute(std::make_unique<MoveFeatures>(plots, std::vector<qint64>{p.ids[0]}, 0, 5));
        // Plot 1 is written, then plot 2 refused: the record is skipped as a whole.
        EXPECT_THROW(map.execute(std::make_unique<MoveFeatures>(
                         plots, std::vector<qint64>{p.ids[1], p.ids[2]}, 0, 5)),
                     veldra::Erreur);
        map.execute(std::make_unique<MoveFeatures>(plots, std::vector<qint64>{p.ids[4]}, 0, 5));
        outer.commit();
    }
    const std::vector<Point> expected{{0, 5}, {10, 0}, {20, 0}, {30, 0}, {40, 5}};
    EXPECT_EQ(p.corners(plots), expected);
    EXPECT_EQ(p.stored(), expected);
}

TEST(UpdateBracket, LeavingWithoutCommitUndoesEverything) {
    Plots p;
    Map map;
    Layer& plots = p.open(map);
    qint64 added = -1;
    {
        UpdateAccess access(map);
        plots.deleteFeature(p.ids[0]);
        added = plots.addFeature(Feature::region({square(100, 100, 2)})).fid();
        Feature f = plots.feature(p.ids[1]);
        f.setAttribute(u"Nom", QStringLiteral("Durand"));
        plots.updateFeature(f);
    } // an exception would leave the same way
    EXPECT_TRUE(plots.hasFeature(p.ids[0]));
    EXPECT_FALSE(plots.hasFeature(added));
    EXPECT_TRUE(plots.feature(p.ids[1]).attribute(u"Nom").isNull());
    EXPECT_EQ(plots.featureCount(), 5);
    EXPECT_EQ(p.stored(), p.original());
    Map reread;
    reread.loadMapSet(p.path);
    EXPECT_EQ(reread.requireLayer(u"Tombes").featureCount(), 5);
}

TEST(EditCommands, UndoAndRedoGiveBackExactlyWhatWasThere) {
    Plots p;
    Map map;
    QUndoStack stack;
    Layer& plots = p.open(map, &stack);

    Style red;
    red.regionColor = 255;
    map.execute(std::make_unique<SetStyle>(plots, std::vector<qint64>{p.ids[0]}, red));
    map.execute(std::make_unique<SetAttribute>(plots, std::vector<qint64>{p.ids[0]}, u"IDGCF", 77));
    const qint64 added = plots.addFeature(Feature::region({square(0, 50, 3)})).fid();
    map.execute(std::make_unique<DeleteFeatures>(plots, std::vector<qint64>{p.ids[0]}));
    EXPECT_EQ(stack.count(), 4);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Supprimer"));

    stack.undo(); // the plot comes back with its style and key, under its FID
    ASSERT_TRUE(plots.hasFeature(p.ids[0]));
    EXPECT_EQ(plots.feature(p.ids[0]).style().regionColor, 255);
    EXPECT_EQ(plots.feature(p.ids[0]).attribute(u"IDGCF").toInt(), 77);
    stack.undo(); // the addition goes
    EXPECT_FALSE(plots.hasFeature(added));
    stack.redo(); // and comes back under its first FID
    EXPECT_TRUE(plots.hasFeature(added));
    stack.undo();
    stack.undo();
    stack.undo();
    EXPECT_TRUE(plots.feature(p.ids[0]).attribute(u"IDGCF").isNull());
    EXPECT_EQ(plots.feature(p.ids[0]).style().regionColor, Style{}.regionColor);

    Map reread;
    reread.loadMapSet(p.path);
    const Layer& stored = reread.requireLayer(u"Tombes");
    EXPECT_FALSE(stored.hasFeature(added));
    EXPECT_TRUE(stored.feature(p.ids[0]).attribute(u"IDGCF").isNull());
    EXPECT_EQ(stored.feature(p.ids[0]).style().regionColor, Style{}.regionColor);

    // Loading another plan empties the stack: its commands name layers that are gone.
    map.loadMapSet(p.path);
    EXPECT_EQ(stack.count(), 0);
}

TEST(EditCommands, AFailedUndoIsReportedAndLeavesTheMapAsItWas) {
    Plots p;
    Map map;
    QUndoStack stack;
    Layer& plots = p.open(map, &stack);
    map.execute(std::make_unique<MoveFeatures>(plots, p.ids, 0, 10));
    refuse(p.path, "UPDATE", p.ids[2]);

    std::vector<qint32> failures;
    QObject::connect(&map, &Map::editFailed,
                     [&](const veldra::Erreur& e) { failures.push_back(e.numero()); });
    stack.undo();
    EXPECT_EQ(failures, std::vector<qint32>{veldra::err::EcritureImpossible});
    std::vector<Point> moved = p.original();
    for (Point& c : moved)
        c.y += 10;
    EXPECT_EQ(p.corners(plots), moved);
    EXPECT_EQ(p.stored(), moved);
    EXPECT_EQ(stack.count(), 0); // an edit that cannot be undone leaves the history
}

TEST(EditCommands, ABracketOpenedAroundCommandsKeepsThemOffTheStack) {
    Plots p;
    Map map;
    QUndoStack stack;
    Layer& plots = p.open(map, &stack);
    plots.beginAccess(1);
    plots.deleteFeature(p.ids[0]);
    plots.endAccess();
    EXPECT_EQ(stack.count(), 0);
    plots.deleteFeature(p.ids[1]);
    EXPECT_EQ(stack.count(), 1);
}

TEST(UndoSteps, AUserActionIsOneStepAndAFailedPartOfItIsLeftOut) {
    Plots p;
    Map map;
    QUndoStack stack;
    Layer& plots = p.open(map, &stack);
    {
        UpdateAccess action(map, UndoStep{QStringLiteral("Enregistrer")});
        map.execute(std::make_unique<MoveFeatures>(plots, std::vector<qint64>{p.ids[0]}, 0, 5));
        try {
            UpdateAccess partie(map); // refused halfway: neither kept nor on the stack
            map.execute(std::make_unique<MoveFeatures>(plots, std::vector<qint64>{p.ids[1]}, 0, 5));
            throw veldra::Erreur(veldra::err::EcritureImpossible, QStringLiteral("refus"));
        } catch (const veldra::Erreur&) {
        }
        plots.deleteFeature(p.ids[2]);
        action.commit();
    }
    ASSERT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Enregistrer"));
    std::vector<Point> after = p.original();
    after[0].y += 5;
    after[2] = {-1, -1};
    EXPECT_EQ(p.corners(plots), after);

    stack.undo();
    EXPECT_EQ(p.corners(plots), p.original());
    EXPECT_EQ(p.stored(), p.original());
    stack.redo();
    EXPECT_EQ(p.corners(plots), after);
    EXPECT_EQ(p.stored(), after);

    // A bracket left without commit leaves nothing on the stack; one without a step name
    // keeps its commands off it, as the host's updates do.
    {
        UpdateAccess abandon(map, UndoStep{QStringLiteral("Abandon")});
        plots.deleteFeature(p.ids[3]);
    }
    {
        UpdateAccess hote(map);
        plots.deleteFeature(p.ids[4]);
        hote.commit();
    }
    EXPECT_EQ(stack.count(), 1);
    EXPECT_TRUE(plots.hasFeature(p.ids[3]));
}

TEST(UndoSteps, AGestureMadeInThreeEventsIsUndoneInOneStep) {
    Plots p;
    Map map;
    QUndoStack stack;
    Layer& plots = p.open(map, &stack);
    const std::vector<qint64> first{p.ids[0]};

    // On release: a plot's label goes; the tool's move joins it in the same event.
    {
        UpdateAccess avant(map, UndoStep{QStringLiteral("Déplacer"), false, true});
        plots.deleteFeature(p.ids[4]);
        avant.commit();
    }
    EXPECT_EQ(stack.count(), 0);
    map.execute(std::make_unique<MoveFeatures>(plots, first, 3, 0));
    EXPECT_EQ(stack.count(), 1);
    // Later, the number made again joins both.
    {
        UpdateAccess suite(map, UndoStep{QStringLiteral("Déplacer"), true, false});
        map.execute(std::make_unique<SetAttribute>(plots, first, u"IDGCF", 5));
        suite.commit();
    }
    ASSERT_EQ(stack.count(), 1);
    QCoreApplication::processEvents(); // nothing is held any more
    EXPECT_EQ(stack.count(), 1);

    std::vector<Point> moved = p.original();
    moved[0].x += 3;
    moved[4] = {-1, -1};
    stack.undo();
    EXPECT_EQ(p.corners(plots), p.original());
    EXPECT_EQ(p.stored(), p.original());
    EXPECT_TRUE(plots.feature(p.ids[0]).attribute(u"IDGCF").isNull());
    stack.redo();
    EXPECT_EQ(p.corners(plots), moved);
    EXPECT_EQ(plots.feature(p.ids[0]).attribute(u"IDGCF").toInt(), 5);

    // A held step that nothing joins stands alone once the event is over.
    {
        UpdateAccess avant(map, UndoStep{QStringLiteral("Déplacer"), false, true});
        plots.deleteFeature(p.ids[3]);
        avant.commit();
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(stack.count(), 2);
    map.execute(std::make_unique<MoveFeatures>(plots, first, 1, 0));
    EXPECT_EQ(stack.count(), 3);
    stack.undo();
    stack.undo();
    EXPECT_TRUE(plots.hasFeature(p.ids[3]));
    EXPECT_EQ(p.corners(plots), moved);
}

TEST(LayerSettings, ChangesAreReportedOnceAndOnlyWhenTheyChange) {
    Map map;
    LayerInfo info;
    info.addParameter("Name", QStringLiteral("Zones"));
    Layer& zones = map.addLayer(info);
    std::vector<unsigned> kinds;
    QObject::connect(&map, &Map::changed, [&](const Change& c) {
        EXPECT_EQ(c.layer, &zones);
        kinds.push_back(c.kinds);
    });
    zones.setVisible(false);
    zones.setVisible(false);
    zones.setSelectable(false);
    zones.setEditable(false); // a memory layer starts editable
    zones.setLabelsVisible(true);
    zones.setLabelOffset(3, {1, 2});
    EXPECT_EQ(kinds, (std::vector<unsigned>{Change::Display, Change::Behaviour, Change::Behaviour,
                                            Change::Display, Change::Display}));
    EXPECT_THROW(zones.setLabelOffset(3, {std::nan(""), 0}), veldra::Erreur);
}
