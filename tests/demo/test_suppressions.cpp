// The host's answer to deletion requests: a plot holding a concession stays, with the
// reason; otherwise the clerk's yes or no decides.
#include "hote_fixture.h"
#include "reponses_suppression.h"

#include <QCheckBox>
#include <QComboBox>

using namespace veldra;
using namespace veldra::demo;

namespace {

struct Suppressions : HoteAvecRegistre {
    QStringList questions;
    bool reponse = true;
    Suppressions() {
        f->setConfirmation([this](const QString& q) {
            questions << q;
            return reponse;
        });
        c().surface().CB_ModeEdition->click();
    }
    // Plots of the plan with and without a concession in the register.
    std::pair<carto::Feature, carto::Feature> deuxTerrains() {
        carto::Feature avec, sans;
        c().Calque_Tombe->forEachFeature([&](const carto::Feature& t) {
            const int id = t.attribute(u"IDGCF").toInt();
            const bool tenu = f->registre()->numeroConcession(id).has_value();
            if (tenu && !avec.isValid())
                avec = t;
            if (!tenu && !sans.isValid())
                sans = t;
        });
        return {avec, sans};
    }
    void supprime(const carto::Feature& t) {
        c().Calque_Tombe->clearSelection();
        c().Calque_Tombe->selectAdd(t.fid());
        c().DemandeSuppression();
    }
};

} // namespace

TEST(Suppressions, APlotHoldingAConcessionStaysAndTheClerkIsToldWhy) {
    Suppressions h;
    const auto [avec, sans] = h.deuxTerrains();
    ASSERT_TRUE(avec.isValid());
    ASSERT_TRUE(sans.isValid());
    carto::Layer& tombes = *h.c().Calque_Tombe;
    const qint32 n = tombes.featureCount();

    h.supprime(avec);
    EXPECT_TRUE(h.questions.isEmpty()); // refused before asking
    EXPECT_TRUE(tombes.hasFeature(avec.fid()));
    EXPECT_TRUE(h.messages.contains(QStringLiteral("porte une concession du registre")))
        << h.messages.toStdString();

    h.reponse = false;
    h.supprime(sans);
    ASSERT_EQ(h.questions.size(), 1);
    EXPECT_TRUE(h.questions[0].startsWith(QStringLiteral("Supprimer le ou les emplacements")));
    EXPECT_TRUE(tombes.hasFeature(sans.fid()));
    EXPECT_TRUE(h.messages.contains(QStringLiteral("Rien n'a été supprimé.")));

    h.reponse = true;
    h.supprime(sans);
    EXPECT_FALSE(tombes.hasFeature(sans.fid()));
    EXPECT_EQ(tombes.featureCount(), n - 1);
}

TEST(Suppressions, SectionsAndAlleysAreNamedInTheQuestion) {
    Suppressions h;
    h.reponse = false;
    QComboBox* combo = h.c().surface().Combo_Calque;
    const int i = combo->findText(QStringLiteral("Allées"));
    combo->setCurrentIndex(i);
    emit combo->activated(i);
    carto::Layer& allees = *h.c().Calque_Allees;
    allees.selectAdd(allees.searchEqual(u"Nom", QStringLiteral("Allée des Cyprès")).at(0).fid());
    h.c().DemandeSuppression();
    ASSERT_EQ(h.questions.size(), 1);
    EXPECT_TRUE(h.questions[0].contains(QStringLiteral("Allée des Cyprès (section A)")))
        << h.questions[0].toStdString();
    EXPECT_EQ(
        refusTerrains(*h.f->registre(), {QString(), QStringLiteral("0"), QStringLiteral("abc")}),
        QString());
}
