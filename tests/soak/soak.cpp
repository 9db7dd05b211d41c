// The soak: a child process does real work on a copy of a sample plan (whole-plan MAJ,
// update brackets that rename, move, delete and copy plots with their numbers, deletions
// confirmed by the host) and is killed with SIGKILL at a random moment, again and again.
// After each kill the plan is reopened and checked: SQLite's integrity, the bracket that
// was open is all or nothing, the R-trees agree with their tables, and every plot keeps
// exactly one number label lying on it.
//
//   veldra-soak [--kills N] [--plots P] [--seed S]
// prints "N kills, A integrity failures, B half-written, C invariant failures" and exits
// non-zero when any check failed. The child is the same program run with --child.
#include "soak_checks.h"
#include "soak_work.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>

namespace {

int parent(int kills, int plots, quint32 seed) {
    QTemporaryDir dir;
    if (!dir.isValid()) {
        std::fprintf(stderr, "veldra-soak: no temporary folder\n");
        return 2;
    }
    const QString master = soak::makePlan(dir.path(), plots);
    const QString plan = dir.filePath(QStringLiteral("travail.gpkg"));
    const QString journal = dir.filePath(QStringLiteral("journal.txt"));
    QRandomGenerator random(seed);
    soak::Tally tally;
    for (int k = 1; k <= kills; ++k) {
        // A fresh copy now and then, before the work has thinned the plan out.
        if (k == 1 || soak::plotCount(plan) < plots / 2) {
            QFile::remove(plan);
            QFile::copy(master, plan);
            QFile::setPermissions(plan, QFile::ReadOwner | QFile::WriteOwner);
        }
        QFile::remove(journal);
        QProcess child;
        child.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        child.setStandardOutputFile(QProcess::nullDevice());
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("--child"), plan, QStringLiteral("--journal"), journal,
                     QStringLiteral("--seed"), QString::number(seed + quint32(k)),
                     QStringLiteral("--folder"), dir.path()});
        if (!child.waitForStarted(10000)) {
            std::fprintf(stderr, "veldra-soak: the child did not start\n");
            return 2;
        }
        // Anywhere from the start-up to deep into the work.
        QThread::msleep(random.bounded(100u, 2500u));
        child.kill();
        child.waitForFinished(10000);
        tally.add(soak::check(plan, journal));
        if (k % 50 == 0)
            std::fprintf(stderr, "veldra-soak: %d kills\n", k);
    }
    std::printf("%d kills, %d integrity failures, %d half-written, %d invariant failures\n", kills,
                tally.integrity, tally.halfWritten, tally.invariants);
    std::fflush(stdout);
    return tally.clean() ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        // Qt wants one, private to the user; children inherit it.
        const QString runtime = QDir::tempPath() + QStringLiteral("/veldra-soak-runtime");
        QDir().mkpath(runtime);
        QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime));
    }
    QApplication app(argc, argv);
    QCommandLineParser options;
    options.addOption({QStringLiteral("kills"), QStringLiteral("kills"), QStringLiteral("N"),
                       QStringLiteral("1000")});
    options.addOption({QStringLiteral("plots"), QStringLiteral("plots"), QStringLiteral("P"),
                       QStringLiteral("1500")});
    options.addOption(
        {QStringLiteral("seed"), QStringLiteral("seed"), QStringLiteral("S"), QStringLiteral("1")});
    options.addOption({QStringLiteral("child"), QStringLiteral("child"), QStringLiteral("PLAN")});
    options.addOption(
        {QStringLiteral("journal"), QStringLiteral("journal"), QStringLiteral("FILE")});
    options.addOption({QStringLiteral("folder"), QStringLiteral("folder"), QStringLiteral("DIR")});
    options.process(app);
    const quint32 seed = options.value(QStringLiteral("seed")).toUInt();
    if (options.isSet(QStringLiteral("child")))
        return soak::work(options.value(QStringLiteral("child")),
                          options.value(QStringLiteral("journal")),
                          options.value(QStringLiteral("folder")), seed);
    return parent(options.value(QStringLiteral("kills")).toInt(),
                  options.value(QStringLiteral("plots")).toInt(), seed);
}
