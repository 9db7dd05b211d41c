#pragma once
// The hourglass while the control works: set on construction, the default pointer back on
// destruction, so every set is paired with its restore whatever happens in between.

#include <QCursor>
#include <QGuiApplication>

namespace veldra {

class Sablier {
public:
    Sablier() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Sablier() { QGuiApplication::restoreOverrideCursor(); }
    Sablier(const Sablier&) = delete;
    Sablier& operator=(const Sablier&) = delete;
};

} // namespace veldra
