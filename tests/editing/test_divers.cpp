// The Divers dialog driven as a clerk does: free texts written and changed, features and
// plot numbers turned, every number resized; each change one step, bad input refused.
#include "carte_fixture.h"
#include "carto/geometry/geometry.h"
#include "carto/model/map.h"
#include "editing/divers.h"
#include "editing/rotation.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <cmath>
#include <functional>

using namespace veldra;

namespace {

struct Dialogue : Carte {
    QStringList modes;
    Dialogue() {
        c->setAnnulation(true);
        edition();
    }
    // Each Divers shown is handed to `geste` instead of waiting for the clerk.
    void repond(std::function<void(Divers&)> geste) {
        c->setModalHook([this, geste](QDialog& d) {
            if (auto* divers = qobject_cast<Divers*>(&d)) {
                modes << divers->mode();
                geste(*divers);
            }
            return d.result();
        });
    }
    template <typename T> static T* dans(QDialog& d, const char* nom) {
        return d.findChild<T*>(QString::fromLatin1(nom));
    }
    carto::Layer& tombes() { return *c->Calque_Tombe; }
    // The plot's number labels.
    carto::Features etiquettes(const carto::Feature& t) {
        return c->Calque_Numero->searchWithinFeature(t, carto::searchmode::CentreWithin);
    }
};

} // namespace

TEST(Divers, TurningOnePointIsARotationAboutTheCentre) {
    // A square turned by 90 degrees: each corner takes its neighbour's place.
    const carto::Point c{10, 20};
    const double quart = -(90 * 3.14159265358979) / 180; // 90 degrees clockwise
    const carto::Point coins[] = {{9, 19}, {11, 19}, {11, 21}, {9, 21}};
    for (int i = 0; i < 4; ++i) {
        const carto::Point q = RPoint(c, coins[i], quart);
        const carto::Point voisin = coins[(i + 3) % 4];
        EXPECT_NEAR(q.x, voisin.x, 1e-9) << i;
        EXPECT_NEAR(q.y, voisin.y, 1e-9) << i;
    }
    EXPECT_EQ(RPoint(c, c, 1), c);
    EXPECT_EQ(VirguleP(QStringLiteral("15,5")), QStringLiteral("15.5"));
    EXPECT_EQ(VirguleP(QStringLiteral("1,2,3")), QStringLiteral("1.2,3"));
}

TEST(Divers, SelectedFeaturesTurnFromTheDrawingToolsButton) {
    Dialogue f;
    f.calque(QStringLiteral("Tombes"));
    const carto::Feature t = f.tombes().allFeatures().at(5);
    f.tombes().selectAdd(t.fid());
    f.repond([](Divers& d) {
        Dialogue::dans<QLineEdit>(d, "Angle")->setText(QStringLiteral("45,5"));
        Dialogue::dans<QPushButton>(d, "Btn_ValiderRotation")->click();
        Dialogue::dans<QLineEdit>(d, "Angle")->setText(QStringLiteral("44.5"));
        Dialogue::dans<QPushButton>(d, "Btn_ValiderRotation")->click(); // 90 in all
        Dialogue::dans<QPushButton>(d, "Btn_AnnulerRot")->click();
    });
    f.c->surface().Btn_OutilsDessin_[0]->click();
    ASSERT_EQ(f.modes, QStringList{QStringLiteral("Rotation")});
    const carto::Feature tourne = f.tombes().feature(t.fid());
    EXPECT_NEAR(tourne.area(), t.area(), 1e-9);
    EXPECT_NEAR(tourne.centre().x, t.centre().x, 1e-9);
    EXPECT_NEAR(tourne.bounds().width(), t.bounds().height(), 1e-6);
    EXPECT_EQ(f.c->surface().Historique->count(), 2); // one step each

    // Angles read leniently: text counts as 0 (nothing turns), whole turns change nothing.
    for (const char* angle : {"abc", "360", "-720"}) {
        f.repond([angle](Divers& d) {
            Dialogue::dans<QLineEdit>(d, "Angle")->setText(QString::fromLatin1(angle));
            Dialogue::dans<QPushButton>(d, "Btn_ValiderRotation")->click();
        });
        f.c->surface().Btn_OutilsDessin_[0]->click();
        const carto::Feature apres = f.tombes().feature(t.fid());
        EXPECT_NEAR(apres.bounds().width(), tourne.bounds().width(), 1e-6) << angle;
    }
}

TEST(Divers, PlotNumbersTurnAndAccumulateTheirAngle) {
    Dialogue f;
    f.calque(QStringLiteral("Tombes"));
    carto::Feature t = f.tombes().allFeatures().at(2);
    ASSERT_EQ(f.etiquettes(t).count(), 1);
    t.setAttribute(u"AngleNumero", 10.0);
    f.tombes().updateFeature(t);
    f.tombes().selectAdd(t.fid());
    f.repond([](Divers& d) {
        Dialogue::dans<QLineEdit>(d, "Angle")->setText(QStringLiteral("20"));
        Dialogue::dans<QPushButton>(d, "Btn_ValiderRotation")->click();
    });
    f.c->surface().Btn_RotationNumero->click();
    EXPECT_EQ(f.modes, QStringList{QStringLiteral("RotationNumero")});
    EXPECT_DOUBLE_EQ(f.tombes().feature(t.fid()).attribute(u"AngleNumero").toDouble(), 30);
    EXPECT_DOUBLE_EQ(f.etiquettes(t).at(0).style().textRotation, -30);
    f.repond([](Divers& d) { Dialogue::dans<QPushButton>(d, "Btn_Horizontal")->click(); });
    f.c->surface().Btn_RotationNumero->click();
    EXPECT_DOUBLE_EQ(f.tombes().feature(t.fid()).attribute(u"AngleNumero").toDouble(), 0);
    EXPECT_DOUBLE_EQ(f.etiquettes(t).at(0).style().textRotation, 0);
}

