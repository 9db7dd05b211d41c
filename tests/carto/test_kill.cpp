// A process killed in the middle of an update bracket leaves the plan with all or none of
// the bracket's changes. The test runs itself as the child that gets killed.
#include "carto/model/map.h"
#include "plan_fixture.h"

#include <QCoreApplication>
#include <QProcess>
#include <cstdio>
#include <gtest/gtest.h>

using namespace carto;

namespace {

constexpr int kPlots = 10000;
constexpr const char* kChildVariable = "VELDRA_KILL_CHILD_PLAN";

} // namespace

// Runs only as the child: updates every plot in one bracket and reports its progress.
TEST(KillChild, UpdateEveryPlot) {
    const QString path = qEnvironmentVariable(kChildVariable);
    if (path.isEmpty())
        GTEST_SKIP() << "run by KillDuringBracket only";
    Map map;
    map.loadMapSet(path);
    Layer& plots = map.requireLayer(u"Tombes");
    plots.beginAccess(1);
    int done = 0;
    for (Feature f : plots.allFeatures()) {
        f.setAttribute(u"CLETOMBE", QStringLiteral("tué"));
        plots.updateFeature(f);
        if (++done % 500 == 0) {
            std::printf("progress %d\n", done);
            std::fflush(stdout);
        }
    }
    std::printf("writes done\n");
    std::fflush(stdout);
    plots.endAccess();
}

TEST(MapStore, KillDuringBracketLeavesAllOrNothing) {
    PlanFixture plans;
    const QString path = plans.sample(kPlots);
    QProcess child;
    auto env = QProcessEnvironment::systemEnvironment();
    env.insert(kChildVariable, path);
    child.setProcessEnvironment(env);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--gtest_filter=KillChild.UpdateEveryPlot")});
    ASSERT_TRUE(child.waitForStarted());
    QByteArray out;
    while (!out.contains("progress 5000") && child.state() == QProcess::Running) {
        child.waitForReadyRead(1000);
        out += child.readAllStandardOutput();
    }
    ASSERT_TRUE(out.contains("progress 5000")) << out.constData();
    child.kill(); // SIGKILL
    child.waitForFinished();

    Map map;
    map.loadMapSet(path);
    const int changed = map.requireLayer(u"Tombes").search(u"CLETOMBE = \"tué\"").count();
    EXPECT_TRUE(changed == 0 || changed == kPlots) << changed << " plots changed";
}
