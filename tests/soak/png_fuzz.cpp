#include "document/formats/png.h"
#include "reader_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return soak_reader(formats::read_png, data, size);
}
