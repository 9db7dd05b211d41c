#pragma once
// Profile strings: the private-profile (INI file) functions the settings file is built on,
// with the semantics programs written for them expect.
//
// File format, as read:
// - 8-bit text in Windows-1252; lines end with CR LF, LF or a lone CR.
// - A line whose first non-blank character is "[" and that holds a "]" opens a section
//   named by the text between the "[" and the first "]", blanks trimmed. A "[" line
//   without "]" is neither a section nor a key.
// - A line with a "=" inside a section is a key: its name is the text before the first "=",
//   its value the text after it, both trimmed of blanks (spaces and tabs). A value enclosed
//   in a matching pair of double or single quotes loses them.
// - Lines starting with ";", lines without "=", lines with an empty key name and lines
//   before the first section are not keys; they are kept as they are by writes.
// - Sections and keys are compared without regard to case. When a section or a key
//   appears twice, the first occurrence is the one read and written.
// Every text argument passes through Windows-1252, as the platform's 8-bit calls do:
// characters outside it become "?".
//
// The readers parse the file in one linear pass and never fail: a missing, unreadable or
// non-regular file (a folder, a device) reads as an empty one. Writes replace the file
// atomically and refuse any text that could change the file's structure.

#include <QByteArrayView>
#include <QString>
#include <QStringView>

namespace veldra::profile {

// The value of `key` in `section`, or `defaultValue` with its trailing blanks stripped when
// the file, the section or the key is missing. `buffer` receives at most bufferSize - 1
// characters; the result is the number of characters it holds.
qint32 getString(QStringView section, QStringView key, QStringView defaultValue, QString& buffer,
                 qint32 bufferSize, const QString& path);

// The names of the keys of `section` (each name once, in file order), each followed by a
// NUL, then a final NUL; the result is the count without the final NUL. A list that does
// not fit is cut to bufferSize - 2 characters followed by two NULs, and the result is
// bufferSize - 2. A missing file or section, or a section without keys, gives 0 and an
// empty buffer.
qint32 getKeyNames(QStringView section, QString& buffer, qint32 bufferSize, const QString& path);

// Writes `key`=`value` in `section`: 1 on success, 0 on failure. The file is created when
// missing (its folder is not). An existing key keeps its spelling and its line; a new key
// goes after the last key of its section; a new section goes at the end of the file. Every
// other line keeps its text; every line of the result ends with CR LF.
// Refused, with nothing written: a section, key or value holding CR, LF or NUL; a key
// holding "=" or starting with "[" or ";"; a section holding "]"; a section or key that is
// empty once trimmed. Also fails when the file exists but cannot be read or written.
qint32 writeString(QStringView section, QStringView key, QStringView value, const QString& path);

// The profile used when no file is named: $XDG_CONFIG_HOME/veldra/profil.ini.
QString systemProfilePath();

// Calls f(line) for every line of `data`, without its end (CR LF, LF or a lone CR). A
// final line without an end counts; an empty `data` has no line.
template <typename F> void forEachLine(QByteArrayView data, F&& f) {
    const char* const begin = data.data();
    const qsizetype size = data.size();
    qsizetype start = 0;
    for (qsizetype i = 0; i < size; ++i) {
        const char c = begin[i];
        if (c != '\n' && c != '\r')
            continue;
        f(QByteArrayView(begin + start, i - start));
        if (c == '\r' && i + 1 < size && begin[i + 1] == '\n')
            ++i;
        start = i + 1;
    }
    if (start < size)
        f(QByteArrayView(begin + start, size - start));
}

} // namespace veldra::profile
