// What a database can do wrong: nobody there, a password refused, no PostGIS, a server that
// dies in the middle of a bracket, a table of the wrong geometry type, a plan already there.
#include "carto/model/update_access.h"
#include "pg_fixture.h"

#include <optional>

using carto::Map;
using carto::UpdateAccess;
namespace err = veldra::err;

namespace {

veldra::Erreur echecOuverture(Map& m, const QString& source) {
    try {
        m.loadMapSet(source);
    } catch (const veldra::Erreur& e) {
        return e;
    }
    ADD_FAILURE() << "ouvert : " << source.toStdString();
    return veldra::Erreur(0, {});
}

} // namespace

TEST_F(PgTest, ConnectionsThatFailSayWhyAndKeepThePlanOpen) {
    const QString base = enBase(40);
    Map m;
    m.loadMapSet(base);

    // A port nobody listens on.
    const veldra::Erreur personne =
        echecOuverture(m, QStringLiteral("PG:host=127.0.0.1 port=1 dbname=x user=veldra"));
    EXPECT_EQ(personne.numero(), err::PlanIllisible);
    EXPECT_TRUE(personne.description().contains(u"ne répond pas"))
        << qPrintable(personne.description());

    const QString nom = base.section(QStringLiteral("dbname="), 1).section(QLatin1Char(' '), 0, 0);
    const veldra::Erreur motDePasse = echecOuverture(
        m, pg->tcpConnection(nom, QStringLiteral("commis"), QStringLiteral("Faux7")));
    EXPECT_TRUE(motDePasse.description().contains(u"mot de passe"))
        << qPrintable(motDePasse.description());
    EXPECT_FALSE(motDePasse.description().contains(u"Faux7")); // never shown
    EXPECT_TRUE(motDePasse.description().contains(u"password=***"));

    const veldra::Erreur sansPostgis = echecOuverture(m, pg->connection(pg->createDatabase(false)));
    EXPECT_TRUE(sansPostgis.description().contains(u"PostGIS"))
        << qPrintable(sansPostgis.description());

    // The plan open before is still there, whole.
    EXPECT_EQ(m.mapSet(), base);
    EXPECT_EQ(m.requireLayer(u"Tombes").featureCount(), 40);
}

TEST_F(PgTest, AServerThatDiesInABracketLeavesNothingHalfWritten) {
    const QString base = enBase(60);
    Map m;
    m.loadMapSet(base);
    carto::Layer& tombes = m.requireLayer(u"Tombes");
    const QVariant nom = tombes.feature(5).attribute(u"Nom");
    const int avant = tombes.featureCount();
    std::optional<veldra::Erreur> erreur;
    try {
        UpdateAccess access(m);
        carto::Feature f = tombes.feature(5);
        f.setAttribute(u"Nom", QStringLiteral("Perdu"));
        tombes.updateFeature(f);
        tombes.addFeature(carto::Feature::region({{{1, 1}, {3, 1}, {3, 4}, {1, 4}}}));
        pg->kill();
        access.commit();
    } catch (const veldra::Erreur& e) {
        erreur = e;
    }
    ASSERT_TRUE(erreur);
    EXPECT_TRUE(erreur->description().contains(u"connexion")) << qPrintable(erreur->description());
    EXPECT_EQ(tombes.feature(5).attribute(u"Nom"), nom);
    EXPECT_EQ(tombes.featureCount(), avant);

    QString why;
    ASSERT_TRUE(pg->restart(&why)) << qPrintable(why);
    EXPECT_EQ(relu(base, 5, "Nom"), nom);
    Map relue;
    relue.loadMapSet(base);
    EXPECT_EQ(relue.requireLayer(u"Tombes").featureCount(), avant);
}

TEST_F(PgTest, ATableOfTheWrongGeometryTypeRefusesTheWriteWithAClearMessage) {
    const QString nom = pg->createDatabase();
    QString out;
    ASSERT_TRUE(pg->sql(
        nom,
        QStringLiteral("CREATE TABLE \"Tombes\"(fid serial PRIMARY KEY, \"Nom\" varchar(32), "
                       "\"OGR_STYLE\" varchar, geom geometry(Point, 0));"
                       "INSERT INTO \"Tombes\"(\"Nom\", geom) VALUES ('Borne', 'POINT(2 3)');"
                       "CREATE TABLE mapset_layers(position integer PRIMARY KEY, "
                       "layer_name text NOT NULL, source text);"
                       "INSERT INTO mapset_layers VALUES (1, 'Tombes', NULL);"),
        &out))
        << qPrintable(out);
    Map m;
    m.loadMapSet(pg->connection(nom));
    carto::Layer& tombes = m.requireLayer(u"Tombes");
    ASSERT_EQ(tombes.featureCount(), 1);
    const auto refus = [&](auto&& ecrit) -> QString {
        try {
            UpdateAccess access(m);
            ecrit();
            access.commit();
        } catch (const veldra::Erreur& e) {
            return e.description();
        }
        return {};
    };
    const carto::Feature region = carto::Feature::region({{{1, 1}, {3, 1}, {3, 4}, {1, 4}}});
    EXPECT_TRUE(refus([&] { tombes.addFeature(region); }).contains(u"n'accepte pas"));
    EXPECT_EQ(tombes.featureCount(), 1);
    EXPECT_EQ(tombes.feature(1).kind(), carto::FeatureKind::Symbol);
}

TEST_F(PgTest, CopyRefusesADatabaseThatHoldsAPlanOrLacksPostGIS) {
    const QString plan = echantillon(30);
    const QString base = enBase(plan);
    try {
        veldra::plantool::copyPlan(plan, base);
        ADD_FAILURE() << "copié par-dessus un plan";
    } catch (const veldra::Erreur& e) {
        EXPECT_TRUE(e.description().contains(u"contient déjà")) << qPrintable(e.description());
    }
    EXPECT_EQ(relu(base, 1, "IDGCF").toInt(), 1); // the plan there is untouched
    try {
        veldra::plantool::copyPlan(plan, pg->connection(pg->createDatabase(false)));
        ADD_FAILURE() << "copié sans PostGIS";
    } catch (const veldra::Erreur& e) {
        EXPECT_TRUE(e.description().contains(u"PostGIS")) << qPrintable(e.description());
    }
}
