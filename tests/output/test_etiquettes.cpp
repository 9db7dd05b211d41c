// Labels from the host: the "DSEtiquette" dataset bound to the plots by their keys, the
// numbers hidden while labels show, the host's record set closed; bad record sets told
// and the plan left labelled as it was; the labels' button and its two entries.
#include "carto/render/scene.h"
#include "sortie_fixture.h"

#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

using namespace veldra;

namespace {

RecordsetPtr noms(const std::vector<std::pair<QVariant, QVariant>>& lignes,
                  const QString& spec = QStringLiteral("IDGCF N,Titulaire C(40)")) {
    RecordsetPtr rs = recordset::fromFieldSpec(spec);
    for (const auto& [id, nom] : lignes) {
        rs->addNew();
        rs->setValue(qsizetype(0), id);
        rs->setValue(qsizetype(1), nom);
        rs->update();
    }
    return rs;
}

// The labels a redraw of the whole plan would draw on the plots.
QStringList etiquettesDessinees(Sortie& f) {
    carto::Viewport v = f.vue().viewport();
    v.size = QSize(4000, 3000); // close enough for every plot to be labelled
    v = v.fitting(f.tombes().bounds());
    const carto::Scene scene = carto::buildScene(f.c->contexte().carte(), v, v.visible(), {});
    QStringList out;
    for (const carto::SceneLayer& l : scene.layers)
        for (const carto::SceneItem& item : l.items)
            if (!item.label.isEmpty())
                out << item.label;
    out.sort();
    return out;
}

} // namespace

TEST(Etiquettes, HostTextsLabelThePlotsAndHideTheNumbers) {
    Sortie f;
    const auto t = f.tenues();
    RecordsetPtr rs = noms({{t[0].attribute(u"IDGCF"), QStringLiteral("DURAND")},
                            {t[1].attribute(u"IDGCF"), QStringLiteral("MARTIN")},
                            {t[2].attribute(u"IDGCF"), QVariant()}, // a null: no label
                            {30000, QStringLiteral("PERSONNE")}});  // no such plot
    const RecordsetPtr garde = rs;
    QString champ = QStringLiteral("Titulaire");
    f.c->SetEtiquette(rs, champ);
    EXPECT_EQ(rs, nullptr);
    EXPECT_FALSE(garde->isOpen());
    EXPECT_TRUE(f.messages.empty());
    const carto::LabelSettings& l = f.tombes().labels();
    ASSERT_NE(l.dataset, nullptr);
    EXPECT_EQ(l.dataset->name(), QStringLiteral("DSEtiquette"));
    EXPECT_TRUE(l.visible);
    EXPECT_TRUE(f.tombes().autoLabel());
    EXPECT_FALSE(f.c->Calque_Numero->visible());
    EXPECT_EQ(etiquettesDessinees(f),
              (QStringList{QStringLiteral("DURAND"), QStringLiteral("MARTIN")}));

    // Again: the first dataset goes, the numbers stay hidden.
    RecordsetPtr deux = noms({{t[3].attribute(u"IDGCF"), QStringLiteral("PETIT")}});
    f.c->SetEtiquette(deux, champ);
    int jeux = 0;
    for (const carto::Dataset* d : f.c->contexte().carte().datasets())
        jeux += d->name() == QLatin1String("DSEtiquette") ? 1 : 0;
    EXPECT_EQ(jeux, 1);
    EXPECT_FALSE(f.c->Calque_Numero->visible());
    EXPECT_EQ(etiquettesDessinees(f), QStringList{QStringLiteral("PETIT")});

    f.c->RAZEtiquette();
    EXPECT_EQ(f.c->contexte().carte().dataset(u"DSEtiquette"), nullptr);
    EXPECT_TRUE(f.c->Calque_Numero->visible());
    EXPECT_FALSE(f.tombes().labels().visible);
    EXPECT_TRUE(etiquettesDessinees(f).isEmpty());
}

TEST(Etiquettes, ResettingWithoutLabelsChangesNothing) {
    Sortie f;
    f.c->Calque_Numero->setVisible(false);
    QVariantList rien;
    f.c->Invoke(0x6003009c, rien);
    EXPECT_FALSE(f.c->Calque_Numero->visible());
    EXPECT_TRUE(f.messages.empty());
}

