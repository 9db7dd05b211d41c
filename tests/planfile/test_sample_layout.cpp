#include "veldra-plan/random.h"
#include "veldra-plan/sample_layout.h"

#include <QSet>
#include <gtest/gtest.h>

using namespace veldra::plantool;

TEST(Random, ASeedGivesTheSameDrawsEverywhere) {
    // The first outputs of mt19937 seeded 5489 are fixed by the C++ standard; the mapping
    // to ranges is ours. A change here changes every sample plan.
    Random r(5489);
    EXPECT_EQ(r.integer(0, 9), 8);
    EXPECT_NEAR(r.real(0, 1), 0.135477004107, 1e-12);
    EXPECT_EQ(r.integer(-5, 5), 4);
}

TEST(Random, DrawsStayInTheirRange) {
    Random r(3);
    QSet<int> seen;
    for (int i = 0; i < 5000; ++i) {
        const int v = r.integer(-3, 3);
        ASSERT_GE(v, -3);
        ASSERT_LE(v, 3);
        seen.insert(v);
        const double d = r.real(2, 2.5);
        ASSERT_GE(d, 2);
        ASSERT_LT(d, 2.5);
    }
    EXPECT_EQ(seen.size(), 7);
    EXPECT_EQ(r.integer(4, 4), 4);
    EXPECT_EQ(r.integer(4, 1), 4);
    const int wide = r.integer(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    (void)wide; // no overflow on the widest range
}

class LayoutCounts : public testing::TestWithParam<int> {};

TEST_P(LayoutCounts, ExactlyThePlotsAskedNumberedWithinTheirAlley) {
    const int n = GetParam();
    const SampleLayout layout = layOutSample(n, QStringLiteral("Essai"), 11);
    EXPECT_EQ(layout.plotCount(), n);
    ASSERT_GE(layout.sections.size(), 2u);
    QSet<QString> names;
    for (const SectionLayout& s : layout.sections) {
        ASSERT_GE(s.alleys.size(), 2u);
        EXPECT_FALSE(names.contains(s.name));
        names.insert(s.name);
        for (const AlleyLayout& a : s.alleys) {
            for (std::size_t i = 0; i < a.plots.size(); ++i) {
                const PlotLayout& p = a.plots[i];
                ASSERT_EQ(p.numero, static_cast<int>(i) + 1);
                ASSERT_EQ(p.corners.size(), 4u);
                for (std::size_t j = 0; j < 4; ++j)
                    ASSERT_NE(p.corners[j], p.corners[(j + 1) % 4]);
                ASSERT_GT(p.numberSize, 0.2);
                ASSERT_LE(p.numberSize, 0.5);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Counts, LayoutCounts, testing::Values(0, 1, 7, 599, 1200, 30001, 100000));

TEST(Layout, PlotsAreAboutOneByTwoMetresAndSomeAreTurned) {
    const SampleLayout layout = layOutSample(3000, QStringLiteral("Essai"), 2);
    int turned = 0;
    for (const SectionLayout& s : layout.sections)
        for (const AlleyLayout& a : s.alleys)
            for (const PlotLayout& p : a.plots) {
                const double w =
                    std::hypot(p.corners[1].x - p.corners[0].x, p.corners[1].y - p.corners[0].y);
                const double d =
                    std::hypot(p.corners[2].x - p.corners[1].x, p.corners[2].y - p.corners[1].y);
                ASSERT_GE(w, 0.85);
                ASSERT_LE(w, 1.25);
                ASSERT_GE(d, 1.95);
                ASSERT_LE(d, 2.45);
                ASSERT_LE(std::abs(p.angle), 8.0);
                turned += p.angle != 0 ? 1 : 0;
            }
    EXPECT_GT(turned, 0);
    EXPECT_LT(turned, 3000);
}

TEST(Layout, DeliberateFaultsTouchOnlyTheirPlotsAndNeedEnoughOfThem) {
    const SampleLayout sain = layOutSample(300, QStringLiteral("Essai"), 4);
    SampleLayout fautif = sain;
    addDeliberateFaults(fautif);
    EXPECT_EQ(fautif.plotCount(), 300);
    int changes = 0;
    for (std::size_t s = 0; s < sain.sections.size(); ++s)
        for (std::size_t a = 0; a < sain.sections[s].alleys.size(); ++a) {
            const AlleyLayout& avant = sain.sections[s].alleys[a];
            const AlleyLayout& apres = fautif.sections[s].alleys[a];
            changes += avant.name != apres.name ? 1 : 0;
            for (std::size_t i = 0; i < avant.plots.size(); ++i) {
                const PlotLayout& p = avant.plots[i];
                const PlotLayout& q = apres.plots[i];
                changes += p.centre != q.centre || p.numero != q.numero || p.numbered != q.numbered
                               ? 1
                               : 0;
            }
        }
    // Three plots of the first alley, three moved from the last, one alley's name.
    EXPECT_EQ(changes, 3 + 3 + 1);
    const std::vector<PlotLayout>& premiere = fautif.sections.front().alleys.front().plots;
    EXPECT_EQ(premiere[3].numero, premiere[2].numero);
    EXPECT_FALSE(premiere[5].numbered);

    // Too few plots for them: the faults that need plots are left out, nothing breaks.
    for (int n : {0, 1, 3, 7}) {
        SampleLayout petit = layOutSample(n, QStringLiteral("Essai"), 4);
        addDeliberateFaults(petit);
        EXPECT_EQ(petit.plotCount(), n);
    }
}
