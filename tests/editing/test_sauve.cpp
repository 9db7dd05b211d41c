// Saving names and numbers from the side panel, with the plan's naming rules and the
// plot's number label fitted inside it.
#include "carto/geometry/geometry.h"
#include "carto/model/text_metrics.h"
#include "control_fixture.h"
#include "refus_ecriture.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <cmath>

using namespace veldra;

namespace {

struct Edition : ControleFixture {
    Edition() {
        ouvre(plan(120));
        w<QCheckBox>("CB_ModeEdition")->click();
    }
    // Makes `nom` (Combo_Calque's text) the current layer, as the clerk would.
    void calque(const QString& nom) {
        QComboBox* combo = w<QComboBox>("Combo_Calque");
        const int i = combo->findText(nom);
        ASSERT_GE(i, 0) << nom.toStdString();
        combo->setCurrentIndex(i);
        emit combo->activated(i);
    }
    void choisit(carto::Layer& l, qint64 fid) {
        l.clearSelection();
        l.selectAdd(fid);
    }
    void enregistre() { w<QPushButton>("Btn_Sauver")->click(); }
    QString dernierMessage() const { return messages.empty() ? QString() : messages.back().texte; }

    // The number labels within a plot.
    carto::Features etiquettes(const carto::Feature& t) {
        return c->Calque_Numero->searchWithinFeature(t, carto::searchmode::PartlyWithin);
    }
    // Two plots of one alley, and one of another alley.
    std::tuple<carto::Feature, carto::Feature, carto::Feature> troisTerrains() {
        carto::Features toutes = c->Calque_Tombe->allFeatures();
        const carto::Feature a = toutes.at(0);
        const carto::Feature allee = c->Calque_Allees->searchAtPoint(a.centre()).at(0);
        carto::Feature b, autre;
        for (const carto::Feature& t : toutes) {
            if (t.fid() == a.fid())
                continue;
            const carto::Features ici = c->Calque_Allees->searchAtPoint(t.centre());
            if (ici.isEmpty())
                continue;
            if (ici.at(0).fid() == allee.fid() && !b.isValid())
                b = t;
            else if (ici.at(0).fid() != allee.fid() && !autre.isValid())
                autre = t;
        }
        return {a, b, autre};
    }
};

} // namespace

TEST(Sauve, ANumberIsUniqueInItsAlleyAndItsLabelFollows) {
    Edition f;
    Veldra& c = *f.c;
    auto [a, b, autre] = f.troisTerrains();
    ASSERT_TRUE(a.isValid() && b.isValid() && autre.isValid());
    const qint32 labels = c.Calque_Numero->featureCount();

    // The panel shows the selected plot's number and lets it be saved.
    f.choisit(*c.Calque_Tombe, b.fid());
    EXPECT_EQ(f.w<QLineEdit>("SaisieNum")->text(), b.attribute(u"Numero").toString());
    EXPECT_TRUE(f.w<QLineEdit>("SaisieNum")->isEnabled());
    EXPECT_TRUE(f.w<QPushButton>("Btn_Sauver")->isEnabled());
    EXPECT_EQ(f.w<QLabel>("Num_Selec")->text(),
              QStringLiteral("1/%1").arg(c.Calque_Tombe->featureCount()));

    // b cannot take a's number in the same alley: nothing is written.
    f.w<QLineEdit>("SaisieNum")->setText(a.attribute(u"Numero").toString());
    f.enregistre();
    EXPECT_EQ(f.dernierMessage(),
              QStringLiteral("Un terrain porte déjà ce nom dans cette allée !"));
    EXPECT_EQ(c.Calque_Tombe->feature(b.fid()).attribute(u"Numero"), b.attribute(u"Numero"));
    EXPECT_EQ(c.Calque_Numero->featureCount(), labels);

    // The other alley's plot may; saved twice, it keeps one label, with its new text.
    const size_t avant = f.messages.size();
    f.choisit(*c.Calque_Tombe, autre.fid());
    f.w<QLineEdit>("SaisieNum")->setText(a.attribute(u"Numero").toString());
    f.enregistre();
    f.enregistre();
    EXPECT_EQ(f.messages.size(), avant);
    const carto::Feature apres = c.Calque_Tombe->feature(autre.fid());
    EXPECT_EQ(apres.attribute(u"Numero"), a.attribute(u"Numero"));
    EXPECT_EQ(c.Calque_Numero->featureCount(), labels);
    int siens = 0;
    for (const carto::Feature& n : f.etiquettes(apres))
        siens += n.text() == a.attribute(u"Numero").toString() ? 1 : 0;
    EXPECT_EQ(siens, 1);

    // Written to the plan itself.
    carto::Map relu;
    relu.loadMapSet(c.contexte().carte().mapSet());
    EXPECT_EQ(relu.requireLayer(u"Tombes").feature(autre.fid()).attribute(u"Numero"),
              a.attribute(u"Numero"));
    EXPECT_EQ(relu.requireLayer(u"Numeros").featureCount(), labels);
}