TEST(Divers, EveryPlotNumberTakesTheSizeWeightAndColour) {
    Dialogue f;
    f.calque(QStringLiteral("Tombes"));
    f.repond([](Divers& d) {
        Dialogue::dans<QLineEdit>(d, "T_Taille")->setText(QStringLiteral("33"));
        Dialogue::dans<QCheckBox>(d, "CB_NumeroGras")->setChecked(true);
        Dialogue::dans<QPushButton>(d, "Btn_ValiderTailleNumero")->click();
    });
    f.c->surface().Btn_ModifierTailleNumero->click();
    int vus = 0;
    f.tombes().forEachFeature([&](const carto::Feature& t) {
        for (const carto::Feature& l : f.etiquettes(t)) {
            EXPECT_DOUBLE_EQ(l.style().textSize, 33);
            EXPECT_TRUE(l.style().textBold);
            EXPECT_NEAR(l.point(0, 0).x, t.centre().x, 1e-9);
            ++vus;
        }
    });
    EXPECT_EQ(vus, f.tombes().featureCount());
    EXPECT_EQ(f.c->surface().Historique->count(), 1);
    // A size of 0 is refused with a message; nothing changes.
    f.repond([](Divers& d) {
        Dialogue::dans<QLineEdit>(d, "T_Taille")->setText(QStringLiteral("0"));
        Dialogue::dans<QPushButton>(d, "Btn_ValiderTailleNumero")->click();
    });
    f.c->surface().Btn_ModifierTailleNumero->click();
    EXPECT_FALSE(f.messages.empty());
    EXPECT_EQ(f.c->surface().Historique->count(), 1);
}

TEST(Divers, AFreeTextIsWrittenWhereTheClerkClickedAndChangedOnDoubleClick) {
    Dialogue f;
    f.calque(QStringLiteral("Texte"));
    carto::Layer& textes = *f.c->Calque_Texte;
    const qint32 avant = textes.featureCount();
    const carto::Point ici = f.c->Calque_Enceinte->bounds().center();
    f.repond([](Divers& d) {
        Dialogue::dans<QLineEdit>(d, "Text")->setText(QStringLiteral("Carré des enfants"));
        Dialogue::dans<QLineEdit>(d, "Taille")->setText(QStringLiteral("150"));
        Dialogue::dans<QCheckBox>(d, "cb_Ombre")->setChecked(true);
        Dialogue::dans<QComboBox>(d, "CB_Fond")->setCurrentIndex(2);
        Dialogue::dans<QPushButton>(d, "Btn_Valider")->click();
    });
    f.c->surface().Btn_Texte->click();
    ASSERT_EQ(f.vue().currentTool(), 108);
    bool defaut = true;
    emit f.vue().toolUsed(108, ici.x, ici.y, ici.x, ici.y, 0, false, false, defaut);
    ASSERT_EQ(textes.featureCount(), avant + 1);
    const carto::Feature t = textes.allFeatures().at(avant);
    EXPECT_EQ(t.text(), QStringLiteral("Carré des enfants"));
    EXPECT_DOUBLE_EQ(t.style().textSize, 150);
    EXPECT_TRUE(t.style().textShadow);
    EXPECT_TRUE(t.style().textBox);
    EXPECT_EQ(t.point(0, 0), ici);

    // Double click with the select tool on that one text: Divers in "Texte" mode, filled.
    f.c->surface().B_Outils_[3]->click();
    textes.clearSelection();
    textes.selectAdd(t.fid());
    QString vu;
    f.repond([&vu](Divers& d) {
        vu = Dialogue::dans<QLineEdit>(d, "Text")->text();
        Dialogue::dans<QLineEdit>(d, "Text")->setText(QString(10000, u'x'));
        Dialogue::dans<QPushButton>(d, "Btn_Valider")->click();
    });
    emit f.vue().doubleClicked();
    EXPECT_EQ(vu, QStringLiteral("Carré des enfants"));
    EXPECT_EQ(textes.feature(t.fid()).text().size(), 254); // cut to its column

    // Blanks only: refused with a message, nothing written.
    f.repond([](Divers& d) {
        Dialogue::dans<QLineEdit>(d, "Text")->setText(QStringLiteral("   "));
        Dialogue::dans<QPushButton>(d, "Btn_Valider")->click();
    });
    const std::size_t messages = f.messages.size();
    emit f.vue().doubleClicked();
    EXPECT_EQ(f.messages.size(), messages + 1);
    EXPECT_EQ(textes.feature(t.fid()).text().size(), 254);

    // Three texts selected: no dialog.
    f.modes.clear();
    for (const carto::Feature& autre : textes.allFeatures())
        textes.selectAdd(autre.fid());
    emit f.vue().doubleClicked();
    EXPECT_TRUE(f.modes.isEmpty());
}
