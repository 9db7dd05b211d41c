#include "columns.h"

namespace recordset {

void Column::appendNull() {
    null_.push_back(1);
    switch (type_) {
    case DataType::SmallInt:
        int16_.push_back(0);
        break;
    case DataType::Double:
        double_.push_back(0);
        break;
    case DataType::Boolean:
        bool_.push_back(0);
        break;
    case DataType::Date:
        date_.emplace_back();
        break;
    case DataType::VarWChar:
        text_.emplace_back();
        break;
    }
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
    if (!stored.isValid()) {
        setNull(row);
        return;
    }
    switch (type_) {
    case DataType::SmallInt:
        setInt16(row, stored.value<qint16>());
        break;
    case DataType::Double:
        setDouble(row, stored.toDouble());
        break;
    case DataType::Boolean:
        setBool(row, stored.toBool());
        break;
    case DataType::Date:
        setDate(row, stored.toDateTime());
        break;
    case DataType::VarWChar:
        setText(row, stored.toString());
        break;
    }
}

void Column::setInt16(size_t row, qint16 v) {
    int16_[row] = v;
    null_[row] = 0;
}

void Column::setDouble(size_t row, double v) {
    double_[row] = v;
    null_[row] = 0;
}

void Column::setBool(size_t row, bool v) {
    bool_[row] = v ? 1 : 0;
    null_[row] = 0;
}

void Column::setDate(size_t row, const QDateTime& v) {
    date_[row] = v;
    null_[row] = 0;
}

void Column::setText(size_t row, const QString& v) {
    text_[row] = v;
    null_[row] = 0;
}

} // namespace recordset
