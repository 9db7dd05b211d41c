#pragma once
// The veldra-plan command line: reading its arguments and running what they ask.
//   veldra-plan create FOLDER NAME
//   veldra-plan generate FOLDER [--plots N] [--seed S] [--name NAME] [--no-raster]
//   veldra-plan library FOLDER
//   veldra-plan resources FOLDER
//   veldra-plan copy SOURCE DEST         (a .gpkg or a PG: connection string, either way)
//   veldra-plan import SOURCE DEST.gpkg [--map PLAN=LAYER,...] [--field [LAYER.]COLUMN=NAME,...]

#include "veldra-plan/plan_import.h"
#include "veldra-plan/sample_plan.h"

#include <QString>
#include <QStringList>
#include <variant>

namespace veldra::plantool {

struct Command {
    enum class Kind { Create, Generate, Library, Resources, Copy, Import, Help };
    Kind kind = Kind::Help;
    QString folder;
    QString name;         // create
    SampleOptions sample; // generate
    QString source;       // copy
    QString destination;  // copy
    ImportOptions import; // import
};

// The arguments after the program's name; a text saying what is wrong when they make no
// command.
std::variant<Command, QString> parseCommandLine(const QStringList& arguments);

QString usage();

// Runs the command and returns what to print: the path written, or for copy and import
// their summary; Erreur as the library functions throw.
QString runCommand(const Command& command);

} // namespace veldra::plantool
