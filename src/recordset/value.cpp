#include "value.h"

#include "base/erreur.h"

#include <QLocale>
#include <QTimeZone>
#include <cmath>
#include <limits>

namespace recordset {
namespace {

using veldra::Erreur;
namespace err = veldra::err;

[[noreturn]] void mismatch() {
    throw Erreur(err::TypeIncompatible, QStringLiteral("Incompatibilité de type"));
}

[[noreturn]] void overflow() {
    throw Erreur(err::Depassement, QStringLiteral("Dépassement de capacité"));
}

void refuseNull(const QVariant& value) {
    if (isNullValue(value))
        throw Erreur(err::NullIncorrect, QStringLiteral("Utilisation incorrecte de Null"));
}

// Dates as numbers: days since 30 December 1899, the fraction being the time of day.
const QDateTime& dateOrigin() {
    static const QDateTime origin(QDate(1899, 12, 30), QTime(0, 0), QTimeZone::utc());
    return origin;
}

double dateToNumber(const QDateTime& date) {
    const QDateTime utc(date.date(), date.time(), QTimeZone::utc());
    return static_cast<double>(dateOrigin().msecsTo(utc)) / 86'400'000.0;
}

QDateTime numberToDate(double days) {
    if (!std::isfinite(days) || std::fabs(days) > 3'000'000.0)
        overflow();
    const auto ms = static_cast<qint64>(std::llround(days * 86'400'000.0));
    const QDateTime utc = dateOrigin().addMSecs(ms);
    return QDateTime(utc.date(), utc.time());
}

// A whole text read as a number: the user's locale first, then the C locale; surrounding
// blanks allowed. Anything else is a type mismatch.
double parseNumber(const QString& text) {
    const QString t = text.trimmed();
    if (t.isEmpty())
        mismatch();
    bool ok = false;
    double d = QLocale().toDouble(t, &ok);
    if (!ok)
        d = QLocale::c().toDouble(t, &ok);
    if (!ok || !std::isfinite(d))
        mismatch();
    return d;
}

double numberOf(const QVariant& value) {
    refuseNull(value);
    // The common types read in place, without the conversion machinery.
    switch (value.typeId()) {
    case QMetaType::Double:
        return *static_cast<const double*>(value.constData());
    case QMetaType::Int:
        return *static_cast<const int*>(value.constData());
    case QMetaType::Short:
        return *static_cast<const short*>(value.constData());
    case QMetaType::LongLong:
        return double(*static_cast<const qlonglong*>(value.constData()));
    case QMetaType::Bool:
        return value.toBool() ? -1.0 : 0.0;
    case QMetaType::QString:
        return parseNumber(value.toString());
    case QMetaType::QDateTime:
        return dateToNumber(value.toDateTime());
    case QMetaType::QDate:
        return dateToNumber(value.toDate().startOfDay());
    default:
        break;
    }
    bool ok = false;
    const double d = value.toDouble(&ok);
    if (!ok)
        mismatch();
    return d;
}

} // namespace

QString typeName(DataType type) {
    switch (type) {
    case DataType::SmallInt:
        return QStringLiteral("entier");
    case DataType::Double:
        return QStringLiteral("réel");
    case DataType::Date:
        return QStringLiteral("date");
    case DataType::Boolean:
        return QStringLiteral("booléen");
    case DataType::VarWChar:
        return QStringLiteral("texte");
    }
    return QStringLiteral("inconnu");
}

qint16 toInt16(const QVariant& value) {
    return toInt16(numberOf(value));
}

qint16 toInt16(double d) {
    if (!std::isfinite(d))
        overflow();
    // Half to even, as the platform rounds into integers.
    const double r = std::nearbyint(d);
    if (r < std::numeric_limits<qint16>::min() || r > std::numeric_limits<qint16>::max())
        overflow();
    return static_cast<qint16>(r);
}

double toDouble(const QVariant& value) {
    return numberOf(value);
}

bool toBool(const QVariant& value) {
    refuseNull(value);
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    if (value.typeId() == QMetaType::QString) {
        const QString t = value.toString().trimmed();
        for (const char* yes : {"true", "vrai"})
            if (t.compare(QLatin1String(yes), Qt::CaseInsensitive) == 0)
                return true;
        for (const char* no : {"false", "faux"})
            if (t.compare(QLatin1String(no), Qt::CaseInsensitive) == 0)
                return false;
    }
    return numberOf(value) != 0.0;
}

QString toText(const QVariant& value) {
    refuseNull(value);
    switch (value.typeId()) {
    case QMetaType::QString:
        return value.toString(); // the common case, without asking the type registry

    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::Double:
    case QMetaType::Float:
        return QLocale().toString(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QDate:
        return value.toDate().toString(Qt::ISODate);
    case QMetaType::QDateTime: {
        const QDateTime d = value.toDateTime();
        return d.time() == QTime(0, 0) ? d.date().toString(Qt::ISODate)
                                       : d.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    }
    default:
        break;
    }
    if (!value.canConvert<QString>())
        mismatch();
    return value.toString();
}

QDateTime toDate(const QVariant& value) {
    refuseNull(value);
    switch (value.typeId()) {
    case QMetaType::QDateTime:
        return value.toDateTime();
    case QMetaType::QDate:
        return value.toDate().startOfDay();
    case QMetaType::Bool:
        mismatch();
    case QMetaType::QString: {
        const QString t = value.toString().trimmed();
        for (const QDateTime& d :
             {QDateTime::fromString(t, Qt::ISODate),
              QDateTime(QDate::fromString(t, Qt::ISODate), QTime(0, 0)),
              QLocale().toDateTime(t, QLocale::ShortFormat),
              QDateTime(QLocale().toDate(t, QLocale::ShortFormat), QTime(0, 0))})
            if (d.isValid())
                return d;
        return numberToDate(parseNumber(t));
    }
    default:
        return numberToDate(numberOf(value));
    }
}

bool isNullValue(const QVariant& value) {
    // A typed variant made without a value (a database's NULL) is null too. The plain
    // types hold no pointer, so their null flag says it without a call into the type system.
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return true;
    case QMetaType::Double:
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::LongLong:
    case QMetaType::Bool:
    case QMetaType::QString:
        return value.data_ptr().is_null;
    default:
        return value.isNull();
    }
}

QVariant toColumn(const QVariant& value, DataType type) {
    if (isNullValue(value))
        return {};
    switch (type) {
    case DataType::SmallInt:
        return QVariant::fromValue(toInt16(value));
    case DataType::Double:
        return QVariant(toDouble(value));
    case DataType::Date:
        return QVariant(toDate(value));
    case DataType::Boolean:
        return QVariant(toBool(value));
    case DataType::VarWChar:
        return value.typeId() == QMetaType::QString ? value : QVariant(toText(value));
    }
    mismatch();
}

double leadingNumber(QStringView text) {
    QString digits;
    qsizetype i = 0;
    const auto skipBlanks = [&] {
        while (i < text.size() &&
               (text[i] == u' ' || text[i] == u'\t' || text[i] == u'\n' || text[i] == u'\r'))
            ++i;
    };
    const auto take = [&](auto accept) {
        bool any = false;
        for (skipBlanks(); i < text.size() && accept(text[i]); skipBlanks()) {
            digits += text[i++];
            any = true;
        }
        return any;
    };
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    skipBlanks();
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+'))
        digits += text[i++];
    bool any = take(isDigit);
    if (i < text.size() && text[i] == u'.') {
        digits += text[i++];
        any = take(isDigit) || any;
    }
    if (!any)
        return 0.0;
    if (i < text.size() &&
        (text[i] == u'e' || text[i] == u'E' || text[i] == u'd' || text[i] == u'D')) {
        const qsizetype mark = i;
        QString exponent = QStringLiteral("e");
        ++i;
        skipBlanks();
        if (i < text.size() && (text[i] == u'-' || text[i] == u'+'))
            exponent += text[i++];
        const qsizetype before = exponent.size();
        while (i < text.size() && isDigit(text[i]) && exponent.size() < before + 6)
            exponent += text[i++];
        if (exponent.size() > before)
            digits += exponent;
        else
            i = mark;
    }
    bool ok = false;
    const double d = QLocale::c().toDouble(digits, &ok);
    if (ok)
        return d;
    // Out of range: a huge number keeps its sign, a tiny one is 0.
    if (digits.contains(QLatin1String("e-")))
        return 0.0;
    return digits.startsWith(u'-') ? -HUGE_VAL : HUGE_VAL;
}

} // namespace recordset
