#include "KestrelParser.h"
#include "SourceFiles/mtdatadisplay.h"
#include "SourceFiles/mtdatadisplay_cells.h"
#include "general/host/bodytexts.h"
#include "general/host/hostlink.h"
#include "host_api/iomanager.h"

#include <QThread>

#include <algorithm>
#include <iterator>

using trackingcells::BodyState;

namespace {

constexpr int nameColumn = 1;
constexpr int poseColumn = 3;

constexpr trackingcells::Column columns[] = {
    {"", 90},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "reference ID"), 80},
    {"", 36},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "x [mm]"), 80},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "y [mm]"), 80},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "z [mm]"), 80},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "rx [deg]"), 80},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "ry [deg]"), 80},
    {QT_TRANSLATE_NOOP("MtDataDisplay", "rz [deg]"), 80},
    {"", 80},
};

} // namespace

void MtDataDisplay::setupTableWidget6dmtref() {
    Q_ASSERT(QThread::currentThread() == thread());
    trackingcells::setUp(ui.tableWidget6dmtref, columns, static_cast<int>(std::size(columns)),
                         poseColumn);
    settledReferences.watch(ui.tableWidget6dmtref);
}

void MtDataDisplay::updateDisplayRefBodies() {
    Q_ASSERT(QThread::currentThread() == thread());
    copyReferences();
    const int count = static_cast<int>(references.size());
    QTableWidget* const table = ui.tableWidget6dmtref;
    if (count != table->rowCount() && !fillNewRows(table, count, &MtDataDisplay::fillRefBody)) {
        return;
    }
    for (int row = 0; row < count; ++row) {
        const trackingcells::RowContent content = contentOfReference(row);
        if (!settledReferences.shows(row, content)) {
            showRefBody(row, content);
        }
    }
}

bool MtDataDisplay::fillRefBody(int row, unsigned generation) {
    const bool calibrated = setInfoRefBodyCalibrated(row);
    if (shownGeneration != generation) {
        return false;
    }
    QTableWidget* const table = ui.tableWidget6dmtref;
    trackingcells::putName(table, row, nameColumn, bodytexts::referenceName(row));
    trackingcells::putValues(table, row, poseColumn,
                             calibrated ? QStringLiteral("-") : QStringLiteral(" "));
    return true;
}

trackingcells::RowContent MtDataDisplay::contentOfReference(int row) const {
    trackingcells::RowContent content;
    if (!listRefBodyCalibrated.value(row, false)) {
        return content;
    }
    const auto& reference = references[static_cast<std::size_t>(row)];
    content.body = trackingcells::stateOf(reference.quality);
    if (content.body == BodyState::Tracked) {
        content.pose = trackingcells::bitsOf(reference.loc, reference.rot);
    }
    return content;
}

void MtDataDisplay::showRefBody(int row, const trackingcells::RowContent& content) {
    Q_ASSERT(QThread::currentThread() == thread());
    QTableWidget* const table = ui.tableWidget6dmtref;
    trackingcells::setState(table->item(row, nameColumn), content.body);
    if (content.body == BodyState::Tracked) {
        const auto& reference = references[static_cast<std::size_t>(row)];
        trackingcells::showPose(table, row, poseColumn, reference.loc, reference.rot);
    }
}

bool MtDataDisplay::setInfoRefBodyCalibrated(int i) {
    if (i < 0 || i >= listRefBodyCalibrated.size()) {
        return false;
    }
    hostlink::Reply reply;
    const bool calibrated =
        iom->get_parameter_string(reply.buffer(),
                                  "body calibrated measurementtool_reference b%2.2d", i + 1) == 0 &&
        reply.is("yes");
    listRefBodyCalibrated[i] = calibrated;
    return calibrated;
}
