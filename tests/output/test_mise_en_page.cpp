// The printed page beyond the original: the scale honoured exactly on paper, read back
// from the PDF's own coordinates; texts and lines kept as vectors; the scale the clerk
// gives checked; the PDF written whole or not at all; the dialog's paper choices.
#include "carto/model/update_access.h"
#include "output/impression_papier.h"
#include "output/mise_en_page.h"
#include "pdf_contenu.h"
#include "sortie_fixture.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QListWidget>
#include <QPrintPreviewDialog>
#include <QPushButton>

using namespace veldra;

namespace {

constexpr carto::Colour kCouleurTemoin = 0x123456; // 0xBBGGRR

// A 10 m by 4 m plot in a colour no other feature has, right of the plan, the view
// centred on it.
carto::Rect ajouteTemoin(Sortie& f) {
    const carto::Rect plan = f.tombes().bounds();
    const carto::Rect r{plan.xmax + 20, plan.ymin, plan.xmax + 30, plan.ymin + 4};
    carto::Style s;
    s.regionColor = kCouleurTemoin;
    carto::UpdateAccess acces(f.c->contexte().carte());
    f.tombes().addFeature(carto::Feature::region({{{r.xmin, r.ymin},
                                                   {r.xmax, r.ymin},
                                                   {r.xmax, r.ymax},
                                                   {r.xmin, r.ymax},
                                                   {r.xmin, r.ymin}}},
                                                 s));
    acces.commit();
    f.vue().setCentre(r.center());
    return r;
}

const TraceePdf* temoin(const ContenuPdf& pdf) {
    const QColor attendue = carto::toQColor(kCouleurTemoin);
    for (const TraceePdf& t : pdf.traces)
        if (t.remplissage.isValid() && std::abs(t.remplissage.redF() - attendue.redF()) < 0.003 &&
            std::abs(t.remplissage.greenF() - attendue.greenF()) < 0.003 &&
            std::abs(t.remplissage.blueF() - attendue.blueF()) < 0.003)
            return &t;
    return nullptr;
}

constexpr double kPointsParCm = 72 / 2.54;

} // namespace

TEST(MiseEnPage, AtOneFiveHundredTenMetresAreTwoCentimetresOnThePage) {
    Sortie f;
    ajouteTemoin(f);
    for (const auto& [papier, orientation] : {std::pair{QPageSize::A3, QPageLayout::Landscape},
                                              std::pair{QPageSize::A4, QPageLayout::Portrait}}) {
        MiseEnPage m;
        m.papier = papier;
        m.orientation = orientation;
        m.titre = QStringLiteral("Plan au 1/500");
        m.echelle = 500;
        const QString chemin = f.dir.filePath(QStringLiteral("plan.pdf"));
        ecritPdf(f.c->contexte(), chemin, m);
        const ContenuPdf pdf = litPdf(chemin);
        const QSizeF attendue = QPageSize(papier).size(QPageSize::Point);
        SCOPED_TRACE(QPageSize(papier).name().toStdString());
        EXPECT_NEAR(pdf.page.width(),
                    orientation == QPageLayout::Landscape ? attendue.height() : attendue.width(),
                    1);
        const TraceePdf* t = temoin(pdf);
        ASSERT_NE(t, nullptr);
        const QRectF b = t->boite();
        EXPECT_NEAR(b.width(), 2 * kPointsParCm, 0.01);    // 10 m
        EXPECT_NEAR(b.height(), 0.8 * kPointsParCm, 0.01); // 4 m
        // Texts stay texts, lines and regions paths: no picture anywhere.
        EXPECT_GE(pdf.textes, 3); // the title, the date, the scale...
        EXPECT_FALSE(pdf.images);
        EXPECT_GT(pdf.traces.size(), 20u); // the plots of the view
    }
}

TEST(MiseEnPage, PlotNumbersAndHostLabelsStayTextsInThePdf) {
    Sortie f;
    f.vue().setCentre(f.tombes().bounds().center());
    MiseEnPage m;
    m.echelle = 200; // plots wide enough to carry a name
    const QString chemin = f.dir.filePath(QStringLiteral("noms.pdf"));
    const auto textes = [&] {
        ecritPdf(f.c->contexte(), chemin, m);
        return litPdf(chemin).textes;
    };
    const int numeros = textes();
    f.c->Calque_Numero->setVisible(false);
    const int sans = textes();
    EXPECT_GT(numeros, sans + 20); // the plot numbers
    RecordsetPtr noms = recordset::fromFieldSpec(u"IDGCF N,Nom C(20)");
    for (const carto::Feature& t : f.tenues()) {
        noms->addNew();
        noms->setValue(qsizetype(0), t.attribute(u"IDGCF"));
        noms->setValue(qsizetype(1), QStringLiteral("Famille"));
        noms->update();
    }
    QString champ = QStringLiteral("Nom");
    f.c->SetEtiquette(noms, champ);
    EXPECT_GT(textes(), sans + 20); // the names, halo and all
    EXPECT_FALSE(litPdf(chemin).images);
}

