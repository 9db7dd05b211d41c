// Thematic maps: the host's catalogue and the theme list, Theme from a host record set
// (palette, legend texts, bad record sets), the selection style, removal, and a theme that
// follows the plots through edits.
#include "carto/model/edit_commands.h"
#include "carto/model/map.h"
#include "themes/dialogue_themes.h"
#include "themes_fixture.h"

#include <QPushButton>
#include <QTreeWidget>

using namespace veldra;

namespace {

QStringList lignes(const QTreeWidget& liste) {
    QStringList out;
    for (int i = 0; i < liste.topLevelItemCount(); ++i)
        out << liste.topLevelItem(i)->text(0) + u'|' + liste.topLevelItem(i)->text(1);
    return out;
}

} // namespace

TEST(Catalogue, HoldsAHundredThemesAndRefusesTheNextOne) {
    ControleFixture f;
    for (int i = 1; i <= 100; ++i) {
        QString libelle = QStringLiteral("Thème %1").arg(i), code = QStringLiteral("T%1").arg(i);
        f.c->AjouteTheme(libelle, code);
    }
    EXPECT_TRUE(f.messages.empty());
    QString libelle = QStringLiteral("De trop"), code = QStringLiteral("X");
    f.c->AjouteTheme(libelle, code);
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].titre, QStringLiteral("AjouteTheme"));
    EXPECT_FALSE(f.messages[0].texte.contains(u':')); // the description alone

    const QVariantList table = f.c->GetTableauThemes().toList();
    ASSERT_EQ(table.size(), 100);
    EXPECT_EQ(table[0].toStringList(), (QStringList{"Thème 1", "T1"}));
    EXPECT_EQ(table[99].toStringList(), (QStringList{"Thème 100", "T100"}));
    EXPECT_EQ(f.c->contexte().etat.themes.NbThemes, 100);

    // Full, the list shows the hundred themes and no photo row.
    Themes d(f.c->contexte());
    d.Charge(f.c->contexte().etat.themes.TableauThemes);
    EXPECT_EQ(d.ListView1->topLevelItemCount(), 100);
    EXPECT_EQ(d.ListView1->columnWidth(1), 0);
}

TEST(Catalogue, TheListEndsWithThePhotoThemeAndStartsTheChosenRow) {
    PlanThemes f;
    QString l1 = QStringLiteral("Type de concession"), c1 = QStringLiteral("TYPE");
    QString l2 = QStringLiteral("Échéance"), c2 = QStringLiteral("ECHEANCE");
    f.c->AjouteTheme(l1, c1);
    f.c->AjouteTheme(l2, c2);
    std::vector<std::pair<QString, QString>> recus;
    QObject::connect(f.c.get(), &Veldra::ChargeTheme,
                     [&](QString& l, QString& c) { recus.emplace_back(l, c); });
    QStringList vu;
    f.dialogues([&](QDialog& d) {
        auto* liste = d.findChild<QTreeWidget*>(QStringLiteral("ListView1"));
        vu = lignes(*liste);
        liste->setCurrentItem(liste->topLevelItem(1));
        d.findChild<QPushButton*>(QStringLiteral("Btn_Valider"))->click();
    });
    f.w<QPushButton>("BTN_Themes")->click();
    EXPECT_EQ(vu,
              (QStringList{"  Type de concession|TYPE", "  Échéance|ECHEANCE",
                           "  Thématique sur la présence de photo liée aux concessions|Photo"}));
    // The row's text keeps its two leading spaces on its way to the host.
    ASSERT_EQ(recus.size(), 1u);
    EXPECT_EQ(recus[0].first, QStringLiteral("  Échéance"));
    EXPECT_EQ(recus[0].second, QStringLiteral("ECHEANCE"));

    // The photo row builds the photo theme and asks nothing of the host; "Fermer" does
    // nothing at all.
    f.dialogues([&](QDialog& d) {
        auto* liste = d.findChild<QTreeWidget*>(QStringLiteral("ListView1"));
        emit liste->itemActivated(liste->topLevelItem(2), 0);
    });
    f.w<QPushButton>("BTN_Themes")->click();
    EXPECT_EQ(recus.size(), 1u);
    ASSERT_NE(f.themeAffiche(), nullptr);
    EXPECT_EQ(f.themeAffiche()->legend.title, QStringLiteral("Concessions avec photo"));
    f.dialogues(
        [&](QDialog& d) { d.findChild<QPushButton*>(QStringLiteral("Command2"))->click(); });
    f.w<QPushButton>("BTN_Themes")->click();
    EXPECT_NE(f.themeAffiche(), nullptr);
    EXPECT_TRUE(f.messages.empty());

    // Action compares the code exactly.
    QString libelle = QStringLiteral("x"), code = QStringLiteral("photo");
    f.c->Action(libelle, code);
    EXPECT_EQ(recus.size(), 2u);
}

