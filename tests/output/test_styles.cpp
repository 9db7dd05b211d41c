// The style dialogs: the fill types and line styles they offer and how entries map to
// codes, fStyle writing one feature back, the layer dialogs styling one kind of the
// selection, each change one step of the history and on disk; cancelling changes nothing.
#include "carto/model/layer.h"
#include "carto/model/map.h"
#include "carto/model/update_access.h"
#include "carto/render/style_paint.h"
#include "carto/storage/style_string.h"
#include "context/echantillon_couleur.h"
#include "output/calque_style.h"
#include "output/images_style.h"
#include "output/style_selection.h"
#include "sortie_fixture.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QUndoStack>
#include <set>

using namespace veldra;

namespace {

struct Styles : Sortie {
    Styles() {
        c->setAnnulation(true);
        edition();
    }
    QUndoStack& pile() { return *c->surface().Historique; }
    void calque(const QString& nom) {
        QComboBox* combo = w<QComboBox>("Combo_Calque");
        const int i = combo->findText(nom);
        combo->setCurrentIndex(i);
        emit combo->activated(i);
    }
    // A region and a line added to the decor, selected in that order.
    std::pair<carto::Feature, carto::Feature> regionEtLigne() {
        calque(QStringLiteral("Décor"));
        carto::Layer& decor = *c->Calque_Decor;
        carto::UpdateAccess acces(c->contexte().carte());
        const carto::Feature r =
            decor.addFeature(carto::Feature::region({{{0, 0}, {4, 0}, {4, 3}, {0, 3}, {0, 0}}}));
        const carto::Feature l = decor.addFeature(carto::Feature::line({{{0, 5}, {8, 5}}}));
        acces.commit();
        pile().clear();
        decor.selectOnly(carto::Features(&decor, {r.fid(), l.fid()}));
        return {r, l};
    }
    carto::Style stocke(const carto::Feature& f) {
        carto::Map relu;
        relu.loadMapSet(c->contexte().carte().mapSet());
        return relu.requireLayer(f.layer()->name()).feature(f.fid()).style();
    }
    carto::Style actuel(const carto::Feature& f) { return f.layer()->feature(f.fid()).style(); }
    // What an area's style string carries.
    static auto region(const carto::Style& s) {
        return std::tuple{
            s.regionPattern,     s.regionColor,
            s.regionBorderColor, s.regionBorderStyle,
            s.regionBorderWidth, s.regionPattern > carto::pattern::Solid ? s.regionBackColor : 0};
    }
    template <typename T> static T* dans(QWidget& parent, const char* cadre, const char* nom) {
        QWidget* f = parent.findChild<QWidget*>(QString::fromLatin1(cadre));
        return f ? f->findChild<T*>(QString::fromLatin1(nom)) : nullptr;
    }
};

} // namespace

TEST(Styles, FillEntriesSkipThreeCodesAndEveryCodeDrawsItsOwnPattern) {
    EXPECT_EQ(motifDeEntree(8), 8);
    EXPECT_EQ(motifDeEntree(9), 12);
    EXPECT_EQ(codesMotifs().size(), 68u);
    EXPECT_EQ(codesMotifs().back(), carto::pattern::Last);
    EXPECT_EQ(entreeDeMotif(12), 9);
    EXPECT_EQ(entreeDeMotif(10), 0); // 9 to 11 are never offered
    EXPECT_EQ(carto::extraDashCount(), carto::linestyle::Last - carto::linestyle::LongDash);

    std::set<std::tuple<int, double, double, double>> vus;
    for (const int code : codesMotifs()) {
        carto::Style s;
        s.regionPattern = code;
        const QBrush b = carto::regionPaint(s).fill;
        const QTransform t = b.transform();
        EXPECT_TRUE(vus.insert({int(b.style()), t.m11(), t.m12(), t.m22()}).second) << code;
        // The code survives the plan file's style string.
        const auto relu =
            carto::parseStyleString(carto::styleString(carto::FeatureKind::Region, s));
        EXPECT_EQ(relu.style.regionPattern, code);
    }
    std::set<QList<qreal>> tirets;
    for (int code = carto::linestyle::LongDash + 1; code <= carto::linestyle::Last; ++code) {
        carto::Style s;
        s.lineStyle = code;
        EXPECT_TRUE(tirets.insert(carto::linePen(s).dashPattern()).second) << code;
        const auto relu = carto::parseStyleString(carto::styleString(carto::FeatureKind::Line, s));
        EXPECT_EQ(relu.style.lineStyle, code);
    }
}

