#pragma once

#include <QLabel>

namespace workbench {

/// A line of plain text that is cut with an ellipsis where it does not fit, instead of widening the
/// window. Assistive tools get the whole text.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace workbench
