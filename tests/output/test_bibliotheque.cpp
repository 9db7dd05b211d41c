// The symbol library: its categories and elements browsed in Panel_Bibli, an element
// inserted into the decor at the centre of the view as one step of the history, and a
// library that is missing, unreadable, or short of elements.
#include "output/bibliotheque.h"
#include "sortie_fixture.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QUndoStack>
#include <gdal_priv.h>
#include <ogrsf_frmts.h>

using namespace veldra;

namespace {

struct Bibli : Sortie {
    Bibli() {
        plantool::buildSymbolLibrary(dossierControle());
        c->setDossierControle(dossierControle()); // the library is read again from there
    }
    void montre() {
        edition();
        w<QCheckBox>("CB_Bibliotheque")->click();
    }
    QString compte() { return w<QLabel>("Nb_EltsCategorie")->text(); }
    bool precedent() { return w<QToolButton>("Btn_EltBibliPrec")->isVisible(); }
    bool suivant() { return w<QToolButton>("Btn_EltBibliSuivant")->isVisible(); }
    const EtatBibliotheque& etat() { return c->contexte().etat.bibliotheque; }
};

// A library of our own: (category, number) points.
void ecritBibliotheque(const QString& dossier, const std::vector<std::pair<const char*, int>>& e) {
    QDir(dossier).mkpath(QStringLiteral("Bibli"));
    const QByteArray chemin = (dossier + QStringLiteral("/Bibli/Bibli.gst")).toUtf8();
    QFile::remove(QString::fromUtf8(chemin));
    GDALAllRegister();
    GDALDriver* gpkg = GetGDALDriverManager()->GetDriverByName("GPKG");
    std::unique_ptr<GDALDataset> ds(
        gpkg->Create(chemin.constData(), 0, 0, 0, GDT_Unknown, nullptr));
    ASSERT_NE(ds, nullptr);
    OGRLayer* l = ds->CreateLayer("Bibli", nullptr, wkbPoint, nullptr);
    OGRFieldDefn categorie("Categorie", OFTString), numero("Numero", OFTInteger);
    l->CreateField(&categorie);
    l->CreateField(&numero);
    double x = 1;
    for (const auto& [code, n] : e) {
        OGRFeature f(l->GetLayerDefn());
        f.SetField("Categorie", code);
        f.SetField("Numero", n);
        OGRPoint p(x, 1);
        x += 5;
        f.SetGeometry(&p);
        ASSERT_EQ(l->CreateFeature(&f), OGRERR_NONE);
    }
}

} // namespace

TEST(Bibliotheque, BrowsesCategoriesAndElements) {
    Bibli f;
    f.montre();
    EXPECT_TRUE(f.w<QFrame>("Panel_Bibli")->isVisible());
    EXPECT_EQ(f.compte(), QStringLiteral("4 Arbre(s) disponible(s) "));
    EXPECT_FALSE(f.precedent());
    EXPECT_TRUE(f.suivant());
    // The element on show is framed with as much room again around it.
    const carto::MapView& bibli = *f.c->surface().MapBibli;
    const carto::Rect premier = f.etat().calque->feature(f.etat().element).bounds();
    EXPECT_TRUE(bibli.bounds().contains(premier));
    EXPECT_GE(bibli.zoom(), 2 * premier.width() - 1e-9);

    f.w<QPushButton>("Btn_Biblio_1")->click();
    EXPECT_EQ(f.compte(), QStringLiteral("3 Banc(s) disponible(s) "));
    EXPECT_FALSE(f.w<QPushButton>("Btn_Biblio_1")->styleSheet().isEmpty());
    f.w<QToolButton>("Btn_EltBibliSuivant")->click();
    EXPECT_TRUE(f.precedent());
    EXPECT_TRUE(f.suivant());
    f.w<QToolButton>("Btn_EltBibliSuivant")->click();
    EXPECT_EQ(f.etat().numero, 3);
    EXPECT_TRUE(f.precedent());
    EXPECT_FALSE(f.suivant()); // the last bench
    f.w<QPushButton>("Btn_Biblio_2")->click();
    EXPECT_TRUE(f.w<QPushButton>("Btn_Biblio_1")->styleSheet().isEmpty());
    EXPECT_EQ(f.compte(), QStringLiteral("3 Point(s) d'Eau disponible(s) "));
    EXPECT_TRUE(f.messages.empty());

    // Closing the panel unticks its box.
    f.w<QToolButton>("Btn_FermerBibli")->click();
    EXPECT_FALSE(f.w<QCheckBox>("CB_Bibliotheque")->isChecked());
    EXPECT_TRUE(f.w<QFrame>("Panel_Bibli")->isHidden());
}

