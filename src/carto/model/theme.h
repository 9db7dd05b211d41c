#pragma once
// A thematic colouring of a dataset's layer: individual values (kind 5, one category per
// distinct value) or ranges (kind 0: equal ranges of a numeric column, one category per
// distinct value for a text column), each category with its style and its legend text.

#include "carto/model/style.h"

#include <QHash>
#include <QString>
#include <QVariant>
#include <vector>

namespace carto {

class Dataset;
class Feature;

enum class ThemeKind : int { Ranges = 0, IndividualValues = 5 };

struct ThemeCategory {
    QVariant value;          // individual values and text ranges
    double min = 0, max = 0; // numeric ranges: [min, max)
    Style style;
};

struct Legend {
    QString title;
    QString subtitle;
    std::vector<QString> texts; // one per category
    // The three display switches: legend shown, title shown, counts shown.
    bool visible = true;
    bool showTitle = true;
    bool showCounts = true;
};

class Theme {
public:
    Theme(const Dataset& dataset, ThemeKind kind, QString field, QString name);

    ThemeKind kind() const { return kind_; }
    const QString& field() const { return field_; }
    const QString& name() const { return name_; }
    const Dataset& dataset() const { return *dataset_; }

    std::vector<ThemeCategory>& categories() { return categories_; }
    const std::vector<ThemeCategory>& categories() const { return categories_; }
    Legend legend;

    // The category that colours a feature of the bound layer; -1 when none. Individual
    // values are found by a hash of the categories, so a theme of thousands of values
    // draws as fast as one of ten.
    int categoryOf(const Feature& f) const;
    // Rebuilds the categories from the data (styles of the first ones kept) and resets the
    // legend texts to the categories' values.
    void recompute();

private:
    const Dataset* dataset_;
    ThemeKind kind_;
    QString field_;
    QString name_;
    bool numeric_ = false;
    std::vector<ThemeCategory> categories_;
    QHash<QString, int> indexOfValue_; // individual values and text ranges
};

} // namespace carto
