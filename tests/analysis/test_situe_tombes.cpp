#include "analyse_fixture.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

using namespace veldra;

namespace {

struct Situe : AnalyseFixture {
    // Ids of the plots, by IDGCF.
    carto::Features parId(std::initializer_list<int> ids) const {
        carto::Features f(c->Calque_Tombe);
        for (const int id : ids)
            f.add(c->Calque_Tombe->searchEqual(u"IDGCF", id));
        return f;
    }

    void situe(const QString& liste, bool zoom) {
        QString l = liste;
        bool z = zoom;
        c->SitueTombes(l, z);
        EXPECT_EQ(l, liste);
        EXPECT_EQ(z, zoom);
    }

    QList<int> idsChoisis() const {
        QList<int> out;
        for (const carto::Feature& t : c->Calque_Tombe->selection())
            out << t.attribute(u"IDGCF").toInt();
        return out;
    }
};

} // namespace

TEST(SitueTombes, ATextWithoutAtSignIsRefusedAndAnEmptyOneSelectsNothing) {
    Situe f;
    f.calqueCourant(QStringLiteral("Sections"));
    f.situe(QStringLiteral("57"), true);
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].texte, "L'identifiant de la tombe à situer n'est pas indiqué !");
    EXPECT_EQ(f.messages[0].titre, "");
    EXPECT_EQ(f.c->Calque_Courant->name(), "Sections"); // nothing else happened

    f.c->Calque_Tombe->selectAdd(f.c->Calque_Tombe->allFeatures().at(0).fid());
    f.situe(QString(), true);
    EXPECT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.c->Calque_Courant->name(), "Tombes");
    EXPECT_EQ(f.w<QComboBox>("Combo_Calque")->currentText(), "Tombes");
    EXPECT_TRUE(f.c->Calque_Tombe->selection().isEmpty());
    EXPECT_FALSE(f.c->ModeEdition);
}

TEST(SitueTombes, ListedPlotsAreSelectedAndFramedWhenAsked) {
    Situe f;
    carto::MapView& vue = *f.c->surface().Map1;
    const double avant = vue.zoom();
    f.situe(QStringLiteral("57@"), false);
    EXPECT_EQ(f.idsChoisis(), QList<int>{57});
    EXPECT_EQ(vue.zoom(), avant);
    EXPECT_EQ(vue.mousePointer(), carto::pointer::Default);
    EXPECT_EQ(vue.editingMode(), carto::editmode::Features);

    f.situe(QStringLiteral("57@12@"), true);
    EXPECT_EQ(f.idsChoisis(), (QList<int>{57, 12}));
    const double zoom = vue.zoom();
    vue.setBounds(f.parId({57, 12}).bounds());
    EXPECT_NEAR(zoom, vue.zoom() * 2.9, 1e-6 * zoom);

    // No plot found: the view stays where it was.
    const double ici = vue.zoom();
    f.situe(QStringLiteral("99999@"), true);
    EXPECT_TRUE(f.c->Calque_Tombe->selection().isEmpty());
    EXPECT_EQ(vue.zoom(), ici);
    EXPECT_TRUE(f.messages.empty());
}

TEST(SitueTombes, HostilePiecesFindNothingAndLongListsStayQuick) {
    Situe f;
    for (const char* liste : {"@@@", "abc@", "1 OR 1=1@", "IDGCF=3@", "@3", "@ @", "1.5@"}) {
        f.situe(QString::fromLatin1(liste), true);
        EXPECT_TRUE(f.c->Calque_Tombe->selection().isEmpty()) << liste;
    }
    EXPECT_TRUE(f.messages.empty());
    // Pieces of all kinds around real keys: only the keys count.
    f.situe(QStringLiteral("@x@5@@7@"), false);
    EXPECT_EQ(f.idsChoisis(), (QList<int>{5, 7}));

    QString liste;
    for (int i = 1; i <= 10000; ++i)
        liste += QString::number(i) + u'@';
    QElapsedTimer t;
    t.start();
    f.situe(liste, true);
    EXPECT_LT(t.elapsed(), 2000);
    // Every plot that has a key (every 29th has none).
    EXPECT_EQ(f.c->Calque_Tombe->selection().count(), 120 - 120 / 29);
}

TEST(SitueTombes, LateBindingWritesTheArgumentsBack) {
    Situe f;
    QVariantList args{QStringLiteral("12@"), true};
    f.c->Invoke(0x60030080, args);
    EXPECT_EQ(args, (QVariantList{QStringLiteral("12@"), true}));
    EXPECT_EQ(f.idsChoisis(), QList<int>{12});
}

TEST(ParcoursSelection, TheBrowserWalksTheSelectionAndStopsAtItsEnds) {
    Situe f;
    auto* num = f.w<QLabel>("Num_Selec");
    const auto partie = [&f](int i) {
        f.w<QToolButton>(QStringLiteral("b_selec_%1").arg(i).toLatin1().constData())->click();
    };
    // Nothing selected: nothing moves.
    const carto::Point centre = f.c->surface().Map1->centre();
    partie(2);
    EXPECT_EQ(f.c->surface().Map1->centre(), centre);

    f.situe(QStringLiteral("3@40@77@"), false);
    EXPECT_EQ(num->text(), "3/120"); // the selection over the layer, until the browser runs
    const carto::Features choix = f.c->Calque_Tombe->selection();
    const auto sur = [&](int k) {
        EXPECT_EQ(num->text(), QStringLiteral("%1/3").arg(k));
        const carto::Point c = f.c->surface().Map1->centre();
        EXPECT_NEAR(c.x, choix.at(k - 1).centre().x, 1e-9);
        EXPECT_NEAR(c.y, choix.at(k - 1).centre().y, 1e-9);
        EXPECT_EQ(f.w<QLineEdit>("SaisieNum")->text(),
                  choix.at(k - 1).attribute(u"Numero").toString());
    };
    partie(0);
    sur(1);
    partie(1);
    sur(1);
    partie(2);
    sur(2);
    partie(2);
    partie(2);
    sur(3);
    partie(1);
    sur(2);
    partie(3);
    sur(3);
    EXPECT_FALSE(f.w<QPushButton>("Btn_Visu")->isHidden());
    EXPECT_FALSE(f.w<QPushButton>("Btn_Sauver")->isEnabled()); // not in edit mode
}