TEST(Sauve, AnEmptyNumberIsABlankWithAnEmptyLabelAndAPlotOutsideAlleysIsNotChecked) {
    Edition f;
    Veldra& c = *f.c;
    auto [a, b, autre] = f.troisTerrains();
    f.choisit(*c.Calque_Tombe, a.fid());
    f.w<QLineEdit>("SaisieNum")->setText(QStringLiteral("   "));
    f.enregistre();
    EXPECT_EQ(c.Calque_Tombe->feature(a.fid()).attribute(u"Numero").toString(),
              QStringLiteral(" "));
    bool vide = false;
    for (const carto::Feature& n : f.etiquettes(c.Calque_Tombe->feature(a.fid())))
        vide = vide || n.text().trimmed().isEmpty();
    EXPECT_TRUE(vide);

    // A plot on no alley, numbered like a's neighbour: accepted.
    const carto::Rect r = c.Calque_Sections->bounds();
    carto::Feature seul =
        c.Calque_Tombe->addFeature(carto::Feature::region({{{r.xmax + 5, r.ymin},
                                                            {r.xmax + 7, r.ymin},
                                                            {r.xmax + 7, r.ymin + 3},
                                                            {r.xmax + 5, r.ymin + 3},
                                                            {r.xmax + 5, r.ymin}}}));
    f.choisit(*c.Calque_Tombe, seul.fid());
    f.w<QLineEdit>("SaisieNum")->setText(b.attribute(u"Numero").toString());
    f.enregistre();
    EXPECT_EQ(c.Calque_Tombe->feature(seul.fid()).attribute(u"Numero"), b.attribute(u"Numero"));
}

TEST(Sauve, TheLabelIsTurnedByTheAngleAndFitsInsideThePlot) {
    Edition f;
    Veldra& c = *f.c;
    carto::Feature t = c.Calque_Tombe->allFeatures().at(3);
    t.setAttribute(u"AngleNumero", 30.0);
    c.Calque_Tombe->updateFeature(t);
    const carto::Style premier = c.Calque_Numero->allFeatures().at(0).style();

    for (const bool fontMax : {false, true}) {
        c.setFontMax(fontMax);
        f.choisit(*c.Calque_Tombe, t.fid());
        const QString numero = fontMax ? QStringLiteral("880") : QStringLiteral("700");
        f.w<QLineEdit>("SaisieNum")->setText(numero);
        f.enregistre();
        carto::Feature label;
        for (const carto::Feature& n : f.etiquettes(c.Calque_Tombe->feature(t.fid())))
            if (n.text() == numero)
                label = n;
        ASSERT_TRUE(label.isValid()) << fontMax;
        EXPECT_DOUBLE_EQ(label.style().textRotation, -30);
        const carto::Rect r = c.Calque_Tombe->feature(t.fid()).bounds();
        const carto::Point centre = label.data().parts.front().front();
        EXPECT_NEAR(centre.x, (r.xmin + r.xmax) / 2, 1e-9);
        EXPECT_NEAR(centre.y, (r.ymin + r.ymax) / 2, 1e-9);
        if (!fontMax) { // the first label's size and weight
            EXPECT_DOUBLE_EQ(label.style().textSize, premier.textSize);
            EXPECT_EQ(label.style().textBold, premier.textBold);
        } else { // from 2 points, grown in steps of 5 then fitted
            EXPECT_TRUE(label.style().textBold);
            EXPECT_LE(carto::textBounds(centre, numero, label.style()).width(), r.width() + 1e-9);
            EXPECT_GT(label.style().textSize, 2);
        }
    }
}

