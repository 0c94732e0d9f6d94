// File names on their way into the toolkit and back.
#include "host/peer/path_text.h"

#include "base/text.h"

#include <gtest/gtest.h>

namespace {

TEST(PathText, BytesThatAreNoUtf8Survive)
{
    for (const std::string name :
         {"/tmp/plain.spm", "/tmp/µ 中 \xF0\x9F\x94\xAC.spm", "/tmp/n\xff\xfe\xc3.spm", "\x80"}) {
        const std::wstring path = base::widen(name);
        EXPECT_EQ(base::narrow(host::path_of_text(host::text_of_path(path))), name);
    }
}

TEST(PathText, UrlsNameFilesByTheirBytes)
{
    EXPECT_EQ(base::narrow(host::path_of_url(QUrl::fromEncoded("file:///tmp/n%FF%20a%C2%B5.spm"))),
              "/tmp/n\xff aµ.spm");
    EXPECT_EQ(base::narrow(host::path_of_url(QUrl::fromLocalFile(QStringLiteral("/tmp/100% µ#?.spm")))),
              "/tmp/100% µ#?.spm");
}

} // namespace
