// What a plan stores is what it can hold, and memory holds exactly what storage holds: values
// refused rather than altered, texts cut to their columns, shapes checked, unreadable
// features left out, a locked plan refused quickly, measures exact far from the origin.
#include "base/erreur.h"
#include "carto/model/conform.h"
#include "carto/model/edit_commands.h"
#include "carto/model/map.h"
#include "plan_fixture.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QProcess>
#include <QThread>
#include <cmath>
#include <cstdio>
#include <gdal_priv.h>
#include <gtest/gtest.h>
#include <limits>
#include <ogrsf_frmts.h>

using namespace carto;
namespace err = veldra::err;

namespace {

Part rectangle(double x, double y, double w, double h) {
    return {{x, y}, {x + w, y}, {x + w, y + h}, {x, y + h}, {x, y}};
}

// What a map read afresh from storage holds for one feature.
FeatureData reread(const QString& path, const QString& layer, qint64 fid) {
    Map map;
    map.loadMapSet(path);
    return map.requireLayer(layer).feature(fid).data();
}

void expectSameAsStored(const Layer& layer, qint64 fid, const QString& path) {
    const Feature kept = layer.feature(fid);
    const FeatureData& memory = kept.data();
    const FeatureData stored = reread(path, layer.name(), fid);
    EXPECT_EQ(memory.kind, stored.kind);
    EXPECT_EQ(memory.parts, stored.parts);
    EXPECT_EQ(memory.text, stored.text);
    ASSERT_EQ(memory.attributes.size(), stored.attributes.size());
    for (size_t i = 0; i < memory.attributes.size(); ++i)
        EXPECT_EQ(memory.attributes[i], stored.attributes[i])
            << layer.fields()[i].name.toStdString() << ": "
            << memory.attributes[i].toString().toStdString() << " / "
            << stored.attributes[i].toString().toStdString();
    // What a style string keeps of each kind of feature.
    const Style &m = *memory.style, &s = *stored.style;
    switch (memory.kind) {
    case FeatureKind::Region:
        EXPECT_EQ(m.regionColor, s.regionColor);
        EXPECT_EQ(m.regionPattern, s.regionPattern);
        EXPECT_EQ(m.regionBorderColor, s.regionBorderColor);
        break;
    case FeatureKind::Text:
        EXPECT_EQ(m.textSize, s.textSize);
        EXPECT_EQ(m.textRotation, s.textRotation);
        EXPECT_EQ(m.textColor, s.textColor);
        break;
    default:
        break;
    }
}

qint32 refusal(auto&& f) {
    try {
        f();
    } catch (const veldra::Erreur& e) {
        return e.numero();
    }
    return 0;
}

} // namespace

// ---- values

struct ValueCase {
    FieldType type;
    QVariant given;
    QVariant stored; // invalid: refused
};

class ColumnValues : public ::testing::TestWithParam<ValueCase> {};

TEST_P(ColumnValues, AreStoredExactlyOrRefused) {
    const FieldDef field{QStringLiteral("IDGCF"), GetParam().type, 32};
    if (!GetParam().stored.isValid()) {
        EXPECT_EQ(refusal([&] { columnValue(field, GetParam().given); }), err::TypeIncompatible);
        return;
    }
    const QVariant v = columnValue(field, GetParam().given);
    EXPECT_EQ(v, GetParam().stored);
    EXPECT_EQ(v.typeId(), GetParam().stored.typeId());
}

