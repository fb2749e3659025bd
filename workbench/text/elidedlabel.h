#pragma once

#include <QLabel>

namespace workbench {

/// A line of plain text that is cut with an ellipsis where it does not fit, instead of widening the
/// window. Its tool tip and assistive tools have the whole text.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString elided() const;
};

} // namespace workbench
