// Printing through the host: the Impression dialog's rules, "carte.jpg" in the export
// folder at the view's size or 29 cm wide for the selection, and DemandeImpressionCarte
// with the scale as the host must receive it.
#include "sortie_fixture.h"

#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace veldra;

namespace {

// The dialog filled as a clerk would, then validated.
std::function<void(QDialog&)> remplit(int ligne, bool selection,
                                      const char* bouton = "Btn_ValiderImpression") {
    return [=](QDialog& d) {
        d.findChild<QLineEdit*>(QStringLiteral("sTitre"))->setText(QStringLiteral("Plan général"));
        d.findChild<QPlainTextEdit*>(QStringLiteral("sCommentaires"))
            ->setPlainText(QStringLiteral("Allée des tilleuls"));
        d.findChild<QListWidget*>(QStringLiteral("Liste_Echelle"))->setCurrentRow(ligne);
        if (selection)
            d.findChild<QCheckBox*>(QStringLiteral("Cb_ImpSelection"))->click();
        d.findChild<QPushButton*>(QString::fromLatin1(bouton))->click();
    };
}

// The map's selection colour.
bool jaune(const QColor& p) {
    return p.red() > 200 && p.green() > 200 && p.blue() < 90;
}

QSize tailleAttendue(double largeurCm, double hauteurCm, const QWidget& vue) {
    return {int(std::lround(largeurCm / 2.54 * vue.logicalDpiX())),
            int(std::lround(hauteurCm / 2.54 * vue.logicalDpiY()))};
}

} // namespace

TEST(Impression, TheScaleReachesTheHostAsTheListSaysIt) {
    Sortie f;
    f.c->setRepertoire_Export(f.dir.path());
    const QStringList attendues = {QStringLiteral(" Echelle courante"), QStringLiteral("500"),
                                   QStringLiteral("1000"), QStringLiteral("2000"),
                                   QStringLiteral("3000")};
    for (int ligne = 0; ligne < 5; ++ligne) {
        f.dialogues(remplit(ligne, false));
        f.w<QPushButton>("Btn_Imprimer")->click();
    }
    ASSERT_EQ(f.demandes.size(), 5u);
    for (int i = 0; i < 5; ++i) {
        const Demande& d = f.demandes[size_t(i)];
        EXPECT_EQ(d.echelle, attendues[i]);
        EXPECT_EQ(d.titre, QStringLiteral("Plan général"));
        EXPECT_EQ(d.commentaires, QStringLiteral("Allée des tilleuls"));
        EXPECT_EQ(d.chemin, QDir(f.dir.path()).filePath(QStringLiteral("carte.jpg")));
    }
    // Every print writes the same file, the view's size.
    EXPECT_EQ(QDir(f.dir.path()).entryList({QStringLiteral("*.jpg")}).size(), 1);
    EXPECT_EQ(QImage(f.demandes[0].chemin).size(), f.vue().size());
    EXPECT_TRUE(f.messages.empty());
}

TEST(Impression, TheSelectionIsPrintedTwentyNineWideInTheViewsProportions) {
    Sortie f;
    f.c->setRepertoire_Export(f.dir.path());
    f.vue().resize(300, 600); // twice as high as wide
    f.vue().setBounds(f.tombes().bounds());
    const carto::Feature t = f.tenues().at(3);
    f.tombes().selectOnly(carto::Features(&f.tombes(), {t.fid()}));
    f.dialogues(remplit(1, true));
    f.w<QPushButton>("Btn_Imprimer")->click();
    ASSERT_EQ(f.demandes.size(), 1u);
    const QImage avec(f.demandes[0].chemin);
    EXPECT_EQ(avec.size(), tailleAttendue(29, 58, f.vue()));
    // The selection is drawn in that image (the map's selection colour is yellow), and not
    // in one of the view's size without it.
    const QPointF ecran = f.vue().toScreen(t.centre());
    const double k = double(avec.width()) / f.vue().width();
    EXPECT_TRUE(jaune(avec.pixelColor((ecran * k).toPoint())));

    QString format, titre, commentaires, echelle = QStringLiteral("500");
    bool trame = true, selection = false;
    f.c->ImpCarte(format, titre, commentaires, trame, echelle, selection);
    const QImage sans(f.demandes.back().chemin);
    EXPECT_EQ(sans.size(), f.vue().size());
    EXPECT_FALSE(jaune(sans.pixelColor(ecran.toPoint())));
}

