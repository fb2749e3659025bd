#include "tests/support/textfit.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDockWidget>
#include <QGroupBox>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QTabBar>
#include <QTableView>
#include <QToolButton>
#include <QToolTip>

namespace {

constexpr int lineEditMargin = 2; // beside the text, not known to the style

QSize sizeOfText(const QWidget& widget, const QString& text) {
    return widget.fontMetrics().size(Qt::TextShowMnemonic, text);
}

// As the mouse gets it.
QString toolTipOf(const QWidget& widget) {
    const QPoint inside = widget.rect().center();
    QHelpEvent asked(QEvent::ToolTip, inside, widget.mapToGlobal(inside));
    QCoreApplication::sendEvent(const_cast<QWidget*>(&widget), &asked);
    return QToolTip::text();
}

const QScrollArea* scrollAreaAround(const QWidget& widget) {
    for (const QWidget* above = widget.parentWidget(); above != nullptr && !widget.isWindow();
         above = above->parentWidget()) {
        if (const auto* area = qobject_cast<const QScrollArea*>(above)) {
            const QWidget* const page = area->widget();
            return page != nullptr && page->isAncestorOf(&widget) ? area : nullptr;
        }
    }
    return nullptr;
}

class Finder {
public:
    TextFit found;

    void look(const QWidget& widget) {
        m_widget = &widget;
        if (isMadeOfText(widget)) {
            ++found.texts;
            need(widget.minimumSizeHint(), widget.size(), QStringLiteral("at the least"));
        }
        if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
            lookAt(*label);
        } else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
            lookAt(*button);
        } else if (const auto* spin = qobject_cast<const QAbstractSpinBox*>(&widget)) {
            need(spin->sizeHint(), spin->size(), spin->text());
        } else if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
            lookAt(*combo);
        } else if (const auto* line = qobject_cast<const QLineEdit*>(&widget)) {
            lookAt(*line);
        } else if (const auto* bar = qobject_cast<const QTabBar*>(&widget)) {
            lookAt(*bar);
        } else if (const auto* header = qobject_cast<const QHeaderView*>(&widget)) {
            lookAt(*header);
        } else if (const auto* view = qobject_cast<const QTableView*>(&widget)) {
            lookAt(*view);
        } else if (const auto* area = qobject_cast<const QScrollArea*>(&widget)) {
            lookAt(*area);
        } else if (const auto* progress = qobject_cast<const QProgressBar*>(&widget)) {
            need(sizeOfText(*progress, progress->text())
                     .expandedTo({0, progress->fontMetrics().height()}),
                 progress->size(), progress->text());
        } else if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) {
            need(group->minimumSizeHint(), group->size(), group->title());
        } else if (const auto* menus = qobject_cast<const QMenuBar*>(&widget)) {
            lookAt(*menus);
        } else if (const auto* dock = qobject_cast<const QDockWidget*>(&widget)) {
            lookAt(*dock);
        }
    }

    void lookAtPlace(const QWidget& widget, const QList<QWidget*>& siblings) {
        m_widget = &widget;
        const QWidget* const parent = widget.parentWidget();
        const QRect inWindow(widget.mapTo(widget.window(), QPoint()), widget.size());
        // (Docks behind other tabs are kept outside of their window.)
        const bool isInDialog =
            widget.window()->inherits("QDialog") && scrollAreaAround(widget) == nullptr;
        if (!parent->rect().contains(widget.geometry()) ||
            (isInDialog && !widget.window()->rect().contains(inWindow))) {
            fault(QStringLiteral("stands outside of ") + parent->objectName());
        }
        for (const QWidget* other : siblings) {
            if (other == &widget) {
                break; // each pair once
            }
            if (other->isVisible() && other->geometry().intersects(widget.geometry())) {
                fault(QStringLiteral("lies on ") + other->objectName());
            }
        }
    }

