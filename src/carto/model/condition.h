#pragma once
// Conditions given to searches as text, in a small grammar of our own:
//     Column = literal [and Column = literal]...
// A literal is a number (12, -3.5) or a double-quoted text ("Allée 1"; a doubled quote
// inside stands for one). Column names are matched without regard to case, texts too.
// Anything else (or, ;, unbalanced quotes, a missing column) is refused with Erreur:
// host text is never executed, and a malformed condition never matches everything.

#include <QString>
#include <QVariant>
#include <variant>
#include <vector>

namespace carto {

struct Clause {
    QString column;
    std::variant<double, QString> literal;
};

struct Condition {
    std::vector<Clause> clauses;

    static Condition parse(QStringView text);
    // The normalised form a stored value must have to equal the clause's literal.
    static QString key(const std::variant<double, QString>& literal);
    static QString key(const QVariant& value, bool numeric);
};

} // namespace carto
