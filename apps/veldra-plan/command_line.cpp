#include "veldra-plan/command_line.h"

#include "base/erreur.h"
#include "veldra-plan/cursors.h"
#include "veldra-plan/empty_plan.h"
#include "veldra-plan/plan_copy.h"
#include "veldra-plan/symbol_library.h"

#include <optional>

namespace veldra::plantool {

namespace {

QString wrongCount(const QString& command) {
    return QStringLiteral("mauvais nombre d'arguments pour « %1 »").arg(command);
}

std::variant<Command, QString> parseGenerate(const QStringList& args) {
    Command c;
    c.kind = Command::Kind::Generate;
    QStringList positional;
    for (qsizetype i = 1; i < args.size(); ++i) {
        const QString& a = args[i];
        const auto value = [&]() -> std::optional<QString> {
            if (i + 1 >= args.size())
                return std::nullopt;
            return args[++i];
        };
        if (a == QLatin1String("--no-raster")) {
            c.sample.raster = false;
        } else if (a == QLatin1String("--faults")) {
            c.sample.faults = true;
        } else if (a == QLatin1String("--plots") || a == QLatin1String("--seed") ||
                   a == QLatin1String("--name")) {
            const std::optional<QString> v = value();
            if (!v)
                return QStringLiteral("valeur manquante après %1").arg(a);
            bool ok = true;
            if (a == QLatin1String("--plots"))
                c.sample.plots = v->toInt(&ok);
            else if (a == QLatin1String("--seed"))
                c.sample.seed = v->toUInt(&ok);
            else
                c.sample.name = *v;
            if (!ok)
                return QStringLiteral("nombre incorrect après %1 : « %2 »").arg(a, *v);
        } else if (a.startsWith(QLatin1String("--"))) {
            return QStringLiteral("option inconnue : %1").arg(a);
        } else {
            positional << a;
        }
    }
    if (positional.size() != 1)
        return wrongCount(args.first());
    c.folder = positional.first();
    return c;
}

std::variant<Command, QString> parseImport(const QStringList& args) {
    Command c;
    c.kind = Command::Kind::Import;
    QStringList positional;
    try {
        for (qsizetype i = 1; i < args.size(); ++i) {
            const QString& a = args[i];
            if (a == QLatin1String("--map") || a == QLatin1String("--field")) {
                if (i + 1 >= args.size())
                    return QStringLiteral("valeur manquante après %1").arg(a);
                auto pairs = parsePairs(args[++i], a);
                auto& into = a == QLatin1String("--map") ? c.import.layers : c.import.fields;
                into.insert(into.end(), pairs.begin(), pairs.end());
            } else if (a.startsWith(QLatin1String("--"))) {
                return QStringLiteral("option inconnue : %1").arg(a);
            } else {
                positional << a;
            }
        }
    } catch (const Erreur& e) {
        return e.description();
    }
    if (positional.size() != 2)
        return wrongCount(args.first());
    c.import.source = positional[0];
    c.import.destination = positional[1];
    return c;
}

} // namespace

std::variant<Command, QString> parseCommandLine(const QStringList& args) {
    if (args.isEmpty())
        return QStringLiteral("aucune commande");
    const QString& verb = args.first();
    Command c;
    if (verb == QLatin1String("-h") || verb == QLatin1String("--help") ||
        verb == QLatin1String("help"))
        return c;
    if (verb == QLatin1String("create")) {
        if (args.size() != 3)
            return wrongCount(verb);
        c.kind = Command::Kind::Create;
        c.folder = args[1];
        c.name = args[2];
        return c;
    }
    if (verb == QLatin1String("library") || verb == QLatin1String("resources")) {
        if (args.size() != 2)
            return wrongCount(verb);
        c.kind =
            verb == QLatin1String("library") ? Command::Kind::Library : Command::Kind::Resources;
        c.folder = args[1];
        return c;
    }
    if (verb == QLatin1String("generate"))
        return parseGenerate(args);
    if (verb == QLatin1String("copy")) {
        if (args.size() != 3)
            return wrongCount(verb);
        c.kind = Command::Kind::Copy;
        c.source = args[1];
        c.destination = args[2];
        return c;
    }
    if (verb == QLatin1String("import"))
        return parseImport(args);
    return QStringLiteral("commande inconnue : %1").arg(verb);
}

QString usage() {
    return QStringLiteral(
        "Usage :\n"
        "  veldra-plan create DOSSIER NOM\n"
        "      crée le plan vide DOSSIER/NOM.gpkg (jamais par-dessus un plan existant)\n"
        "  veldra-plan generate DOSSIER [--plots N] [--seed S] [--name NOM] [--no-raster]\n"
        "                               [--faults]\n"
        "      écrit un plan d'exemple de N emplacements (1200), graine S (1), NOM (Exemple) ;\n"
        "      avec --faults, quelques défauts voulus que l'analyse du plan relève\n"
        "  veldra-plan library DOSSIER\n"
        "      écrit la bibliothèque de symboles DOSSIER/Bibli/Bibli.gst\n"
        "  veldra-plan resources DOSSIER\n"
        "      écrit ce que le dossier du contrôle contient : curseurs et bibliothèque\n"
        "  veldra-plan copy SOURCE DESTINATION\n"
        "      copie un plan entre un fichier .gpkg et une base PostGIS (PG:...), dans les\n"
        "      deux sens, sans rien perdre ; jamais par-dessus un plan existant\n"
        "  veldra-plan import SOURCE DESTINATION.gpkg [--map Tombes=COUCHE,...]\n"
        "                                             [--field Numero=COLONNE,...]\n"
        "      importe un plan MapInfo, Shapefile, DXF, GeoJSON... (toute source OGR) :\n"
        "      couches du plan prises par leur nom ou par --map, colonnes par leur nom ou\n"
        "      par --field (Tombes.Numero=NUM pour une seule couche), géométries vérifiées\n"
        "      et réparées, enceinte tracée si elle manque ; affiche un résumé\n");
}

QString runCommand(const Command& command) {
    switch (command.kind) {
    case Command::Kind::Create:
        return createEmptyPlan(command.folder, command.name);
    case Command::Kind::Generate:
        return generateSamplePlan(command.folder, command.sample);
    case Command::Kind::Library:
        return buildSymbolLibrary(command.folder);
    case Command::Kind::Resources:
        return writeControlResources(command.folder);
    case Command::Kind::Copy:
        return copyPlan(command.source, command.destination).summary();
    case Command::Kind::Import:
        return importPlan(command.import).summary();
    case Command::Kind::Help:
        break;
    }
    return {};
}

} // namespace veldra::plantool