TEST(Styles, FStyleWritesTheAreaBackAsOneStepAndCancelChangesNothing) {
    Styles f;
    const auto [region, ligne] = f.regionEtLigne();
    f.c->ObjSel = carto::Features(f.c->Calque_Decor, {region.fid()});
    QPushButton* bouton = f.w<QPushButton>("Btn_ModifStyle");

    // Cancelled: nothing changes, nothing to undo.
    f.dialogues([](QDialog& d) { d.findChild<QPushButton*>("Btn_AnnulerRot")->click(); });
    bouton->click();
    EXPECT_EQ(f.actuel(region), region.style());
    EXPECT_EQ(f.pile().count(), 0);

    QString titre, infos[3];
    bool motifVisible = true, fondVisible = true;
    f.dialogues([&](QDialog& d) {
        titre = d.findChild<QLabel*>("Titre_Style")->text();
        EXPECT_TRUE(d.findChild<QWidget*>("Frame_Ligne")->isHidden());
        auto* type = Styles::dans<QComboBox>(d, "Frame_Polygone", "ImageComboRegion");
        type->setCurrentIndex(0);
        infos[0] = d.findChild<QLabel*>("L_InfoInterieur")->text();
        fondVisible = !d.findChild<QWidget*>("b_couleur_Int")->isHidden();
        type->setCurrentIndex(1);
        infos[1] = d.findChild<QLabel*>("L_InfoInterieur")->text();
        motifVisible = !d.findChild<QWidget*>("b_couleur_Motif")->isHidden();
        type->setCurrentIndex(8); // entry 9
        infos[2] = d.findChild<QLabel*>("L_InfoInterieur")->text();
        d.findChild<EchantillonCouleur*>("b_couleur_Motif")->setCouleur(0x0000FF);
        d.findChild<EchantillonCouleur*>("b_couleur_Int")->setCouleur(0x00FFFF);
        Styles::dans<QComboBox>(d, "Frame_Polygone", "ImageCombo1")->setCurrentIndex(2);
        d.findChild<QComboBox*>("ImageComboType")->setCurrentIndex(2);
        d.findChild<QPushButton*>("Btn_Valider")->click();
    });
    bouton->click();
    EXPECT_EQ(titre, QStringLiteral("Style du Polygone"));
    EXPECT_EQ(infos[0], QStringLiteral("Transparent"));
    EXPECT_EQ(infos[1], QStringLiteral("Plein"));
    EXPECT_EQ(infos[2], QStringLiteral("Motif"));
    EXPECT_FALSE(fondVisible);
    EXPECT_FALSE(motifVisible);

    const carto::Style s = f.actuel(region);
    EXPECT_EQ(s.regionPattern, 12);
    EXPECT_EQ(s.regionColor, 0x0000FF); // the pattern's colour
    EXPECT_EQ(s.regionBackColor, 0x00FFFF);
    EXPECT_EQ(s.regionBorderWidth, 3);
    EXPECT_EQ(s.regionBorderStyle, carto::linestyle::Dash);
    EXPECT_EQ(Styles::region(f.stocke(region)), Styles::region(s));
    EXPECT_EQ(f.actuel(ligne), ligne.style());
    ASSERT_EQ(f.pile().count(), 1);
    f.pile().undo();
    EXPECT_EQ(f.actuel(region), region.style());
    EXPECT_EQ(Styles::region(f.stocke(region)), Styles::region(region.style()));
}

