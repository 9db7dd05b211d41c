#include "journal_evenements.h"

#include "control/veldra.h"
#include "format_evenement.h"

#include <QPlainTextEdit>

namespace veldra::demo {

namespace {

void ecris(QPlainTextEdit& journal, const QString& evenement,
           std::initializer_list<ArgumentEvenement> arguments) {
    journal.appendPlainText(ligneJournal(QTime::currentTime(), evenement, arguments));
}

} // namespace

void brancheJournal(Veldra& plan, QPlainTextEdit& journal) {
    QPlainTextEdit* const j = &journal;
    QObject::connect(&plan, &Veldra::FicheTombe, j, [j](QString& NumTombe) {
        ecris(*j, QStringLiteral("FicheTombe"),
              {{QStringLiteral("NumTombe"), texteValeur(NumTombe)}});
    });
    QObject::connect(&plan, &Veldra::ChargeTheme, j, [j](QString& Libelle, QString& Code) {
        ecris(*j, QStringLiteral("ChargeTheme"),
              {{QStringLiteral("Libelle"), texteValeur(Libelle)},
               {QStringLiteral("Code"), texteValeur(Code)}});
    });
    QObject::connect(&plan, &Veldra::Synchro, j, [j](RecordsetPtr& Rs, QString& TypeSynchro) {
        ecris(*j, QStringLiteral("Synchro"),
              {{QStringLiteral("Rs"), texteValeur(Rs)},
               {QStringLiteral("TypeSynchro"), texteValeur(TypeSynchro)}});
    });
    QObject::connect(&plan, &Veldra::AffecterUneConcession, j, [j](QString& IdTerrain) {
        ecris(*j, QStringLiteral("AffecterUneConcession"),
              {{QStringLiteral("IdTerrain"), texteValeur(IdTerrain)}});
    });
    QObject::connect(&plan, &Veldra::CreationDuneSection, j, [j](QString& NomSection) {
        ecris(*j, QStringLiteral("CreationDuneSection"),
              {{QStringLiteral("NomSection"), texteValeur(NomSection)}});
    });
    QObject::connect(&plan, &Veldra::CreationDuneAllee, j,
                     [j](QString& NomAllee, QVariant& NomSection) {
                         ecris(*j, QStringLiteral("CreationDuneAllee"),
                               {{QStringLiteral("NomAllee"), texteValeur(NomAllee)},
                                {QStringLiteral("NomSection"), texteValeur(NomSection)}});
                     });
    QObject::connect(&plan, &Veldra::CreationDunTerrain, j, [j](QString& IdTerrain) {
        ecris(*j, QStringLiteral("CreationDunTerrain"),
              {{QStringLiteral("IdTerrain"), texteValeur(IdTerrain)}});
    });
    QObject::connect(&plan, &Veldra::SuppressionSection, j, [j](QString& NomSection) {
        ecris(*j, QStringLiteral("SuppressionSection"),
              {{QStringLiteral("NomSection"), texteValeur(NomSection)}});
    });
    QObject::connect(&plan, &Veldra::SuppressionAllee, j, [j](QString& NomAllee) {
        ecris(*j, QStringLiteral("SuppressionAllee"),
              {{QStringLiteral("NomAllee"), texteValeur(NomAllee)}});
    });
    QObject::connect(&plan, &Veldra::SuppressionTerrain, j, [j](QString& IdTerrain) {
        ecris(*j, QStringLiteral("SuppressionTerrain"),
              {{QStringLiteral("IdTerrain"), texteValeur(IdTerrain)}});
    });
    QObject::connect(
        &plan, &Veldra::DemandeImpressionCarte, j,
        [j](QString& CheminCarte, QString& Titre, QString& Commentaires, QString& Echelle) {
            ecris(*j, QStringLiteral("DemandeImpressionCarte"),
                  {{QStringLiteral("CheminCarte"), texteValeur(CheminCarte)},
                   {QStringLiteral("Titre"), texteValeur(Titre)},
                   {QStringLiteral("Commentaires"), texteValeur(Commentaires)},
                   {QStringLiteral("Echelle"), texteValeur(Echelle)}});
        });
    QObject::connect(&plan, &Veldra::InfoTombes, j, [j](QString& IdTombe) {
        ecris(*j, QStringLiteral("InfoTombes"),
              {{QStringLiteral("IdTombe"), texteValeur(IdTombe)}});
    });
    QObject::connect(&plan, &Veldra::Change, j, [j] { ecris(*j, QStringLiteral("Change"), {}); });
}

} // namespace veldra::demo
