// Two clerks on one plan in the database: another clerk's lock makes a write give up with
// a clear message and roll back; two processes see each other's edits on reopen, and
// updates of the same plot from both never leave it half one, half the other.
#include "carto/model/update_access.h"
#include "pg_fixture.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

using carto::Map;
using carto::UpdateAccess;

namespace {

// One clerk's update of plot `fid`: the same mark in two columns. False when another
// clerk's lock made it give up (the message says so); any other failure fails the test.
bool marque(Map& m, qint64 fid, const QString& valeur) {
    carto::Layer& tombes = m.requireLayer(u"Tombes");
    try {
        UpdateAccess access(m);
        carto::Feature f = tombes.feature(fid);
        f.setAttribute(u"Nom", valeur);
        f.setAttribute(u"CLETOMBE", valeur);
        tombes.updateFeature(f);
        access.commit();
        return true;
    } catch (const veldra::Erreur& e) {
        EXPECT_EQ(e.numero(), veldra::err::PlanOccupe) << qPrintable(e.description());
        return false;
    }
}

} // namespace

TEST_F(PgTest, AnotherClerksLockGivesAClearMessageAndTheBracketRollsBack) {
    const QString base = enBase(50);
    Map m;
    m.loadMapSet(base);
    carto::Layer& tombes = m.requireLayer(u"Tombes");
    const QVariant avant = tombes.feature(5).attribute(u"Nom");

    // The other clerk: a transaction holding plot 5.
    GDALDatasetUniquePtr autre(
        GDALDataset::Open(base.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
    ASSERT_NE(autre, nullptr);
    ASSERT_EQ(autre->StartTransaction(), OGRERR_NONE);
    OGRLayer* verrou =
        autre->ExecuteSQL("SELECT fid FROM \"Tombes\" WHERE fid = 5 FOR UPDATE", nullptr, nullptr);
    ASSERT_NE(verrou, nullptr);
    OGRFeatureUniquePtr(verrou->GetNextFeature()); // the row is locked once read
    autre->ReleaseResultSet(verrou);

    QElapsedTimer chrono;
    chrono.start();
    try {
        UpdateAccess access(m);
        carto::Feature f = tombes.feature(5);
        f.setAttribute(u"Nom", QStringLiteral("Bloqué"));
        tombes.updateFeature(f);
        carto::Feature g = tombes.feature(6);
        g.setAttribute(u"Nom", QStringLiteral("Bloqué aussi"));
        tombes.updateFeature(g);
        access.commit();
        ADD_FAILURE() << "écrit malgré le verrou";
    } catch (const veldra::Erreur& e) {
        EXPECT_EQ(e.numero(), veldra::err::PlanOccupe);
        EXPECT_TRUE(e.description().contains(u"autre poste")) << qPrintable(e.description());
    }
    EXPECT_LT(chrono.elapsed(), 5000); // the clerk hears of it at once, not never
    EXPECT_EQ(tombes.feature(5).attribute(u"Nom"), avant);
    EXPECT_EQ(tombes.feature(6).attribute(u"Nom"), relu(base, 6, "Nom"));

    // Once the other clerk is done, the same write goes through.
    autre->CommitTransaction();
    EXPECT_TRUE(marque(m, 5, QStringLiteral("Libre")));
    EXPECT_EQ(relu(base, 5, "Nom").toString(), "Libre");
}

// The second clerk, run by the test below as a process of its own.
TEST(PgPosteEnfant, MarquePlusieursFois) {
    const QString base = qEnvironmentVariable("VELDRA_PG_PLAN");
    if (base.isEmpty())
        GTEST_SKIP() << "lancé par TwoProcesses seulement";
    Map m;
    m.loadMapSet(base);
    QFile(qEnvironmentVariable("VELDRA_PG_PRET")).open(QIODevice::WriteOnly);
    for (int i = 0; i < 25; ++i)
        marque(m, 5, QStringLiteral("Enfant %1").arg(i));
    ASSERT_TRUE(marque(m, 7, QStringLiteral("Vu par l'enfant")));
}

TEST_F(PgTest, TwoProcessesSeeEachOthersEditsAndNeverHalfAPlot) {
    const QString base = enBase(50);
    Map m;
    m.loadMapSet(base);
    ASSERT_TRUE(marque(m, 9, QStringLiteral("Vu par le parent")));

    QProcess enfant;
    const QString pret = dir.filePath(QStringLiteral("pret"));
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("VELDRA_PG_PLAN"), base);
    env.insert(QStringLiteral("VELDRA_PG_PRET"), pret);
    enfant.setProcessEnvironment(env);
    enfant.setProcessChannelMode(QProcess::ForwardedChannels);
    enfant.start(QCoreApplication::applicationFilePath(),
                 {QStringLiteral("--gtest_filter=PgPosteEnfant.*")});
    QElapsedTimer attente;
    attente.start();
    while (!QFile::exists(pret) && attente.elapsed() < 30000)
        QThread::msleep(10);
    for (int i = 0; i < 25; ++i)
        marque(m, 5, QStringLiteral("Parent %1").arg(i));
    ASSERT_TRUE(enfant.waitForFinished(60000));
    EXPECT_EQ(enfant.exitCode(), 0);

    // Each one sees the other's edit on reopen; plot 5 is wholly one clerk's last write.
    m.loadMapSet(base);
    const carto::Layer& tombes = m.requireLayer(u"Tombes");
    EXPECT_EQ(tombes.feature(7).attribute(u"Nom").toString(), "Vu par l'enfant");
    EXPECT_EQ(tombes.feature(9).attribute(u"Nom").toString(), "Vu par le parent");
    const QString nom = tombes.feature(5).attribute(u"Nom").toString();
    EXPECT_EQ(tombes.feature(5).attribute(u"CLETOMBE").toString(), nom);
    EXPECT_TRUE(nom.startsWith(u"Parent") || nom.startsWith(u"Enfant")) << qPrintable(nom);
}