TEST(Theme, ColoursThePlotsAndRelabelsTheLegend) {
    PlanThemes f;
    const auto plots = f.tenues();
    ASSERT_GE(plots.size(), 14u);
    // Twelve distinct values; plot 12 and 13 share value 0.
    std::vector<std::pair<QVariant, QVariant>> lignes;
    for (int i = 0; i < 14; ++i)
        lignes.emplace_back(f.cle(plots[size_t(i)]), i < 12 ? i : 0);
    RecordsetPtr rs = f.donnees(lignes, QStringLiteral("Etat"), QStringLiteral("N"));
    RecordsetPtr garde = rs;
    f.theme(rs, QStringLiteral("1*Perpétuelle@2*Trentenaire@2*Autre@3*Cinquante * ans@"),
            QStringLiteral("etat"), QStringLiteral("IDGCF"));
    EXPECT_TRUE(f.messages.empty());
    EXPECT_EQ(rs, nullptr);
    EXPECT_FALSE(garde->isOpen()); // the host's record set comes back closed

    carto::Theme* t = f.themeAffiche();
    ASSERT_NE(t, nullptr);
    ASSERT_EQ(t->categories().size(), 12u);
    const QStringList palette = f.c->contexte().etat.couleursTheme;
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(t->categories()[size_t(i)].style.regionColor, palette[i].toUInt()) << i;
    EXPECT_EQ(t->categories()[9].style.regionColor, 16448u); // the palette's tenth colour
    const carto::Colour onze = t->categories()[10].style.regionColor;
    EXPECT_NE(onze, t->categories()[9].style.regionColor); // the engine's own from there
    const auto& textes = t->legend.texts;
    EXPECT_EQ(textes[0], QStringLiteral("Non renseigné"));
    EXPECT_EQ(textes[1], QStringLiteral("Perpétuelle"));
    EXPECT_EQ(textes[2], QStringLiteral("Trentenaire")); // the first entry wins
    EXPECT_EQ(textes[3], QStringLiteral("Cinquante * ans"));
    EXPECT_EQ(textes[4], QStringLiteral("4"));
    EXPECT_EQ(t->legend.title, QStringLiteral("Type de concession"));
    EXPECT_TRUE(t->legend.visible && t->legend.showTitle && t->legend.showCounts);
    EXPECT_EQ(t->categoryOf(f.tombes().feature(plots[13].fid())), 0);
    EXPECT_EQ(t->categoryOf(f.tombes().feature(plots[5].fid())), 5);

    // Selected plots are hatched while the theme is on show, filled again once it is gone.
    const carto::Style& sel = f.c->contexte().carte().selectionStyle;
    EXPECT_EQ(sel.regionPattern, carto::pattern::DiagonalCross);
    EXPECT_EQ(sel.regionColor, 0u);
    EXPECT_EQ(sel.regionBackColor, 65535u);
    f.w<QPushButton>("Btn_SuppTheme")->click();
    EXPECT_EQ(f.themeAffiche(), nullptr);
    EXPECT_EQ(sel.regionPattern, carto::pattern::Solid);
    EXPECT_EQ(sel.regionColor, 65535u);
    f.w<QPushButton>("Btn_SuppTheme")->click(); // with nothing on show: no harm
    EXPECT_TRUE(f.messages.empty());
}

TEST(Theme, DrawsThePlotsInTheirCategorysColour) {
    PlanThemes f;
    const auto plots = f.tenues();
    const carto::Feature cible = plots[3];
    RecordsetPtr rs = f.donnees({{f.cle(cible), QStringLiteral("A")}});
    f.theme(rs, QString());
    f.c->Calque_Numero->setVisible(false);
    carto::MapView& vue = *f.c->surface().Map1;
    const carto::Rect b = cible.bounds();
    vue.setBounds({b.xmin - 1, b.ymin - 1, b.xmax + 1, b.ymax + 1});
    const QImage image = vue.renderImage(vue.size(), false);
    const carto::Point c = cible.centre();
    const QColor vu = image.pixelColor(vue.toScreen(c).toPoint());
    EXPECT_EQ(vu, QColor(255, 128, 128)); // 8421631: the palette's first colour
}

