#include "SourceFiles/mtdatadisplay.h"

#include "KestrelParser.h"
#include "general/host/hostlink.h"
#include "general/host/toolqueries.h"
#include "general/widgets/dpiscaling.h"
#include "general/widgets/widgetending.h"
#include "host_api/iomanager.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr std::size_t lineBufferSize = 10240; // terminator included
constexpr int refreshMs = 200;
constexpr int startDelayMs = 1;
constexpr int fewestBodies = 4;

QEvent::Type measurementEvent() {
    static const int type = QEvent::registerEventType();
    return static_cast<QEvent::Type>(type);
}

} // namespace

MtDataDisplay::MtDataDisplay(IOManager* host, QWidget* parent, BackendVersions* versions)
    : QWidget(parent)
    , iom(host)
    , beVers(versions, iom) {
    new WidgetEnding(this, [this] {
        withdraw();
        iom.hangUp();
    });
    ui.setupUi(this);
    scaleFormToDpi(*this);
    bIsMtAvailable = isMtAvailable();
    ascii_buf = std::make_unique<char[]>(lineBufferSize);
    measurementEvent();
    registerForMeasurements();
    checkDesiredOutput6dmt();
    checkActivateChmon6dmt();
    setupTableWidget6dmt();
    setupTableWidget6dmtref();
    sizeBodyLists();
    timer.setInterval(refreshMs);
    connect(&timer, &QTimer::timeout, this, &MtDataDisplay::onUpdateDataDisplay);
}

MtDataDisplay::~MtDataDisplay() {
    withdraw();
}

// A host may end or hide the display inside a registration and finish that afterwards: then it is
// taken back at once.
void MtDataDisplay::registerForMeasurements() {
    m_isRegistered = true;
    iom->register_measurement_requester(this);
    if (!m_isRegistered) {
        iom.afterHangingUp()->unregister_measurement_requester(this);
    }
}

void MtDataDisplay::about_to_exit() {
    m_isRegistered = false;
    iom->unregister_measurement_requester(this);
}

void MtDataDisplay::withdraw() {
    if (m_isSubscribed) {
        register6dmtRequest(false);
    }
    if (m_isRegistered) {
        about_to_exit();
    }
}

void MtDataDisplay::showEvent(QShowEvent* event) {
    const SiblingsKept kept(this);
    QWidget::showEvent(event);
    register6dmtRequest(true);
}

void MtDataDisplay::hideEvent(QHideEvent* event) {
    const SiblingsKept kept(this);
    QWidget::hideEvent(event);
    register6dmtRequest(false);
}

void MtDataDisplay::register6dmtRequest(bool on) {
    m_isSubscribed = on;
    for (const char* channel : toolqueries::channels) {
        if (!on) {
            iom->unregister_data_requester(channel, this);
            continue;
        }
        iom->register_data_requester(channel, this);
        if (!m_isSubscribed) {
            iom.afterHangingUp()->unregister_data_requester(channel, this);
            return;
        }
    }
}

bool MtDataDisplay::isMtAvailable() {
    return hostlink::isMtAvailable(iom, beVers);
}

void MtDataDisplay::checkDesiredOutput6dmt() {
    if (!bIsMtAvailable) {
        return;
    }
    const bool use6dmt = toolqueries::usesOldFormat(iom, beVers, bUseChmon6dmt);
    if (use6dmt != bUseChmon6dmt) {
        bUseChmon6dmt = use6dmt;
        bIsChmon6dmtActive = false;
    }
}

void MtDataDisplay::checkActivateChmon6dmt() {
    if (bIsChmon6dmtActive || !bIsMtAvailable) {
        return;
    }
    toolqueries::activateLines(iom, bUseChmon6dmt);
    bIsChmon6dmtActive = true;
}

void MtDataDisplay::sizeBodyLists() {
    int maxTools = fewestBodies;
    int maxReferences = fewestBodies;
    if (hostlink::protocolPasses(beVers, 1, 3)) {
        if (iom->get_parameter_int(&maxTools, "measurementtool max_number_of_tools") != 0) {
            maxTools = fewestBodies;
        }
        if (iom->get_parameter_int(&maxReferences, "measurementtool max_number_of_references") !=
            0) {
            maxReferences = fewestBodies;
        }
    }
    const int length =
        std::clamp(std::max(maxTools, maxReferences), fewestBodies, hostlink::mostBodies);
    for (int i = 0; i < length; ++i) {
        listRefBodyOfMeaBody.append(-1);
        listMeaBodyCalibrated.append(false);
        listRefBodyCalibrated.append(false);
    }
}

int MtDataDisplay::set_ascii_data(const char*, const char* text) {
    const std::lock_guard<std::mutex> lock(parserMutex);
    if (!parser) {
        return -2;
    }
    const std::size_t length = text != nullptr ? strnlen(text, lineBufferSize) : lineBufferSize;
    if (length == lineBufferSize) {
        return -1;
    }
    std::memcpy(ascii_buf.get(), text, length + 1);
    char* line = ascii_buf.get();
    return parser->parseLine(&line) ? 0 : -1;
}

