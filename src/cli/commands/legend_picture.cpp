#include "cli/commands/legend_picture.h"

#include "cli/choice/image_part.h"
#include "cli/choice/palette_choice.h"
#include "cli/commands/memory_surface.h"
#include "document/StorageDoc.h"
#include "surface/views/SurfMathView.h"

#include <stdexcept>

namespace vldv::cli {

namespace {

constexpr CSize dotsAnInch{96, 96};

/// The document outlives its only view.
class document_keeper {
public:
    explicit document_keeper(CDocument& document_) : document(document_), before(document_.autoDelete)
    {
        document.autoDelete = false;
    }
    document_keeper(const document_keeper&) = delete;
    document_keeper& operator=(const document_keeper&) = delete;
    ~document_keeper() { document.autoDelete = before; }

private:
    CDocument& document;
    bool before;
};

/// What the command line asks for, as options of the view.
void set_up_view(CSurfMathView& view, const picture_options& options)
{
    set_up_scale(view.getScale(), options);
    if (options.mode == view::fixedScale) view.setOption("scaling.z", options.absolute ? "Absolute" : "Relative");
    if (options.highlight) view.setOption("highlight", "true");
    const CSize image{static_cast<int>(view.getSourceWidth()), static_cast<int>(view.getSourceHeight())};
    if (!options.roi.empty()) view.setRegionOfInterest(part_of_image("--roi", *parse_rectangle(options.roi), image));
    view.setOption("CompactLegend", options.legend == "compact" ? "true" : "false");
}

} // namespace

void set_up_scale(CScale& scale, const picture_options& options)
{
    if (const std::string problem = choose_palette(scale, options.palette); !problem.empty())
        throw std::runtime_error(problem);
    scale.SetAutoScaling(options.mode);
    scale.setInverse(options.inverse);
    if (options.fixed.empty()) return;
    const auto window = parse_fixed_window(options.fixed);
    scale.setFixedUnits(window->units.c_str());
    scale.setFixedSize(window->size);
    scale.setFixedStart(window->start);
    scale.setRelativeMeanOffset(window->start);
    scale.setDisableScaleCheck(true); // the user said which values to show
}

std::string draw_with_legend(CStorageDoc& document, const surface_number& which, const picture_options& options,
                             VLDIBImage& picture)
{
    if (document.getImage(which.image).array_type() != SPM_ARRAY_INT16) {
        document.getImage(which.image).convert_stream(SPM_ARRAY_INT16);
        document.revalidateImage(which.image);
    }
    if (document.getImage(which.image).array_type() != SPM_ARRAY_INT16) return "its samples have no type";
    const std::unique_ptr<CDC> reference = make_memory_surface(dotsAnInch);
    const document_keeper keeper(document);
    CSurfMathView view;
    document.AddView(&view);
    view.setImageNumber(which.image);
    view.setSubImageNumber(which.sub);
    view.Create(nullptr, view.kind());
    view.OnInitialUpdate();
    set_up_view(view, options);
    if (const auto size = parse_picture_size(options.size)) view.MoveWindow(CRect(0, 0, size->width, size->height));
    const CRect client = view.GetClientRect();
    view.OnSize(client.Size());
    // Beside a picture of another shape than the window, light texts need their dark background.
    if (options.legend == "compact" && view.displayRect != client) view.setOption("CompactLegend.transparent", "false");
    if (view.displayRect.IsRectEmpty()) return "the size leaves no room for the picture inside its margins";
    view.flushTimers();
    picture.Init(reference.get());
    if (!picture.Create(client.Width(), client.Height(), false)) return "there is no memory for a picture of this size";
    picture.dc()->FillSolidRect(client, view.colorOption("background"));
    view.DrawView(picture.dc());
    return {};
}

} // namespace vldv::cli
