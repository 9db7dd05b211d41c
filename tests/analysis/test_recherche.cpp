#include "analyse_fixture.h"
#include "analysis/recherche.h"

#include <QComboBox>
#include <QCompleter>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QLineEdit>
#include <QStringListModel>

using namespace veldra;

namespace {

struct Recherche : AnalyseFixture {
    Recherche() {
        // Beside the plots numbered 1 to 30 in each alley: numbers a prefix search must
        // tell apart, all in section A.
        const carto::Point p = dansAllee(QStringLiteral("A"), QStringLiteral("Allée 1"));
        for (const auto& [dx, numero] : {std::pair{0.0, "120"}, {3.0, "12A"}, {6.0, "112"}})
            ajouteTombe(rectangle(p.x + dx, p.y, p.x + dx + 1, p.y + 2),
                        QString::fromLatin1(numero));
    }

    // Types `numero`, leaves the box (it turns upper case) and searches in `section`.
    void cherche(const QString& section, const QString& numero) {
        QComboBox* combo = w<QComboBox>("Combo_section");
        const int i = combo->findText(section);
        if (i < 0)
            combo->addItem(section);
        combo->setCurrentIndex(combo->findText(section));
        QLineEdit* boite = w<QLineEdit>("TB_SaisieEmplacement");
        boite->setText(numero);
        QFocusEvent sortie(QEvent::FocusOut, Qt::TabFocusReason);
        QCoreApplication::sendEvent(boite, &sortie);
        w<QPushButton>("Btn_Rechercher")->click();
    }

    QStringList numerosChoisis() const {
        QStringList out;
        for (const carto::Feature& t : c->Calque_Tombe->selection())
            out << t.attribute(u"Numero").toString();
        out.sort();
        return out;
    }

    // The view fits the selection, `facteur` times wider, on its centre.
    void attendVue(double facteur) {
        carto::MapView& vue = *c->surface().Map1;
        const double zoom = vue.zoom();
        const carto::Point centre = vue.centre();
        const carto::Rect r = c->Calque_Tombe->selection().bounds();
        vue.setBounds(r);
        EXPECT_NEAR(zoom, vue.zoom() * facteur, 1e-6 * zoom);
        EXPECT_NEAR(centre.x, r.center().x, 1e-6);
        EXPECT_NEAR(centre.y, r.center().y, 1e-6);
    }

    const Message& dernier() const { return messages.back(); }
};

} // namespace

TEST(Recherche, APrefixFindsTheNumbersThatBeginSoInAllSections) {
    Recherche f;
    f.cherche(QStringLiteral("Toutes les sections"), QStringLiteral("12*"));
    EXPECT_EQ(f.numerosChoisis(), (QStringList{"12", "12", "12", "12", "120", "12A"}));
    f.attendVue(2);
    EXPECT_TRUE(f.messages.empty());
}

TEST(Recherche, TheBoxTurnsUpperCaseAndNumbersAreComparedExactly) {
    Recherche f;
    f.cherche(QStringLiteral("Toutes les sections"), QStringLiteral("12a"));
    EXPECT_EQ(f.w<QLineEdit>("TB_SaisieEmplacement")->text(), "12A");
    EXPECT_EQ(f.numerosChoisis(), QStringList{"12A"});
    f.attendVue(10); // one plot found

    // A blank before the number is no blank to trim: nothing bears " 12".
    f.cherche(QStringLiteral("Toutes les sections"), QStringLiteral(" 12"));
    ASSERT_EQ(f.messages.size(), 1u);
    EXPECT_EQ(f.dernier().texte, "Aucun emplacement ne porte le numéro ' 12'");
    EXPECT_EQ(f.dernier().titre, "Emplacement non trouvé");
    EXPECT_EQ(f.numerosChoisis(), QStringList{"12A"}); // the previous result stays

    // "*" alone: every plot.
    f.cherche(QStringLiteral("Toutes les sections"), QStringLiteral("*"));
    EXPECT_EQ(f.c->Calque_Tombe->selection().count(), f.c->Calque_Tombe->featureCount());
}

TEST(Recherche, OneSectionKeepsItsOwnPlotsAndZoomsTenTimes) {
    Recherche f;
    f.cherche(QStringLiteral("A"), QStringLiteral("12"));
    ASSERT_EQ(f.numerosChoisis(), (QStringList{"12", "12"}));
    for (const carto::Feature& t : f.c->Calque_Tombe->selection())
        EXPECT_EQ(f.c->Calque_Sections->firstAtPoint(t.centre()).attribute(u"Nom"), "A");
    f.attendVue(10);

    f.cherche(QStringLiteral("B"), QStringLiteral("120"));
    EXPECT_EQ(f.dernier().texte, "Aucun emplacement ne porte le numéro '120' dans la section: B");
    EXPECT_EQ(f.dernier().titre, "Emplacement non trouvé");

    // A section the plan does not hold finds nothing, and says so.
    f.cherche(QStringLiteral("Fantôme"), QStringLiteral("12"));
    EXPECT_EQ(f.dernier().texte,
              "Aucun emplacement ne porte le numéro '12' dans la section: Fantôme");
}

