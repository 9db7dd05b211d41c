// veldra-plan: writes empty plans, sample plans and the symbol library, copies and imports
// plans (see command_line.h).
// Prints the path written (copy and import: their summary); on failure the message on stderr and
// exit status 1; on bad arguments the usage and exit status 2.

#include "base/erreur.h"
#include "veldra-plan/command_line.h"

#include <QGuiApplication>
#include <cstdio>

int main(int argc, char** argv) {
    // Fonts for the raster's lettering need a GUI application, never a display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    using namespace veldra::plantool;

    const auto parsed = parseCommandLine(QCoreApplication::arguments().mid(1));
    if (const QString* problem = std::get_if<QString>(&parsed)) {
        std::fprintf(stderr, "veldra-plan : %s\n\n%s", qPrintable(*problem), qPrintable(usage()));
        return 2;
    }
    const Command& command = std::get<Command>(parsed);
    if (command.kind == Command::Kind::Help) {
        std::fputs(qPrintable(usage()), stdout);
        return 0;
    }
    try {
        std::printf("%s\n", qPrintable(runCommand(command)));
        return 0;
    } catch (const veldra::Erreur& e) {
        std::fprintf(stderr, "%s\n", qPrintable(e.message()));
        return 1;
    }
}
