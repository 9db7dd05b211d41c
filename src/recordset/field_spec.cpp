#include "field_spec.h"

#include "base/erreur.h"

#include <cmath>
#include <limits>

namespace recordset {
namespace {

qint32 textSize(QStringView typeWord) {
    // "C(32)": the number read from the third character on.
    const double n = typeWord.size() > 2 ? leadingNumber(typeWord.mid(2)) : 0.0;
    const double rounded = std::nearbyint(n);
    if (!(rounded >= std::numeric_limits<qint32>::min() &&
          rounded <= std::numeric_limits<qint32>::max()))
        throw veldra::Erreur(
            veldra::err::Depassement,
            QStringLiteral("Taille de colonne hors limites : « %1 ».").arg(typeWord.toString()));
    return static_cast<qint32>(rounded);
}

} // namespace

RecordsetPtr fromFieldSpec(QStringView spec) {
    auto rs = std::make_shared<Recordset>();
    for (const QStringView description : spec.split(u',')) {
        if (description.isEmpty())
            continue;
        const auto parts = description.split(u' ');
        if (parts.size() < 2 || parts[1].isEmpty())
            continue;
        const QString name = parts[0].toString().toUpper();
        const QStringView typeWord = parts[1];
        switch (typeWord.front().unicode()) {
        case u'B':
            rs->appendField(name, DataType::Boolean);
            break;
        case u'D':
            rs->appendField(name, DataType::Date);
            break;
        case u'C':
            rs->appendField(name, DataType::VarWChar, textSize(typeWord));
            break;
        case u'N':
            rs->appendField(name, typeWord.contains(u'.') ? DataType::Double : DataType::SmallInt);
            break;
        default:
            break;
        }
    }
    rs->open();
    return rs;
}

} // namespace recordset
