#pragma once
// How the demo host answers "Affecter une concession": the clerk picks one of the
// register's concessions that no plot bears yet, in a French dialog; the host writes its
// key and its holder's name into the plot with MAJ and records the concession's new place.

#include <QDialog>
#include <functional>

class QObject;
class QPlainTextEdit;

namespace veldra {
class Veldra;
}

namespace veldra::demo {

class Registre;

// How the host shows its own dialogs: exec() by default; scenarios and tests answer them.
using MontreDialogue = std::function<int(QDialog&)>;

// Connects the answer for as long as `lien` lives; `registre` and `journal` must outlive it.
void brancheAffectation(Veldra& plan, Registre& registre, QPlainTextEdit& journal, QObject& lien,
                        MontreDialogue montre);

} // namespace veldra::demo
