// Photo links: AddPhoto, DelPhoto, CheminPhoto and GetPhotos as the host calls them, the
// photo theme, and what a host may send that the plan cannot hold.
#include "carto/model/map.h"
#include "control/types_automation.h"
#include "themes_fixture.h"

#include <QDir>
#include <QPushButton>

using namespace veldra;

namespace {

// The plots layer read afresh from storage: what the plan really holds.
QString photoStockee(const carto::Map& carte, qint64 fid) {
    carto::Map relu;
    relu.loadMapSet(carte.mapSet());
    return relu.requireLayer(u"Tombes").feature(fid).attribute(u"Photo").toString();
}

} // namespace

TEST(Photos, LinksAreSetClearedAndCollectedByConcessionKey) {
    PlanThemes f;
    const auto plots = f.tenues();
    QString id = f.cleTexte(plots[0]), autre = f.cleTexte(plots[1]);
    QString chemin = f.dir.filePath(QStringLiteral("tombe.jpg")), chemin2 = QStringLiteral("b.jpg");
    EXPECT_TRUE(f.c->AddPhoto(id, chemin));
    EXPECT_TRUE(f.c->AddPhoto(autre, chemin2));
    EXPECT_EQ(photoStockee(f.c->contexte().carte(), plots[0].fid()), chemin);
    EXPECT_EQ(f.tombes().feature(plots[0].fid()).attribute(u"Booleen").toString(), "F");

    // A key that matches no plot, or that is not a number: true, and nothing changes.
    QString personne = QStringLiteral("99999"), texte = QStringLiteral("1 or 1=1");
    EXPECT_TRUE(f.c->AddPhoto(personne, chemin));
    EXPECT_TRUE(f.c->AddPhoto(texte, chemin));

    RecordsetPtr rs = f.c->GetPhotos();
    ASSERT_NE(rs, nullptr);
    ASSERT_EQ(rs->recordCount(), 2);
    rs->moveFirst();
    EXPECT_EQ(rs->value(u"IdGCF").toInt(), f.cle(plots[0]));
    EXPECT_EQ(rs->value(u"IdMapInfo").toLongLong(), plots[0].fid());
    EXPECT_EQ(rs->value(u"Photo").toString(), chemin);

    // Cleared, a link holds " ": GetPhotos leaves it out.
    EXPECT_TRUE(f.c->DelPhoto(id));
    EXPECT_EQ(photoStockee(f.c->contexte().carte(), plots[0].fid()), QStringLiteral(" "));
    EXPECT_EQ(f.tombes().feature(plots[0].fid()).attribute(u"Booleen").toString(), "T");
    rs = f.c->GetPhotos();
    ASSERT_EQ(rs->recordCount(), 1);
    rs->moveFirst();
    EXPECT_EQ(rs->value(u"Photo").toString(), chemin2);

    // Unlinking a photo never linked changes nothing in the plan.
    QString jamais = f.cleTexte(plots[5]);
    EXPECT_TRUE(f.c->DelPhoto(jamais));
    EXPECT_EQ(photoStockee(f.c->contexte().carte(), plots[5].fid()),
              f.tombes().feature(plots[5].fid()).attribute(u"Photo").toString());
    EXPECT_NE(f.tombes().feature(plots[5].fid()).attribute(u"Photo").toString(), " ");
    EXPECT_TRUE(f.messages.empty());
}

