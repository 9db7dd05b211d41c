#pragma once
// A child widget created with its object name, which tests and the host's scripts find it by.

#include <QString>
#include <QWidget>

namespace veldra {

template <typename T> T* cree(QWidget* parent, const char* nom) {
    auto* w = new T(parent);
    w->setObjectName(QString::fromLatin1(nom));
    return w;
}

} // namespace veldra
