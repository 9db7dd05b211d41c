#pragma once
// A control on a plan in edit mode with one layer current, as the editing benchmarks use it.

#include "carto/model/features.h"
#include "carto/model/layer.h"
#include "control/veldra.h"

#include <QCheckBox>
#include <QComboBox>
#include <QString>
#include <vector>

struct Edition {
    veldra::Veldra c;
    explicit Edition(const QString& plan, const QString& calque) {
        c.resize(1200, 800);
        QString chemin = plan, nom = QStringLiteral("Banc d'essai");
        bool nouveau = false, droit = true;
        c.OuvreCimetiere(chemin, nouveau, nom, droit);
        c.findChild<QCheckBox*>(QStringLiteral("CB_ModeEdition"))->click();
        auto* combo = c.findChild<QComboBox*>(QStringLiteral("Combo_Calque"));
        const int i = combo->findText(calque);
        combo->setCurrentIndex(i);
        emit combo->activated(i);
    }
    // The first n plots, selected.
    void choisitTerrains(int n) {
        carto::Layer& t = *c.Calque_Tombe;
        const carto::Features toutes = t.allFeatures();
        std::vector<qint64> fids(toutes.fids().begin(), toutes.fids().begin() + n);
        t.selectOnly(carto::Features(&t, fids));
    }
};
