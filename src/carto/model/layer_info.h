#pragma once
// The description of a layer to create in a map: a type (6, a temporary layer living in
// memory) and named parameters: "Name" (text), "Fields" (columns), "TableStorageType"
// ("MemTable"), "Features" (features to copy into it).

#include "carto/model/features.h"

#include <QString>
#include <map>
#include <variant>
#include <vector>

namespace carto {

// Integer holds 32 bits, Integer64 64 bits.
enum class FieldType { Text, Integer, Real, Date, Integer64 };

struct FieldDef {
    QString name;
    FieldType type = FieldType::Text;
    int width = 0; // characters, for text; 0 for no limit
};

using FieldList = std::vector<FieldDef>;

inline constexpr int LayerInfoTemporary = 6;

struct LayerInfo {
    using Parameter = std::variant<QString, FieldList, Features>;

    int type = LayerInfoTemporary;
    std::map<QString, Parameter> parameters;

    void addParameter(const QString& name, Parameter value) {
        parameters.insert_or_assign(name, std::move(value));
    }
};

} // namespace carto
