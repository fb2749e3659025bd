#include "general/host/hostparameters.h"

#include "host_api/backendversions.h"
#include "host_api/iomanager.h"
#include "host_api/metatypes.h"

void hostparameters::take(const QString& key, const QVariant& value, IOManager*& iom,
                          QPointer<QWidget>& parent, BackendVersions*& versions) {
    if (key == QLatin1String("CommandManager")) {
        iom = value.value<IOManager*>();
    } else if (key == QLatin1String("ModuleParent")) {
        parent = value.value<QWidget*>();
    } else if (key == QLatin1String("BackendVersions")) {
        versions = value.value<BackendVersions*>();
    }
}