TEST(Photos, APathThePlanCannotHoldIsRefusedNeverCut) {
    PlanThemes f;
    const auto plots = f.tenues();
    QString id = f.cleTexte(plots[0]);
    const QString avant = f.tombes().feature(plots[0].fid()).attribute(u"Photo").toString();
    QString long300 = QStringLiteral("/photos/") + QString(288, u'x') + QStringLiteral(".jpg");
    ASSERT_EQ(long300.size(), 300);
    EXPECT_FALSE(f.c->AddPhoto(id, long300));
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].titre, QStringLiteral("AddPhoto"));
    EXPECT_TRUE(f.messages[0].texte.startsWith(QStringLiteral("3163 :")));
    EXPECT_EQ(photoStockee(f.c->contexte().carte(), plots[0].fid()), avant);

    // 250 characters fit, non-Latin ones counted as characters.
    QString juste = QStringLiteral("/фото/墓地/") + QString(237, u'é') + QStringLiteral(".jpg");
    ASSERT_EQ(juste.size(), 250);
    EXPECT_TRUE(f.c->AddPhoto(id, juste));
    EXPECT_EQ(photoStockee(f.c->contexte().carte(), plots[0].fid()), juste);
    RecordsetPtr rs = f.c->GetPhotos();
    ASSERT_EQ(rs->recordCount(), 1);
    rs->moveFirst();
    EXPECT_EQ(rs->value(u"Photo").toString(), juste);

    // No plan open: each call says so under its own name.
    ControleFixture vide;
    QString x = QStringLiteral("1"), p = QStringLiteral("a.jpg");
    EXPECT_FALSE(vide.c->AddPhoto(x, p));
    EXPECT_FALSE(vide.c->DelPhoto(x));
    EXPECT_EQ(vide.c->GetPhotos(), nullptr);
    ASSERT_EQ(vide.messages.size(), 3u);
    EXPECT_EQ(vide.messages[1].titre, QStringLiteral("DelPhoto"));
    EXPECT_EQ(vide.messages[2].titre, QStringLiteral("GetPhotos"));
}

TEST(Photos, GetPhotosRunsTheGaugeOverEveryPlot) {
    PlanThemes f;
    int maximum = -1, valeur = -1;
    QObject::connect(f.c->surface().ProgressBar1, &QProgressBar::valueChanged, [&](int v) {
        valeur = v;
        maximum = f.c->surface().ProgressBar1->maximum();
    });
    RecordsetPtr rs = f.c->GetPhotos();
    ASSERT_NE(rs, nullptr);
    EXPECT_EQ(rs->recordCount(), 0);
    EXPECT_EQ(rs->fields().size(), 3u);
    EXPECT_EQ(maximum, f.tombes().featureCount());
    EXPECT_EQ(valeur, f.tombes().featureCount());
    EXPECT_TRUE(f.c->surface().Panel_Jauge->isHidden());
    EXPECT_EQ(f.c->surface().L_Message->text(),
              QStringLiteral("Collecte des données photographiques"));
}

TEST(Photos, CheminPhotoFindsThePlotByItsNumber) {
    PlanThemes f;
    const auto plots = f.tenues();
    QString id = f.cleTexte(plots[0]), chemin = QStringLiteral("/photos/a.jpg");
    f.c->AddPhoto(id, chemin);
    QString numero = plots[0].attribute(u"CLETOMBE").toString();
    bool ouvrir = false;
    EXPECT_EQ(f.c->CheminPhoto(numero, ouvrir), chemin);
    EXPECT_TRUE(f.messages.empty());

    QString inconnu = QStringLiteral("Z-9-999");
    EXPECT_EQ(f.c->CheminPhoto(inconnu, ouvrir), QString());
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].texte,
              QStringLiteral("Le numéro Z-9-999 ne correspond à aucune concession"));

    // Two plots under one number: the message, and an empty path.
    carto::Feature double_ = f.tombes().feature(plots[1].fid());
    double_.setAttribute(u"CLETOMBE", numero);
    f.tombes().updateFeature(double_);
    EXPECT_EQ(f.c->CheminPhoto(numero, ouvrir), QString());
    EXPECT_EQ(f.messages.back().texte, QStringLiteral("Le numéro ") + numero +
                                           QStringLiteral(" correspond à plusieurs concessions !"));

    // Opened on an unknown number: the message first, then an empty viewer.
    f.messages.clear();
    QStringList ordre;
    f.dialogues([&](QDialog& d) {
        ordre << QStringLiteral("%1 messages, %2").arg(f.messages.size()).arg(d.objectName());
        d.reject();
    });
    ouvrir = true;
    f.c->CheminPhoto(inconnu, ouvrir);
    EXPECT_EQ(ordre, QStringList{"1 messages, FImage"});
}

