#include "plan_reader.h"

#include <QFile>
#include <ogr_featurestyle.h>
#include <sstream>

namespace planfile {

GDALDatasetUniquePtr openVector(const QString& path) {
    GDALAllRegister();
    return GDALDatasetUniquePtr(
        GDALDataset::Open(QFile::encodeName(path).constData(), GDAL_OF_VECTOR | GDAL_OF_READONLY));
}

std::vector<OGRFeatureUniquePtr> readFeatures(GDALDataset& ds, const char* layer) {
    std::vector<OGRFeatureUniquePtr> out;
    OGRLayer* l = ds.GetLayerByName(layer);
    if (l == nullptr)
        return out;
    l->ResetReading();
    while (OGRFeatureUniquePtr f{l->GetNextFeature()})
        out.push_back(std::move(f));
    return out;
}

std::vector<OrderRow> layerOrder(GDALDataset& ds) {
    std::vector<OrderRow> rows;
    OGRLayer* result =
        ds.ExecuteSQL("SELECT position, layer_name, source FROM mapset_layers ORDER BY position",
                      nullptr, nullptr);
    if (result == nullptr)
        return rows;
    // GDAL hands an INTEGER PRIMARY KEY back as the row's FID, not as a field.
    const OGRFeatureDefn* defn = result->GetLayerDefn();
    const int position = defn->GetFieldIndex("position");
    const int layer = defn->GetFieldIndex("layer_name");
    const int source = defn->GetFieldIndex("source");
    while (OGRFeatureUniquePtr f{result->GetNextFeature()}) {
        rows.push_back(
            {position >= 0 ? f->GetFieldAsInteger(position) : static_cast<int>(f->GetFID()),
             QString::fromUtf8(f->GetFieldAsString(layer)),
             f->IsFieldSetAndNotNull(source) ? QString::fromUtf8(f->GetFieldAsString(source))
                                             : QStringLiteral("(null)")});
    }
    ds.ReleaseResultSet(result);
    return rows;
}

std::vector<QString> queryRow(GDALDataset& ds, const char* sql) {
    std::vector<QString> values;
    OGRLayer* result = ds.ExecuteSQL(sql, nullptr, nullptr);
    if (result == nullptr)
        return values;
    if (const OGRFeatureUniquePtr f{result->GetNextFeature()})
        for (int i = 0; i < f->GetFieldCount(); ++i)
            values.push_back(QString::fromUtf8(f->GetFieldAsString(i)));
    ds.ReleaseResultSet(result);
    return values;
}

std::string dump(GDALDataset& ds, const std::vector<const char*>& layers) {
    std::ostringstream out;
    for (const char* name : layers) {
        out << "# " << name << '\n';
        for (const OGRFeatureUniquePtr& f : readFeatures(ds, name)) {
            out << f->GetFID();
            if (const OGRGeometry* g = f->GetGeometryRef())
                out << '|' << g->exportToWkt();
            for (int i = 0; i < f->GetFieldCount(); ++i)
                out << '|' << f->GetFieldAsString(i);
            out << '\n';
        }
    }
    return out.str();
}

std::vector<std::string> styleParts(const char* style) {
    std::vector<std::string> kinds;
    OGRStyleMgr mgr;
    if (!mgr.InitStyleString(style))
        return kinds;
    for (int i = 0; i < mgr.GetPartCount(); ++i) {
        const std::unique_ptr<OGRStyleTool> part(mgr.GetPart(i));
        if (!part)
            return {};
        switch (part->GetType()) {
        case OGRSTCPen:
            kinds.emplace_back("PEN");
            break;
        case OGRSTCBrush:
            kinds.emplace_back("BRUSH");
            break;
        case OGRSTCSymbol:
            kinds.emplace_back("SYMBOL");
            break;
        case OGRSTCLabel:
            kinds.emplace_back("LABEL");
            break;
        default:
            kinds.emplace_back("?");
        }
    }
    return kinds;
}

std::unique_ptr<OGRStyleTool> stylePart(const char* style, int index) {
    OGRStyleMgr mgr;
    if (!mgr.InitStyleString(style))
        return nullptr;
    std::unique_ptr<OGRStyleTool> part(mgr.GetPart(index));
    if (part)
        part->SetUnit(OGRSTUGround, 1.0);
    return part;
}

QString text(const OGRFeature& f, const char* field) {
    return QString::fromUtf8(f.GetFieldAsString(field));
}

} // namespace planfile
