#pragma once

#include "backendversions.h"
#include "iomanager.h"

#include <QMetaType>

// The pointers that ModuleInterface::set_param hands over inside a QVariant.
Q_DECLARE_METATYPE(IOManager*)
Q_DECLARE_METATYPE(BackendVersions*)
