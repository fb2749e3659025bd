#include <QAccessible>
#include <QApplication>
#include <QFile>
#include <QGenericPlugin>
#include <QSaveFile>
#include <QTimer>
#include <QWidget>

namespace {

constexpr int intervalMs = 100;

QString lineOf(const QAccessibleInterface& thing) {
    const QAccessible::State state = thing.state();
    return QStringList{QString::number(thing.role()),
                       state.invisible || state.offscreen ? QStringLiteral("hidden")
                                                          : QStringLiteral("visible"),
                       state.disabled ? QStringLiteral("disabled") : QStringLiteral("enabled"),
                       thing.text(QAccessible::Name), thing.text(QAccessible::Description)}
               .join(QLatin1Char('\t')) +
           QLatin1Char('\n');
}

QString treeOf(QAccessibleInterface* thing) {
    if (thing == nullptr || !thing->isValid()) {
        return {};
    }
    QString text = lineOf(*thing);
    for (int i = 0; i < thing->childCount(); ++i) {
        text += treeOf(thing->child(i));
    }
    return text;
}

void writeAll(const QString& fileName) {
    QString text;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (window->isVisible()) {
            text += treeOf(QAccessible::queryAccessibleInterface(window));
        }
    }
    QSaveFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0) {
        file.commit();
    }
}

} // namespace

/// Looks at a program from inside, as an assistive tool would, and writes down what it has in its
/// visible windows: one line for each thing with role (QAccessible::Role), "visible" or "hidden",
/// "enabled" or "disabled", name and description, separated by tabs. Begun by
/// QT_QPA_GENERIC_PLUGINS "kestrelwitness:FILE"; the file is written anew again and again.
class Witness : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "witness.json")

public:
    QObject* create(const QString& name, const QString& fileName) override {
        if (name != QLatin1String("kestrelwitness")) {
            return nullptr;
        }
        auto* const timer = new QTimer;
        QObject::connect(timer, &QTimer::timeout, timer, [fileName] { writeAll(fileName); });
        timer->start(intervalMs);
        return timer;
    }
};

#include "witness.moc"
