#pragma once
// The engine's objects as variants, for late binding.

#include "carto/model/map.h"
#include "recordset/recordset.h"

#include <QMetaType>

Q_DECLARE_METATYPE(carto::Layer*)
Q_DECLARE_METATYPE(carto::Dataset*)
Q_DECLARE_METATYPE(carto::Features)
Q_DECLARE_METATYPE(carto::Feature)
Q_DECLARE_METATYPE(RecordsetPtr)
