// Any bytes as a decoration file: what was read is written and read again.
#include "surface/figures/decoration_text.h"

#include <cstdint>
#include <cstdlib>

using namespace vldv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const surface::decoration_lists lists = surface::read_decoration_text({reinterpret_cast<const char*>(data), size});
    if (surface::read_decoration_text(surface::decoration_text(lists)) != lists) std::abort();
    return 0;
}
