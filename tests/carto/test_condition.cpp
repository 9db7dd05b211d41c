// Conditions are parsed by our own grammar; hostile host text must never match everything.
#include "base/erreur.h"
#include "carto/model/condition.h"
#include "carto/model/map.h"

#include <gtest/gtest.h>

using namespace carto;

namespace {

struct Plots {
    Map map;
    Layer* layer;
    Plots() {
        LayerInfo info;
        info.addParameter("Name", QStringLiteral("Tombes"));
        info.addParameter("Fields", FieldList{{"IDGCF", FieldType::Integer, 0},
                                              {"Nom", FieldType::Text, 32},
                                              {"Numero", FieldType::Text, 32}});
        info.addParameter("TableStorageType", QStringLiteral("MemTable"));
        layer = &map.addLayer(info);
        const char* names[] = {"Martin", "martin", "Durand \"fils\"", "", "Petit"};
        for (int i = 0; i < 5; ++i) {
            Feature f =
                Feature::region({{{double(i), 0}, {i + 1.0, 0}, {i + 1.0, 2}, {double(i), 2}}});
            Feature stored = layer->addFeature(f);
            stored.setAttribute(u"IDGCF", 10 + i);
            stored.setAttribute(u"Nom", QString::fromUtf8(names[i]));
            stored.setAttribute(u"Numero", QString::number(i % 2 ? 12 : 7));
            layer->updateFeature(stored);
        }
    }
    int count(const char* condition) { return layer->search(QString::fromUtf8(condition)).count(); }
};

int errorOf(Plots& p, const char* condition) {
    try {
        p.count(condition);
    } catch (const veldra::Erreur& e) {
        return e.numero();
    }
    return 0;
}

} // namespace

TEST(Condition, TheFormsHostsUse) {
    Plots p;
    EXPECT_EQ(p.count("IDGCF=12"), 1);
    EXPECT_EQ(p.count("idgcf = 12.0"), 1);
    EXPECT_EQ(p.count("Nom = \"Martin\""), 2); // texts compare without case
    EXPECT_EQ(p.count("Nom= \"Durand \"\"fils\"\"\""), 1);
    EXPECT_EQ(p.count("Numero = 12"), 2); // a number against a text column
    EXPECT_EQ(p.count("Numero = \"12\" and IDGCF=13"), 1);
    EXPECT_EQ(p.count("Numero = \"12\" AND IDGCF=12"), 0);
    EXPECT_EQ(p.count("Nom = \"\""), 1);
    EXPECT_EQ(p.count("IDGCF=99"), 0);
}

TEST(Condition, HostileOrMalformedTextIsRefused) {
    Plots p;
    namespace err = veldra::err;
    for (const char* bad : {"1 or 1=1", "IDGCF=12 or 1=1", "IDGCF=12; DROP TABLE Tombes",
                            "Nom = \"Martin", "Nom = Martin", "= 3", "", "IDGCF", "IDGCF==3",
                            "IDGCF=12 and", "Nom = \"a\" and and Nom = \"b\""})
        EXPECT_EQ(errorOf(p, bad), err::ConditionIncorrecte) << bad;
    EXPECT_EQ(errorOf(p, "Section = \"A\""), err::ChampInconnu);
}

TEST(Condition, IndexesFollowEdits) {
    Plots p;
    EXPECT_EQ(p.count("IDGCF=10"), 1);
    Feature f = p.layer->search(u"IDGCF=10").at(0);
    f.setAttribute(u"IDGCF", 77);
    p.layer->updateFeature(f);
    EXPECT_EQ(p.count("IDGCF=10"), 0);
    EXPECT_EQ(p.count("IDGCF=77"), 1);
    p.layer->deleteFeature(f.fid());
    EXPECT_EQ(p.count("IDGCF=77"), 0);
}
