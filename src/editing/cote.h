#pragma once
// The side keys that name the sides of alignment and orientation, as the menu tags carry
// them: "Haut" (largest Y), "Bas" (smallest Y), "Gauche" (smallest X), "Droite" (largest X).

#include <QString>

namespace veldra {

enum class Cote { Haut, Bas, Gauche, Droite };

// Erreur (ArgumentsIncorrects) for any other text.
Cote coteDe(const QString& cle);

} // namespace veldra
