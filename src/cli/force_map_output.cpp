#include "cli/force_map_output.h"

#include "base/text.h"
#include "cli/progress.h"
#include "curves/force_map.h"
#include "platform/paths.h"

#include <algorithm>
#include <optional>
#include <span>
#include <stdexcept>

namespace cli {

namespace {

namespace fs = std::filesystem;

/// A name that is not one of a container is that of a folder.
output_names container_names(const std::string& output)
{
    const bool isContainer = base::equal_ignoring_case(fs::path(output).extension().native(), ".spm");
    return {isContainer ? output : output + '/', ".spm"};
}

/// "img%d" with the first number from the count of images on that is not taken.
std::string next_name(const CStorageDoc& document, std::span<const SPMDataStream> made)
{
    const auto isTaken = [&](const std::string& name) {
        const auto has = [&](const SPMDataStream& stream) { return name == stream.get_name(); };
        for (unsigned i = 0; i < document.getImagesNumber(); ++i)
            if (has(document.getImage(i))) return true;
        return std::ranges::any_of(made, has);
    };
    auto number = document.getImagesNumber() + static_cast<unsigned>(made.size());
    while (isTaken(base::formatted("img%u", number))) ++number;
    return base::formatted("img%u", number);
}

/// A bar of percents.
class percent_bar {
public:
    void tell(std::size_t done, std::size_t all)
    {
        for (const std::size_t percent = all ? 100 * done / all : 100; shown < percent; ++shown) bar.advance();
    }

private:
    progress_bar bar{100};
    std::size_t shown = 0;
};

/// Makes the maps of one volume after the other.
class map_images {
public:
    map_images(const CStorageDoc& document_, bool showsProgress_) : document(document_), showsProgress(showsProgress_)
    {
    }

    void add(unsigned image, int wantedSub)
    {
        const SPMDataStream* volume = &document.getImage(image);
        SPMDataStream converted;
        if (volume->array_type() != SPM_ARRAY_INT16) {
            converted = *volume;
            converted.convert_stream(SPM_ARRAY_INT16);
            volume = &converted;
        }
        if (volume->array_type() != SPM_ARRAY_INT16) throw std::runtime_error("the samples of the volume have no type");
        for (unsigned sub = 0; sub < document.getSubImagesNumber(image); ++sub)
            if (wantedSub < 0 || sub == static_cast<unsigned>(wantedSub)) addBoth(*volume, sub);
    }

    std::vector<SPMDataStream> streams;

private:
    void addBoth(const SPMDataStream& volume, unsigned sub)
    {
        std::optional<percent_bar> bar;
        if (showsProgress) bar.emplace();
        curves::map_options options;
        if (bar) options.progress = [&](std::size_t done, std::size_t all) { bar->tell(done, all); };
        const curves::force_volume source = curves::volume_of(volume, sub);
        const curves::force_maps maps = curves::map_forces(source, options);
        const auto put = [&](const char* title, std::span<const std::int16_t> map, const VLAxis& values) {
            streams.push_back(curves::map_stream(volume, map, next_name(document, streams).c_str(),
                                                 base::formatted("%s%u", title, sub + 1).c_str(), values));
        };
        const std::string slope = source.values.get_units() + std::string("/") + source.position.get_units();
        put("Rigidity", maps.rigidity, VLAxis(0.0, 0.001, slope.c_str()));
        put("Adhesion", maps.adhesion, VLAxis(0.0, source.values.scale, source.values.get_units()));
    }

    const CStorageDoc& document;
    bool showsProgress;
};

bool is_volume(const CStorageDoc& document, unsigned image)
{
    return document.isImageOk(image) && document.getImage(image).get_dimensions_number() == 3;
}

} // namespace

force_map_output::force_map_output(session& call_, const std::string& target)
    : call(call_), names(container_names(target))
{
}

fs::path force_map_output::outputFor(const std::wstring& path)
{
    const fs::path output = names.next(path, "", call.files().size() == 1);
    if (call.isInput(output))
        throw std::runtime_error("the output \"" + output.native() + "\" is an input of this call");
    if (!outputs.insert(identity(output)).second)
        throw std::runtime_error("the output \"" + output.native() + "\" was written by this call already");
    return output;
}

force_map_output::written force_map_output::write(CStorageDoc& document, const std::wstring& path, int image, int sub)
{
    map_images maps(document, call.files().size() == 1); // else the bar counts files
    for (unsigned i = 0; i < document.getImagesNumber(); ++i)
        if (is_volume(document, i) && (image < 0 || i == static_cast<unsigned>(image))) maps.add(i, sub);
    if (maps.streams.empty()) throw nothing_to_treat("there is no volume of force curves to map");
    const fs::path output = outputFor(path);
    document.AddNewImages(maps.streams.data(), static_cast<unsigned>(maps.streams.size()));
    const std::string reason = call.save(document, platform::to_wide(output));
    if (!reason.empty()) throw std::runtime_error(reason);
    written out{output.native(), {}};
    for (const SPMDataStream& stream : maps.streams) out.titles.emplace_back(stream.get_description());
    return out;
}

} // namespace cli
