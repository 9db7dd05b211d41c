#pragma once
// Windows-1252, the 8-bit code page of the settings file and the analysis report, through
// glibc's iconv. A character the code page lacks becomes "?", as the platform's own
// conversion does; the five bytes the code page leaves undefined map to the C1 controls
// of the same value, so any byte string decodes and encodes back unchanged.

#include <QByteArray>
#include <QString>

namespace veldra {

QByteArray toCp1252(QStringView text);
QString fromCp1252(QByteArrayView bytes);

} // namespace veldra
