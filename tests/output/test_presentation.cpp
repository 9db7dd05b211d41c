// Presentation: the balloon tooltips, the scale typed or chosen, the ruler guides dropped
// on the map and the background palette kept across a restart.
#include "context/contexte.h"
#include "output/ctooltip.h"
#include "output/echelle.h"
#include "output/palette.h"
#include "output/reperes.h"
#include "sortie_fixture.h"

#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QTest>
#include <QToolButton>

using namespace veldra;

namespace {

constexpr qint32 kTexteBouton = qint32(0x80000012u);
constexpr qint32 kFondInfo = qint32(0x80000018u);

void presse(QWidget& w, QPoint ou) {
    QMouseEvent e(QEvent::MouseButtonPress, ou, w.mapToGlobal(ou), Qt::LeftButton, Qt::LeftButton,
                  Qt::NoModifier);
    QCoreApplication::sendEvent(&w, &e);
}

} // namespace

TEST(Bulles, TextTitleStyleAndColoursAsCreated) {
    QWidget parent;
    cToolTip t;
    EXPECT_NE(t.Create(&parent, QStringLiteral("Deux|mots"), 65, false, 1, QString(), 0, 0xFFFFFF,
                       -1, -1),
              0u);
    EXPECT_EQ(t.Text(), QStringLiteral("Deux mots")); // no title: one line
    EXPECT_EQ(t.InitialText(), QStringLiteral("Deux|mots"));
    t.Create(&parent, QStringLiteral("Deux|mots"), 64, true, 2, QStringLiteral("Titre"), 0,
             0xFFFFFF, 300, 2000);
    EXPECT_EQ(t.Text(), QStringLiteral("Deux\r\nmots"));
    EXPECT_EQ(t.Title(), QStringLiteral("Titre"));
    EXPECT_TRUE(t.Centered());
    EXPECT_EQ(t.HoverTime(), 300);

    // Equal colours fall back to the system's button text on the tooltip background.
    t.Create(&parent, QStringLiteral("x"), 1, false, 0, QString(), 0x123456, 0x123456, -1, -1);
    EXPECT_EQ(t.ForeCol(), couleurSysteme(kTexteBouton));
    EXPECT_EQ(t.BackCol(), couleurSysteme(kFondInfo));
    EXPECT_EQ(t.BackCol() & qint32(0x80000000u), 0);

    // What builds nothing: a style or an icon out of range, no parent.
    for (const auto& [style, icone] : {std::pair{2, 1}, {66, 1}, {-1, 1}, {65, 4}, {65, -1}}) {
        EXPECT_EQ(
            t.Create(&parent, QStringLiteral("x"), style, false, icone, QString(), 0, 1, -1, -1),
            0u);
        EXPECT_EQ(t.bulle(), nullptr);
    }
    EXPECT_EQ(t.Create(nullptr, QStringLiteral("x"), 65, false, 1, QString(), 0, 1, -1, -1), 0u);
}

TEST(Bulles, ShowOnHoverAndOutliveTheirControl) {
    auto parent = std::make_unique<QLineEdit>();
    parent->resize(120, 24);
    parent->show();
    cToolTip t;
    ASSERT_NE(t.Create(parent.get(), QStringLiteral("Saisir"), 65, true, 1, QString(), kTexteBouton,
                       kFondInfo, -1, -1),
              0u);
    QHelpEvent aide(QEvent::ToolTip, QPoint(5, 5), parent->mapToGlobal(QPoint(5, 5)));
    EXPECT_TRUE(QCoreApplication::sendEvent(parent.get(), &aide)); // swallowed by the balloon
    EXPECT_TRUE(t.bulle()->isVisible());
    QEvent quitte(QEvent::Leave);
    QCoreApplication::sendEvent(parent.get(), &quitte);
    EXPECT_FALSE(t.bulle()->isVisible());

    t.montre();
    parent.reset(); // the control goes first: the tip hides and stays harmless
    EXPECT_FALSE(t.bulle()->isVisible());
    t.montre();
    t.cache();
    EXPECT_FALSE(t.bulle()->isVisible());
}

