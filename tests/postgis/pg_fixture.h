#pragma once
// The tests' PostgreSQL server, started on first need and stopped after the last test, and
// plans copied into fresh databases of it. Without a server every test is skipped with
// one line saying why.

#include "carto/model/map.h"
#include "pg_server.h"
#include "veldra-plan/plan_tool.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

// The server, or nullptr when it cannot start (`why` then says why).
veldra::testpg::PgServer* serveurPg(QString* why);

class PgTest : public ::testing::Test {
protected:
    void SetUp() override {
        QString why;
        pg = serveurPg(&why);
        if (!pg)
            GTEST_SKIP() << qPrintable(veldra::testpg::unavailableLine(why));
    }

    QString echantillon(int plots, bool raster = false) {
        veldra::plantool::SampleOptions o;
        o.plots = plots;
        o.seed = 11;
        o.raster = raster;
        return veldra::plantool::generateSamplePlan(dir.path(), o);
    }
    // A new database holding a copy of the plan; its connection string.
    QString enBase(const QString& plan) {
        const QString conn = pg->connection(pg->createDatabase());
        veldra::plantool::copyPlan(plan, conn);
        return conn;
    }
    QString enBase(int plots) { return enBase(echantillon(plots)); }

    veldra::testpg::PgServer* pg = nullptr;
    QTemporaryDir dir;
};

// The value of a column of a plot, read back from storage by a map of its own.
QVariant relu(const QString& plan, qint64 fid, const char* column);
