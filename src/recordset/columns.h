#pragma once
// The rows of a record set stored column by column: numbers unboxed, texts as QStrings in
// place, a null flag per cell. Filling a numeric column allocates nothing beyond the
// column's own growth, and a whole column reads as one array.

#include "value.h"

#include <QDateTime>
#include <QString>
#include <QVariant>
#include <cstdint>
#include <vector>

namespace recordset {

class Column {
public:
    explicit Column(DataType type) : type_(type) {}

    // A new row, Null in this column.
    void appendNull();
    void erase(size_t row);

    QVariant get(size_t row) const;
    // Stores a value already made what the column holds (toColumn's result) or Null.
    void set(size_t row, const QVariant& stored);
    // In a column of that type.
    void setText(size_t row, const QString& text);
    void setDouble(size_t row, double number);
    void setInt16(size_t row, qint16 number);
    void reserve(size_t rows);

private:
    // Calls f with the vector that holds this column's type.
    template <typename F> void withValues(F&& f) {
        switch (type_) {
        case DataType::SmallInt:
            return f(int16_);
        case DataType::Double:
            return f(double_);
        case DataType::Boolean:
            return f(bool_);
        case DataType::Date:
            return f(date_);
        case DataType::VarWChar:
            return f(text_);
        }
    }

    DataType type_;
    std::vector<std::uint8_t> null_;
    std::vector<qint16> int16_;
    std::vector<double> double_;
    std::vector<std::uint8_t> bool_;
    std::vector<QDateTime> date_;
    std::vector<QString> text_;
};

} // namespace recordset
