#include <QObject>
#include <QtPlugin>

/// A Qt plug-in that is no module of the front end.
class OtherPlugin : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.kestrel.tests.OtherPlugin")
};

#include "otherplugin.moc"
