#include "document/formats/scala.h"
#include "reader_target.h"

namespace {

/// A parameter file that finds the same bytes under the name of every data file, too.
class set_source : public formats::memory_source {
public:
    explicit set_source(std::span<const std::byte> bytes_) : memory_source(bytes_, "set.par"), bytes(bytes_) {}
    std::unique_ptr<formats::source> sibling(const std::string&) override
    {
        return std::make_unique<set_source>(bytes);
    }

private:
    std::span<const std::byte> bytes;
};

base::read_result<formats::recording> read_set(formats::source& file)
{
    std::vector<std::byte> bytes;
    file.read_all(bytes);
    set_source set(bytes);
    return formats::read_scala(set);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return soak_reader(read_set, data, size);
}
