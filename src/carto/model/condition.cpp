#include "condition.h"

#include "base/erreur.h"

#include <QLocale>

namespace carto {
namespace {

[[noreturn]] void malformed(QStringView text, const QString& why) {
    throw veldra::Erreur(
        veldra::err::ConditionIncorrecte,
        QStringLiteral("Condition incorrecte « %1 » : %2.").arg(text.left(200).toString(), why));
}

class Parser {
public:
    explicit Parser(QStringView text) : text_(text) {}

    Condition parse() {
        Condition c;
        do {
            c.clauses.push_back(clause());
            blanks();
        } while (keyword(u"and"));
        blanks();
        if (i_ != text_.size())
            malformed(text_, QStringLiteral("texte inattendu après la condition"));
        return c;
    }

private:
    Clause clause() {
        blanks();
        const qsizetype start = i_;
        while (i_ < text_.size() && (text_[i_].isLetterOrNumber() || text_[i_] == u'_'))
            ++i_;
        if (i_ == start)
            malformed(text_, QStringLiteral("nom de colonne attendu"));
        Clause c{text_.mid(start, i_ - start).toString(), 0.0};
        blanks();
        if (i_ >= text_.size() || text_[i_] != u'=')
            malformed(text_, QStringLiteral("« = » attendu après « %1 »").arg(c.column));
        ++i_;
        blanks();
        c.literal = literal();
        return c;
    }

    std::variant<double, QString> literal() {
        if (i_ < text_.size() && text_[i_] == u'"') {
            QString value;
            for (++i_; i_ < text_.size(); ++i_) {
                if (text_[i_] == u'"') {
                    if (i_ + 1 < text_.size() && text_[i_ + 1] == u'"') {
                        value += u'"';
                        ++i_;
                        continue;
                    }
                    ++i_;
                    return value;
                }
                value += text_[i_];
            }
            malformed(text_, QStringLiteral("guillemet non refermé"));
        }
        const qsizetype start = i_;
        if (i_ < text_.size() && (text_[i_] == u'-' || text_[i_] == u'+'))
            ++i_;
        while (i_ < text_.size() && (text_[i_].isDigit() || text_[i_] == u'.'))
            ++i_;
        bool ok = false;
        const double d = QLocale::c().toDouble(text_.mid(start, i_ - start), &ok);
        if (!ok)
            malformed(text_, QStringLiteral("nombre ou texte entre guillemets attendu"));
        return d;
    }

    bool keyword(QStringView word) {
        if (text_.mid(i_, word.size()).compare(word, Qt::CaseInsensitive) != 0)
            return false;
        const qsizetype after = i_ + word.size();
        if (after < text_.size() && !text_[after].isSpace())
            return false;
        i_ = after;
        return true;
    }

    void blanks() {
        while (i_ < text_.size() && text_[i_].isSpace())
            ++i_;
    }

    QStringView text_;
    qsizetype i_ = 0;
};

} // namespace

Condition Condition::parse(QStringView text) {
    return Parser(text).parse();
}

QString Condition::key(const std::variant<double, QString>& literal) {
    if (const double* d = std::get_if<double>(&literal))
        return QString::number(*d, 'g', 15);
    return std::get<QString>(literal).toCaseFolded();
}

QString Condition::key(const QVariant& value, bool numeric) {
    if (!value.isValid() || value.isNull())
        return {};
    if (numeric) {
        bool ok = false;
        const double d = value.typeId() == QMetaType::QString
                             ? QLocale::c().toDouble(value.toString().trimmed(), &ok)
                             : value.toDouble(&ok);
        return ok ? QString::number(d, 'g', 15) : QString();
    }
    return value.toString().toCaseFolded();
}

} // namespace carto
