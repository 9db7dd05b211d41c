#pragma once
// Storage that refuses one kind of write to one feature, as a full disk or another program
// would refuse it halfway through an edit: a trigger added to the plan through a connection
// of its own. The plan's next write of that kind to that feature fails.

#include <QString>
#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <memory>

// `what` is INSERT, UPDATE or DELETE.
inline void refuseWrites(const QString& plan, const char* table, const char* what, qint64 fid) {
    GDALAllRegister();
    std::unique_ptr<GDALDataset> ds(
        GDALDataset::Open(plan.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
    ASSERT_NE(ds, nullptr);
    const QString verb = QString::fromLatin1(what);
    const QString row = verb == u"INSERT" ? QStringLiteral("NEW") : QStringLiteral("OLD");
    const QString sql = QStringLiteral("CREATE TRIGGER refuse_%1_%2 BEFORE %1 ON \"%3\" WHEN "
                                       "%4.fid = %2 BEGIN SELECT RAISE(ABORT, 'écriture "
                                       "refusée'); END")
                            .arg(verb)
                            .arg(fid)
                            .arg(QString::fromUtf8(table), row);
    CPLErrorReset();
    ds->ExecuteSQL(sql.toUtf8().constData(), nullptr, nullptr);
    ASSERT_LT(CPLGetLastErrorType(), CE_Failure) << CPLGetLastErrorMsg();
}
