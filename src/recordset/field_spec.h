#pragma once
// Builds an empty, open record set from a one-line column description such as
// "Section C(32),IdGCF N,Aire N(3.2)": descriptions separated by ",", each a column name,
// one space and a type word. B is a Boolean, D a date, C(n) text of n characters, N a
// 16-bit integer, and N with a "." anywhere in its type word a double. Names are upper-
// cased. A description whose type word starts with another letter, or that has no type
// word at all, creates no column; empty descriptions (",,", a trailing ",") are skipped.
// A name given twice or a size beyond 32-bit range throws veldra::Erreur.

#include "recordset.h"

#include <QStringView>

namespace recordset {

RecordsetPtr fromFieldSpec(QStringView spec);

} // namespace recordset
