#include "carto/geometry/geos_context.h"

#include "base/erreur.h"

using veldra::Erreur;
namespace err = veldra::err;

namespace carto {

GeosContext::GeosContext() : handle_(GEOS_init_r()) {
    if (handle_ == nullptr)
        throw Erreur(err::Geos, QStringLiteral("GEOS : contexte indisponible"));
    GEOSContext_setErrorMessageHandler_r(handle_, &GeosContext::onError, this);
    GEOSContext_setNoticeMessageHandler_r(handle_, &GeosContext::onNotice, this);
}

GeosContext::~GeosContext() {
    GEOS_finish_r(handle_);
}

QString GeosContext::takeError() {
    QString message = QString::fromStdString(error_);
    error_.clear();
    return message;
}

void GeosContext::onError(const char* message, void* self) {
    static_cast<GeosContext*>(self)->error_ = message ? message : "";
}

void GeosContext::onNotice(const char* message, void* self) {
    static_cast<GeosContext*>(self)->notice_ = message ? message : "";
}

GeosContext& geosContext() {
    thread_local GeosContext context;
    return context;
}

void throwGeosError(const char* operation) {
    QString message = geosContext().takeError();
    if (message.isEmpty())
        message = QStringLiteral("échec de %1").arg(QString::fromUtf8(operation));
    throw Erreur(err::Geos, QStringLiteral("GEOS : ") + message);
}

} // namespace carto
