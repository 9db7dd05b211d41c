#include "analyse_fixture.h"
#include "analysis/analyse_plan.h"
#include "analysis/rapport.h"

#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <gdal_priv.h>
#include <memory>
#include <ogrsf_frmts.h>
#include <unistd.h>

using namespace veldra;

namespace {

// What the report must say, counted with OGR's own geometry on the plan's file, without
// the control's engine.
struct Attendu {
    int sections = 0, allees = 0, terrains = 0, enceinte = 0, decor = 0, texte = 0;
    double largeur = 0, hauteur = 0;
    int sansNumero = 0, sansAllee = 0, sansSection = 0, nonInclus = 0, exterieurs = 0;
    int sectionsSansNom = 0, sectionsExt = 0, sectionsNonIncl = 0;
    int alleesSansNom = 0, alleesExt = 0, alleesNonIncl = 0;
};

using Geometries = std::vector<std::unique_ptr<OGRGeometry>>;

Attendu compteAvecOgr(const QString& plan) {
    GDALAllRegister();
    const std::unique_ptr<GDALDataset> ds(
        GDALDataset::Open(plan.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
    EXPECT_NE(ds, nullptr);
    Attendu a;
    const auto geometries = [&](const char* nom, int& n, std::vector<QString>* noms = nullptr) {
        Geometries g;
        for (auto& f : *ds->GetLayerByName(nom)) {
            g.emplace_back(f->GetGeometryRef()->clone());
            if (noms)
                noms->push_back(QString::fromUtf8(f->GetFieldAsString("Nom")));
        }
        n = int(g.size());
        return g;
    };
    std::vector<QString> nomsSections, nomsAllees;
    const Geometries sections = geometries("Sections", a.sections, &nomsSections);
    const Geometries allees = geometries("Allées", a.allees, &nomsAllees);
    const Geometries enceinte = geometries("Enceinte", a.enceinte);
    geometries("Décor", a.decor);
    geometries("Texte", a.texte);
    EXPECT_EQ(enceinte.size(), 1u);
    OGREnvelope e;
    enceinte[0]->getEnvelope(&e);
    a.largeur = e.MaxX - e.MinX;
    a.hauteur = e.MaxY - e.MinY;
    const auto dansUne = [](const Geometries& zones, const OGRPoint& p) {
        return std::any_of(zones.begin(), zones.end(),
                           [&p](const auto& z) { return z->Intersects(&p); });
    };
    for (auto& f : *ds->GetLayerByName("Tombes")) {
        ++a.terrains;
        const OGRGeometry* g = f->GetGeometryRef();
        OGRPoint centre;
        g->Centroid(&centre);
        a.sansNumero += QString::fromUtf8(f->GetFieldAsString("Numero")).isEmpty() ? 1 : 0;
        a.sansSection += dansUne(sections, centre) ? 0 : 1;
        a.sansAllee += dansUne(allees, centre) ? 0 : 1;
        a.nonInclus += g->Within(enceinte[0].get()) ? 0 : 1;
        a.exterieurs += g->Intersects(enceinte[0].get()) ? 0 : 1;
    }
    for (std::size_t i = 0; i < sections.size(); ++i) {
        a.sectionsSansNom += nomsSections[i].isEmpty() ? 1 : 0;
        a.sectionsExt += sections[i]->Intersects(enceinte[0].get()) ? 0 : 1;
        a.sectionsNonIncl += sections[i]->Within(enceinte[0].get()) ? 0 : 1;
    }
    for (std::size_t i = 0; i < allees.size(); ++i) {
        a.alleesSansNom += nomsAllees[i].isEmpty() ? 1 : 0;
        a.alleesExt += allees[i]->Intersects(enceinte[0].get()) ? 0 : 1;
        a.alleesNonIncl += allees[i]->Within(enceinte[0].get()) ? 0 : 1;
    }
    return a;
}

// The original report, written out here line by line from the figures.
QStringList rapportAttendu(const Attendu& a, const QString& nom) {
    const QChar sep = QLocale().decimalPoint().front();
    const auto m = [sep](double v) { return longueurRapport(v, sep); };
    const auto n = [](int v) { return QString::number(v); };
    return {QStringLiteral("Informations générales du plan"),
            QStringLiteral("-------------------------------"),
            QStringLiteral(" "),
            QStringLiteral(" - Nom du cimetière : ") + nom,
            QStringLiteral(" - Nombre de sections : ") + n(a.sections),
            QStringLiteral(" - Nombre d'allées : ") + n(a.allees),
            QStringLiteral(" - Nombre de terrains : ") + n(a.terrains),
            QStringLiteral(" - Dimension de l'enceinte : %1 x %2 (mètres)")
                .arg(m(a.largeur), m(a.hauteur)),
            QStringLiteral(" "),
            QStringLiteral(" - Nombre d'éléments sur le calque enceinte : ") + n(a.enceinte),
            QStringLiteral(" - Nombre d'éléments sur le calque Décor : ") + n(a.decor),
            QStringLiteral(" - Nombre d'éléments sur le calque Texte : ") + n(a.texte),
            QStringLiteral(" "),
            QStringLiteral("Remarques"),
            QStringLiteral("----------"),
            QStringLiteral(" "),
            QStringLiteral("-> Terrains"),
            QStringLiteral(" "),
            QStringLiteral(" - Nombre de terrains sans numéro : ") + n(a.sansNumero),
            QStringLiteral(" - Nombre de terrains n'appartenant à aucune allée : ") +
                n(a.sansAllee),
            QStringLiteral(" - Nombre de terrains n'appartenant à aucune section : ") +
                n(a.sansSection),
            QStringLiteral(" - Nombre de terrains qui ne sont pas entièrement dessinés dans "
                           "l'enceinte : ") +
                n(a.nonInclus),
            QStringLiteral(" - Nombre de terrains qui se trouvent en dehors de l'enceinte : ") +
                n(a.exterieurs),
            QStringLiteral(" "),
            QStringLiteral(" "),
            QStringLiteral("-> Sections"),
            QStringLiteral(" "),
            QStringLiteral(" - Nombre de sections sans nom : ") + n(a.sectionsSansNom),
            QStringLiteral(" - Nombre de sections qui se trouvent en dehors de l'enceinte : ") +
                n(a.sectionsExt),
            QStringLiteral(" - Nombre de sections qui ne sont pas entièrement dessinées dans "
                           "l'enceinte : ") +
                n(a.sectionsNonIncl) + QStringLiteral(" (faire un ajustage des contours)"),
            QStringLiteral(" "),
            QStringLiteral(" "),
            QStringLiteral("-> Allées"),
            QStringLiteral(" "),
            QStringLiteral(" - Nombre d'allées sans nom : ") + n(a.alleesSansNom),
            QStringLiteral(" - Nombre d'allées qui se trouvent en dehors de l'enceinte : ") +
                n(a.alleesExt),
            QStringLiteral(" - Nombre d'allées qui ne sont pas entièrement dessinées dans "
                           "l'enceinte : ") +
                n(a.alleesNonIncl) + QStringLiteral(" (faire un ajustage des contours)")};
}

Constats compte(Veldra& c) {
    OptionsAnalyse o;
    o.jauge = false;
    o.detaillee = true;
    o.signale = [](const Erreur& e) { ADD_FAILURE() << e.message().toStdString(); };
    return analysePlan(c.contexte(), o);
}

} // namespace

TEST(Rapport, TheSamplePlansReportMatchesWhatOgrCounts) {
    AnalyseFixture f(300, true);
    const Attendu a = compteAvecOgr(f.chemin);
    // The faults the sample holds on purpose are there to be found.
    EXPECT_EQ(a.sansNumero, 1);
    EXPECT_EQ(a.sansSection, 3);
    EXPECT_EQ(a.sansAllee, 3);
    EXPECT_EQ(a.nonInclus, 2);
    EXPECT_EQ(a.exterieurs, 1);
    EXPECT_EQ(a.alleesSansNom, 1);

    f.analyse();
    QByteArray brut;
    const QStringList lignes = f.lignesRapport(&brut);
    EXPECT_EQ(lignes, rapportAttendu(a, QStringLiteral("Cimetière de test")));
    // Windows-1252, CR LF only: "é" is one byte, no bare line feed.
    EXPECT_TRUE(brut.contains("g\xE9n\xE9rales"));
    EXPECT_EQ(brut.count('\n'), brut.count("\r\n"));
    EXPECT_EQ(f.ouverts, QStringList{f.rapport()});
    EXPECT_TRUE(f.messages.empty());
    EXPECT_TRUE(f.w<QFrame>("Panel_Jauge")->isHidden());
    // No detailed section, no faults panel, unless the host asks.
    EXPECT_EQ(lignes.size(), 37);
    EXPECT_TRUE(f.w<QFrame>("Panel_Anomalies")->isHidden());
}

TEST(Rapport, TheDetailedAnalysisAddsItsChecksAfterTheOriginalLines) {
    AnalyseFixture f(300, true);
    f.analyse();
    const QStringList original = f.lignesRapport();
    f.c->setAnalyseDetaillee(true);
    f.analyse();
    const QStringList detaille = f.lignesRapport();
    ASSERT_EQ(detaille.size(), 43);
    EXPECT_EQ(detaille.mid(0, 37), original);
    EXPECT_EQ(detaille.mid(37),
              (QStringList{" ", " ", "-> Contrôles complémentaires", " ",
                           " - Nombre de terrains qui en chevauchent un autre : 2",
                           " - Nombre de terrains dont le numéro est porté par un autre terrain "
                           "de la même allée : 2"}));
}

TEST(Rapport, LengthsAreRoundedHalfToEvenWithoutATrailingZero) {
    EXPECT_EQ(longueurRapport(120, u','), "120");
    EXPECT_EQ(longueurRapport(80.25, u','), "80,2");
    EXPECT_EQ(longueurRapport(80.75, u'.'), "80.8");
    EXPECT_EQ(longueurRapport(0.25, u','), "0,2");
    EXPECT_EQ(longueurRapport(12.04, u','), "12");
    EXPECT_EQ(longueurRapport(7.96, u','), "8");
    EXPECT_EQ(longueurRapport(0, u','), "0");
}

TEST(Rapport, StraddlingAndOutsidePlotsAndANamelessSectionAreCountedApart) {
    AnalyseFixture f;
    const Constats avant = compte(*f.c);
    EXPECT_EQ(avant.terrainsSansNumero + avant.terrainsSansAllee + avant.terrainsSansSection +
                  avant.terrainsNonInclus + avant.terrainsExterieurs,
              0);
    const carto::Rect e = f.c->Calque_Enceinte->bounds();
    const carto::Feature aCheval = f.ajouteTombe(
        AnalyseFixture::rectangle(e.xmax - 0.5, 10, e.xmax + 0.5, 12), QStringLiteral("500"));
    const carto::Feature dehors = f.ajouteTombe(
        AnalyseFixture::rectangle(e.xmax + 5, 10, e.xmax + 6, 12), QStringLiteral("501"));
    f.c->Calque_Sections->addFeature(carto::Feature::region({{{e.xmax + 10, 0},
                                                              {e.xmax + 20, 0},
                                                              {e.xmax + 20, 10},
                                                              {e.xmax + 10, 10},
                                                              {e.xmax + 10, 0}}}));

    const Constats c = compte(*f.c);
    EXPECT_EQ(c.terrainsNonInclus, 2);
    EXPECT_EQ(c.terrainsExterieurs, 1);
    EXPECT_EQ(c.terrainsSansSection, 2);
    EXPECT_EQ(c.sectionsSansNom, 1);
    EXPECT_EQ(c.sectionsExterieures, 1);
    EXPECT_EQ(c.sectionsNonIncluses, 1);
    // The enclosure test the control publishes agrees with the passes.
    Contexte& ctx = f.c->contexte();
    EXPECT_FALSE(DansEnceinte(ctx, aCheval, 2));
    EXPECT_TRUE(DansEnceinte(ctx, aCheval, 1));
    EXPECT_FALSE(DansEnceinte(ctx, dehors, 1));
    EXPECT_TRUE(DansEnceinte(ctx, f.c->Calque_Tombe->allFeatures().at(0), 2));
    EXPECT_THROW(DansEnceinte(ctx, dehors, 3), Erreur);
}

TEST(Rapport, APlanWithoutEnclosureSectionsOrPlotsStillGetsItsReport) {
    AnalyseFixture f(0);
    {
        carto::UpdateAccess acces(f.c->contexte().carte());
        for (carto::Layer* l : {f.c->Calque_Enceinte, f.c->Calque_Sections}) {
            const carto::Features tous = l->allFeatures();
            for (const qint64 fid : tous.fids())
                l->deleteFeature(fid);
        }
        acces.commit();
    }
    EXPECT_THROW(DansEnceinte(f.c->contexte(), f.c->Calque_Allees->allFeatures().at(0), 1), Erreur);
    f.analyse();
    const QStringList l = f.lignesRapport();
    ASSERT_EQ(l.size(), 37);
    EXPECT_EQ(l[4], " - Nombre de sections : 0");
    EXPECT_EQ(l[6], " - Nombre de terrains : 0");
    EXPECT_EQ(l[7], " - Dimension de l'enceinte : 0 x 0 (mètres)");
    // Without an enclosure, nothing is counted against it.
    EXPECT_EQ(l[35], " - Nombre d'allées qui se trouvent en dehors de l'enceinte : 0");
    EXPECT_TRUE(f.messages.empty());
    EXPECT_EQ(f.ouverts.size(), 1);
}

TEST(Rapport, AFolderThatCannotBeWrittenFallsBackAndAReadOnlyReportIsSaid) {
    AnalyseFixture f;
    const QString donnees = f.dir.filePath(QStringLiteral("xdg"));
    qputenv("XDG_DATA_HOME", donnees.toUtf8());
    // A folder that does not exist.
    f.c->setRepFicAnalyse(f.dir.filePath(QStringLiteral("absent/dossier")));
    f.analyse();
    const QString repli = donnees + QStringLiteral("/veldra/AnalysePlan.txt");
    EXPECT_EQ(f.ouverts.value(0), repli);
    EXPECT_EQ(AnalyseFixture::lisRapport(repli).size(), 37);

    // The default, a bare file name, goes to the control's folder.
    PropertyBag sac;
    f.c->ReadProperties(sac);
    EXPECT_EQ(f.c->RepFicAnalyse(), "AnalysePlan.txt");
    f.analyse();
    EXPECT_EQ(f.ouverts.value(1), f.dossierControle() + QStringLiteral("/AnalysePlan.txt"));

    // A report that cannot be written (a folder holds its name): said, titled, and the
    // editor still opened.
    f.c->setRepFicAnalyse(f.dossierRapports());
    ASSERT_TRUE(QDir().mkpath(f.rapport()));
    f.analyse();
    ASSERT_FALSE(f.messages.empty());
    EXPECT_EQ(f.messages.back().titre, "AnalyseConcessions");
    EXPECT_TRUE(f.messages.back().texte.startsWith("70 : "))
        << f.messages.back().texte.toStdString();
    EXPECT_EQ(f.ouverts.size(), 3);
    EXPECT_TRUE(QFileInfo(f.rapport()).isDir());
    ASSERT_TRUE(QDir(f.rapport()).removeRecursively());

    // Writable again; a second analysis replaces the whole file.
    f.messages.clear();
    QFile ancien(f.rapport());
    ASSERT_TRUE(ancien.open(QIODevice::WriteOnly));
    ancien.write(QByteArray(10000, 'x'));
    ancien.close();
    f.analyse();
    EXPECT_EQ(f.lignesRapport().size(), 37);
    EXPECT_TRUE(f.messages.empty());
    qunsetenv("XDG_DATA_HOME");
}

TEST(Rapport, AReadOnlyFolderFallsBack) {
    if (geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind root";
    AnalyseFixture f;
    const QString donnees = f.dir.filePath(QStringLiteral("xdg"));
    qputenv("XDG_DATA_HOME", donnees.toUtf8());
    QFile::setPermissions(f.dossierRapports(), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    f.analyse();
    QFile::setPermissions(f.dossierRapports(),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    EXPECT_EQ(f.ouverts.value(0), donnees + QStringLiteral("/veldra/AnalysePlan.txt"));
    EXPECT_FALSE(QFile::exists(f.rapport()));
    qunsetenv("XDG_DATA_HOME");
}

TEST(Rapport, ThePassesShowTheGaugeAndLeaveItClosed) {
    AnalyseFixture f;
    QStringList titres;
    QObject::connect(f.w<QProgressBar>("ProgressBar1"), &QProgressBar::valueChanged, [&] {
        const QString t = f.w<QLabel>("L_Message")->text();
        if (!t.isEmpty() && (titres.isEmpty() || titres.back() != t))
            titres << t;
    });
    f.analyse();
    EXPECT_EQ(titres, (QStringList{"Analyse des concessions", "Analyse des sections",
                                   "Analyse des allées"}));
    EXPECT_EQ(f.w<QLabel>("Titre_Jauge")->text(), " Analyse du plan");
    EXPECT_TRUE(f.w<QFrame>("Panel_Jauge")->isHidden());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST(Rapport, WithoutAPlanEachPassSaysWhyAndTheReportIsStillWritten) {
    ControleFixture f;
    QStringList ouverts;
    f.c->setEditeurHook([&ouverts](const QString& fichier) { ouverts << fichier; });
    f.c->setRepFicAnalyse(f.dir.path());
    f.w<QPushButton>("Btn_AnalysePlan")->click();
    ASSERT_EQ(f.messages.size(), 3u); // plots, sections, alleys
    for (const Message& m : f.messages) {
        EXPECT_EQ(m.titre, "AnalyseConcessions");
        EXPECT_TRUE(m.texte.startsWith(QString::number(err::CoucheInconnue) + " : "));
    }
    ASSERT_EQ(ouverts.size(), 1);
    EXPECT_EQ(AnalyseFixture::lisRapport(ouverts[0]).size(), 37);
    // The other commands of the module say nothing or refuse clearly.
    QString liste = QStringLiteral("1@");
    bool zoom = true;
    EXPECT_THROW(f.c->SitueTombes(liste, zoom), Erreur);
    f.c->contexte().crochets.enregistreMemorisation();
    EXPECT_EQ(f.c->GetNbEltsMemorises(), 0);
    f.w<QPushButton>("Btn_Rechercher")->click();
    EXPECT_EQ(f.messages.back().texte, "Vous devez saisir un numéro d'emplacement !");
}
