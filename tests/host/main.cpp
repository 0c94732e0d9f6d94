#include "host/WorkstationApp.h"

#include <gtest/gtest.h>

int main(int count, char** arguments)
{
    // Windows without a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&count, arguments);
    const host::CWorkstationApp toolkit(count, arguments);
    return RUN_ALL_TESTS();
}
