#include "KestrelParser.h"
#include "SourceFiles/bodytexts.h"
#include "SourceFiles/mtdatadisplay.h"
#include "SourceFiles/mtdatadisplay_cells.h"
#include "general/hostlink.h"
#include "host_api/iomanager.h"

#include <QThread>

#include <algorithm>
#include <iterator>

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
}

bool MtDataDisplay::isReferenceTracked(int index) const {
    const auto i = static_cast<std::size_t>(index);
    return i < references.size() && trackingcells::isTracked(references[i].quality);
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
        showRefBody(row);
    }
}

bool MtDataDisplay::fillRefBody(int row, unsigned stops) {
    const bool calibrated = setInfoRefBodyCalibrated(row);
    if (clearedStops != stops) {
        return false;
    }
    QTableWidget* const table = ui.tableWidget6dmtref;
    trackingcells::putName(table, row, nameColumn, bodytexts::referenceName(row));
    trackingcells::putValues(table, row, poseColumn,
                             calibrated ? QStringLiteral("-") : QStringLiteral(" "));
    return true;
}

void MtDataDisplay::showRefBody(int row) {
    Q_ASSERT(QThread::currentThread() == thread());
    QTableWidget* const table = ui.tableWidget6dmtref;
    QTableWidgetItem* const name = table->item(row, nameColumn);
    if (!listRefBodyCalibrated.value(row, false)) {
        trackingcells::setTransparent(name);
        return;
    }
    const auto& reference = references[static_cast<std::size_t>(row)];
    const bool tracked = trackingcells::isTracked(reference.quality);
    trackingcells::setTracked(name, tracked);
    if (tracked) {
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
