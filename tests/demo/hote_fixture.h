#pragma once
// The demo host with a 90-plot sample plan open and its register beside it; the
// control's messages are written to `messages`.
#include "control/veldra.h"
#include "fenetre_principale.h"
#include "plan_exemple.h"
#include "registre.h"
#include "session_sans_ecran.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QTextStream>
#include <gtest/gtest.h>
#include <memory>

struct HoteAvecRegistre {
    QTemporaryDir dossier;
    QSettings reglages{dossier.filePath(QStringLiteral("demo.ini")), QSettings::IniFormat};
    QString messages;
    QTextStream sortie{&messages};
    std::unique_ptr<veldra::demo::FenetrePrincipale> f;

    HoteAvecRegistre() {
        veldra::plantool::SampleOptions options = veldra::demo::optionsExemple();
        options.plots = 90;
        options.raster = false;
        // A number repeated in an alley would make a place name two plots.
        options.faults = false;
        const QString plan = veldra::demo::assurePlanExemple(dossier.path(), options);
        f = std::make_unique<veldra::demo::FenetrePrincipale>(reglages);
        f->setPrompter(std::make_unique<veldra::demo::PrompterSansEcran>(sortie));
        EXPECT_TRUE(f->ouvrePlan(plan, QStringLiteral("Essai")));
    }
    veldra::Veldra& c() { return f->plan(); }
};
