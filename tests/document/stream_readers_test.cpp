#include "document/stream_readers.h"

#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {

TEST(StreamReaders, GiveOneChannelOrLeaveTheStream)
{
    const std::string folder = VLDV_RECORDINGS "/";
    const struct {
        bool (*read)(std::istream&, SPMDataStream&);
        std::string path;
    } rows[] = {{sur_reader, folder + "sur/two-objects.sur"}, {pni_reader, folder + "pni/first.pni"}};
    for (const auto& row : rows) {
        SPMDataStream stream;
        std::istringstream wrong("neither of the two");
        EXPECT_FALSE(row.read(wrong, stream)) << row.path;
        EXPECT_EQ(stream.get_dimensions_number(), 0u);
        std::ifstream in(row.path, std::ios::binary);
        ASSERT_TRUE(row.read(in, stream)) << row.path;
        EXPECT_EQ(stream.get_dimensions_number(), 2u);
    }
}

} // namespace