TEST(Etiquettes, BadRecordSetsAreToldAndLeaveTheLabelsAsTheyWere) {
    Sortie f;
    const auto t = f.tenues();
    const carto::Dataset* avant = f.tombes().labels().dataset;

    // No IDGCF column: nothing is bound, the record set stays open.
    RecordsetPtr sansCle =
        noms({{t[0].attribute(u"IDGCF"), QStringLiteral("X")}}, QStringLiteral("Cle N,Nom C(10)"));
    QString champ = QStringLiteral("Nom");
    f.c->SetEtiquette(sansCle, champ);
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.messages[0].titre, QStringLiteral("SetEtiquette"));
    EXPECT_TRUE(f.messages[0].texte.startsWith(QStringLiteral("3265: ")));
    EXPECT_NE(sansCle, nullptr);
    EXPECT_TRUE(sansCle->isOpen());
    EXPECT_EQ(f.c->contexte().carte().dataset(u"DSEtiquette"), nullptr);

    // A label column it does not hold: the dataset is there, the labels are not switched on.
    RecordsetPtr rs = noms({{t[0].attribute(u"IDGCF"), QStringLiteral("X")}});
    QString absent = QStringLiteral("Inconnue");
    f.c->SetEtiquette(rs, absent);
    EXPECT_EQ(f.titres(QStringLiteral("SetEtiquette")), 2);
    EXPECT_NE(f.c->contexte().carte().dataset(u"DSEtiquette"), nullptr);
    EXPECT_TRUE(rs->isOpen());
    EXPECT_EQ(f.tombes().labels().dataset, avant);
    EXPECT_TRUE(f.c->Calque_Numero->visible());
    EXPECT_TRUE(etiquettesDessinees(f).isEmpty());

    // None at all, or closed.
    RecordsetPtr aucun;
    f.c->SetEtiquette(aucun, champ);
    rs->close();
    f.c->SetEtiquette(rs, absent);
    EXPECT_EQ(f.titres(QStringLiteral("SetEtiquette")), 4);
    EXPECT_TRUE(f.c->Calque_Numero->visible());
}

TEST(Etiquettes, TheButtonOffersTheLabelToolAndTheLabelsLettering) {
    Sortie f;
    f.edition();
    QPushButton* bouton = f.w<QPushButton>("Btn_DeplaceEtiquette");
    ASSERT_TRUE(bouton->isVisible());
    int entree = 0;
    QStringList vues;
    f.c->contexte().montreMenu = [&](QMenu& m, const QPoint&) -> QAction* {
        for (QAction* a : m.actions())
            vues << a->text();
        return m.actions().at(entree);
    };
    bouton->click();
    EXPECT_EQ(vues, (QStringList{QStringLiteral("Outil 'Etiquettes'"),
                                 QStringLiteral("Propriétés des Etiquettes")}));
    EXPECT_EQ(f.vue().currentTool(), carto::tool::Label);
    EXPECT_FALSE(bouton->isDown());

    entree = 1;
    f.c->contexte().carte().removeLayer(u"My_Temp_Layer");
    f.c->contexte().etat.calqueTemp = nullptr;
    QString mode;
    f.dialogues([&mode](QDialog& d) {
        mode = d.windowTitle();
        EXPECT_TRUE(d.findChild<QLineEdit*>(QStringLiteral("Text"))->isHidden());
        d.findChild<QLineEdit*>(QStringLiteral("Taille"))->setText(QStringLiteral("12"));
        d.findChild<QCheckBox*>(QStringLiteral("cb_Gras"))->setChecked(true);
        d.findChild<QPushButton*>(QStringLiteral("Btn_Valider"))->click();
    });
    bouton->click();
    EXPECT_EQ(mode, QStringLiteral("Propriétés des étiquettes"));
    EXPECT_EQ(f.tombes().labels().style.textSize, 12);
    EXPECT_TRUE(f.tombes().labels().style.textBold);
    EXPECT_TRUE(f.tombes().labels().style.textHalo); // kept from before
    // The scratch layer is there again.
    EXPECT_NE(f.c->contexte().carte().layer(u"My_Temp_Layer"), nullptr);

    // A size that is not a number is refused, the lettering unchanged.
    f.dialogues([](QDialog& d) {
        d.findChild<QLineEdit*>(QStringLiteral("Taille"))->setText(QStringLiteral("grand"));
        d.findChild<QPushButton*>(QStringLiteral("Btn_Valider"))->click();
    });
    bouton->click();
    EXPECT_EQ(f.tombes().labels().style.textSize, 12);
    EXPECT_FALSE(f.messages.empty());
}
