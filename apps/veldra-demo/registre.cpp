#include "registre.h"

#include "base/erreur.h"
#include "recordset/field_spec.h"

#include <QHash>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>
#include <algorithm>

namespace veldra::demo {

namespace {

const char* const kNoms[] = {"Martin",  "Bernard",  "Dubois",   "Thomas",  "Robert",
                             "Richard", "Petit",    "Durand",   "Leroy",   "Moreau",
                             "Simon",   "Laurent",  "Lefebvre", "Michel",  "Garcia",
                             "David",   "Bertrand", "Roux",     "Vincent", "Fournier"};
const char* const kPrenoms[] = {"Jean",  "Marie",   "Pierre", "Jeanne",    "Louis",
                                "Anne",  "Henri",   "Louise", "Joseph",    "Marguerite",
                                "André", "Suzanne", "Paul",   "Madeleine", "René"};

void execute(QSqlQuery& q) {
    if (!q.exec())
        throw Erreur(err::EcritureImpossible,
                     QStringLiteral("Registre : %1").arg(q.lastError().text()));
}

QString nomDe(int i) {
    return QString::fromUtf8(kNoms[i % int(std::size(kNoms))]);
}

// A first name, a space, then the family name: the part after the first space is what a
// plot shows.
QString personne(int i, int j, const QString& famille) {
    return QString::fromUtf8(kPrenoms[(i * 7 + j * 3) % int(std::size(kPrenoms))]) + u' ' + famille;
}

// Section, alley and plot number as one key; the separator cannot appear in any of them.
QString cleLieu(const QString& section, const QString& allee, const QString& numero) {
    return section + QChar(0x1F) + allee + QChar(0x1F) + numero;
}

} // namespace

Registre::Registre(const QString& fichier)
    : connexion_(QStringLiteral("registre-") + QUuid::createUuid().toString(QUuid::WithoutBraces)) {
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connexion_);
    db.setDatabaseName(fichier);
    if (!db.open())
        throw Erreur(err::AccesRefuse, QStringLiteral("Le registre « %1 » ne s'ouvre pas : %2")
                                           .arg(fichier, db.lastError().text()));
    creeTables();
}

Registre::~Registre() {
    {
        QSqlDatabase db = QSqlDatabase::database(connexion_, false);
        db.close();
    }
    QSqlDatabase::removeDatabase(connexion_);
}

QSqlDatabase Registre::base() const {
    return QSqlDatabase::database(connexion_, false);
}

void Registre::creeTables() {
    QSqlQuery q(base());
    for (const char* sql :
         {"CREATE TABLE IF NOT EXISTS concessions (idgcf INTEGER PRIMARY KEY, numero TEXT, "
          "section TEXT, allee TEXT, emplacement TEXT, type TEXT, debut TEXT, duree INTEGER)",
          "CREATE INDEX IF NOT EXISTS concessions_lieu ON concessions(section, allee, emplacement)",
          "CREATE TABLE IF NOT EXISTS titulaires (idgcf INTEGER, nom TEXT)",
          "CREATE TABLE IF NOT EXISTS ayants_droit (idgcf INTEGER, nom TEXT, lien TEXT)",
          "CREATE TABLE IF NOT EXISTS defunts (idgcf INTEGER, nom TEXT, deces TEXT)",
          "CREATE INDEX IF NOT EXISTS titulaires_idgcf ON titulaires(idgcf)",
          "CREATE INDEX IF NOT EXISTS ayants_droit_idgcf ON ayants_droit(idgcf)",
          "CREATE INDEX IF NOT EXISTS defunts_idgcf ON defunts(idgcf)"}) {
        q.prepare(QString::fromUtf8(sql));
        execute(q);
    }
}

int Registre::nombreConcessions() const {
    QSqlQuery q(base());
    q.prepare(QStringLiteral("SELECT count(*) FROM concessions"));
    execute(q);
    return q.next() ? q.value(0).toInt() : 0;
}

