#pragma once
#include "document/StorageDoc.h"
#include "document/samples/rising_heights.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace vldv::cli {

/// Which images and sub-images a call is about; -1: all.
struct frame_choice {
    int image = -1, sub = -1;
};
/// Adds --image and --sub.
void add_frame_options(CLI::App& command, frame_choice& choice);

/// A sub-image of a document.
struct frame {
    unsigned image, sub;
};
/// Adds --image and --sub of a command that is about one sub-image.
void add_one_frame(CLI::App& command, frame& which);

/// Says why an image is none that a command can use, without its number; empty when it is one.
using image_judge = std::function<std::string(const CStorageDoc&, unsigned image)>;
/// 16-bit samples, of any number of dimensions.
std::string refuse_no_heights(const CStorageDoc& document, unsigned image);
/// 16-bit samples in two dimensions.
std::string refuse_no_surface(const CStorageDoc& document, unsigned image);

/// The frames that were asked for. Images that are refused are passed over. \throws nothing_to_treat when none is left
std::vector<frame> chosen_frames(const CStorageDoc& document, const frame_choice& choice, const image_judge& refuse);

/// Samples of a frame of an image of 16-bit numbers.
std::span<std::int16_t> frame_samples(const CStorageDoc& document, const frame& which);

/// A frame's samples as heights: larger samples are larger values of the first value axis. The document must outlive
/// them.
document::rising_heights frame_heights(const CStorageDoc& document, const frame& which);

/// "image 0: Topo, sub-image 1 "Backward"", for people.
std::string frame_title(const CStorageDoc& document, const frame& which);

} // namespace vldv::cli
