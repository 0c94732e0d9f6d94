#include "document/formats/pni.h"
#include "reader_target.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return soak_reader(pni_reader, data, size);
}