TEST(MiseEnPage, TheCurrentScaleIsTheScreensAndBadScalesAreRefused) {
    Sortie f;
    const carto::MapView& v = f.vue();
    const double courante = std::round(v.zoom() * 100 / v.paperWidth());
    const Contexte& ctx = f.c->contexte();
    EXPECT_EQ(denominateurEchelle(ctx, QStringLiteral(" Echelle courante")), courante);
    EXPECT_EQ(denominateurEchelle(ctx, QStringLiteral("500")), 500);
    EXPECT_EQ(denominateurEchelle(ctx, QStringLiteral("1/2000")), 2000);
    for (const QString& mauvaise :
         {QStringLiteral("0"), QStringLiteral("-1"), QStringLiteral("cinq cents"), QString(),
          QStringLiteral("2,5"), QStringLiteral("99999999999"), QString(10000, u'7')}) {
        try {
            denominateurEchelle(ctx, mauvaise);
            ADD_FAILURE() << mauvaise.left(20).toStdString() << " accepted";
        } catch (const Erreur& e) {
            EXPECT_EQ(e.numero(), err::AppelIncorrect);
            EXPECT_TRUE(e.description().contains(QStringLiteral("échelle")));
        }
    }
    f.vue().resize(0, 300);
    EXPECT_THROW(denominateurEchelle(ctx, QStringLiteral(" Echelle courante")), Erreur);
}

TEST(MiseEnPage, APdfThatCannotBeWrittenLeavesNothing) {
    Sortie f;
    MiseEnPage m;
    const QString chemin = f.dir.filePath(QStringLiteral("absent/plan.pdf"));
    EXPECT_THROW(ecritPdf(f.c->contexte(), chemin, m), Erreur);
    EXPECT_FALSE(QFileInfo::exists(chemin));
    // An older file stays whole when the new page cannot be drawn.
    const QString ancien = f.dir.filePath(QStringLiteral("ancien.pdf"));
    m.echelle = 500;
    ecritPdf(f.c->contexte(), ancien, m);
    const qint64 taille = QFileInfo(ancien).size();
    m.echelle = 0;
    EXPECT_THROW(ecritPdf(f.c->contexte(), ancien, m), Erreur);
    EXPECT_EQ(QFileInfo(ancien).size(), taille);
}

TEST(MiseEnPage, ThePrintDialogWritesAnA3PdfWhenTheHostAsks) {
    Sortie f;
    f.c->setImpressionPapier(true);
    ajouteTemoin(f);
    const QString chemin = f.dir.filePath(QStringLiteral("choisi.pdf"));
    f.dialogues([&chemin](QDialog& d) {
        if (auto* choix = qobject_cast<QFileDialog*>(&d)) {
            choix->selectFile(chemin);
            static_cast<QDialog*>(choix)->accept();
            return;
        }
        EXPECT_FALSE(d.findChild<QFrame*>(QStringLiteral("Frame_Papier"))->isHidden());
        d.findChild<QComboBox*>(QStringLiteral("Combo_Papier"))->setCurrentIndex(1);
        d.findChild<QComboBox*>(QStringLiteral("Combo_Orientation"))->setCurrentIndex(1);
        d.findChild<QListWidget*>(QStringLiteral("Liste_Echelle"))->setCurrentRow(1);
        d.findChild<QPushButton*>(QStringLiteral("Btn_Pdf"))->click();
    });
    f.w<QPushButton>("Btn_Imprimer")->click();
    EXPECT_TRUE(f.demandes.empty()); // the host prints nothing itself
    EXPECT_TRUE(f.messages.empty());
    const ContenuPdf pdf = litPdf(chemin);
    EXPECT_NEAR(pdf.page.width(), QPageSize(QPageSize::A3).size(QPageSize::Point).height(), 1);
    const TraceePdf* t = temoin(pdf);
    ASSERT_NE(t, nullptr);
    EXPECT_NEAR(t->boite().width(), 2 * kPointsParCm, 0.01);

    // A scale the page cannot honour is said, titled as the button's handler titles it.
    bool apercu = false;
    f.dialogues([&apercu](QDialog& d) {
        if (qobject_cast<QPrintPreviewDialog*>(&d)) {
            apercu = true;
            return;
        }
        d.findChild<QPushButton*>(QStringLiteral("Btn_Apercu"))->click();
    });
    f.w<QPushButton>("Btn_Imprimer")->click();
    EXPECT_TRUE(apercu);
    f.vue().resize(0, 200); // the current scale of a map without width
    f.w<QPushButton>("Btn_Imprimer")->click();
    EXPECT_EQ(f.titres(QStringLiteral("Btn_Imprimer_Click")), 1);
}
