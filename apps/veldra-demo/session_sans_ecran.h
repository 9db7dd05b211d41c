#pragma once
// What stands in for the user when nobody watches the window (screenshot runs): messages
// go to the error output and are answered with the choice that changes nothing, and
// modal dialogs are refused, so the run can never wait for a click.

#include "context/prompter.h"

#include <QString>
#include <QTextStream>

class QDialog;

namespace veldra::demo {

class PrompterSansEcran : public Prompter {
public:
    explicit PrompterSansEcran(QTextStream& sortie) : sortie_(sortie) {}
    int message(const QString& texte, int style, const QString& titre) override;

private:
    QTextStream& sortie_;
};

// The answer PrompterSansEcran gives for a message-box style: Annuler when offered,
// otherwise Non when offered, otherwise Ok.
int reponseSansEcran(int style);

// The control's modal hook for such runs: names the dialog on `sortie` and rejects it.
int refuseDialogue(QTextStream& sortie, QDialog& dialogue);

} // namespace veldra::demo
