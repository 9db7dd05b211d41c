// Section and alley lists: for the host as record sets, and the search panel's list that
// re-frames the map.
#include "base/erreur.h"
#include "exchange_fixture.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>

using namespace veldra;

namespace {

QStringList colonne(RecordsetPtr rs, QStringView champ) {
    QStringList out;
    for (rs->moveFirst(); !rs->eof(); rs->moveNext())
        out << rs->value(champ).toString();
    return out;
}

QStringList entrees(const QComboBox& combo) {
    QStringList out;
    for (int i = 0; i < combo.count(); ++i)
        out << combo.itemText(i);
    return out;
}

carto::Feature rectangle(carto::Layer& calque, double x0, double y0, double x1, double y1,
                         const QString& nom) {
    carto::Feature f = calque.addFeature(
        carto::Feature::region({{{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}, {x0, y0}}}));
    f.setAttribute(u"Nom", nom);
    calque.updateFeature(f);
    return calque.feature(f.fid());
}

} // namespace

TEST(Listes, SectionsInLayerOrderAndTheSearchListWithoutEmptyNames) {
    EchangeFixture f;
    Veldra& c = f.ctl();
    QStringList attendues;
    c.Calque_Sections->forEachFeature(
        [&](const carto::Feature& s) { attendues << s.attribute(u"Nom").toString(); });
    ASSERT_GE(attendues.size(), 2);
    RecordsetPtr rs = c.GetListeSections();
    ASSERT_TRUE(rs && rs->isOpen());
    EXPECT_EQ(rs->fields().size(), 1u);
    EXPECT_EQ(rs->fields().front().definedSize, 32);
    EXPECT_EQ(colonne(rs, u"Nom"), attendues);

    // Opening the plan filled the search list.
    QComboBox* combo = f.w<QComboBox>("Combo_section");
    EXPECT_EQ(entrees(*combo), QStringList{QStringLiteral("Toutes les sections")} + attendues);
    EXPECT_EQ(combo->currentText(), QStringLiteral("Toutes les sections"));

    // A section without a name is listed for the host only; the list follows the edit.
    const carto::Rect r = c.Calque_Sections->bounds();
    rectangle(*c.Calque_Sections, r.xmax + 10, r.ymin, r.xmax + 20, r.ymin + 10, QString());
    rectangle(*c.Calque_Sections, r.xmax + 30, r.ymin, r.xmax + 40, r.ymin + 10,
              QStringLiteral("Z \"nord\" *@"));
    QApplication::processEvents();
    const QStringList plus{QString(), QStringLiteral("Z \"nord\" *@")};
    EXPECT_EQ(colonne(c.GetListeSections(), u"Nom"), attendues + plus);
    EXPECT_EQ(entrees(*combo), QStringList{QStringLiteral("Toutes les sections")} + attendues +
                                   QStringList{QStringLiteral("Z \"nord\" *@")});
}

TEST(Listes, OneSectionOrNoneAtAll) {
    EchangeFixture f;
    Veldra& c = f.ctl();
    carto::Layer& sections = *c.Calque_Sections;
    const std::vector<qint64> toutes = sections.allFeatures().fids();
    for (auto fid = toutes.begin() + 1; fid != toutes.end(); ++fid)
        sections.deleteFeature(*fid);
    c.Creer_Combo_Section();
    QComboBox* combo = f.w<QComboBox>("Combo_section");
    const QString seule = sections.allFeatures().at(0).attribute(u"Nom").toString();
    EXPECT_EQ(entrees(*combo), QStringList{seule});
    EXPECT_EQ(combo->currentText(), seule);

    sections.deleteFeature(toutes.front());
    c.Creer_Combo_Section();
    EXPECT_EQ(combo->count(), 0);
    EXPECT_EQ(c.GetListeSections()->recordCount(), 0);
    // Every alley now lies in no section.
    QString tout;
    for (const QString& s : colonne(c.GetListeAllees(tout), u"Section"))
        EXPECT_EQ(s, QStringLiteral("-1"));
}

