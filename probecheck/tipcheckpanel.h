#pragma once

#include "probecheck/probedata.h"

#include <QPointer>
#include <QWidget>

class QLabel;

/// The tip check's page. GUI thread only.
class TipCheckPanel : public QWidget {
    Q_OBJECT

public:
    TipCheckPanel(ProbeData* probeData, QWidget* parent);
    ~TipCheckPanel() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void showState();

    QPointer<ProbeData> m_data;
    QLabel* m_state;
};
