#include "analyse_fixture.h"

using namespace veldra;

namespace {

struct Memoire : AnalyseFixture {
    void choisit(std::initializer_list<int> ids) {
        carto::Features f(c->Calque_Tombe);
        for (const int id : ids)
            f.add(c->Calque_Tombe->searchEqual(u"IDGCF", id));
        c->Calque_Tombe->selectOnly(f);
    }
    void memorise() { c->contexte().crochets.enregistreMemorisation(); }
    void voir() { w<QPushButton>("Btn_VoirMemorisation")->click(); }

    QList<int> ids(RecordsetPtr rs) const {
        QList<int> out;
        for (; rs && !rs->eof(); rs->moveNext())
            out << rs->value(u"IDGCF").toInt();
        return out;
    }
};

} // namespace

TEST(Memorisation, NothingBeforeTheFirstMemorisation) {
    Memoire f;
    EXPECT_EQ(f.c->GetNbEltsMemorises(), 0);
    EXPECT_EQ(f.c->GetEltsMemorises(), nullptr);
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].texte, "Aucun élément mémorisé !");
    f.voir();
    EXPECT_EQ(f.messages.back().texte, "Aucun élément n'a été mémorisé !");
    EXPECT_EQ(f.messages.back().titre, "");
}

TEST(Memorisation, ThreePlotsAreKeptShownAgainAndHandedOut) {
    Memoire f;
    f.choisit({40, 3, 77});
    f.memorise();
    EXPECT_EQ(f.c->GetNbEltsMemorises(), 3);
    RecordsetPtr rs = f.c->GetEltsMemorises();
    ASSERT_NE(rs, nullptr);
    ASSERT_EQ(rs->fields().size(), 1u);
    EXPECT_EQ(rs->fields()[0].name, "IDGCF");
    EXPECT_EQ(rs->fields()[0].type, recordset::DataType::SmallInt);
    EXPECT_EQ(f.ids(rs), (QList<int>{40, 3, 77}));
    // The host's copy is its own: the control's set is whole afterwards.
    rs->moveFirst();
    rs->setValue(u"IDGCF", 1);
    rs->update();
    EXPECT_EQ(f.ids(f.c->GetEltsMemorises()), (QList<int>{40, 3, 77}));

    f.choisit({5, 6});
    f.voir();
    QList<int> choisis;
    for (const carto::Feature& t : f.c->Calque_Tombe->selection())
        choisis << t.attribute(u"IDGCF").toInt();
    EXPECT_EQ(choisis, (QList<int>{40, 3, 77}));
    carto::MapView& vue = *f.c->surface().Map1;
    const double zoom = vue.zoom();
    vue.setBounds(f.c->Calque_Tombe->selection().bounds());
    EXPECT_NEAR(zoom, vue.zoom() * 2.9, 1e-6 * zoom);

    // Through late binding too.
    QVariantList aucun;
    EXPECT_EQ(f.c->Invoke(0x68030000, aucun).toInt(), 3);
    EXPECT_EQ(f.ids(f.c->Invoke(0x600300af, aucun).value<RecordsetPtr>()), (QList<int>{40, 3, 77}));
    EXPECT_TRUE(f.messages.empty());
}

TEST(Memorisation, AnEmptySelectionOrAnotherLayersIsMemorisedAsNothing) {
    Memoire f;
    f.choisit({3});
    f.memorise();
    ASSERT_EQ(f.c->GetNbEltsMemorises(), 1);
    f.c->Calque_Tombe->clearSelection();
    f.memorise();
    EXPECT_EQ(f.c->GetNbEltsMemorises(), 0);
    EXPECT_EQ(f.c->GetEltsMemorises()->recordCount(), 0);
    f.voir();
    EXPECT_EQ(f.messages.back().texte, "Aucun élément n'a été mémorisé !");

    f.calqueCourant(QStringLiteral("Sections"));
    f.c->Calque_Sections->selectAdd(f.c->Calque_Sections->allFeatures().at(0).fid());
    f.memorise();
    EXPECT_EQ(f.c->GetNbEltsMemorises(), 0);
}

TEST(Memorisation, APlotWithoutKeyAndADeletedPlotFindNothingLater) {
    Memoire f;
    // The 29th plot has no concession key.
    const carto::Feature sansCle = f.c->Calque_Tombe->allFeatures().at(28);
    ASSERT_TRUE(sansCle.attribute(u"IDGCF").isNull());
    carto::Features choix(f.c->Calque_Tombe);
    choix.add(sansCle.fid());
    choix.add(f.c->Calque_Tombe->searchEqual(u"IDGCF", 8));
    choix.add(f.c->Calque_Tombe->searchEqual(u"IDGCF", 9));
    f.c->Calque_Tombe->selectOnly(choix);
    f.memorise();
    EXPECT_EQ(f.c->GetNbEltsMemorises(), 3);
    f.c->Calque_Tombe->deleteFeature(f.c->Calque_Tombe->searchEqual(u"IDGCF", 9).at(0).fid());
    f.voir();
    ASSERT_EQ(f.c->Calque_Tombe->selection().count(), 1);
    EXPECT_EQ(f.c->Calque_Tombe->selection().at(0).attribute(u"IDGCF").toInt(), 8);
}
