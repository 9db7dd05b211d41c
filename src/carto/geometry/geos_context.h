#pragma once
// Access to GEOS through its reentrant API only. Each thread gets its own context on first
// use, destroyed when the thread ends; the context keeps the last error and notice GEOS
// reported, so that a failed call becomes an Erreur carrying GEOS's own message.
//
// Geometries do not belong to a context: one made on a thread may be used and destroyed on
// another, each call going through the calling thread's context. Do not keep a Geometry in
// a variable of static storage duration: it could outlive the context of the main thread.

#include <QString>
#include <geos_c.h>
#include <memory>
#include <string>

namespace carto {

class GeosContext {
public:
    GeosContext();
    ~GeosContext();
    GeosContext(const GeosContext&) = delete;
    GeosContext& operator=(const GeosContext&) = delete;

    GEOSContextHandle_t handle() const noexcept { return handle_; }

    // The last error reported since the previous call, then forgets it; empty when none.
    QString takeError();
    // The last notice (GEOSisValid_r explains an invalid geometry there).
    QString lastNotice() const { return QString::fromStdString(notice_); }

private:
    static void onError(const char* message, void* self);
    static void onNotice(const char* message, void* self);

    GEOSContextHandle_t handle_;
    std::string error_;
    std::string notice_;
};

// This thread's context, created on first use.
GeosContext& geosContext();
inline GEOSContextHandle_t geos() {
    return geosContext().handle();
}

// Throws Erreur(err::Geos, "GEOS : " + the message GEOS reported), or names the operation
// when GEOS failed without a message.
[[noreturn]] void throwGeosError(const char* operation);

// unique_ptr deleter for a GEOS object released by one of its *_destroy_r functions.
template <typename T, auto Destroy> struct GeosDeleter {
    void operator()(T* p) const noexcept { Destroy(geos(), p); }
};
template <typename T, auto Destroy> using GeosPtr = std::unique_ptr<T, GeosDeleter<T, Destroy>>;

// Text and buffers that GEOS allocates for the caller.
struct GeosFree {
    void operator()(void* p) const noexcept { GEOSFree_r(geos(), p); }
};
using GeosString = std::unique_ptr<char, GeosFree>;

} // namespace carto
