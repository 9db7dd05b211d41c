#include "theme.h"

#include "carto/model/dataset.h"
#include "carto/model/feature.h"

#include <QSet>
#include <algorithm>
#include <cmath>

namespace carto {
namespace {

constexpr int kRangeCount = 5;

// Colours the engine gives categories before a host sets its own: light to dark.
Colour rampColour(size_t i, size_t n) {
    const double t = n > 1 ? double(i) / double(n - 1) : 0.0;
    const int r = int(255 - t * 155), g = int(235 - t * 175), b = int(200 - t * 160);
    return Colour(r | (g << 8) | (b << 16));
}

bool numberOf(const QVariant& v, double& d) {
    if (!v.isValid() || v.isNull())
        return false;
    bool ok = false;
    d = v.toDouble(&ok);
    return ok && std::isfinite(d);
}

QString valueText(const QVariant& v) {
    return v.isValid() ? v.toString() : QString();
}

} // namespace

Theme::Theme(const Dataset& dataset, ThemeKind kind, QString field, QString name)
    : dataset_(&dataset), kind_(kind), field_(std::move(field)), name_(std::move(name)) {
    recompute();
}

void Theme::recompute() {
    const std::vector<QVariant> values = dataset_->values(field_);
    std::vector<ThemeCategory> cats;
    numeric_ = kind_ == ThemeKind::Ranges && !values.empty() &&
               std::all_of(values.begin(), values.end(), [](const QVariant& v) {
                   double d;
                   return !v.isValid() || v.isNull() ||
                          (v.typeId() != QMetaType::QString && numberOf(v, d));
               });
    if (numeric_) {
        double lo = HUGE_VAL, hi = -HUGE_VAL, d = 0;
        for (const QVariant& v : values)
            if (numberOf(v, d)) {
                lo = std::min(lo, d);
                hi = std::max(hi, d);
            }
        if (lo <= hi) {
            const int n = lo == hi ? 1 : kRangeCount;
            const double step = (hi - lo) / n;
            for (int i = 0; i < n; ++i) {
                ThemeCategory c;
                c.min = lo + step * i;
                c.max = i == n - 1 ? hi : lo + step * (i + 1);
                cats.push_back(c);
            }
        }
    } else {
        // One category per distinct non-empty value, in ascending order: the values are made
        // distinct first, so the numeric comparison runs on the categories only.
        QSet<QString> seen;
        for (const QVariant& v : values)
            if (QString t = valueText(v); !t.isEmpty())
                seen.insert(std::move(t));
        std::vector<QString> distinct(seen.begin(), seen.end());
        std::sort(distinct.begin(), distinct.end(), [](const QString& a, const QString& b) {
            bool oa = false, ob = false;
            const double da = a.toDouble(&oa), db = b.toDouble(&ob);
            return oa && ob ? da < db : a.localeAwareCompare(b) < 0;
        });
        for (const QString& t : distinct)
            cats.push_back(ThemeCategory{t, 0, 0, {}});
    }
    for (size_t i = 0; i < cats.size(); ++i) {
        cats[i].style.regionColor =
            i < categories_.size() ? categories_[i].style.regionColor : rampColour(i, cats.size());
        cats[i].style.regionPattern = pattern::Solid;
    }
    categories_ = std::move(cats);
    indexOfValue_.clear();
    if (!numeric_)
        for (size_t i = 0; i < categories_.size(); ++i)
            indexOfValue_.insert(categories_[i].value.toString(), int(i));
    legend.texts.clear();
    for (const ThemeCategory& c : categories_)
        legend.texts.push_back(numeric_ ? QStringLiteral("%1 - %2").arg(c.min).arg(c.max)
                                        : c.value.toString());
}

int Theme::categoryOf(const Feature& f) const {
    const QVariant v = dataset_->value(f, field_);
    if (numeric_) {
        double d = 0;
        if (!numberOf(v, d))
            return -1;
        for (size_t i = 0; i < categories_.size(); ++i)
            if (d >= categories_[i].min && (d < categories_[i].max || i == categories_.size() - 1))
                return int(i);
        return -1;
    }
    return indexOfValue_.value(valueText(v), -1);
}

} // namespace carto
