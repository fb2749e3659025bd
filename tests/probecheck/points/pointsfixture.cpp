#include "pointsfixture.h"

#include <QLineEdit>
#include <QScrollArea>

#include <cmath>

namespace {

class RecordedSounds : public points::SoundSink {
public:
    explicit RecordedSounds(PointsFixture& fixture)
        : m_fixture(fixture) {}
    void play(points::Sound sound) override {
        m_fixture.heard.push_back({sound, m_fixture.sessionText()});
    }

private:
    PointsFixture& m_fixture;
};

} // namespace

PointsFixture::PointsFixture()
    : data(std::make_unique<ProbeData>(&controller.host, &controller.versions)) {
    data->enter();
    for (const char* tool : {"b01", "b02"}) {
        controller.host.answer(std::string("measurementtool measurement_duration ") + tool, "0.5");
    }
    tools[0].position = {100.0, 200.0, 300.0};
    tools[1].position = {-100.0, 0.0, 50.0};
    makePanel();
}

PointsFixture::~PointsFixture() {
    panel.reset();
    data->leave();
}

void PointsFixture::makePanel() {
    // The new one first: without users the data leave.
    auto next = std::make_unique<PointsPanel>(data.get(), nullptr, folder.path(), sync);
    panel = std::move(next);
    panel->setSounds(std::make_unique<RecordedSounds>(*this));
    panel->show();
    QVERIFY(QTest::qWaitForWindowExposed(panel.get()));
}

void PointsFixture::measure() {
    controller.host.startMeasurement();
    QVERIFY(QTest::qWaitFor([this] { return data->isReceiving(); }, patienceMs));
}

void PointsFixture::send(double seconds) {
    constexpr double rate = 60.0;
    const auto frames = std::lround(seconds * rate);
    for (long i = 0; i < frames; ++i) {
        ++frame;
        controller.deliverFrame(frame, frame / rate, tools);
        controller.host.deliver(probelines::references({1.0}));
    }
    if (data->isReceiving()) { // the second delivery has the last frame for sure
        QSignalSpy deliveries(data.get(), &ProbeData::samplesArrived);
        QVERIFY(QTest::qWaitFor([&] { return deliveries.size() >= 2; }, patienceMs));
    }
}

bool PointsFixture::waitForWords(const QString& expected) {
    const bool isOfCapture = expected.startsWith("Point captured");
    return QTest::qWaitFor(
        [&] {
            if (words().startsWith(expected)) {
                return true;
            }
            if (isOfCapture && words() == "Given up: no data for a second.") {
                QTest::keyClick(panel.get(), Qt::Key_Space); // this machine had other things to do
            }
            send(0.2);
            return words().startsWith(expected);
        },
        patienceMs);
}

bool PointsFixture::capture() {
    const int before = panel->list().rowCount();
    send(0.1);
    QTest::keyClick(panel.get(), Qt::Key_Space);
    return waitForWords("Point captured") && panel->list().rowCount() == before + 1;
}

QString PointsFixture::words() const {
    return child<QLabel>("label_state")->text();
}

QString PointsFixture::cell(int row, int column) const {
    return child<QTableView>("tableView_points")->model()->index(row, column).data().toString();
}

QByteArray PointsFixture::sessionText() const {
    QByteArray all;
    const QDir place(folder.path());
    const QStringList names = place.entryList({"points-*.jsonl"}, QDir::Files, QDir::Name);
    for (const QString& name : names) {
        QFile file(place.filePath(name));
        all += file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
    return all;
}

QStringList PointsFixture::resultLines() const {
    QStringList lines;
    for (const std::string& line : controller.host.journal()) {
        const QString text = QString::fromStdString(line);
        if (text.startsWith("log result ")) {
            lines << text;
        }
    }
    return lines;
}

std::vector<points::Sound> PointsFixture::sounds() const {
    std::vector<points::Sound> all;
    for (const Heard& one : heard) {
        all.push_back(one.sound);
    }
    return all;
}

void PointsFixture::select(const QList<int>& rows) const {
    const auto* const table = child<QTableView>("tableView_points");
    table->selectionModel()->clearSelection();
    for (const int row : rows) {
        table->selectionModel()->select(table->model()->index(row, 0),
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
}

QScrollBar* PointsFixture::scrollBar() const {
    return panel->findChild<QScrollArea*>()->verticalScrollBar();
}

void PointsFixture::type(const char* spinBox, const QString& text) const {
    auto* const box = child<QDoubleSpinBox>(spinBox);
    auto* const editor = box->findChild<QLineEdit*>();
    box->setFocus();
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
}
