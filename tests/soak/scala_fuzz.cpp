#include "formats/scala/scala.h"
#include "reader_target.h"

#include <algorithm>

using namespace vldv;

namespace {

/// A parameter file with the same bytes under the name of every data file.
class set_source : public formats::memory_source {
public:
    set_source(std::span<const std::byte> parameters, std::span<const std::byte> data_)
        : memory_source(parameters, "set.par"), data(data_)
    {
    }
    std::unique_ptr<formats::source> sibling(const std::string& name) override
    {
        return std::make_unique<formats::memory_source>(data, name);
    }

private:
    std::span<const std::byte> data;
};

/// What stands before the first zero byte is the parameter file, what follows the data.
base::read_result<formats::recording> read_set(formats::source& file)
{
    std::vector<std::byte> bytes;
    file.readAll(bytes);
    const auto zero = std::find(bytes.begin(), bytes.end(), std::byte{0});
    const auto length = static_cast<std::size_t>(zero - bytes.begin());
    const std::span all(bytes);
    set_source set(all.first(length), all.subspan(std::min(length + 1, bytes.size())));
    return formats::read_scala(set);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return soak_reader(read_set, data, size);
}