TEST(Theme, BadRecordSetsAndMappingsAreReportedAndLeaveNothingHalfDone) {
    PlanThemes f;
    const auto plots = f.tenues();
    const QString titre = QStringLiteral("Métahode ThemeEtat");

    RecordsetPtr sansGeo = f.donnees({{f.cle(plots[0]), QStringLiteral("A")}});
    f.theme(sansGeo, QString(), QStringLiteral("Valeur"), QStringLiteral("Cle"));
    RecordsetPtr sansChamp = f.donnees({{f.cle(plots[0]), QStringLiteral("A")}});
    f.theme(sansChamp, QString(), QStringLiteral("Etat"));
    RecordsetPtr rien;
    f.theme(rien, QString());
    ASSERT_EQ(f.titres(titre), 3);
    EXPECT_TRUE(f.messages[0].texte.startsWith(QStringLiteral("3265 "))); // number, blank
    EXPECT_TRUE(f.messages[0].texte.contains(QStringLiteral("Cle")));
    EXPECT_EQ(f.themeAffiche(), nullptr);
    EXPECT_TRUE(sansGeo && sansGeo->isOpen());

    // An entry without "*": the build stops at the legend, the theme stays without it and
    // the record set stays open.
    f.messages.clear();
    RecordsetPtr rs =
        f.donnees({{f.cle(plots[0]), QStringLiteral("A")}, {f.cle(plots[1]), QStringLiteral("B")}});
    f.theme(rs, QStringLiteral("A*Alpha@B"));
    ASSERT_EQ(f.titres(titre), 1);
    EXPECT_TRUE(f.messages[0].texte.startsWith(QStringLiteral("5 ")));
    ASSERT_NE(f.themeAffiche(), nullptr);
    EXPECT_FALSE(f.themeAffiche()->legend.visible);
    EXPECT_TRUE(rs && rs->isOpen());
    EXPECT_EQ(f.c->contexte().carte().selectionStyle.regionPattern, carto::pattern::Solid);

    // Without "@" a single entry; keys that match no plot, null values: a theme, quietly.
    f.messages.clear();
    RecordsetPtr seul = f.donnees({{f.cle(plots[0]), QStringLiteral("A")},
                                   {32000, QStringLiteral("Z")},
                                   {f.cle(plots[1]), QVariant()},
                                   {QVariant(), QStringLiteral("Y")}});
    f.theme(seul, QStringLiteral("A*Alpha"));
    EXPECT_TRUE(f.messages.empty());
    ASSERT_NE(f.themeAffiche(), nullptr);
    EXPECT_EQ(f.themeAffiche()->legend.texts, (std::vector<QString>{"Alpha"}));
    RecordsetPtr personne = f.donnees({{31999, QStringLiteral("Z")}});
    f.theme(personne, QString());
    EXPECT_TRUE(f.messages.empty());
    EXPECT_TRUE(f.themeAffiche()->categories().empty());

    // No plan open at all.
    ControleFixture vide;
    RecordsetPtr r = f.donnees({{1, QStringLiteral("A")}});
    QString p, champ = QStringLiteral("Valeur"), geo = QStringLiteral("IdGCF"), t;
    vide.c->Theme(r, p, champ, geo, t);
    ASSERT_EQ(vide.messages.size(), 1u);
    EXPECT_EQ(vide.messages[0].titre, titre);
}

TEST(Theme, TenThousandValuesAreShownWithoutDelay) {
    PlanThemes f;
    // One record per key up to 10,000: every plot its own value, the rest for no plot.
    std::vector<std::pair<QVariant, QVariant>> lignes;
    for (int i = 1; i <= 10000; ++i)
        lignes.emplace_back(i, QStringLiteral("V%1").arg(i));
    RecordsetPtr rs = f.donnees(lignes);
    f.theme(rs, QString());
    EXPECT_TRUE(f.messages.empty());
    ASSERT_NE(f.themeAffiche(), nullptr);
    EXPECT_EQ(f.themeAffiche()->categories().size(), f.tenues().size());
    f.c->surface().Map1->refresh();
    f.c->surface().Map1->waitForRender();
    EXPECT_FALSE(f.c->surface().Map1->grab().isNull());
}

TEST(Theme, FollowsThePlotsThroughAnEdit) {
    PlanThemes f;
    const auto plots = f.tenues();
    const int inconnue = 30000;
    RecordsetPtr rs = f.donnees({{f.cle(plots[0]), 1}, {f.cle(plots[1]), 2}, {inconnue, 3}},
                                QStringLiteral("Etat"), QStringLiteral("N"));
    f.theme(rs, QStringLiteral("1*Un@2*Deux@3*Trois@"), QStringLiteral("Etat"));
    carto::Theme* t = f.themeAffiche();
    ASSERT_NE(t, nullptr);
    ASSERT_EQ(t->categories().size(), 2u);

    // A plot takes the key the host knew but no plot bore: its value joins the legend,
    // relabelled and coloured as the host's theme said, with no new round trip.
    carto::Feature autre = f.tombes().feature(plots[2].fid());
    autre.setAttribute(u"IDGCF", inconnue);
    f.tombes().updateFeature(autre);
    ASSERT_EQ(t->categories().size(), 3u);
    EXPECT_EQ(t->legend.texts, (std::vector<QString>{"Un", "Deux", "Trois"}));
    EXPECT_EQ(t->categories()[2].style.regionColor, f.c->contexte().etat.couleursTheme[2].toUInt());
    EXPECT_EQ(t->categoryOf(f.tombes().feature(plots[2].fid())), 2);

    // Moved, a plot keeps its colour; deleted, its value leaves the legend.
    f.c->contexte().carte().execute(std::make_unique<carto::MoveFeatures>(
        f.tombes(), std::vector<qint64>{plots[0].fid()}, 0.5, 0));
    EXPECT_EQ(t->categoryOf(f.tombes().feature(plots[0].fid())), 0);
    f.tombes().deleteFeature(plots[0].fid());
    EXPECT_EQ(t->legend.texts, (std::vector<QString>{"Deux", "Trois"}));
    EXPECT_TRUE(f.messages.empty());
}
