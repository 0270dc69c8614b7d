#include "runtime/serial_devices.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <limits>

namespace velorn {
namespace {

TEST(SerialDevices, theFirstFourPortsAreOnBoard) {
    EXPECT_EQ(default_device(1, {"/dev/ttyUSB0"}), "/dev/ttyS0");
    EXPECT_EQ(default_device(4, {"/dev/ttyUSB0"}), "/dev/ttyS3");
}

TEST(SerialDevices, fromTheFifthPortOnTheUsbAdaptersFollowInOrder) {
    const std::vector<std::string> adapters = {"/dev/ttyACM0", "/dev/ttyUSB0"};
    EXPECT_EQ(default_device(5, adapters), "/dev/ttyACM0");
    EXPECT_EQ(default_device(6, adapters), "/dev/ttyUSB0");
}

TEST(SerialDevices, beyondTheLastAdapterAndBelowOneThereIsNoDevice) {
    EXPECT_EQ(default_device(5, {}), "");
    EXPECT_EQ(default_device(255, {"/dev/ttyUSB0"}), "");
    EXPECT_EQ(default_device(0, {"/dev/ttyUSB0"}), "");
    EXPECT_EQ(default_device(std::numeric_limits<int>::min(), {"/dev/ttyUSB0"}), "");
}

TEST(SerialDevices, adaptersAreSortedByTheirNumbers) {
    const test::TemporaryFolder devices;
    for (const char* name :
         {"ttyUSB10", "ttyUSB2", "ttyS0", "ttyACM1", "ttyUSB1", "null", "ttyACM0", "tty"}) {
        devices.set_content(name, "");
    }
    std::vector<std::string> expected;
    for (const char* name : {"ttyACM0", "ttyACM1", "ttyUSB1", "ttyUSB2", "ttyUSB10"}) {
        expected.push_back(devices.stored(name));
    }
    EXPECT_EQ(usb_adapters(devices.path()), expected);
}

TEST(SerialDevices, aMissingDeviceFolderHoldsNoAdapters) {
    EXPECT_TRUE(usb_adapters("/there/is/none").empty());
}

} // namespace
} // namespace velorn
