#include "veldra-plan/output_file.h"

#include "base/erreur.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <filesystem>
#include <system_error>

namespace veldra::plantool {

QString prepareFolder(const QString& folder) {
    if (folder.isEmpty())
        throw Erreur(err::ArgumentsIncorrects, QStringLiteral("Aucun dossier n'est indiqué"));
    const QString path = QDir::cleanPath(QDir(folder).absolutePath());
    if (!QDir().mkpath(path) || !QFileInfo(path).isDir())
        throw Erreur(err::AccesRefuse,
                     QStringLiteral("Impossible de créer le dossier « %1 »").arg(path));
    return path;
}

void checkFileName(const QString& name) {
    if (name.trimmed().isEmpty() || name.contains(QLatin1Char('/')) ||
        name.contains(QLatin1Char('\\')) || name == QLatin1String(".") ||
        name == QLatin1String(".."))
        throw Erreur(err::ArgumentsIncorrects,
                     QStringLiteral("Nom de plan incorrect : « %1 »").arg(name));
}

StagedFile::StagedFile(QString finalPath, const QString& stageSuffix)
    : final_(std::move(finalPath)) {
    const QFileInfo info(final_);
    stage_ = info.dir().filePath(QLatin1Char('.') + info.completeBaseName() +
                                 QStringLiteral(".partiel.") + stageSuffix);
    QFile::remove(stage_);
}

StagedFile::~StagedFile() {
    if (!committed_)
        QFile::remove(stage_);
}

void StagedFile::commit() {
    std::error_code ec;
    std::filesystem::rename(QFile::encodeName(stage_).toStdString(),
                            QFile::encodeName(final_).toStdString(), ec);
    if (ec)
        throw Erreur(err::AccesRefuse, QStringLiteral("Impossible d'écrire le fichier « %1 » : %2")
                                           .arg(final_, QString::fromLocal8Bit(ec.message())));
    committed_ = true;
}

} // namespace veldra::plantool
