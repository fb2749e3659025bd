#include "KestrelParser.h"
#include "SourceFiles/mtdatadisplay.h"
#include "SourceFiles/mtdatadisplay_cells.h"
#include "general/host/bodytexts.h"
#include "general/host/toolqueries.h"

#include <QBrush>
#include <QThread>

#include <algorithm>
#include <iterator>
#include <optional>

using trackingcells::BodyState;

namespace {

constexpr int toolColumn = 0;
constexpr int referenceColumn = 2;
constexpr int firstButtonColumn = 4;
constexpr int buttonColumnStep = 2;
constexpr int buttonColumns = 4;
constexpr int toolPoseColumn = 12;

constexpr trackingcells::Column toolColumns[] = {
    {QT_TRANSLATE_NOOP("MtDataDisplay", "tool ID"), 80},
    {"", 10},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "reference ID"), 80},
    {"", 10},
    {"", 26},
    {"", 10},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "b1"), 26},
    {"", 10},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "b2"), 26},
    {"", 10},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "b3"), 26},
    {"", 10},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "x [mm]"), 80},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "y [mm]"), 80},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "z [mm]"), 80},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "rx [deg]"), 80},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "ry [deg]"), 80},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "rz [deg]"), 80},
    {"", 80},
};

int buttonColumn(int button) {
    return firstButtonColumn + buttonColumnStep * button;
}

} // namespace

void MtDataDisplay::setupTableWidget6dmt() {
    Q_ASSERT(QThread::currentThread() == thread());
    trackingcells::setUp(ui.tableWidget6dmt, toolColumns, static_cast<int>(std::size(toolColumns)),
                         toolPoseColumn);
    settledTools.watch(ui.tableWidget6dmt);
}

void MtDataDisplay::updateDisplayMeaBodies() {
    Q_ASSERT(QThread::currentThread() == thread());
    copyTools();
    copyReferences();
    const int count = static_cast<int>(tools.size());
    QTableWidget* const table = ui.tableWidget6dmt;
    if (count != table->rowCount() && !fillNewRows(table, count, &MtDataDisplay::fillMeaBody)) {
        return;
    }
    for (int row = 0; row < count; ++row) {
        const trackingcells::RowContent content = contentOfTool(row);
        if (!settledTools.shows(row, content)) {
            showMeaBody(row, content);
            showReferenceState(row);
        }
    }
}

bool MtDataDisplay::fillMeaBody(int row, unsigned generation) {
    const QString reference = getRefBodyForMeaBody(row);
    const bool calibrated = shownGeneration == generation && setInfoMeaBodyCalibrated(row);
    if (shownGeneration != generation) {
        return false;
    }
    QTableWidget* const table = ui.tableWidget6dmt;
    trackingcells::putName(table, row, toolColumn, bodytexts::toolName(row));
    trackingcells::putName(table, row, referenceColumn, reference);
    for (int button = 0; button < buttonColumns; ++button) {
        table->setItem(row, buttonColumn(button), new QTableWidgetItem);
    }
    trackingcells::putValues(table, row, toolPoseColumn,
                             calibrated ? QStringLiteral("-") : QStringLiteral(" "));
    return true;
}

trackingcells::RowContent MtDataDisplay::contentOfTool(int row) const {
    trackingcells::RowContent content;
    content.reference = referenceState(row);
    if (!listMeaBodyCalibrated.value(row, false)) {
        return content;
    }
    const auto& tool = tools[static_cast<std::size_t>(row)];
    content.buttons = std::min(tool.num_button, buttonColumns);
    for (int button = 0; button < content.buttons; ++button) {
        content.pressed |= (tool.button[button] == 1 ? 1U : 0U) << button;
    }
    content.body = trackingcells::stateOf(tool.quality);
    if (content.body == BodyState::Tracked) {
        content.pose = trackingcells::bitsOf(tool.loc, tool.rot);
    }
    return content;
}

void MtDataDisplay::showMeaBody(int row, const trackingcells::RowContent& content) {
    Q_ASSERT(QThread::currentThread() == thread());
    QTableWidget* const table = ui.tableWidget6dmt;
    for (int button = 0; button < content.buttons; ++button) {
        const bool isPressed = (content.pressed >> button & 1U) != 0;
        trackingcells::setBackground(table->item(row, buttonColumn(button)),
                                     isPressed ? Qt::blue : Qt::transparent);
    }
    trackingcells::setState(table->item(row, toolColumn), content.body);
    if (content.body == BodyState::Tracked) {
        const auto& tool = tools[static_cast<std::size_t>(row)];
        trackingcells::showPose(table, row, toolPoseColumn, tool.loc, tool.rot);
    }
}

void MtDataDisplay::showTrackingStatusRefBody(int row) {
    copyReferences();
    showReferenceState(row);
}

void MtDataDisplay::showReferenceState(int row) {
    Q_ASSERT(QThread::currentThread() == thread());
    trackingcells::setState(ui.tableWidget6dmt->item(row, referenceColumn), referenceState(row));
}

trackingcells::BodyState MtDataDisplay::referenceState(int row) const {
    const int reference = listRefBodyOfMeaBody.value(row, -1);
    if (reference < 0 || !listRefBodyCalibrated.value(reference, false)) {
        return BodyState::Unknown;
    }
    const auto index = static_cast<std::size_t>(reference);
    return index < references.size() ? trackingcells::stateOf(references[index].quality)
                                     : BodyState::Lost;
}

bool MtDataDisplay::setInfoMeaBodyCalibrated(int i) {
    if (i < 0 || i >= listMeaBodyCalibrated.size()) {
        return false;
    }
    const bool calibrated = toolqueries::isToolCalibrated(iom, i);
    listMeaBodyCalibrated[i] = calibrated;
    return calibrated;
}

QString MtDataDisplay::getRefBodyForMeaBody(int i) {
    if (i < 0 || i >= listRefBodyOfMeaBody.size()) {
        return QString();
    }
    const std::optional<int> reference = toolqueries::referenceOfTool(iom, i);
    listRefBodyOfMeaBody[i] = reference.value_or(-1);
    return reference ? bodytexts::referenceName(*reference) : QString();
}
