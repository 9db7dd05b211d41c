#pragma once
// The photo theme: the plots coloured by whether a photograph is linked to them. Every
// plot's "Booleen" is first written from its "Photo" ("F" with a photo, "T" without; a
// link that trims to nothing is no photo), then a theme by value of "Booleen" on the
// plots layer's own data shows "Lien avec une photo" and "Aucune photo".

namespace carto {
class Theme;
}

namespace veldra {

class Contexte;

// Errors are shown titled "ThemePhoto"; the plan keeps what it had when the flags could
// not all be written.
void ThemePhoto(Contexte& ctx);

// The colours and legend texts of the photo theme's categories ("F" then "T").
void habilleThemePhoto(carto::Theme& theme);

} // namespace veldra