private:
    void fault(const QString& what) {
        found.faults << QStringLiteral("%1 %2: %3")
                            .arg(QLatin1String(m_widget->metaObject()->className()),
                                 m_widget->objectName(), what);
    }

    // What says least how little it can do with. (The least of a label that may wrap its words is
    // for any width.)
    static bool isMadeOfText(const QWidget& widget) {
        if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
            return !label->wordWrap() && !label->text().isEmpty();
        }
        if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
            return !button->text().isEmpty() && qobject_cast<const QPushButton*>(button) == nullptr;
        }
        return qobject_cast<const QAbstractSpinBox*>(&widget) != nullptr ||
               qobject_cast<const QTabBar*>(&widget) != nullptr;
    }

    void need(const QSize& needed, const QSize& room, const QString& text) {
        if (needed.width() > room.width() || needed.height() > room.height()) {
            fault(QStringLiteral("\"%1\" needs %2x%3 of %4x%5")
                      .arg(text)
                      .arg(needed.width())
                      .arg(needed.height())
                      .arg(room.width())
                      .arg(room.height()));
        }
    }

    void lookAt(const QLabel& label) {
        if (label.text().isEmpty()) {
            return;
        }
        if (label.inherits("workbench::ElidedLabel")) {
            if (toolTipOf(label) != label.text()) {
                need(sizeOfText(label, label.text()), label.contentsRect().size(), label.text());
            }
        } else if (label.wordWrap()) {
            need({0, label.heightForWidth(label.width())}, label.size(), label.text());
        } else {
            need(label.sizeHint(), label.size(), label.text());
        }
    }

    void lookAt(const QAbstractButton& button) {
        if (button.inherits("QToolBarExtension") ||
            button.objectName() == QLatin1String("qt_menubar_ext_button")) {
            fault(QStringLiteral("entries do not fit"));
            return;
        }
        if (button.text().isEmpty()) {
            return;
        }
        ++found.buttons;
        if (qobject_cast<const QToolButton*>(&button) != nullptr) {
            need(button.sizeHint(), button.size(), button.text());
            return;
        }
        QStyleOptionButton option;
        option.initFrom(&button);
        const auto element = qobject_cast<const QCheckBox*>(&button) != nullptr
                                 ? QStyle::SE_CheckBoxContents
                                 : QStyle::SE_PushButtonContents;
        QSize needed = sizeOfText(button, button.text());
        if (!button.icon().isNull()) {
            needed += QSize(button.iconSize().width() + 4, 0);
        }
        need(needed, button.style()->subElementRect(element, &option, &button).size(),
             button.text());
    }

    void lookAt(const QComboBox& combo) {
        QStyleOptionComboBox option;
        option.initFrom(&combo);
        option.editable = combo.isEditable();
        const QRect room = combo.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                         QStyle::SC_ComboBoxEditField, &combo);
        need(sizeOfText(combo, combo.currentText()), room.size(), combo.currentText());
    }

    void lookAt(const QLineEdit& line) {
        if (qobject_cast<const QAbstractSpinBox*>(line.parentWidget()) != nullptr) {
            return; // looked at as a whole
        }
        if (line.toolTip() == line.placeholderText()) {
            return; // elided
        }
        QStyleOptionFrame option;
        option.initFrom(&line);
        option.lineWidth = line.hasFrame() ? line.style()->pixelMetric(QStyle::PM_DefaultFrameWidth,
                                                                       nullptr, &line)
                                           : 0;
        const QRect room =
            line.style()->subElementRect(QStyle::SE_LineEditContents, &option, &line);
        need(
            QSize(line.fontMetrics().horizontalAdvance(line.placeholderText()) + 2 * lineEditMargin,
                  line.fontMetrics().height()),
            room.size(), line.placeholderText());
    }

    void lookAt(const QTabBar& bar) {
        const int space = bar.style()->pixelMetric(QStyle::PM_TabBarTabHSpace, nullptr, &bar);
        for (int tab = 0; tab < bar.count(); ++tab) {
            if (bar.elideMode() != Qt::ElideNone && bar.tabToolTip(tab) == bar.tabText(tab)) {
                continue;
            }
            const QRect room = bar.tabRect(tab).intersected(bar.rect());
            need(sizeOfText(bar, bar.tabText(tab)) + QSize(space, 0), room.size(),
                 bar.tabText(tab));
        }
    }

    void lookAt(const QHeaderView& header) {
        if (header.orientation() == Qt::Vertical) {
            return; // numbers of rows; none of our windows shows them
        }
        for (int section = 0; section < header.count(); ++section) {
            const QString text = header.model()->headerData(section, Qt::Horizontal).toString();
            if (!header.isSectionHidden(section) && !text.isEmpty()) {
                ++found.headers;
                const int needed = hasFixedColumns(header)
                                       ? header.fontMetrics().horizontalAdvance(text)
                                       : header.sectionSizeHint(section);
                need({needed, header.sizeHint().height()},
                     {header.sectionSize(section), header.height()}, text);
            }
        }
    }

    void lookAt(const QTableView& view) {
        const QAbstractItemModel& model = *view.model();
        for (int row = 0; row < model.rowCount(); ++row) {
            for (int column = 0; column < model.columnCount(); ++column) {
                const QModelIndex index = model.index(row, column);
                const QString text = index.data().toString();
                const bool told = index.data(Qt::ToolTipRole).toString() == text;
                if (view.isColumnHidden(column) || text.isEmpty()) {
                    continue;
                }
                ++found.cells;
                if (!told) {
                    need(view.sizeHintForIndex(index),
                         {view.columnWidth(column), view.rowHeight(row)}, text);
                }
            }
        }
    }

    // Without a bar nobody gets to what is beyond.
    void lookAt(const QScrollArea& area) {
        if (area.widget() == nullptr) {
            return;
        }
        const QSize room = area.viewport()->size();
        QSize needed = area.widget()->size();
        if (area.horizontalScrollBarPolicy() != Qt::ScrollBarAlwaysOff) {
            needed.setWidth(0);
        }
        if (area.verticalScrollBarPolicy() != Qt::ScrollBarAlwaysOff) {
            needed.setHeight(0);
        }
        need(needed, room, QStringLiteral("all of it"));
    }

    // The live display's sheet paints headers in plain letters and without a border, where the
    // header's own hint has bold ones with margins.
    static bool hasFixedColumns(const QHeaderView& header) {
        return header.parentWidget()->objectName().startsWith(QLatin1String("tableWidget6dmt"));
    }

    void lookAt(const QMenuBar& bar) {
        const auto menus = bar.actions();
        for (const QAction* menu : menus) {
            const QRect room = bar.actionGeometry(const_cast<QAction*>(menu)) & bar.rect();
            need(sizeOfText(bar, menu->text()), room.size(), menu->text());
        }
    }

    void lookAt(const QDockWidget& dock) {
        const auto* const main = qobject_cast<const QMainWindow*>(dock.parentWidget());
        if (main != nullptr &&
            main->tabifiedDockWidgets(const_cast<QDockWidget*>(&dock)).isEmpty()) {
            const int buttons =
                2 * dock.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &dock);
            need(sizeOfText(dock, dock.windowTitle()), dock.size() - QSize(2 * buttons, 0),
                 dock.windowTitle());
        }
    }

    const QWidget* m_widget = nullptr;
};

