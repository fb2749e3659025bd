#include "tests/support/sanitized.h"
#include "workbench/startup.h"

#include <QApplication>
#include <QWidget>
#include <QtTest>

#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <memory>
#include <thread>
#include <vector>

namespace {

QStringList told;

void collect(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text) {
    told << text;
}

} // namespace

class TestStartup : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void onlyTheNoiseOfThePlatformIsDropped() {
        QVERIFY(told.contains(QStringLiteral("something else")));
        QVERIFY(told.contains(
            QStringLiteral("This plugin does not support propagateSizeHints() at all")));
        QVERIFY(
            !told.contains(QStringLiteral("This plugin does not support propagateSizeHints()")));
    }

    void windowsFollowTheScalingOfTheDisplay() {
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps));
        // As large as the screen says; the same program runs at several resolutions.
        const QWidget widget;
        QCOMPARE(widget.devicePixelRatioF() * widget.logicalDpiX(),
                 qEnvironmentVariable("QT_FONT_DPI").toDouble());
    }

    // Also after a larger one has been freed, which has the allocator take them from the heap.
    void aLargeBufferHasPagesOfItsOwn() {
        if (hasSanitizersAllocator) {
            // QSKIP wants one argument more than C++17 lets it have.
            QTest::qSkip("the sanitizer has an allocator of its own", __FILE__, __LINE__);
            return;
        }
        constexpr std::size_t large = 5 * 1024 * 1024;
        for (int turn = 0; turn < 3; ++turn) {
            std::vector<char> larger(2 * large, 'a');
            QCOMPARE(larger.back(), 'a');
        }
        const std::size_t before = ::mallinfo2().hblks;
        const std::vector<char> buffer(large, 'b');
        QCOMPARE(buffer.back(), 'b');
        QCOMPARE(::mallinfo2().hblks, before + 1);
    }

    void threadsShareOneHeap() {
        if (hasSanitizersAllocator) {
            QTest::qSkip("the sanitizer has an allocator of its own", __FILE__, __LINE__);
            return;
        }
        std::vector<std::thread> threads;
        std::vector<std::unique_ptr<char[]>> taken(8);
        for (std::unique_ptr<char[]>& place : taken) {
            threads.emplace_back([&place] { place = std::make_unique<char[]>(1000); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        QCOMPARE(heapsInUse(), 1);
    }

private:
    static int heapsInUse() {
        char* text = nullptr;
        std::size_t size = 0;
        std::FILE* const report = ::open_memstream(&text, &size);
        ::malloc_info(0, report);
        std::fclose(report);
        const int heaps = QByteArray(text, int(size)).count("<heap nr=");
        std::free(text);
        return heaps;
    }
};

// As a program starts, before QtTest has a message handler of its own.
int main(int argc, char* argv[]) {
    qInstallMessageHandler(collect);
    workbench::prepareForWindows();
    QApplication application(argc, argv);
    {
        QWidget window;
        window.setMinimumSize(10, 10);
        window.show(); // the offscreen platform makes its noise
        qWarning("This plugin does not support propagateSizeHints()");
        qWarning("This plugin does not support propagateSizeHints() at all");
        qCritical("something else");
    }
    qInstallMessageHandler(nullptr);
    TestStartup test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_startup.moc"
