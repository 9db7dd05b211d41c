#pragma once
// The control on a plan at 1600 x 1000, shown and drawn once, as the benchmarks that time
// a redraw use it.

#include "control/veldra.h"

#include <QApplication>
#include <QWindow>

struct Controle {
    veldra::Veldra c;
    explicit Controle(const QString& plan) {
        c.resize(1600, 1000);
        QString chemin = plan, nom = QStringLiteral("Banc d'essai");
        bool nouveau = false, droit = true;
        c.OuvreCimetiere(chemin, nouveau, nom, droit);
        c.show();
        for (int i = 0; i < 10 && !c.windowHandle()->isExposed(); ++i)
            QApplication::processEvents(QEventLoop::AllEvents, 50);
        vue().waitForRender();
    }
    carto::MapView& vue() { return *c.surface().Map1; }
    void redessine() {
        vue().refresh();
        vue().waitForRender();
    }
};
