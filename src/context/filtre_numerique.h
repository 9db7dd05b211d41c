#pragma once
// Key filter of the numeric text boxes (plan size, style and rotation panels).
//
// FiltreNumerique decides what a typed character becomes: it returns the character code
// to let through, possibly replaced ("." or "," become the user's decimal separator), or
// 0 to refuse the key. Backspace is performed by the filter itself (the selection, or the
// character before the cursor) and returns 0 so the box does not delete twice.
//
// With digits allowed, only the extra characters, the digits and, when allowed, "-" pass;
// the decimal separator passes only when the extra characters hold it, and once; "-" only
// at the start of the text, and once. With digits not allowed, only the extra characters
// pass. Any other key (a control key) passes unchanged.

#include <QObject>
#include <QString>

class QLineEdit;

namespace veldra {

inline constexpr int ToucheRetourArriere = 8;

// The decimal separator of the user's locale: the second character of 1.1 written out.
QChar separateurDecimal();

int FiltreNumerique(QLineEdit& box, int keyAscii, bool chiffres, bool moins, const QString& extra);

// Applies FiltreNumerique to every key typed into a QLineEdit. Owned by the box it
// filters (installed as its child).
class FiltreClavierNumerique : public QObject {
    Q_OBJECT
public:
    static FiltreClavierNumerique* installe(QLineEdit& box, bool chiffres, bool moins,
                                            const QString& extra = {});

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    FiltreClavierNumerique(QLineEdit& box, bool chiffres, bool moins, QString extra);

    bool chiffres_;
    bool moins_;
    QString extra_;
};

} // namespace veldra
