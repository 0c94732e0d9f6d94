#include "document/formats/aist.h"
#include "reader_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return soak_reader(formats::read_aist, data, size);
}
