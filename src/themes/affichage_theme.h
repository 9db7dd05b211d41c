#pragma once
// What every theme shares: the palette, the highlight of selected plots while a theme is
// on show, the dataset "Theme" that carries the theme on show, and Action, the way in for
// the theme a user chooses.

#include "carto/model/colour.h"

#include <QString>

namespace carto {
class Dataset;
class Theme;
} // namespace carto

namespace veldra {

class Contexte;

// Colour i (1 to 10) of the theme palette, from the table the plan's opening fills; an
// entry left empty there takes the palette's own colour.
carto::Colour couleurTheme(const Contexte& ctx, int i);
// The system's colour of button faces, which marks plots without a photo.
carto::Colour couleurFaceBouton();

// Selected plots are hatched in black on yellow while a theme is on show, so the
// highlight does not hide the theme's colour; filled in yellow otherwise.
void StyleSelectionTheme(Contexte& ctx, bool theme);

// The dataset "Theme" bound to the plots layer, and its theme "Theme"; nullptr when none.
carto::Dataset* datasetTheme(Contexte& ctx);
carto::Theme* themeAffiche(Contexte& ctx);
// Removes the dataset "Theme" of the plots layer, if there is one.
void retireTheme(Contexte& ctx);

// The code "Photo" builds the photo theme; any other raises ChargeTheme with both texts,
// which the host answers with Theme.
void Action(Contexte& ctx, QString& sLibelle, QString& sCode);
// Btn_SuppTheme: back to the plan without a theme, whether a theme was on show or not.
void supprimeTheme(Contexte& ctx);

// The theme on show follows the plots (beyond the original): after an edit of the plots
// layer its categories are computed again from the plots as they are, with the palette
// and the legend texts the theme was given, and the map is redrawn when they changed.
void reappliqueTheme(Contexte& ctx);

// Wires BTN_Themes, Btn_SuppTheme, Btn_Visu and the map's changes.
void connecteThemes(Contexte& ctx);

} // namespace veldra
