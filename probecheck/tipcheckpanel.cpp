#include "probecheck/tipcheckpanel.h"

#include <QLabel>
#include <QVBoxLayout>

TipCheckPanel::TipCheckPanel(ProbeData* probeData, QWidget* parent)
    : QWidget(parent)
    , m_data(probeData)
    , m_state(new QLabel(this)) {
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_state);
    m_data->serve(this);
    connect(m_data, &ProbeData::receivingBegan, this, &TipCheckPanel::showState);
    connect(m_data, &ProbeData::receivingEnded, this, &TipCheckPanel::showState);
    showState();
}

// A host may delete the dock itself.
TipCheckPanel::~TipCheckPanel() {
    if (!m_data.isNull()) {
        m_data->forget(this);
    }
}

void TipCheckPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_data->setWanted(this, true);
}

void TipCheckPanel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_data->setWanted(this, false);
}

void TipCheckPanel::showState() {
    m_state->setText(m_data->isReceiving() ? tr("Tracking runs.") : tr("No tracking runs."));
}
