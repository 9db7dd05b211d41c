// Counted references to features' data: the data lives exactly as long as its last
// reference, a copy of the data is counted on its own, and references taken and dropped
// on two threads at once leave the count right.
#include "carto/model/feature.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace carto;

namespace {

// Counts its destructions, to see each object freed once and only once.
struct Tracked {
    RefCount refs;
    int* destroyed;
    explicit Tracked(int* counter) : destroyed(counter) {}
    Tracked(const Tracked&) = default;
    ~Tracked() { ++*destroyed; }
};

} // namespace

TEST(DataRef, FreesTheDataWithItsLastReferenceOnly) {
    int destroyed = 0;
    {
        auto a = DataRef<Tracked>::make(&destroyed);
        EXPECT_EQ(a.use_count(), 1);
        DataRef<const Tracked> b = a; // as a layer shares what a Feature made
        EXPECT_EQ(a.use_count(), 2);
        DataRef<const Tracked> c = std::move(b);
        EXPECT_FALSE(b); // NOLINT: moved from, null
        EXPECT_EQ(c.use_count(), 2);
        a.reset();
        EXPECT_EQ(destroyed, 0);
        EXPECT_EQ(c.use_count(), 1);
        // A copy of the data is a new object, counted from zero.
        auto copy = DataRef<Tracked>::make(*c);
        EXPECT_EQ(copy.use_count(), 1);
        EXPECT_EQ(c.use_count(), 1);
        c = copy;
        EXPECT_EQ(destroyed, 1);
        EXPECT_EQ(copy.use_count(), 2);
    }
    EXPECT_EQ(destroyed, 2);
}

TEST(DataRef, FeaturesCopyOnWriteAcrossThreads) {
    Feature f = Feature::symbol({1, 2});
    const FeaturePtr shared = f.shared();
    std::vector<std::thread> threads;
    for (int t = 0; t < 2; ++t)
        threads.emplace_back([&shared] {
            for (int i = 0; i < 20000; ++i) {
                FeaturePtr held = shared; // what a render does with a scene's data
                EXPECT_EQ(held->parts[0][0].x, 1);
            }
        });
    for (std::thread& t : threads)
        t.join();
    EXPECT_EQ(shared.use_count(), 2); // `f` and `shared`
    f.offset(1, 0);                   // shared: the feature copies before it changes
    EXPECT_EQ(shared->parts[0][0].x, 1);
    EXPECT_EQ(f.parts()[0][0].x, 2);
    EXPECT_EQ(shared.use_count(), 1);
}
