#include "workbench/startup.h"

#include <QApplication>
#include <QWidget>
#include <QtTest>

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
