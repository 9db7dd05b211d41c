#pragma once
// RAII owners of GDAL/OGR handles used by the storage code.

#include <gdal_priv.h>
#include <memory>
#include <ogr_feature.h>
#include <ogrsf_frmts.h>
#include <optional>
#include <string>

namespace carto::gdal {

struct ResultSetReleaser {
    GDALDataset* dataset = nullptr;
    void operator()(OGRLayer* layer) const {
        if (dataset && layer)
            dataset->ReleaseResultSet(layer);
    }
};

// A layer returned by ExecuteSQL, given back to its dataset when done.
using ResultSet = std::unique_ptr<OGRLayer, ResultSetReleaser>;

inline ResultSet executeSql(GDALDataset& ds, const char* sql) {
    return ResultSet(ds.ExecuteSQL(sql, nullptr, nullptr), ResultSetReleaser{&ds});
}

// GDAL writes its errors to stderr by default; storage code reads them from
// CPLGetLastErrorMsg instead, while this guard lives. It starts with no error pending, so
// what CPLGetLastErrorMsg says afterwards belongs to the guarded calls.
class QuietErrors {
public:
    QuietErrors() {
        CPLPushErrorHandler(CPLQuietErrorHandler);
        CPLErrorReset();
    }
    ~QuietErrors() { CPLPopErrorHandler(); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;
};

// A GDAL configuration option set for this thread only while the guard lives: a control
// inside someone else's program leaves GDAL's global options alone.
class ThreadOption {
public:
    ThreadOption(const char* key, const char* value) : key_(key) {
        if (const char* was = CPLGetThreadLocalConfigOption(key, nullptr))
            was_ = was;
        CPLSetThreadLocalConfigOption(key, value);
    }
    ~ThreadOption() { CPLSetThreadLocalConfigOption(key_, was_ ? was_->c_str() : nullptr); }
    ThreadOption(const ThreadOption&) = delete;
    ThreadOption& operator=(const ThreadOption&) = delete;

private:
    const char* key_;
    std::optional<std::string> was_;
};

} // namespace carto::gdal
