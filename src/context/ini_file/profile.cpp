#include "profile.h"

#include "base/cp1252.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>
#include <QStandardPaths>
#include <algorithm>
#include <optional>

namespace veldra::profile {
namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}
bool isBlank(QChar c) {
    return c == u' ' || c == u'\t';
}

QByteArrayView trimmed(QByteArrayView t) {
    while (!t.isEmpty() && isBlank(t.front()))
        t = t.sliced(1);
    while (!t.isEmpty() && isBlank(t.back()))
        t.chop(1);
    return t;
}

QStringView trimmedEnd(QStringView t) {
    while (!t.isEmpty() && isBlank(t.back()))
        t.chop(1);
    return t;
}

QStringView trimmed(QStringView t) {
    while (!t.isEmpty() && isBlank(t.front()))
        t = t.sliced(1);
    return trimmedEnd(t);
}

// What an argument becomes once passed as an 8-bit string.
QString through8Bit(QStringView t) {
    return fromCp1252(toCp1252(t));
}

QByteArrayView unquoted(QByteArrayView v) {
    if (v.size() >= 2 && v.front() == v.back() && (v.front() == '"' || v.front() == '\''))
        return v.sliced(1, v.size() - 2);
    return v;
}

struct Line {
    enum class Kind { Other, Section, Key };
    Kind kind = Kind::Other;
    QByteArrayView name;
    QByteArrayView value;
};

Line classify(QByteArrayView text) {
    Line line;
    const QByteArrayView t = trimmed(text);
    if (t.isEmpty() || t.front() == ';')
        return line;
    if (t.front() == '[') {
        const qsizetype close = t.indexOf(']');
        if (close > 0) {
            line.kind = Line::Kind::Section;
            line.name = trimmed(t.sliced(1, close - 1));
        }
        return line;
    }
    const qsizetype equals = t.indexOf('=');
    if (equals < 0)
        return line;
    line.name = trimmed(t.first(equals));
    if (line.name.isEmpty())
        return line;
    line.kind = Line::Kind::Key;
    line.value = trimmed(t.sliced(equals + 1));
    return line;
}

// `wanted` is already trimmed and through 8 bits. The code page has one byte per
// character and case folding keeps lengths, so the sizes decide most comparisons.
bool sameName(QByteArrayView inFile, const QString& wanted) {
    return inFile.size() == wanted.size() &&
           QString::compare(fromCp1252(inFile), wanted, Qt::CaseInsensitive) == 0;
}

// Calls f(name, value) for each key line of the first section named `section` until f
// returns false.
template <typename F> void forEachKeyOf(QByteArrayView data, const QString& section, F&& f) {
    enum class State { Before, Inside, Done };
    State state = State::Before;
    forEachLine(data, [&](QByteArrayView text) {
        if (state == State::Done)
            return;
        const Line line = classify(text);
        if (line.kind == Line::Kind::Section) {
            if (state == State::Inside)
                state = State::Done;
            else if (sameName(line.name, section))
                state = State::Inside;
        } else if (state == State::Inside && line.kind == Line::Kind::Key &&
                   !f(line.name, line.value)) {
            state = State::Done;
        }
    });
}

struct FileBytes {
    bool exists = false;
    bool readable = false;
    QByteArray bytes;
};

// Only regular files are read: a folder or a device (a pipe, /dev/zero) must not block.
FileBytes readFile(const QString& path) {
    FileBytes file;
    if (path.isEmpty())
        return file;
    const QFileInfo info(path);
    if (!info.exists())
        return file;
    file.exists = true;
    if (!info.isFile())
        return file;
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return file;
    file.bytes = f.readAll();
    file.readable = f.error() == QFileDevice::NoError;
    return file;
}

qint32 copyTo(QString& buffer, const QString& text, qint32 bufferSize) {
    buffer = text.left(std::max(bufferSize - 1, 0));
    return qint32(buffer.size());
}

bool breaksLine(QStringView t) {
    return t.contains(u'\r') || t.contains(u'\n') || t.contains(QChar(0));
}

} // namespace

