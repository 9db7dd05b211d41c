// The event log: how values are written, and that every one of the control's events
// reaches the log with its arguments in order.
#include "control/veldra.h"
#include "format_evenement.h"
#include "journal_evenements.h"

#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTableView>
#include <QTextBlock>
#include <gtest/gtest.h>

using namespace veldra;
using namespace veldra::demo;

namespace {

RecordsetPtr recordsetOuvert(int lignes) {
    auto rs = std::make_shared<recordset::Recordset>();
    rs->appendField(QStringLiteral("IDGCF"), recordset::DataType::SmallInt);
    rs->open();
    for (int i = 0; i < lignes; ++i) {
        rs->addNew();
        rs->setValue(u"IDGCF", i + 1);
        rs->update();
    }
    return rs;
}

} // namespace

TEST(FormatEvenement, TextStaysOnOneLineAndQuotesStayReadable) {
    EXPECT_EQ(texteValeur(QString()), QStringLiteral("\"\""));
    EXPECT_EQ(texteValeur(QStringLiteral("Allée \"A\"")), QStringLiteral("\"Allée \"\"A\"\"\""));
    EXPECT_EQ(texteValeur(QStringLiteral("l1\r\nl2\tx")), QStringLiteral("\"l1\\r\\nl2\\tx\""));
    EXPECT_EQ(texteValeur(QStringLiteral("abcdef"), 4), QStringLiteral("\"abcd…\""));
    EXPECT_EQ(texteValeur(QStringLiteral("abcd"), 4), QStringLiteral("\"abcd\""));
}

TEST(FormatEvenement, VariantsSayWhatTheyHold) {
    EXPECT_EQ(texteValeur(QVariant()), QStringLiteral("(vide)"));
    EXPECT_EQ(texteValeur(QVariant(QMetaType::fromType<QString>())), QStringLiteral("(vide)"));
    EXPECT_EQ(texteValeur(QVariant(QStringLiteral("Nord"))), QStringLiteral("\"Nord\""));
    EXPECT_EQ(texteValeur(QVariant(12)), QStringLiteral("12"));
    EXPECT_EQ(texteValeur(QVariant(true)), QStringLiteral("Vrai"));
}

TEST(FormatEvenement, RecordSetsShowTheirCountWithoutThrowingWhenClosed) {
    EXPECT_EQ(texteValeur(RecordsetPtr()), QStringLiteral("(aucun)"));
    EXPECT_EQ(texteValeur(std::make_shared<recordset::Recordset>()), QStringLiteral("(fermé)"));
    EXPECT_EQ(texteValeur(recordsetOuvert(0)), QStringLiteral("0 enregistrement"));
    EXPECT_EQ(texteValeur(recordsetOuvert(1)), QStringLiteral("1 enregistrement"));
    EXPECT_EQ(texteValeur(recordsetOuvert(3)), QStringLiteral("3 enregistrements"));
}

TEST(FormatEvenement, LineHasTimeNameAndArgumentsInOrder) {
    EXPECT_EQ(ligneJournal(QTime(9, 5, 7), QStringLiteral("Change"), {}),
              QStringLiteral("09:05:07  Change()"));
    EXPECT_EQ(ligneJournal(QTime(14, 0, 0), QStringLiteral("ChargeTheme"),
                           {{QStringLiteral("Libelle"), QStringLiteral("\"x\""), {}},
                            {QStringLiteral("Code"), QStringLiteral("\"3\""), {}}}),
              QStringLiteral("14:00:00  ChargeTheme(Libelle=\"x\", Code=\"3\")"));
}

