#pragma once
// The control with a 120-plot plan open, and the map's mouse as a clerk moves it.
#include "control_fixture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QMouseEvent>

struct Carte : ControleFixture {
    Carte() { ouvre(plan(120)); }
    carto::MapView& vue() { return *c->surface().Map1; }
    void edition() { w<QCheckBox>("CB_ModeEdition")->click(); }
    void calque(const QString& nom) {
        QComboBox* combo = w<QComboBox>("Combo_Calque");
        const int i = combo->findText(nom);
        combo->setCurrentIndex(i);
        emit combo->activated(i);
    }
    // Mouse events as the widget receives them, with the left button held between press
    // and release.
    void souris(QEvent::Type type, carto::Point p, Qt::MouseButton bouton, Qt::MouseButtons tenus) {
        const QPointF ecran = vue().toScreen(p);
        QMouseEvent e(type, ecran, vue().mapToGlobal(ecran), bouton, tenus, Qt::NoModifier);
        QCoreApplication::sendEvent(&vue(), &e);
    }
    void glisse(carto::Point de, carto::Point a) {
        souris(QEvent::MouseButtonPress, de, Qt::LeftButton, Qt::LeftButton);
        for (int i = 1; i <= 4; ++i)
            souris(QEvent::MouseMove, {de.x + (a.x - de.x) * i / 4, de.y + (a.y - de.y) * i / 4},
                   Qt::NoButton, Qt::LeftButton);
        souris(QEvent::MouseButtonRelease, a, Qt::LeftButton, Qt::NoButton);
    }
};
