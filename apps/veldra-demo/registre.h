#pragma once
// The host's register of concessions, in SQLite: each concession with its key (IDGCF),
// its number, its place (section, alley, plot number), its holders, right holders and
// buried persons. It is generated once from the plan's plots and their keys, so plan and
// register agree from the start; plots without a key have no concession and a few
// concessions have no plot, as in real registers.

#include "recordset/recordset.h"

#include <QSet>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <optional>
#include <utility>
#include <vector>

namespace veldra::demo {

// A theme the register offers: one value per concession, the legend's texts for the
// values ("valeur*libellé@"), and its title.
struct ThemeRegistre {
    QString titre;
    QString sParam;
    std::vector<std::pair<int, int>> valeurs; // idgcf, value
};

// A concession no plot of the plan bears yet.
struct ConcessionLibre {
    int idgcf = 0;
    QString numero;
    QString titulaire; // the first holder, "Prénom Famille"
};

struct Personnes {
    QStringList titulaires;
    QStringList ayantsDroit;
    QStringList defunts;
};

class Registre {
public:
    // Opens (and creates the tables of) the register file. Erreur when it cannot be opened.
    explicit Registre(const QString& fichier);
    ~Registre();
    Registre(const Registre&) = delete;
    Registre& operator=(const Registre&) = delete;

    int nombreConcessions() const;
    // Fills an empty register from a collection of the whole plan (GetInfo "C"): one
    // concession per plot key, held by the plot's family (Nom) when it has one; `enTrop`
    // more concessions, with keys above the plan's, get a place no plot has.
    void genere(recordset::Recordset& collecte, int enTrop = 4);

    // The concession at a place, by section, alley and plot number.
    std::optional<int> concession(const QString& section, const QString& allee,
                                  const QString& numero) const;
    // Writes each record's IdGCF and Nom (the first holder's family name) from the register;
    // records of plots without a concession get IdGCF 0 and an empty Nom. The number of
    // records matched.
    int associe(recordset::Recordset& collecte) const;

    // The themes the host offers the control, by code: "TYPE" (type of concession),
    // "ECHEANCE" (decade of expiry; 0 for a perpetual one) and "ECHUES" (expired, current,
    // perpetual) as of `annee`. Nothing for an unknown code.
    static QList<std::pair<QString, QString>> themes();
    std::optional<ThemeRegistre> theme(const QString& code, int annee) const;

    Personnes personnes(int idgcf) const;
    // The concessions whose key is not among `prises` (the keys the plan's plots bear), in
    // the order of their numbers.
    std::vector<ConcessionLibre> concessionsLibres(const QSet<int>& prises) const;
    // The concession now lies at that place.
    void placeConcession(int idgcf, const QString& section, const QString& allee,
                         const QString& numero);
    // The number of the concession of that key, when the register holds one.
    std::optional<QString> numeroConcession(int idgcf) const;
    // The concession's people as the control's quick information panel takes them: holders
    // (type "T") and right holders (type "A") with nom, prenom and type; buried persons
    // with nom and prenom. Empty record sets for a key the register does not hold.
    RecordsetPtr concessionnaires(int idgcf) const;
    RecordsetPtr inhumes(int idgcf) const;
    // The family name of each concession's first holder, by key ("IDGCF N,Titulaire
    // C(64)"): what the plan's plots are labelled with.
    RecordsetPtr etiquettesTitulaires() const;
    // One line per concession: its number, place and holders.
    QStringList fiches(const QList<int>& ids) const;

    QSqlDatabase base() const;

private:
    void creeTables();
    QString connexion_;
};

} // namespace veldra::demo
