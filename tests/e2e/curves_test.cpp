// A force curve and a section as a user meets them, judged by what stands on the screen and on the clipboard.
#include "e2e/desktop.h"
#include "e2e/screen.h"
#include "support/temporary_folder.h"

#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <iostream>

namespace {

using namespace screen;

bool is_black(QRgb pixel) { return (pixel & 0xFFFFFF) == 0; }
bool is_curve_green(QRgb pixel) { return (pixel & 0xFFFFFF) == 0x008000; }
bool is_curve_red(QRgb pixel) { return (pixel & 0xFFFFFF) == 0xFF0000; }

class CurvesOnScreen : public testing::Test {
protected:
    static QString sample(const char* name) { return QStringLiteral(VLDV_SAMPLES "/") + name; }
    QString home() const { return QString::fromStdWString((folder / "home").wstring()); }
    /// The axes of the active window: the box of the pane with its curves.
    static QRect pane(const QImage& shown)
    {
        const QRect above = caption(shown);
        const QRect window(above.left(), above.bottom() + 30, above.width(), 340);
        QRect box;
        // Upright axes are the only black columns of that height.
        for (int x = window.left(); x <= window.right(); ++x) {
            int run = 0;
            for (int y = window.top(); y <= std::min(window.bottom(), shown.height() - 1); ++y) {
                run = is_black(shown.pixel(x, y)) ? run + 1 : 0;
                if (run > 100) box |= QRect(x, y - run + 1, 1, run);
            }
        }
        return box;
    }
    static void choose(const desktop& user, std::initializer_list<const char*> keys)
    {
        user.moveTo({1000, 850});
        for (const char* key : keys) user.press(key);
    }
    static QString copied(const desktop& user)
    {
        QGuiApplication::clipboard()->setText({});
        user.press("ctrl+t");
        QString text;
        user.sees("c0-copied", [&](const QImage&) { return !(text = QGuiApplication::clipboard()->text()).isEmpty(); });
        return text;
    }

    temporary_folder folder;
};

#define SKIP_WITHOUT(path)                                                                                             \
    if (!QFileInfo::exists(path)) GTEST_SKIP() << "sample files are not here: " << VLDV_SAMPLES

TEST_F(CurvesOnScreen, AForceCurveStandsOverItsPositions)
{
    const QString recording = sample("jpk/fmt-jpk-fd_spot3-0192.jpk-force");
    SKIP_WITHOUT(recording);
    desktop user(home(), {recording});
    ASSERT_TRUE(user.sees("c1-force-curve", [](const QImage& shown) {
        const QRect at = pane(shown);
        return at.width() > 500 && share_of(shown, at, is_curve_green) > 0.005 &&
               share_of(shown, at, is_curve_red) > 0.002;
    })) << "approach, and retract dotted";
    user.takeFocus();
    choose(user, {"alt+m", "d"});
    QStringList rows;
    EXPECT_TRUE(user.sees("c2-data",
                          [&](const QImage&) {
                              rows = QGuiApplication::clipboard()->text().split('\n', Qt::SkipEmptyParts);
                              return rows.size() == 2001;
                          }))
        << "a heading and 2000 pairs: " << rows.size();
    std::vector<double> x;
    for (const QString& row : rows.mid(1)) x.push_back(row.section('\t', 0, 0).toDouble());
    ASSERT_EQ(x.size(), 2000u);
    // Both marks begin on a pair in the middle of both parts; the second goes ten pairs on.
    for (int i = 0; i < 10; ++i) user.press("Right");
    const double moved = copied(user).section(' ', 1, 1).toDouble() * 1e-9;
    ASSERT_NE(moved, 0.0);
    const auto [low, high] = std::minmax_element(x.begin(), x.end());
    bool isDistance = false;
    for (std::size_t i = 0; i + 10 < x.size(); ++i)
        if (std::fabs(x[i] - (*low + *high) / 2) < 0.02 * (*high - *low))
            isDistance |= std::fabs(x[i + 10] - x[i] - moved) < 1e-5 * std::fabs(moved);
    EXPECT_TRUE(isDistance) << moved;
}

TEST_F(CurvesOnScreen, ASectionFollowsItsSurface)
{
    const QString recording = sample("nanoscope/di-1.di");
    SKIP_WITHOUT(recording);
    desktop user(home(), {recording});
    ASSERT_TRUE(user.sees("c4-surface", [](const QImage& shown) {
        return caption(shown).width() > 500 && share_of(shown, inside(shown), is_brown) > 0.3;
    }));
    user.takeFocus();
    const QRect above = caption(user.look());
    const QRect box = box_of(user.look(), {above.left() + 20, above.bottom() + 3, 570, 530}, is_brown);
    choose(user, {"alt+c", "s"});
    user.drag(box.topLeft() + QPoint(100, 300), box.topLeft() + QPoint(400, 300));
    const auto hasCurve = [](const QImage& shown) {
        return pane(shown).width() > 500 && share_of(shown, pane(shown), is_curve_green) > 0.005;
    };
    EXPECT_TRUE(user.sees("c5-section", hasCurve)) << "in a window of its own";
    // Marks at thirds of 300 samples of 500 / 512 nm.
    EXPECT_TRUE(copied(user).startsWith("dX: 97.6562 nm\tdY: "));
    const QImage whole = user.look();
    const QRect before = pane(whole);
    user.turnWheel(before.center(), 3, "ctrl");
    EXPECT_TRUE(user.sees("c6-zoomed", [&](const QImage& shown) {
        return pane(shown) == before && shown.copy(before) != whole.copy(before);
    })) << "the same window, another part of the curve";
    choose(user, {"alt+m", "k"});
    user.type("10");
    user.press("Return");
    user.takeFocus();
    EXPECT_TRUE(user.sees("c7-typed", hasCurve));
    EXPECT_TRUE(copied(user).startsWith("dX: 185.312 nm\tdY: ")) << "from 10 nm to two thirds of 292.969";
}

} // namespace
