// Any bytes as a settings file: the readers return, Get_Liste_Of_Sections returns or throws
// Erreur, and a write to a copy succeeds and reads back.
#include "base/erreur.h"
#include "context/ini_file/ini_file.h"
#include "context/ini_file/profile.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void writeBytes(const QString& path, const uint8_t* data, size_t size) {
    QFile f(path);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        std::abort();
    f.write(reinterpret_cast<const char*>(data), qint64(size));
}

// A short name taken from the input, so that the names the file holds get hit.
QString nameFrom(const uint8_t* data, size_t size) {
    const size_t n = size < 6 ? size : 6;
    return QString::fromLatin1(reinterpret_cast<const char*>(data), qsizetype(n));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("UserParam.INI"));
    const QString copy = dir.filePath(QStringLiteral("copie.ini"));
    writeBytes(path, data, size);
    writeBytes(copy, data, size);

    const QString section = nameFrom(data, size);
    const QString key = size > 6 ? nameFrom(data + 6, size - 6) : QStringLiteral("k");
    QString buffer;
    veldra::profile::getString(section, key, u"d", buffer, 145, path);
    veldra::profile::getString(u"Paramètres", u"Panel Infos", u"1", buffer, 145, path);
    veldra::profile::getKeyNames(section, buffer, 1024, path);
    veldra::profile::getKeyNames(u"Paramètres", buffer, 7, path);

    veldra::INI_FILE ini;
    ini.setNom_Fichier_Ini(path);
    ini.Get_Keys_of_Section(section);
    QString valeur;
    ini.Get_Key_Of_Section(section, key, QStringLiteral("d"), valeur);
    try {
        ini.Get_Liste_Of_Sections();
    } catch (const veldra::Erreur&) {
    }

    // A written value must read back, whatever the file held around it.
    if (veldra::profile::writeString(u"Paramètres", u"Panel Infos", u"0", copy) != 1)
        std::abort();
    veldra::profile::getString(u"paramètres", u"panel infos", u"", buffer, 145, copy);
    if (buffer != u"0")
        std::abort();
    if (veldra::profile::writeString(section, key, u"v", copy) == 1) {
        veldra::profile::getString(section, key, u"", buffer, 145, copy);
        if (buffer != u"v")
            std::abort();
    }
    return 0;
}
