#pragma once

#include <QWidget>

/// A ring that fills clockwise from the top while a tip is held still, with the share in figures.
/// Full and empty differ by the ring's width too, not by colour alone.
class CaptureRing : public QWidget {
    Q_OBJECT

public:
    explicit CaptureRing(QWidget* parent = nullptr);

    void setShare(double share); ///< 0 to 1
    double share() const { return m_share; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    double m_share = 0.0;
};
