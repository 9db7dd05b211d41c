// Any text read as an OGR style string gives a style; written back and read again it
// settles at once: what the writer writes, the reader reads back unchanged.
#include "carto/storage/style_string.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArray text(reinterpret_cast<const char*>(data), qsizetype(size));
    const carto::ParsedStyle first = carto::parseStyleString(text);
    const carto::FeatureKind kind = first.kind.value_or(carto::FeatureKind::Region);
    const QString field = first.textField;
    const carto::ParsedStyle second =
        carto::parseStyleString(carto::styleString(kind, first.style, first.literalText, field));
    const carto::ParsedStyle third =
        carto::parseStyleString(carto::styleString(kind, second.style, second.literalText, field));
    if (!(second.style == third.style) || second.literalText != third.literalText)
        __builtin_trap();
    return 0;
}
