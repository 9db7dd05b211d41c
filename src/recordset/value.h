#pragma once
// Column types of a record set and the coercions between values, following the rules of
// the platform's variants: numbers round half to even into integers, True is -1, text is
// read as a number with the user's decimal separator or with ".", and Null stays Null in
// a column but is refused where a value is required.
//
// Values travel as QVariant: an invalid (default) QVariant is Null; otherwise it holds
// bool, QDateTime, QString, qint16 or double according to the column's type.

#include <QDateTime>
#include <QString>
#include <QVariant>

namespace recordset {

// The codes of the platform's record sets, so a host sees the type it expects.
enum class DataType : int {
    SmallInt = 2,   // 16-bit signed integer
    Double = 5,     // double-precision floating point
    Date = 7,       // date and time
    Boolean = 11,   // true or false
    VarWChar = 202, // Unicode text of a defined size
};

QString typeName(DataType type);

// Coercions; each throws veldra::Erreur (TypeIncompatible, Depassement, NullIncorrect).
// A Null input gives Null from toColumn() and NullIncorrect from the typed readers.
QVariant toColumn(const QVariant& value, DataType type);
// Whether a value is Null: invalid, typed but made without a value (a database's NULL),
// or a null pointer.
bool isNullValue(const QVariant& value);
qint16 toInt16(const QVariant& value);
qint16 toInt16(double number);
double toDouble(const QVariant& value);
bool toBool(const QVariant& value);
QString toText(const QVariant& value);
QDateTime toDate(const QVariant& value);

// Reads a number from the start of a text as the platform's Val does: blanks are skipped,
// reading stops at the first character that cannot continue the number; 0 when none.
double leadingNumber(QStringView text);

} // namespace recordset
