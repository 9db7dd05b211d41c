#pragma once
// INI_FILE: the settings file of the control, a thin wrapper over the profile strings of
// profile.h (case-insensitive sections and keys, trimmed values, Windows-1252, CR LF).
//
// What it guarantees:
// - The file is Path_Fichier_Ini followed by Nom_Fichier_Ini. Its name is matched without
//   regard to case: when the folder holds "userparam.ini", "UserParam.INI" reads and
//   writes that file and never creates a second one.
// - With no file name (empty once trimmed), Get_Keys_of_Section, Get_Key_Of_Section and
//   Set_Key_Of_Section use the system profile (profile::systemProfilePath()), whose folder
//   a write creates; Existe is then false and Get_Liste_Of_Sections gives "".
// - Reads never throw and never fail: a missing or unreadable file gives the default.
//   Only Get_Liste_Of_Sections reports errors, as Erreur.
// - Writes replace the file atomically and cannot break its structure (see
//   profile::writeString for what is refused).

#include <QString>
#include <QStringList>

namespace veldra {

class INI_FILE {
public:
    // True when the folder holds a file whose name equals Nom_Fichier_Ini without regard to
    // case. The result is kept for Get_Liste_Of_Sections.
    bool Existe();

    // The key names of `section`, from a 1024-character buffer. The list is split at every
    // NUL after one is appended when it does not end with one, so "a\0b\0" gives "a", "b"
    // and a last empty element; a missing section gives one empty element. A list longer
    // than the buffer is cut, possibly in the middle of a name.
    QStringList Get_Keys_of_Section(QString section);

    // The names of all sections, each followed by "-KVL-"; "" when the file does not exist.
    // Read line by line: a line whose first character is "[" names the section up to its
    // first "]". Throws Erreur err::AppelIncorrect for a "[" line without "]" and
    // err::AccesRefuse when the file exists but cannot be opened.
    QString Get_Liste_Of_Sections();

    // Writes `value`; 1 on success, 0 on failure (folder missing, file read-only, a text
    // that would break a line).
    qint32 Set_Key_Of_Section(QString section, QString key, QString value);

    // The value of `key` in `section` (both trimmed of spaces), or `defaut` when the file,
    // the section or the key is missing. The value comes from a 145-character buffer, so
    // at most its first 144 characters come back.
    void Get_Key_Of_Section(QString section, QString key, QString defaut, QString& valeur);

    // The folder of the file. Setting a text that does not end with "/" appends one; an
    // empty text stays empty (the file is then taken in the current folder).
    QString Path_Fichier_Ini() const { return path_; }
    void setPath_Fichier_Ini(const QString& path);

    // The file name without its folder. Setting a text that holds a "/" splits it at the
    // last one: the part up to and including it becomes Path_Fichier_Ini.
    QString Nom_Fichier_Ini() const { return nom_; }
    void setNom_Fichier_Ini(const QString& nom);

private:
    // The name on disk that matches nom_ without regard to case, or "" when none does.
    QString nomSurDisque() const;
    // The file the profile functions work on.
    QString chemin() const;

    QString path_;
    QString nom_;
    bool existe_ = false;
};

} // namespace veldra
