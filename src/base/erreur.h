#pragma once
// The one error type of the engine, the record sets and the control. Handlers that report
// it show the number, " :" and the description; automation callers receive both.

#include <QString>
#include <exception>
#include <string>

namespace veldra {

// Error numbers. The first group keeps the numbers a host already knows from the record
// sets and the runtime of the platform the control was designed for; the second group
// (from 20000) belongs to the map engine.
namespace err {
inline constexpr qint32 AppelIncorrect = 5;         // invalid procedure call or argument
inline constexpr qint32 Depassement = 6;            // overflow (16-bit column, pause)
inline constexpr qint32 MemoireInsuffisante = 7;    // out of memory
inline constexpr qint32 TypeIncompatible = 13;      // value cannot become the column's type
inline constexpr qint32 ErreurInterne = 51;         // an unexpected failure
inline constexpr qint32 AccesRefuse = 70;           // file cannot be opened
inline constexpr qint32 NullIncorrect = 94;         // Null where a value is required
inline constexpr qint32 ArgumentsIncorrects = 3001; // bad argument (empty name, bad size)
inline constexpr qint32 PasDEnregistrement = 3021;  // BOF or EOF: no current record
inline constexpr qint32 ChampInconnu = 3265;        // no column of that name
inline constexpr qint32 ChampEnDouble = 3367;       // column name given twice
inline constexpr qint32 ObjetFerme = 3704;          // record set is closed
inline constexpr qint32 ObjetOuvert = 3705;         // record set is already open
inline constexpr qint32 TexteTropLong = 3163;       // text longer than its column

// Geometry
inline constexpr qint32 GeometrieInvalide = 20001; // NaN or infinity, short ring, empty input
inline constexpr qint32 Geos = 20002;              // GEOS failed; its message follows

// Map engine
inline constexpr qint32 PlanIllisible = 20010;       // a map set that cannot be opened or read
inline constexpr qint32 CoucheInconnue = 20011;      // no layer of that name or position
inline constexpr qint32 ObjetInconnu = 20012;        // no feature of that FID or key
inline constexpr qint32 ConditionIncorrecte = 20013; // a condition outside the grammar
inline constexpr qint32 EcritureImpossible = 20014;  // storage refused a write
inline constexpr qint32 AccesIncorrect = 20015;      // unbalanced or bad access bracket
inline constexpr qint32 ObjetIncompatible = 20016;   // a feature of another layer or kind
inline constexpr qint32 JeuDeDonneesInconnu = 20017; // no dataset or theme of that name
inline constexpr qint32 PlanOccupe = 20018;          // another program holds the plan's lock
// Map views
inline constexpr qint32 OutilInconnu = 20020;   // no tool of that number, or a bad setting
inline constexpr qint32 ImageIllisible = 20021; // a cursor or image file that cannot be read
inline constexpr qint32 FormatInconnu = 20022;  // an export format code that is not known
} // namespace err

class Erreur : public std::exception {
public:
    Erreur(qint32 numero, QString description)
        : numero_(numero), description_(std::move(description)), what_(description_.toStdString()) {
    }

    qint32 numero() const noexcept { return numero_; }
    const QString& description() const noexcept { return description_; }
    // "12 : texte", the form message boxes show.
    QString message() const {
        return QString::number(numero_) + QStringLiteral(" : ") + description_;
    }
    const char* what() const noexcept override { return what_.c_str(); }

private:
    qint32 numero_;
    QString description_;
    std::string what_;
};

// The number, the separator (" :", " : " or ":", as each handler writes it) and the
// description: how the control's messages show an error.
inline QString texteErreur(qint32 numero, const QString& description, const QString& separateur) {
    return QString::number(numero) + separateur + description;
}
inline QString texteErreur(const Erreur& e, const QString& separateur) {
    return texteErreur(e.numero(), e.description(), separateur);
}

} // namespace veldra
