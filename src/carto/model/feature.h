#pragma once
// A feature as handed out by a layer: a value holding the feature's data (shared with the
// layer until it is changed), its FID and the layer it came from. Changing a Feature
// changes only this value; Layer::updateFeature writes it back (and through to storage).
// A default-constructed Feature is detached: it belongs to no layer and has no FID.
//
// A feature of a layer's columns is read there until its data is asked for or changed;
// its data is then made, once. A Feature is read on one thread at a time.

#include "carto/geometry/geometry.h"
#include "carto/model/feature_columns.h"
#include "carto/model/feature_data.h"

#include <QString>
#include <QVariant>
#include <memory>

namespace carto {

class Layer;

class Feature {
public:
    Feature();
    Feature(const Layer* layer, qint64 fid, FeaturePtr data);
    Feature(const Layer* layer, qint64 fid, std::shared_ptr<const FeatureColumns> columns,
            size_t row);

    // New detached features.
    static Feature region(const Parts& rings, const Style& style = {});
    static Feature line(const Parts& lines, const Style& style = {});
    static Feature symbol(Point at, const Style& style = {});
    static Feature textAt(Point anchor, const QString& text, const Style& style = {});
    static Feature fromGeometry(const Geometry& g, const Style& style = {});

    bool isValid() const { return data_ != nullptr || columns_ != nullptr; }
    FeatureKind kind() const;
    const Layer* layer() const { return layer_; }
    qint64 fid() const { return fid_; }
    QString uniqueKey() const; // the FID as text; "" when detached

    // Geometry
    const Shape& parts() const;
    int numParts() const;
    Point point(int part, int index) const;
    void setPoint(int part, int index, Point p);
    void setParts(Parts parts);
    Point centre() const; // centroid of a region, centre of the bounds otherwise
    Rect bounds() const;
    double area() const;   // regions only; 0 otherwise
    double length() const; // lines and region borders
    Geometry geometry() const;
    void offset(double dx, double dy);

    // Texts
    QString text() const;
    void setText(const QString& text);

    const Style& style() const;
    void setStyle(const Style& style);

    // Attributes by column name, without regard to case; Erreur for an unknown column.
    QVariant attribute(QStringView column) const;
    void setAttribute(QStringView column, const QVariant& value);
    // By the layer's column index (Layer::fieldIndex), for loops over many features;
    // Null for an index the feature has no value at.
    QVariant attributeAt(qsizetype column) const;
    // The value in the layer's key column.
    QVariant keyValue() const;
    void setKeyValue(const QVariant& value);

    const FeatureData& data() const;
    FeaturePtr shared() const;
    // What drawing and testing read, without making the data; Erreur when detached.
    FeatureView view() const;

    // Used by layers when a feature is stored or copied into them.
    void attach(const Layer* layer, qint64 fid, FeaturePtr data);

private:
    FeatureData& edit(); // detaches from the shared data
    qsizetype column(QStringView name) const;

    const Layer* layer_ = nullptr;
    qint64 fid_ = -1;
    mutable FeaturePtr data_; // made from the columns when first needed
    std::shared_ptr<const FeatureColumns> columns_;
    size_t row_ = 0;
};

// A region's geometry from its rings: a ring inside an odd number of others is a hole.
Geometry regionGeometry(const Parts& rings);
Geometry geometryOf(const FeatureData& data);
Geometry geometryOf(const FeatureView& data);

// Recomputes the derived parts of the data (bounds; texts measured with their font).
void refreshDerived(FeatureData& data);

} // namespace carto
