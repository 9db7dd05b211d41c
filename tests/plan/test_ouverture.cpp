// Opening plans: the layers' opening state, the datasets, the temporary layers, the
// user's settings, and the failures the opening reports and survives.
#include "context/ini_file/ini_file.h"
#include "context/ini_file/profile.h"
#include "control_fixture.h"

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <cmath>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

using namespace veldra;

namespace {

int calquesNommes(const carto::Map& map, const QString& nom) {
    int n = 0;
    for (const carto::Layer* l : map.layers())
        n += l->name() == nom ? 1 : 0;
    return n;
}

void ecritIni(const QString& chemin, const QStringList& lignes) {
    QFile f(chemin);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(("[Paramètres]\r\n" + lignes.join(QStringLiteral("\r\n")) + "\r\n").toLatin1());
}

// Renames the raster layer of a plan in its drawing order.
void renommeRaster(const QString& plan, const char* nom) {
    GDALAllRegister();
    GDALDatasetUniquePtr ds(
        GDALDataset::Open(plan.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
    ASSERT_TRUE(ds);
    const QByteArray sql = QByteArray("UPDATE mapset_layers SET layer_name = '") + nom +
                           "' WHERE layer_name = 'Raster'";
    ds->ExecuteSQL(sql.constData(), nullptr, nullptr);
}

} // namespace

TEST(Ouverture, AnExistingPlanOpensReadOnlyOnThePlotsLayer) {
    ControleFixture f;
    f.ouvre(f.plan(60));
    EXPECT_EQ(f.erreursOuverture(), 0);
    Veldra& c = *f.c;
    ASSERT_NE(c.Calque_Tombe, nullptr);
    EXPECT_EQ(c.Calque_Courant, c.Calque_Tombe);
    EXPECT_FALSE(c.ModeEdition);
    EXPECT_EQ(f.w<QComboBox>("Combo_Calque")->currentText(), QStringLiteral("Tombes"));
    for (const carto::Layer* l : c.surface().Map1->map().layers()) {
        EXPECT_EQ(l->editable(), l == c.Calque_Numero) << l->name().toStdString();
        EXPECT_FALSE(l->selectable()) << l->name().toStdString();
    }
    EXPECT_FALSE(c.Calque_Sections->visible());
    EXPECT_FALSE(c.Calque_Allees->visible());
    EXPECT_EQ(c.Calque_Raster, nullptr);
    EXPECT_TRUE(f.w<QCheckBox>("CB_PlanNumerise")->isHidden());
    EXPECT_TRUE(f.w<QCheckBox>("CB_QUE_PlanNumerise")->isHidden());

    carto::Map& map = c.surface().Map1->map();
    ASSERT_NE(c.DataSetTombes, nullptr);
    EXPECT_EQ(c.Calque_Tombe->labels().dataset, c.DataSetTombes);
    EXPECT_EQ(c.Calque_Tombe->labels().field, QStringLiteral("Nom"));
    EXPECT_TRUE(c.Calque_Tombe->autoLabel());
    EXPECT_FALSE(c.Calque_Tombe->labels().visible);
    EXPECT_NE(map.dataset(u"DsSections"), nullptr);
    EXPECT_NE(map.dataset(u"DsAllees"), nullptr);
    EXPECT_EQ(f.w<QLabel>("L_NB_Tombes")->text(),
              QStringLiteral("Le cimetière contient : 60 emplacement(s)"));
    EXPECT_EQ(map.selectionStyle.regionColor, 65535);
    EXPECT_EQ(c.surface().Map1->currentTool(), carto::tool::Select);
    // The view frames the enclosure with a margin.
    const carto::Rect enceinte = c.Calque_Enceinte->bounds();
    EXPECT_TRUE(c.surface().Map1->bounds().contains(enceinte));

    bool droit = false;
    c.ChangeDroitEdition(droit);
    EXPECT_TRUE(f.w<QCheckBox>("CB_ModeEdition")->isHidden());
}

TEST(Ouverture, EditModeAndTheCurrentLayerFollowTheirWidgets) {
    ControleFixture f;
    f.ouvre(f.plan(30));
    Veldra& c = *f.c;
    f.w<QCheckBox>("CB_ModeEdition")->click();
    EXPECT_TRUE(c.ModeEdition);
    EXPECT_TRUE(c.Calque_Tombe->editable());
    EXPECT_TRUE(c.Calque_Tombe->selectable());
    EXPECT_TRUE(f.w<QFrame>("Panel_Outils")->isVisible());
    EXPECT_EQ(f.w<QFrame>("Panel_Outils")->x(), 10);
    EXPECT_TRUE(f.w<QFrame>("Frame_Numero")->isVisible());
    EXPECT_EQ(c.surface().Map1->insertionLayer(), c.Calque_Tombe);

    QComboBox* combo = f.w<QComboBox>("Combo_Calque");
    c.Calque_Tombe->selectAdd(c.Calque_Tombe->allFeatures().fids().front());
    combo->setCurrentIndex(2);
    emit combo->activated(2); // what a user's choice sends
    EXPECT_EQ(c.Calque_Courant, c.Calque_Sections);
    EXPECT_FALSE(c.Calque_Tombe->editable());
    EXPECT_FALSE(c.Calque_Tombe->selectable());
    EXPECT_TRUE(c.Calque_Tombe->selection().isEmpty());
    EXPECT_TRUE(c.Calque_Sections->editable());
    EXPECT_TRUE(f.w<QFrame>("Frame_Nom")->isVisible());
    EXPECT_TRUE(f.w<QPushButton>("Btn_Rechercher")->isHidden());

    f.w<QCheckBox>("CB_ModeEdition")->click();
    EXPECT_FALSE(c.ModeEdition);
    EXPECT_FALSE(c.Calque_Sections->editable());
    EXPECT_TRUE(f.w<QFrame>("Panel_Outils")->isHidden());
    EXPECT_TRUE(f.w<QCheckBox>("CB_Bibliotheque")->isHidden());

    // Delete is kept from the map while editing whole features.
    f.w<QCheckBox>("CB_ModeEdition")->click();
    QSignalSpy keys(c.surface().Map1, &carto::MapView::keyDown);
    QTest::keyClick(c.surface().Map1, Qt::Key_Delete);
    EXPECT_EQ(keys.count(), 0);
    c.surface().Map1->setEditingMode(carto::editmode::Vertices);
    QTest::keyClick(c.surface().Map1, Qt::Key_Delete);
    EXPECT_EQ(keys.count(), 1);
}

TEST(Ouverture, AnotherPlanOpensOutOfEditModeAndForgetsThePreviousPanels) {
    ControleFixture f;
    f.ouvre(f.plan(30));
    Veldra& c = *f.c;
    f.w<QCheckBox>("CB_ModeEdition")->click();
    ASSERT_TRUE(c.ModeEdition);
    f.w<QFrame>("Panel_Dist")->show();
    f.w<QLabel>("L_Distance")->setText(QStringLiteral("12,5 m"));
    f.w<QLineEdit>("TB_SaisieEmplacement")->setText(QStringLiteral("14"));

    f.ouvre(f.plan(20, false, QStringLiteral("Autre")));
    EXPECT_FALSE(c.ModeEdition);
    EXPECT_FALSE(f.w<QCheckBox>("CB_ModeEdition")->isChecked());
    EXPECT_TRUE(f.w<QFrame>("Panel_Outils")->isHidden());
    EXPECT_TRUE(f.w<QCheckBox>("CB_Bibliotheque")->isHidden());
    for (carto::Layer* l : c.contexte().carte().layers()) {
        EXPECT_EQ(l->editable(), l == c.Calque_Numero) << l->name().toStdString();
        if (l->name().toUpper() != QLatin1String("RASTER")) {
            EXPECT_FALSE(l->selectable()) << l->name().toStdString();
        }
    }
    EXPECT_TRUE(f.w<QFrame>("Panel_Dist")->isHidden());
    EXPECT_TRUE(f.w<QLabel>("L_Distance")->text().isEmpty());
    EXPECT_TRUE(f.w<QLineEdit>("TB_SaisieEmplacement")->text().isEmpty());

    // The box ticks again and edits this plan.
    f.w<QCheckBox>("CB_ModeEdition")->click();
    EXPECT_TRUE(c.ModeEdition);
    EXPECT_TRUE(c.Calque_Tombe->editable());
    EXPECT_TRUE(c.Calque_Tombe->selectable());
}

TEST(Ouverture, TemporaryLayersStayInMemoryAndAreNotDuplicated) {
    ControleFixture f;
    const QString premier = f.plan(30, false, QStringLiteral("Premier"));
    const QString second = f.plan(40, false, QStringLiteral("Second"));
    f.ouvre(premier);
    f.ouvre(second);
    EXPECT_EQ(f.erreursOuverture(), 0);
    const carto::Map& principale = f.c->surface().Map1->map();
    const carto::Map& loc = f.c->surface().MapLocalisation->map();
    EXPECT_EQ(calquesNommes(principale, QStringLiteral("My_Temp_Layer")), 1);
    EXPECT_EQ(calquesNommes(loc, QStringLiteral("My_Temp_Layer")), 1);
    ASSERT_EQ(loc.layerCount(), 3);
    EXPECT_EQ(loc.layerAt(0)->name(), QStringLiteral("Décor"));
    EXPECT_EQ(loc.layerAt(1)->name(), QStringLiteral("Enceinte"));
    EXPECT_EQ(loc.layerAt(1)->featureCount(), f.c->Calque_Enceinte->featureCount());
    EXPECT_TRUE(loc.layerAt(1)->isMemory());

    // A mark in the scratch layer never reaches the plan's file.
    carto::Layer& temp = principale.requireLayer(u"My_Temp_Layer");
    temp.addFeature(carto::Feature::symbol({1, 1}));
    carto::Map relu;
    relu.loadMapSet(second);
    EXPECT_EQ(relu.layer(u"My_Temp_Layer"), nullptr);
    EXPECT_EQ(f.w<QLabel>("L_NB_Tombes")->text(),
              QStringLiteral("Le cimetière contient : 40 emplacement(s)"));
}

TEST(Ouverture, BadPlansAreReportedAndLeaveAWorkingControl) {
    ControleFixture f;
    f.ouvre(f.dir.filePath(QStringLiteral("absent.gpkg")));
    ASSERT_GE(f.erreursOuverture(), 1);
    EXPECT_TRUE(f.messages.front().texte.contains(QStringLiteral(" :")));
    EXPECT_EQ(f.c->Calque_Tombe, nullptr);

    const QString corrompu = f.dir.filePath(QStringLiteral("corrompu.gpkg"));
    QFile out(corrompu);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(QByteArray(4096, 'x'));
    out.close();
    f.messages.clear();
    f.ouvre(corrompu);
    EXPECT_GE(f.erreursOuverture(), 1);

    // A plan without plots: reported, the rest opens.
    const QString vide =
        veldra::plantool::createEmptyPlan(f.dir.path(), QStringLiteral("SansTombes"));
    {
        GDALAllRegister();
        GDALDatasetUniquePtr ds(
            GDALDataset::Open(vide.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
        ASSERT_TRUE(ds);
        for (int i = 0; i < ds->GetLayerCount(); ++i) {
            if (QString::fromUtf8(ds->GetLayer(i)->GetName()) == QStringLiteral("Tombes")) {
                ASSERT_EQ(ds->DeleteLayer(i), OGRERR_NONE);
            }
        }
        ds->ExecuteSQL("DELETE FROM mapset_layers WHERE layer_name = 'Tombes'", nullptr, nullptr);
    }
    f.messages.clear();
    f.ouvre(vide);
    EXPECT_GE(f.erreursOuverture(), 1);
    EXPECT_EQ(f.c->Calque_Tombe, nullptr);
    EXPECT_NE(f.c->Calque_Enceinte, nullptr);

    // The control still opens a good plan afterwards.
    f.messages.clear();
    f.ouvre(f.plan(20));
    EXPECT_EQ(f.erreursOuverture(), 0);
    EXPECT_EQ(f.c->Calque_Tombe->featureCount(), 20);
}

// Plots whose coordinates cannot be read: left out, counted, said once.
TEST(Ouverture, UnreadableFeaturesAreLeftOutAndSaidOnce) {
    ControleFixture f;
    const QString plan = f.plan(20);
    {
        GDALAllRegister();
        GDALDatasetUniquePtr ds(
            GDALDataset::Open(plan.toUtf8().constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
        ASSERT_TRUE(ds);
        OGRLayer* tombes = ds->GetLayerByName("Tombes");
        for (const double bad : {std::nan(""), HUGE_VAL, 1e300}) {
            OGRFeature t(tombes->GetLayerDefn());
            OGRPolygon poly;
            OGRLinearRing ring;
            for (const auto& [x, y] : {std::pair{0.0, 0.0}, std::pair{bad, 0.0},
                                       std::pair{3.0, 2.0}, std::pair{0.0, 0.0}})
                ring.addPoint(x, y);
            poly.addRing(&ring);
            t.SetGeometry(&poly);
            ASSERT_EQ(tombes->CreateFeature(&t), OGRERR_NONE);
        }
    }
    f.ouvre(plan);
    int dits = 0;
    for (const Message& m : f.messages)
        dits += m.texte == QStringLiteral("3 éléments illisibles ont été ignorés") ? 1 : 0;
    EXPECT_EQ(dits, 1);
    EXPECT_EQ(f.erreursOuverture(), 0);
    EXPECT_EQ(f.c->Calque_Tombe->featureCount(), 20);
    QString type = QStringLiteral("C"), p1, p2, m;
    bool jauge = false;
    RecordsetPtr rs = f.c->GetInfo(type, p1, p2, jauge, m);
    ASSERT_NE(rs, nullptr);
    EXPECT_EQ(rs->recordCount(), 20);
    for (rs->moveFirst(); !rs->eof(); rs->moveNext())
        for (const char* col : {"Aire", "Longueur", "Largeur"})
            EXPECT_TRUE(std::isfinite(rs->value(QString::fromLatin1(col)).toDouble()));
}

TEST(Ouverture, ARasterLayerIsRecognisedInAnyCase) {
    ControleFixture f;
    const QString plan = f.plan(20, true);
    f.ouvre(plan);
    ASSERT_NE(f.c->Calque_Raster, nullptr);
    EXPECT_FALSE(f.c->Calque_Raster->visible());
    EXPECT_FALSE(f.w<QCheckBox>("CB_PlanNumerise")->isHidden());

    // Only the raster: every vector layer hidden; back: all shown, the boxes ticked.
    f.w<QCheckBox>("CB_QUE_PlanNumerise")->click();
    EXPECT_TRUE(f.c->Calque_Raster->visible());
    EXPECT_FALSE(f.c->Calque_Tombe->visible());
    EXPECT_FALSE(f.c->Calque_Enceinte->visible());
    EXPECT_FALSE(f.w<QCheckBox>("CB_PlanNumerise")->isEnabled());
    EXPECT_FALSE(f.w<QCheckBox>("C_AffSections")->isChecked());
    f.w<QCheckBox>("CB_QUE_PlanNumerise")->click();
    EXPECT_FALSE(f.c->Calque_Raster->visible());
    EXPECT_TRUE(f.c->Calque_Sections->visible());
    EXPECT_TRUE(f.w<QCheckBox>("C_AffSections")->isChecked());
    EXPECT_TRUE(f.w<QCheckBox>("C_AffAllees")->isChecked());

    renommeRaster(plan, "raster");
    f.messages.clear();
    f.ouvre(plan);
    // Seen as the raster (hidden, its boxes shown) but bound only by its exact name.
    EXPECT_EQ(f.c->Calque_Raster, nullptr);
    EXPECT_FALSE(f.w<QCheckBox>("CB_PlanNumerise")->isHidden());
    EXPECT_FALSE(f.c->surface().Map1->map().layer(u"raster")->visible());
}

TEST(Parametres, AreReadAfterOpeningAndWrittenAtDestruction) {
    ControleFixture f;
    ecritIni(f.ini(), {QStringLiteral("Bibliotheque=1.0"), QStringLiteral("CouleurDeFond=255"),
                       QStringLiteral("Calque_SectionsVisible=01"),
                       QStringLiteral("Calque_AlleesVisible=1")});
    const QString plan = f.plan(20);
    f.ouvre(plan);
    EXPECT_EQ(f.erreursOuverture(), 0);
    EXPECT_TRUE(f.w<QCheckBox>("CB_Bibliotheque")->isChecked());
    EXPECT_FALSE(f.w<QCheckBox>("CB_PlanSitue")->isChecked());
    EXPECT_EQ(f.c->surface().Map1->backgroundColor(), 255);
    EXPECT_FALSE(f.c->Calque_Sections->visible()); // "01" is not "1"
    EXPECT_TRUE(f.c->Calque_Allees->visible());
    EXPECT_TRUE(f.w<QWidget>("Frame_Numero")->parentWidget()->isVisible()); // panel unfolded

    f.w<QToolButton>("Btn_Fleche")->click(); // fold the panel
    f.c.reset();
    INI_FILE ini;
    ini.setNom_Fichier_Ini(f.ini());
    auto lit = [&](const char* cle) {
        QString v;
        ini.Get_Key_Of_Section(QStringLiteral("Paramètres"), QString::fromUtf8(cle),
                               QStringLiteral("?"), v);
        return v;
    };
    EXPECT_EQ(lit("Bibliotheque"), QStringLiteral("1"));
    EXPECT_EQ(lit("Situation"), QStringLiteral("0"));
    EXPECT_EQ(lit("CouleurDeFond"), QStringLiteral("255"));
    EXPECT_EQ(lit("Calque_SectionsVisible"), QStringLiteral("0"));
    EXPECT_EQ(lit("Calque_AlleesVisible"), QStringLiteral("1"));
    EXPECT_EQ(lit("Panel Infos"), QStringLiteral("0"));
}

TEST(Parametres, ABadNumberIsReportedAndStopsTheReading) {
    ControleFixture f;
    ecritIni(f.ini(), {QStringLiteral("Bibliotheque=oui"), QStringLiteral("Calque_AlleesVisible=1"),
                       QStringLiteral("Panel Infos=0")});
    f.ouvre(f.plan(10));
    ASSERT_EQ(f.erreursOuverture(), 1);
    EXPECT_TRUE(f.messages.front().texte.startsWith(QStringLiteral("13 :")));
    EXPECT_FALSE(f.c->Calque_Allees->visible()); // not read
    // A present file without "CouleurDeFond" would have meant black; unread here.
    EXPECT_EQ(f.c->surface().Map1->backgroundColor(), 0xFFFFFF);
}

TEST(Parametres, ADestroyedControlThatNeverOpenedAPlanDoesNotFail) {
    QStandardPaths::setTestModeEnabled(true);
    QTemporaryDir dir;
    std::vector<Message> messages;
    auto c = std::make_unique<Veldra>();
    c->setPrompter(std::make_unique<Enregistreur>(messages));
    c->setDossierControle(dir.path());
    const QString profil = veldra::profile::systemProfilePath();
    QFile::remove(profil);
    c.reset();
    // No message, nothing beside the control: with no plan the settings file has no
    // name, so the preferences go to the user's own profile.
    EXPECT_TRUE(messages.empty());
    EXPECT_TRUE(QDir(dir.path()).isEmpty());
    EXPECT_TRUE(QFile::exists(profil));
}

TEST(Parametres, AControlFolderThatCannotBeWrittenFallsBackToTheUsersDataFolder) {
    ControleFixture f;
    const QString donnees = f.dir.filePath(QStringLiteral("donnees"));
    const QByteArray avant = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", donnees.toUtf8());
    f.c->setDossierControle(f.dir.filePath(QStringLiteral("absent/controle")));
    f.ouvre(f.plan(10));
    f.c.reset(); // the settings are written now
    if (avant.isEmpty())
        qunsetenv("XDG_DATA_HOME");
    else
        qputenv("XDG_DATA_HOME", avant);
    EXPECT_TRUE(QFile::exists(donnees + QStringLiteral("/veldra/UserParam.INI")));
    EXPECT_FALSE(QFile::exists(f.dir.filePath(QStringLiteral("absent/controle/UserParam.INI"))));
}
