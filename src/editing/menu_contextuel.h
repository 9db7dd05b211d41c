#pragma once
// The context menu of the map: built for each right click from the edit mode, the current
// layer and the number of features selected in it, shown at the pointer, and the chosen
// entry dispatched to its command. The same numbers serve every tree:
//   2 Copier, 3 Coller, 4 Supprimer, 6 the file card, 8 Angle droit (plots) or Ajuster
//   les contours, 10-13 alignment (plots) or position by the entry's side, 15-18
//   orientation, 20 Affecter une concession, 21 Mémoriser la sélection, 22 Définir la
//   taille, 23 Style de la sélection.

#include <QPoint>
#include <QString>

namespace veldra {

class Contexte;
class MenuSurgissant;

// The tree for the current layer in edit mode.
void construitMenuEdition(Contexte& ctx, MenuSurgissant& menu, int selectionnes);
// The tree outside edit mode, offered on the plots layer only: what reads the plan stays
// available, what would change it does not.
void construitMenuLecture(Contexte& ctx, MenuSurgissant& menu, int selectionnes);
// Runs the command of entry `numero`, with the entry's tag for the sided ones.
void dispatche(Contexte& ctx, int numero, const QString& etiquette);
// The right button released at `ecran` (global coordinates): the menu that suits, shown,
// and its choice run. Nothing outside edit mode unless the plots layer is current.
void ouvreMenuContextuel(Contexte& ctx, const QPoint& ecran);

} // namespace veldra
