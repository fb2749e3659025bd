#pragma once

#include <QObject>
#include <QTimer>

class QDialog;
class QScrollArea;

namespace workbench {

/// Lets a dialog give way that needs more than its screen has room for, or than its maximumSize()
/// allows (see screenRoom()): what stands over its last row, which is that of the buttons, gets a
/// scroll area, and what gets the focus is scrolled into view. One that has room is left as it is.
/// Of a dialog without a vertical layout only the size is bounded.
class DialogRoom : public QObject {
    Q_OBJECT

public:
    /// Belongs to the dialog, whose contents stand already.
    explicit DialogRoom(QDialog& dialog);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void check();
    QSize needed(int width) const;
    void letScroll();

    QDialog& m_dialog;
    QScrollArea* m_area = nullptr;
    QTimer m_check;
};

} // namespace workbench
