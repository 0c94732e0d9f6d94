#include "e2e/desktop.h"

#include <QGuiApplication>
#include <gtest/gtest.h>
#include <iostream>

int main(int count, char** arguments)
{
    testing::InitGoogleTest(&count, arguments);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    if (!desktop::start_display()) {
        std::cerr << "Xvfb did not start\n";
        return 1;
    }
    int status = 1;
    {
        const QGuiApplication toolkit(count, arguments);
        status = RUN_ALL_TESTS();
    }
    desktop::stop_display();
    return status;
}
