#pragma once

#include <QString>
#include <QStringList>

#include <tuple>
#include <utility>

/// A version of three numbers, ordered lexicographically. A patch number of -1 stands for an
/// unknown patch; the comparisons give it no special meaning.
class VersionInfo {
public:
    VersionInfo() = default;
    /// Any numbers; a patch of -1 is unknown.
    VersionInfo(int major, int minor, int patch)
        : ma(major)
        , mi(minor)
        , pa(patch) {}

    /// The same for a version that exists.
    void setVer(int major, int minor, int patch) { *this = VersionInfo(major, minor, patch); }

    /// Reads "1.13.0", with an optional leading "v"; a missing patch ("1.13") is unknown (-1).
    /// Anything else gives 0.0.0 and false in `*ok`, which may be null.
    static VersionInfo fromString(const QString& text, bool* ok = nullptr) {
        const QStringList parts = (text.startsWith(QLatin1Char('v')) ? text.mid(1) : text)
                                      .trimmed()
                                      .split(QLatin1Char('.'));
        bool good = parts.size() == 2 || parts.size() == 3;
        int numbers[3] = {0, 0, -1};
        for (int i = 0; good && i < parts.size(); ++i) {
            numbers[i] = parts.at(i).toInt(&good);
            good = good && numbers[i] >= (i == 2 ? -1 : 0);
        }
        if (ok != nullptr) {
            *ok = good;
        }
        return good ? VersionInfo(numbers[0], numbers[1], numbers[2]) : VersionInfo();
    }

    /// "1.13.0"; an unknown patch is written as it is, "1.13.-1".
    QString toString() const { return QStringLiteral("%1.%2.%3").arg(ma).arg(mi).arg(pa); }

    int majorNumber() const { return ma; } ///< first number
    int minorNumber() const { return mi; } ///< second number
    int patchNumber() const { return pa; } ///< third number, -1 when unknown

    // By first, second, third number; an unknown patch is older than 0.
    bool operator==(const VersionInfo& other) const { return tied() == other.tied(); }
    bool operator!=(const VersionInfo& other) const { return tied() != other.tied(); }
    bool operator<(const VersionInfo& other) const { return tied() < other.tied(); }
    bool operator>(const VersionInfo& other) const { return tied() > other.tied(); }
    bool operator<=(const VersionInfo& other) const { return tied() <= other.tied(); }
    bool operator>=(const VersionInfo& other) const { return tied() >= other.tied(); }

    // A plain value; the order of the fields is binary contract.
    int ma = 0; ///< first number
    int mi = 0; ///< second number
    int pa = 0; ///< third number, -1 when unknown

private:
    std::tuple<int, int, int> tied() const { return {ma, mi, pa}; }
};

/// The versions of the controller that the host is connected to. Owned by the host, which may
/// replace its content after a reconnection (on the GUI thread); modules keep a pointer and read
/// it afresh each time.
class BackendVersions {
public:
    BackendVersions() = default;
    /// In the order of the fields.
    BackendVersions(VersionInfo systemPt, VersionInfo protocol, VersionInfo systemCt,
                    QString hubModel)
        : sysPt(systemPt)
        , prot(protocol)
        , sysCt(systemCt)
        , mod(std::move(hubModel)) {}

    const VersionInfo& systemPt() const { return sysPt; } ///< the controller's software
    const VersionInfo& protocol() const { return prot; }  ///< the command protocol
    const VersionInfo& systemCt() const { return sysCt; } ///< the second system version
    const QString& hubModel() const { return mod; }       ///< the controller's model

private:
    friend struct BackendVersionsLayout; // lets a test pin the order of the fields

    // The order of the fields is binary contract.
    VersionInfo sysPt;
    VersionInfo prot;
    VersionInfo sysCt;
    QString mod;
};
