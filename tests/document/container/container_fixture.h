#pragma once
#include "base/text.h"
#include "document/fixtures.h"

/// Saves to and reads from a folder of its own.
class ContainerTest : public DocumentTest {
protected:
    std::wstring path(const std::string& name) const { return (folder / name).wstring(); }

    void save(const std::string& name) { ASSERT_TRUE(document.DoSave(path(name).c_str(), false)) << last(); }
    std::string last() const { return host.messages.empty() ? "" : host.messages.back(); }

    /// Why opening is refused; empty when it is not.
    std::string refusal(const std::string& name)
    {
        CStorageDoc read;
        try {
            return read.OnOpenDocument(path(name).c_str()) ? "" : last();
        } catch (const CArchiveException& refused) {
            EXPECT_EQ(read.getImagesNumber(), 0u) << "a refused document is empty";
            EXPECT_TRUE(read.IsModified());
            return refused.what();
        }
    }
};
