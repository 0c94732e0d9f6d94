#include "curves/views/step_link.h"

#include "curves/figures/step_place.h"
#include "curves/views/LineView.h"
#include "document/StorageDoc.h"
#include "document/step_texts.h"
#include "document/update_hints.h"
#include "platform/app/FrameWnd.h"
#include "view/frame/open_view.h"

namespace vldv::curves {

namespace {

int columns_of(const CStorageDoc& document, unsigned image)
{
    constexpr unsigned surfaceDimensions = 2;
    if (image >= document.getImagesNumber()) return 0;
    const SPMDataStream& stream = document.getImage(image);
    return stream.get_dimensions_number() == surfaceDimensions ? static_cast<int>(stream.get_dimension(0).length) : 0;
}

/// The image in which a step was found: of that name, and where no name is told the only surface; nothing where there
/// are several.
std::optional<unsigned> image_of_step(const CStorageDoc& document, unsigned step)
{
    const std::string_view name = document.getString(vldv::document::stepImageKey, step);
    std::optional<unsigned> found;
    for (unsigned i = 0; i < document.getImagesNumber(); ++i) {
        const char* const own = document.getImage(i).get_name();
        if (columns_of(document, i) == 0 || (!name.empty() && name != (own ? own : ""))) continue;
        if (found) return std::nullopt;
        found = i;
    }
    return found;
}

/// From the first column of a line to the last one.
void span(CSectionView& section, int line)
{
    section.SetPoint(0, 0, line);
    section.SetPoint(1, columns_of(*section.storageDoc(), section.getImageNumber()) - 1, line);
}

} // namespace

void step_link::setOrigin(const step_origin& origin)
{
    step_source = std::make_shared<step_end>(step_end{view, origin});
}

bool step_link::restore()
{
    const CStorageDoc* const document = view.storageDoc();
    const unsigned step = view.getImageNumber();
    if (step_source || !document || step >= document->getImagesNumber()) return false;
    const char* const name = document->getImage(step).get_name();
    const std::string_view direction = document->getString(vldv::document::stepDirectionKey, step);
    if (direction.empty() || !name || !std::string_view(name).starts_with("step")) return false;
    const std::optional<unsigned> image = image_of_step(*document, step);
    if (!image) return false;
    setOrigin({*image, direction == vldv::document::stepFromLeft});
    return true;
}

void step_link::cut() noexcept
{
    step_source.reset();
    step_target_view.reset();
}

void step_link::imageRemoved(unsigned image) noexcept
{
    if (!step_source) return;
    unsigned& from = step_source->origin.step_image_index;
    if (from == image) return cut();
    if (from > image) --from;
}

std::optional<step_places> step_link::places(const step_end& end)
{
    const CStorageDoc* const document = end.view.storageDoc();
    if (!document || end.view.getImageNumber() >= document->getImagesNumber()) return std::nullopt;
    return step_places::of(document->getImage(end.view.getImageNumber()), end.origin.step_invert,
                           columns_of(*document, end.origin.step_image_index));
}

void step_link::crossbarMoved()
{
    if (step_source) return leadLine();
    if (const auto end = step_target_view.lock()) correct(*end);
}

void step_link::loaded()
{
    if (!step_source) return follow();
    CLineView* const line = findLine();
    if (!line || line->stepLink().step_target_view.lock() != step_source || line->stepLink().isCorrecting) return;
    line->stepLink().followedLine.reset();
    line->stepLink().follow();
}

// At the step

void step_link::leadLine()
{
    const std::optional<step_places> at = places(*step_source);
    if (!at) return;
    const int line = at->lineAt(view.getMarks()[positionMark].x);
    CLineView* shown = findLine();
    if (!shown) shown = openLine(line);
    if (shown) shown->stepLink().show(step_source, line);
}

CLineView* step_link::findLine() const
{
    if (!view.GetDocument()) return nullptr;
    for (CView* const each : view.GetDocument()->views())
        if (auto* const line = dynamic_cast<CLineView*>(each);
            line && line->getImageNumber() == step_source->origin.step_image_index)
            return line;
    return nullptr;
}

/// The window on the step stays the active one: the user goes on there.
CLineView* step_link::openLine(int line)
{
    CImageView* const opened = view::open_view_of(view, step_source->origin.step_image_index, lineFrame);
    auto* const made = dynamic_cast<CLineView*>(opened);
    if (!made) {
        if (opened) opened->closeFrame();
        return nullptr;
    }
    span(*made, line);
    view::show_opened(*made);
    view.PositionWindowNearby(made->GetParentFrame(), 0, legendDown);
    made->bringFrameInside();
    view.BringToFront();
    return made;
}

// At the line

void step_link::show(const std::shared_ptr<step_end>& end, int line)
{
    step_target_view = end;
    followedLine.reset();
    span(view, line);
    view.reloadSection();
    view.setOption("marks_mode", "Crossbar");
}

std::optional<int> step_link::shownLineOf(const step_end& end) const
{
    if (view.getImageNumber() != end.origin.step_image_index || view.storageDoc() != end.view.storageDoc() ||
        !view.isHorizontal())
        return std::nullopt;
    const int last = columns_of(*view.storageDoc(), view.getImageNumber()) - 1;
    if (view.getSectionPoint(0).x != 0 || view.getSectionPoint(1).x != last) return std::nullopt;
    return view.getSectionPoint(0).y;
}

/// On another line both crossbars stand where the step crosses it.
void step_link::follow()
{
    const auto end = step_target_view.lock();
    const std::optional<int> line = end ? shownLineOf(*end) : std::nullopt;
    if (!line || line == followedLine) return;
    followedLine = line;
    const std::optional<step_places> at = places(*end);
    const std::optional<double> across = at ? at->shareAcross(*line) : std::nullopt;
    if (!across) return;
    view.putCrossbar(*across);
    if (at->lineAt(end->view.getMarks()[positionMark].x) != *line) end->view.putCrossbar(*at->shareOfLine(*line));
}

void step_link::correct(const step_end& end)
{
    const std::optional<int> line = shownLineOf(end);
    const std::optional<step_places> at = line ? places(end) : std::nullopt;
    const std::optional<unsigned> sample = at ? at->sampleOfLine(*line) : std::nullopt;
    if (!sample) return;
    CStorageDoc& document = *view.storageDoc();
    const unsigned image = end.view.getImageNumber();
    const auto stateNow = [&document, image] { return document.contentState().images[image]; };
    const std::int16_t value = at->valueAcross(view.getMarks()[positionMark].x);
    if (document.getDataPoint1S(image, static_cast<int>(*sample), 0) == value) return;
    if (!lastCorrection || lastCorrection->line != *line || lastCorrection->state != stateNow())
        document.pushUndo(image, true);
    document.setImageDataS(image, &value, 1, *sample, 0);
    document.setString(vldv::document::correctedStepKey, "true", image);
    document.SetModifiedFlag(true);
    lastCorrection = {*line, stateNow()};
    isCorrecting = true;
    document.UpdateAllViews(nullptr, document::data_hint(image));
    isCorrecting = false;
}

} // namespace vldv::curves
