#include "filtre_numerique.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>

namespace veldra {
namespace {

// True when the text holds `c` outside the current selection.
bool holdsOutsideSelection(const QLineEdit& box, QChar c) {
    const QString text = box.text();
    const qsizetype start = box.hasSelectedText() ? box.selectionStart() : -1;
    const qsizetype end = start < 0 ? -1 : start + box.selectedText().size();
    for (qsizetype i = 0; i < text.size(); ++i)
        if (text[i] == c && !(i >= start && i < end))
            return true;
    return false;
}

int retourArriere(QLineEdit& box) {
    if (box.hasSelectedText())
        box.del();
    else
        box.backspace();
    return 0;
}

} // namespace

QChar separateurDecimal() {
    return QLocale().toString(1.1).at(1);
}

int FiltreNumerique(QLineEdit& box, int keyAscii, bool chiffres, bool moins, const QString& extra) {
    if (keyAscii == ToucheRetourArriere)
        return retourArriere(box);
    if (keyAscii <= 0 || keyAscii > 0xFFFF)
        return keyAscii;
    QChar c{char16_t(keyAscii)};
    if (!chiffres)
        return extra.contains(c) ? keyAscii : 0;
    const QChar separator = separateurDecimal();
    if (c == u'.' || c == u',')
        c = separator;
    QString allowed = extra + QStringLiteral("0123456789");
    if (moins)
        allowed += u'-';
    if (!allowed.contains(c))
        return 0;
    if (c == separator && holdsOutsideSelection(box, separator))
        return 0;
    if (c == u'-') {
        const qsizetype cursor =
            box.hasSelectedText() ? box.selectionStart() : box.cursorPosition();
        if (cursor != 0 || holdsOutsideSelection(box, u'-'))
            return 0;
    }
    return c.unicode();
}

FiltreClavierNumerique::FiltreClavierNumerique(QLineEdit& box, bool chiffres, bool moins,
                                               QString extra)
    : QObject(&box), chiffres_(chiffres), moins_(moins), extra_(std::move(extra)) {}

FiltreClavierNumerique* FiltreClavierNumerique::installe(QLineEdit& box, bool chiffres, bool moins,
                                                         const QString& extra) {
    auto* filter = new FiltreClavierNumerique(box, chiffres, moins, extra);
    box.installEventFilter(filter);
    return filter;
}

bool FiltreClavierNumerique::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    auto* box = qobject_cast<QLineEdit*>(watched);
    if (!box)
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Backspace) {
        FiltreNumerique(*box, ToucheRetourArriere, chiffres_, moins_, extra_);
        return true;
    }
    const QString text = key->text();
    // Navigation, shortcuts and other keys without a character go to the box unchanged.
    if (text.size() != 1 || !text[0].isPrint())
        return false;
    const int code = FiltreNumerique(*box, text[0].unicode(), chiffres_, moins_, extra_);
    if (code != text[0].unicode()) {
        if (code != 0)
            box->insert(QString(QChar(char16_t(code))));
        return true;
    }
    return false;
}

} // namespace veldra
