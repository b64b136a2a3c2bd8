// Tests of the port names, their devices and the order of the port search.
#include "instrument/PortMap.h"

#include <gtest/gtest.h>

using namespace zorvik;

namespace {
std::array<bool, kLastComPort + 1> present(std::initializer_list<int> ports) {
    std::array<bool, kLastComPort + 1> exists{};
    for (int n : ports)
        exists[static_cast<std::size_t>(n)] = true;
    return exists;
}
} // namespace

TEST(PortMap, PortNameIsCOMFollowedByTheNumberWithoutBlanks) {
    EXPECT_EQ(PortMap::portName(1), "COM1");
    EXPECT_EQ(PortMap::portName(8), "COM8");
}

#ifndef _WIN32
TEST(PortMap, DefaultDevicesOfThePortNames) {
    const char* expected[] = {"/dev/ttyUSB0", "/dev/ttyUSB1", "/dev/ttyACM0", "/dev/ttyACM1",
                              "/dev/ttyS0",   "/dev/ttyS1",   "/dev/ttyS2",   "/dev/ttyS3"};
    PortMap map;
    for (int n = 1; n <= 8; ++n) {
        EXPECT_EQ(map.devicePath(n), expected[n - 1]);
        EXPECT_FALSE(map.isMapped(n));
    }
}
#endif

TEST(PortMap, MappedDeviceReplacesTheDefaultAndEmptyPathRestoresIt) {
    PortMap map;
    map.setDevice(2, "/dev/pts/7");
    EXPECT_EQ(map.devicePath(2), "/dev/pts/7");
    EXPECT_TRUE(map.isMapped(2));
    map.setDevice(2, "");
    EXPECT_EQ(map.devicePath(2), PortMap::defaultDevice(2));
    EXPECT_FALSE(map.isMapped(2));
}

TEST(PortMap, PortNumbersOutsideOneToEightHaveNoDevice) {
    PortMap map;
    map.setDevice(0, "/dev/x");
    map.setDevice(9, "/dev/y");
    EXPECT_EQ(map.devicePath(0), "");
    EXPECT_EQ(map.devicePath(9), "");
}

TEST(PortSearch, FixedPortProbesOnlyThatPortWhetherItExistsOrNot) {
    EXPECT_EQ(portsToProbe(false, 5, present({})), std::vector<int>{5});
    EXPECT_EQ(portsToProbe(false, 2, present({1, 2, 3})), std::vector<int>{2});
}

TEST(PortSearch, NoPortsAtAllVisitsOnlyPortOneFindsItMissingAndProbesNothing) {
    EXPECT_TRUE(portsToProbe(true, 1, present({})).empty());
}

TEST(PortSearch, PortsOneAndThreeAreProbedLowestFirst) {
    EXPECT_EQ(portsToProbe(true, 1, present({1, 3})), (std::vector<int>{1, 3}));
}

TEST(PortSearch, SearchSkipsMissingPortsUpToTheHighestExistingOne) {
    EXPECT_EQ(portsToProbe(true, 1, present({2, 5, 8})), (std::vector<int>{2, 5, 8}));
    EXPECT_EQ(portsToProbe(true, 4, present({6})), (std::vector<int>{6}));
}