INSTANTIATE_TEST_SUITE_P(
    Integers, ColumnValues,
    ::testing::Values(
        ValueCase{FieldType::Integer, 12, 12}, ValueCase{FieldType::Integer, 12.0, 12},
        ValueCase{FieldType::Integer, QStringLiteral(" 12 "), 12},
        ValueCase{FieldType::Integer, QStringLiteral("-7.0"), -7},
        ValueCase{FieldType::Integer, qlonglong(2147483647), 2147483647},
        ValueCase{FieldType::Integer, qlonglong(-2147483648LL), int(-2147483648LL)},
        ValueCase{FieldType::Integer, 3e9, {}}, ValueCase{FieldType::Integer, -3e9, {}},
        ValueCase{FieldType::Integer, 1e15, {}}, ValueCase{FieldType::Integer, std::nan(""), {}},
        ValueCase{FieldType::Integer, std::numeric_limits<double>::infinity(), {}},
        ValueCase{FieldType::Integer, 1.5, {}},
        ValueCase{FieldType::Integer, QStringLiteral("abc"), {}},
        ValueCase{FieldType::Integer, QStringLiteral("12abc"), {}},
        ValueCase{FieldType::Integer, true, {}},
        ValueCase{FieldType::Integer, QDate(2024, 5, 1), {}},
        ValueCase{FieldType::Integer64, 3e9, qlonglong(3000000000LL)},
        ValueCase{FieldType::Integer64, 1e15, qlonglong(1000000000000000LL)},
        ValueCase{FieldType::Integer64, QStringLiteral("9223372036854775807"),
                  qlonglong(9223372036854775807LL)},
        ValueCase{FieldType::Integer64, 9.3e18, {}}, ValueCase{FieldType::Integer64, 0.5, {}}));

INSTANTIATE_TEST_SUITE_P(
    RealsDatesTexts, ColumnValues,
    ::testing::Values(ValueCase{FieldType::Real, 2, 2.0},
                      ValueCase{FieldType::Real, QStringLiteral("3,5"), 3.5},
                      ValueCase{FieldType::Real, QStringLiteral("2.25"), 2.25},
                      ValueCase{FieldType::Real, std::nan(""), {}},
                      ValueCase{FieldType::Real, -std::numeric_limits<double>::infinity(), {}},
                      ValueCase{FieldType::Real, QStringLiteral("abc"), {}},
                      ValueCase{FieldType::Real, false, {}},
                      ValueCase{FieldType::Date, QStringLiteral("2024-05-01"),
                                QDateTime(QDate(2024, 5, 1), QTime(0, 0))},
                      ValueCase{FieldType::Date,
                                QDateTime(QDate(2024, 5, 1), QTime(10, 20, 30, 400)),
                                QDateTime(QDate(2024, 5, 1), QTime(10, 20, 30))},
                      ValueCase{FieldType::Date, QStringLiteral("hier"), {}},
                      ValueCase{FieldType::Text, 5, QStringLiteral("5")},
                      ValueCase{FieldType::Text, QString(10000, u'x'), QString(32, u'x')}));

TEST(ColumnValuesText, CutsCountCharactersNotHalvesOfThem) {
    const QString clef = QString::fromUcs4(U"\U0001F511"); // one character, two UTF-16 units
    EXPECT_EQ(cutToWidth(QString(31, u'a') + clef + clef, 32), QString(31, u'a') + clef);
    EXPECT_EQ(cutToWidth(clef + clef + clef, 2), clef + clef);
    EXPECT_EQ(cutToWidth(QStringLiteral("court"), 32), QStringLiteral("court"));
    EXPECT_EQ(cutToWidth(QString(100, u'é'), 0).size(), 100); // no width: no limit
    // A blank number is no number at all.
    const FieldDef n{QStringLiteral("IDGCF"), FieldType::Integer, 0};
    EXPECT_TRUE(columnValue(n, QStringLiteral("  ")).isNull());
    EXPECT_TRUE(columnValue(n, QVariant()).isNull());
}

