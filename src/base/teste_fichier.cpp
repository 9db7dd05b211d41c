#include "teste_fichier.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace veldra {

QString cheminDansDossier(const QString& nom, const QString& dossier) {
    if (QDir::isAbsolutePath(nom))
        return nom;
    return dossier.endsWith(u'/') ? dossier + nom : dossier + u'/' + nom;
}

int TesteFichier(const QString& nom, const QString& dossierControle) {
    const QString path = cheminDansDossier(nom, dossierControle);
    if (QFileInfo(path).isDir())
        return 1;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 1;
    char c = 0;
    // A first line exists as soon as there is one byte to read.
    return file.read(&c, 1) == 1 ? 0 : 2;
}

} // namespace veldra
