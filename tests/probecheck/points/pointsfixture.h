#pragma once

#include "probecheck/points/pointspanel.h"
#include "tests/probecheck/probefixture.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

class QScrollBar;

/// A scripted controller whose tools move as the test says, with a page of points in front of it.
struct PointsFixture {
    static constexpr int patienceMs = 20000;

    PointsFixture();
    ~PointsFixture();

    void makePanel(); ///< with `sync`
    void measure();   ///< starts a measurement and waits until the page follows it

    /// Frames for so long, 60 a second of the controller's clock, as fast as they are taken.
    void send(double seconds);
    bool waitForWords(const QString& words); ///< of the state, as their beginning
    bool capture();                          ///< by key, with all that belongs to it

    QString words() const;
    QString cell(int row, int column) const;   ///< of the view
    QByteArray sessionText() const;            ///< all session files
    QStringList resultLines() const;           ///< in the host's log
    std::vector<points::Sound> sounds() const; ///< heard so far
    void select(const QList<int>& rows) const;
    void type(const char* spinBox, const QString& text) const;
    QScrollBar* scrollBar() const; ///< of the page

    template <class Widget>
    Widget* child(const char* name) const {
        Widget* const found = panel->findChild<Widget*>(QLatin1String(name));
        if (found == nullptr) {
            qFatal("no %s", name);
        }
        return found;
    }

    QTemporaryDir folder;
    points::SessionFile::Sync sync = points::SessionFile::systemSync();
    ProbeController controller;
    std::unique_ptr<ProbeData> data;
    std::unique_ptr<PointsPanel> panel;
    std::vector<probelines::Tool> tools{2};
    unsigned frame = 0;
    /// A sound, and what the disk had when it was heard.
    struct Heard {
        points::Sound sound;
        QByteArray session;
    };
    std::vector<Heard> heard;
};
