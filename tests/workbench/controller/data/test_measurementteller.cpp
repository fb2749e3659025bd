#include "workbench/controller/data/measurementteller.h"
#include "workbench/controller/data/requesterregistry.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <thread>

using workbench::MeasurementTeller;
using workbench::RequesterRegistry;

namespace {

class Witness final : public Requester {
public:
    int set_ascii_data(const char*, const char*) override { return 0; }
    void set_mea_started() override { hear('+'); }
    void set_mea_stopped() override { hear('-'); }

    std::string heard() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_heard;
    }
    std::function<void()> inside; ///< done once within the next call

private:
    void hear(char what) {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_heard += what;
        }
        if (inside) {
            std::exchange(inside, {})();
        }
    }

    mutable std::mutex m_mutex;
    std::string m_heard;
};

struct MeasurementTellerOf : testing::Test {
    MeasurementTellerOf() { registry.addForMeasurement(&witness); }

    RequesterRegistry registry;
    MeasurementTeller teller{registry};
    Witness witness;
};

TEST_F(MeasurementTellerOf, everyChangeIsToldOnce) {
    teller.setMeasuring(false);
    EXPECT_EQ(witness.heard(), "");
    teller.setMeasuring(true);
    teller.setMeasuring(true);
    teller.setMeasuring(false);
    EXPECT_EQ(witness.heard(), "+-");
}

TEST_F(MeasurementTellerOf, dataThatStopEndTheMeasurementUntilTheyComeAgain) {
    teller.setMeasuring(true);
    teller.dataCame();
    teller.stopData();
    teller.stopData();
    EXPECT_EQ(witness.heard(), "+-");
    teller.dataCame();
    teller.dataCame();
    EXPECT_EQ(witness.heard(), "+-+");
}

TEST_F(MeasurementTellerOf, withoutAMeasurementDataMeanNothing) {
    teller.stopData();
    teller.dataCame();
    EXPECT_EQ(witness.heard(), "");
    teller.setMeasuring(true);
    teller.stopData();
    teller.setMeasuring(false);
    teller.dataCame();
    EXPECT_EQ(witness.heard(), "+-");
}

TEST_F(MeasurementTellerOf, aNewMeasurementWaitsForItsDataAnew) {
    teller.setMeasuring(true);
    teller.stopData();
    teller.setMeasuring(false);
    teller.setMeasuring(true);
    EXPECT_EQ(witness.heard(), "+-+");
}

TEST_F(MeasurementTellerOf, newsFromInsideANotificationComeAfterIt) {
    Witness second;
    registry.addForMeasurement(&second);
    witness.inside = [this, &second] {
        teller.setMeasuring(false);
        EXPECT_EQ(witness.heard(), "+");
        EXPECT_EQ(second.heard(), "");
    };
    teller.setMeasuring(true);
    EXPECT_EQ(witness.heard(), "+-");
    EXPECT_EQ(second.heard(), "+-");
}

TEST_F(MeasurementTellerOf, onAnyThreadTheWordsAlternateAndTheLastOneHolds) {
    constexpr int rounds = 2000;
    teller.setMeasuring(true);
    std::thread data([this] {
        for (int i = 0; i < rounds; ++i) {
            teller.dataCame();
        }
    });
    for (int i = 0; i < rounds; ++i) {
        teller.stopData();
    }
    data.join();
    teller.dataCame();
    const std::string heard = witness.heard();
    ASSERT_EQ(heard.size() % 2, 1U);
    for (std::size_t i = 0; i < heard.size(); ++i) {
        ASSERT_EQ(heard[i], i % 2 == 0 ? '+' : '-') << i;
    }
}

} // namespace
