#pragma once
// The generated plans the benchmarks run on, made once and kept between runs (they are
// deterministic for a count of plots).

#include "veldra-plan/plan_tool.h"

#include <QDir>
#include <QFileInfo>
#include <QString>

inline QString planOf(int plots) {
    const QString folder = QDir::tempPath() + QStringLiteral("/veldra-bench");
    const QString name = QStringLiteral("Plan%1").arg(plots);
    const QString path = folder + u'/' + name + QStringLiteral(".gpkg");
    if (!QFileInfo::exists(path)) {
        veldra::plantool::SampleOptions options;
        options.plots = plots;
        options.seed = 2024;
        options.raster = false;
        options.name = name;
        veldra::plantool::generateSamplePlan(folder, options);
    }
    return path;
}
