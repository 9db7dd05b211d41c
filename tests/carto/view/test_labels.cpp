// Automatic labels: a label that would overlap another label or one of the plan's texts is
// left out at that scale, so what is drawn can be read.
#include "../plan_fixture.h"
#include "carto/model/dataset.h"
#include "carto/model/map.h"
#include "carto/render/label_placer.h"
#include "carto/render/scene.h"

#include <QImage>
#include <QPainter>

using namespace carto;

TEST(LabelPlacer, KeepsClearOfTextsAndOfLabelsAlreadyPlaced) {
    LabelPlacer placer(QSize(200, 100), 16);
    placer.occupy(QRectF(10, 10, 30, 10)); // a plot number
    EXPECT_FALSE(placer.place(QRectF(35, 15, 20, 10)));
    EXPECT_TRUE(placer.place(QRectF(60, 15, 40, 10)));
    EXPECT_FALSE(placer.place(QRectF(90, 20, 40, 10))); // across a cell border
    EXPECT_TRUE(placer.place(QRectF(101, 15, 40, 10)));
    // Boxes past the edges still meet each other.
    EXPECT_TRUE(placer.place(QRectF(-50, 80, 60, 40)));
    EXPECT_FALSE(placer.place(QRectF(-10, 90, 5, 5)));
    EXPECT_EQ(placer.placed().size(), 3u);
}

TEST(LabelPlacer, NoTwoNamesOverlapOnTheSamplePlanAtThreeScales) {
    PlanFixture plans;
    Map map;
    map.loadMapSet(plans.sample(600), MapSetOptions{QStringLiteral("Texte")});
    Layer& plots = map.requireLayer(u"Tombes");
    Dataset& ds = map.addDataset(plots);
    plots.setLabelDataset(&ds);
    plots.setLabelField(QStringLiteral("Nom"));
    plots.setAutoLabel(true);
    plots.setLabelsVisible(true);
    // Names shown, numbers hidden, as "Afficher les nom" does: names meet names and the
    // free texts.
    map.requireLayer(u"Numeros").setVisible(false);

    const Rect plan = plots.bounds();
    const Point centre{(plan.xmin + plan.xmax) / 2, (plan.ymin + plan.ymax) / 2};
    // About 1/95, 1/135 and 1/220 on a 1200-pixel-wide view; further out, plots are too
    // small to carry a name.
    for (const double zoom : {30.0, 43.0, 70.0}) {
        Viewport v;
        v.centre = centre;
        v.zoom = zoom;
        v.size = QSize(1200, 800);
        const Scene scene = buildScene(map, v, v.visible(), {});
        size_t named = 0;
        for (const SceneLayer& l : scene.layers)
            for (const SceneItem& item : l.items)
                named += item.label.isEmpty() ? 0 : 1;
        QImage image(v.size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        const std::vector<QRectF> drawn = paintScene(painter, scene);
        SCOPED_TRACE(zoom);
        ASSERT_FALSE(drawn.empty());
        EXPECT_LE(drawn.size(), named);
        for (size_t i = 0; i < drawn.size(); ++i)
            for (size_t j = i + 1; j < drawn.size(); ++j)
                ASSERT_FALSE(drawn[i].intersects(drawn[j])) << i << " and " << j;
    }
}

TEST(LabelPlacer, LabelsTakeTheLetteringOfTheirLayer) {
    PlanFixture plans;
    Map map;
    map.loadMapSet(plans.sample(60), MapSetOptions{QStringLiteral("Texte")});
    Layer& plots = map.requireLayer(u"Tombes");
    Dataset& ds = map.addDataset(plots);
    plots.setLabelDataset(&ds);
    plots.setLabelField(QStringLiteral("Numero"));
    plots.setAutoLabel(true);
    plots.setLabelsVisible(true);
    map.requireLayer(u"Numeros").setVisible(false);
    Viewport v;
    v.size = QSize(2400, 1600);
    v = v.fitting(plots.bounds());
    // The widest label drawn, in pixels, at a given size in points.
    const auto largeur = [&](double points) {
        Style s = defaultLabelStyle();
        s.textSize = points;
        plots.setLabelStyle(s);
        const Scene scene = buildScene(map, v, v.visible(), {});
        QImage image(v.size, QImage::Format_ARGB32_Premultiplied);
        image.setDotsPerMeterX(3780); // 96 dpi
        image.setDotsPerMeterY(3780);
        image.fill(Qt::white);
        QPainter painter(&image);
        double w = 0;
        for (const QRectF& r : paintScene(painter, scene))
            w = std::max(w, r.width());
        return w;
    };
    const double petite = largeur(8), grande = largeur(16);
    ASSERT_GT(petite, 0);
    EXPECT_NEAR(grande / petite, 2, 0.3);
    EXPECT_EQ(plots.labels().style.textSize, 16);
}
