#pragma once
// A control with a sample plan open, and plots of known shape added to it.

#include "control_fixture.h"

struct EchangeFixture : ControleFixture {
    EchangeFixture() { ouvre(plan(120)); }

    veldra::Veldra& ctl() { return *c; }

    // A plot drawn from its ring (closed here), with its attributes.
    carto::Feature ajouteTombe(const carto::Part& coins, const QVariant& idgcf = {},
                               const QString& numero = {}) {
        carto::Part anneau = coins;
        anneau.push_back(coins.front());
        carto::Feature f = c->Calque_Tombe->addFeature(carto::Feature::region({anneau}));
        f.setAttribute(u"IDGCF", idgcf);
        f.setAttribute(u"Numero", numero);
        c->Calque_Tombe->updateFeature(f);
        return c->Calque_Tombe->feature(f.fid());
    }

    RecordsetPtr getInfo(const QString& type, const QString& p1 = {}, const QString& p2 = {},
                         bool jauge = false) {
        QString t = type, a = p1, b = p2, m = QStringLiteral("Collecte");
        bool j = jauge;
        return c->GetInfo(t, a, b, j, m);
    }

    // A point inside a given section and alley of the sample plan, far from the others.
    carto::Point dansAllee(const QString& section, const QString& allee) {
        for (const carto::Feature& a : c->Calque_Allees->allFeatures()) {
            if (a.attribute(u"Nom").toString() != allee)
                continue;
            const carto::Point centre = a.centre();
            const auto s = c->Calque_Sections->searchAtPoint(centre);
            if (!s.isEmpty() && s.at(0).attribute(u"Nom").toString() == section)
                return centre;
        }
        ADD_FAILURE() << "no alley " << allee.toStdString();
        return {};
    }
};
