// A form drawn in Designer with the control on it, turned into code by uic, built and
// shown: the properties set in the editor reach the control through its setters.
#include "control/veldra.h"
#include "ui_forme_plan.h"

#include <QCheckBox>
#include <gtest/gtest.h>

TEST(FormeDesigner, BuildsWithUicAndSetsTheDesignTimeProperties) {
    QWidget fenetre;
    Ui::FormePlan forme;
    forme.setupUi(&fenetre);
    fenetre.show();

    ASSERT_NE(forme.plan, nullptr);
    EXPECT_EQ(forme.plan->objectName(), "plan");
    EXPECT_EQ(forme.plan->RepCurseurs(), "/opt/cimetiere/curseurs/");
    EXPECT_EQ(forme.plan->RepFicAnalyse(), "/srv/rapports/AnalysePlan.txt");
    EXPECT_TRUE(forme.plan->Annulation());
    EXPECT_TRUE(forme.plan->isVisible());
    // The control is whole: its own widgets are there, found by their names.
    EXPECT_NE(forme.plan->findChild<QCheckBox*>(QStringLiteral("CB_ModeEdition")), nullptr);
}
