// Layout and the surface's own panels.
#include "context/disposition.h"
#include "control_fixture.h"
#include "output/ctooltip.h"
#include "output/echelle.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTest>

using namespace veldra;

TEST(Disposition, TheControlWidensToItsMinimumAndPlacesTheMap) {
    ControleFixture f;
    const double tpp = twipsParPixel(f.c->contexte());
    f.c->resize(int(8000 / tpp), 600);
    EXPECT_EQ(f.c->width(), int(std::lround(kLargeurMinimaleTwips / tpp)));

    f.c->resize(1200, 800);
    QApplication::processEvents();
    const QWidget* map = f.w<QWidget>("Map1");
    const QWidget* haut = f.w<QWidget>("Panel_Haut");
    const QWidget* droite = f.w<QWidget>("Panel_Droite");
    const QWidget* bas = f.w<QWidget>("Panel_Bas");
    auto px = [tpp](double twips) { return int(std::lround(twips / tpp)); };
    EXPECT_EQ(map->x(), 0);
    EXPECT_EQ(map->y(), haut->height() + px(15));
    EXPECT_EQ(map->width(), 1200 - droite->width() - px(15));
    EXPECT_EQ(map->height(), 800 - bas->height() - px(885));
    EXPECT_EQ(bas->y() + bas->height(), 800);

    const QWidget* jauge = f.w<QWidget>("Panel_Jauge");
    EXPECT_NEAR(jauge->x() + jauge->width() / 2.0, map->x() + map->width() / 2.0, 1);
    EXPECT_NEAR(jauge->y() + jauge->height() / 2.0, map->y() + map->height() / 2.0, 1);
    // The search row runs left to right without overlaps.
    const QWidget* combo = f.w<QWidget>("Combo_section");
    const QWidget* bouton = f.w<QWidget>("Btn_Rechercher");
    EXPECT_LT(combo->geometry().right(), bouton->x());
}

