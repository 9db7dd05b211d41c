#pragma once
// Asserts that two maps hold the same plan: the same layers in the same order, the same
// columns, and feature by feature (same FIDs) the same kind, points, style, attributes and
// text. A raster layer must show the same image file.

#include "carto/model/map.h"

#include <QDir>
#include <gtest/gtest.h>

inline void expectSamePlans(const carto::Map& a, const carto::Map& b) {
    ASSERT_EQ(a.layerCount(), b.layerCount());
    for (int i = 0; i < a.layerCount(); ++i) {
        const carto::Layer& la = *a.layerAt(i);
        const carto::Layer& lb = *b.layerAt(i);
        SCOPED_TRACE(la.name().toStdString());
        ASSERT_EQ(la.name(), lb.name());
        EXPECT_EQ(QDir::cleanPath(la.rasterSource()), QDir::cleanPath(lb.rasterSource()));
        ASSERT_EQ(la.fields().size(), lb.fields().size());
        for (size_t c = 0; c < la.fields().size(); ++c) {
            EXPECT_EQ(la.fields()[c].name, lb.fields()[c].name);
            EXPECT_EQ(la.fields()[c].type, lb.fields()[c].type);
            EXPECT_EQ(la.fields()[c].width, lb.fields()[c].width);
        }
        EXPECT_EQ(la.textField(), lb.textField());
        ASSERT_EQ(la.featureCount(), lb.featureCount());
        int differences = 0;
        la.forEachFeature([&](const carto::Feature& fa) {
            if (!lb.hasFeature(fa.fid())) {
                ADD_FAILURE() << "FID " << fa.fid() << " manque";
                return;
            }
            const carto::FeatureData& da = fa.data();
            const carto::Feature fb = lb.feature(fa.fid());
            const carto::FeatureData& db = fb.data();
            const bool same = da.kind == db.kind && da.parts == db.parts && da.text == db.text &&
                              da.attributes == db.attributes && da.style && db.style &&
                              *da.style == *db.style;
            if (!same && ++differences <= 3)
                ADD_FAILURE() << "FID " << fa.fid() << " diffère";
        });
        EXPECT_EQ(differences, 0);
    }
}
