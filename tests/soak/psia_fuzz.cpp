#include "document/formats/psia.h"
#include "reader_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return soak_reader(formats::read_psia, data, size);
}
