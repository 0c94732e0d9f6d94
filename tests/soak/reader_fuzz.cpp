// Any bytes as a file of the reader that CMakeLists.txt names.
#include "reader_target.h"

#include SOAK_HEADER

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return soak_reader(SOAK_READER, data, size);
}
