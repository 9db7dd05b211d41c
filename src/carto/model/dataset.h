#pragma once
// Data bound to a layer: its own table (kind 6) or a host record set (kind 12) whose
// geographic key column matches a column of the layer, the bind column, chosen when the
// dataset is made (the layer's key column at that moment unless named). The match is made
// on the features' current values, so a record set follows the features it designates
// through edits: a plot moved, reshaped or added with a known key keeps or takes its
// record. Datasets carry the themes and the label values of their layer.

#include "carto/model/theme.h"
#include "recordset/recordset.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

namespace carto {

class Layer;
class Feature;

enum class DatasetKind : int { Layer = 6, Recordset = 12 };

class Dataset {
public:
    // Kind 6 over a layer's table.
    Dataset(QString name, Layer& layer);
    // Kind 12 from a record set; the rows are read once, so the host may close it. Rows
    // match the features whose `bindField` value equals their `geoField` value (the FID
    // when `bindField` is empty). Erreur (ChampInconnu) when either column is missing.
    Dataset(QString name, Layer& layer, const recordset::Recordset& rows, const QString& geoField,
            const QString& bindField);
    ~Dataset();

    const QString& name() const { return name_; }
    DatasetKind kind() const { return kind_; }
    Layer& layer() const { return *layer_; }
    const QString& geoField() const { return geoField_; }
    const QString& bindField() const { return bindField_; }

    QStringList fieldNames() const;
    // The field's name as the dataset spells it; Erreur when absent.
    QString field(QStringView name) const;
    // The field's value for a feature of the bound layer (Null when no row matches).
    QVariant value(const Feature& f, QStringView field) const;
    std::vector<QVariant> values(QStringView field) const; // over all features of the layer

    Theme& addTheme(ThemeKind kind, QStringView field, const QString& name);
    Theme* theme(QStringView name);
    const std::vector<std::unique_ptr<Theme>>& themes() const { return themes_; }
    void removeTheme(QStringView name);

private:
    qsizetype column(QStringView name) const;

    QString name_;
    DatasetKind kind_;
    Layer* layer_;
    QString geoField_;
    QString bindField_;
    qsizetype bindColumn_ = -1; // its index among the layer's columns
    QStringList columns_;
    QHash<QString, std::vector<QVariant>> rowsByKey_; // kind 12: key text -> values
    std::vector<std::unique_ptr<Theme>> themes_;
};

} // namespace carto
