#pragma once
// The veldra-plan command line: reading its arguments and running what they ask.
//   veldra-plan create FOLDER NAME
//   veldra-plan generate FOLDER [--plots N] [--seed S] [--name NAME] [--no-raster]
//   veldra-plan library FOLDER
//   veldra-plan resources FOLDER

#include "veldra-plan/sample_plan.h"

#include <QString>
#include <QStringList>
#include <variant>

namespace veldra::plantool {

struct Command {
    enum class Kind { Create, Generate, Library, Resources, Help };
    Kind kind = Kind::Help;
    QString folder;
    QString name;         // create
    SampleOptions sample; // generate
};

// The arguments after the program's name; a text saying what is wrong when they make no
// command.
std::variant<Command, QString> parseCommandLine(const QStringList& arguments);

QString usage();

// Runs the command and returns the path written; Erreur as the library functions throw.
QString runCommand(const Command& command);

} // namespace veldra::plantool
