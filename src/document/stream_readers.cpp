#include "document/stream_readers.h"

#include "document/container/stream_source.h"
#include "formats/shared/finish_recording.h"
#include "formats/single/pni.h"
#include "formats/sur/sur.h"

#include <utility>
#include <variant>

using namespace vldv;

namespace {

bool read_first(base::read_result<formats::recording> (*read)(formats::source&), std::istream& in,
                SPMDataStream& stream)
{
    document::stream_source file(in, {});
    auto found = formats::finish_recording(read(file));
    if (!found) return false;
    auto* const image = std::get_if<formats::recorded_image>(&found->items.front());
    if (!image) return false;
    stream = std::move(image->stream);
    return true;
}

} // namespace

bool sur_reader(std::istream& in, SPMDataStream& stream) { return read_first(sur_reader, in, stream); }

bool pni_reader(std::istream& in, SPMDataStream& stream) { return read_first(pni_reader, in, stream); }