TEST(Bibliotheque, InsertsTheElementAtTheViewsCentreAsOneStep) {
    Bibli f;
    f.c->setAnnulation(true);
    f.montre();
    f.w<QPushButton>("Btn_Biblio_4")->click();
    f.w<QToolButton>("Btn_EltBibliSuivant")->click(); // a box of a litter bin
    // Far from the plan: the symbol lands where the clerk looks, wherever that is.
    f.vue().setCentre({5000, -3000});
    carto::Layer& decor = *f.c->Calque_Decor;
    const int avant = decor.featureCount();
    QUndoStack& historique = *f.c->surface().Historique;
    const int pas = historique.count();
    f.w<QPushButton>("Btn_BiblioInserer")->click();
    ASSERT_EQ(decor.featureCount(), avant + 1);
    EXPECT_EQ(historique.count(), pas + 1);
    ASSERT_EQ(decor.selection().count(), 1);
    const carto::Feature insere = decor.selection().at(0);
    EXPECT_NEAR(insere.centre().x, 5000, 1e-6);
    EXPECT_NEAR(insere.centre().y, -3000, 1e-6);
    EXPECT_EQ(insere.kind(), carto::FeatureKind::Region);
    EXPECT_EQ(f.c->Calque_Courant, f.c->Calque_Decor);
    EXPECT_EQ(f.w<QComboBox>("Combo_Calque")->currentText(), QStringLiteral("Décor"));
    EXPECT_TRUE(f.c->ModeEdition);
    historique.undo();
    EXPECT_EQ(decor.featureCount(), avant);
    EXPECT_TRUE(f.messages.empty());
}

TEST(Bibliotheque, WithoutTheRightToEditNothingIsInserted) {
    Bibli f;
    f.ouvre(f.plan(60, false, QStringLiteral("Lecture")), false);
    f.w<QCheckBox>("CB_Bibliotheque")->setChecked(true); // as the settings may restore it
    const int avant = f.c->Calque_Decor->featureCount();
    f.w<QPushButton>("Btn_BiblioInserer")->click();
    EXPECT_EQ(f.c->Calque_Decor->featureCount(), avant);
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_TRUE(f.messages[0].texte.contains(QStringLiteral("droit d'édition")));
}

TEST(Bibliotheque, ACategoryOfOneHasNoBrowsingAndAnEmptyOneIsSaid) {
    Sortie f;
    ecritBibliotheque(f.dossierControle(), {{"ARBRES", 1}, {"ARBRES", 2}, {"POTEAUX", 1}});
    f.c->setDossierControle(f.dossierControle());
    f.edition();
    f.w<QCheckBox>("CB_Bibliotheque")->click();
    EXPECT_EQ(f.w<QLabel>("Nb_EltsCategorie")->text(), QStringLiteral("2 Arbre(s) disponible(s) "));
    f.w<QPushButton>("Btn_Biblio_3")->click();
    EXPECT_EQ(f.w<QLabel>("Nb_EltsCategorie")->text(),
              QStringLiteral("1 Poteau(x) disponible(s) "));
    EXPECT_FALSE(f.w<QToolButton>("Btn_EltBibliPrec")->isVisible());
    EXPECT_FALSE(f.w<QToolButton>("Btn_EltBibliSuivant")->isVisible());
    EXPECT_TRUE(f.messages.empty());
    f.w<QPushButton>("Btn_Biblio_1")->click();
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].texte, QStringLiteral("Resultat vide !"));
    // The point symbol still inserts.
    f.w<QPushButton>("Btn_Biblio_3")->click();
    const int avant = f.c->Calque_Decor->featureCount();
    f.w<QPushButton>("Btn_BiblioInserer")->click();
    EXPECT_EQ(f.c->Calque_Decor->featureCount(), avant + 1);
}

TEST(Bibliotheque, AMissingOrCorruptLibraryIsSaidAndNothingBreaks) {
    Sortie f;
    f.c->setDossierControle(f.dossierControle()); // no library there
    f.edition();
    f.w<QCheckBox>("CB_Bibliotheque")->click();
    EXPECT_TRUE(f.w<QLabel>("Nb_EltsCategorie")->text().contains(QStringLiteral("introuvable")));
    EXPECT_FALSE(f.w<QPushButton>("Btn_BiblioInserer")->isEnabled());
    f.w<QPushButton>("Btn_Biblio_0")->click();
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_TRUE(f.messages[0].texte.contains(QStringLiteral("bibliothèque de symboles")));

    QDir(f.dossierControle()).mkpath(QStringLiteral("Bibli"));
    QFile corrompu(f.dossierControle() + QStringLiteral("/Bibli/Bibli.gst"));
    ASSERT_TRUE(corrompu.open(QIODevice::WriteOnly));
    corrompu.write("pas une bibliothèque");
    corrompu.close();
    f.c->setDossierControle(f.dossierControle());
    EXPECT_TRUE(f.w<QLabel>("Nb_EltsCategorie")->text().contains(QStringLiteral("indisponible")));
    const int avant = f.c->Calque_Decor->featureCount();
    f.w<QPushButton>("Btn_Biblio_2")->click();
    EXPECT_EQ(f.messages.size(), 2u);
    EXPECT_EQ(f.c->Calque_Decor->featureCount(), avant);

    // A library without categories.
    ecritBibliotheque(f.dossierControle(), {});
    {
        GDALAllRegister();
        const QByteArray chemin =
            (f.dossierControle() + QStringLiteral("/Bibli/Bibli.gst")).toUtf8();
        std::unique_ptr<GDALDataset> ds(
            GDALDataset::Open(chemin.constData(), GDAL_OF_VECTOR | GDAL_OF_UPDATE));
        ASSERT_NE(ds, nullptr);
        ds->ExecuteSQL("ALTER TABLE Bibli RENAME COLUMN Categorie TO Sorte", nullptr, nullptr);
    }
    f.c->setDossierControle(f.dossierControle());
    EXPECT_TRUE(f.w<QLabel>("Nb_EltsCategorie")->text().contains(QStringLiteral("catégorie")));
}