void Registre::genere(recordset::Recordset& collecte, int enTrop) {
    QSqlDatabase db = base();
    db.transaction();
    try {
        QSqlQuery c(db), t(db), a(db), d(db);
        c.prepare(QStringLiteral("INSERT INTO concessions VALUES (?, ?, ?, ?, ?, ?, ?, ?)"));
        t.prepare(QStringLiteral("INSERT INTO titulaires VALUES (?, ?)"));
        a.prepare(QStringLiteral("INSERT INTO ayants_droit VALUES (?, ?, ?)"));
        d.prepare(QStringLiteral("INSERT INTO defunts VALUES (?, ?, ?)"));
        auto ajoute = [&](int id, const QString& section, const QString& allee,
                          const QString& numero, QString famille) {
            if (famille.isEmpty())
                famille = nomDe(id);
            const bool perpetuelle = id % 5 == 0;
            c.addBindValue(id);
            c.addBindValue(QStringLiteral("C-%1").arg(id, 5, 10, QLatin1Char('0')));
            c.addBindValue(section);
            c.addBindValue(allee);
            c.addBindValue(numero);
            c.addBindValue(perpetuelle ? QStringLiteral("Perpétuelle")
                                       : QStringLiteral("Trentenaire"));
            c.addBindValue(QStringLiteral("%1-0%2-15").arg(1950 + id % 70).arg(1 + id % 9));
            c.addBindValue(perpetuelle ? 0 : 30);
            execute(c);
            t.addBindValue(id);
            t.addBindValue(personne(id, 0, famille));
            execute(t);
            a.addBindValue(id);
            a.addBindValue(personne(id, 1, famille));
            a.addBindValue(id % 2 ? QStringLiteral("enfant") : QStringLiteral("conjoint"));
            execute(a);
            for (int k = 0; k < 1 + id % 3; ++k) {
                d.addBindValue(id);
                d.addBindValue(personne(id, k + 2, famille));
                d.addBindValue(QStringLiteral("%1").arg(1960 + (id * 3 + k * 11) % 60));
                execute(d);
            }
        };
        // The plan's keys are the register's: a plot leads to its own concession from the
        // start. A key met twice is one concession, at its first place.
        QSet<int> connues;
        int plusGrande = 0;
        for (collecte.moveFirst(); !collecte.eof(); collecte.moveNext()) {
            const int id = collecte.value(u"IdGCF").toInt();
            if (id <= 0 || connues.contains(id))
                continue; // a plot nobody holds yet
            connues.insert(id);
            plusGrande = std::max(plusGrande, id);
            ajoute(id, collecte.value(u"Section").toString(), collecte.value(u"Allee").toString(),
                   collecte.value(u"Num").toString(), collecte.value(u"Nom").toString());
        }
        for (int k = 0; k < enTrop; ++k)
            ajoute(plusGrande + k + 1, QStringLiteral("Ancien cimetière"), QString(),
                   QString::number(k + 1), QString());
        db.commit();
    } catch (...) {
        db.rollback();
        throw;
    }
}

std::optional<int> Registre::concession(const QString& section, const QString& allee,
                                        const QString& numero) const {
    QSqlQuery q(base());
    q.prepare(QStringLiteral(
        "SELECT idgcf FROM concessions WHERE section = ? AND allee = ? AND emplacement = ?"));
    q.addBindValue(section);
    q.addBindValue(allee);
    q.addBindValue(numero);
    execute(q);
    if (!q.next())
        return std::nullopt;
    return q.value(0).toInt();
}

int Registre::associe(recordset::Recordset& collecte) const {
    // One read of the register, then lookups in memory: a query per plot would cost
    // seconds on a large cemetery.
    struct Fiche {
        int idgcf = 0;
        QString nom;
    };
    QHash<QString, Fiche> parLieu;
    {
        QSqlQuery q(base());
        q.setForwardOnly(true);
        q.prepare(QStringLiteral(
            "SELECT c.section, c.allee, c.emplacement, c.idgcf, "
            "(SELECT nom FROM titulaires t WHERE t.idgcf = c.idgcf ORDER BY rowid LIMIT 1) "
            "FROM concessions c ORDER BY c.idgcf DESC"));
        execute(q);
        while (q.next())
            parLieu.insert(
                cleLieu(q.value(0).toString(), q.value(1).toString(), q.value(2).toString()),
                {q.value(3).toInt(), q.value(4).toString().section(u' ', 1)});
    }
    int trouves = 0;
    for (collecte.moveFirst(); !collecte.eof(); collecte.moveNext()) {
        const auto fiche = parLieu.constFind(cleLieu(collecte.value(u"Section").toString(),
                                                     collecte.value(u"Allee").toString(),
                                                     collecte.value(u"Num").toString()));
        const bool connue = fiche != parLieu.cend();
        trouves += connue ? 1 : 0;
        collecte.setValue(u"IdGCF", connue ? fiche->idgcf : 0);
        collecte.setValue(u"Nom", connue ? fiche->nom.left(32) : QString());
        collecte.update();
    }
    return trouves;
}

