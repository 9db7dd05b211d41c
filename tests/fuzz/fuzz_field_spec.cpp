// Any text given as a field-spec string either builds a record set or throws Erreur.
#include "base/erreur.h"
#include "recordset/field_spec.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString spec = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    try {
        const auto rs = recordset::fromFieldSpec(spec);
        rs->addNew();
        for (qsizetype i = 0; i < qsizetype(rs->fields().size()); ++i) {
            try {
                rs->setValue(i, spec.left(8));
            } catch (const veldra::Erreur&) {
            }
        }
        rs->update();
        rs->clone()->moveFirst();
        rs->close();
    } catch (const veldra::Erreur&) {
    }
    return 0;
}
