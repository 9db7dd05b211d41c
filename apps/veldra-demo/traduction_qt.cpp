#include "traduction_qt.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>
#include <memory>

namespace veldra::demo {

bool installeTraductionQt(QCoreApplication& application) {
    // French whatever the system's language: the control speaks French.
    auto traduction = std::make_unique<QTranslator>();
    if (!traduction->load(QLocale(QLocale::French, QLocale::France), QStringLiteral("qtbase"),
                          QStringLiteral("_"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath)) ||
        !QCoreApplication::installTranslator(traduction.get()))
        return false;
    traduction.release()->setParent(&application); // the application owns it from now on
    return true;
}

} // namespace veldra::demo