QList<std::pair<QString, QString>> Registre::themes() {
    return {{QStringLiteral("Type de concession"), QStringLiteral("TYPE")},
            {QStringLiteral("Année d'échéance"), QStringLiteral("ECHEANCE")},
            {QStringLiteral("Concessions échues"), QStringLiteral("ECHUES")}};
}

std::optional<ThemeRegistre> Registre::theme(const QString& code, int annee) const {
    ThemeRegistre t;
    if (code == QLatin1String("TYPE")) {
        t.titre = QStringLiteral("Type de concession");
        t.sParam = QStringLiteral("1*Perpétuelle@2*Trentenaire@");
    } else if (code == QLatin1String("ECHEANCE")) {
        t.titre = QStringLiteral("Année d'échéance");
    } else if (code == QLatin1String("ECHUES")) {
        t.titre = QStringLiteral("Concessions échues");
        t.sParam = QStringLiteral("1*Échue@2*En cours@3*Perpétuelle@");
    } else {
        return std::nullopt;
    }
    QSqlQuery q(base());
    q.setForwardOnly(true);
    q.prepare(QStringLiteral("SELECT idgcf, duree, CAST(substr(debut, 1, 4) AS INTEGER) "
                             "FROM concessions ORDER BY idgcf"));
    execute(q);
    QSet<int> decennies;
    while (q.next()) {
        const int id = q.value(0).toInt(), duree = q.value(1).toInt();
        const int echeance = duree > 0 ? q.value(2).toInt() + duree : 0;
        int valeur = 0;
        if (code == QLatin1String("TYPE")) {
            valeur = duree > 0 ? 2 : 1;
        } else if (code == QLatin1String("ECHEANCE")) {
            valeur = echeance > 0 ? echeance / 10 * 10 : 0;
            if (valeur > 0)
                decennies.insert(valeur);
        } else {
            valeur = duree == 0 ? 3 : (echeance < annee ? 1 : 2);
        }
        t.valeurs.emplace_back(id, valeur);
    }
    QList<int> triees(decennies.begin(), decennies.end());
    std::sort(triees.begin(), triees.end());
    for (const int d : triees)
        t.sParam += QStringLiteral("%1*%1 à %2@").arg(d).arg(d + 9);
    return t;
}

Personnes Registre::personnes(int idgcf) const {
    Personnes p;
    const std::pair<const char*, QStringList*> tables[] = {
        {"SELECT nom FROM titulaires WHERE idgcf = ?", &p.titulaires},
        {"SELECT nom || ' (' || lien || ')' FROM ayants_droit WHERE idgcf = ?", &p.ayantsDroit},
        {"SELECT nom || ' †' || deces FROM defunts WHERE idgcf = ?", &p.defunts}};
    for (const auto& [sql, liste] : tables) {
        QSqlQuery q(base());
        q.prepare(QString::fromUtf8(sql));
        q.addBindValue(idgcf);
        execute(q);
        while (q.next())
            *liste << q.value(0).toString();
    }
    return p;
}

std::vector<ConcessionLibre> Registre::concessionsLibres(const QSet<int>& prises) const {
    std::vector<ConcessionLibre> libres;
    QSqlQuery q(base());
    q.setForwardOnly(true);
    q.prepare(QStringLiteral(
        "SELECT c.idgcf, c.numero, "
        "(SELECT nom FROM titulaires t WHERE t.idgcf = c.idgcf ORDER BY rowid LIMIT 1) "
        "FROM concessions c ORDER BY c.numero"));
    execute(q);
    while (q.next())
        if (!prises.contains(q.value(0).toInt()))
            libres.push_back({q.value(0).toInt(), q.value(1).toString(), q.value(2).toString()});
    return libres;
}

void Registre::placeConcession(int idgcf, const QString& section, const QString& allee,
                               const QString& numero) {
    QSqlQuery q(base());
    q.prepare(QStringLiteral(
        "UPDATE concessions SET section = ?, allee = ?, emplacement = ? WHERE idgcf = ?"));
    q.addBindValue(section);
    q.addBindValue(allee);
    q.addBindValue(numero);
    q.addBindValue(idgcf);
    execute(q);
}

