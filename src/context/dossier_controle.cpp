#include "context/dossier_controle.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <dlfcn.h>

namespace veldra {

QString dossierDuModule() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(&dossierDuModule), &info) == 0 || !info.dli_fname)
        return QDir::currentPath();
    return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
}

QString dossierInscriptible(const QString& dossier) {
    const QFileInfo info(dossier);
    if (!dossier.isEmpty() && info.isDir() && info.isWritable())
        return QDir::cleanPath(dossier);
    QString data = qEnvironmentVariable("XDG_DATA_HOME");
    if (data.isEmpty())
        data = QDir::homePath() + QStringLiteral("/.local/share");
    const QString repli = data + QStringLiteral("/veldra");
    QDir().mkpath(repli);
    return repli;
}

} // namespace veldra