TEST(Disposition, PanelsTabsAndTheInformationArrow) {
    ControleFixture f;
    EXPECT_EQ(f.c->mintCurFrame, 1);
    QTabBar* tabs = f.w<QTabBar>("TabStrip1");
    emit tabs->tabBarClicked(1);
    EXPECT_EQ(f.c->mintCurFrame, 2);
    EXPECT_TRUE(f.w<QWidget>("Frame_Onglet2")->isVisible());
    EXPECT_FALSE(f.w<QWidget>("Frame_Onglet1")->isVisible());

    QToolButton* fleche = f.w<QToolButton>("Btn_Fleche");
    fleche->click();
    // The arrow's balloon says what the next click does.
    const cToolTip& bulle = *f.c->bulles().at(QStringLiteral("Btn_Fleche"));
    EXPECT_EQ(bulle.Text(), QStringLiteral("Afficher les informations"));
    fleche->click();
    EXPECT_EQ(bulle.Text(), QStringLiteral("Masquer les informations"));
    EXPECT_TRUE(fleche->toolTip().isEmpty());

    f.w<QToolButton>("Btn_Pref")->click();
    EXPECT_TRUE(f.w<QWidget>("P_preferences")->isVisible());
    f.w<QPushButton>("Btn_Traitements")->click();
    EXPECT_FALSE(f.w<QWidget>("P_preferences")->isVisible());
    EXPECT_TRUE(f.w<QWidget>("P_traitements")->isVisible());

    f.w<QCheckBox>("CB_PlanSitue")->click();
    EXPECT_TRUE(f.w<QWidget>("Panel_Localisation")->isVisible());
    f.w<QToolButton>("HLBBttn1")->click();
    EXPECT_FALSE(f.w<QWidget>("Panel_Localisation")->isVisible());
    EXPECT_FALSE(f.w<QCheckBox>("CB_PlanSitue")->isChecked());

    // A floating panel follows a drag of its title.
    f.w<QCheckBox>("CB_PlanSitue")->click();
    QWidget* panneau = f.w<QWidget>("Panel_Localisation");
    QWidget* titre = f.w<QWidget>("Label8");
    const QPoint avant = panneau->pos();
    QTest::mousePress(titre, Qt::LeftButton, {}, QPoint(5, 5));
    QMouseEvent move(QEvent::MouseMove, QPointF(45, 35), titre->mapToGlobal(QPointF(45, 35)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(titre, &move);
    QTest::mouseRelease(titre, Qt::LeftButton, {}, QPoint(45, 35));
    EXPECT_EQ(panneau->pos(), avant + QPoint(40, 30));
}

TEST(Disposition, TheWholePlanButtonNeedsAnEnclosureToZoom) {
    ControleFixture f;
    f.ouvre(veldra::plantool::createEmptyPlan(f.dir.path(), QStringLiteral("Vide")));
    carto::MapView* map = f.c->surface().Map1;
    const double zoom = map->zoom();
    f.w<QToolButton>("B_Outils_8")->click();
    EXPECT_DOUBLE_EQ(map->zoom(), zoom);

    f.ouvre(f.plan(20));
    f.w<QToolButton>("B_Outils_8")->click();
    EXPECT_NEAR(map->zoom(), map->viewport().fitting(f.c->Calque_Enceinte->bounds()).zoom / 0.9,
                1e-9);
    f.w<QToolButton>("B_Outils_2")->click();
    EXPECT_EQ(map->currentTool(), carto::tool::Pan);
    f.w<QToolButton>("B_Outils_7")->click();
    EXPECT_EQ(map->currentTool(), 105);
    EXPECT_TRUE(f.w<QWidget>("Panel_Dist")->isVisible());
}

TEST(Disposition, TheScaleFollowsTheView) {
    EXPECT_EQ(formatMilliers(1234567), QStringLiteral("1234 567"));
    EXPECT_EQ(formatMilliers(500), QStringLiteral(" 500"));
    EXPECT_EQ(formatMilliers(0.4), QStringLiteral(" "));
    ControleFixture f;
    carto::MapView* map = f.c->surface().Map1;
    map->setZoom(map->paperWidth() * 20); // 20 m of plan for each centimetre of screen
    EXPECT_EQ(f.w<QLineEdit>("L_echelle")->text(), QStringLiteral("2 000"));
    map->setZoom(map->paperWidth() * 0.004);
    EXPECT_EQ(f.w<QLineEdit>("L_echelle")->text(), QStringLiteral("0.04"));
}

namespace {

// The caption a widget shows, when it shows one.
QString legende(const QWidget& w) {
    if (const auto* l = qobject_cast<const QLabel*>(&w))
        return l->text();
    if (const auto* b = qobject_cast<const QAbstractButton*>(&w))
        return b->text();
    return {};
}

// Every visible child of `panneau`, at any depth, against its visible siblings: no two
// overlap and every caption fits its widget.
void verifiePanneau(const QWidget& panneau, const QString& taille) {
    const QList<QWidget*> enfants = panneau.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    for (qsizetype i = 0; i < enfants.size(); ++i) {
        const QWidget& a = *enfants[i];
        if (!a.isVisible())
            continue;
        SCOPED_TRACE((taille + u' ' + a.objectName()).toStdString());
        EXPECT_TRUE(panneau.rect().contains(a.geometry()))
            << "outside its panel: " << a.objectName().toStdString();
        const QString texte = legende(a);
        if (!texte.isEmpty() && !qobject_cast<const QLabel*>(&a)) {
            // Buttons draw their caption with margins and, for boxes, the box itself.
            EXPECT_LE(a.sizeHint().width(), a.width()) << texte.toStdString();
        } else if (!texte.isEmpty()) {
            const QLabel& l = static_cast<const QLabel&>(a);
            const QFontMetrics m(l.font());
            const QRect r = l.wordWrap() ? m.boundingRect(l.contentsRect(),
                                                          Qt::AlignCenter | Qt::TextWordWrap, texte)
                                         : QRect(0, 0, m.horizontalAdvance(texte), m.height());
            EXPECT_LE(r.width(), l.contentsRect().width()) << texte.toStdString();
            EXPECT_LE(r.height(), l.contentsRect().height()) << texte.toStdString();
        }
        for (qsizetype j = i + 1; j < enfants.size(); ++j) {
            const QWidget& b = *enfants[j];
            if (b.isVisible() && !b.isWindow()) {
                EXPECT_FALSE(a.geometry().intersects(b.geometry()))
                    << a.objectName().toStdString() << " overlaps " << b.objectName().toStdString();
            }
        }
        verifiePanneau(a, taille);
    }
}

} // namespace

TEST(Disposition, NothingOverlapsAndNoCaptionIsCutFromSmallToLargeWindows) {
    ControleFixture f;
    f.ouvre(f.plan(30));
    f.c->surface().L_NomCimetiere->setText(QStringLiteral("Cimetière communal de Saint-Martin"));
    const int minimale = int(kLargeurMinimaleTwips / twipsParPixel(f.c->contexte()));
    for (const QSize taille : {QSize(minimale, 500), QSize(800, 600), QSize(1024, 768),
                               QSize(1600, 1000), QSize(1920, 1200)}) {
        f.c->resize(taille);
        QApplication::processEvents();
        const QString nom = QStringLiteral("%1x%2").arg(taille.width()).arg(taille.height());
        verifiePanneau(*f.w<QWidget>("Panel_Haut"), nom);
        verifiePanneau(*f.w<QWidget>("Panel_Droite"), nom);
        verifiePanneau(*f.w<QWidget>("Panel_Bas"), nom);
        // The name is shown, in full, between the tools and the scale.
        const QLabel* nomCimetiere = f.w<QLabel>("L_NomCimetiere");
        EXPECT_TRUE(nomCimetiere->isVisible()) << nom.toStdString();
        EXPECT_GT(nomCimetiere->width(), 0) << nom.toStdString();
    }
}