TEST(Bulles, TheControlGivesEveryChildWithATipItsBalloon) {
    ControleFixture f;
    const Bulles& b = f.c->bulles();
    ASSERT_TRUE(b.count(QStringLiteral("B_Outils(3)")));
    EXPECT_EQ(b.at(QStringLiteral("B_Outils(3)"))->Text(), QStringLiteral("Sélection simple"));
    EXPECT_TRUE(b.count(QStringLiteral("B_Outils(8)")));
    EXPECT_TRUE(b.count(QStringLiteral("b_selec(0)")));
    EXPECT_EQ(b.at(QStringLiteral("B_Outils(3)"))->Style(), 65);
    EXPECT_EQ(b.at(QStringLiteral("B_Outils(3)"))->Icon(), 1);
    EXPECT_FALSE(b.at(QStringLiteral("B_Outils(3)"))->Centered());
    EXPECT_TRUE(b.at(QStringLiteral("L_echelle"))->Centered()); // a text box
    for (const auto& [cle, tip] : b) {
        EXPECT_FALSE(cle.contains(u'_') && cle.back().isDigit()) << cle.toStdString();
        EXPECT_TRUE(tip->Title().isEmpty());
    }
    EXPECT_TRUE(f.w<QToolButton>("B_Outils_3")->toolTip().isEmpty());
    // Destroying the control releases them without a fault.
    f.c.reset();
}

TEST(Echelle, BadScalesAreRefusedAndKeepTheView) {
    Sortie f;
    carto::MapView& vue = f.vue();
    QLineEdit* saisie = f.w<QLineEdit>("L_echelle");
    const double avant = vue.zoom();
    for (const char* texte : {"0", "-1", "lettres", "", "   "}) {
        f.messages.clear();
        saisie->setText(QString::fromUtf8(texte));
        f.w<QToolButton>("b_rafraichir")->click();
        ASSERT_EQ(f.messages.size(), 1u) << texte;
        EXPECT_EQ(f.messages[0].texte,
                  QStringLiteral("Vous devez saisir un nombre supérieur à 0 !"));
        EXPECT_TRUE(f.messages[0].titre.isEmpty());
        EXPECT_DOUBLE_EQ(vue.zoom(), avant);
    }
    f.messages.clear();
    saisie->setText(QStringLiteral("1e12"));
    QTest::keyClick(saisie, Qt::Key_Return);
    EXPECT_EQ(f.messages.size(), 1u);
    EXPECT_DOUBLE_EQ(vue.zoom(), avant);
    EXPECT_THROW(AppliqueEchelle(f.c->contexte(), std::nan("")), Erreur);
}

TEST(Echelle, TypedAndPresetScalesSetTheViewAndTheTicks) {
    Sortie f;
    carto::MapView& vue = f.vue();
    const QList<QAction*> entrees = f.c->surface().MenuEchelle->actions();
    ASSERT_EQ(entrees.size(), 6);
    QLineEdit* saisie = f.w<QLineEdit>("L_echelle");
    saisie->setText(QStringLiteral("250"));
    QTest::keyClick(saisie, Qt::Key_Return);
    EXPECT_NEAR(vue.zoom(), vue.paperWidth() * 2.5, 1e-9);
    EXPECT_EQ(saisie->text(), QStringLiteral(" 250"));
    for (QAction* a : entrees)
        EXPECT_FALSE(a->isChecked());

    // The box's own grouping is read back: "1 235" is 1235.
    saisie->setText(QStringLiteral("1 235"));
    f.w<QToolButton>("b_rafraichir")->click();
    EXPECT_NEAR(vue.zoom(), vue.paperWidth() * 12.35, 1e-9);

    f.c->contexte().montreMenu = [&](QMenu&, const QPoint&) { return entrees[4]; };
    f.w<QToolButton>("Echelle")->click();
    EXPECT_NEAR(vue.zoom(), vue.paperWidth() * 5, 1e-9);
    EXPECT_EQ(saisie->text(), QStringLiteral(" 500"));
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(entrees[i]->isChecked(), i == 4) << i;
    AppliqueEchelle(f.c->contexte(), 1000);
    EXPECT_TRUE(entrees[5]->isChecked());
    EXPECT_FALSE(entrees[4]->isChecked());
    EXPECT_EQ(formatMilliers(1234.6), QStringLiteral("1 235"));
}

