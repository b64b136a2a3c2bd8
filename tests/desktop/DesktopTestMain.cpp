// Entry point of the tests that need a real X server (with-xvfb.sh starts one): GoogleTest
// inside a QApplication set up as the zorvik program sets itself up.
#include "app/ApplicationSetup.h"

#include <QApplication>
#include <cstring>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // Listing the tests needs no display.
    bool listing = false;
    for (int i = 1; i < argc; ++i)
        listing = listing || std::strcmp(argv[i], "--gtest_list_tests") == 0;
    ::testing::InitGoogleTest(&argc, argv);
    if (listing)
        return RUN_ALL_TESTS();
    qputenv("QT_QPA_PLATFORM", "xcb");
    QApplication app(argc, argv);
    zorvik::setUpApplication();
    return RUN_ALL_TESTS();
}
