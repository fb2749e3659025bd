#pragma once

#include "probecheck/data/probedata.h"
#include "probecheck/tipcheck/tipcheck.h"

#include <QElapsedTimer>
#include <QMap>
#include <QPointer>
#include <QWidget>

class DecimalSpinBox;
class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QScrollArea;
class QVBoxLayout;
class RoseView;

/// The tip check's page: choice of the tool, start and stop, live words with the rose of tilts, the
/// result. A finished check is one line of the host's log, category "result". Nothing is written to
/// the controller. GUI thread only.
class TipCheckPanel : public QWidget {
    Q_OBJECT

public:
    TipCheckPanel(ProbeData* probeData, QWidget* parent);
    ~TipCheckPanel() override;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void build();
    void buildPage();
    void putRose(bool isBeside);
    void placeRose();
    void listTools();
    void readTolerances();
    void chooseTolerance();
    void start();
    void stop();
    void takeSamples(const ProbeSamples& samples);
    void watchButton(const ProbeSample& sample);
    void claimButton();
    bool startsByButton() const;
    void loseMeasurement();
    void follow(TipCheck::State before);
    void tellResult();
    void showState();
    void showRunning();
    void refuseReplay();
    void updateWanted();
    bool canStart(int tool) const;
    int chosenTool() const;

    QPointer<ProbeData> m_data;
    TipCheck m_check;
    QMap<int, double> m_tolerances;     ///< of tools, as the controller or the user has it
    QMap<int, bool> m_editedTolerances; ///< by the user: the controller's is not taken any more
    QMap<int, bool> m_pressed;          ///< the first button, as last seen
    QComboBox* m_tool;
    DecimalSpinBox* m_tolerance;
    QPushButton* m_start;
    QPushButton* m_stop;
    QCheckBox* m_startByButton;
    QLabel* m_buttons; ///< what they do
    RoseView* m_rose;
    QLabel* m_words;
    QLabel* m_figures;
    QElapsedTimer m_sinceFigures;
    QLabel* m_table;
    QHBoxLayout* m_page;
    QVBoxLayout* m_left;
    QVBoxLayout* m_right;    ///< empty where there is no room for two columns
    QScrollArea* m_scrolled; ///< with the page
};
