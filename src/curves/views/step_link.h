#pragma once
#include "view/image/SectionSource.h"

#include <cstdint>
#include <memory>
#include <optional>

class CLineView;
class CSectionView;

namespace vldv::curves {

class step_places;

/// Ties the window on a step to that on a line of the image in which the step was found: the crossbar of the one says
/// which line the other shows, the crossbar of that says where the step crosses it. Each window has one of these, and
/// none holds another: whichever closes first is simply no longer there.
class step_link {
public:
    explicit step_link(CSectionView& view_) : view(view_) {}
    step_link(const step_link&) = delete;
    step_link& operator=(const step_link&) = delete;

    /// The window shows a step from now on.
    void setOrigin(const step_origin& origin);
    /// The window opens on an image: on a step of an earlier search it is tied as that search had it. \return it was
    bool restore();
    /// The window closes.
    void cut() noexcept;
    void imageRemoved(unsigned image) noexcept;
    /// The user moved the crossbar along the curve: at a step the line follows, at a line the step is corrected.
    void crossbarMoved();
    /// The window has loaded what it shows: another line perhaps, or a step that was changed.
    void loaded();

private:
    /// The end at the step, which goes with the step's window.
    struct step_end {
        CSectionView& view;
        step_origin origin;
    };
    /// Where the step was corrected last. While its image is in that state, another column of the same line belongs to
    /// the same correction, which is one step of the history.
    struct correction {
        int line;
        std::uint64_t state;
    };

    // At the step
    void leadLine();
    CLineView* findLine() const;
    CLineView* openLine(int line);
    // At the line
    void show(const std::shared_ptr<step_end>& end, int line);
    void follow();
    void correct(const step_end& end);
    /// The line of the image that the window shows; nothing for another section of it.
    std::optional<int> shownLineOf(const step_end& end) const;

    static std::optional<step_places> places(const step_end& end);

    CSectionView& view;
    std::shared_ptr<step_end> step_source;
    std::weak_ptr<step_end> step_target_view;
    std::optional<int> followedLine;
    std::optional<correction> lastCorrection;
    bool isCorrecting = false;
};

} // namespace vldv::curves
