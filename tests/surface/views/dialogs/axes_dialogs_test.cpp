#include "surface/slope_fixture.h"
#include "surface/views/dialogs/resampling_dialog.h"
#include "view/dialogs/resolution_dialog.h"

namespace {

using namespace surface;

class AxesDialogTest : public SlopeTest {
protected:
    void edit(CVarListDlg& dialog, const char* name, const char* text)
    {
        for (unsigned i = 0; i < dialog.rowCount(); ++i)
            if (std::string(dialog.row(i).get_name()) == name) {
                EXPECT_TRUE(dialog.edit(i, text)) << name;
                return;
            }
        ADD_FAILURE() << name;
    }
};

TEST_F(AxesDialogTest, TheDialogKeepsSidesAndStepsInAccord)
{
    host.onDialog = [this](CVarListDlg& dialog) {
        const SPMVarList& list = dialog.list();
        edit(dialog, "columns", "4");
        EXPECT_EQ(double(list["rows"]), 2.0) << "proportions are kept";
        EXPECT_DOUBLE_EQ(double(list["step.x"]), 0.5);
        EXPECT_DOUBLE_EQ(double(list["step.y"]), 0.5);
        edit(dialog, "proportions", "false");
        edit(dialog, "step.y", "0.12");
        EXPECT_EQ(double(list["rows"]), 8.0) << "1 nm over 0.12 nm, nearest";
        EXPECT_DOUBLE_EQ(double(list["step.y"]), 0.125) << "what 8 rows give";
        EXPECT_EQ(double(list["columns"]), 4.0);
        dialog.EndDialog(CVarListDlg::resultOk);
    };
    EXPECT_TRUE(run_resample(document, 0, 0, 0, nullptr));
    EXPECT_EQ(document.getImage(0).get_dimension(0).length, 4u);
    EXPECT_EQ(document.getImage(0).get_dimension(1).length, 8u);
    host.onDialog = [this](CVarListDlg& dialog) {
        edit(dialog, "rows", "2");
        dialog.EndDialog(CVarListDlg::resultCancel);
    };
    EXPECT_FALSE(run_resample(document, 0, 0, 0, nullptr));
    EXPECT_EQ(document.getImage(0).get_dimension(1).length, 8u);
}

TEST_F(AxesDialogTest, ResolutionScalesAxesByATrueDistance)
{
    const SPMDataStream before = document.getImage(0);
    host.onDialog = [this](CVarListDlg& dialog) {
        const SPMVarList& list = dialog.list();
        EXPECT_DOUBLE_EQ(double(list["size.x"]), 2.0);
        EXPECT_DOUBLE_EQ(double(list["distance"]), 1.25); // 3 and 4 samples of 0.25 nm
        edit(dialog, "distance", "2.5");
        EXPECT_DOUBLE_EQ(double(list["step.x"]), 0.5);
        EXPECT_DOUBLE_EQ(double(list["size.y"]), 2.0);
        edit(dialog, "size.x", "2");
        EXPECT_DOUBLE_EQ(double(list["step.x"]), 0.25);
        EXPECT_DOUBLE_EQ(double(list["step.y"]), 0.5);
        edit(dialog, "units.z", "V");
        dialog.EndDialog(CVarListDlg::resultOk);
    };
    EXPECT_TRUE(view::run_resolution(document, 0, {}, view::measured_distance{{3, 4}}, nullptr));
    EXPECT_EQ(document.getAxis(0, 0, 0), VLAxis(0, 0.25, "nm"));
    EXPECT_EQ(document.getAxis(0, 0, 1), VLAxis(0.5, 0.5, "nm"));
    EXPECT_STREQ(document.getAxis(0, 0, unsigned(-1)).get_units(), "V");
    document.undo(0);
    EXPECT_EQ(document.getImage(0).get_dimension(1), before.get_dimension(1));
    EXPECT_EQ(document.getImage(0).values, before.values);
    int asked = 0;
    host.onDialog = [&](CVarListDlg& dialog) {
        if (asked++ == 0) {
            edit(dialog, "step.x", "0");
            edit(dialog, "units.z", "pA");
        } else {
            EXPECT_EQ(host.messages.back(), "Sample X: 0 is no distance between samples");
            edit(dialog, "step.x", "3");
        }
        dialog.EndDialog(CVarListDlg::resultOk);
    };
    EXPECT_TRUE(view::run_resolution(document, 0, {}, {}, nullptr));
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(document.getAxis(0, 0, 0).scale, 3.0);
    EXPECT_STREQ(document.getAxis(0, 0, unsigned(-1)).get_units(), "pA") << "entered before the mistake was told";
}

} // namespace