TEST(Photos, ThePhotoThemeFlagsEveryPlotAndFollowsTheLinks) {
    PlanThemes f;
    const auto plots = f.tenues();
    QString sLibelle = QStringLiteral("  Photos"), code = QStringLiteral("Photo");
    f.c->Action(sLibelle, code);
    carto::Theme* t = f.themeAffiche();
    ASSERT_NE(t, nullptr);
    // No photo anywhere: one category, the button face, "Aucune photo".
    ASSERT_EQ(t->categories().size(), 1u);
    EXPECT_EQ(t->legend.texts, std::vector<QString>{"Aucune photo"});
    int nonT = 0;
    f.tombes().forEachFeature(
        [&](const carto::Feature& p) { nonT += p.attribute(u"Booleen") != "T" ? 1 : 0; });
    EXPECT_EQ(nonT, 0);

    // A link made while the theme is on show joins it, in the photo colour.
    QString id = f.cleTexte(plots[0]), chemin = QStringLiteral("/photos/a.jpg");
    f.c->AddPhoto(id, chemin);
    t = f.themeAffiche();
    ASSERT_EQ(t->categories().size(), 2u);
    EXPECT_EQ(t->legend.texts, (std::vector<QString>{"Lien avec une photo", "Aucune photo"}));
    EXPECT_EQ(t->categories()[0].style.regionColor, 0x8080FFu);
    EXPECT_EQ(t->categoryOf(f.tombes().feature(plots[0].fid())), 0);

    // A cleared link (" ") is no photo, on show and when the theme is built again.
    QString autre = f.cleTexte(plots[1]);
    f.c->AddPhoto(autre, chemin);
    f.c->DelPhoto(id);
    f.c->Action(sLibelle, code);
    t = f.themeAffiche();
    EXPECT_EQ(t->categoryOf(f.tombes().feature(plots[0].fid())), 1);
    EXPECT_EQ(t->categoryOf(f.tombes().feature(plots[1].fid())), 0);
    EXPECT_EQ(f.c->contexte().carte().selectionStyle.regionPattern, carto::pattern::DiagonalCross);
    EXPECT_TRUE(f.messages.empty());
}

TEST(Photos, LateBindingReachesThemesAndPhotos) {
    PlanThemes f;
    const auto plots = f.tenues();
    QVariantList ajoute{QStringLiteral("Type"), QStringLiteral("TYPE")};
    f.c->Invoke(0x600300a3, ajoute);
    QVariantList rien;
    EXPECT_EQ(f.c->Invoke(0x60030096, rien).toList()[0].toStringList(),
              (QStringList{"Type", "TYPE"}));
    QVariantList lien{f.cleTexte(plots[0]), QStringLiteral("/photos/a.jpg")};
    EXPECT_TRUE(f.c->Invoke(0x60030090, lien).toBool());
    QVariantList chemin{plots[0].attribute(u"CLETOMBE").toString(), false};
    EXPECT_EQ(f.c->Invoke(0x6003008e, chemin).toString(), QStringLiteral("/photos/a.jpg"));
    EXPECT_EQ(f.c->Invoke(0x60030091, rien).value<RecordsetPtr>()->recordCount(), 1);
    QVariantList efface{f.cleTexte(plots[0])};
    EXPECT_TRUE(f.c->Invoke(0x6003008f, efface).toBool());
    RecordsetPtr rs = f.donnees({{f.cle(plots[0]), QStringLiteral("A")}});
    QVariantList theme{QVariant::fromValue(rs), QString(), QStringLiteral("Valeur"),
                       QStringLiteral("IdGCF"), QStringLiteral("Titre")};
    f.c->Invoke(0x60030081, theme);
    EXPECT_EQ(theme[0].value<RecordsetPtr>(), nullptr); // released, as the host sees it
    EXPECT_FALSE(rs->isOpen());
    QVariantList action{QStringLiteral("x"), QStringLiteral("Photo")};
    f.c->Invoke(0x6003008d, action);
    EXPECT_EQ(f.themeAffiche()->legend.title, QStringLiteral("Concessions avec photo"));
    EXPECT_TRUE(f.messages.empty());
}
