// "Affecter une concession" answered by the host: a free concession of its register chosen
// in its dialog, written into the plot with MAJ, and its place recorded.
#include "context/lieux.h"
#include "hote_fixture.h"

#include <QAction>
#include <QCheckBox>
#include <QListWidget>
#include <QMenu>

using namespace veldra;
using namespace veldra::demo;

TEST(Affectation, AFreeConcessionGoesToThePlotAndTheRegisterFollows) {
    HoteAvecRegistre h;
    Registre& r = *h.f->registre();
    carto::Layer& tombes = *h.c().Calque_Tombe;
    // A plot without a concession, and the register's concessions no plot bears.
    carto::Feature libre;
    tombes.forEachFeature([&](const carto::Feature& t) {
        if (!libre.isValid() && t.attribute(u"IDGCF").toInt() == 0)
            libre = t;
    });
    ASSERT_TRUE(libre.isValid());
    QSet<int> prises;
    tombes.forEachFeature(
        [&](const carto::Feature& t) { prises.insert(t.attribute(u"IDGCF").toInt()); });
    const std::vector<ConcessionLibre> libres = r.concessionsLibres(prises);
    ASSERT_EQ(libres.size(), 4u); // the register's four concessions without a plot

    QStringList vues;
    h.f->setMontreDialogue([&](QDialog& d) {
        auto* liste = d.findChild<QListWidget*>(QStringLiteral("ListeConcessions"));
        for (int i = 0; i < liste->count(); ++i)
            vues << liste->item(i)->text();
        liste->setCurrentRow(1);
        return int(QDialog::Accepted);
    });
    h.c().surface().CB_ModeEdition->click();
    tombes.clearSelection();
    tombes.selectAdd(libre.fid());
    h.c().contexte().montreMenu = [](QMenu& m, const QPoint&) {
        for (QAction* a : m.actions())
            if (a->text() == QStringLiteral("Affecter une concession"))
                return a;
        return static_cast<QAction*>(nullptr);
    };
    emit h.c().surface().Map1->mouseUp(carto::mouse::Right, 0, 10, 10);

    ASSERT_EQ(vues.size(), 4);
    const ConcessionLibre choisie = libres[1];
    const carto::Feature apres = tombes.feature(libre.fid());
    EXPECT_EQ(apres.attribute(u"IDGCF").toInt(), choisie.idgcf);
    EXPECT_EQ(apres.attribute(u"Nom").toString(), choisie.titulaire.section(u' ', 1));
    prises.insert(choisie.idgcf);
    EXPECT_EQ(r.concessionsLibres(prises).size(), 3u);
    EXPECT_EQ(r.numeroConcession(choisie.idgcf), choisie.numero);
    EXPECT_TRUE(r.concession(SectionDuTerrain(h.c().contexte(), apres),
                             AlleeDuTerrain(h.c().contexte(), apres),
                             apres.attribute(u"Numero").toString())
                    .has_value());

    // Given up: nothing is written.
    carto::Feature autre;
    tombes.forEachFeature([&](const carto::Feature& t) {
        if (!autre.isValid() && t.attribute(u"IDGCF").toInt() == 0)
            autre = t;
    });
    ASSERT_TRUE(autre.isValid());
    h.f->setMontreDialogue([](QDialog&) { return int(QDialog::Rejected); });
    tombes.clearSelection();
    tombes.selectAdd(autre.fid());
    emit h.c().surface().Map1->mouseUp(carto::mouse::Right, 0, 10, 10);
    EXPECT_EQ(tombes.feature(autre.fid()).attribute(u"IDGCF").toInt(), 0);
}
