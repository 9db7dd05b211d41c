#include "analyse_fixture.h"
#include "analysis/infos_rapides.h"
#include "recordset/field_spec.h"
#include "veldra-plan/cursors.h"

#include <QListWidget>
#include <QToolButton>

using namespace veldra;

namespace {

QStringList lignes(const QListWidget* l) {
    QStringList out;
    for (int i = 0; i < l->count(); ++i)
        out << l->item(i)->text();
    return out;
}

struct Personne {
    QVariant nom, prenom, type;
};

RecordsetPtr personnes(const std::vector<Personne>& gens, bool avecType = true) {
    RecordsetPtr rs = recordset::fromFieldSpec(avecType ? u"nom C(40),prenom C(40),type C(2)"
                                                        : u"nom C(40),prenom C(40)");
    for (const Personne& p : gens) {
        rs->addNew();
        rs->setValue(u"nom", p.nom);
        rs->setValue(u"prenom", p.prenom);
        if (avecType)
            rs->setValue(u"type", p.type);
        rs->update();
    }
    if (rs->recordCount() > 0)
        rs->moveFirst();
    return rs;
}

struct Infos : AnalyseFixture {
    QListWidget* titulaires() { return w<QListWidget>("List1"); }
    QListWidget* inhumes() { return w<QListWidget>("List2"); }
    QListWidget* ayantsDroit() { return w<QListWidget>("List3"); }
    void affiche(RecordsetPtr a, RecordsetPtr b) { c->AfficheInfosRapides(a, b); }
};

} // namespace

TEST(InfosRapides, APersonsLineIsHerNameAndFirstNameTrimmed) {
    EXPECT_EQ(lignePersonne(QStringLiteral("DUPONT "), QStringLiteral(" Jean")), "DUPONT Jean");
    EXPECT_EQ(lignePersonne(QStringLiteral("DUPONT "), QVariant()), "DUPONT");
    EXPECT_EQ(lignePersonne(QVariant(), QStringLiteral("Jean")), " Jean");
    EXPECT_EQ(lignePersonne(QStringLiteral("  "), QString()), " ");
}

TEST(InfosRapides, HoldersRightHoldersAndBuriedPersonsGoToTheirLists) {
    Infos f;
    const QString a = QStringLiteral("A");
    RecordsetPtr gens = personnes({{"DUPONT ", " Jean", "T"},
                                   {"MARTIN", QVariant(), QStringLiteral("A ")},
                                   {"PETIT", "Anne", QStringLiteral("a")},
                                   {"ROBERT", "Paul", QVariant()}});
    RecordsetPtr morts = personnes({{"DUPONT", "Louis", {}}, {QVariant(), "Marie", {}}}, false);
    f.affiche(gens, morts);
    EXPECT_EQ(lignes(f.titulaires()), (QStringList{"DUPONT Jean", "PETIT Anne"}));
    EXPECT_EQ(lignes(f.ayantsDroit()), (QStringList{"MARTIN", "ROBERT Paul"}));
    EXPECT_EQ(lignes(f.inhumes()), (QStringList{"DUPONT Louis", " Marie"}));
    // Left at their end, open, the host's.
    EXPECT_TRUE(gens->eof() && gens->isOpen());
    EXPECT_TRUE(morts->eof() && morts->isOpen());

    // No holders, buried persons only: the two person lists are emptied.
    RecordsetPtr personne = personnes({});
    RecordsetPtr un = personnes({{"LEROY", "Henri", {}}}, false);
    f.affiche(personne, un);
    EXPECT_EQ(f.titulaires()->count(), 0);
    EXPECT_EQ(f.ayantsDroit()->count(), 0);
    EXPECT_EQ(lignes(f.inhumes()), QStringList{"LEROY Henri"});

    // Listed from where the host left the record set.
    RecordsetPtr suite = personnes({{"UN", {}, "T"}, {"DEUX", {}, "T"}});
    suite->moveNext();
    f.affiche(suite, RecordsetPtr());
    EXPECT_EQ(lignes(f.titulaires()), QStringList{"DEUX"});
    EXPECT_EQ(f.inhumes()->count(), 0);
}

