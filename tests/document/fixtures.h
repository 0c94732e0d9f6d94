#pragma once
#include "document/ImageBoundView.h"
#include "document/StorageDoc.h"
#include "platform/View.h"
#include "platform/WinApp.h"
#include "support/HeadlessHost.h"
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
    SPMDataStream stream;
    unsigned count = subimages;
    for (const unsigned length : lengths) count *= length;
    stream.Init(id, "Height", SPM_VAR_ARRAY, count, 2u);
    stream.set_array_type(SPM_ARRAY_INT16);
    for (unsigned i = 0; i < lengths.size(); ++i) {
        SPMDataStream::dimension dimension;
        dimension.length = lengths[i];
        dimension.set_axis(0, VLAxis(0.5 * i, 0.25, "nm"));
        stream.set_dimension(i, dimension);
    }
    stream.values.set_axis(0, VLAxis(-1, 0.01, "nm"));
    for (unsigned i = 0; i < count; ++i)
        static_cast<short*>(stream.array_data())[i] = static_cast<short>(first + short(i));
    return stream;
}
