#include "plugins/StandIn.h"
#include "support/TestTimeSeries.h"

#include <thread>

using namespace StandIn;

namespace {

class ConcurrencyTest : public StandInTest
{
protected:
    /// Reads two files from two threads and gives the most calls that were under way in the plug-in at the same time.
    int ReadSideBySide(const std::string& script) const
    {
        const auto read = [&](const std::string& name) {
            const VDTsAccHandle acc = OpenTest(Write("channels=1 points=1000 " + script, name));
            std::vector<float> values(1000);
            EXPECT_TRUE(TSAccGetData(acc.Get(), 0, 1, 1000, nullptr, values.data()));
            EXPECT_EQ(values[999], StandValue<float>(0, 1000));
        };
        TakeMaxInFlight();
        std::thread first(read, "a.sta");
        std::thread second(read, "b.sta");
        first.join();
        second.join();
        return TakeMaxInFlight();
    }
};

}  // namespace

TEST_F(ConcurrencyTest, OnlyPluginsWithoutSerialisationRunSideBySide)
{
    EXPECT_EQ(ReadSideBySide("subid=1 overlap=5000"), 2);
    EXPECT_EQ(ReadSideBySide("subid=3 overlap=20"), 1);
}
