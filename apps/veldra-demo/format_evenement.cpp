#include "format_evenement.h"

#include <QStringList>

namespace veldra::demo {

QString texteValeur(const QString& texte, qsizetype longueurMax) {
    QString corps;
    corps.reserve(texte.size() + 2);
    qsizetype visibles = 0;
    for (const QChar c : texte) {
        if (visibles == longueurMax) {
            corps += QChar(0x2026);
            break;
        }
        switch (c.unicode()) {
        case '"':
            corps += QStringLiteral("\"\"");
            break;
        case '\n':
            corps += QStringLiteral("\\n");
            break;
        case '\r':
            corps += QStringLiteral("\\r");
            break;
        case '\t':
            corps += QStringLiteral("\\t");
            break;
        default:
            corps += c;
        }
        ++visibles;
    }
    return u'"' + corps + u'"';
}

QString texteValeur(const QVariant& valeur) {
    if (!valeur.isValid() || valeur.isNull())
        return QStringLiteral("(vide)");
    switch (valeur.typeId()) {
    case QMetaType::QString:
    case QMetaType::QChar:
    case QMetaType::QByteArray:
        return texteValeur(valeur.toString());
    case QMetaType::Bool:
        return valeur.toBool() ? QStringLiteral("Vrai") : QStringLiteral("Faux");
    default:
        break;
    }
    if (valeur.canConvert<QString>())
        return valeur.toString();
    return QStringLiteral("(%1)").arg(QString::fromLatin1(valeur.typeName()));
}

QString texteValeur(const RecordsetPtr& rs) {
    if (!rs)
        return QStringLiteral("(aucun)");
    if (!rs->isOpen())
        return QStringLiteral("(fermé)");
    const qint32 n = rs->recordCount();
    return n > 1 ? QStringLiteral("%1 enregistrements").arg(n)
                 : QStringLiteral("%1 enregistrement").arg(n);
}

QString ligneJournal(QTime heure, const QString& evenement,
                     std::initializer_list<ArgumentEvenement> arguments) {
    QStringList textes;
    textes.reserve(qsizetype(arguments.size()));
    for (const ArgumentEvenement& a : arguments)
        textes << a.nom + u'=' + a.valeur;
    return heure.toString(QStringLiteral("hh:mm:ss")) + QStringLiteral("  ") + evenement + u'(' +
           textes.join(QStringLiteral(", ")) + u')';
}

} // namespace veldra::demo
