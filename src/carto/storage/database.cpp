#include "carto/storage/database.h"

#include <QRegularExpression>

namespace carto::database {

bool isPostgres(const QString& source) {
    return source.startsWith(QLatin1String("PG:"), Qt::CaseInsensitive) ||
           source.startsWith(QLatin1String("postgresql://"), Qt::CaseInsensitive);
}

QString shownSource(const QString& source) {
    static const QRegularExpression keyword(QStringLiteral(R"((password\s*=\s*)('[^']*'|\S+))"),
                                            QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression uri(QStringLiteral(R"((postgresql://[^:/@]+:)[^@]*@)"),
                                        QRegularExpression::CaseInsensitiveOption);
    QString shown = source;
    shown.replace(keyword, QStringLiteral("\\1***"));
    shown.replace(uri, QStringLiteral("\\1***@"));
    return shown;
}

QString connectionFailure(const QString& why) {
    const auto has = [&](const char* text) {
        return why.contains(QLatin1String(text), Qt::CaseInsensitive);
    };
    if (has("password authentication failed") || has("no password supplied") ||
        has("authentication failed"))
        return QStringLiteral("le serveur a refusé l'utilisateur ou son mot de passe");
    if (has("does not exist") && has("database"))
        return QStringLiteral("cette base de données n'existe pas sur le serveur");
    if (has("role") && has("does not exist"))
        return QStringLiteral("cet utilisateur n'existe pas sur le serveur");
    if (has("could not connect") || has("Connection refused") || has("No such file") ||
        has("could not translate host name") || has("timeout expired") ||
        has("connection to server"))
        return QStringLiteral("le serveur de base de données ne répond pas à cette adresse");
    return why.isEmpty() ? QStringLiteral("la connexion à la base de données a échoué")
                         : QStringLiteral("la connexion à la base de données a échoué (%1)")
                               .arg(why.trimmed());
}

Failure classify(const QString& why) {
    const auto has = [&](const char* text) {
        return why.contains(QLatin1String(text), Qt::CaseInsensitive);
    };
    if (has(kVanished))
        return Failure::Vanished;
    if (has("lock timeout") || has("deadlock detected") || has("could not serialize") ||
        has("could not obtain lock"))
        return Failure::Busy;
    if (has("server closed the connection") || has("no connection to the server") ||
        has("terminating connection") || has("connection to server") ||
        has("could not receive data") || has("could not send data") || has("SSL SYSCALL") ||
        has("connection not open"))
        return Failure::ConnectionLost;
    if (has("does not match column type") || has("Geometry type ("))
        return Failure::WrongGeometryType;
    return Failure::Other;
}

QString quotedName(const QString& name) {
    const auto one = [](QString part) {
        return u'"' + part.replace(u'"', QStringLiteral("\"\"")) + u'"';
    };
    const qsizetype dot = name.indexOf(u'.');
    if (dot <= 0)
        return one(name);
    return one(name.left(dot)) + u'.' + one(name.mid(dot + 1));
}

QString quotedText(const QByteArray& utf8) {
    QString text = QString::fromUtf8(utf8);
    return u'\'' + text.replace(u'\'', QStringLiteral("''")) + u'\'';
}

} // namespace carto::database
