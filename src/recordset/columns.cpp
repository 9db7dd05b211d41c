#include "columns.h"

namespace recordset {

void Column::appendNull() {
    null_.push_back(1);
    withValues([](auto& values) { values.emplace_back(); });
}

namespace {
template <typename T> void eraseAt(std::vector<T>& v, size_t row) {
    if (row < v.size())
        v.erase(v.begin() + std::ptrdiff_t(row));
}
} // namespace

void Column::erase(size_t row) {
    eraseAt(null_, row);
    eraseAt(int16_, row);
    eraseAt(double_, row);
    eraseAt(bool_, row);
    eraseAt(date_, row);
    eraseAt(text_, row);
}

QVariant Column::get(size_t row) const {
    if (null_[row])
        return {};
    switch (type_) {
    case DataType::SmallInt:
        return QVariant::fromValue(int16_[row]);
    case DataType::Double:
        return QVariant(double_[row]);
    case DataType::Boolean:
        return QVariant(bool_[row] != 0);
    case DataType::Date:
        return QVariant(date_[row]);
    case DataType::VarWChar:
        return QVariant(text_[row]);
    }
    return {};
}

void Column::set(size_t row, const QVariant& stored) {
    null_[row] = stored.isValid() ? 0 : 1;
    if (!stored.isValid())
        return;
    // toColumn made it the column's own type: read it in place.
    const void* v = stored.constData();
    switch (type_) {
    case DataType::SmallInt:
        int16_[row] = *static_cast<const qint16*>(v);
        break;
    case DataType::Double:
        double_[row] = *static_cast<const double*>(v);
        break;
    case DataType::Boolean:
        bool_[row] = *static_cast<const bool*>(v) ? 1 : 0;
        break;
    case DataType::Date:
        date_[row] = *static_cast<const QDateTime*>(v);
        break;
    case DataType::VarWChar:
        text_[row] = *static_cast<const QString*>(v);
        break;
    }
}

void Column::setText(size_t row, const QString& text) {
    null_[row] = 0;
    text_[row] = text;
}

void Column::setDouble(size_t row, double number) {
    null_[row] = 0;
    double_[row] = number;
}

void Column::setInt16(size_t row, qint16 number) {
    null_[row] = 0;
    int16_[row] = number;
}

void Column::reserve(size_t rows) {
    null_.reserve(rows);
    withValues([rows](auto& values) { values.reserve(rows); });
}

} // namespace recordset
