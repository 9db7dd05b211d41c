// The public surface: properties, their persistence, and late binding over the identity
// table.
#include "base/erreur.h"
#include "control/dispatch.h"
#include "control/types_automation.h"
#include "control_fixture.h"

#include <QSignalSpy>
#include <set>

using namespace veldra;

TEST(Surface, PropertyAccessorsAddTheirSeparatorsAndRepCurseursIsShared) {
    ControleFixture f;
    f.c->setRepCurseurs(QStringLiteral("/opt/curseurs"));
    EXPECT_EQ(f.c->RepCurseurs(), QStringLiteral("/opt/curseurs/"));
    f.c->setRepCurseurs(QStringLiteral("/opt/autres/"));
    EXPECT_EQ(f.c->RepCurseurs(), QStringLiteral("/opt/autres/"));
    Veldra other;
    EXPECT_EQ(other.RepCurseurs(), QStringLiteral("/opt/autres/")); // one for the process

    f.c->setRepFicAnalyse(QStringLiteral("/var/rapports"));
    EXPECT_EQ(f.c->RepFicAnalyse(), QStringLiteral("/var/rapports/AnalysePlan.txt"));
    EXPECT_EQ(other.RepFicAnalyse(), QStringLiteral("AnalysePlan.txt")); // one per control

    QSignalSpy changed(f.c.get(), &Veldra::PropertyChanged);
    f.c->setRepertoire_Export(QStringLiteral("/tmp/export"));
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed.at(0).at(0).toString(), QStringLiteral("Repertoire_Export"));
    EXPECT_EQ(f.c->ImageLocalisationTerminee(), QString());
}

TEST(Surface, DesignTimePropertiesStoreOnlyWhatDiffersFromTheDefaults) {
    PropertyBag bag;
    {
        ControleFixture f;
        f.c->ReadProperties(bag); // an empty bag: the defaults
        EXPECT_EQ(f.c->RepFicAnalyse(), QStringLiteral("AnalysePlan.txt"));
        EXPECT_EQ(f.c->RepCurseurs(), f.dossierControle() + QStringLiteral("/Images/Curseurs/"));
        f.c->setFontMax(true);
        f.c->setRepertoire_Export(QStringLiteral("/x"));
        f.c->WriteProperties(bag);
        EXPECT_FALSE(bag.contains(QStringLiteral("RepFicAnalyse")));
        EXPECT_FALSE(bag.contains(QStringLiteral("RepCurseurs")));
        EXPECT_FALSE(bag.contains(QStringLiteral("FontMax")));

        f.c->setRepFicAnalyse(QStringLiteral("/rapports"));
        f.c->WriteProperties(bag);
        EXPECT_EQ(bag.values().value(QStringLiteral("RepFicAnalyse")).toString(),
                  QStringLiteral("/rapports/AnalysePlan.txt"));
    }
    // Values read back are used as they are: nothing appended.
    bag.WriteProperty(QStringLiteral("RepCurseurs"), QStringLiteral("/sans/barre"), QString());
    ControleFixture g;
    g.c->ReadProperties(bag);
    EXPECT_EQ(g.c->RepCurseurs(), QStringLiteral("/sans/barre"));
    EXPECT_EQ(g.c->RepFicAnalyse(), QStringLiteral("/rapports/AnalysePlan.txt"));
    EXPECT_FALSE(g.c->FontMax());
    EXPECT_EQ(g.c->Repertoire_Export(), QString());
}

TEST(Surface, TheIdentityTableIsCompleteAndOrdered) {
    const auto& all = dispatch::membres();
    std::set<qint32> ids;
    int events = 0, methods = 0;
    for (const auto& m : all) {
        EXPECT_TRUE(ids.insert(m.dispid).second) << m.nom;
        events += m.genre == dispatch::Genre::Evenement ? 1 : 0;
        methods += m.genre == dispatch::Genre::Methode ? 1 : 0;
    }
    EXPECT_EQ(events, 13);
    EXPECT_EQ(methods, 28);
    EXPECT_EQ(dispatch::membre(0x60030079)->parametres.size(), 4u);
    EXPECT_STREQ(dispatch::membre(QStringLiteral("change"), dispatch::Genre::Evenement)->nom,
                 "Change");
}

TEST(Surface, LateBindingAnswersEveryMember) {
    ControleFixture f;
    for (const auto& m : dispatch::membres()) {
        if (m.genre == dispatch::Genre::Evenement)
            continue;
        QVariantList args;
        if (m.genre == dispatch::Genre::Methode) {
            // A method is there: a call without its arguments is refused for their count.
            if (m.parametres.empty())
                continue; // called below with real arguments
            try {
                f.c->Invoke(m.dispid, args);
                ADD_FAILURE() << m.nom << " ran without its arguments";
            } catch (const Erreur& e) {
                EXPECT_EQ(e.numero(), 450) << m.nom;
            }
            continue;
        }
        EXPECT_NO_THROW(f.c->Invoke(m.dispid, args)) << m.nom; // a read
    }
    QVariantList inconnu;
    try {
        f.c->Invoke(0x60031234, inconnu);
        ADD_FAILURE() << "an unknown member ran";
    } catch (const Erreur& e) {
        EXPECT_EQ(e.numero(), 438);
    }

    QVariantList ecrit{QStringLiteral("/plans/a.gpkg")};
    f.c->Invoke(0x4003000a, ecrit);
    EXPECT_EQ(f.c->CheminCimetiere, QStringLiteral("/plans/a.gpkg"));
    QVariantList vide;
    EXPECT_EQ(f.c->Invoke(0x4003000d, vide).value<QObject*>(), f.c->surface().Map1);
    EXPECT_THROW(f.c->Invoke(0x68030000, ecrit), Erreur); // read only

    QVariantList droit{false};
    f.c->Invoke(0x600300a2, droit);
    EXPECT_TRUE(f.w<QCheckBox>("CB_ModeEdition")->isHidden());
    QVariantList trop{true, true};
    EXPECT_THROW(f.c->Invoke(0x600300a2, trop), Erreur);

    const QString plan = f.plan(30);
    QVariantList ouvre{plan, false, QStringLiteral("Par liaison"), true};
    f.c->Invoke(0x60030079, ouvre);
    EXPECT_EQ(ouvre.size(), 4);
    EXPECT_EQ(f.w<QLabel>("L_NomCimetiere")->text(), QStringLiteral("Par liaison"));
    QVariantList courant;
    EXPECT_EQ(f.c->Invoke(0x40030006, courant).value<carto::Layer*>(), f.c->Calque_Tombe);
}
