// Any text as main.xml; the archive around it hides it from mutation otherwise.
#include "reader_target.h"

#include "document/container/spmx_description.h"

#include <cstdlib>

using namespace vldv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const time_watch watch(size);
    const auto read = document::parse_spmx_description({reinterpret_cast<const char*>(data), size});
    if (!read && read.error().reason.empty()) std::abort();
    return 0;
}