void MtDataDisplay::set_mea_started() {
    {
        const std::lock_guard<std::mutex> lock(parserMutex);
        ++pendingStarts;
    }
    tellGuiThread();
}

void MtDataDisplay::set_mea_stopped() {
    {
        const std::lock_guard<std::mutex> lock(parserMutex);
        ++currentGeneration;
        pendingStarts = 0;
        parser.reset();
    }
    tellGuiThread();
}

void MtDataDisplay::tellGuiThread() {
    if (QThread::currentThread() == thread()) {
        followMeasurement();
        return;
    }
    bool alreadyTold = false;
    {
        const std::lock_guard<std::mutex> lock(parserMutex);
        alreadyTold = std::exchange(guiIsTold, true);
    }
    if (!alreadyTold) {
        QCoreApplication::postEvent(this, new QEvent(measurementEvent()));
    }
}

// Not asked for its type: following without news does nothing.
void MtDataDisplay::customEvent(QEvent* /*event*/) {
    followMeasurement();
}

void MtDataDisplay::followMeasurement() {
    Q_ASSERT(QThread::currentThread() == thread());
    unsigned generation = 0;
    int starts = 0;
    {
        const std::lock_guard<std::mutex> lock(parserMutex);
        generation = currentGeneration;
        starts = std::exchange(pendingStarts, 0);
        guiIsTold = false;
    }
    clearAfterStop(generation);
    for (int i = 0; i < starts; ++i) {
        // Not QTimer::singleShot(): its timer would outlive the display, and with it what it is to
        // call, though the library may be gone by then.
        auto* const delay = new QTimer(this);
        delay->setSingleShot(true);
        connect(delay, &QTimer::timeout, this, [this, delay, generation] {
            delay->deleteLater();
            startUnlessStopped(generation);
        });
        delay->start(startDelayMs);
    }
}

void MtDataDisplay::clearAfterStop(unsigned generation) {
    Q_ASSERT(QThread::currentThread() == thread());
    if (shownGeneration == generation) {
        return;
    }
    shownGeneration = generation;
    timer.stop();
    ui.tableWidget6dmt->setRowCount(0);
    ui.tableWidget6dmtref->setRowCount(0);
}

bool MtDataDisplay::stoppedSince(unsigned generation) {
    const std::lock_guard<std::mutex> lock(parserMutex);
    return currentGeneration != generation;
}

void MtDataDisplay::set_mea_started_deferred() {
    unsigned generation = 0;
    {
        const std::lock_guard<std::mutex> lock(parserMutex);
        generation = currentGeneration;
    }
    startUnlessStopped(generation);
}

void MtDataDisplay::startUnlessStopped(unsigned generation) {
    Q_ASSERT(QThread::currentThread() == thread());
    if (stoppedSince(generation)) {
        return;
    }
    clearAfterStop(generation);
    if (!bIsMtAvailable) {
        bIsMtAvailable = isMtAvailable();
    }
    checkDesiredOutput6dmt();
    checkActivateChmon6dmt();
    if (takeLinesUnlessStopped(generation)) {
        timer.start();
    }
}

bool MtDataDisplay::takeLinesUnlessStopped(unsigned generation) {
    const std::lock_guard<std::mutex> lock(parserMutex);
    if (currentGeneration != generation) {
        return false; // stopped while the host was asked
    }
    if (!parser) {
        parser = std::make_unique<KestrelParser>();
    }
    return true;
}

void MtDataDisplay::copyTools() {
    copyRecords(tools, &KestrelParser::getNumMeaTool, &KestrelParser::getMeaTool);
}

void MtDataDisplay::copyReferences() {
    copyRecords(references, &KestrelParser::getNumMeaRef, &KestrelParser::getMeaRef);
}

template <class Record>
void MtDataDisplay::copyRecords(std::vector<Record>& records, int (KestrelParser::*count)() const,
                                Record* (KestrelParser::*record)(int)) {
    const std::lock_guard<std::mutex> lock(parserMutex);
    const int number = parser ? (parser.get()->*count)() : 0;
    records.clear();
    for (int i = 0; i < number; ++i) {
        records.push_back(*(parser.get()->*record)(i));
    }
}

bool MtDataDisplay::fillNewRows(QTableWidget* table, int rows,
                                bool (MtDataDisplay::*fill)(int, unsigned)) {
    Q_ASSERT(QThread::currentThread() == thread());
    const unsigned generation = shownGeneration;
    table->clearContents();
    table->setRowCount(rows);
    for (int row = 0; row < rows; ++row) {
        if (!(this->*fill)(row, generation)) {
            return false;
        }
    }
    return true;
}

void MtDataDisplay::onUpdateDataDisplay() {
    Q_ASSERT(QThread::currentThread() == thread());
    // A host may run events while it is asked something: a refresh inside a refresh is left out.
    if (!dataMutex.tryLock()) {
        return;
    }
    updateDisplayMeaBodies();
    updateDisplayRefBodies();
    dataMutex.unlock();
}