TEST(Sauve, NamesOfSectionsAndAlleys) {
    Edition f;
    Veldra& c = *f.c;
    f.calque(QStringLiteral("Sections"));
    const carto::Features sections = c.Calque_Sections->allFeatures();
    ASSERT_GE(sections.count(), 2);
    const carto::Feature s0 = sections.at(0), s1 = sections.at(1);
    QLineEdit* nom = f.w<QLineEdit>("Label_Nom");

    f.choisit(*c.Calque_Sections, s0.fid());
    EXPECT_EQ(nom->text(), s0.attribute(u"Nom").toString());
    EXPECT_FALSE(nom->isReadOnly());
    f.enregistre(); // its own name: accepted
    EXPECT_TRUE(f.messages.empty());
    nom->setText(s1.attribute(u"Nom").toString());
    f.enregistre();
    EXPECT_EQ(f.dernierMessage(), QStringLiteral("Ce nom de section est déjà utilisé !"));
    nom->setText(QStringLiteral("  "));
    f.enregistre();
    EXPECT_EQ(f.dernierMessage(), QStringLiteral("Vous devez saisir un nom !"));
    EXPECT_EQ(c.Calque_Sections->feature(s0.fid()).attribute(u"Nom"), s0.attribute(u"Nom"));
    // Quotes and wildcards are names like any other; the search list follows.
    nom->setText(QStringLiteral("Nord \"*\" @"));
    f.enregistre();
    EXPECT_EQ(c.Calque_Sections->feature(s0.fid()).attribute(u"Nom").toString(),
              QStringLiteral("Nord \"*\" @"));
    EXPECT_GE(f.w<QComboBox>("Combo_section")->findText(QStringLiteral("Nord \"*\" @")), 0);

    // Alleys: unique within their section only.
    f.calque(QStringLiteral("Allées"));
    carto::Feature premiere, memeSection, ailleurs;
    for (const carto::Feature& al : c.Calque_Allees->allFeatures()) {
        const auto ici = c.Calque_Sections->searchAtPoint(al.centre());
        if (ici.isEmpty())
            continue;
        if (!premiere.isValid())
            premiere = al;
        else if (c.Calque_Sections->searchAtPoint(premiere.centre()).at(0).fid() ==
                 ici.at(0).fid()) {
            if (!memeSection.isValid())
                memeSection = al;
        } else if (!ailleurs.isValid()) {
            ailleurs = al;
        }
    }
    ASSERT_TRUE(premiere.isValid() && memeSection.isValid() && ailleurs.isValid());
    f.choisit(*c.Calque_Allees, memeSection.fid());
    nom->setText(premiere.attribute(u"Nom").toString());
    f.enregistre();
    EXPECT_EQ(f.dernierMessage(),
              QStringLiteral("Ce nom d'allée est déjà utilisé dans cette section!"));
    f.choisit(*c.Calque_Allees, ailleurs.fid());
    nom->setText(premiere.attribute(u"Nom").toString());
    const size_t avant = f.messages.size();
    f.enregistre();
    EXPECT_EQ(f.messages.size(), avant);
    EXPECT_EQ(c.Calque_Allees->feature(ailleurs.fid()).attribute(u"Nom"),
              premiere.attribute(u"Nom"));
}

TEST(Sauve, HostileTextsAndAPlanThatRefusesTheWriteLeaveNothingHalfDone) {
    Edition f;
    Veldra& c = *f.c;
    const carto::Feature t = c.Calque_Tombe->allFeatures().at(5);
    const qint32 labels = c.Calque_Numero->featureCount();
    f.choisit(*c.Calque_Tombe, t.fid());
    // 10,000 characters: cut as the column keeps them, label and number alike.
    f.w<QLineEdit>("SaisieNum")->setText(QString(10000, u'9'));
    f.enregistre();
    const QString garde = c.Calque_Tombe->feature(t.fid()).attribute(u"Numero").toString();
    EXPECT_EQ(garde, QString(32, u'9'));
    int siens = 0;
    for (const carto::Feature& n : f.etiquettes(c.Calque_Tombe->feature(t.fid())))
        siens += n.text() == garde ? 1 : 0;
    EXPECT_EQ(siens, 1);
    EXPECT_EQ(c.Calque_Numero->featureCount(), labels);

    // The plot's own write refused halfway, after its old label went and its new one
    // came: nothing of it stays, in memory or on disk, and nothing is said.
    refuseWrites(c.contexte().carte().mapSet(), "Tombes", "UPDATE", t.fid());
    const size_t messages = f.messages.size();
    f.w<QLineEdit>("SaisieNum")->setText(QStringLiteral("501"));
    f.enregistre();
    EXPECT_EQ(f.messages.size(), messages);
    EXPECT_EQ(c.Calque_Tombe->feature(t.fid()).attribute(u"Numero").toString(), garde);
    EXPECT_EQ(c.Calque_Numero->featureCount(), labels);
    carto::Map relu;
    relu.loadMapSet(c.contexte().carte().mapSet());
    EXPECT_EQ(relu.requireLayer(u"Tombes").feature(t.fid()).attribute(u"Numero").toString(), garde);
    EXPECT_EQ(relu.requireLayer(u"Numeros").featureCount(), labels);

    // Nothing selected: the button does nothing.
    c.Calque_Tombe->clearSelection();
    EXPECT_FALSE(f.w<QPushButton>("Btn_Sauver")->isEnabled());
    EXPECT_TRUE(f.w<QLineEdit>("SaisieNum")->text().isEmpty());
}
