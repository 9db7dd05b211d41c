#pragma once
// Numbers as a French clerk reads and writes them in the control's boxes and labels.

#include <QString>

namespace veldra {

// "12,5": plain, with a decimal comma, no grouping, up to 12 significant digits (no floating-point
// dust).
QString nombreSimple(double v);
// "###0.00": two decimals with a decimal comma, no grouping.
QString deuxDecimales(double v);
// Read leniently, as the boxes of the control's dialogs are: the number the text begins
// with (after blanks), with a comma or a point as the decimal separator and an optional
// exponent; 0 when the text does not begin with a number, or when it is not finite.
double nombreLu(const QString& texte);

} // namespace veldra
