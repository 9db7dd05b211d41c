#include "journal_evenements.h"

#include "control/veldra.h"
#include "format_evenement.h"

#include <QPlainTextEdit>
#include <QStandardItemModel>
#include <QTableView>
#include <QTextBlock>
#include <memory>
#include <vector>

namespace veldra::demo {

namespace {

// What a line of the log keeps for its details: the arguments in full and a copy of the
// record set as the control sent it.
struct Detail : QTextBlockUserData {
    std::vector<ArgumentEvenement> arguments;
    RecordsetPtr jeu;
};

ArgumentEvenement arg(const QString& nom, const QString& texte) {
    return {nom, texteValeur(texte), texte};
}
ArgumentEvenement arg(const QString& nom, const QVariant& valeur) {
    return {nom, texteValeur(valeur), valeur.toString()};
}
ArgumentEvenement arg(const QString& nom, const RecordsetPtr& rs) {
    return {nom, texteValeur(rs), {}};
}

// The records as they are now: a clone would share them with the host, which changes
// them right after.
RecordsetPtr copie(const recordset::Recordset& rs) {
    auto copie = std::make_shared<recordset::Recordset>();
    for (const recordset::Field& f : rs.fields())
        copie->appendField(f.name, f.type, f.definedSize);
    copie->open();
    RecordsetPtr lecture = rs.clone();
    const qsizetype colonnes = qsizetype(rs.fields().size());
    for (lecture->moveFirst(); !lecture->eof(); lecture->moveNext()) {
        copie->addNew();
        for (qsizetype c = 0; c < colonnes; ++c)
            copie->setValue(c, lecture->value(c));
        copie->update();
    }
    return copie;
}

void ecris(QPlainTextEdit& journal, const QString& evenement,
           std::initializer_list<ArgumentEvenement> arguments) {
    journal.appendPlainText(ligneJournal(QTime::currentTime(), evenement, arguments));
    auto detail = std::make_unique<Detail>();
    detail->arguments.assign(arguments.begin(), arguments.end());
    journal.document()->lastBlock().setUserData(detail.release()); // the block owns it
}

void ecris(QPlainTextEdit& journal, const QString& evenement,
           std::initializer_list<ArgumentEvenement> arguments, const RecordsetPtr& rs) {
    ecris(journal, evenement, arguments);
    if (rs && rs->isOpen())
        static_cast<Detail*>(journal.document()->lastBlock().userData())->jeu = copie(*rs);
}

} // namespace

void brancheJournal(Veldra& plan, QPlainTextEdit& journal) {
    QPlainTextEdit* const j = &journal;
    QObject::connect(&plan, &Veldra::FicheTombe, j, [j](QString& NumTombe) {
        ecris(*j, QStringLiteral("FicheTombe"), {arg(QStringLiteral("NumTombe"), NumTombe)});
    });
    QObject::connect(&plan, &Veldra::ChargeTheme, j, [j](QString& Libelle, QString& Code) {
        ecris(*j, QStringLiteral("ChargeTheme"),
              {arg(QStringLiteral("Libelle"), Libelle), arg(QStringLiteral("Code"), Code)});
    });
    QObject::connect(&plan, &Veldra::Synchro, j, [j](RecordsetPtr& Rs, QString& TypeSynchro) {
        ecris(*j, QStringLiteral("Synchro"),
              {arg(QStringLiteral("Rs"), Rs), arg(QStringLiteral("TypeSynchro"), TypeSynchro)}, Rs);
    });
    QObject::connect(&plan, &Veldra::AffecterUneConcession, j, [j](QString& IdTerrain) {
        ecris(*j, QStringLiteral("AffecterUneConcession"),
              {arg(QStringLiteral("IdTerrain"), IdTerrain)});
    });
    QObject::connect(&plan, &Veldra::CreationDuneSection, j, [j](QString& NomSection) {
        ecris(*j, QStringLiteral("CreationDuneSection"),
              {arg(QStringLiteral("NomSection"), NomSection)});
    });
    QObject::connect(&plan, &Veldra::CreationDuneAllee, j,
                     [j](QString& NomAllee, QVariant& NomSection) {
                         ecris(*j, QStringLiteral("CreationDuneAllee"),
                               {arg(QStringLiteral("NomAllee"), NomAllee),
                                arg(QStringLiteral("NomSection"), NomSection)});
                     });
    QObject::connect(&plan, &Veldra::CreationDunTerrain, j, [j](QString& IdTerrain) {
        ecris(*j, QStringLiteral("CreationDunTerrain"),
              {arg(QStringLiteral("IdTerrain"), IdTerrain)});
    });
    QObject::connect(&plan, &Veldra::SuppressionSection, j, [j](QString& NomSection) {
        ecris(*j, QStringLiteral("SuppressionSection"),
              {arg(QStringLiteral("NomSection"), NomSection)});
    });
    QObject::connect(&plan, &Veldra::SuppressionAllee, j, [j](QString& NomAllee) {
        ecris(*j, QStringLiteral("SuppressionAllee"), {arg(QStringLiteral("NomAllee"), NomAllee)});
    });
    QObject::connect(&plan, &Veldra::SuppressionTerrain, j, [j](QString& IdTerrain) {
        ecris(*j, QStringLiteral("SuppressionTerrain"),
              {arg(QStringLiteral("IdTerrain"), IdTerrain)});
    });
    QObject::connect(
        &plan, &Veldra::DemandeImpressionCarte, j,
        [j](QString& CheminCarte, QString& Titre, QString& Commentaires, QString& Echelle) {
            ecris(*j, QStringLiteral("DemandeImpressionCarte"),
                  {arg(QStringLiteral("CheminCarte"), CheminCarte),
                   arg(QStringLiteral("Titre"), Titre),
                   arg(QStringLiteral("Commentaires"), Commentaires),
                   arg(QStringLiteral("Echelle"), Echelle)});
        });
    QObject::connect(&plan, &Veldra::InfoTombes, j, [j](QString& IdTombe) {
        ecris(*j, QStringLiteral("InfoTombes"), {arg(QStringLiteral("IdTombe"), IdTombe)});
    });
    QObject::connect(&plan, &Veldra::Change, j, [j] { ecris(*j, QStringLiteral("Change"), {}); });
}

void brancheDetails(QPlainTextEdit& journal, QTableView& table, QPlainTextEdit& texte) {
    auto* modele = new QStandardItemModel(&table);
    table.setModel(modele);
    const auto montre = [&journal, &table, &texte, modele] {
        modele->clear();
        texte.clear();
        const auto* d = static_cast<const Detail*>(journal.textCursor().block().userData());
        if (!d)
            return;
        QStringList lignes;
        for (const ArgumentEvenement& a : d->arguments)
            lignes << a.nom + QStringLiteral(" = ") + (a.complet.isEmpty() ? a.valeur : a.complet);
        texte.setPlainText(lignes.join(u'\n'));
        if (!d->jeu)
            return;
        RecordsetPtr jeu = d->jeu->clone();
        QStringList colonnes;
        for (const auto& f : jeu->fields())
            colonnes << f.name;
        modele->setHorizontalHeaderLabels(colonnes);
        for (jeu->moveFirst(); !jeu->eof(); jeu->moveNext()) {
            QList<QStandardItem*> rangee;
            for (qsizetype c = 0; c < colonnes.size(); ++c)
                rangee << new QStandardItem(jeu->value(c).toString());
            modele->appendRow(rangee);
        }
        table.resizeColumnsToContents();
    };
    QObject::connect(&journal, &QPlainTextEdit::cursorPositionChanged, &table, montre);
}

} // namespace veldra::demo
