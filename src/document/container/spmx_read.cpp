#include "document/container/spmx_read.h"

#include "document/FileReader.h"
#include "document/container/spmx_open.h"
#include "document/document_table.h"
#include "formats/shared/left_out.h"

#include <algorithm>
#include <utility>

namespace vldv::document {

namespace {

constexpr const char* cancelled = "reading was cancelled";

/// Moves the streams of an opened container into a document.
class spmx_loader {
public:
    spmx_loader(opened_spmx& opened_, formats::source& file_, VLFileReader& target_,
                std::vector<std::string>& warnings_)
        : opened(opened_), file(file_), target(target_), warnings(warnings_)
    {
        for (const opened_spmx::place& each : opened.samples) bytes += static_cast<double>(each.entry.bytes);
    }

    spmx_reading run()
    {
        for (const auto& [key, text] : opened.description.strings)
            target.setString(key.c_str(), text.c_str(), documentTable);
        for (std::size_t i = 0; i < opened.samples.size(); ++i) {
            const std::string damage = load(opened.description.streams[i], opened.samples[i]);
            if (!tell(0)) return {.failure = cancelled};
            if (!damage.empty()) damaged.add({0, damage});
        }
        if (damaged.empty()) return {};
        if (target.getImagesNumber() == 0) return {.failure = damaged.first().reason};
        tellOfDamaged();
        return {.isWhole = false};
    }

private:
    /// The image is moved in when all of it is there, and never in memory twice. \return empty, or what is wrong with
    /// it
    std::string load(described_stream& described, const opened_spmx::place& place)
    {
        if (!place.missing.empty()) return place.missing;
        SPMDataStream stream = std::move(described.stream);
        if (stream.array_length() != place.elements) stream.set_array_len(static_cast<unsigned>(place.elements));
        std::string damage = unpack(place, stream);
        bytesBefore += static_cast<double>(place.entry.bytes);
        if (!damage.empty()) return damage;
        tellOfMissing(place, stream);
        target.moveIn(stream);
        const unsigned image = target.getImagesNumber() - 1;
        tellOfNames(image);
        for (const auto& [key, text] : described.strings) target.setString(key.c_str(), text.c_str(), image);
        return {};
    }

    /// Whole sub-images are restored with zeros, which look like samples: the user has to know.
    void tellOfMissing(const opened_spmx::place& place, const SPMDataStream& stream)
    {
        const std::uint64_t wanted = stream.data_size();
        if (place.entry.bytes == wanted || stream.get_dimensions_number() == 0) return;
        warn("stream \"" + std::string(stream.get_name()) + "\": its dimensions ask for " + std::to_string(wanted) +
             " bytes of samples, " + std::to_string(place.entry.bytes) + " are there; the rest counts as 0");
    }

    /// Samples that end where a sub-image does look whole: only the names tell that there were more.
    void tellOfNames(unsigned image)
    {
        const SPMDataStream& stream = target.getImage(image);
        const std::size_t named = stream.subimage_names().size(), held = target.getSubImagesNumber(image);
        if (stream.get_dimensions_number() != 0 && named > held)
            warn("stream \"" + std::string(stream.get_name()) + "\": " + std::to_string(named) +
                 " sub-images are named, the samples of " + std::to_string(held) + " are there");
    }

    void tellOfDamaged()
    {
        formats::recording told;
        damaged.tell(told);
        for (std::string& note : told.warnings) warn(std::move(note));
    }

    void warn(std::string note)
    {
        const std::string before = target.getString(formats::readerNote, documentTable);
        if (before.find(note) == std::string::npos) // it stands in a file that was saved like that
            target.setString(formats::readerNote, formats::with_note(before, note).c_str(), documentTable);
        warnings.push_back(std::move(note));
    }

    std::string unpack(const opened_spmx::place& place, SPMDataStream& stream)
    {
        const std::size_t count = std::min<std::uint64_t>(place.entry.bytes, stream.data_size());
        if (count == 0) return {};
        const std::span out(static_cast<std::byte*>(stream.array_data()), count);
        const std::string failure =
            opened.archive.unpack(place.entry, out, [this](std::size_t done) { return tell(done); });
        if (failure.empty()) return {};
        return "the samples of stream \"" + std::string(stream.get_name()) + "\" cannot be unpacked: " + failure;
    }

    /// \param done  bytes of the stream that is being unpacked
    bool tell(std::size_t done)
    {
        isCancelled = isCancelled || !file.progress((bytesBefore + static_cast<double>(done)) / std::max(bytes, 1.0));
        return !isCancelled;
    }

    opened_spmx& opened;
    formats::source& file;
    VLFileReader& target;
    std::vector<std::string>& warnings;
    formats::left_out damaged;
    bool isCancelled = false;
    double bytes = 0.0, bytesBefore = 0.0; ///< of all samples, and of the streams that are done
};

} // namespace

spmx_reading read_spmx(formats::source& file, VLFileReader& target, std::vector<std::string>& warnings)
{
    auto opened = open_spmx(file);
    if (!opened) return {.failure = opened.error().reason};
    return spmx_loader(*opened, file, target, warnings).run();
}

} // namespace vldv::document
