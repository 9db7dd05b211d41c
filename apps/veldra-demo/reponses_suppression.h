#pragma once
// How the demo host answers the control's deletion requests: a plot that holds a
// concession of the register is never deleted (the clerk is told which and why);
// otherwise the clerk confirms, and the host answers with ConfirmSupp.

#include <QString>
#include <functional>

class QObject;
class QPlainTextEdit;

namespace veldra {
class Veldra;
}

namespace veldra::demo {

class Registre;

// Asks the clerk a yes-or-no question; true for yes.
using Confirmation = std::function<bool(const QString& question)>;

// Connects the answers to SuppressionSection, SuppressionAllee and SuppressionTerrain for
// as long as `lien` lives; `registre` and `journal` must outlive it.
void brancheSuppressions(Veldra& plan, Registre& registre, QPlainTextEdit& journal, QObject& lien,
                         Confirmation confirme);

// The question and the refusal, as the clerk reads them.
QString questionSuppression(const QString& quoi, const QStringList& entrees);
// Why the plots cannot go, or an empty text when none holds a concession.
QString refusTerrains(const Registre& registre, const QStringList& ids);

} // namespace veldra::demo
