#include <QGuiApplication>
#include <gtest/gtest.h>

int main(int count, char** arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication toolkit(count, arguments);
    testing::InitGoogleTest(&count, arguments);
    return RUN_ALL_TESTS();
}