TEST(JournalEvenements, EveryEventIsLoggedWithItsArguments) {
    Veldra plan;
    QPlainTextEdit journal;
    brancheJournal(plan, journal);

    QString a = QStringLiteral("A-1-12"), b = QStringLiteral("B"), c = QStringLiteral("C"),
            d = QStringLiteral("D");
    QVariant section = QStringLiteral("Nord");
    RecordsetPtr rs = recordsetOuvert(2);
    QString commentaires = QStringLiteral("ligne 1\nligne 2");
    emit plan.FicheTombe(a);
    emit plan.ChargeTheme(b, c);
    emit plan.Synchro(rs, b);
    emit plan.AffecterUneConcession(a);
    emit plan.CreationDuneSection(b);
    emit plan.CreationDuneAllee(c, section);
    emit plan.CreationDunTerrain(a);
    emit plan.SuppressionSection(b);
    emit plan.SuppressionAllee(c);
    emit plan.SuppressionTerrain(a);
    emit plan.DemandeImpressionCarte(a, b, commentaires, d);
    emit plan.InfoTombes(a);
    emit plan.Change();

    const QStringList lignes = journal.toPlainText().split(u'\n');
    const QStringList attendues = {
        "FicheTombe(NumTombe=\"A-1-12\")",
        "ChargeTheme(Libelle=\"B\", Code=\"C\")",
        "Synchro(Rs=2 enregistrements, TypeSynchro=\"B\")",
        "AffecterUneConcession(IdTerrain=\"A-1-12\")",
        "CreationDuneSection(NomSection=\"B\")",
        "CreationDuneAllee(NomAllee=\"C\", NomSection=\"Nord\")",
        "CreationDunTerrain(IdTerrain=\"A-1-12\")",
        "SuppressionSection(NomSection=\"B\")",
        "SuppressionAllee(NomAllee=\"C\")",
        "SuppressionTerrain(IdTerrain=\"A-1-12\")",
        "DemandeImpressionCarte(CheminCarte=\"A-1-12\", Titre=\"B\", "
        "Commentaires=\"ligne 1\\nligne 2\", Echelle=\"D\")",
        "InfoTombes(IdTombe=\"A-1-12\")",
        "Change()",
    };
    ASSERT_EQ(lignes.size(), attendues.size()) << journal.toPlainText().toStdString();
    const QRegularExpression heure(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d  "));
    for (qsizetype i = 0; i < lignes.size(); ++i) {
        EXPECT_TRUE(heure.match(lignes[i]).hasMatch()) << lignes[i].toStdString();
        EXPECT_EQ(lignes[i].mid(10), attendues[i]);
    }
}

TEST(JournalEvenements, HostSlotsStillReceiveAndChangeTheArguments) {
    Veldra plan;
    QPlainTextEdit journal;
    brancheJournal(plan, journal);
    QObject::connect(&plan, &Veldra::FicheTombe, [](QString& n) { n = QStringLiteral("vu"); });
    QString numero = QStringLiteral("12");
    emit plan.FicheTombe(numero);
    EXPECT_EQ(numero, QStringLiteral("vu"));
    EXPECT_TRUE(journal.toPlainText().endsWith(QStringLiteral("FicheTombe(NumTombe=\"12\")")));
}

TEST(JournalEvenements, AClickOnAnEventShowsItsRecordSetAndItsTextsInFull) {
    Veldra plan;
    QPlainTextEdit journal, texte;
    QTableView table;
    brancheJournal(plan, journal);
    brancheDetails(journal, table, texte);

    RecordsetPtr rs = recordsetOuvert(3);
    QString type = QStringLiteral("A");
    emit plan.Synchro(rs, type);
    rs->moveFirst();
    rs->setValue(u"IDGCF", 99); // what the host does after: the log keeps what was sent
    rs->update();
    QString chemin = QStringLiteral("C:/plans/") + QString(200, u'x'), titre, echelle;
    QString commentaires = QStringLiteral("ligne 1\nligne 2");
    emit plan.DemandeImpressionCarte(chemin, titre, commentaires, echelle);

    QTextCursor sur(journal.document()->firstBlock());
    journal.setTextCursor(sur);
    ASSERT_NE(table.model(), nullptr);
    EXPECT_EQ(table.model()->rowCount(), 3);
    EXPECT_EQ(table.model()->headerData(0, Qt::Horizontal).toString(), QStringLiteral("IDGCF"));
    EXPECT_EQ(table.model()->index(0, 0).data().toString(), QStringLiteral("1"));
    EXPECT_TRUE(texte.toPlainText().contains(QStringLiteral("TypeSynchro = A")));

    journal.setTextCursor(QTextCursor(journal.document()->lastBlock()));
    EXPECT_EQ(table.model()->rowCount(), 0);
    EXPECT_TRUE(texte.toPlainText().contains(chemin)); // the line itself cuts it
    EXPECT_FALSE(journal.document()->lastBlock().text().contains(chemin));
    EXPECT_TRUE(texte.toPlainText().contains(commentaires));
}