TEST(StoredValues, AKeyTheColumnCannotHoldIsRefusedAndNothingOfTheRecordIsWritten) {
    PlanFixture plans;
    const QString path = plans.sample(10);
    Map map;
    map.loadMapSet(path);
    Layer& plots = map.requireLayer(u"Tombes");
    const qint64 fid = plots.allFeatures().at(0).fid();
    const QVariant before = plots.feature(fid).attribute(u"IDGCF");
    for (const QVariant& bad :
         {QVariant(3e9), QVariant(1e15), QVariant(-3e9), QVariant(std::nan("")), QVariant(1.5),
          QVariant(QStringLiteral("abc")), QVariant(true)}) {
        Feature f = plots.feature(fid);
        f.setAttribute(u"IDGCF", bad);
        f.setAttribute(u"Nom", QStringLiteral("Ne doit pas rester"));
        try {
            plots.updateFeature(f);
            ADD_FAILURE() << "accepted " << bad.toString().toStdString();
        } catch (const veldra::Erreur& e) {
            EXPECT_EQ(e.numero(), err::TypeIncompatible);
            // The message names the record and the column.
            EXPECT_TRUE(e.description().contains(QStringLiteral("L'objet %1").arg(fid)))
                << e.description().toStdString();
            EXPECT_TRUE(e.description().contains(QStringLiteral("IDGCF")));
        }
    }
    EXPECT_EQ(plots.feature(fid).attribute(u"IDGCF"), before);
    expectSameAsStored(plots, fid, path);
}

TEST(StoredValues, MemoryKeepsWhatStorageReadsBack) {
    PlanFixture plans;
    const QString path = plans.sample(10);
    Map map;
    map.loadMapSet(path);
    Layer& plots = map.requireLayer(u"Tombes");
    const qint64 fid = plots.allFeatures().at(0).fid();
    Feature f = plots.feature(fid);
    f.setAttribute(u"IDGCF", 4242.0);             // a host's number: stored as an integer
    f.setAttribute(u"Nom", QString(10000, u'N')); // a 32-character column
    f.setAttribute(u"AngleNumero", QStringLiteral("12,5"));
    f.setAttribute(u"Numero", 17);
    Style s = f.style();
    s.textSize = 12.3456789;
    s.textRotation = 33.33333333333;
    s.regionColor = 0x7F123456;
    f.setStyle(s);
    plots.updateFeature(f);
    const Feature now = plots.feature(fid);
    EXPECT_EQ(now.attribute(u"IDGCF"), QVariant(4242));
    EXPECT_EQ(now.attribute(u"Nom").toString().size(), 32);
    EXPECT_EQ(now.attribute(u"Numero"), QVariant(QStringLiteral("17")));
    EXPECT_EQ(now.style().regionColor, 0x123456);
    expectSameAsStored(plots, fid, path);

    Layer& labels = map.requireLayer(u"Numeros");
    const qint64 label = labels.addFeature(Feature::textAt({1, 1}, QString(300, u'9'), s)).fid();
    EXPECT_EQ(labels.feature(label).text().size(), 64); // the width of its text column
    expectSameAsStored(labels, label, path);
}

// ---- shapes

TEST(StoredShapes, PlotsWithoutAreaAreRefusedAndThePlotStaysAsItWas) {
    PlanFixture plans;
    const QString path = plans.empty();
    Map map;
    map.loadMapSet(path);
    Layer& plots = map.requireLayer(u"Tombes");
    // The first corner clicked twice: still a plot, its repeated point kept as drawn.
    const qint64 fid =
        plots.addFeature(Feature::region({{{0, 0}, {0, 0}, {3, 0}, {3, 2}, {0, 2}, {0, 0}}})).fid();
    EXPECT_DOUBLE_EQ(plots.feature(fid).area(), 6);
    const Parts collapsed[] = {
        {{{0, 0}, {3, 0}, {3, 0}, {0, 0}}},                 // flat
        {{{0, 0}, {0, 0}, {0, 0}, {0, 0}}},                 // a point
        {{{0, 0}, {3, 2}, {0, 2}, {3, 0}, {0, 0}}},         // a bow tie
        {{{0, 0}, {1e-300, 0}, {1e-300, 1e-300}, {0, 0}}}}; // below any precision
    for (const Parts& shape : collapsed) {
        EXPECT_EQ(
            refusal([&] { map.execute(std::make_unique<ReshapeFeature>(plots, fid, shape)); }),
            err::GeometrieInvalide);
        EXPECT_EQ(refusal([&] { plots.addFeature(Feature::region(shape)); }),
                  err::GeometrieInvalide);
    }
    EXPECT_EQ(plots.featureCount(), 1);
    EXPECT_DOUBLE_EQ(plots.feature(fid).area(), 6);
    expectSameAsStored(plots, fid, path);
}

