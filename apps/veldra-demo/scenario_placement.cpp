#include "scenario_placement.h"

#include "carto/model/layer.h"
#include "carto/view/map_view.h"
#include "context/surface.h"
#include "control/veldra.h"
#include "fenetre_principale.h"

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <cmath>
#include <memory>

namespace veldra::demo {

namespace {

// Where the scenario works: below the first section, where the forecourt is free.
struct Lieux {
    carto::Rect sectionA;
    carto::Point rangee; // the first plot of the row
};

carto::Feature premierTerrainOuvert(Veldra& c) {
    // A plot of the sample: it holds a concession in the register.
    return c.Calque_Tombe->allFeatures().at(0);
}

} // namespace

std::vector<Etape> placement(FenetrePrincipale& f, const QString& exemple,
                             const QString& brouillon) {
    Veldra& c = f.plan();
    const Surface& s = c.surface();
    carto::MapView& carte = *s.Map1;
    auto lieux = std::make_shared<Lieux>();
    auto row = std::make_shared<std::vector<qint64>>();
    const auto rangee = [lieux](int i) {
        // Plots of 1.2 x 2.2 m turned 25 to 35 degrees, not quite in line.
        const double a = (25 + 2.5 * i) * M_PI / 180, ca = std::cos(a), sa = std::sin(a);
        const carto::Point o{lieux->rangee.x + 3.2 * i, lieux->rangee.y + 0.35 * (i % 3)};
        const auto p = [&](double x, double y) {
            return carto::Point{o.x + x * ca - y * sa, o.y + x * sa + y * ca};
        };
        return std::vector<carto::Point>{p(0, 0), p(1.2, 0), p(1.2, 2.2), p(0, 2.2)};
    };
    const auto choisitRangee = [&c, row] {
        carto::Layer& t = *c.Calque_Tombe;
        t.clearSelection();
        for (qint64 fid : *row)
            t.selectAdd(fid);
    };
    return {
        {QStringLiteral("section-dessinee"),
         {1280, 800},
         [&f, &c, &s, &carte, exemple, brouillon, lieux] {
             f.ouvrePlan(copieExemple(exemple, brouillon),
                         QStringLiteral("Cimetière d'exemple (copie)"));
             s.CB_ModeEdition->click();
             if (c.contexte().etat.etatPanelInfos != QLatin1String("Visible"))
                 s.Btn_Fleche->click();
             if (!s.C_AffSections->isChecked())
                 s.C_AffSections->click();
             lieux->sectionA =
                 c.Calque_Sections->searchEqual(u"Nom", QStringLiteral("A")).at(0).bounds();
             const carto::Rect a = lieux->sectionA;
             lieux->rangee = {a.xmin + 4, a.ymin - 9};
             carte.setBounds({a.xmin - 14, a.ymin - 16, a.xmin + 40, a.ymin + 14});
             choisitCalque(s, QStringLiteral("Sections"));
             s.Btn_OutilsDessin_[4]->click();
             // Over the corner of section A, and down into the forecourt.
             glisse(carte, {a.xmin - 8, a.ymin - 6}, {a.xmin + 14, a.ymin + 8});
             s.B_Outils_[3]->click();
             clique(carte, {a.xmin - 6, a.ymin - 4});
             s.Label_Nom->setText(QStringLiteral("N"));
             s.Btn_Sauver->click();
         }},
        {QStringLiteral("section-ajustee"), {1280, 800}, [&c] { c.AjusterSectionOuAllee(); }},
        {QStringLiteral("rangee-dessinee"),
         {1280, 800},
         [&c, &s, &carte, rangee, row, lieux] {
             const carto::Point o = lieux->rangee;
             carte.setBounds({o.x - 4, o.y - 5, o.x + 21, o.y + 7});
             choisitCalque(s, QStringLiteral("Tombes"));
             s.Btn_OutilsDessin_[3]->click();
             for (int i = 0; i < 6; ++i) {
                 polygone(carte, rangee(i));
                 row->push_back(c.Calque_Tombe->allFeatures().fids().back());
             }
             s.B_Outils_[3]->click();
         }},
        {QStringLiteral("rangee-alignee"),
         {1280, 800},
         [&c, choisitRangee] {
             choisitRangee();
             QString haut = QStringLiteral("Haut");
             c.AlignerTerrains(haut);
         }},
        {QStringLiteral("rangee-orientee"),
         {1280, 800},
         [&c, choisitRangee] {
             choisitRangee();
             QString bas = QStringLiteral("Bas");
             c.OrienterTerrains(bas);
         }},
        {QStringLiteral("angle-droit"),
         {1280, 800},
         [&c, row] {
             c.Calque_Tombe->clearSelection();
             c.Calque_Tombe->selectAdd(row->at(2));
             c.AngleDroit();
         }},
        {QStringLiteral("taille-definie"),
         {1280, 800},
         [&c, row] {
             c.setModalHook([](QDialog& d) {
                 d.findChild<QLineEdit*>(QStringLiteral("Text1"))->setText(QStringLiteral("2,5"));
                 d.findChild<QLineEdit*>(QStringLiteral("Text2"))->setText(QStringLiteral("1,2"));
                 d.findChild<QPushButton*>(QStringLiteral("Command2"))->click();
                 return d.result();
             });
             c.Calque_Tombe->clearSelection();
             c.Calque_Tombe->selectAdd(row->at(4));
             c.DefinirTaille();
         }},
        {QStringLiteral("suppression-refusee"),
         {1280, 800},
         [&c, &carte] {
             // A plot of the register's: the host refuses, and says why in its log.
             const carto::Feature t = premierTerrainOuvert(c);
             const carto::Rect r = t.bounds();
             carte.setBounds(r.expanded(12));
             c.Calque_Tombe->clearSelection();
             c.Calque_Tombe->selectAdd(t.fid());
             c.DemandeSuppression();
         }},
        {QStringLiteral("suppression-confirmee"),
         {1280, 800},
         [&f, &c, &carte, row, lieux] {
             // A new plot holds no concession: the clerk confirms and it goes.
             f.setConfirmation([](const QString&) { return true; });
             const carto::Point o = lieux->rangee;
             carte.setBounds({o.x - 4, o.y - 5, o.x + 21, o.y + 7});
             c.Calque_Tombe->clearSelection();
             c.Calque_Tombe->selectAdd(row->back());
             c.DemandeSuppression();
         }},
    };
}

} // namespace veldra::demo
