#pragma once
// Plans for the engine's tests, written by the plan tool into a temporary folder.

#include "veldra-plan/plan_tool.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

struct PlanFixture {
    QTemporaryDir dir;

    QString sample(int plots, quint32 seed = 7) {
        veldra::plantool::SampleOptions options;
        options.plots = plots;
        options.seed = seed;
        options.raster = false;
        return veldra::plantool::generateSamplePlan(dir.path(), options);
    }
    QString empty(const QString& name = QStringLiteral("Vide")) {
        return veldra::plantool::createEmptyPlan(dir.path(), name);
    }
};
