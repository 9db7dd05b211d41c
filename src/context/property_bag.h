#pragma once
// The container's store of design-time properties: keys to values. A value equal to its
// default is not stored, so a bag holds only what differs from the defaults.

#include <QString>
#include <QVariantMap>

namespace veldra {

class PropertyBag {
public:
    QVariant ReadProperty(const QString& key, const QVariant& defaut) const {
        return values_.value(key, defaut);
    }
    void WriteProperty(const QString& key, const QVariant& value, const QVariant& defaut) {
        if (value == defaut)
            values_.remove(key);
        else
            values_.insert(key, value);
    }
    bool contains(const QString& key) const { return values_.contains(key); }
    const QVariantMap& values() const { return values_; }
    void setValues(QVariantMap values) { values_ = std::move(values); }

private:
    QVariantMap values_;
};

} // namespace veldra