TEST(Reperes, TheGuideLastHoveredMovesWhereItIsDropped) {
    Sortie f;
    Surface& s = f.c->surface();
    f.w<QCheckBox>("Check1")->click();
    s.B_Outils_[3]->click(); // the select tool lets the guides be dragged
    ASSERT_TRUE(s.Regle->isVisible() && s.Regle->isEnabled());
    const QRect carte = s.Map1->geometry();

    QEvent entre(QEvent::Enter);
    QCoreApplication::sendEvent(s.Regle, &entre);
    EXPECT_EQ(f.c->contexte().etat.reperes.survole, QStringLiteral("H"));
    emit s.Map1->dropped(s.Regle, 40, 120);
    EXPECT_EQ(s.Regle->y(), carte.top() + 120);
    EXPECT_EQ(s.Regle->x(), carte.left());

    QCoreApplication::sendEvent(s.RegleV, &entre);
    const QPoint depart(1, 200), arrivee = s.Map1->mapTo(f.c.get(), QPoint(300, 50));
    presse(*s.RegleV, depart);
    QMouseEvent lache(QEvent::MouseButtonRelease, QPointF(), f.c->mapToGlobal(arrivee),
                      Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(s.RegleV, &lache);
    EXPECT_EQ(s.RegleV->x(), carte.left() + 300);
    EXPECT_EQ(s.RegleV->y(), carte.top()); // it keeps its top

    // A new size of the control keeps them where they were put.
    f.c->resize(1300, 850);
    QCoreApplication::processEvents();
    EXPECT_EQ(s.Regle->y(), carte.top() + 120);
    EXPECT_EQ(s.RegleV->x(), carte.left() + 300);
}

TEST(Palette, CellsColourTextsAndTheChoiceKeptAfterARestart) {
    EXPECT_EQ(couleurCellule(true, 1), 0);
    EXPECT_EQ(couleurCellule(true, 40), 0xFFFFFF);
    EXPECT_EQ(couleurCellule(true, 14), 0xFF0000);
    for (const int hors : {0, -3, 41, 1000})
        EXPECT_EQ(couleurCellule(true, hors), 0) << hors;
    EXPECT_EQ(couleurCellule(false, 16), 0xFF00FF);
    EXPECT_EQ(couleurCellule(false, 17), 0);
    EXPECT_EQ(texteCouleur(0x0000FF), QStringLiteral("&H0000FF"));
    EXPECT_EQ(texteCouleur(0x00FF00), QStringLiteral("&H00FF00"));
    EXPECT_EQ(couleurDeTexte(texteCouleur(0xC0FFEE)), 0xC0FFEE);

    auto f = std::make_unique<Sortie>();
    Surface& s = f->c->surface();
    f->w<QToolButton>("Btn_Pref")->click();
    QTest::mouseClick(s.PCouleur, Qt::LeftButton);
    ASSERT_TRUE(s.picMore->isVisible());
    EXPECT_TRUE(s.picStandard->isVisible());
    const int cellule = tailleCellule(f->c->contexte());
    EXPECT_EQ(cellule, s.picStandard->width() / 10);
    EXPECT_EQ(s.picMore->height(), 5 * cellule + 2);
    presse(*s.picMore, {8 * cellule + 1, 1}); // beside the grid: nothing
    EXPECT_TRUE(s.picMore->isVisible());
    presse(*s.picMore, {8 * cellule - 2, 5 * cellule - 2}); // the bottom-right cell
    EXPECT_FALSE(s.picMore->isVisible());
    EXPECT_EQ(s.Map1->backgroundColor(), 0xFFFFFF);

    QTest::mouseClick(s.PCouleur, Qt::LeftButton);
    presse(*s.picMore, {3 * cellule + 1, 1 * cellule + 1}); // cell 12
    EXPECT_EQ(s.Map1->backgroundColor(), 0x008000);

    // A restart: the control writes its settings and the next one reads them.
    const QString plan = f->plan(60);
    f->c.reset();
    f->c = std::make_unique<Veldra>();
    f->c->setDossierControle(f->dossierControle());
    f->ouvre(plan);
    EXPECT_EQ(f->c->surface().Map1->backgroundColor(), 0x008000);
}

TEST(Palette, AHandEditedColourOutOfRangeIsIgnored) {
    for (const auto& [texte, attendu] : {std::pair{"99999999999", 0xFFFFFF},
                                         {"-5", 0xFFFFFF},
                                         {"1e300", 0xFFFFFF},
                                         {"abc", 0x000000},
                                         {"255", 0x0000FF}}) {
        Sortie f(false);
        QFile ini(f.ini());
        ASSERT_TRUE(ini.open(QIODevice::WriteOnly));
        ini.write(QByteArray("[Param\xe8tres]\r\nCouleurDeFond=") + texte + "\r\n"); // cp1252
        ini.close();
        f.ouvre(f.plan(10));
        EXPECT_EQ(f.c->surface().Map1->backgroundColor(), attendu) << texte;
    }
}
