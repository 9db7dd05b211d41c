#pragma once
// A map view of a few memory-layer features at a known scale: the view is 400 x 300
// pixels over the map rectangle (0, 0) - (40, 30), so one map unit is ten pixels and the
// map point (x, y) is the pixel (10x, 300 - 10y).

#include "carto/view/map_view.h"

#include <QApplication>
#include <QImage>
#include <gtest/gtest.h>

struct ViewFixture {
    carto::MapView view;
    carto::Layer* zones = nullptr;

    ViewFixture() {
        view.resize(400, 300);
        carto::LayerInfo info;
        info.addParameter("Name", QStringLiteral("Zones"));
        info.addParameter("Fields", carto::FieldList{{"Nom", carto::FieldType::Text, 20}});
        zones = &view.map().addLayer(info);
        zones->setEditable(true);
        view.setBounds({0, 0, 40, 30});
        view.show();
    }

    carto::Feature addSquare(double x, double y, double side, carto::Colour fill,
                             const QString& name = {}) {
        carto::Style s;
        s.regionColor = fill;
        carto::Feature f = carto::Feature::region(
            {{{x, y}, {x + side, y}, {x + side, y + side}, {x, y + side}, {x, y}}}, s);
        f = zones->addFeature(f);
        if (!name.isEmpty()) {
            f.setAttribute(u"Nom", name);
            zones->updateFeature(f);
        }
        return f;
    }

    QPoint pixelOf(carto::Point p) const { return view.toScreen(p).toPoint(); }

    // What the view shows now, once its render is done.
    QImage shown() {
        view.waitForRender();
        return view.grab().toImage();
    }
};

inline QColor colourAt(const QImage& image, QPoint p) {
    return image.pixelColor(p);
}

// Colours compared loosely: JPEG and antialiasing move them a little.
inline bool near(const QColor& a, const QColor& b, int tolerance = 24) {
    return std::abs(a.red() - b.red()) <= tolerance &&
           std::abs(a.green() - b.green()) <= tolerance &&
           std::abs(a.blue() - b.blue()) <= tolerance;
}
