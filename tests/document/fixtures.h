#pragma once
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
