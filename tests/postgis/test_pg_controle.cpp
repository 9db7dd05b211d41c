// The control opens a plan held in PostGIS the way it opens a file, and writes the host's
// keys and names into it.
#include "control_fixture.h"
#include "pg_fixture.h"

#include <QLabel>

TEST_F(PgTest, TheControlOpensADatabasePlanAndWritesTheHostsRecordsIntoIt) {
    ControleFixture f;
    const QString base = enBase(f.plan(80));
    f.ouvre(base);
    EXPECT_TRUE(f.messages.empty()) << qPrintable(f.messages.front().texte);
    EXPECT_EQ(f.c->findChild<QLabel*>(QStringLiteral("L_NB_Tombes"))->text(),
              "Le cimetière contient : 80 emplacement(s)");

    QString type = QStringLiteral("C"), p1, p2, message;
    bool jauge = false;
    RecordsetPtr rs = f.c->GetInfo(type, p1, p2, jauge, message);
    ASSERT_TRUE(rs);
    for (rs->moveFirst(); !rs->eof(); rs->moveNext()) {
        rs->setValue(u"Nom", QStringLiteral("Famille %1").arg(rs->value(u"IdMapInfo").toInt()));
        rs->update();
    }
    QString maj = QStringLiteral("A");
    f.c->MAJ(rs, maj);
    EXPECT_TRUE(f.messages.empty());
    EXPECT_EQ(relu(base, 12, "Nom").toString(), "Famille 12");
}