TEST(StoredShapes, RingsAreKeptClosedAndInTheOrderStorageGivesBack) {
    PlanFixture plans;
    const QString path = plans.empty();
    Map map;
    map.loadMapSet(path);
    Layer& plots = map.requireLayer(u"Tombes");
    // Open rings, a hole listed before its shell, and a second plot part apart.
    const Parts rings{{{2, 2}, {4, 2}, {4, 4}, {2, 4}},
                      {{0, 0}, {10, 0}, {10, 10}, {0, 10}},
                      {{20, 0}, {23, 0}, {23, 2}, {20, 2}}};
    const qint64 fid = plots.addFeature(Feature::region(rings)).fid();
    const Parts& kept = plots.feature(fid).parts();
    ASSERT_EQ(kept.size(), 3u);
    EXPECT_EQ(kept[0].front(), (Point{0, 0}));  // the shell first
    EXPECT_EQ(kept[1].front(), (Point{2, 2}));  // then its hole
    EXPECT_EQ(kept[2].front(), (Point{20, 0})); // then the other part
    for (const Part& ring : kept)
        EXPECT_EQ(ring.front(), ring.back());
    EXPECT_DOUBLE_EQ(plots.feature(fid).area(), 100 - 4 + 6);
    expectSameAsStored(plots, fid, path);

    // Moved, the plot stays itself; a hole pushed out of its shell is refused.
    map.execute(std::make_unique<MoveFeatures>(plots, std::vector<qint64>{fid}, 1, 1));
    expectSameAsStored(plots, fid, path);
    Parts out = plots.feature(fid).parts();
    for (Point& p : out[1])
        p.x += 20;
    EXPECT_EQ(refusal([&] { map.execute(std::make_unique<ReshapeFeature>(plots, fid, out)); }),
              err::GeometrieInvalide);
    expectSameAsStored(plots, fid, path);
}

TEST(StoredShapes, CoordinatesBeyondThePlanAreRefused) {
    Map map;
    LayerInfo info;
    info.addParameter("Name", QStringLiteral("Zones"));
    Layer& zones = map.addLayer(info);
    EXPECT_EQ(refusal([&] { zones.addFeature(Feature::region({rectangle(1e13, 0, 1, 1)})); }),
              err::GeometrieInvalide);
    EXPECT_EQ(refusal([&] {
                  zones.addFeature(Feature::symbol({0, -2e12}));
              }),
              err::GeometrieInvalide);
    EXPECT_EQ(zones.featureCount(), 0);
}

// ---- reading