bool holds(const QLayout& layout, const QWidget& widget) {
    for (int i = 0; i < layout.count(); ++i) {
        QLayoutItem* const item = layout.itemAt(i);
        if (item->widget() == &widget ||
            (item->layout() != nullptr && holds(*item->layout(), widget))) {
            return true;
        }
    }
    return false;
}

bool standsInALayout(const QWidget& widget) {
    const QWidget* const parent = widget.parentWidget();
    return parent != nullptr && parent->layout() != nullptr &&
           qobject_cast<const QMainWindow*>(parent) == nullptr && holds(*parent->layout(), widget);
}

// Its page may cover it.
bool isInView(const QScrollArea& area) {
    return !area.viewport()->visibleRegion().isEmpty() ||
           (area.widget() != nullptr && !area.widget()->visibleRegion().isEmpty());
}

// Something of it is left by what it stands in, as far as its scroll area.
bool isInside(const QWidget& widget, const QWidget& viewport) {
    QRect left = widget.rect();
    for (const QWidget* inner = &widget; inner->parentWidget() != &viewport;
         inner = inner->parentWidget()) {
        left = left.translated(inner->pos()).intersected(inner->parentWidget()->rect());
    }
    return !left.isEmpty();
}

// The docks behind other tabs count as visible; nothing of them is. Tables and headers are covered
// by their viewport, which is what one sees. What can be scrolled to can be seen.
bool canBeSeen(const QWidget& widget) {
    const auto* const own = qobject_cast<const QAbstractScrollArea*>(&widget);
    const QWidget& shown = own != nullptr ? *own->viewport() : widget;
    if (!shown.visibleRegion().isEmpty()) {
        return true;
    }
    const QScrollArea* const around = scrollAreaAround(widget);
    return around != nullptr && isInView(*around) && isInside(shown, *around->viewport());
}

} // namespace

TextFit textFit(const QWidget& window) {
    Finder finder;
    const auto widgets = window.findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        if (widget->isVisible() && widget->window() == &window && canBeSeen(*widget)) {
            finder.look(*widget);
        }
    }
    for (QWidget* widget : widgets) {
        if (widget->isVisible() && standsInALayout(*widget)) {
            QList<QWidget*> siblings;
            for (QWidget* other : widgets) {
                if (other->parentWidget() == widget->parentWidget() && standsInALayout(*other)) {
                    siblings << other;
                }
            }
            finder.lookAtPlace(*widget, siblings);
        }
    }
    return finder.found;
}

QString cutOffTexts(const QWidget& window) {
    return textFit(window).faults.join(QLatin1Char('\n'));
}
