// The pop-up menu on its own: entries numbered in the order they are added, headers
// included; what can be chosen; what the chosen entry reports.
#include "base/erreur.h"
#include "editing/menu_surgissant.h"

#include <QAction>
#include <QMenu>
#include <gtest/gtest.h>

using namespace veldra;

namespace {

// Every action of the menu and its sub-menus, by text.
QAction* action(QMenu& m, const QString& texte) {
    for (QAction* a : m.actions()) {
        if (a->text() == texte)
            return a;
        if (a->menu())
            if (QAction* b = action(*a->menu(), texte))
                return b;
    }
    return nullptr;
}

MenuSurgissant exemple() {
    MenuSurgissant m;
    const int e = m.ajouteEntete(QStringLiteral("EDITION"));      // 1
    m.ajoute(QStringLiteral("Copier"), {}, {}, e);                // 2
    m.ajoute(QStringLiteral("Coller"), {}, {}, e, false);         // 3
    const int g = m.ajoute(QStringLiteral("Aligner"), {}, {}, e); // 4
    m.ajoute(QStringLiteral("en Haut"), QStringLiteral("PositionHaut"), QStringLiteral("Haut"),
             g);                                                              // 5
    const int h = m.ajoute(QStringLiteral("Orienter"), {}, {}, e, false);     // 6
    m.ajoute(QStringLiteral("la même en Bas"), {}, QStringLiteral("Bas"), h); // 7
    m.ajoute(QStringLiteral("Coché"), {}, {}, 0, true, true);                 // 8
    return m;
}

int choisit(MenuSurgissant& m, const QString& texte) {
    return m.montre({10, 10}, std::nullopt,
                    [&](QMenu& menu, const QPoint&) { return action(menu, texte); });
}

} // namespace

TEST(MenuSurgissant, NumbersEntriesInOrderWithTheirHeaders) {
    MenuSurgissant m = exemple();
    EXPECT_EQ(m.nombre(), 8);
    EXPECT_TRUE(m.entree(1).entete);
    EXPECT_EQ(m.entree(5).cle, QStringLiteral("PositionHaut"));
    EXPECT_EQ(m.entree(5).parent, 4);
    EXPECT_THROW(m.entree(0), Erreur);
    EXPECT_THROW(m.entree(9), Erreur);
    EXPECT_THROW(m.ajoute(QStringLiteral("x"), {}, {}, 42), Erreur);
}

TEST(MenuSurgissant, ReportsTheChosenNumberAndTagOrNothing) {
    MenuSurgissant m = exemple();
    EXPECT_EQ(choisit(m, QStringLiteral("Copier")), 2);
    EXPECT_TRUE(m.etiquetteChoisie().isEmpty());
    EXPECT_EQ(choisit(m, QStringLiteral("en Haut")), 5);
    EXPECT_EQ(m.etiquetteChoisie(), QStringLiteral("Haut"));
    // Disabled entries, entries of a disabled group and headers are never chosen.
    EXPECT_EQ(choisit(m, QStringLiteral("Coller")), 0);
    EXPECT_EQ(choisit(m, QStringLiteral("la même en Bas")), 0);
    EXPECT_TRUE(m.etiquetteChoisie().isEmpty());
    EXPECT_EQ(choisit(m, QStringLiteral("EDITION")), 0);
    EXPECT_EQ(choisit(m, QStringLiteral("rien de tel")), 0);
    EXPECT_FALSE(m.disponible(6));
    EXPECT_TRUE(m.disponible(8));
}

TEST(MenuSurgissant, BuildsHeadersInlineAndGroupsAsSubMenus) {
    MenuSurgissant m = exemple();
    QMenu& menu = m.construit();
    QAction* entete = action(menu, QStringLiteral("EDITION"));
    ASSERT_NE(entete, nullptr);
    EXPECT_FALSE(entete->isEnabled());
    EXPECT_TRUE(menu.actions().contains(action(menu, QStringLiteral("Copier"))));
    QAction* groupe = action(menu, QStringLiteral("Aligner"));
    ASSERT_NE(groupe, nullptr);
    ASSERT_NE(groupe->menu(), nullptr);
    EXPECT_TRUE(groupe->menu()->actions().contains(action(menu, QStringLiteral("en Haut"))));
    EXPECT_FALSE(action(menu, QStringLiteral("Orienter"))->isEnabled());
    EXPECT_TRUE(action(menu, QStringLiteral("Coché"))->isChecked());
    EXPECT_EQ(action(menu, QStringLiteral("en Haut"))->data().toInt(), 5);
}

TEST(MenuSurgissant, KeepsClearOfTheRectangleToAvoid) {
    MenuSurgissant m = exemple();
    QPoint ou;
    m.montre({100, 100}, QRect(90, 90, 50, 50), [&](QMenu&, const QPoint& p) {
        ou = p;
        return nullptr;
    });
    EXPECT_GE(ou.x(), 140);
    m.montre({300, 300}, QRect(0, 0, 50, 50), [&](QMenu&, const QPoint& p) {
        ou = p;
        return nullptr;
    });
    EXPECT_EQ(ou, QPoint(300, 300));
}
