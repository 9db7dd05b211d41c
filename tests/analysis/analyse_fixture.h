#pragma once
// The control with a sample plan open (with its deliberate faults when asked), its report
// kept in a folder of the test and its editor recorded instead of started.

#include "base/cp1252.h"
#include "carto/model/update_access.h"
#include "control_fixture.h"

#include <QComboBox>
#include <QFile>
#include <QPushButton>

struct AnalyseFixture : ControleFixture {
    QStringList ouverts; // files the editor was asked to open

    explicit AnalyseFixture(int plots = 120, bool defauts = false) {
        c->setEditeurHook([this](const QString& f) { ouverts << f; });
        veldra::plantool::SampleOptions o;
        o.plots = plots;
        o.seed = 5;
        o.raster = false;
        o.faults = defauts;
        o.name = QStringLiteral("Plan");
        chemin = veldra::plantool::generateSamplePlan(dir.filePath(QStringLiteral("plan")), o);
        ouvre(chemin);
        QDir(dir.path()).mkpath(QStringLiteral("rapports"));
        c->setRepFicAnalyse(dossierRapports());
    }

    QString chemin;
    QString dossierRapports() const { return dir.filePath(QStringLiteral("rapports")); }
    QString rapport() const { return dossierRapports() + QStringLiteral("/AnalysePlan.txt"); }

    void analyse() { w<QPushButton>("Btn_AnalysePlan")->click(); }

    // The layer chosen in the layer list, as a clerk chooses it.
    void calqueCourant(const QString& nom) {
        QComboBox* combo = w<QComboBox>("Combo_Calque");
        const int i = combo->findText(nom);
        combo->setCurrentIndex(i);
        emit combo->activated(i);
    }

    // A plot drawn from its corners, numbered, written to the plan.
    carto::Feature ajouteTombe(const carto::Part& coins, const QString& numero = {},
                               const QVariant& idgcf = {}) {
        carto::Part anneau = coins;
        anneau.push_back(coins.front());
        carto::Feature f = c->Calque_Tombe->addFeature(carto::Feature::region({anneau}));
        f.setAttribute(u"Numero", numero);
        f.setAttribute(u"IDGCF", idgcf);
        c->Calque_Tombe->updateFeature(f);
        return c->Calque_Tombe->feature(f.fid());
    }

    // A rectangle as corners.
    static carto::Part rectangle(double x0, double y0, double x1, double y1) {
        return {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
    }

    // A point well inside the named alley of the named section.
    carto::Point dansAllee(const QString& section, const QString& allee) {
        for (const carto::Feature& a : c->Calque_Allees->allFeatures()) {
            if (a.attribute(u"Nom").toString() != allee)
                continue;
            const auto s = c->Calque_Sections->searchAtPoint(a.centre());
            if (!s.isEmpty() && s.at(0).attribute(u"Nom").toString() == section)
                return a.centre();
        }
        ADD_FAILURE() << "no alley " << allee.toStdString();
        return {};
    }

    // Lines of the report, read back as Windows-1252 with CR LF ends; `brut` gets the bytes.
    QStringList lignesRapport(QByteArray* brut = nullptr) const {
        return lisRapport(rapport(), brut);
    }

    static QStringList lisRapport(const QString& fichier, QByteArray* brut = nullptr) {
        QFile f(fichier);
        if (!f.open(QIODevice::ReadOnly)) {
            ADD_FAILURE() << "no report " << fichier.toStdString();
            return {};
        }
        const QByteArray octets = f.readAll();
        if (brut)
            *brut = octets;
        EXPECT_TRUE(octets.endsWith("\r\n"));
        QStringList lignes = veldra::fromCp1252(octets).split(QStringLiteral("\r\n"));
        lignes.removeLast(); // after the last line's end
        return lignes;
    }
};
