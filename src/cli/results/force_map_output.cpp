#include "cli/results/force_map_output.h"

#include "base/text.h"
#include "cli/output/progress.h"
#include "curves/figures/force/force_map.h"
#include "curves/figures/force/force_source.h"
#include "formats/shared/force/curve_lengths.h"
#include "formats/shared/void_points.h"

#include <algorithm>
#include <optional>
#include <span>
#include <stdexcept>

namespace vldv::cli {

namespace {

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
        SPMDataStream converted, convertedX;
        std::vector<formats::void_range> voidSamples, voidPlaces;
        const SPMDataStream& volume = as16Bits(image, converted, voidSamples);
        const unsigned parameter = curves::parameter_of(document, image);
        const bool hasX = parameter != curves::noImage;
        const SPMDataStream* const x = hasX ? &as16Bits(parameter, convertedX, voidPlaces) : nullptr;
        const char* const told = document.getString(formats::curveLengthsKey, image);
        const char* const toldOfX = hasX ? document.getString(formats::curveLengthsKey, parameter) : nullptr;
        const auto& names = volume.subimage_names();
        for (unsigned sub = 0; sub < document.getSubImagesNumber(image); ++sub) {
            const bool isHeld = sub < names.size() && curves::is_held_part(names[sub].c_str());
            if (wantedSub < 0 ? !isHeld : sub == static_cast<unsigned>(wantedSub))
                addBoth(volume, curves::volume_of(volume, sub, x, told, toldOfX, voidSamples, voidPlaces), sub);
        }
    }

    std::vector<SPMDataStream> streams;
    std::vector<std::size_t> voids;     ///< of each
    std::vector<std::string> voidTexts; ///< which points they are; empty for none

private:
    /// \param voidSamples  gets what was not measured
    const SPMDataStream& as16Bits(unsigned image, SPMDataStream& converted,
                                  std::vector<formats::void_range>& voidSamples) const
    {
        const SPMDataStream& stream = document.getImage(image);
        const char* const told = document.getString(formats::voidRangesKey, image);
        voidSamples = formats::void_ranges(stream, told);
        if (stream.array_type() == SPM_ARRAY_INT16) return stream;
        converted = stream;
        voidSamples = formats::convert_measured(converted, told);
        if (converted.array_type() == SPM_ARRAY_INT16) return converted;
        throw std::runtime_error("the samples of the volume have no type");
    }

    void addBoth(const SPMDataStream& volume, const curves::force_volume& source, unsigned sub)
    {
        std::optional<percent_bar> bar;
        if (showsProgress) bar.emplace();
        curves::map_options options;
        if (bar) options.progress = [&](std::size_t done, std::size_t all) { bar->tell(done, all); };
        const curves::force_maps maps = curves::map_forces(source, options);
        const auto put = [&](const char* title, const curves::force_map& map) {
            streams.push_back(curves::map_stream(volume, map, next_name(document, streams).c_str(),
                                                 base::formatted("%s%u", title, sub + 1).c_str()));
            voids.push_back(map.voids);
            voidTexts.push_back(formats::void_ranges_text(map.samples.size(), map.voidRanges));
        };
        put("Rigidity", maps.rigidity);
        put("Adhesion", maps.adhesion);
    }

    const CStorageDoc& document;
    bool showsProgress;
};

/// Unless one is asked for, volumes of forces and deflections.
bool is_mapped(const CStorageDoc& document, unsigned image, int wanted)
{
    if (!document.isImageOk(image) || document.getImage(image).get_dimensions_number() != 3) return false;
    return wanted < 0 ? curves::is_force_image(document, image) : image == static_cast<unsigned>(wanted);
}

} // namespace

force_map_output::force_map_output(session& call_, const std::string& target)
    : call(call_), files(call_, output_names::ofContainers(target))
{
}

force_map_output::written force_map_output::write(CStorageDoc& document, const std::wstring& path, int image, int sub)
{
    map_images maps(document, call.files().size() == 1); // else the bar counts files
    for (unsigned i = 0; i < document.getImagesNumber(); ++i)
        if (is_mapped(document, i, image)) maps.add(i, sub);
    if (maps.streams.empty()) throw nothing_to_treat("there is no volume of force curves to map");
    const unsigned first = document.getImagesNumber();
    document.AddNewImages(maps.streams.data(), static_cast<unsigned>(maps.streams.size()));
    for (unsigned i = 0; i < maps.voids.size(); ++i) {
        if (maps.voids[i] == 0) continue;
        document.setString("\\Void points", std::to_string(maps.voids[i]).c_str(), first + i);
        document.setString(formats::voidRangesKey, maps.voidTexts[i].c_str(), first + i);
    }
    written out{files.save(document, path).native(), {}, maps.voids};
    for (const SPMDataStream& stream : maps.streams) out.titles.emplace_back(stream.get_description());
    return out;
}

} // namespace vldv::cli
