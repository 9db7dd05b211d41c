#include "cp1252.h"

#include <QHash>
#include <array>
#include <iconv.h>
#include <memory>

namespace veldra {
namespace {

struct IconvCloser {
    void operator()(void* cd) const { iconv_close(static_cast<iconv_t>(cd)); }
};

// The code page is single-byte: one table of its 256 characters, read once from iconv,
// serves both directions.
struct Table {
    std::array<char16_t, 256> toUnicode{};
    QHash<char16_t, char> fromUnicode;

    Table() {
        const std::unique_ptr<void, IconvCloser> cd(iconv_open("UTF-16LE", "WINDOWS-1252"));
        for (int b = 0; b < 256; ++b) {
            char16_t unit = char16_t(b); // undefined bytes keep their own value
            if (cd.get() != reinterpret_cast<void*>(-1)) {
                char in = char(b);
                char out[4] = {};
                char* pin = &in;
                char* pout = out;
                size_t inLeft = 1;
                size_t outLeft = sizeof out;
                if (iconv(static_cast<iconv_t>(cd.get()), &pin, &inLeft, &pout, &outLeft) !=
                        size_t(-1) &&
                    outLeft == 2)
                    unit = char16_t(uchar(out[0]) | (uchar(out[1]) << 8));
            }
            toUnicode[size_t(b)] = unit;
            fromUnicode.insert(unit, char(b));
        }
    }
};

const Table& table() {
    static const Table t;
    return t;
}

} // namespace

QByteArray toCp1252(QStringView text) {
    const Table& t = table();
    QByteArray out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i; // one "?" for the whole character
        const auto it = t.fromUnicode.constFind(c.unicode());
        out.append(it != t.fromUnicode.constEnd() ? *it : '?');
    }
    return out;
}

QString fromCp1252(QByteArrayView bytes) {
    const Table& t = table();
    QString out(bytes.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i)
        out[i] = QChar(t.toUnicode[uchar(bytes[i])]);
    return out;
}

} // namespace veldra
