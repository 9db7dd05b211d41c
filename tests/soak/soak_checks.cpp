#include "soak_checks.h"

#include "carto/model/map.h"
#include "soak_digest.h"

#include <QFile>
#include <cstdio>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

namespace soak {

namespace {

using Dataset = std::unique_ptr<GDALDataset>;

// Opened as the next user of the plan opens it, for update: SQLite then rolls back what
// the killed child left in its journal before anything is read.
Dataset openPlan(const QString& plan) {
    GDALAllRegister();
    return Dataset(GDALDataset::Open(plan.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
}

// The first value of the first row of a query; "" when there is none.
QString firstValue(GDALDataset& ds, const QString& sql) {
    OGRLayer* result = ds.ExecuteSQL(sql.toUtf8().constData(), nullptr, nullptr);
    if (!result)
        return {};
    QString value;
    if (OGRFeature* f = result->GetNextFeature()) {
        value = QString::fromUtf8(f->GetFieldAsString(0));
        OGRFeature::DestroyFeature(f);
    }
    ds.ReleaseResultSet(result);
    return value;
}

void reason(const char* what, const QString& detail = {}) {
    std::fprintf(stderr, "veldra-soak: %s %s\n", what, qPrintable(detail));
}

// The last step the journal began, what the plan held then and what it would hold after.
struct Step {
    bool begun = false;
    QByteArray before, after;
    bool done = false;
};

Step lastStep(const QString& journal) {
    QFile f(journal);
    Step s;
    if (!f.open(QIODevice::ReadOnly))
        return s;
    for (const QByteArray& line : f.readAll().split('\n')) {
        const QList<QByteArray> words = line.split(' ');
        if (words.size() >= 3 && words[0] == "begin")
            s = Step{true, words[2], {}, false};
        else if (words.size() >= 3 && words[0] == "expect")
            s.after = words[2];
        else if (words.size() >= 2 && words[0] == "done")
            s.done = true;
    }
    return s;
}

bool treesAgree(GDALDataset& ds) {
    bool ok = true;
    for (int i = 0; i < ds.GetLayerCount(); ++i) {
        OGRLayer* layer = ds.GetLayer(i);
        const QString table = QString::fromUtf8(layer->GetName());
        const QString geom = QString::fromUtf8(layer->GetGeometryColumn());
        if (geom.isEmpty())
            continue;
        const QString tree = QStringLiteral("\"rtree_%1_%2\"").arg(table, geom);
        const QString t = QStringLiteral("\"%1\"").arg(table);
        const QString missing = firstValue(
            ds, QStringLiteral("SELECT COUNT(*) FROM %1 WHERE \"%2\" IS NOT NULL AND NOT "
                               "ST_IsEmpty(\"%2\") AND fid NOT IN (SELECT id FROM %3)")
                    .arg(t, geom, tree));
        const QString stale = firstValue(
            ds, QStringLiteral("SELECT COUNT(*) FROM %1 WHERE id NOT IN (SELECT fid FROM %2)")
                    .arg(tree, t));
        const QString wrong = firstValue(
            ds, QStringLiteral("SELECT COUNT(*) FROM %1 t JOIN %2 r ON r.id = t.fid WHERE "
                               "r.minx > ST_MinX(t.\"%3\") + 1e-3 OR r.maxx < ST_MaxX(t.\"%3\") - "
                               "1e-3 OR r.miny > ST_MinY(t.\"%3\") + 1e-3 OR r.maxy < "
                               "ST_MaxY(t.\"%3\") - 1e-3")
                    .arg(t, tree, geom));
        if (missing != u"0" || stale != u"0" || wrong != u"0") {
            reason("R-tree and table disagree:", QStringLiteral("%1 missing %2, stale %3, wrong %4")
                                                     .arg(table, missing, stale, wrong));
            ok = false;
        }
    }
    return ok;
}

bool oneLabelPerPlot(const carto::Map& map) {
    const carto::Layer* plots = map.layer(u"Tombes");
    const carto::Layer* numbers = map.layer(u"Numeros");
    if (!plots || !numbers)
        return false;
    int wrong = 0;
    plots->forEachFeature([&](const carto::Feature& plot) {
        const QString number = plot.attribute(u"Numero").toString();
        if (number.isEmpty())
            return;
        int labels = 0;
        for (const carto::Feature& l :
             numbers->searchWithinFeature(plot, carto::searchmode::CentreWithin))
            labels += l.text() == number ? 1 : 0;
        wrong += labels == 1 ? 0 : 1;
    });
    if (wrong > 0)
        reason("plots without exactly one number label:", QString::number(wrong));
    return wrong == 0;
}

} // namespace

Verdict check(const QString& plan, const QString& journal) {
    Verdict v;
    {
        const Dataset ds = openPlan(plan);
        if (!ds) {
            reason("the plan no longer opens:", plan);
            v.integrity = false;
            return v;
        }
        const QString integrity = firstValue(*ds, QStringLiteral("PRAGMA integrity_check"));
        if (integrity != u"ok") {
            reason("integrity_check:", integrity);
            v.integrity = false;
        }
        v.invariants = treesAgree(*ds);
    }
    carto::Map map;
    try {
        map.loadMapSet(plan);
    } catch (const veldra::Erreur& e) {
        reason("the plan cannot be read:", e.message());
        v.integrity = false;
        return v;
    }
    const Step step = lastStep(journal);
    if (step.begun) {
        const QByteArray now = digest(map);
        const bool asBefore = now == step.before;
        const bool asAfter = !step.after.isEmpty() && now == step.after;
        v.complete =
            step.done ? asAfter || (step.after.isEmpty() && asBefore) : asBefore || asAfter;
        if (!v.complete)
            reason("the open bracket left part of its writes", QString::fromLatin1(now));
    }
    v.invariants = oneLabelPerPlot(map) && v.invariants;
    return v;
}

int plotCount(const QString& plan) {
    const Dataset ds = openPlan(plan);
    if (!ds)
        return 0;
    return firstValue(*ds, QStringLiteral("SELECT COUNT(*) FROM \"Tombes\"")).toInt();
}

} // namespace soak