TEST(Styles, FStyleEditsLinesAndTextsAndRefusesAnEmptySelection) {
    Styles f;
    const auto [region, ligne] = f.regionEtLigne();
    QPushButton* bouton = f.w<QPushButton>("Btn_ModifStyle");
    f.c->ObjSel = carto::Features();
    bouton->click();
    ASSERT_FALSE(f.messages.empty());
    EXPECT_TRUE(f.messages.back().texte.contains(QStringLiteral("Aucun objet n'est sélectionné.")));

    f.c->ObjSel = carto::Features(f.c->Calque_Decor, {ligne.fid()});
    QString titre;
    f.dialogues([&](QDialog& d) {
        titre = d.findChild<QLabel*>("Titre_Style")->text();
        d.findChild<EchantillonCouleur*>("b_couleur_obj")->setCouleur(0x00FF00);
        Styles::dans<QComboBox>(d, "Frame_Ligne", "ImageCombo2")->setCurrentIndex(3);
        Styles::dans<QComboBox>(d, "Frame_Ligne", "ImageCombo3")->setCurrentIndex(3);
        d.findChild<QPushButton*>("Btn_Valider")->click();
    });
    bouton->click();
    EXPECT_EQ(titre, QStringLiteral("Style de la ligne"));
    const carto::Style s = f.actuel(ligne);
    EXPECT_EQ(s.lineColor, 0x00FF00);
    EXPECT_EQ(s.lineWidth, 4);
    EXPECT_EQ(s.lineStyle, carto::linestyle::Dot);

    // A text: its own frame, its angle kept.
    carto::Layer& textes = *f.c->Calque_Texte;
    carto::Style tourne;
    tourne.textRotation = 30;
    carto::UpdateAccess acces(f.c->contexte().carte());
    const carto::Feature t =
        textes.addFeature(carto::Feature::textAt({3, 3}, QStringLiteral("Entrée"), tourne));
    acces.commit();
    f.c->ObjSel = carto::Features(&textes, {t.fid()});
    f.dialogues([&](QDialog& d) {
        titre = d.findChild<QLabel*>("Titre_Style")->text();
        Styles::dans<QComboBox>(d, "Frame_Texte", "ImageCombo3")->setCurrentIndex(2);
        d.findChild<QCheckBox*>("Epaisseur")->setChecked(true);
        d.findChild<QPushButton*>("Btn_Valider")->click();
    });
    bouton->click();
    EXPECT_EQ(titre, QStringLiteral("Style du Texte"));
    EXPECT_TRUE(f.actuel(t).textBox);
    EXPECT_TRUE(f.actuel(t).textBold);
    EXPECT_DOUBLE_EQ(f.actuel(t).textRotation, 30);
}

TEST(Styles, TheSelectionsStyleChangesOnlyTheFirstFeaturesKind) {
    Styles f;
    const auto [region, ligne] = f.regionEtLigne();
    std::vector<int> comptes;
    f.dialogues([&](QDialog& d) {
        EXPECT_EQ(d.objectName(), QStringLiteral("Calque_style_region"));
        comptes = {d.findChild<QComboBox*>("ImageCombo1")->count(),
                   d.findChild<QComboBox*>("ImageCombo2")->count(),
                   d.findChild<QComboBox*>("ImageCombo3")->count()};
        d.findChild<QPushButton*>("Btn_cancel")->click();
    });
    f.c->contexte().crochets.styleSelection();
    EXPECT_EQ(comptes, (std::vector<int>{68, 118, 7}));
    EXPECT_EQ(f.actuel(region), region.style());
    EXPECT_EQ(f.pile().count(), 0);

    f.dialogues([&](QDialog& d) {
        d.findChild<QComboBox*>("ImageCombo1")->setCurrentIndex(20);
        d.findChild<QRadioButton*>("Option2")->setChecked(true);
        d.findChild<QComboBox*>("Combo1")->setCurrentIndex(3); // 10
        d.findChild<QPushButton*>("Btn_Ok")->click();
    });
    f.c->contexte().crochets.styleSelection();
    EXPECT_EQ(f.actuel(region).regionPattern, motifDeEntree(21));
    EXPECT_EQ(f.actuel(region).regionBorderWidth, 10);
    EXPECT_EQ(Styles::region(f.stocke(region)), Styles::region(f.actuel(region)));
    EXPECT_EQ(f.actuel(ligne), ligne.style()); // another kind: left alone
    EXPECT_EQ(f.pile().count(), 1);

    // The same dialog comes back, loaded from the first feature: width 10 is Combo1's.
    bool largeurs = false;
    f.dialogues([&](QDialog& d) {
        largeurs = d.findChild<QRadioButton*>("Option2")->isChecked() &&
                   d.findChild<QComboBox*>("Combo1")->currentIndex() == 3;
        d.reject();
    });
    f.c->contexte().crochets.styleSelection();
    EXPECT_TRUE(largeurs);
    EXPECT_EQ(f.c->findChildren<Calque_style_region*>().size(), 1);
}

TEST(Styles, NothingSelectedOrNoRightToEditIsSaidAndChangesNothing) {
    Styles f;
    f.calque(QStringLiteral("Décor"));
    f.c->Calque_Decor->selectOnly(carto::Features(f.c->Calque_Decor));
    EXPECT_THROW(styleSelection(f.c->contexte()), Erreur);

    Sortie lecture(false);
    lecture.ouvre(lecture.plan(20), false);
    carto::Layer& tombes = *lecture.c->Calque_Tombe;
    lecture.c->Calque_Courant = &tombes;
    tombes.selectOnly(carto::Features(&tombes, {tombes.allFeatures().at(0).fid()}));
    EXPECT_THROW(appliqueStyleSelection(lecture.c->contexte(), carto::FeatureKind::Region, {}),
                 Erreur);
}
