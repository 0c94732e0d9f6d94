#pragma once
#include "cli/choice/picture_options.h"
#include "view/DIBImage.h"

class CScale;
class CStorageDoc;

namespace vldv::cli {

/// One surface of a document.
struct surface_number {
    unsigned image, sub;
};

/// Makes a scale show what was asked for. \throws std::runtime_error when its palette has gone
void set_up_scale(CScale& scale, const picture_options& options);

/// Draws a surface with its legend as its window shows it, in the size that was asked for, else in that in which the
/// window opens. Samples of another type become 16-bit ones in the document.
/// \return the reason why there is no picture, or empty
std::string draw_with_legend(CStorageDoc& document, const surface_number& which, const picture_options& options,
                             VLDIBImage& picture);

} // namespace vldv::cli
