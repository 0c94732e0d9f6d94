#pragma once
#include "cli/choice/picture_options.h"
#include "cli/pictures/drawing.h"
#include "cli/results/picture_choice.h"

class CScale;

namespace vldv::cli {

/// Makes a scale show what was asked for. \throws std::runtime_error when its palette has gone
void set_up_scale(CScale& scale, const picture_options& options);

/// Draws a picture as its window shows it, in the size that was asked for, else in that in which the window opens.
/// Samples of surfaces of another type become 16-bit ones in the document.
/// \return the reason why there is no picture, or empty
std::string draw_window(CStorageDoc& document, const picture_number& which, const picture_options& options,
                        const drawing_user& use);

} // namespace vldv::cli
