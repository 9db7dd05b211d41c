#include "dataset.h"

#include "base/erreur.h"
#include "carto/model/layer.h"

namespace carto {

using veldra::Erreur;
namespace err = veldra::err;

namespace {

// Keys compare as text, numbers without a useless fraction: 12 and 12.0 meet.
QString keyText(const QVariant& v) {
    if (!v.isValid() || v.isNull())
        return {};
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::LongLong:
    case QMetaType::Short:
        return QString::number(v.toLongLong()); // the common key, without a float's detour
    default:
        break;
    }
    bool ok = false;
    const double d = v.toDouble(&ok);
    if (ok && v.typeId() != QMetaType::QString)
        return QString::number(d, 'g', 15);
    return v.toString().trimmed();
}

} // namespace

Dataset::Dataset(QString name, Layer& layer)
    : name_(std::move(name)), kind_(DatasetKind::Layer), layer_(&layer) {
    for (const FieldDef& f : layer.fields())
        columns_ << f.name;
}

Dataset::Dataset(QString name, Layer& layer, const recordset::Recordset& rows,
                 const QString& geoField, const QString& bindField)
    : name_(std::move(name)), kind_(DatasetKind::Recordset), layer_(&layer), geoField_(geoField) {
    if (!bindField.isEmpty()) {
        const qsizetype bound = layer.fieldIndex(bindField);
        if (bound < 0)
            throw Erreur(err::ChampInconnu,
                         QStringLiteral("La colonne « %1 » est introuvable dans la couche « %2 ».")
                             .arg(bindField, layer.name()));
        bindField_ = layer.fields()[size_t(bound)].name;
        bindColumn_ = bound;
    }
    for (const auto& f : rows.fields())
        columns_ << f.name;
    const qsizetype key = column(geoField);
    auto cursor = rows.clone();
    if (cursor->recordCount() > 0)
        for (cursor->moveFirst(); !cursor->eof(); cursor->moveNext()) {
            std::vector<QVariant> values;
            for (qsizetype i = 0; i < columns_.size(); ++i)
                values.push_back(cursor->value(i));
            // The first record of a key wins, as a join would take it; a record without a
            // key designates nothing.
            const QString k = keyText(values[size_t(key)]);
            if (!k.isEmpty() && !rowsByKey_.contains(k))
                rowsByKey_.insert(k, std::move(values));
        }
}

Dataset::~Dataset() = default;

QStringList Dataset::fieldNames() const {
    return columns_;
}

qsizetype Dataset::column(QStringView name) const {
    for (qsizetype i = 0; i < columns_.size(); ++i)
        if (QStringView(columns_[i]).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    throw Erreur(err::ChampInconnu, QStringLiteral("La colonne « %1 » est introuvable dans le jeu "
                                                   "de données « %2 ».")
                                        .arg(name.toString(), name_));
}

QString Dataset::field(QStringView name) const {
    return columns_[column(name)];
}

QVariant Dataset::value(const Feature& f, QStringView field) const {
    const qsizetype c = column(field);
    if (kind_ == DatasetKind::Layer)
        return f.attribute(columns_[c]);
    QVariant key(f.fid());
    if (bindColumn_ >= 0)
        key = f.attributeAt(bindColumn_);
    const QString k = keyText(key);
    if (k.isEmpty())
        return {};
    const auto it = rowsByKey_.constFind(k);
    return it == rowsByKey_.constEnd() ? QVariant() : (*it)[size_t(c)];
}

std::vector<QVariant> Dataset::values(QStringView field) const {
    std::vector<QVariant> out;
    out.reserve(size_t(layer_->featureCount()));
    layer_->forEachFeature([&](const Feature& f) { out.push_back(value(f, field)); });
    return out;
}

Theme& Dataset::addTheme(ThemeKind kind, QStringView field, const QString& name) {
    removeTheme(name);
    themes_.push_back(std::make_unique<Theme>(*this, kind, this->field(field), name));
    return *themes_.back();
}

Theme* Dataset::theme(QStringView name) {
    for (const auto& t : themes_)
        if (QStringView(t->name()).compare(name, Qt::CaseInsensitive) == 0)
            return t.get();
    return nullptr;
}

void Dataset::removeTheme(QStringView name) {
    std::erase_if(themes_, [&](const std::unique_ptr<Theme>& t) {
        return QStringView(t->name()).compare(name, Qt::CaseInsensitive) == 0;
    });
}

} // namespace carto
