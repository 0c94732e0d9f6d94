// Any bytes as the manifest of a copy, with the signature and the checksum that a changed byte would miss: what is read
// is written and read again.
#include "recovery/kept_document.h"

#include <cstdlib>
#include <zlib.h>

using namespace vldv;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string bytes = "VLKEPT2\n" + std::string(reinterpret_cast<const char*>(data), size);
    const auto sum = crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size());
    for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(sum >> shift);
    const auto kept = recovery::decode(std::as_bytes(std::span(bytes)));
    if (!kept) return 0;
    const auto written = recovery::encode(*kept);
    const auto again = recovery::decode(written);
    if (!again || recovery::encode(*again) != written) std::abort();
    return 0;
}
