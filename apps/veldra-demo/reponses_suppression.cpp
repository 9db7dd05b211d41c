#include "reponses_suppression.h"

#include "control/veldra.h"
#include "registre.h"

#include <QPlainTextEdit>
#include <QTime>

namespace veldra::demo {

namespace {

void note(QPlainTextEdit& journal, const QString& texte) {
    journal.appendPlainText(QTime::currentTime().toString(QStringLiteral("HH:mm:ss")) +
                            QStringLiteral("  [registre] ") + texte);
}

QStringList entreesDe(const QString& liste) {
    return liste.split(u'*', Qt::SkipEmptyParts);
}

void repond(Veldra& plan, QPlainTextEdit& journal, bool oui, const QString& message) {
    QString m = message;
    plan.ConfirmSupp(oui, m);
    note(journal, oui ? QStringLiteral("suppression confirmée")
                      : QStringLiteral("suppression refusée : ") + message);
}

} // namespace

QString questionSuppression(const QString& quoi, const QStringList& entrees) {
    return QStringLiteral("Supprimer %1 du plan : %2 ?")
        .arg(quoi, entrees.join(QStringLiteral(", ")));
}

QString refusTerrains(const Registre& registre, const QStringList& ids) {
    QStringList occupes;
    for (const QString& id : ids) {
        bool ok = false;
        const int cle = id.toInt(&ok);
        if (!ok || cle == 0)
            continue;
        if (const auto numero = registre.numeroConcession(cle))
            occupes << QStringLiteral("n° %1").arg(*numero);
    }
    if (occupes.isEmpty())
        return {};
    return QStringLiteral("Suppression impossible : l'emplacement porte une concession du "
                          "registre (%1). Libérez d'abord la concession.")
        .arg(occupes.join(QStringLiteral(", ")));
}

void brancheSuppressions(Veldra& plan, Registre& registre, QPlainTextEdit& journal, QObject& lien,
                         Confirmation confirme) {
    Veldra* p = &plan;
    Registre* r = &registre;
    QPlainTextEdit* j = &journal;
    const auto demande = [p, j, confirme](const QString& quoi, const QStringList& entrees) {
        const bool oui = confirme(questionSuppression(quoi, entrees));
        repond(*p, *j, oui, oui ? QString() : QStringLiteral("Rien n'a été supprimé."));
    };
    QObject::connect(&plan, &Veldra::SuppressionSection, &lien, [demande](QString& liste) {
        demande(QStringLiteral("la ou les sections"), entreesDe(liste));
    });
    QObject::connect(&plan, &Veldra::SuppressionAllee, &lien, [demande](QString& liste) {
        QStringList allees;
        for (const QString& e : entreesDe(liste)) {
            const QStringList morceaux = e.split(QStringLiteral("/Allée/"));
            allees << (morceaux.size() == 2
                           ? QStringLiteral("%1 (section %2)").arg(morceaux[0], morceaux[1])
                           : e);
        }
        demande(QStringLiteral("la ou les allées"), allees);
    });
    QObject::connect(&plan, &Veldra::SuppressionTerrain, &lien, [p, r, j, demande](QString& liste) {
        const QStringList ids = entreesDe(liste);
        const QString refus = refusTerrains(*r, ids);
        if (!refus.isEmpty())
            return repond(*p, *j, false, refus);
        QStringList noms;
        for (const QString& id : ids)
            noms << (id.isEmpty() || id == QLatin1String("0") ? QStringLiteral("sans concession")
                                                              : id);
        demande(QStringLiteral("le ou les emplacements"), noms);
    });
}

} // namespace veldra::demo