std::optional<QString> Registre::numeroConcession(int idgcf) const {
    QSqlQuery q(base());
    q.prepare(QStringLiteral("SELECT numero FROM concessions WHERE idgcf = ?"));
    q.addBindValue(idgcf);
    execute(q);
    if (!q.next())
        return std::nullopt;
    return q.value(0).toString();
}

namespace {

// "Prénom Famille" as the register keeps a person: the first word is the first name.
void ajoutePersonne(recordset::Recordset& rs, const QString& personne, const char* type) {
    rs.addNew();
    const qsizetype blanc = personne.indexOf(u' ');
    rs.setValue(u"nom", blanc < 0 ? personne : personne.mid(blanc + 1));
    rs.setValue(u"prenom", blanc < 0 ? QVariant() : QVariant(personne.left(blanc)));
    if (type)
        rs.setValue(u"type", QString::fromLatin1(type));
    rs.update();
}

} // namespace

RecordsetPtr Registre::concessionnaires(int idgcf) const {
    RecordsetPtr rs = recordset::fromFieldSpec(u"nom C(64),prenom C(64),type C(1)");
    const std::pair<const char*, const char*> tables[] = {
        {"SELECT nom FROM titulaires WHERE idgcf = ? ORDER BY rowid", "T"},
        {"SELECT nom FROM ayants_droit WHERE idgcf = ? ORDER BY rowid", "A"}};
    for (const auto& [sql, type] : tables) {
        QSqlQuery q(base());
        q.prepare(QString::fromUtf8(sql));
        q.addBindValue(idgcf);
        execute(q);
        while (q.next())
            ajoutePersonne(*rs, q.value(0).toString(), type);
    }
    if (rs->recordCount() > 0)
        rs->moveFirst();
    return rs;
}

RecordsetPtr Registre::inhumes(int idgcf) const {
    RecordsetPtr rs = recordset::fromFieldSpec(u"nom C(64),prenom C(64)");
    QSqlQuery q(base());
    q.prepare(QStringLiteral("SELECT nom FROM defunts WHERE idgcf = ? ORDER BY rowid"));
    q.addBindValue(idgcf);
    execute(q);
    while (q.next())
        ajoutePersonne(*rs, q.value(0).toString(), nullptr);
    if (rs->recordCount() > 0)
        rs->moveFirst();
    return rs;
}

RecordsetPtr Registre::etiquettesTitulaires() const {
    RecordsetPtr rs = recordset::fromFieldSpec(u"IDGCF N,Titulaire C(64)");
    QSqlQuery q(base());
    q.prepare(QStringLiteral("SELECT idgcf, nom FROM titulaires ORDER BY idgcf, rowid"));
    execute(q);
    int precedent = 0;
    while (q.next()) {
        const int id = q.value(0).toInt();
        if (id == precedent)
            continue; // the first holder names the plot
        precedent = id;
        const QString personne = q.value(1).toString();
        const qsizetype blanc = personne.indexOf(u' ');
        rs->addNew();
        rs->setValue(qsizetype(0), id);
        rs->setValue(qsizetype(1), blanc < 0 ? personne : personne.mid(blanc + 1));
        rs->update();
    }
    if (rs->recordCount() > 0)
        rs->moveFirst();
    return rs;
}

QStringList Registre::fiches(const QList<int>& ids) const {
    QStringList out;
    QSqlQuery q(base());
    q.prepare(QStringLiteral("SELECT numero, section, allee, emplacement, type, debut, duree "
                             "FROM concessions WHERE idgcf = ?"));
    for (const int id : ids) {
        q.addBindValue(id);
        execute(q);
        if (!q.next()) {
            out << QStringLiteral("%1 : aucune concession au registre").arg(id);
            continue;
        }
        const Personnes p = personnes(id);
        out << QStringLiteral("%1 — section %2, %3, emplacement %4 — %5 depuis le %6 — "
                              "titulaire : %7 — défunts : %8")
                   .arg(q.value(0).toString(), q.value(1).toString(), q.value(2).toString(),
                        q.value(3).toString(), q.value(4).toString(), q.value(5).toString(),
                        p.titulaires.join(QStringLiteral(", ")),
                        p.defunts.join(QStringLiteral(", ")));
    }
    return out;
}

} // namespace veldra::demo
