#include "analyse_fixture.h"
#include "analysis/analyse_plan.h"
#include "analysis/anomalies.h"

#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QToolButton>

using namespace veldra;

namespace {

int marques(Veldra& c) {
    const carto::Layer* temp = c.contexte().etat.calqueTemp;
    return temp ? temp->searchEqual(u"My_Field_Name", QString::fromLatin1(kMarqueAnomalie)).count()
                : -1;
}

QStringList lignes(const QListWidget& l) {
    QStringList out;
    for (int i = 0; i < l.count(); ++i)
        out << l.item(i)->text();
    return out;
}

} // namespace

TEST(Anomalies, OffByDefaultTheAnalysisLeavesNoPanelAndNoMark) {
    AnalyseFixture f(300, true);
    f.analyse();
    EXPECT_TRUE(f.w<QFrame>("Panel_Anomalies")->isHidden());
    EXPECT_EQ(marques(*f.c), 0);
}

TEST(Anomalies, EachFaultIsListedMarkedInMemoryAndFoundByAClick) {
    AnalyseFixture f(300, true);
    f.c->setAnalyseDetaillee(true);
    const qint64 taille = QFileInfo(f.chemin).size();
    f.analyse();
    auto* panneau = f.w<QFrame>("Panel_Anomalies");
    auto* liste = f.w<QListWidget>("Liste_Anomalies");
    ASSERT_FALSE(panneau->isHidden());
    const QStringList l = lignes(*liste);
    // 1 without number, 3 in no section and no alley, 2 across the wall and 1 outside,
    // 2 overlapping, 2 repeated numbers, 1 nameless alley.
    EXPECT_EQ(l.size(), 1 + 3 + 3 + 2 + 1 + 2 + 2 + 1) << l.join('\n').toStdString();
    EXPECT_EQ(l.filter(QStringLiteral("Terrain sans numéro")).size(), 1);
    EXPECT_EQ(l.filter(QStringLiteral(" : hors de l'enceinte")).size(), 1);
    EXPECT_EQ(l.filter(QStringLiteral("chevauche le terrain n° ")).size(), 2);
    EXPECT_EQ(l.filter(QStringLiteral("numéro porté par 2 terrains de cette allée")).size(), 2);
    EXPECT_EQ(l.filter(QStringLiteral("Allée sans nom")).size(), 1);
    EXPECT_EQ(f.w<QLabel>("Label_Anomalies")->text().left(17), "Anomalies du plan");
    // One mark per faulty feature: 1 + 3 + 2 + 2 plots and the alley.
    EXPECT_EQ(marques(*f.c), 9);
    EXPECT_TRUE(f.c->contexte().etat.calqueTemp->isMemory());

    // A click selects the plot outside the enclosure and frames it.
    const int dehors = int(l.indexOf(l.filter(QStringLiteral(" : hors de l'enceinte")).front()));
    emit liste->itemClicked(liste->item(dehors));
    const carto::Features choix = f.c->Calque_Tombe->selection();
    ASSERT_EQ(choix.count(), 1);
    const carto::Rect vue = f.c->surface().Map1->bounds();
    EXPECT_TRUE(vue.contains(choix.at(0).bounds()));
    EXPECT_FALSE(f.c->Calque_Enceinte->bounds().intersects(choix.at(0).bounds()));

    // Again: the marks are replaced, not added.
    f.analyse();
    EXPECT_EQ(marques(*f.c), 9);
    f.w<QToolButton>("Btn_FermerAnomalies")->click();
    EXPECT_TRUE(panneau->isHidden());
    EXPECT_EQ(marques(*f.c), 0);
    EXPECT_EQ(liste->count(), 0);
    // Nothing of this went to the plan's file.
    EXPECT_EQ(QFileInfo(f.chemin).size(), taille);
    EXPECT_TRUE(f.messages.empty());
}

TEST(Anomalies, AnotherPlanForgetsThePreviousFaults) {
    AnalyseFixture f(300, true);
    f.c->setAnalyseDetaillee(true);
    f.analyse();
    ASSERT_FALSE(f.w<QFrame>("Panel_Anomalies")->isHidden());
    f.ouvre(f.chemin);
    EXPECT_TRUE(f.w<QFrame>("Panel_Anomalies")->isHidden());
    EXPECT_EQ(f.w<QListWidget>("Liste_Anomalies")->count(), 0);
}

TEST(Anomalies, OnlyOverlapsAboveAHundredthOfASquareMetreCount) {
    AnalyseFixture f;
    const carto::Rect e = f.c->Calque_Enceinte->bounds();
    const double x = e.xmin + 1, y = e.ymin + 1;
    // 1 m high: 0.005 m of overlap is 0.005 m², 0.02 m is 0.02 m².
    f.ajouteTombe(AnalyseFixture::rectangle(x, y, x + 1, y + 1), QStringLiteral("900"));
    f.ajouteTombe(AnalyseFixture::rectangle(x + 0.995, y, x + 2, y + 1), QStringLiteral("901"));
    f.ajouteTombe(AnalyseFixture::rectangle(x + 3, y, x + 4, y + 1), QStringLiteral("902"));
    f.ajouteTombe(AnalyseFixture::rectangle(x + 3.98, y, x + 5, y + 1), QStringLiteral("903"));
    OptionsAnalyse o;
    o.jauge = false;
    o.detaillee = true;
    const Constats c = analysePlan(f.c->contexte(), o);
    EXPECT_EQ(c.terrainsChevauchants, 2);
    EXPECT_EQ(c.numerosRepetes, 0);
    // Plots outside any alley with the same number in the same section are repeated too.
    f.ajouteTombe(AnalyseFixture::rectangle(x + 6, y, x + 7, y + 1), QStringLiteral("900"));
    EXPECT_EQ(analysePlan(f.c->contexte(), o).numerosRepetes, 2);
}
