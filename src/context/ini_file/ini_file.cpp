#include "ini_file.h"

#include "base/cp1252.h"
#include "base/erreur.h"
#include "profile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace veldra {
namespace {

constexpr qint32 TailleListeCles = 1024;
constexpr qint32 TailleValeur = 145;

// Trims spaces only, as the callers' own trimming does; tabs are the profile's business.
QString sansEspaces(const QString& texte) {
    qsizetype debut = 0;
    qsizetype fin = texte.size();
    while (debut < fin && texte[debut] == u' ')
        ++debut;
    while (fin > debut && texte[fin - 1] == u' ')
        --fin;
    return texte.mid(debut, fin - debut);
}

Erreur accesRefuse() {
    return Erreur(err::AccesRefuse, QStringLiteral("Permission refusée"));
}

} // namespace

bool INI_FILE::Existe() {
    existe_ = !nomSurDisque().isEmpty();
    return existe_;
}

QStringList INI_FILE::Get_Keys_of_Section(QString section) {
    QString tampon;
    const qint32 n = profile::getKeyNames(section, tampon, TailleListeCles, chemin());
    if (n == 0)
        return {QString()};
    QString liste = tampon.left(n);
    if (!liste.endsWith(QChar(0)))
        liste += QChar(0);
    return liste.split(QChar(0));
}

QString INI_FILE::Get_Liste_Of_Sections() {
    Existe();
    if (!existe_)
        return {};
    const QString fichier = path_ + nomSurDisque();
    // Only a regular file is read: a pipe put in its place must not block.
    if (!QFileInfo(fichier).isFile())
        throw accesRefuse();
    QFile f(fichier);
    if (!f.open(QIODevice::ReadOnly))
        throw accesRefuse();
    const QByteArray octets = f.readAll();
    if (f.error() != QFileDevice::NoError)
        throw accesRefuse();
    f.close();

    QString liste;
    profile::forEachLine(octets, [&liste](QByteArrayView ligne) {
        if (ligne.isEmpty() || ligne.front() != '[')
            return;
        const qsizetype fin = ligne.indexOf(']');
        if (fin < 0)
            throw Erreur(err::AppelIncorrect,
                         QStringLiteral("Argument ou appel de procédure incorrect"));
        liste += fromCp1252(ligne.sliced(1, fin - 1));
        liste += QStringLiteral("-KVL-");
    });
    return liste;
}

qint32 INI_FILE::Set_Key_Of_Section(QString section, QString key, QString value) {
    const QString fichier = chemin();
    if (sansEspaces(nom_).isEmpty())
        QDir().mkpath(QFileInfo(fichier).absolutePath()); // the system profile's own folder
    return profile::writeString(section, key, value, fichier);
}

void INI_FILE::Get_Key_Of_Section(QString section, QString key, QString defaut, QString& valeur) {
    QString tampon;
    const qint32 n = profile::getString(sansEspaces(section), sansEspaces(key), defaut, tampon,
                                        TailleValeur, chemin());
    valeur = tampon.left(n);
}

void INI_FILE::setPath_Fichier_Ini(const QString& path) {
    path_ = path.isEmpty() || path.endsWith(u'/') ? path : path + u'/';
}

void INI_FILE::setNom_Fichier_Ini(const QString& nom) {
    const qsizetype barre = nom.lastIndexOf(u'/');
    if (barre < 0) {
        nom_ = nom;
        return;
    }
    path_ = nom.left(barre + 1);
    nom_ = nom.mid(barre + 1);
}

QString INI_FILE::nomSurDisque() const {
    if (nom_.isEmpty())
        return {};
    // The exact spelling first: it is the cheapest test, and the right file when the
    // folder holds several spellings of the name.
    if (QFileInfo(path_ + nom_).isFile())
        return nom_;
    const QDir dossier(path_.isEmpty() ? QStringLiteral(".") : path_);
    const QStringList noms = dossier.entryList(QDir::Files | QDir::Hidden, QDir::Name);
    for (const QString& n : noms) {
        if (n.compare(nom_, Qt::CaseInsensitive) == 0)
            return n;
    }
    return {};
}

QString INI_FILE::chemin() const {
    if (sansEspaces(nom_).isEmpty())
        return profile::systemProfilePath();
    const QString surDisque = nomSurDisque();
    return path_ + (surDisque.isEmpty() ? nom_ : surDisque);
}

} // namespace veldra
