#include "tests/windows/texts.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTabBar>
#include <QTableView>

namespace {

class Collector {
public:
    QSet<QString> texts;

    void collect(const QWidget& widget) {
        add(widget.toolTip());
        add(widget.statusTip());
        add(widget.whatsThis());
        add(widget.accessibleName());
        add(widget.accessibleDescription());
        addProperty(widget, "text");
        addProperty(widget, "title");
        addProperty(widget, "placeholderText");
        addProperty(widget, "specialValueText");
        addProperty(widget, "currentText");
        if (widget.isWindow() || widget.inherits("QDockWidget")) {
            add(widget.windowTitle());
        }
        if (const auto* bar = qobject_cast<const QTabBar*>(&widget)) {
            for (int tab = 0; tab < bar->count(); ++tab) {
                add(bar->tabText(tab));
                add(bar->tabToolTip(tab));
                add(bar->tabWhatsThis(tab));
            }
        }
        if (const auto* view = qobject_cast<const QTableView*>(&widget)) {
            addTable(*view);
        }
    }

    void collect(const QAction& action) {
        add(action.text());
        add(action.toolTip());
        add(action.statusTip());
        add(action.whatsThis());
    }

private:
    void add(const QString& text) {
        static const QRegularExpression words(QStringLiteral("[[:alpha:]]{2}"));
        if (text.contains(words)) {
            texts << QString(text).remove(QLatin1Char('&')).trimmed();
        }
    }

    void addProperty(const QObject& object, const char* name) {
        add(object.property(name).toString());
    }

    void addTable(const QTableView& view) {
        const QAbstractItemModel& model = *view.model();
        for (int column = 0; column < model.columnCount(); ++column) {
            add(model.headerData(column, Qt::Horizontal).toString());
            for (int row = 0; row < model.rowCount(); ++row) {
                add(model.index(row, column).data().toString());
            }
        }
    }
};

// Of Qt's own making: what hides inside its widgets.
bool isInternal(const QObject& object) {
    return object.objectName().startsWith(QLatin1String("qt_")) ||
           object.objectName().startsWith(QLatin1String("_q_")) ||
           (object.parent() != nullptr && object.parent()->inherits("QTabBar"));
}

} // namespace

QSet<QString> textsOf(const QWidget& window) {
    Collector collector;
    collector.collect(window);
    const auto widgets = window.findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        if (!isInternal(*widget)) {
            collector.collect(*widget);
        }
    }
    const auto actions = window.findChildren<QAction*>();
    for (const QAction* action : actions) {
        if (!isInternal(*action)) {
            collector.collect(*action);
        }
    }
    return collector.texts;
}
