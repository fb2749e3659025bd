#pragma once

#include <QObject>

class QToolBar;

namespace workbench {

/// Keeps every entry of a tool bar in sight: where its words need more room than there is, the
/// first ones are left with their icon alone, one after another, and the last ones keep their words
/// longest. The words stay in tool tips and for assistive tools. Every entry needs an icon.
class ToolBarRoom : public QObject {
    Q_OBJECT

public:
    /// Belongs to the tool bar.
    explicit ToolBarRoom(QToolBar& bar);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void check();

    QToolBar& m_bar;
    bool m_isChecking = false;
};

} // namespace workbench
