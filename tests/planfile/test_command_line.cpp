#include "veldra-plan/command_line.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace veldra::plantool;

namespace {

Command parsed(const QStringList& args) {
    const auto r = parseCommandLine(args);
    if (const QString* problem = std::get_if<QString>(&r)) {
        ADD_FAILURE() << problem->toStdString();
        return {};
    }
    return std::get<Command>(r);
}

struct Outcome {
    int exitCode;
    QString out;
    QString err;
};

Outcome run(const QStringList& args) {
    QProcess p;
    p.start(QStringLiteral(VELDRA_PLAN_EXE), args);
    if (!p.waitForFinished(60000))
        return {-1, {}, QStringLiteral("timed out")};
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()),
            QString::fromUtf8(p.readAllStandardError())};
}

} // namespace

TEST(CommandLine, ReadsCopyAndImportWithTheirMappings) {
    const Command copie = parsed(
        {QStringLiteral("copy"), QStringLiteral("a.gpkg"), QStringLiteral("PG:dbname=plan")});
    EXPECT_EQ(copie.kind, Command::Kind::Copy);
    EXPECT_EQ(copie.destination, "PG:dbname=plan");
    const Command import =
        parsed({QStringLiteral("import"), QStringLiteral("sig"), QStringLiteral("Plan.gpkg"),
                QStringLiteral("--map"), QStringLiteral("Tombes=PARCELLES,Sections=SECT"),
                QStringLiteral("--field"), QStringLiteral("Numero=NUM"), QStringLiteral("--field"),
                QStringLiteral("Tombes.Nom=FAMILLE")});
    EXPECT_EQ(import.kind, Command::Kind::Import);
    ASSERT_EQ(import.import.layers.size(), 2u);
    EXPECT_EQ(import.import.layers[1].second, "SECT");
    ASSERT_EQ(import.import.fields.size(), 2u);
    EXPECT_EQ(import.import.fields[1].first, "Tombes.Nom");
    for (const QStringList& faux :
         {QStringList{QStringLiteral("import"), QStringLiteral("a"), QStringLiteral("b.gpkg"),
                      QStringLiteral("--map"), QStringLiteral("Tombes")},
          QStringList{QStringLiteral("import"), QStringLiteral("a"), QStringLiteral("--map")},
          QStringList{QStringLiteral("copy"), QStringLiteral("a")}})
        EXPECT_TRUE(std::holds_alternative<QString>(parseCommandLine(faux)))
            << qPrintable(faux.join(u' '));
}

TEST(CommandLine, ReadsEachCommand) {
    Command c = parsed({"create", "/d", "Plan"});
    EXPECT_EQ(c.kind, Command::Kind::Create);
    EXPECT_EQ(c.folder, "/d");
    EXPECT_EQ(c.name, "Plan");

    c = parsed(
        {"generate", "--plots", "25", "/d", "--seed", "4000000000", "--name", "X", "--no-raster"});
    EXPECT_EQ(c.kind, Command::Kind::Generate);
    EXPECT_EQ(c.folder, "/d");
    EXPECT_EQ(c.sample.plots, 25);
    EXPECT_EQ(c.sample.seed, 4000000000u);
    EXPECT_EQ(c.sample.name, "X");
    EXPECT_FALSE(c.sample.raster);
    EXPECT_FALSE(c.sample.faults);
    EXPECT_TRUE(parsed({"generate", "/d", "--faults"}).sample.faults);

    c = parsed({"generate", "/d"});
    const SampleOptions defaults;
    EXPECT_EQ(c.sample.plots, defaults.plots);
    EXPECT_EQ(c.sample.seed, defaults.seed);
    EXPECT_TRUE(c.sample.raster);

    EXPECT_EQ(parsed({"library", "/d"}).kind, Command::Kind::Library);
    EXPECT_EQ(parsed({"--help"}).kind, Command::Kind::Help);
}

TEST(CommandLine, RefusesWhatMakesNoCommand) {
    const std::vector<QStringList> bad{
        {},
        {"create", "/d"},
        {"create", "/d", "a", "b"},
        {"library"},
        {"generate"},
        {"generate", "/d", "/e"},
        {"generate", "/d", "--plots"},
        {"generate", "/d", "--plots", "douze"},
        {"generate", "/d", "--seed", "-1"},
        {"generate", "/d", "--couleur", "1"},
        {"detruire", "/d"},
    };
    for (const QStringList& args : bad)
        EXPECT_TRUE(std::holds_alternative<QString>(parseCommandLine(args)))
            << args.join(' ').toStdString();
}

TEST(CommandLine, PrintsThePathOrTheMessageWithItsStatus) {
    QTemporaryDir dir;
    Outcome r = run({"create", dir.path(), "Plan"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(r.out.trimmed(), QDir(dir.path()).filePath("Plan.gpkg"));

    r = run({"create", dir.path(), "Plan"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.err.contains("existe déjà")) << r.err.toStdString();
    EXPECT_TRUE(r.out.isEmpty());

    r = run({"generate", dir.path(), "--plots", "-3"});
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.err.contains("emplacements")) << r.err.toStdString();

    r = run({"generate", dir.path(), "--plots", "30", "--no-raster"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(QFile::exists(r.out.trimmed()));

    r = run({"library", dir.path()});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.trimmed().endsWith("Bibli/Bibli.gst"));

    // A control's folder: both cursors readable as cursors, and the library.
    r = run({"resources", dir.path()});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    for (const char* cursor : {"CurRegle.cur", "Infos.cur"}) {
        const QImage image(QDir(dir.path()).filePath(QStringLiteral("Images/Curseurs/") + cursor),
                           "cur");
        EXPECT_EQ(image.size(), QSize(32, 32)) << cursor;
    }
    EXPECT_TRUE(QFile::exists(QDir(dir.path()).filePath("Bibli/Bibli.gst")));

    r = run({"frobnicate"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("Usage")) << r.err.toStdString();
}