TEST(StoredShapes, UnreadableFeaturesAreLeftOutAndCounted) {
    PlanFixture plans;
    const QString path = plans.sample(10);
    {
        GDALAllRegister();
        std::unique_ptr<GDALDataset> ds(
            GDALDataset::Open(path.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
        ASSERT_NE(ds, nullptr);
        OGRLayer* plots = ds->GetLayerByName("Tombes");
        const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
        for (const auto& corner : {std::pair{nan, 0.0}, std::pair{0.0, inf}}) {
            OGRFeature f(plots->GetLayerDefn());
            OGRPolygon poly;
            OGRLinearRing ring;
            ring.addPoint(0, 0);
            ring.addPoint(corner.first, corner.second);
            ring.addPoint(1, 1);
            ring.addPoint(0, 0);
            poly.addRing(&ring);
            f.SetGeometry(&poly);
            ASSERT_EQ(plots->CreateFeature(&f), OGRERR_NONE);
        }
    }
    Map map;
    map.loadMapSet(path);
    EXPECT_EQ(map.unreadableCount(), 2);
    const Layer& plots = map.requireLayer(u"Tombes");
    EXPECT_EQ(plots.featureCount(), 10);
    plots.forEachFeature([](const Feature& f) {
        EXPECT_TRUE(std::isfinite(f.area()));
        EXPECT_TRUE(std::isfinite(f.length()));
    });
}

// ---- a plan locked by another program

namespace {
constexpr const char* kLockVariable = "VELDRA_LOCK_PLAN";
}

// Runs only as the other program: takes the plan's write lock and keeps it.
TEST(LockHolder, KeepsThePlansWriteLock) {
    const QString path = qEnvironmentVariable(kLockVariable);
    if (path.isEmpty())
        GTEST_SKIP() << "run by APlanLockedByAnotherProgramRefusesTheWriteQuickly only";
    GDALAllRegister();
    std::unique_ptr<GDALDataset> ds(
        GDALDataset::Open(path.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
    ASSERT_NE(ds, nullptr);
    ds->ExecuteSQL("BEGIN EXCLUSIVE", nullptr, nullptr);
    ASSERT_LT(CPLGetLastErrorType(), CE_Failure) << CPLGetLastErrorMsg();
    std::printf("locked\n");
    std::fflush(stdout);
    QThread::sleep(30); // killed long before
}

TEST(StoredShapes, APlanLockedByAnotherProgramRefusesTheWriteQuickly) {
    PlanFixture plans;
    const QString path = plans.sample(10);
    Map map;
    map.loadMapSet(path);
    Layer& plots = map.requireLayer(u"Tombes");
    const qint64 fid = plots.allFeatures().at(0).fid();
    const QVariant before = plots.feature(fid).attribute(u"Nom");

    QProcess other;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QString::fromLatin1(kLockVariable), path);
    other.setProcessEnvironment(env);
    other.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("--gtest_filter=LockHolder.*")});
    ASSERT_TRUE(other.waitForStarted(10000));
    QByteArray said;
    while (!said.contains("locked") && other.waitForReadyRead(20000))
        said += other.readAllStandardOutput();
    ASSERT_TRUE(said.contains("locked")) << said.constData();

    Feature f = plots.feature(fid);
    f.setAttribute(u"Nom", QStringLiteral("Occupé"));
    QElapsedTimer clock;
    clock.start();
    try {
        plots.updateFeature(f);
        ADD_FAILURE() << "the write went through a locked plan";
    } catch (const veldra::Erreur& e) {
        EXPECT_EQ(e.numero(), err::PlanOccupe) << e.description().toStdString();
        EXPECT_TRUE(e.description().contains(QStringLiteral("autre programme")));
    }
    EXPECT_LT(clock.elapsed(), 2500); // about 1.6 s: four short waits of GDAL's
    EXPECT_EQ(plots.feature(fid).attribute(u"Nom"), before);
    other.kill();
    other.waitForFinished();
    plots.updateFeature(f); // free again
    EXPECT_EQ(
        reread(path, QStringLiteral("Tombes"), fid).attributes[size_t(plots.fieldIndex(u"Nom"))],
        QVariant(QStringLiteral("Occupé")));
}

// ---- precision

TEST(Measures, StayExactFarFromTheOrigin) {
    for (const double far : {1e6, 1e8, 1e9, 1e11}) {
        const Feature plot = Feature::region({rectangle(far, far, 3, 2)});
        EXPECT_NEAR(plot.area(), 6, 1e-9) << far;
        EXPECT_NEAR(plot.centre().x - far, 1.5, 1e-6) << far;
        EXPECT_NEAR(plot.centre().y - far, 1, 1e-6) << far;
        // With a hole, through GEOS.
        const Feature ring =
            Feature::region({rectangle(far, far, 3, 2), rectangle(far + 1, far + 0.5, 1, 1)});
        EXPECT_NEAR(ring.area(), 5, 1e-6) << far;
        EXPECT_NEAR(ring.centre().x - far, 1.5, 1e-6) << far;
    }
}
