#pragma once
// How the event log writes an event: "hh:mm:ss  Nom(Arg="texte", Arg2=12)", always on one
// line, so that a multi-line comment or a long path cannot break the log's layout.

#include "recordset/recordset.h"

#include <QString>
#include <QTime>
#include <QVariant>
#include <initializer_list>

namespace veldra::demo {

struct ArgumentEvenement {
    QString nom;
    QString valeur;  // already formatted by one of the texteValeur functions
    QString complet; // the whole text, for the event's details; empty when valeur says all
};

// Text between double quotes; quotes are doubled, line breaks and tabs written as \n, \r
// and \t, and a text longer than `longueurMax` characters is cut with "…".
QString texteValeur(const QString& texte, qsizetype longueurMax = 120);
// A Variant: "(vide)" when it holds nothing, text quoted, numbers and booleans as such.
QString texteValeur(const QVariant& valeur);
// A record set: "(aucun)", "(fermé)" or the number of records.
QString texteValeur(const RecordsetPtr& rs);

QString ligneJournal(QTime heure, const QString& evenement,
                     std::initializer_list<ArgumentEvenement> arguments);

} // namespace veldra::demo