TEST(Listes, AlleysOfASectionAreThoseWhoseCentreIsInIt) {
    EchangeFixture f;
    Veldra& c = f.ctl();
    QString tout;
    RecordsetPtr toutes = c.GetListeAllees(tout);
    EXPECT_EQ(toutes->recordCount(), c.Calque_Allees->featureCount());
    EXPECT_EQ(toutes->fields().size(), 2u);

    const carto::Feature a = c.Calque_Sections->allFeatures().at(0);
    QString nomA = a.attribute(u"Nom").toString();
    QStringList attendues;
    c.Calque_Allees->forEachFeature([&](const carto::Feature& al) {
        const auto s = c.Calque_Sections->searchAtPoint(al.centre());
        if (!s.isEmpty() && s.at(0).attribute(u"Nom").toString() == nomA)
            attendues << al.attribute(u"Nom").toString();
    });
    ASSERT_FALSE(attendues.isEmpty());
    RecordsetPtr rs = c.GetListeAllees(nomA);
    EXPECT_EQ(colonne(rs, u"Nom"), attendues);
    for (const QString& s : colonne(rs, u"Section"))
        EXPECT_EQ(s, nomA);

    // An L-shaped section with another in its notch: an alley in the notch lies within the
    // L's rectangle, but belongs to the notch.
    const double x = c.Calque_Sections->bounds().xmax + 50, y = 0;
    carto::Feature l = c.Calque_Sections->addFeature(carto::Feature::region({{{x, y},
                                                                              {x + 20, y},
                                                                              {x + 20, y + 10},
                                                                              {x + 10, y + 10},
                                                                              {x + 10, y + 20},
                                                                              {x, y + 20},
                                                                              {x, y}}}));
    l.setAttribute(u"Nom", QStringLiteral("Équerre"));
    c.Calque_Sections->updateFeature(l);
    rectangle(*c.Calque_Sections, x + 10, y + 10, x + 20, y + 20, QStringLiteral("Encoche"));
    rectangle(*c.Calque_Allees, x + 2, y + 2, x + 8, y + 8, QStringLiteral("Allée du pied"));
    rectangle(*c.Calque_Allees, x + 11, y + 11, x + 19, y + 19,
              QStringLiteral("Allée de l'encoche"));
    QString equerre = QStringLiteral("Équerre"), encoche = QStringLiteral("Encoche");
    EXPECT_EQ(colonne(c.GetListeAllees(equerre), u"Nom"),
              QStringList{QStringLiteral("Allée du pied")});
    EXPECT_EQ(colonne(c.GetListeAllees(encoche), u"Nom"),
              QStringList{QStringLiteral("Allée de l'encoche")});

    // A name that matches no section reaches the host as an error; so does a quote.
    for (QString absente : {QStringLiteral("Nulle part"), QStringLiteral("A\" OR \"1\"=\"1")}) {
        EXPECT_THROW(c.GetListeAllees(absente), Erreur) << absente.toStdString();
    }
}

TEST(Listes, ChoosingASectionFramesItAndEmptiesThePlotBox) {
    EchangeFixture f;
    Veldra& c = f.ctl();
    QComboBox* combo = f.w<QComboBox>("Combo_section");
    QLineEdit* saisie = f.w<QLineEdit>("TB_SaisieEmplacement");
    carto::MapView& carte = *c.surface().Map1;
    const carto::Feature b = c.Calque_Sections->allFeatures().at(1);
    const int index = combo->findText(b.attribute(u"Nom").toString());
    ASSERT_GT(index, 0);
    saisie->setText(QStringLiteral("12"));
    combo->setCurrentIndex(index);
    emit combo->activated(index);
    EXPECT_TRUE(saisie->text().isEmpty());
    const carto::Rect vu = carte.bounds();
    const carto::Rect r = b.bounds();
    EXPECT_LE(vu.xmin, r.xmin + 1e-6);
    EXPECT_GE(vu.xmax, r.xmax - 1e-6);
    EXPECT_LE(vu.ymin, r.ymin + 1e-6);
    EXPECT_GE(vu.ymax, r.ymax - 1e-6);
    EXPECT_LT(vu.width(), c.Calque_Sections->bounds().width());

    combo->setCurrentIndex(0);
    emit combo->activated(0);
    EXPECT_GE(carte.bounds().width(), c.Calque_Sections->bounds().width() - 1e-6);
}