qint32 getString(QStringView section, QStringView key, QStringView defaultValue, QString& buffer,
                 qint32 bufferSize, const QString& path) {
    const QString wantedSection = through8Bit(trimmed(section));
    const QString wantedKey = through8Bit(trimmed(key));
    std::optional<QByteArrayView> value;
    FileBytes file;
    if (!wantedSection.isEmpty() && !wantedKey.isEmpty()) {
        file = readFile(path);
        if (file.readable) {
            forEachKeyOf(file.bytes, wantedSection, [&](QByteArrayView name, QByteArrayView v) {
                if (!sameName(name, wantedKey))
                    return true;
                value = unquoted(v);
                return false;
            });
        }
    }
    if (value) {
        // Decode no more than the buffer takes: a value may be megabytes long.
        const qsizetype keep = std::min(value->size(), qsizetype(std::max(bufferSize, 1)));
        return copyTo(buffer, fromCp1252(value->first(keep)), bufferSize);
    }
    return copyTo(buffer, through8Bit(trimmedEnd(defaultValue)), bufferSize);
}

qint32 getKeyNames(QStringView section, QString& buffer, qint32 bufferSize, const QString& path) {
    buffer.clear();
    const QString wantedSection = through8Bit(trimmed(section));
    if (wantedSection.isEmpty())
        return 0;
    const FileBytes file = readFile(path);
    if (!file.readable)
        return 0;
    QString list;
    QSet<QString> seen;
    forEachKeyOf(file.bytes, wantedSection, [&](QByteArrayView name, QByteArrayView) {
        const QString text = fromCp1252(name);
        const QString folded = text.toCaseFolded();
        if (!seen.contains(folded)) {
            seen.insert(folded);
            list += text;
            list += QChar(0);
        }
        // What lies beyond the buffer is cut anyway.
        return list.size() < qsizetype(bufferSize);
    });
    if (list.isEmpty())
        return 0;
    if (list.size() < qsizetype(bufferSize)) {
        buffer = list + QChar(0);
        return qint32(list.size());
    }
    if (bufferSize < 2)
        return 0;
    buffer = list.left(bufferSize - 2);
    buffer += QChar(0);
    buffer += QChar(0);
    return bufferSize - 2;
}

qint32 writeString(QStringView section, QStringView key, QStringView value, const QString& path) {
    const QStringView s = trimmed(section);
    const QStringView k = trimmed(key);
    if (breaksLine(section) || breaksLine(key) || breaksLine(value))
        return 0;
    if (s.isEmpty() || k.isEmpty() || s.contains(u']') || k.contains(u'=') || k.startsWith(u'[') ||
        k.startsWith(u';'))
        return 0;
    if (path.isEmpty())
        return 0;
    const FileBytes file = readFile(path);
    if (file.exists && (!file.readable || !QFileInfo(path).isWritable()))
        return 0;

    const QString wantedSection = through8Bit(s);
    const QString wantedKey = through8Bit(k);
    qsizetype index = 0;
    qsizetype headerLine = -1;
    qsizetype keyLine = -1;
    qsizetype lastKeyLine = -1;
    QByteArrayView spelling;
    enum class State { Before, Inside, Done };
    State state = State::Before;
    forEachLine(file.bytes, [&](QByteArrayView text) {
        const qsizetype i = index++;
        if (state == State::Done)
            return;
        const Line line = classify(text);
        if (line.kind == Line::Kind::Section) {
            if (state == State::Inside) {
                state = State::Done;
            } else if (sameName(line.name, wantedSection)) {
                state = State::Inside;
                headerLine = i;
            }
        } else if (state == State::Inside && line.kind == Line::Kind::Key) {
            lastKeyLine = i;
            if (keyLine < 0 && sameName(line.name, wantedKey)) {
                keyLine = i;
                spelling = line.name;
            }
        }
    });

    QByteArray newLine = keyLine >= 0 ? spelling.toByteArray() : toCp1252(k);
    newLine += '=';
    newLine += toCp1252(value);
    newLine += "\r\n";
    const qsizetype insertAfter = keyLine >= 0 ? -1 : std::max(lastKeyLine, headerLine);

    QByteArray out;
    out.reserve(file.bytes.size() + newLine.size() + s.size() + 16);
    index = 0;
    forEachLine(file.bytes, [&](QByteArrayView text) {
        const qsizetype i = index++;
        if (i == keyLine) {
            out += newLine;
            return;
        }
        out.append(text);
        out += "\r\n";
        if (i == insertAfter)
            out += newLine;
    });
    if (headerLine < 0) {
        out += '[';
        out += toCp1252(s);
        out += "]\r\n";
        out += newLine;
    }

    QSaveFile save(path);
    if (!save.open(QIODevice::WriteOnly) || save.write(out) != out.size())
        return 0;
    return save.commit() ? 1 : 0;
}

QString systemProfilePath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/veldra/profil.ini");
}

} // namespace veldra::profile