TEST(Impression, TheExportFolderFallsBackWhenItCannotBeWritten) {
    Sortie f;
    const QString donnees = f.dir.filePath(QStringLiteral("donnees"));
    qputenv("XDG_DATA_HOME", donnees.toUtf8());
    const QString repli = donnees + QStringLiteral("/veldra/carte.jpg");
    QString format, titre, commentaires, echelle;
    bool trame = false, selection = false;

    // Empty: the control's own folder.
    f.c->ImpCarte(format, titre, commentaires, trame, echelle, selection);
    ASSERT_EQ(f.demandes.size(), 1u);
    EXPECT_EQ(f.demandes[0].chemin, f.dossierControle() + QStringLiteral("/carte.jpg"));

    // A folder that does not exist, and a file: the user's data folder.
    f.c->setRepertoire_Export(f.dir.filePath(QStringLiteral("absent")));
    f.c->ImpCarte(format, titre, commentaires, trame, echelle, selection);
    QFile fichier(f.dir.filePath(QStringLiteral("un-fichier")));
    ASSERT_TRUE(fichier.open(QIODevice::WriteOnly));
    fichier.close();
    f.c->setRepertoire_Export(fichier.fileName());
    f.c->ImpCarte(format, titre, commentaires, trame, echelle, selection);
    ASSERT_EQ(f.demandes.size(), 3u);
    EXPECT_EQ(f.demandes[1].chemin, repli);
    EXPECT_EQ(f.demandes[2].chemin, repli);
    EXPECT_TRUE(QFileInfo(repli).isFile());
    EXPECT_FALSE(QFileInfo::exists(f.dir.filePath(QStringLiteral("absent"))));
    EXPECT_TRUE(f.messages.empty());
    qunsetenv("XDG_DATA_HOME");
}

TEST(Impression, AViewWithoutWidthIsRefusedWithoutAnEvent) {
    Sortie f;
    f.c->setRepertoire_Export(f.dir.path());
    f.vue().resize(0, 400);
    QString format = QStringLiteral("A4"), titre, commentaires, echelle;
    bool trame = false, selection = true;
    f.c->ImpCarte(format, titre, commentaires, trame, echelle, selection);
    selection = false;
    f.c->ImpCarte(format, titre, commentaires, trame, echelle, selection);
    EXPECT_TRUE(f.demandes.empty());
    EXPECT_EQ(f.titres(QStringLiteral("ImpCarte")), 2);
    EXPECT_FALSE(QFileInfo::exists(f.dir.filePath(QStringLiteral("carte.jpg"))));
}

TEST(Impression, CancellingPrintsNothingClosingTheBoxPrintsEmptyTexts) {
    Sortie f;
    f.c->setRepertoire_Export(f.dir.path());
    f.dialogues(remplit(2, false, "Btn_AnnulerImpression"));
    f.w<QPushButton>("Btn_Imprimer")->click();
    EXPECT_TRUE(f.demandes.empty());

    // The window's close box: nothing was validated, the print still runs.
    f.dialogues([](QDialog& d) {
        d.findChild<QLineEdit*>(QStringLiteral("sTitre"))->setText(QStringLiteral("oublié"));
        d.reject();
    });
    f.w<QPushButton>("Btn_Imprimer")->click();
    ASSERT_EQ(f.demandes.size(), 1u);
    EXPECT_EQ(f.demandes[0].titre, QString());
    EXPECT_EQ(f.demandes[0].echelle, QString());
    EXPECT_TRUE(f.messages.empty());
}

TEST(Impression, PreciseScreenFollowsThePrintSelectionBox) {
    Sortie f;
    bool vu = false;
    f.dialogues([&vu](QDialog& d) {
        vu = true;
        auto* trame = d.findChild<QCheckBox*>(QStringLiteral("Trame_Precise"));
        auto* selection = d.findChild<QCheckBox*>(QStringLiteral("Cb_ImpSelection"));
        auto* label5 = d.findChild<QLabel*>(QStringLiteral("Label5"));
        auto* label2 = d.findChild<QLabel*>(QStringLiteral("Label2"));
        EXPECT_EQ(d.findChild<QListWidget*>(QStringLiteral("Liste_Echelle"))->currentRow(), 0);
        EXPECT_FALSE(trame->isEnabled());
        selection->click();
        EXPECT_TRUE(trame->isEnabled());
        QTest::mouseClick(label5, Qt::LeftButton);
        EXPECT_FALSE(selection->isChecked());
        EXPECT_FALSE(trame->isEnabled());
        QTest::mouseClick(label2, Qt::LeftButton);
        EXPECT_TRUE(trame->isChecked());
        QTest::mouseClick(label5, Qt::LeftButton);
        EXPECT_TRUE(selection->isChecked());
        EXPECT_TRUE(trame->isEnabled());
        // Paper printing is the host's choice, off unless asked for.
        EXPECT_TRUE(d.findChild<QFrame*>(QStringLiteral("Frame_Papier"))->isHidden());
        d.findChild<QPushButton*>(QStringLiteral("Btn_AnnulerImpression"))->click();
    });
    f.w<QPushButton>("Btn_Imprimer")->click();
    EXPECT_TRUE(vu);
}

TEST(Impression, LateBindingWritesTheArgumentsBack) {
    Sortie f;
    f.c->setRepertoire_Export(f.dir.path());
    QVariantList args{QStringLiteral("A4"),
                      QStringLiteral("Titre"),
                      QStringLiteral("Notes"),
                      false,
                      QStringLiteral(" Echelle courante"),
                      false};
    f.c->Invoke(0x6003000e, args);
    ASSERT_EQ(args.size(), 6);
    ASSERT_EQ(f.demandes.size(), 1u);
    EXPECT_EQ(f.demandes[0].echelle, QStringLiteral(" Echelle courante"));
    EXPECT_EQ(f.demandes[0].titre, QStringLiteral("Titre"));
}
