#pragma once
#include "document/ImageBoundView.h"
#include "document/StorageDoc.h"
#include "platform/app/View.h"
#include "platform/app/WinApp.h"
#include "support/HeadlessHost.h"
#include "support/streams.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <vector>

/// A document in an application on the headless host.
class DocumentTest : public testing::Test {
protected:
    CHeadlessHost host;
    CWinApp app{host};
    temporary_folder folder;
    CStorageDoc document;
};

/// Keeps what it was told; closes by leaving the document.
class fake_view : public CView, public IImageBoundView {
public:
    explicit fake_view(unsigned image_) : image(image_) {}
    void OnUpdate(CView*, std::uint32_t hint, const hint_object&) override { hints.push_back(hint); }
    unsigned getImageNumber() const override { return image; }
    void setImageNumber(unsigned image_) override { image = image_; }
    void LoadOptions() override { ++loads; }
    void closeFrame() override
    {
        if (child) child->GetDocument()->RemoveView(child);
        GetDocument()->RemoveView(this);
    }

    unsigned image;
    int loads = 0;
    fake_view* child = nullptr; ///< closed with this one
    std::vector<std::uint32_t> hints;
};

/// A 16-bit stream of these dimension lengths with the numbers first, first + 1, …
inline SPMDataStream heights(const char* id, const std::vector<unsigned>& lengths, unsigned subimages = 1,
                             short first = 0)
{
    std::vector<test_support::stream_side> sides;
    for (const unsigned length : lengths) sides.push_back({length, VLAxis(0.5 * double(sides.size()), 0.25, "nm")});
    return test_support::made_stream(
        id, sides, VLAxis(-1, 0.01, "nm"), [first](unsigned i) { return first + short(i); }, subimages);
}