TEST(Recherche, NothingTypedIsRefusedInBothKindsOfSearch) {
    Recherche f;
    for (const char* section : {"A", "Toutes les sections"}) {
        for (const char* vide : {"", "   "}) {
            f.messages.clear();
            f.cherche(QString::fromUtf8(section), QString::fromLatin1(vide));
            ASSERT_EQ(f.messages.size(), 1u);
            EXPECT_EQ(f.dernier().texte, "Vous devez saisir un numéro d'emplacement !");
            EXPECT_EQ(f.dernier().titre, "Saisie Incorrecte");
        }
    }
    EXPECT_TRUE(f.c->Calque_Tombe->selection().isEmpty());
}

TEST(Recherche, HostileTextsAreSearchedAsTextsAndNotFound) {
    Recherche f;
    const QString longue(10000, u'9');
    for (const QString& t : {longue, longue + u'*', QStringLiteral("\"12\""), QStringLiteral("@@@"),
                             QStringLiteral("12' OR '1'='1"), QStringLiteral("Numero = 12"),
                             QStringLiteral("%"), QStringLiteral("\\")}) {
        f.messages.clear();
        f.cherche(QStringLiteral("Toutes les sections"), t);
        ASSERT_EQ(f.messages.size(), 1u) << t.left(20).toStdString();
        EXPECT_EQ(f.dernier().texte,
                  QStringLiteral("Aucun emplacement ne porte le numéro '") + t.toUpper() + u'\'');
    }
    EXPECT_TRUE(f.c->Calque_Tombe->selection().isEmpty());
}

TEST(Recherche, TheIndexFollowsANumberChanged) {
    Recherche f;
    carto::Layer& tombes = *f.c->Calque_Tombe;
    f.cherche(QStringLiteral("Toutes les sections"), QStringLiteral("112"));
    ASSERT_EQ(f.numerosChoisis(), QStringList{"112"});
    carto::Feature t = tombes.selection().at(0);
    t.setAttribute(u"Numero", QStringLiteral("777"));
    tombes.updateFeature(t);
    f.cherche(QStringLiteral("Toutes les sections"), QStringLiteral("777"));
    EXPECT_EQ(f.numerosChoisis(), QStringList{"777"});
    f.cherche(QStringLiteral("Toutes les sections"), QStringLiteral("112"));
    EXPECT_EQ(f.dernier().texte, "Aucun emplacement ne porte le numéro '112'");
}

TEST(Recherche, TheBoxOffersTheSectionsNumbersOnlyWhenTheHostAsks) {
    Recherche f;
    QLineEdit* boite = f.w<QLineEdit>("TB_SaisieEmplacement");
    QFocusEvent entree(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(boite, &entree);
    EXPECT_EQ(boite->completer(), nullptr);

    f.c->setCompletionNumeros(true);
    QComboBox* combo = f.w<QComboBox>("Combo_section");
    combo->setCurrentIndex(combo->findText(QStringLiteral("B")));
    QCoreApplication::sendEvent(boite, &entree);
    ASSERT_NE(boite->completer(), nullptr);
    const auto* modele = qobject_cast<QStringListModel*>(boite->completer()->model());
    ASSERT_NE(modele, nullptr);
    QStringList attendus;
    for (int i = 1; i <= 30; ++i)
        attendus << QString::number(i);
    EXPECT_EQ(modele->stringList(), attendus);

    // Section A holds the added numbers, counted as a clerk counts them.
    combo->setCurrentIndex(combo->findText(QStringLiteral("A")));
    QCoreApplication::sendEvent(boite, &entree);
    const QStringList a = modele->stringList();
    EXPECT_EQ(a.mid(a.size() - 3), (QStringList{"30", "112", "120"}));
    EXPECT_EQ(a.indexOf("12A"), a.indexOf("12") + 1);

    f.c->setCompletionNumeros(false);
    QCoreApplication::sendEvent(boite, &entree);
    EXPECT_EQ(boite->completer(), nullptr);
}

TEST(Recherche, APlanWithoutSectionsIsSearchedWhole) {
    Recherche f;
    {
        carto::UpdateAccess acces(f.c->contexte().carte());
        const carto::Features toutes = f.c->Calque_Sections->allFeatures();
        for (const qint64 fid : toutes.fids())
            f.c->Calque_Sections->deleteFeature(fid);
        acces.commit();
    }
    f.c->Creer_Combo_Section();
    ASSERT_EQ(f.w<QComboBox>("Combo_section")->count(), 0);
    f.w<QLineEdit>("TB_SaisieEmplacement")->setText(QStringLiteral("12"));
    f.w<QPushButton>("Btn_Rechercher")->click();
    EXPECT_EQ(f.numerosChoisis(), (QStringList{"12", "12", "12", "12"}));
    EXPECT_TRUE(f.messages.empty());
}