TEST(InfosRapides, ARecordSetOfTheWrongShapeIsRefusedAndTheListsStay) {
    Infos f;
    f.affiche(personnes({{"DUPONT", "Jean", "T"}}), personnes({{"X", "Y", {}}}, false));
    // Holders without their type column.
    RecordsetPtr sansType = personnes({{"MARTIN", "Paul", {}}}, false);
    RecordsetPtr vide;
    EXPECT_THROW(f.affiche(sansType, vide), Erreur);
    RecordsetPtr sansPrenom = recordset::fromFieldSpec(u"nom C(10)");
    sansPrenom->addNew();
    sansPrenom->update();
    EXPECT_THROW(f.affiche(vide, sansPrenom), Erreur);
    RecordsetPtr ferme = personnes({{"A", "B", "T"}});
    ferme->close();
    EXPECT_THROW(f.affiche(ferme, vide), Erreur);
    EXPECT_EQ(lignes(f.titulaires()), QStringList{"DUPONT Jean"});
    EXPECT_EQ(lignes(f.inhumes()), QStringList{"X Y"});
    // Through late binding, the same error reaches the host.
    QVariantList args{QVariant::fromValue(sansType), QVariant::fromValue(vide)};
    EXPECT_THROW(f.c->Invoke(0x60030011, args), Erreur);
}

TEST(InfosRapides, ThePanelOpensArmsItsPointerAndFollowsTheSelectedPlot) {
    Infos f;
    const QString curseurs = plantool::writeCursors(f.dossierControle());
    f.c->setRepCurseurs(curseurs);
    QStringList demandes;
    Infos* p = &f;
    QObject::connect(f.c.get(), &Veldra::InfoTombes, [&demandes, p](QString& id) {
        demandes << id;
        p->affiche(personnes({{QStringLiteral("Titulaire %1").arg(id), {}, "T"}}), nullptr);
    });
    carto::Layer& tombes = *f.c->Calque_Tombe;
    tombes.selectOnly(tombes.searchEqual(u"IDGCF", 12));
    f.w<QPushButton>("Btn_InfosRapides")->click();
    EXPECT_FALSE(f.w<QFrame>("PInfos")->isHidden());
    carto::MapView& vue = *f.c->surface().Map1;
    EXPECT_EQ(vue.currentTool(), carto::tool::Select);
    EXPECT_EQ(vue.mousePointer(), carto::pointer::Custom);
    EXPECT_TRUE(vue.mouseIcon().endsWith("/Infos.cur"));
    EXPECT_EQ(demandes, QStringList{"12"});
    EXPECT_EQ(lignes(f.titulaires()), QStringList{"Titulaire 12"});
    EXPECT_EQ(f.w<QLabel>("L_Tombes")->text(), tombes.selection().at(0).attribute(u"Numero"));

    // The panel follows the selection while it is shown; several plots leave it as it was.
    tombes.selectOnly(tombes.searchEqual(u"IDGCF", 57));
    EXPECT_EQ(demandes, (QStringList{"12", "57"}));
    carto::Features deux = tombes.searchEqual(u"IDGCF", 1);
    deux.add(tombes.searchEqual(u"IDGCF", 2));
    tombes.selectOnly(deux);
    EXPECT_EQ(demandes.size(), 2);
    EXPECT_EQ(lignes(f.titulaires()), QStringList{"Titulaire 57"});

    f.w<QToolButton>("HLBBttn6")->click();
    EXPECT_TRUE(f.w<QFrame>("PInfos")->isHidden());
    EXPECT_EQ(vue.mousePointer(), carto::pointer::Default);
    tombes.selectOnly(tombes.searchEqual(u"IDGCF", 3));
    EXPECT_EQ(demandes.size(), 2);

    // The information tool button does the same.
    f.w<QToolButton>("B_OutilsInfo")->click();
    EXPECT_FALSE(f.w<QFrame>("PInfos")->isHidden());
    EXPECT_EQ(demandes.back(), "3");
    EXPECT_TRUE(f.messages.empty());
}

TEST(InfosRapides, WithoutItsPointerFileThePanelStillOpens) {
    Infos f;
    f.c->setRepCurseurs(f.dir.filePath(QStringLiteral("aucun")));
    f.w<QToolButton>("B_OutilsInfo")->click();
    EXPECT_FALSE(f.w<QFrame>("PInfos")->isHidden());
    EXPECT_EQ(f.c->surface().Map1->mousePointer(), carto::pointer::Default);
    EXPECT_TRUE(f.messages.empty());
}
