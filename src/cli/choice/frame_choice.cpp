#include "cli/choice/frame_choice.h"

#include "base/text.h"
#include "cli/choice/number_limits.h"
#include "cli/session.h"

#include <CLI/CLI.hpp>

namespace vldv::cli {

void add_frame_options(CLI::App& command, frame_choice& choice)
{
    command.add_option("--image", choice.image, "Number of the image (default: all)")->transform(whole_number(0));
    command.add_option("--sub", choice.sub, "Number of the sub-image (default: all)")->transform(whole_number(0));
}

void add_one_frame(CLI::App& command, frame& which)
{
    command.add_option("--image", which.image, "Number of the image")
        ->transform(whole_number(0))
        ->capture_default_str();
    command.add_option("--sub", which.sub, "Number of the sub-image")
        ->transform(whole_number(0))
        ->capture_default_str();
}

std::string refuse_no_heights(const CStorageDoc& document, unsigned image)
{
    if (document.getImage(image).array_type() != SPM_ARRAY_INT16)
        return "its samples are not signed integers of 16 bits";
    return document.getSubImageLength(image) == 0 || !document.isImageOk(image) ? "it has no samples" : "";
}

std::string refuse_no_surface(const CStorageDoc& document, unsigned image)
{
    const SPMDataStream& stream = document.getImage(image);
    if (stream.get_dimensions_number() != 2) return "it is no surface";
    constexpr unsigned longest = 1u << 28;
    if (stream.get_dimension(0).length > longest || stream.get_dimension(1).length > longest)
        return "its sides are too long";
    return refuse_no_heights(document, image);
}

std::vector<frame> chosen_frames(const CStorageDoc& document, const frame_choice& choice, const image_judge& refuse)
{
    std::vector<frame> found;
    const auto asked = [](int number, unsigned each) { return number < 0 || each == static_cast<unsigned>(number); };
    std::string refused;
    for (unsigned image = 0; image < document.getImagesNumber(); ++image) {
        if (!asked(choice.image, image)) continue;
        if (const std::string reason = refuse(document, image); !reason.empty()) {
            if (refused.empty()) refused = base::formatted("image %u: %s", image, reason.c_str());
            continue;
        }
        for (unsigned sub = 0; sub < document.getSubImagesNumber(image); ++sub)
            if (asked(choice.sub, sub)) found.push_back({image, sub});
    }
    if (found.empty()) throw nothing_to_treat(refused.empty() ? "there is no such image or sub-image" : refused);
    return found;
}

std::span<std::int16_t> frame_samples(const CStorageDoc& document, const frame& which)
{
    return {static_cast<std::int16_t*>(document.getImageDataS(which.image, which.sub)),
            document.getSubImageLength(which.image)};
}

document::rising_heights frame_heights(const CStorageDoc& document, const frame& which)
{
    return {frame_samples(document, which), document.getAxis(which.image, 0, unsigned(-1))};
}

std::string frame_title(const CStorageDoc& document, const frame& which)
{
    const SPMDataStream& stream = document.getImage(which.image);
    std::string title = base::formatted("image %u: %s, sub-image %u", which.image, stream.get_name(), which.sub);
    const auto& names = stream.subimage_names();
    if (which.sub < names.size()) title += std::string(" \"") + names[which.sub].c_str() + '"';
    return title;
}

} // namespace vldv::cli
