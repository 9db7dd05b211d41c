#pragma once
// What the demo host does with the control's outputs: the map the control asks it to
// print (DemandeImpressionCarte) is shown in a print preview under its title, with its
// comments and scale; the plots are labelled with their holders' names from the register;
// a plot's localisation image is shown in a window, as the host would put it in a letter.

#include <QString>

class QDialog;
class QObject;
class QWidget;

namespace veldra {
class Veldra;
}

namespace veldra::demo {

class Registre;

// Answers DemandeImpressionCarte for as long as `lien` lives: a print preview window
// ("ApercuCarte"), not modal, deleted when closed.
void brancheImpression(Veldra& plan, QObject& lien);

// SetEtiquette with the family name of each concession's first holder.
void etiquetteTitulaires(Veldra& plan, const Registre& registre);

// ImageLocalisation of the concession `id`, shown in a window ("ImageLocalisation", not
// modal, deleted when closed); nullptr when the control found no plot of that key.
QDialog* montreImageLocalisation(Veldra& plan, QWidget* parent, const QString& id);

} // namespace veldra::demo
